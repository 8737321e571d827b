// Comparisons of line directions. Every direction in the library is an
// undirected angle in degrees in [0, 180), so 0 and 180 are one direction;
// this class is the one place where that wrap is handled.
#ifndef MORVANE_EDGELINES_LINE_ANGLE_COMPARATOR_H
#define MORVANE_EDGELINES_LINE_ANGLE_COMPARATOR_H

#include <vector>

#include "textgeometry/direction.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

class LineAngleComparator {
public:
    // 90 when |b| is at most the double epsilon, else atan(-a / b) / pi * 180,
    // plus 180 when negative. Divided by pi first, then multiplied by 180: the
    // order of the comparisons' own angle, kept apart from GeolineBase's.
    static double calculate_line_angle(const GeolineBase& line);

    // True when |b| is at most the double epsilon.
    static bool is_vertical_line(const GeolineBase& line);

    // The undirected difference of two angles: d = |difference|, and 180 - d
    // when d exceeds 90. Gives values in [0, 90] for angles in [0, 180).
    static double fold(double difference);

    // fold(first - second).
    static double calculate_disparity(double first, double second);

    // 0 when both lines are vertical, else the disparity of their angles.
    static double calculate_disparity(const GeolineBase& first, const GeolineBase& second);

    // With t the line's angle: horizontal d = min(|t|, |180 - t|), vertical
    // d = |t - 90|; true when tolerance > d, strictly.
    static bool is_near_coordinate_axes(const GeolineBase& line, double tolerance, Direction direction);

    // Whether `angle` lies in the range with ends `first` and `second`, ends
    // included. Vertical: between the smaller and the larger. Horizontal with
    // first > 90 and second <= 90: the range wraps through 0, so
    // first <= angle <= 180 or 0 <= angle <= second. Horizontal otherwise:
    // second <= angle <= first.
    static bool is_near_coordinate_axes(double first, double second, double angle, Direction direction);

    // Disparity of the two lines (0 for two vertical lines) > limit.
    static bool is_large_disparity(const GeolineBase& first, const GeolineBase& second, double limit);
    // calculate_disparity(first, second) > limit.
    static bool is_large_disparity(double first, double second, double limit);
    // The negation of is_large_disparity: a disparity equal to the limit is small.
    static bool is_small_disparity(double first, double second, double limit);

    // Sample standard deviation (divisor n - 1) of the lines' angles, taken
    // on the raw angles: the wrap is deliberately ignored here, so lines at 1
    // and 179 degrees deviate widely. Fewer than two lines give 0.
    static double calculate_angle_standard_derivation(const std::vector<GeolineBase>& lines);

    // With u = first - 90 and v = second - 90: when u v < 0 the lines lean to
    // opposite sides of the vertical, `same_side` is false and the result is
    // |u + v|, so equal leans to opposite sides give 0 (intended). Otherwise
    // `same_side` is true and the result is |u - v|. The sum or difference is
    // rounded to float before the absolute value.
    static double calculate_vertical_disparity_difference(double first, double second, bool& same_side);
};

}  // namespace geometric

#endif

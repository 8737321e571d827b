// The implicit line a x + b y + c = 0 in image coordinates, with the measures
// that the text route and the page-edge route take against it.
#ifndef MORVANE_TEXTGEOMETRY_GEOLINE_BASE_H
#define MORVANE_TEXTGEOMETRY_GEOLINE_BASE_H

#include <cmath>
#include <vector>

#include "common/constants.h"
#include "textgeometry/geocoordinate.h"

namespace geometric {

// Every fit produces one of two normal forms:
//   general:  b = -1, a = slope dy/dx, c = y at x = 0;
//   vertical: a = 1, b = 0, c = -x of the line.
// Lines built elsewhere may have any coefficients, so no operation here
// assumes a normal form.
class GeolineBase {
public:
    double a;
    double b;
    double c;

    GeolineBase() : a(0.0), b(0.0), c(0.0) {}
    GeolineBase(double a_, double b_, double c_) : a(a_), b(b_), c(c_) {}

    // |a x + b y + c| / sqrt(a^2 + b^2). A line with a = b = 0 is not guarded:
    // it gives infinity or not-a-number, as such a line was never filled.
    template <typename T>
    double point_distance(const Geocoordinate<T>& p) const {
        return std::fabs(point_value(p)) / std::sqrt(a * a + b * b);
    }

    // a x + b y + c, unnormalised: its sign tells the side of the line.
    template <typename T>
    double point_value(const Geocoordinate<T>& p) const {
        return a * static_cast<double>(p.x) + b * static_cast<double>(p.y) + c;
    }

    // Degrees in [0, 180), 90 for a line whose b is zero to double precision.
    double line_angle() const {
        if (std::fabs(b) <= constants::kDoubleEpsilon) return 90.0;
        double angle = std::atan(-a / b) * 180.0 / constants::kPi;
        if (angle < 0.0) angle += 180.0;
        return angle;
    }

    // -(b y + c) / a; infinite for a horizontal line.
    double x_at(double y) const { return -(b * y + c) / a; }
    // -(a x + c) / b; infinite for a vertical line.
    double y_at(double x) const { return -(a * x + c) / b; }

    // Judges the two sides of a split point set against this line and appends
    // to `kept`, in order, the points of `first` and then of `second` whose
    // distance stays below the side's limit (strict tests):
    //   first:  3 (sigma k) + mean + e, the factor 3 on this side only;
    //   second: mean2 + sigma k + e,
    // where mean and sigma (divisor n - 1) come from `first` when it holds at
    // least 2 points, else from `second`; mean2 is the mean of `second` when it
    // holds at least 2 points, else mean; e is the single-precision epsilon
    // when sigma is at most that epsilon, so that a straight set keeps itself.
    // Everything is single precision. Defined for float points.
    template <typename T>
    void remove_outliers(const std::vector<Geocoordinate<T>>& first,
                         const std::vector<Geocoordinate<T>>& second,
                         std::vector<Geocoordinate<T>>& kept, int multiple) const;
};

// Crossing point of two lines. With det = a1 b2 - a2 b1, false and `point`
// untouched when |det| is at most the double epsilon (parallel lines); else
// x = (b1 c2 - b2 c1) / det, y = (c1 a2 - c2 a1) / det.
bool intersect_lines(const GeolineBase& first, const GeolineBase& second,
                     Geocoordinate<double>& point);

}  // namespace geometric

#endif

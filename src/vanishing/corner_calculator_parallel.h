// Virtual corners from parallel directions given by their angles: four lines
// around the image with the two slopes.
#ifndef MORVANE_VANISHING_CORNER_CALCULATOR_PARALLEL_H
#define MORVANE_VANISHING_CORNER_CALCULATOR_PARALLEL_H

#include <vector>

#include "textgeometry/geocoordinate.h"

namespace geometric {

class CornerCalculatorParallel {
public:
    CornerCalculatorParallel(int width_, int height_) : width(width_), height(height_) {}

    // With w' = width - 1 and h' = height - 1:
    //   left and right: x = 0 and x = w' without a vertical direction or at
    //   exactly 90; else slope tan(vertical_angle) through (0, 0) and (w', h')
    //   above 90, through (0, h') and (w', 0) otherwise;
    //   top and bottom: y = 0 and y = h' without a horizontal direction or at
    //   exactly 0; else slope tan(horizontal_angle) through (0, 0) and (w', h')
    //   above 90, through (w', 0) and (0, h') otherwise;
    // so that the image lies between each pair. `corners` becomes top with
    // left, top with right, bottom with right, bottom with left; a pair that
    // does not cross (an angle of 0 given as vertical) leaves its corner at
    // (0, 0). Always true.
    bool estimate_parallel_virtual_corners(bool has_horizontal, bool has_vertical, float horizontal_angle,
                                           float vertical_angle, std::vector<Geocoordinate<float>>& corners);

    // The extremes of those corners: `top` the higher of corners 0 and 1,
    // `bottom` the lower of 2 and 3, `left` the one further left of 0 and 3,
    // `right` the one further right of 1 and 2; a tie takes the first named.
    // Always true.
    bool estimate_anchor_corners(bool has_horizontal, bool has_vertical, float horizontal_angle,
                                 float vertical_angle, Geocoordinate<float>& top, Geocoordinate<float>& bottom,
                                 Geocoordinate<float>& left, Geocoordinate<float>& right);

    int width;   // of the working image
    int height;
};

}  // namespace geometric

#endif

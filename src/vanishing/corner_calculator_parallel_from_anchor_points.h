// Corners from four anchors on the page's edges and two parallel directions
// given by their angles.
#ifndef MORVANE_VANISHING_CORNER_CALCULATOR_PARALLEL_FROM_ANCHOR_POINTS_H
#define MORVANE_VANISHING_CORNER_CALCULATOR_PARALLEL_FROM_ANCHOR_POINTS_H

#include <vector>

#include "textgeometry/geocoordinate.h"

namespace geometric {

// Anchors: a on the left side, b on the right, c on the top, d on the bottom.
// Top and bottom pass through c and d at the horizontal angle, left and right
// through a and b at the vertical angle, drawn exactly vertical when that
// angle lies in 89.6 to 90.4 (ends included). A missing direction's pair is
// axis-parallel through its two anchors. Answers as the calculators from
// anchors with vanishing points: four corners top-left first in `corners`,
// emptied first; false, with `corners` empty, when neighbouring sides are
// parallel.
class CornerCalculatorParallelFromAnchorPoints {
public:
    CornerCalculatorParallelFromAnchorPoints(int width_, int height_) : width(width_), height(height_) {}

    // Vertical direction only: top and bottom are y = c.y and y = d.y.
    bool identifyVerticalInputCorners(float vertical_angle, const Geocoordinate<float>& a,
                                      const Geocoordinate<float>& b, const Geocoordinate<float>& c,
                                      const Geocoordinate<float>& d, std::vector<Geocoordinate<float>>& corners);

    // Horizontal direction only: left and right are x = a.x and x = b.x.
    bool identifyHorizontalInputCorners(float horizontal_angle, const Geocoordinate<float>& a,
                                        const Geocoordinate<float>& b, const Geocoordinate<float>& c,
                                        const Geocoordinate<float>& d, std::vector<Geocoordinate<float>>& corners);

    bool identifyTwoDirectionInputCorners(float horizontal_angle, float vertical_angle,
                                          const Geocoordinate<float>& a, const Geocoordinate<float>& b,
                                          const Geocoordinate<float>& c, const Geocoordinate<float>& d,
                                          std::vector<Geocoordinate<float>>& corners);

    // By the flags; neither direction gives false and leaves `corners` alone.
    bool identifyInputCorners(float horizontal_angle, float vertical_angle, bool has_horizontal, bool has_vertical,
                              const Geocoordinate<float>& a, const Geocoordinate<float>& b,
                              const Geocoordinate<float>& c, const Geocoordinate<float>& d,
                              std::vector<Geocoordinate<float>>& corners);

    int width;   // of the working image
    int height;
};

}  // namespace geometric

#endif

// Corners from four anchors on the page's edges and the directions through
// them: vanishing points in one or two directions, an angle for the other.
#ifndef MORVANE_VANISHING_CORNER_CALCULATOR_MIXED_FROM_ANCHOR_POINTS_H
#define MORVANE_VANISHING_CORNER_CALCULATOR_MIXED_FROM_ANCHOR_POINTS_H

#include <vector>

#include "textgeometry/geocoordinate.h"

namespace geometric {

// Anchors: a lies on the left side, b on the right, c on the top, d on the
// bottom. Every answer is four corners, top-left, top-right, bottom-right,
// bottom-left, in `corners`, which is emptied first; false, with `corners`
// empty, when two neighbouring sides are parallel.
class CornerCalculatorMixedFromAnchorPoints {
public:
    CornerCalculatorMixedFromAnchorPoints(int width_, int height_) : width(width_), height(height_) {}

    // Left and right sides from `vertical_point` through a and b, top and
    // bottom from `horizontal_point` through c and d.
    bool identifyTwoDirectionInputCorners(const Geocoordinate<double>& horizontal_point,
                                          const Geocoordinate<double>& vertical_point, const Geocoordinate<float>& a,
                                          const Geocoordinate<float>& b, const Geocoordinate<float>& c,
                                          const Geocoordinate<float>& d, std::vector<Geocoordinate<float>>& corners);

    // Left and right from `vertical_point` through a and b; top and bottom
    // through c and d at `angle` degrees, exactly horizontal (y = c.y,
    // y = d.y) when the angle is below 0.2 or above 179.8.
    bool identifyVeritcalInputCorners(const Geocoordinate<double>& vertical_point, const Geocoordinate<float>& a,
                                      const Geocoordinate<float>& b, const Geocoordinate<float>& c,
                                      const Geocoordinate<float>& d, float angle,
                                      std::vector<Geocoordinate<float>>& corners);

    // The mirror: top and bottom from `horizontal_point` through c and d;
    // left and right through a and b at `angle`, exactly vertical (x = a.x,
    // x = b.x) when the angle lies in 89.6 to 90.4, ends included.
    bool identifyHorizontalInputCorners(const Geocoordinate<double>& horizontal_point, const Geocoordinate<float>& a,
                                        const Geocoordinate<float>& b, const Geocoordinate<float>& c,
                                        const Geocoordinate<float>& d, float angle,
                                        std::vector<Geocoordinate<float>>& corners);

    // By the flags: both, the two-direction form; one, that direction's form
    // with the other direction's angle; neither, lines at the two angles
    // through the anchors (so 0 and 90 give the axis-parallel box through them).
    bool identifyInputCorners(float horizontal_angle, float vertical_angle,
                              const Geocoordinate<double>& horizontal_point,
                              const Geocoordinate<double>& vertical_point, bool has_horizontal, bool has_vertical,
                              const Geocoordinate<float>& a, const Geocoordinate<float>& b,
                              const Geocoordinate<float>& c, const Geocoordinate<float>& d,
                              std::vector<Geocoordinate<float>>& corners);

    int width;   // of the working image
    int height;
};

}  // namespace geometric

#endif

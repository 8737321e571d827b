// Virtual corners from vanishing points in one or two directions: each side of
// the quadrilateral is a line from a vanishing point through an image corner,
// so that the page fills the image as far as the directions allow.
#ifndef MORVANE_REGISTRATION_CORNER_CALCULATOR_PROJECTIVE_H
#define MORVANE_REGISTRATION_CORNER_CALCULATOR_PROJECTIVE_H

#include <vector>

#include "textgeometry/geocoordinate.h"

namespace geometric {

class CornerCalculatorProjective {
public:
    CornerCalculatorProjective(int width_, int height_) : width(width_), height(height_) {}

    // Four corners, top-left first, from the two-direction form when both
    // flags are set, the one-direction form when one is; false without
    // touching `corners` when neither is, or when a point gives no enclosing
    // pair of lines.
    // Not built yet: answers false, so no virtual corners exist.
    bool estimate_virtual_corners(const Geocoordinate<double>& horizontal_point,
                                  const Geocoordinate<double>& vertical_point, bool has_horizontal,
                                  bool has_vertical, std::vector<Geocoordinate<float>>& corners);

    int width;   // of the working image
    int height;
};

}  // namespace geometric

#endif

// Virtual corners from parallel directions given by their angles: four lines
// around the image with the two slopes.
#ifndef MORVANE_REGISTRATION_CORNER_CALCULATOR_PARALLEL_H
#define MORVANE_REGISTRATION_CORNER_CALCULATOR_PARALLEL_H

#include <vector>

#include "textgeometry/geocoordinate.h"

namespace geometric {

class CornerCalculatorParallel {
public:
    CornerCalculatorParallel(int width_, int height_) : width(width_), height(height_) {}

    // Top and bottom lines at `horizontal_angle`, left and right lines at
    // `vertical_angle`, placed so that the image lies between them; a missing
    // direction gives the image's own edges. Corners top-left first; the
    // finished form always answers true.
    // Not built yet: answers false and leaves `corners` alone.
    bool estimate_parallel_virtual_corners(bool has_horizontal, bool has_vertical, float horizontal_angle,
                                           float vertical_angle, std::vector<Geocoordinate<float>>& corners);

    int width;   // of the working image
    int height;
};

}  // namespace geometric

#endif

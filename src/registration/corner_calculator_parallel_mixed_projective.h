// Virtual corners from one vanishing point and one parallel direction.
#ifndef MORVANE_REGISTRATION_CORNER_CALCULATOR_PARALLEL_MIXED_PROJECTIVE_H
#define MORVANE_REGISTRATION_CORNER_CALCULATOR_PARALLEL_MIXED_PROJECTIVE_H

#include <vector>

#include "textgeometry/direction.h"
#include "textgeometry/geocoordinate.h"

namespace geometric {

class CornerCalculatorParallelMixedProjective {
public:
    CornerCalculatorParallelMixedProjective(int width_, int height_) : width(width_), height(height_) {}

    // `direction` names the family that has the vanishing `point`; the other
    // family is parallel at `angle` degrees. Lines from the point through the
    // enclosing image corners and lines at the angle through the opposite
    // corners meet in the four corners, top-left first; false when the point
    // gives no enclosing pair, leaving `corners` alone.
    // Not built yet: answers false.
    bool estimate_mixed_virtual_corners(Direction direction, const Geocoordinate<double>& point,
                                        std::vector<Geocoordinate<float>>& corners, float angle);

    int width;   // of the working image
    int height;
};

}  // namespace geometric

#endif

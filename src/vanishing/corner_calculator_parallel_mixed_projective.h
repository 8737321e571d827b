// Virtual corners from one vanishing point and one parallel direction.
#ifndef MORVANE_VANISHING_CORNER_CALCULATOR_PARALLEL_MIXED_PROJECTIVE_H
#define MORVANE_VANISHING_CORNER_CALCULATOR_PARALLEL_MIXED_PROJECTIVE_H

#include <vector>

#include "textgeometry/direction.h"
#include "textgeometry/geocoordinate.h"

namespace geometric {

class CornerCalculatorParallelMixedProjective {
public:
    CornerCalculatorParallelMixedProjective(int width_, int height_) : width(width_), height(height_) {}

    // `direction` names the family that has the vanishing `point`; the other
    // family is parallel at `angle` degrees. The point's reference pair gives
    // the sides from the point; the other pair passes at the angle through
    // (0, 0) and (w', h') when the angle is above 90, otherwise through
    // (w', 0) and (0, h') for the horizontal sides, (0, h') and (w', 0) for the
    // vertical ones, so that the image lies between them. Corners top-left
    // first; false when the point's zone gives no enclosing pair (or two
    // neighbouring sides are parallel), leaving `corners` alone.
    bool estimate_mixed_virtual_corners(Direction direction, const Geocoordinate<double>& point,
                                        std::vector<Geocoordinate<float>>& corners, float angle);

    int width;   // of the working image
    int height;
};

}  // namespace geometric

#endif

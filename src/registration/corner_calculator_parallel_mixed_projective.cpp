// Virtual corners from a vanishing point and a parallel direction.
#include "registration/corner_calculator_parallel_mixed_projective.h"

namespace geometric {

bool CornerCalculatorParallelMixedProjective::estimate_mixed_virtual_corners(Direction, const Geocoordinate<double>&,
                                                                             std::vector<Geocoordinate<float>>&,
                                                                             float) {
    return false;
}

}  // namespace geometric

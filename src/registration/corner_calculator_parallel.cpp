// Virtual corners from parallel directions.
#include "registration/corner_calculator_parallel.h"

namespace geometric {

bool CornerCalculatorParallel::estimate_parallel_virtual_corners(bool, bool, float, float,
                                                                 std::vector<Geocoordinate<float>>&) {
    return false;
}

}  // namespace geometric

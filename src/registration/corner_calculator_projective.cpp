// Virtual corners from vanishing points.
#include "registration/corner_calculator_projective.h"

namespace geometric {

bool CornerCalculatorProjective::estimate_virtual_corners(const Geocoordinate<double>&, const Geocoordinate<double>&,
                                                          bool, bool, std::vector<Geocoordinate<float>>&) {
    return false;
}

}  // namespace geometric

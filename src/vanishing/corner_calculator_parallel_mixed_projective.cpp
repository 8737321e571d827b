// Virtual corners from a vanishing point and a parallel direction.
#include "vanishing/corner_calculator_parallel_mixed_projective.h"

#include "vanishing/corner_calculator_mixed_from_anchor_points.h"
#include "vanishing/corner_calculator_projective.h"

namespace geometric {

bool CornerCalculatorParallelMixedProjective::estimate_mixed_virtual_corners(
    Direction direction, const Geocoordinate<double>& point, std::vector<Geocoordinate<float>>& corners,
    float angle) {
    const float w = static_cast<float>(width - 1);
    const float h = static_cast<float>(height - 1);
    const bool falling = angle > 90.0f;
    const CornerCalculatorProjective projective(width, height);
    CornerCalculatorMixedFromAnchorPoints anchors(width, height);
    Geocoordinate<float> a, b, c, d;
    std::vector<Geocoordinate<float>> found;
    if (direction == VERTICAL_DIRECTION) {
        if (!projective.calculate_vertical_virtual_reference_point(point, a, b, c, d)) return false;
        c = falling ? Geocoordinate<float>(0.0f, 0.0f) : Geocoordinate<float>(w, 0.0f);
        d = falling ? Geocoordinate<float>(w, h) : Geocoordinate<float>(0.0f, h);
        if (!anchors.identifyVeritcalInputCorners(point, a, b, c, d, angle, found)) return false;
    } else {
        if (!projective.calculate_horizontal_virtual_reference_point(point, a, b, c, d)) return false;
        a = falling ? Geocoordinate<float>(0.0f, 0.0f) : Geocoordinate<float>(0.0f, h);
        b = falling ? Geocoordinate<float>(w, h) : Geocoordinate<float>(w, 0.0f);
        if (!anchors.identifyHorizontalInputCorners(point, a, b, c, d, angle, found)) return false;
    }
    corners.swap(found);
    return true;
}

}  // namespace geometric

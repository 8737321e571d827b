// Corners from anchors on the page's edges and vanishing points or angles.
#include "vanishing/corner_calculator_mixed_from_anchor_points.h"

#include "vanishing/corner_calculator_parallel_from_anchor_points.h"
#include "vanishing/corner_lines.h"

namespace geometric {

namespace {

// Degrees within which a direction is drawn exactly along an image axis, so
// that a straight side does not pick up the rounding of tan near 0 or 90.
// Compared in single precision, as the angles are held: 89.6f counts as in.
constexpr float kHorizontalBelow = 0.2f;
constexpr float kHorizontalAbove = 179.8f;
constexpr float kVerticalFrom = 89.6f;
constexpr float kVerticalTo = 90.4f;

}  // namespace

bool CornerCalculatorMixedFromAnchorPoints::identifyTwoDirectionInputCorners(
    const Geocoordinate<double>& horizontal_point, const Geocoordinate<double>& vertical_point,
    const Geocoordinate<float>& a, const Geocoordinate<float>& b, const Geocoordinate<float>& c,
    const Geocoordinate<float>& d, std::vector<Geocoordinate<float>>& corners) {
    return corners_from_sides(corner_line_through(vertical_point, a), corner_line_through(vertical_point, b),
                              corner_line_through(horizontal_point, c), corner_line_through(horizontal_point, d),
                              corners);
}

bool CornerCalculatorMixedFromAnchorPoints::identifyVeritcalInputCorners(
    const Geocoordinate<double>& vertical_point, const Geocoordinate<float>& a, const Geocoordinate<float>& b,
    const Geocoordinate<float>& c, const Geocoordinate<float>& d, float angle,
    std::vector<Geocoordinate<float>>& corners) {
    const float t = angle;
    const bool horizontal = t < kHorizontalBelow || t > kHorizontalAbove;
    const GeolineBase top = horizontal ? corner_horizontal_line(c) : corner_line_at_angle(c, t);
    const GeolineBase bottom = horizontal ? corner_horizontal_line(d) : corner_line_at_angle(d, t);
    return corners_from_sides(corner_line_through(vertical_point, a), corner_line_through(vertical_point, b), top,
                              bottom, corners);
}

bool CornerCalculatorMixedFromAnchorPoints::identifyHorizontalInputCorners(
    const Geocoordinate<double>& horizontal_point, const Geocoordinate<float>& a, const Geocoordinate<float>& b,
    const Geocoordinate<float>& c, const Geocoordinate<float>& d, float angle,
    std::vector<Geocoordinate<float>>& corners) {
    const float t = angle;
    const bool vertical = t >= kVerticalFrom && t <= kVerticalTo;
    const GeolineBase left = vertical ? corner_vertical_line(a) : corner_line_at_angle(a, t);
    const GeolineBase right = vertical ? corner_vertical_line(b) : corner_line_at_angle(b, t);
    return corners_from_sides(left, right, corner_line_through(horizontal_point, c),
                              corner_line_through(horizontal_point, d), corners);
}

bool CornerCalculatorMixedFromAnchorPoints::identifyInputCorners(
    float horizontal_angle, float vertical_angle, const Geocoordinate<double>& horizontal_point,
    const Geocoordinate<double>& vertical_point, bool has_horizontal, bool has_vertical,
    const Geocoordinate<float>& a, const Geocoordinate<float>& b, const Geocoordinate<float>& c,
    const Geocoordinate<float>& d, std::vector<Geocoordinate<float>>& corners) {
    if (has_horizontal && has_vertical)
        return identifyTwoDirectionInputCorners(horizontal_point, vertical_point, a, b, c, d, corners);
    if (has_vertical) return identifyVeritcalInputCorners(vertical_point, a, b, c, d, horizontal_angle, corners);
    if (has_horizontal)
        return identifyHorizontalInputCorners(horizontal_point, a, b, c, d, vertical_angle, corners);
    CornerCalculatorParallelFromAnchorPoints parallel(width, height);
    return parallel.identifyTwoDirectionInputCorners(horizontal_angle, vertical_angle, a, b, c, d, corners);
}

}  // namespace geometric

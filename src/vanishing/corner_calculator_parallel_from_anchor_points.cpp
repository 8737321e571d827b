// Corners from anchors on the page's edges and two parallel directions.
#include "vanishing/corner_calculator_parallel_from_anchor_points.h"

#include "vanishing/corner_lines.h"

namespace geometric {

namespace {

// An angle this close to 90 is drawn as an exact vertical: tan would give a
// huge, badly rounded slope. Compared in single precision, as angles are held.
constexpr float kVerticalFrom = 89.6f;
constexpr float kVerticalTo = 90.4f;

GeolineBase side_at_vertical_angle(const Geocoordinate<float>& anchor, float angle) {
    if (angle >= kVerticalFrom && angle <= kVerticalTo) return corner_vertical_line(anchor);
    return corner_line_at_angle(anchor, angle);
}

}  // namespace

bool CornerCalculatorParallelFromAnchorPoints::identifyVerticalInputCorners(
    float vertical_angle, const Geocoordinate<float>& a, const Geocoordinate<float>& b,
    const Geocoordinate<float>& c, const Geocoordinate<float>& d, std::vector<Geocoordinate<float>>& corners) {
    return corners_from_sides(side_at_vertical_angle(a, vertical_angle), side_at_vertical_angle(b, vertical_angle),
                              corner_horizontal_line(c), corner_horizontal_line(d), corners);
}

bool CornerCalculatorParallelFromAnchorPoints::identifyHorizontalInputCorners(
    float horizontal_angle, const Geocoordinate<float>& a, const Geocoordinate<float>& b,
    const Geocoordinate<float>& c, const Geocoordinate<float>& d, std::vector<Geocoordinate<float>>& corners) {
    return corners_from_sides(corner_vertical_line(a), corner_vertical_line(b),
                              corner_line_at_angle(c, horizontal_angle), corner_line_at_angle(d, horizontal_angle),
                              corners);
}

bool CornerCalculatorParallelFromAnchorPoints::identifyTwoDirectionInputCorners(
    float horizontal_angle, float vertical_angle, const Geocoordinate<float>& a, const Geocoordinate<float>& b,
    const Geocoordinate<float>& c, const Geocoordinate<float>& d, std::vector<Geocoordinate<float>>& corners) {
    return corners_from_sides(side_at_vertical_angle(a, vertical_angle), side_at_vertical_angle(b, vertical_angle),
                              corner_line_at_angle(c, horizontal_angle), corner_line_at_angle(d, horizontal_angle),
                              corners);
}

bool CornerCalculatorParallelFromAnchorPoints::identifyInputCorners(
    float horizontal_angle, float vertical_angle, bool has_horizontal, bool has_vertical,
    const Geocoordinate<float>& a, const Geocoordinate<float>& b, const Geocoordinate<float>& c,
    const Geocoordinate<float>& d, std::vector<Geocoordinate<float>>& corners) {
    if (has_horizontal && has_vertical)
        return identifyTwoDirectionInputCorners(horizontal_angle, vertical_angle, a, b, c, d, corners);
    if (has_vertical) return identifyVerticalInputCorners(vertical_angle, a, b, c, d, corners);
    if (has_horizontal) return identifyHorizontalInputCorners(horizontal_angle, a, b, c, d, corners);
    return false;
}

}  // namespace geometric

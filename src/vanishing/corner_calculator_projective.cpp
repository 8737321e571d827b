// Virtual corners from vanishing points: the zone of each point chooses the
// image corners through which its two enclosing lines pass.
#include "vanishing/corner_calculator_projective.h"

#include "vanishing/corner_calculator_mixed_from_anchor_points.h"

namespace geometric {

namespace {

// A missing direction is drawn along the image axes.
constexpr float kVerticalAngle = 90.0f;
constexpr float kHorizontalAngle = 0.0f;

}  // namespace

void CornerCalculatorProjective::estimate_vp_position(const Geocoordinate<double>& point, int& zone) const {
    const int row = point.y < 0.0 ? 0 : (point.y >= static_cast<double>(height) ? 2 : 1);
    const int column = point.x < 0.0 ? 0 : (point.x >= static_cast<double>(width) ? 2 : 1);
    zone = row * 3 + column;
}

bool CornerCalculatorProjective::horizontal_pair(int zone, Geocoordinate<float>& c, Geocoordinate<float>& d) const {
    const float w = static_cast<float>(width - 1);
    const float h = static_cast<float>(height - 1);
    switch (zone) {
        case VANISHING_POINT_TOP_LEFT:
        case VANISHING_POINT_BOTTOM_RIGHT:
            c = Geocoordinate<float>(w, 0.0f);
            d = Geocoordinate<float>(0.0f, h);
            return true;
        case VANISHING_POINT_TOP_RIGHT:
        case VANISHING_POINT_BOTTOM_LEFT:
            c = Geocoordinate<float>(0.0f, 0.0f);
            d = Geocoordinate<float>(w, h);
            return true;
        case VANISHING_POINT_LEFT:
            c = Geocoordinate<float>(0.0f, 0.0f);
            d = Geocoordinate<float>(0.0f, h);
            return true;
        case VANISHING_POINT_RIGHT:
            c = Geocoordinate<float>(w, 0.0f);
            d = Geocoordinate<float>(w, h);
            return true;
        default:
            return false;
    }
}

bool CornerCalculatorProjective::vertical_pair(int zone, Geocoordinate<float>& a, Geocoordinate<float>& b) const {
    const float w = static_cast<float>(width - 1);
    const float h = static_cast<float>(height - 1);
    switch (zone) {
        case VANISHING_POINT_TOP_LEFT:
        case VANISHING_POINT_BOTTOM_RIGHT:
            a = Geocoordinate<float>(0.0f, h);
            b = Geocoordinate<float>(w, 0.0f);
            return true;
        case VANISHING_POINT_TOP:
            a = Geocoordinate<float>(0.0f, 0.0f);
            b = Geocoordinate<float>(w, 0.0f);
            return true;
        case VANISHING_POINT_TOP_RIGHT:
        case VANISHING_POINT_BOTTOM_LEFT:
            a = Geocoordinate<float>(0.0f, 0.0f);
            b = Geocoordinate<float>(w, h);
            return true;
        case VANISHING_POINT_BOTTOM:
            a = Geocoordinate<float>(0.0f, h);
            b = Geocoordinate<float>(w, h);
            return true;
        default:
            return false;
    }
}

bool CornerCalculatorProjective::calculate_horizontal_virtual_reference_point(const Geocoordinate<double>& point,
                                                                              Geocoordinate<float>& a,
                                                                              Geocoordinate<float>& b,
                                                                              Geocoordinate<float>& c,
                                                                              Geocoordinate<float>& d) const {
    int zone = 0;
    estimate_vp_position(point, zone);
    Geocoordinate<float> top, bottom;
    if (!horizontal_pair(zone, top, bottom)) return false;
    a = Geocoordinate<float>(0.0f, 0.0f);
    b = Geocoordinate<float>(static_cast<float>(width - 1), 0.0f);
    c = top;
    d = bottom;
    return true;
}

bool CornerCalculatorProjective::calculate_vertical_virtual_reference_point(const Geocoordinate<double>& point,
                                                                            Geocoordinate<float>& a,
                                                                            Geocoordinate<float>& b,
                                                                            Geocoordinate<float>& c,
                                                                            Geocoordinate<float>& d) const {
    int zone = 0;
    estimate_vp_position(point, zone);
    Geocoordinate<float> left, right;
    if (!vertical_pair(zone, left, right)) return false;
    a = left;
    b = right;
    c = Geocoordinate<float>(0.0f, 0.0f);
    d = Geocoordinate<float>(0.0f, static_cast<float>(height - 1));
    return true;
}

bool CornerCalculatorProjective::calculate_two_direction_virtual_reference_point(
    const Geocoordinate<double>& horizontal_point, const Geocoordinate<double>& vertical_point,
    Geocoordinate<float>& a, Geocoordinate<float>& b, Geocoordinate<float>& c, Geocoordinate<float>& d) const {
    int horizontal_zone = 0;
    int vertical_zone = 0;
    estimate_vp_position(horizontal_point, horizontal_zone);
    estimate_vp_position(vertical_point, vertical_zone);
    Geocoordinate<float> left, right, top, bottom;
    if (!vertical_pair(vertical_zone, left, right) || !horizontal_pair(horizontal_zone, top, bottom)) return false;
    a = left;
    b = right;
    c = top;
    d = bottom;
    return true;
}

// Each form works on a fresh list and hands it over only on success, so that
// a false leaves the caller's corners as they were.
bool CornerCalculatorProjective::estimate_horizontal_virtual_corners(const Geocoordinate<double>& point,
                                                                     std::vector<Geocoordinate<float>>& corners) const {
    Geocoordinate<float> a, b, c, d;
    if (!calculate_horizontal_virtual_reference_point(point, a, b, c, d)) return false;
    std::vector<Geocoordinate<float>> found;
    CornerCalculatorMixedFromAnchorPoints anchors(width, height);
    if (!anchors.identifyHorizontalInputCorners(point, a, b, c, d, kVerticalAngle, found)) return false;
    corners.swap(found);
    return true;
}

bool CornerCalculatorProjective::estimate_vertical_virtual_corners(const Geocoordinate<double>& point,
                                                                   std::vector<Geocoordinate<float>>& corners) const {
    Geocoordinate<float> a, b, c, d;
    if (!calculate_vertical_virtual_reference_point(point, a, b, c, d)) return false;
    std::vector<Geocoordinate<float>> found;
    CornerCalculatorMixedFromAnchorPoints anchors(width, height);
    if (!anchors.identifyVeritcalInputCorners(point, a, b, c, d, kHorizontalAngle, found)) return false;
    corners.swap(found);
    return true;
}

bool CornerCalculatorProjective::estimate_two_direction_virtual_corners(
    const Geocoordinate<double>& horizontal_point, const Geocoordinate<double>& vertical_point,
    std::vector<Geocoordinate<float>>& corners) const {
    Geocoordinate<float> a, b, c, d;
    if (!calculate_two_direction_virtual_reference_point(horizontal_point, vertical_point, a, b, c, d)) return false;
    std::vector<Geocoordinate<float>> found;
    CornerCalculatorMixedFromAnchorPoints anchors(width, height);
    if (!anchors.identifyTwoDirectionInputCorners(horizontal_point, vertical_point, a, b, c, d, found)) return false;
    corners.swap(found);
    return true;
}

bool CornerCalculatorProjective::estimate_virtual_corners(const Geocoordinate<double>& horizontal_point,
                                                          const Geocoordinate<double>& vertical_point,
                                                          bool has_horizontal, bool has_vertical,
                                                          std::vector<Geocoordinate<float>>& corners) const {
    if (has_horizontal && has_vertical)
        return estimate_two_direction_virtual_corners(horizontal_point, vertical_point, corners);
    if (has_horizontal) return estimate_horizontal_virtual_corners(horizontal_point, corners);
    if (has_vertical) return estimate_vertical_virtual_corners(vertical_point, corners);
    return false;
}

bool CornerCalculatorProjective::estimate_cp_pairs(const Geocoordinate<double>& point, Direction direction,
                                                   std::vector<Geocoordinate<float>>& virtual_corners,
                                                   std::vector<Geocoordinate<float>>& image_corners) const {
    const float w = static_cast<float>(width - 1);
    const float h = static_cast<float>(height - 1);
    image_corners = {{0.0f, 0.0f}, {w, 0.0f}, {w, h}, {0.0f, h}};
    if (direction == VERTICAL_DIRECTION) return estimate_vertical_virtual_corners(point, virtual_corners);
    return estimate_horizontal_virtual_corners(point, virtual_corners);
}

}  // namespace geometric

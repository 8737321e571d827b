// Virtual corners from parallel directions.
#include "vanishing/corner_calculator_parallel.h"

#include "vanishing/corner_lines.h"

namespace geometric {

bool CornerCalculatorParallel::estimate_parallel_virtual_corners(bool has_horizontal, bool has_vertical,
                                                                 float horizontal_angle, float vertical_angle,
                                                                 std::vector<Geocoordinate<float>>& corners) {
    const Geocoordinate<float> top_left(0.0f, 0.0f);
    const Geocoordinate<float> top_right(static_cast<float>(width - 1), 0.0f);
    const Geocoordinate<float> bottom_right(static_cast<float>(width - 1), static_cast<float>(height - 1));
    const Geocoordinate<float> bottom_left(0.0f, static_cast<float>(height - 1));

    // Each pair passes through the two image corners that keep the whole
    // image between its lines.
    GeolineBase left, right;
    if (!has_vertical || vertical_angle == 90.0f) {
        left = corner_vertical_line(top_left);
        right = corner_vertical_line(bottom_right);
    } else if (vertical_angle > 90.0f) {
        left = corner_line_at_angle(top_left, vertical_angle);
        right = corner_line_at_angle(bottom_right, vertical_angle);
    } else {
        left = corner_line_at_angle(bottom_left, vertical_angle);
        right = corner_line_at_angle(top_right, vertical_angle);
    }
    GeolineBase top, bottom;
    if (!has_horizontal || horizontal_angle == 0.0f) {
        top = corner_horizontal_line(top_left);
        bottom = corner_horizontal_line(bottom_right);
    } else if (horizontal_angle > 90.0f) {
        top = corner_line_at_angle(top_left, horizontal_angle);
        bottom = corner_line_at_angle(bottom_right, horizontal_angle);
    } else {
        top = corner_line_at_angle(top_right, horizontal_angle);
        bottom = corner_line_at_angle(bottom_left, horizontal_angle);
    }

    Geocoordinate<float> found[4];
    corner_crossing(top, left, found[0]);
    corner_crossing(top, right, found[1]);
    corner_crossing(bottom, right, found[2]);
    corner_crossing(bottom, left, found[3]);
    corners.assign(found, found + 4);
    return true;
}

bool CornerCalculatorParallel::estimate_anchor_corners(bool has_horizontal, bool has_vertical, float horizontal_angle,
                                                       float vertical_angle, Geocoordinate<float>& top,
                                                       Geocoordinate<float>& bottom, Geocoordinate<float>& left,
                                                       Geocoordinate<float>& right) {
    std::vector<Geocoordinate<float>> c;
    estimate_parallel_virtual_corners(has_horizontal, has_vertical, horizontal_angle, vertical_angle, c);
    top = c[1].y < c[0].y ? c[1] : c[0];
    bottom = c[3].y > c[2].y ? c[3] : c[2];
    left = c[3].x < c[0].x ? c[3] : c[0];
    right = c[2].x > c[1].x ? c[2] : c[1];
    return true;
}

}  // namespace geometric

// The staged corner search as the driver's edge search.
#include "registration/line_registration.h"

#include "correction/projective_correction.h"

namespace geometric_test {

namespace {

geometric::BoundingLine record_of(const BoundingLine& side) {
    geometric::BoundingLine record;
    record.position = side.position;
    record.line = side.line;
    record.segment_length = static_cast<std::int32_t>(side.polyline_length());
    const geometric::Geocoordinate<int> first = side.end_point(0), second = side.end_point(1);
    record.x1 = static_cast<float>(first.x);
    record.y1 = static_cast<float>(first.y);
    record.x2 = static_cast<float>(second.x);
    record.y2 = static_cast<float>(second.y);
    return record;
}

}  // namespace

void LineRegistration::clean_border_sides(BoundingLineArrayWrapper& wrapper) {
    for (int k = 0; k < 4; ++k) {
        BoundingLine& side = wrapper.boundaries[static_cast<std::size_t>(k)];
        if (!side.is_valid()) continue;
        const bool across = k == geometric::TOP_BOUNDARY || k == geometric::BOTTOM_BOUNDARY;
        int sum = 0;
        for (const auto& p : side.points) sum += across ? p.y : p.x;
        const int mean = side.points.empty() ? 0 : sum / static_cast<int>(side.points.size());
        bool hugs_border = false;
        switch (k) {
            case geometric::LEFT_BOUNDARY:
            case geometric::TOP_BOUNDARY: hugs_border = mean < 5; break;
            case geometric::RIGHT_BOUNDARY: hugs_border = mean > wrapper.width - 5; break;
            default: hugs_border = mean > wrapper.height - 5; break;
        }
        if (hugs_border) side.clear();
    }
}

geometric::RegistrationOutputType LineRegistration::run_registration() {
    // The staged search, on the image as it is. It writes corners only when
    // it finds a page: otherwise the caller's corners stay as they were.
    OperationalBoundingEdgeRegistration search(method);
    const int r = search.run_projective_registration_without_pre_post_processing(*image, corners);
    const geometric::RegistrationOutputType result = static_cast<geometric::RegistrationOutputType>(r);
    // The output size of the corners found.
    if (r == 1) geometric::ProjectiveCorrection::calculate_output_dimension(corners, output_width, output_height);
    // Everything else comes from the search's last wrapper.
    wrapper = search.previous_wrapper;
    if (!wrapper) return result;
    // A side that hugs the image border is no page edge.
    clean_border_sides(*wrapper);
    // Where opposite sides meet.
    wrapper->obtain_vanishing_points(vanishing_points);
    // The sides as bounding lines, in the wrapper's order.
    bounding_lines.clear();
    bounding_line_property = geometric::BoundingLineProperty();
    int* indices[4] = {&bounding_line_property.left_index, &bounding_line_property.top_index,
                       &bounding_line_property.right_index, &bounding_line_property.bottom_index};
    for (int k = 0; k < 4; ++k) {
        const BoundingLine& side = wrapper->boundaries[static_cast<std::size_t>(k)];
        if (!side.is_valid()) continue;
        *indices[k] = static_cast<int>(bounding_lines.size());
        bounding_lines.push_back(record_of(side));
    }
    geometric::BoundingLineProperty& property = bounding_line_property;
    const bool has_top = property.top_index >= 0, has_bottom = property.bottom_index >= 0;
    const bool has_left = property.left_index >= 0, has_right = property.right_index >= 0;
    // The distances between opposite sides, where both exist.
    if (has_top && has_bottom)
        property.horizontal_intercept_disparity = wrapper->boundary_pair_distance(geometric::HORIZONTAL_DIRECTION);
    if (has_left && has_right)
        property.vertical_intercept_disparity = wrapper->boundary_pair_distance(geometric::VERTICAL_DIRECTION);
    // Each direction's lines: top before bottom, left before right.
    if (has_top) property.horizontal_lines.push_back(property.top_index);
    if (has_bottom) property.horizontal_lines.push_back(property.bottom_index);
    if (has_left) property.vertical_lines.push_back(property.left_index);
    if (has_right) property.vertical_lines.push_back(property.right_index);
    // The angles between opposite sides.
    if (has_top && has_bottom)
        property.horizontal_angle_disparity = wrapper->boundary_pair_angle_disparity(geometric::HORIZONTAL_DIRECTION);
    if (has_left && has_right)
        property.vertical_angle_disparity = wrapper->boundary_pair_angle_disparity(geometric::VERTICAL_DIRECTION);
    return result;
}

}  // namespace geometric_test

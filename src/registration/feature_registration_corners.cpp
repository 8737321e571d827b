// Corners of the text search: the text box's anchors pushed outward and
// drawn through with the directions found, or the edges guarded by the text.
#include <algorithm>
#include <cmath>

#include "common/constants.h"
#include "edgelines/bounding_line_anchor_corner_calculator.h"
#include "edgelines/bounding_lines_operator.h"
#include "registration/feature_registration.h"
#include "vanishing/corner_calculator_mixed_from_anchor_points.h"
#include "vanishing/corner_calculator_parallel.h"
#include "vanishing/corner_calculator_parallel_from_anchor_points.h"
#include "vanishing/corner_lines.h"

namespace hybrid {

using geometric::Geocoordinate;
using geometric::GeolineBase;

// ---------------------------------------------------------------------------
// Corner expansion
// ---------------------------------------------------------------------------

void CornerExpansion::expand_left(Geocoordinate<float>& anchor) const {
    const float low = may_leave_image ? -static_cast<float>(overshoot * character_width) : 0.0f;
    anchor.x = std::max(anchor.x - static_cast<float>(push * character_width), low);
}

void CornerExpansion::expand_right(Geocoordinate<float>& anchor) const {
    const float high = static_cast<float>(width - 1) +
                       (may_leave_image ? static_cast<float>(overshoot * character_width) : 0.0f);
    anchor.x = std::min(anchor.x + static_cast<float>(push * character_width), high);
}

void CornerExpansion::expand_top(Geocoordinate<float>& anchor) const {
    anchor.y = std::max(anchor.y - static_cast<float>(push * character_height), 0.0f);
}

void CornerExpansion::expand_bottom(Geocoordinate<float>& anchor) const {
    anchor.y = std::min(anchor.y + static_cast<float>(push * character_height), static_cast<float>(height - 1));
}

// ---------------------------------------------------------------------------
// Corners
// ---------------------------------------------------------------------------

CornerExpansion FeatureRegistration::corner_expansion(bool may_leave_image) const {
    int character_width = 0, character_height = 0;
    if (page_analysis != nullptr) page_analysis->obtain_average_bounding_box(character_width, character_height);
    return CornerExpansion{image_width(), image_height(), para.clustering.median_spacing, may_leave_image, 1, 2,
                           character_width, character_height};
}

bool FeatureRegistration::perform_edge_corner_searching() {
    // 1. No text box: the edges alone.
    if (text_box.bottom.y == 0.0f) {
        if (corners.size() == 4) return true;
        return geometric::ProjectiveRegistration::perform_edge_corner_searching();
    }
    const geometric::VanishingPointOutput& horizontal = vanishing_points.horizontal;
    const geometric::VanishingPointOutput& vertical = vanishing_points.vertical;
    // 4. Preferred edges, guarded by the text.
    if (edge_result_is_preferred &&
        bounding_line_property.horizontal_lines.size() + bounding_line_property.vertical_lines.size() == 4)
        return corners_from_guarded_bounding_lines();
    // 5. Parallel directions.
    if (!horizontal.has_vanishing_point && !vertical.has_vanishing_point) {
        if (!horizontal.is_parallel && !vertical.is_parallel) return false;
        corners_from_text_and_lines(true);
        return true;
    }
    // 6. Vanishing points.
    corners_from_text_and_lines(false);
    return true;
}

bool FeatureRegistration::corners_from_text_and_lines(bool parallel_case) {
    const CornerExpansion expansion = corner_expansion(true);
    const geometric::VanishingPointOutput& horizontal = vanishing_points.horizontal;
    const geometric::VanishingPointOutput& vertical = vanishing_points.vertical;
    Geocoordinate<float> left = text_box.left, right = text_box.right, top = text_box.top, bottom = text_box.bottom;
    if (parallel_case) {
        geometric::CornerCalculatorParallel(image_width(), image_height())
            .estimate_anchor_corners(horizontal.is_parallel, vertical.is_parallel, horizontal.angle, vertical.angle,
                                     top, bottom, left, right);
    }
    expansion.expand_left(left);
    expansion.expand_right(right);
    expansion.expand_top(top);
    expansion.expand_bottom(bottom);

    // Each anchor onto the bounding line of its side, unless the text lies beyond that line.
    const geometric::BoundingLineAnchorCornerCalculator onto_line(image_width(), image_height());
    const struct {
        int index;
        geometric::BoundingLinePosition position;
        Geocoordinate<float>* anchor;
    } sides[4] = {{bounding_line_property.left_index, geometric::LEFT_BOUNDARY, &left},
                  {bounding_line_property.right_index, geometric::RIGHT_BOUNDARY, &right},
                  {bounding_line_property.top_index, geometric::TOP_BOUNDARY, &top},
                  {bounding_line_property.bottom_index, geometric::BOTTOM_BOUNDARY, &bottom}};
    for (const auto& side : sides) {
        if (side.index < 0 || side.index >= static_cast<int>(bounding_lines.size())) continue;
        const GeolineBase& line = bounding_lines[static_cast<std::size_t>(side.index)].line;
        const double s = line.point_value(*side.anchor);
        const bool steep_left = line.line_angle() > 90.0;
        bool beyond = false;
        switch (side.position) {
            case geometric::LEFT_BOUNDARY: beyond = steep_left ? s > 0.0 : s < 0.0; break;
            case geometric::RIGHT_BOUNDARY: beyond = steep_left ? s < 0.0 : s > 0.0; break;
            case geometric::TOP_BOUNDARY: beyond = s > 0.0; break;
            default: beyond = s < 0.0; break;
        }
        if (!beyond) {
            onto_line.obtainAnchorPoint(line, side.position, *side.anchor);
            continue;
        }
        switch (side.position) {
            case geometric::LEFT_BOUNDARY: expansion.expand_left(*side.anchor); break;
            case geometric::RIGHT_BOUNDARY: expansion.expand_right(*side.anchor); break;
            case geometric::TOP_BOUNDARY: expansion.expand_top(*side.anchor); break;
            default: expansion.expand_bottom(*side.anchor); break;
        }
    }

    if (parallel_case)
        return geometric::CornerCalculatorParallelFromAnchorPoints(image_width(), image_height())
            .identifyInputCorners(horizontal.angle, vertical.angle, horizontal.is_parallel, vertical.is_parallel, left,
                                  right, top, bottom, corners);
    return geometric::CornerCalculatorMixedFromAnchorPoints(image_width(), image_height())
        .identifyInputCorners(horizontal.angle, vertical.angle, vanishing_points.horizontal_point,
                              vanishing_points.vertical_point, horizontal.has_vanishing_point,
                              vertical.has_vanishing_point, left, right, top, bottom, corners);
}

bool FeatureRegistration::corners_from_guarded_bounding_lines() {
    const CornerExpansion expansion = corner_expansion(false);
    const geometric::VanishingPointOutput& horizontal = vanishing_points.horizontal;
    const geometric::VanishingPointOutput& vertical = vanishing_points.vertical;
    std::vector<geometric::BoundingLine> guarded = bounding_lines;
    const struct {
        int index;
        geometric::BoundingLinePosition position;
        Geocoordinate<float> anchor;
    } sides[4] = {{bounding_line_property.left_index, geometric::LEFT_BOUNDARY, text_box.left},
                  {bounding_line_property.right_index, geometric::RIGHT_BOUNDARY, text_box.right},
                  {bounding_line_property.top_index, geometric::TOP_BOUNDARY, text_box.top},
                  {bounding_line_property.bottom_index, geometric::BOTTOM_BOUNDARY, text_box.bottom}};
    for (auto side : sides) {
        if (side.index < 0 || side.index >= static_cast<int>(guarded.size())) continue;
        GeolineBase& line = guarded[static_cast<std::size_t>(side.index)].line;
        const double s = line.point_value(side.anchor);
        const bool steep_left = line.line_angle() > 90.0;
        const bool nearly_vertical = std::fabs(line.b) <= constants::kDoubleEpsilon;
        bool ok = true;
        switch (side.position) {
            case geometric::LEFT_BOUNDARY:
                if (line.b == 0.0)
                    ok = line.x_at(side.anchor.y) <= side.anchor.x;
                else
                    ok = nearly_vertical ? s >= 0.0 : (steep_left ? s <= 0.0 : s >= 0.0);
                break;
            case geometric::RIGHT_BOUNDARY:
                if (line.b == 0.0)
                    ok = line.x_at(side.anchor.y) >= side.anchor.x;
                else
                    ok = nearly_vertical ? s <= 0.0 : (steep_left ? s >= 0.0 : s <= 0.0);
                break;
            case geometric::TOP_BOUNDARY: ok = s <= 0.0; break;
            default: ok = s >= 0.0; break;
        }
        if (ok) continue;
        // The text lies beyond the edge: the edge moves out past the text,
        // keeping its direction.
        const bool across = is_horizontal_boundary(side.position);
        switch (side.position) {
            case geometric::LEFT_BOUNDARY: expansion.expand_left(side.anchor); break;
            case geometric::RIGHT_BOUNDARY: expansion.expand_right(side.anchor); break;
            case geometric::TOP_BOUNDARY: expansion.expand_top(side.anchor); break;
            default: expansion.expand_bottom(side.anchor); break;
        }
        const geometric::VanishingPointOutput& direction = across ? horizontal : vertical;
        const Geocoordinate<double>& point = across ? vanishing_points.horizontal_point : vanishing_points.vertical_point;
        if (direction.has_vanishing_point)
            line = geometric::corner_line_through(side.anchor, point);
        else if (!across && (line.b == 0.0 || direction.angle == 90.0f))
            line = geometric::corner_vertical_line(side.anchor);
        else
            line = geometric::corner_line_at_angle(side.anchor, direction.angle);
    }
    geometric::BoundingLinesOperator::obtainBoundingLineControlPoints(guarded, bounding_line_property, corners);
    return edge_result_is_preferred;
}

}  // namespace hybrid

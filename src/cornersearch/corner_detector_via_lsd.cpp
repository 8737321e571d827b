// The line stage: completing an earlier stage's boundaries with segments, or
// corners from the segments' vanishing points and extreme points.
#include "cornersearch/corner_detector_via_lsd.h"

#include "vanishing/corner_calculator_mixed_from_anchor_points.h"

namespace geometric_test {
namespace {

// A completing line must leave the set this confident: a barely passing
// fourth side is more likely a line of the page's content.
constexpr double kLeastCompletionConfidence = 50.0;

bool holds(const BoundingLineArrayWrapper& wrapper, geometric::BoundingLinePosition position) {
    return wrapper.boundaries[position].is_valid();
}

// Whether a point lies on the page's side of a reference boundary, or on it.
// Written for lines with b = -1, or (1, 0, -x): a left or right line turned
// past the vertical (angle above 90) flips the sign of its side.
bool on_page_side(const geometric::GeolineBase& line, int position, const geometric::Geocoordinate<int>& p) {
    const double value = line.point_value(p);
    switch (position) {
        case geometric::LEFT_BOUNDARY: return line.line_angle() <= 90.0 ? value >= 0.0 : value <= 0.0;
        case geometric::RIGHT_BOUNDARY: return line.line_angle() <= 90.0 ? value <= 0.0 : value >= 0.0;
        case geometric::TOP_BOUNDARY: return value <= 0.0;
        case geometric::BOTTOM_BOUNDARY: return value >= 0.0;
        default: return true;
    }
}

}  // namespace

CornerDetectorViaLsd::CornerDetectorViaLsd(BoundingLineArrayWrapper& wrapper_)
    : image(wrapper_.image), wrapper(&wrapper_) {
    generate_line_segements();
}

void CornerDetectorViaLsd::generate_line_segements() { manager.generate(*image); }

int CornerDetectorViaLsd::pick_up_boundaries() {
    // 1. The segments and their families.
    manager.formulate_lines();

    // 2. Only when the earlier stage bounded the page above and below but
    //    not on both sides is the vertical family cut to its consensus.
    const BoundingLineArrayWrapper* previous = wrapper->previous_wrapper.get();
    const bool keep_inliers_only = previous != nullptr &&
                                   (!holds(*previous, geometric::LEFT_BOUNDARY) ||
                                    !holds(*previous, geometric::RIGHT_BOUNDARY)) &&
                                   holds(*previous, geometric::TOP_BOUNDARY) &&
                                   holds(*previous, geometric::BOTTOM_BOUNDARY);

    // 3. Three trusted boundaries: the longest segments of the missing side's
    //    family are offered in turn; a refused one is rolled back.
    if (previous != nullptr && previous->can_be_trusted_as_previous_wrapper()) {
        for (int k = 0; k < 4; ++k) {
            wrapper->boundaries[k] = previous->boundaries[k];
            wrapper->vertices[k] = previous->vertices[k];
        }
        geometric::BoundingLinePosition missing = geometric::INVALID_BOUNDARY;
        for (geometric::BoundingLinePosition side : {geometric::LEFT_BOUNDARY, geometric::RIGHT_BOUNDARY,
                                                     geometric::TOP_BOUNDARY, geometric::BOTTOM_BOUNDARY}) {
            if (!holds(*wrapper, side)) {
                missing = side;
                break;
            }
        }
        const geometric::Direction direction = geometric::is_horizontal_boundary(missing)
                                                   ? geometric::HORIZONTAL_DIRECTION
                                                   : geometric::VERTICAL_DIRECTION;
        manager.sort_based_on_length(direction);
        const std::vector<LineSegmentIndex>& family =
            direction == geometric::HORIZONTAL_DIRECTION ? manager.horizontal_lines : manager.vertical_lines;
        for (LineSegmentIndex index : family) {
            BoundingLine candidate(missing, manager.lines[index], geometric::REGULAR_BOUNDING_LINE);
            if (wrapper->update_with_potential_boundary(candidate, false) &&
                wrapper->confidences[0] > kLeastCompletionConfidence)
                return 0;
        }
    }

    // 4. Otherwise the vanishing points of both families.
    geometric::Geocoordinate<double> horizontal, vertical;
    geometric::VanishingPointOutput horizontal_output, vertical_output;
    manager.calculate_vanishing_points(horizontal, vertical, horizontal_output, vertical_output, keep_inliers_only);
    const auto usable = [](const geometric::VanishingPointOutput& output) {
        return output.status == 1 || output.status == 2 || output.status == 4;
    };
    if (!usable(horizontal_output) || !usable(vertical_output)) return -1;

    // 5. The corners through the extreme points. Sides that come out
    //    parallel leave no corners, and the zero vertices are no page.
    return generate_boundary_corners_based_on_vps(horizontal, vertical, horizontal_output, vertical_output) ? 0 : -1;
}

bool CornerDetectorViaLsd::generate_boundary_corners_based_on_vps(
    const geometric::Geocoordinate<double>& horizontal, const geometric::Geocoordinate<double>& vertical,
    const geometric::VanishingPointOutput& horizontal_output, const geometric::VanishingPointOutput& vertical_output) {
    geometric::Geocoordinate<int> left, right, top, bottom;
    generate_anchor_points(left, right, top, bottom);
    const auto to_float = [](const geometric::Geocoordinate<int>& p) {
        return geometric::Geocoordinate<float>(static_cast<float>(p.x), static_cast<float>(p.y));
    };
    std::vector<geometric::Geocoordinate<float>> corners;
    geometric::CornerCalculatorMixedFromAnchorPoints calculator(manager.width, manager.height);
    if (!calculator.identifyInputCorners(0.0f, 90.0f, horizontal, vertical, horizontal_output.status == 1,
                                         vertical_output.status == 1, to_float(left), to_float(right), to_float(top),
                                         to_float(bottom), corners))
        return false;
    for (int k = 0; k < 4; ++k) wrapper->vertices[k] = corners[k];
    return true;
}

void CornerDetectorViaLsd::generate_anchor_points(geometric::Geocoordinate<int>& left,
                                                  geometric::Geocoordinate<int>& right,
                                                  geometric::Geocoordinate<int>& top,
                                                  geometric::Geocoordinate<int>& bottom) {
    left = right = top = bottom = geometric::Geocoordinate<int>();
    geometric::GeolineBase first_line, second_line;
    int first_position = -1, second_position = -1;
    const BoundingLineArrayWrapper* previous = wrapper->previous_wrapper.get();
    const auto ends_of = [](const BoundingLine& boundary, geometric::Geocoordinate<int>& first,
                            geometric::Geocoordinate<int>& second) {
        first = boundary.end_point(0);
        second = boundary.end_point(1);
    };
    geometric::Geocoordinate<int> p, q;
    if (previous != nullptr && holds(*previous, geometric::TOP_BOUNDARY) &&
        holds(*previous, geometric::BOTTOM_BOUNDARY)) {
        const BoundingLine& top_line = previous->boundaries[geometric::TOP_BOUNDARY];
        first_line = top_line.line;
        second_line = previous->boundaries[geometric::BOTTOM_BOUNDARY].line;
        first_position = geometric::TOP_BOUNDARY;
        second_position = geometric::BOTTOM_BOUNDARY;
        ends_of(top_line, p, q);
        top = p.y < q.y ? p : q;
        left = p.x < q.x ? p : q;
        right = p.x > q.x ? p : q;
    } else if (previous != nullptr && holds(*previous, geometric::LEFT_BOUNDARY) &&
               holds(*previous, geometric::RIGHT_BOUNDARY)) {
        const BoundingLine& left_line = previous->boundaries[geometric::LEFT_BOUNDARY];
        first_line = left_line.line;
        second_line = previous->boundaries[geometric::RIGHT_BOUNDARY].line;
        first_position = geometric::LEFT_BOUNDARY;
        second_position = geometric::RIGHT_BOUNDARY;
        ends_of(left_line, p, q);
        bottom = p.y > q.y ? p : q;
        left = p.x < q.x ? p : q;
        right = p.x > q.x ? p : q;
    }
    help_fun_generate_anchor_points(manager.horizontal_lines, left, right, top, bottom, first_line, second_line,
                                    first_position, second_position);
    help_fun_generate_anchor_points(manager.vertical_lines, left, right, top, bottom, first_line, second_line,
                                    first_position, second_position);
}

void CornerDetectorViaLsd::help_fun_generate_anchor_points(
    const std::vector<LineSegmentIndex>& family, geometric::Geocoordinate<int>& left,
    geometric::Geocoordinate<int>& right, geometric::Geocoordinate<int>& top, geometric::Geocoordinate<int>& bottom,
    const geometric::GeolineBase& first_line, const geometric::GeolineBase& second_line, int first_position,
    int second_position) {
    const bool has_references = first_position != -1 && second_position != -1;
    for (LineSegmentIndex index : family) {
        if (manager.is_near_boundary(index)) continue;
        if (has_references) {
            bool inside = true;
            for (const geometric::Geocoordinate<int>& end : manager.lines[index].points)
                inside = inside && on_page_side(first_line, first_position, end) &&
                         on_page_side(second_line, second_position, end);
            if (!inside) continue;
        }
        geometric::Geocoordinate<int> point;
        if (manager.left_most(index, point) < left.x || left.x == 0) left = point;
        if (manager.right_most(index, point) > right.x || right.x == 0) right = point;
        if (manager.top_most(index, point) < top.y || top.y == 0) top = point;
        if (manager.bottom_most(index, point) > bottom.y || bottom.y == 0) bottom = point;
    }
}

}  // namespace geometric_test

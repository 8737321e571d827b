// The classic edge route from Hough lines to corners.
#include "registration/edge_registration.h"

#include "cornersearch/bounding_line_creator.h"
#include "edgelines/bounding_lines_operator.h"
#include "textgeometry/direction.h"
#include "vanishing/vanishing_point_codes.h"
#include "vanishing/vpoint_bounding_line_solver.h"

namespace hybrid {

namespace {

using geometric::BoundingLine;
using geometric::RegistrationOutputType;
using geometric::VanishingPointOutput;

bool has_geometry(RegistrationOutputType r) {
    return r == geometric::REGISTRATION_TWO_VANISHING_POINTS || r == geometric::REGISTRATION_STRAIGHT_PAGE ||
           r == geometric::REGISTRATION_TWO_PARALLEL_DIRECTIONS || r == geometric::REGISTRATION_MIXED_DIRECTIONS;
}

// A direction from the solver's code: only a crossing and a parallel pair set a flag.
void set_direction(VanishingPointOutput& output, int code) {
    output.status = code;
    output.has_vanishing_point = code == geometric::VPOINT_FOUND;
    output.is_parallel = code == geometric::VPOINT_TREAT_AS_PARALLEL;
}

// The crossing of two lines of `lines` named by index; an index that names
// no line leaves no crossing.
void cross(const std::vector<BoundingLine>& lines, int first, int second, geometric::Geocoordinate<double>& point,
           VanishingPointOutput& output) {
    output.has_vanishing_point =
        first >= 0 && second >= 0 &&
        geometric::intersect_lines(lines[static_cast<std::size_t>(first)].line,
                                   lines[static_cast<std::size_t>(second)].line, point);
}

}  // namespace

EdgeRegistration::EdgeRegistration(const common::Image* image_) : geometric::ProjectiveRegistration(image_) {}

EdgeRegistration::~EdgeRegistration() {}

bool EdgeRegistration::is_straight_page(float horizontal_angle, float vertical_angle) {
    return (horizontal_angle < 0.2f || horizontal_angle > 179.8f) && vertical_angle >= 89.6f &&
           vertical_angle <= 90.4f;
}

RegistrationOutputType EdgeRegistration::getResultsFromBoundingBox() {
    geometric::VpointBoundingLinePara solver_para;
    solver_para.horizontal_parallel_disparity = para.horizontal_angle_disparity;
    solver_para.vertical_parallel_disparity = para.vertical_angle_disparity;
    geometric::VpointBoundingLineSolver solver(image->get_width(), image->get_height(), solver_para);
    const int horizontal = solver.perform_boundingline_vpoint_searching(
        bounding_lines, bounding_line_property, geometric::HORIZONTAL_DIRECTION, vanishing_points.horizontal_point);
    const int vertical = solver.perform_boundingline_vpoint_searching(
        bounding_lines, bounding_line_property, geometric::VERTICAL_DIRECTION, vanishing_points.vertical_point);
    bounding_line_property.horizontal_angle_disparity = solver.horizontal_disparity;
    bounding_line_property.vertical_angle_disparity = solver.vertical_disparity;

    set_direction(vanishing_points.horizontal, horizontal);
    set_direction(vanishing_points.vertical, vertical);
    const int parallel = geometric::VPOINT_TREAT_AS_PARALLEL;
    if (horizontal == parallel)
        vanishing_points.horizontal.angle =
            geometric::BoundingLinesOperator::getHorizontalAngle(bounding_lines, bounding_line_property);
    if (vertical == parallel)
        vanishing_points.vertical.angle =
            geometric::BoundingLinesOperator::getVerticalAngle(bounding_lines, bounding_line_property);

    const int none = geometric::VPOINT_NO_RESULT, found = geometric::VPOINT_FOUND;
    if (horizontal == found && vertical == found) return geometric::REGISTRATION_TWO_VANISHING_POINTS;
    if ((horizontal == found && vertical == parallel) || (horizontal == parallel && vertical == found))
        return geometric::REGISTRATION_MIXED_DIRECTIONS;
    if ((horizontal == found && vertical == none) || (horizontal == none && vertical == found))
        return geometric::REGISTRATION_ONE_VANISHING_POINT;
    if ((horizontal == parallel && vertical == none) || (horizontal == none && vertical == parallel))
        return geometric::REGISTRATION_ONE_PARALLEL_DIRECTION;
    if (horizontal == parallel && vertical == parallel)
        return is_straight_page(vanishing_points.horizontal.angle, vanishing_points.vertical.angle)
                   ? geometric::REGISTRATION_STRAIGHT_PAGE
                   : geometric::REGISTRATION_TWO_PARALLEL_DIRECTIONS;
    return geometric::REGISTRATION_NO_GEOMETRY;
}

RegistrationOutputType EdgeRegistration::run_registration() {
    bounding_lines.clear();
    bounding_line_property = geometric::BoundingLineProperty();
    vanishing_points = geometric::VanishingPointHorVerInfo();
    bounding_vanishing_points = geometric::VanishingPointHorVerInfo();
    corners.clear();
    output_width = 0;
    output_height = 0;

    // 1. The lines, on a copy of the record: the search turns its ratios
    //    into this image's pixels.
    geometric::CornerSearchPara search_para = corner_search_para;
    std::vector<BoundingLine> candidates;
    geometric::BoundingLineCreator::formulate_bounding_lines(search_para, *image, bounding_lines, candidates);
    geometric::BoundingLinesOperator::initializeBoundingLineProperty(bounding_lines, bounding_line_property);

    // 2. What the lines say of each direction.
    RegistrationOutputType r = getResultsFromBoundingBox();
    registration_output = r;

    // 3. The corners; their examination may drop a direction.
    if (has_geometry(r)) {
        r = obtain_corners() ? classify_vanishing_point_flags() : geometric::REGISTRATION_NO_GEOMETRY;
        registration_output = r;
    }
    // 4. No geometry: what opposite lines still say, for the text search.
    if (!has_geometry(r)) record_opposite_crossings(candidates);
    return r;
}

void EdgeRegistration::record_opposite_crossings(std::vector<BoundingLine>& candidates) {
    geometric::VanishingPointHorVerInfo& crossings = bounding_vanishing_points;
    if (candidates.size() == 4) {
        geometric::BoundingLineProperty property;
        geometric::BoundingLinesOperator::initializeBoundingLineProperty(candidates, property);
        cross(candidates, property.top_index, property.bottom_index, crossings.horizontal_point, crossings.horizontal);
        cross(candidates, property.left_index, property.right_index, crossings.vertical_point, crossings.vertical);
        return;
    }
    const VanishingPointOutput& horizontal = vanishing_points.horizontal;
    const VanishingPointOutput& vertical = vanishing_points.vertical;
    const geometric::BoundingLineProperty& property = bounding_line_property;
    const bool vertical_undecided = vertical.has_vanishing_point == vertical.is_parallel;
    const bool horizontal_undecided = horizontal.has_vanishing_point == horizontal.is_parallel;
    if (vertical_undecided && property.vertical_lines.size() == 2)
        cross(bounding_lines, property.left_index, property.right_index, crossings.vertical_point,
              crossings.vertical);
    else if (!vertical_undecided && horizontal_undecided && property.horizontal_lines.size() == 2)
        cross(bounding_lines, property.top_index, property.bottom_index, crossings.horizontal_point,
              crossings.horizontal);
}

}  // namespace hybrid

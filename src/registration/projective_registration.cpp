// Vanishing points and bounding lines to four corners, and the judgement of
// whether those corners are plausible.
#include "registration/projective_registration.h"

#include <cmath>

#include "cornersearch/corner_examiner.h"
#include "correction/projective_correction.h"
#include "edgelines/bounding_lines_operator.h"
#include "textgeometry/direction.h"
#include "vanishing/corner_calculator_parallel.h"
#include "vanishing/corner_calculator_parallel_mixed_projective.h"
#include "vanishing/corner_calculator_projective.h"

namespace geometric {

namespace {

// Smallest corner angles, degrees: virtual corners come from directions alone
// and are allowed to be sharper than corners found on the page's edges.
constexpr double kVirtualCornerMinimumAngle = 23.0;
constexpr double kEdgeCornerMinimumAngle = 40.0;
// A smaller output is tolerated this many times more than a larger one.
constexpr float kShrinkTolerance = 1.5f;

float side_length(const Geocoordinate<float>& p, const Geocoordinate<float>& q) {
    const float dx = p.x - q.x;
    const float dy = p.y - q.y;
    return static_cast<float>(std::sqrt(static_cast<double>(dx * dx + dy * dy)));
}

// Longer over shorter, single precision.
float side_ratio(float first, float second) {
    return first > second ? first / second : second / first;
}

int flag_count(const VanishingPointHorVerInfo& v) {
    return static_cast<int>(v.horizontal.has_vanishing_point) + static_cast<int>(v.horizontal.is_parallel) +
           static_cast<int>(v.vertical.has_vanishing_point) + static_cast<int>(v.vertical.is_parallel);
}

}  // namespace

ProjectiveRegistration::ProjectiveRegistration(const common::Image* image_)
    : Registration(image_), registration_output(REGISTRATION_NO_GEOMETRY), output_width(0), output_height(0) {}

ProjectiveRegistration::~ProjectiveRegistration() {}

float ProjectiveRegistration::calculate_size_ratio(int output_dimension, int image_dimension) {
    const float o = static_cast<float>(output_dimension);
    const float i = static_cast<float>(image_dimension);
    if (o > i) return o / i;
    return i / o / kShrinkTolerance;
}

RegistrationOutputType ProjectiveRegistration::classify_vanishing_point_flags(const VanishingPointHorVerInfo& info,
                                                                              double horizontal_disparity,
                                                                              double vertical_disparity) {
    const bool hor_vp = info.horizontal.has_vanishing_point;
    const bool hor_parallel = info.horizontal.is_parallel;
    const bool ver_vp = info.vertical.has_vanishing_point;
    const bool ver_parallel = info.vertical.is_parallel;

    if (hor_vp && ver_vp) return REGISTRATION_TWO_VANISHING_POINTS;
    if ((hor_vp || ver_vp) && (hor_parallel || ver_parallel)) return REGISTRATION_MIXED_DIRECTIONS;
    if (hor_parallel && ver_parallel) {
        const double t_h = horizontal_disparity + 0.1;
        const double t_v = vertical_disparity + 0.1;
        const double hor_angle = info.horizontal.angle;
        const double ver_angle = info.vertical.angle;
        const bool horizontal_straight = hor_angle < t_h || hor_angle > 180.0 - t_h;
        const bool vertical_straight = ver_angle >= 90.0 - t_v && ver_angle <= 90.0 + t_v;
        return horizontal_straight && vertical_straight ? REGISTRATION_STRAIGHT_PAGE
                                                        : REGISTRATION_TWO_PARALLEL_DIRECTIONS;
    }
    if (hor_vp || ver_vp) return REGISTRATION_ONE_VANISHING_POINT;
    if (hor_parallel || ver_parallel) return REGISTRATION_ONE_PARALLEL_DIRECTION;
    return REGISTRATION_NO_GEOMETRY;
}

RegistrationOutputType ProjectiveRegistration::classify_vanishing_point_flags() const {
    return classify_vanishing_point_flags(vanishing_points, para.horizontal_angle_disparity,
                                          para.vertical_angle_disparity);
}

bool ProjectiveRegistration::transform_vp_2_vc() {
    if (image == nullptr) return false;
    const int width = image->get_width();
    const int height = image->get_height();
    const VanishingPointOutput& horizontal = vanishing_points.horizontal;
    const VanishingPointOutput& vertical = vanishing_points.vertical;

    // 1. No vanishing point: parallel directions, unless there is nothing to
    //    show or the page is straight already.
    if (!horizontal.has_vanishing_point && !vertical.has_vanishing_point) {
        if (registration_output < 0 || registration_output == REGISTRATION_STRAIGHT_PAGE) return false;
        CornerCalculatorParallel calculator(width, height);
        return calculator.estimate_parallel_virtual_corners(horizontal.is_parallel, vertical.is_parallel,
                                                            horizontal.angle, vertical.angle, corners);
    }
    // 2. Mixed: the direction with a vanishing point, the other one's angle.
    if (registration_output == REGISTRATION_MIXED_DIRECTIONS) {
        CornerCalculatorParallelMixedProjective calculator(width, height);
        if (horizontal.has_vanishing_point)
            return calculator.estimate_mixed_virtual_corners(HORIZONTAL_DIRECTION, vanishing_points.horizontal_point,
                                                             corners, vertical.angle);
        return calculator.estimate_mixed_virtual_corners(VERTICAL_DIRECTION, vanishing_points.vertical_point,
                                                         corners, horizontal.angle);
    }
    // 3. One or two vanishing points.
    CornerCalculatorProjective calculator(width, height);
    return calculator.estimate_virtual_corners(vanishing_points.horizontal_point, vanishing_points.vertical_point,
                                               horizontal.has_vanishing_point, vertical.has_vanishing_point, corners);
}

bool ProjectiveRegistration::obtain_virtual_corners() {
    if (!transform_vp_2_vc()) {
        registration_output = REGISTRATION_NO_GEOMETRY;
        return false;
    }
    return examine_virtual_corners();
}

bool ProjectiveRegistration::examine_virtual_corners() {
    if (!CornerExaminer::check_constrains(corners, kVirtualCornerMinimumAngle) || image == nullptr) {
        registration_output = REGISTRATION_VIRTUAL_CORNERS_REJECTED;
        return false;
    }
    calculate_output_dimension();
    const int flags_before = flag_count(vanishing_points);

    // The width is shaped by the vertical family, the height by the horizontal one.
    int dropped = 0;
    if (calculate_size_ratio(output_width, image->get_width()) > para.maximum_size_ratio) {
        clear_vertical_flags();
        ++dropped;
    }
    if (calculate_size_ratio(output_height, image->get_height()) > para.maximum_size_ratio) {
        clear_horizontal_flags();
        ++dropped;
    }
    if (dropped == 0) {
        registration_output = REGISTRATION_TWO_VANISHING_POINTS;
        return true;
    }
    // The comparison counts dropped dimensions against set flags, as it always
    // has: a single flag whose cross dimension is dropped ends here too.
    if (flags_before != dropped) return transform_vp_2_vc();
    registration_output = REGISTRATION_VIRTUAL_CORNERS_REJECTED;
    return false;
}

bool ProjectiveRegistration::otain_edge_corners() {
    if (!perform_edge_corner_searching()) return false;
    if (!CornerExaminer::check_constrains(corners, kEdgeCornerMinimumAngle) || image == nullptr) return false;

    const float top = side_length(corners[0], corners[1]);
    const float bottom = side_length(corners[3], corners[2]);
    const float left = side_length(corners[0], corners[3]);
    const float right = side_length(corners[1], corners[2]);
    const float r_h = side_ratio(top, bottom);
    const float r_v = side_ratio(left, right);
    calculate_output_dimension();

    const float limit = para.maximum_size_ratio;
    if (calculate_size_ratio(output_width, image->get_width()) > limit || r_h > 2.0f * limit)
        clear_vertical_flags();
    if (calculate_size_ratio(output_height, image->get_height()) > limit || r_v > 2.0f * limit) {
        clear_horizontal_flags();
        return vanishing_points.vertical.has_vanishing_point || vanishing_points.vertical.is_parallel;
    }
    return flag_count(vanishing_points) > 0;
}

bool ProjectiveRegistration::obtain_corners() {
    const bool found = para.use_edge_corners ? otain_edge_corners() : obtain_virtual_corners();
    if (!found) corners.clear();
    return found;
}

bool ProjectiveRegistration::perform_edge_corner_searching() {
    if (bounding_lines.empty() || image == nullptr) return false;

    if (bounding_lines.size() < 4) {
        const double right_x = image->get_width() - 1;
        const double bottom_y = image->get_height() - 1;
        struct BorderLine {
            BoundingLinePosition position;
            int* index;
            std::vector<int>* family;
            GeolineBase line;
        };
        BoundingLineProperty& property = bounding_line_property;
        const BorderLine borders[] = {
            {LEFT_BOUNDARY, &property.left_index, &property.vertical_lines, GeolineBase(1.0, 0.0, 0.0)},
            {RIGHT_BOUNDARY, &property.right_index, &property.vertical_lines, GeolineBase(1.0, 0.0, -right_x)},
            {TOP_BOUNDARY, &property.top_index, &property.horizontal_lines, GeolineBase(0.0, -1.0, 0.0)},
            {BOTTOM_BOUNDARY, &property.bottom_index, &property.horizontal_lines, GeolineBase(0.0, -1.0, bottom_y)},
        };
        // The new line takes its side and is indexed, so that the crossings
        // below find it like any line found in the image.
        for (const BorderLine& border : borders) {
            if (*border.index != -1) continue;
            BoundingLine line;
            line.position = border.position;
            line.line = border.line;
            *border.index = static_cast<int>(bounding_lines.size());
            border.family->push_back(*border.index);
            bounding_lines.push_back(line);
        }
    }
    BoundingLinesOperator::obtainBoundingLineControlPoints(bounding_lines, bounding_line_property, corners);
    return true;
}

void ProjectiveRegistration::calculate_output_dimension() {
    ProjectiveCorrection::calculate_output_dimension(corners, output_width, output_height);
}

void ProjectiveRegistration::clear_horizontal_flags() {
    vanishing_points.horizontal.has_vanishing_point = false;
    vanishing_points.horizontal.is_parallel = false;
}

void ProjectiveRegistration::clear_vertical_flags() {
    vanishing_points.vertical.has_vanishing_point = false;
    vanishing_points.vertical.is_parallel = false;
}

}  // namespace geometric

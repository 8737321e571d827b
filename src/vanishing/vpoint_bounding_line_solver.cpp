// The plausibility of a pair of opposite page edges, and their crossing.
#include "vanishing/vpoint_bounding_line_solver.h"

#include <cmath>

#include "edgelines/line_angle_comparator.h"
#include "vanishing/vanishing_point_codes.h"

namespace geometric {

namespace {

// Top and bottom edges this far apart, as a share of the height, may differ
// in angle by the extra allowance: perspective turns distant edges more.
constexpr double kFarApartRatio = 0.65;
constexpr float kFarApartAllowance = 5.0f;

}  // namespace

VpointBoundingLineSolver::VpointBoundingLineSolver(int image_width, int image_height,
                                                   const VpointBoundingLinePara& para)
    : image_width(image_width), image_height(image_height), para(para) {}

int VpointBoundingLineSolver::perform_boundingline_vpoint_searching(const std::vector<BoundingLine>& lines,
                                                                    BoundingLineProperty& property,
                                                                    Direction direction,
                                                                    Geocoordinate<double>& point) {
    const std::vector<int>& pair =
        direction == VERTICAL_DIRECTION ? property.vertical_lines : property.horizontal_lines;
    if (pair.size() != 2) return VPOINT_NO_RESULT;
    const BoundingLine& first = lines[static_cast<std::size_t>(pair[0])];
    const BoundingLine& second = lines[static_cast<std::size_t>(pair[1])];

    if (direction == VERTICAL_DIRECTION) {
        if (!check_vertical_line_angle_disparity(first, second)) return VPOINT_NO_RESULT;
        property.vertical_intercept_disparity =
            std::fabs(static_cast<float>(first.line.x_at(0.0)) - static_cast<float>(second.line.x_at(0.0)));
        if (para.vertical_parallel_disparity >= vertical_disparity) return VPOINT_TREAT_AS_PARALLEL;
    } else {
        if (!check_horizontal_line_angle_disparity(first.line, second.line, property)) return VPOINT_NO_RESULT;
        if (para.horizontal_parallel_disparity >= horizontal_disparity) return VPOINT_TREAT_AS_PARALLEL;
    }
    // Lines that pass the parallel test yet do not cross are parallel all the same.
    return intersect_lines(first.line, second.line, point) ? VPOINT_FOUND : VPOINT_TREAT_AS_PARALLEL;
}

bool VpointBoundingLineSolver::check_horizontal_line_angle_disparity(const GeolineBase& first,
                                                                     const GeolineBase& second,
                                                                     BoundingLineProperty& property) {
    const float separation =
        std::fabs(static_cast<float>(first.y_at(0.0)) - static_cast<float>(second.y_at(0.0)));
    property.horizontal_intercept_disparity = separation;
    const float allowance = separation > kFarApartRatio * image_height ? kFarApartAllowance : 0.0f;
    const float first_angle = static_cast<float>(first.line_angle());
    const float second_angle = static_cast<float>(second.line_angle());
    const float difference = std::fabs(first_angle - second_angle);
    if (difference > 90.0f) {
        horizontal_disparity = 180.0f - difference;
        return para.horizontal_obtuse_angle_limit + allowance > horizontal_disparity;
    }
    horizontal_disparity = difference;
    return para.horizontal_angle_limit + allowance > difference;
}

bool VpointBoundingLineSolver::check_vertical_line_angle_disparity(const BoundingLine& first,
                                                                   const BoundingLine& second) {
    const float first_angle = static_cast<float>(first.line.line_angle());
    const float second_angle = static_cast<float>(second.line.line_angle());
    bool same_side = false;
    vertical_disparity = static_cast<float>(
        LineAngleComparator::calculate_vertical_disparity_difference(first_angle, second_angle, same_side));
    const bool large = is_large_vertical_blob(first, second);
    const float parallel_limit = large ? para.large_blob_parallel_limit : para.small_blob_parallel_limit;
    const float angle_limit = large ? para.large_blob_angle_limit : para.small_blob_angle_limit;
    if (same_side) return parallel_limit > vertical_disparity;
    if (!(angle_limit > vertical_disparity)) return false;
    // Edges leaning towards each other converge even when their leans cancel
    // in the measure: keep the pair above the parallel test so it is crossed.
    vertical_disparity = 2.0f * para.vertical_parallel_disparity;
    return true;
}

bool VpointBoundingLineSolver::is_large_vertical_blob(const BoundingLine& first, const BoundingLine& second) const {
    const float height = static_cast<float>(image_height);
    const float least = para.large_blob_length_ratio * height;
    const float l1 = static_cast<float>(first.segment_length);
    const float l2 = static_cast<float>(second.segment_length);
    if (l1 > least && l2 > least) return true;
    return l1 + l2 > height * para.large_blob_sum_ratio && l1 > 0.5f * least && l2 > 0.5f * least;
}

}  // namespace geometric

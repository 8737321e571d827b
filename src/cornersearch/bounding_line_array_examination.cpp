// Whether the boundary array holds a page: the grey test on each boundary and
// the decisions for four, two crossing, or a single boundary.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "cornersearch/bounding_line_array_wrapper.h"

namespace geometric_test {

using geometric::BoundingLinePosition;
using geometric::Geocoordinate;

namespace {

// Pixels between the boundary and each of its two sample rows.
constexpr int kGrayOffset = 7;
// A list without samples gives this disparity: nothing speaks against the boundary.
constexpr int kUnmeasuredDisparity = 1000;
// Top and bottom this close in angle make the set regular enough to forgive a grey failure.
constexpr double kForgivingPairAngle = 5.0;
constexpr double kForgivingConfidence = 70.0;

int median(std::vector<int>& values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Truncates toward zero like a cast, but keeps a coordinate that no int can
// hold (a line parallel to the walk) out of the image instead of faulting.
bool truncate_coordinate(double value, int& coordinate) {
    if (!(value > -1e9 && value < 1e9)) return false;
    coordinate = static_cast<int>(value);
    return true;
}

}  // namespace

bool BoundingLineArrayWrapper::examine_gray_disparity(BoundingLinePosition position, int& disparity) const {
    if (position < 0 || position > 3) return true;
    const BoundingLine& boundary = slot(position);
    if (!boundary.is_valid()) return true;

    std::vector<int> first;   // outside for left and top
    std::vector<int> second;  // inside for left and top
    const Geocoordinate<int> start = boundary.end_point(0);
    const Geocoordinate<int> end = boundary.end_point(1);
    const geometric::GeolineBase& line = boundary.line;
    if (image != nullptr) {
        if (geometric::is_horizontal_boundary(position)) {
            for (int x = std::max(start.x, 0); x <= end.x && x < width; ++x) {
                int y = 0;
                if (!truncate_coordinate(-(line.a * x + line.c) / line.b, y)) continue;
                if (y - kGrayOffset >= 0 && y + kGrayOffset < height) {
                    first.push_back(static_cast<int>(image->get_pixel(x, y - kGrayOffset)));
                    second.push_back(static_cast<int>(image->get_pixel(x, y + kGrayOffset)));
                }
            }
        } else {
            for (int y = std::max(start.y, 0); y <= end.y && y < height; ++y) {
                int x = 0;
                if (!truncate_coordinate(-(line.b * y + line.c) / line.a, x)) continue;
                if (x - kGrayOffset >= 0 && x + kGrayOffset < width) {
                    first.push_back(static_cast<int>(image->get_pixel(x - kGrayOffset, y)));
                    second.push_back(static_cast<int>(image->get_pixel(x + kGrayOffset, y)));
                }
            }
        }
    }
    if (first.empty() || second.empty()) {
        disparity = kUnmeasuredDisparity;
        return true;
    }
    const int outer_first = median(first);
    const int outer_second = median(second);
    const bool leading = position == geometric::LEFT_BOUNDARY || position == geometric::TOP_BOUNDARY;
    disparity = leading ? outer_second - outer_first : outer_first - outer_second;
    return disparity >= 1;
}

bool BoundingLineArrayWrapper::examine_gray_disparity(bool strict) {
    gray_failures = 0.0f;
    const bool all_valid = are_four_boundaries_valid();
    int disparities[4] = {100, 100, 100, 100};
    for (int k = 0; k < 4; ++k) {
        examine_gray_disparity(static_cast<BoundingLinePosition>(k), disparities[k]);
    }
    // The magnitude decides here, so a boundary with a strong step the wrong
    // way round passes this test though it fails the single one.
    bool failing[4];
    int n = 0;
    for (int k = 0; k < 4; ++k) {
        failing[k] = std::abs(disparities[k]) <= gray_disparity_limit;
        n += failing[k] ? 1 : 0;
    }
    if (n == 0) return true;
    gray_failures = static_cast<float>(n);

    if (!strict && boundary_pair_angle_disparity(geometric::HORIZONTAL_DIRECTION) <= kForgivingPairAngle) {
        const int forgiven = all_valid ? 3 : 2;
        if (n < forgiven && current_confidence() >= kForgivingConfidence) return true;
    }
    for (int k = 0; k < 4; ++k) {
        if (failing[k]) boundaries[k].clear();
    }
    return false;
}

bool BoundingLineArrayWrapper::is_single_boundary_ready() {
    if (calculate_valid_boundary_number() != 1) return false;
    for (int k = 0; k < 4; ++k) {
        int disparity = -1;
        examine_gray_disparity(static_cast<BoundingLinePosition>(k), disparity);
        if (disparity == -1) continue;
        if (std::abs(disparity) > gray_disparity_limit) {
            boundaries[k].type = geometric::WEAK_BOUNDING_LINE;
            return true;
        }
        return false;
    }
    return false;
}

bool BoundingLineArrayWrapper::is_cross_boundaries_ready() {
    current_confidence() = 100.0;
    if (!does_cross_boundary_exist() || !is_large_cross_boundary_angle() || !check_cross_angles_disparity()) {
        return false;
    }
    if (!is_distant_boundary_pair()) return false;
    // A failed corner may have dropped one boundary; what is left gets one more try.
    if (!is_cross_boundary_corner_correct()) {
        if (!does_cross_boundary_exist() || !is_cross_boundary_corner_correct()) return false;
    }
    if (is_four_boundary_examined) return true;
    if (!examine_gray_disparity(false)) return does_cross_boundary_exist();
    return true;
}

bool BoundingLineArrayWrapper::is_four_boundaries_ready(bool keep_small_polygon, bool strict_gray) {
    is_four_boundary_examined = false;
    current_confidence() = 100.0;
    if (!are_four_boundaries_valid()) return false;
    calculate_vertex();
    if (!is_large_angle()) return false;
    const bool large = is_large_polygon();
    if (!is_correct_corners() || !check_four_angle_disparity() || !is_distant_boundary_pair()) return false;
    is_four_boundary_examined = true;
    if (!examine_gray_disparity(strict_gray)) return false;
    if (large || !keep_small_polygon) return true;
    keep_as_candidate_boundaries();
    return false;
}

}  // namespace geometric_test

// The predicates of the boundary array that clear the boundary at fault when
// they fail, so that the caller can go on with the rest of the set.
#include <algorithm>
#include <cmath>

#include "cornersearch/bounding_line_array_wrapper.h"
#include "edgelines/line_angle_comparator.h"
#include "textgeometry/geoline_base.h"

namespace geometric_test {

using geometric::BoundingLinePosition;
using geometric::Geocoordinate;

namespace {

const BoundingLinePosition kCorners[4] = {geometric::LEFT_BOUNDARY, geometric::TOP_BOUNDARY,
                                          geometric::RIGHT_BOUNDARY, geometric::BOTTOM_BOUNDARY};

double point_distance(const Geocoordinate<int>& p, const Geocoordinate<int>& q) {
    const double dx = static_cast<double>(p.x) - q.x;
    const double dy = static_cast<double>(p.y) - q.y;
    return std::sqrt(dx * dx + dy * dy);
}

}  // namespace

bool BoundingLineArrayWrapper::is_large_cross_boundary_angle() {
    for (BoundingLinePosition corner : kCorners) {
        BoundingLine* first = nullptr;
        BoundingLine* second = nullptr;
        if (!obtain_cross_boundaries(corner, &first, &second)) continue;
        const double d = geometric::LineAngleComparator::calculate_disparity(first->line, second->line);
        if (minimum_corner_angle > d) {
            if (second->polyline_length() > first->polyline_length()) {
                first->clear();
            } else {
                second->clear();
            }
            return false;
        }
    }
    return true;
}

bool BoundingLineArrayWrapper::is_large_angle() { return is_large_cross_boundary_angle(); }

bool BoundingLineArrayWrapper::is_distant_boundary_pair() {
    if (slot(geometric::TOP_BOUNDARY).is_valid() && slot(geometric::BOTTOM_BOUNDARY).is_valid()) {
        const float d = boundary_pair_distance(geometric::HORIZONTAL_DIRECTION) / static_cast<float>(height);
        if (distance_ratio > d) {
            inferior_boundary(geometric::HORIZONTAL_DIRECTION).clear();
            return does_cross_boundary_exist();
        }
    }
    if (!slot(geometric::LEFT_BOUNDARY).is_valid() || !slot(geometric::RIGHT_BOUNDARY).is_valid()) return true;
    const float d = boundary_pair_distance(geometric::VERTICAL_DIRECTION) / static_cast<float>(width);
    if (distance_ratio > d) {
        inferior_boundary(geometric::VERTICAL_DIRECTION).clear();
        return does_cross_boundary_exist();
    }
    return true;
}

bool BoundingLineArrayWrapper::is_small_horizontal_angle_disparity() {
    if (!slot(geometric::TOP_BOUNDARY).is_valid() || !slot(geometric::BOTTOM_BOUNDARY).is_valid()) return true;
    if (boundary_pair_angle_disparity(geometric::HORIZONTAL_DIRECTION) <= horizontal_angle_limit) return true;
    inferior_boundary(geometric::HORIZONTAL_DIRECTION).clear();
    return false;
}

bool BoundingLineArrayWrapper::check_four_angle_disparity() {
    // The vertical pair is looked at but deliberately never refused here.
    static_cast<void>(is_small_vertical_angle_disparity());
    return is_small_horizontal_angle_disparity();
}

bool BoundingLineArrayWrapper::is_correct_corners(BoundingLinePosition corner) {
    if (corner < 0 || corner > 3) return false;
    BoundingLine& top = slot(geometric::TOP_BOUNDARY);
    BoundingLine& bottom = slot(geometric::BOTTOM_BOUNDARY);
    BoundingLine& left = slot(geometric::LEFT_BOUNDARY);
    BoundingLine& right = slot(geometric::RIGHT_BOUNDARY);
    const bool upper = corner == 0 || corner == 1;
    const bool leftward = corner == 0 || corner == 3;
    BoundingLine& horizontal = upper ? top : bottom;
    BoundingLine& vertical = leftward ? left : right;

    // Vertex coordinates are truncated before ends are measured against them.
    const Geocoordinate<int> vertex(static_cast<int>(vertices[corner].x), static_cast<int>(vertices[corner].y));
    // The horizontal boundary's end on this corner's side: its first point on
    // the left, its second on the right; the vertical boundary's first point
    // at the top, its second at the bottom.
    const Geocoordinate<int> horizontal_end = horizontal.end_point(leftward ? 0 : 1);
    const Geocoordinate<int> vertical_end = vertical.end_point(upper ? 0 : 1);
    const bool horizontal_beyond = leftward ? vertex.x > horizontal_end.x : horizontal_end.x > vertex.x;
    const bool vertical_beyond = upper ? vertex.y > vertical_end.y : vertical_end.y > vertex.y;
    const double overshoots[2] = {horizontal_beyond ? point_distance(horizontal_end, vertex) : 0.0,
                                  vertical_beyond ? point_distance(vertical_end, vertex) : 0.0};

    for (double overshoot : overshoots) {
        if (overshoot > corner_overshoot_limit) {
            // The shorter boundary goes; at equal length the horizontal one.
            if (horizontal.polyline_length() > vertical.polyline_length()) {
                vertical.clear();
            } else {
                horizontal.clear();
            }
            return false;
        }
    }
    double& confidence = current_confidence();
    for (double overshoot : overshoots) {
        confidence = std::min(confidence, 100.0 - overshoot * 100.0 / corner_overshoot_limit);
    }
    return true;
}

bool BoundingLineArrayWrapper::is_correct_corners() {
    for (BoundingLinePosition corner : kCorners) {
        if (!is_correct_corners(corner)) return false;
    }
    return true;
}

bool BoundingLineArrayWrapper::is_cross_boundary_corner_correct(BoundingLinePosition corner) {
    BoundingLine* first = nullptr;
    BoundingLine* second = nullptr;
    if (!obtain_cross_boundaries(corner, &first, &second)) return true;
    Geocoordinate<double> point;
    if (geometric::intersect_lines(first->line, second->line, point)) {
        vertices[corner] = Geocoordinate<float>(static_cast<float>(point.x), static_cast<float>(point.y));
    }
    return is_correct_corners(corner);
}

bool BoundingLineArrayWrapper::is_cross_boundary_corner_correct() {
    for (BoundingLinePosition corner : kCorners) {
        if (!is_cross_boundary_corner_correct(corner)) return false;
    }
    return true;
}

}  // namespace geometric_test

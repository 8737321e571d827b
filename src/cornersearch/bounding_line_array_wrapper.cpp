// State of the boundary array and the measures that leave the set as it is.
#include "cornersearch/bounding_line_array_wrapper.h"

#include <algorithm>
#include <cmath>

#include "common/constants.h"
#include "edgelines/line_angle_comparator.h"
#include "textgeometry/geoline_base.h"

namespace geometric_test {

using geometric::BoundingLinePosition;
using geometric::Geocoordinate;

BoundingLineArrayWrapper::BoundingLineArrayWrapper() { initBoundingLineArray(); }

BoundingLineArrayWrapper::BoundingLineArrayWrapper(int width_, int height_) : width(width_), height(height_) {
    initBoundingLineArray();
}

BoundingLineArrayWrapper::BoundingLineArrayWrapper(const common::Image& image_, bool is_binary_contour_)
    : width(image_.get_width()), height(image_.get_height()), is_binary_contour(is_binary_contour_), image(&image_) {
    initBoundingLineArray();
}

void BoundingLineArrayWrapper::initBoundingLineArray() {
    boundaries.assign(4, BoundingLine());
    vertices.assign(4, Geocoordinate<float>());
    gray_failures = 0.0f;
    is_four_boundary_examined = false;
}

void BoundingLineArrayWrapper::clear() { initBoundingLineArray(); }

void BoundingLineArrayWrapper::clear_current_boundaries() {
    for (int k = 0; k < 4; ++k) boundaries[k].clear();
    gray_failures = 0.0f;
    is_four_boundary_examined = false;
}

double& BoundingLineArrayWrapper::current_confidence() {
    if (confidences.empty()) confidences.push_back(100.0);
    return confidences[0];
}

// ---- validity ----

bool BoundingLineArrayWrapper::are_four_boundaries_valid() const { return calculate_valid_boundary_number() == 4; }

bool BoundingLineArrayWrapper::are_four_boundaries_invalid() const { return calculate_valid_boundary_number() == 0; }

int BoundingLineArrayWrapper::calculate_valid_boundary_number() const {
    int count = 0;
    for (int k = 0; k < 4; ++k) count += boundaries[k].is_valid() ? 1 : 0;
    return count;
}

bool BoundingLineArrayWrapper::does_cross_boundary_exist() const {
    const bool vertical = slot(geometric::LEFT_BOUNDARY).is_valid() || slot(geometric::RIGHT_BOUNDARY).is_valid();
    const bool horizontal = slot(geometric::TOP_BOUNDARY).is_valid() || slot(geometric::BOTTOM_BOUNDARY).is_valid();
    return vertical && horizontal;
}

bool BoundingLineArrayWrapper::can_be_trusted_as_previous_wrapper() const {
    if (calculate_valid_boundary_number() != 3) return false;
    for (int k = 0; k < 4; ++k) {
        if (boundaries[k].type == geometric::WEAK_BOUNDING_LINE) return false;
    }
    return gray_failures < 1.0f;
}

// ---- extremes ----

void BoundingLineArrayWrapper::obtain_bounding_box(geometric::Geobox<int>& box) const {
    for (int k = 0; k < 4; ++k) {
        const BoundingLine& boundary = boundaries[k];
        if (!boundary.is_valid()) continue;
        for (std::size_t i = 0; i < 2 && i < boundary.points.size(); ++i) {
            const Geocoordinate<int>& p = boundary.points[i];
            box.left = std::min(box.left, p.x);
            box.right = std::max(box.right, p.x);
            box.top = std::min(box.top, p.y);
            box.bottom = std::max(box.bottom, p.y);
        }
    }
}

int BoundingLineArrayWrapper::vertical_left_most_x() const {
    const BoundingLine& left = slot(geometric::LEFT_BOUNDARY);
    if (!left.is_valid()) return -1;
    return std::min(left.end_point(0).x, left.end_point(1).x);
}

int BoundingLineArrayWrapper::vertical_right_most_x() const {
    const BoundingLine& right = slot(geometric::RIGHT_BOUNDARY);
    if (!right.is_valid()) return 10000;
    return std::max(right.end_point(0).x, right.end_point(1).x);
}

int BoundingLineArrayWrapper::horizontal_top_most_y() const {
    const BoundingLine& top = slot(geometric::TOP_BOUNDARY);
    if (!top.is_valid()) return -1;
    return std::min(top.end_point(0).y, top.end_point(1).y);
}

int BoundingLineArrayWrapper::horizontal_bottom_most_y() const {
    const BoundingLine& bottom = slot(geometric::BOTTOM_BOUNDARY);
    if (!bottom.is_valid()) return 10000;
    return std::max(bottom.end_point(0).y, bottom.end_point(1).y);
}

// ---- the quadrilateral ----

void BoundingLineArrayWrapper::calculate_vertex() {
    if (vertices.size() < 4) vertices.resize(4);
    for (int k = 0; k < 4; ++k) {
        Geocoordinate<double> point;
        if (geometric::intersect_lines(boundaries[k].line, boundaries[(k + 1) % 4].line, point)) {
            vertices[k] = Geocoordinate<float>(static_cast<float>(point.x), static_cast<float>(point.y));
        }
    }
}

float BoundingLineArrayWrapper::polygon_area(std::size_t start) const {
    if (vertices.size() < start + 4) return 0.0f;
    float sum = 0.0f;
    for (std::size_t k = 0; k < 4; ++k) {
        const Geocoordinate<float>& p = vertices[start + k];
        const Geocoordinate<float>& q = vertices[start + (k + 1) % 4];
        sum += p.x * q.y - q.x * p.y;
    }
    return std::fabs(sum * 0.5f);
}

bool BoundingLineArrayWrapper::is_large_polygon() const {
    const float ratio = polygon_area(0) / static_cast<float>(width * height);
    return !(0.1 > ratio);
}

void BoundingLineArrayWrapper::interior_angles(double angles[4]) const {
    for (int k = 0; k < 4; ++k) {
        const Geocoordinate<float>& vertex = vertices[k];
        const Geocoordinate<float>& previous = vertices[(k + 3) % 4];
        const Geocoordinate<float>& next = vertices[(k + 1) % 4];
        const double ux = static_cast<double>(previous.x) - vertex.x;
        const double uy = static_cast<double>(previous.y) - vertex.y;
        const double vx = static_cast<double>(next.x) - vertex.x;
        const double vy = static_cast<double>(next.y) - vertex.y;
        const double cosine = (ux * vx + uy * vy) / std::sqrt((ux * ux + uy * uy) * (vx * vx + vy * vy) + 1e-10);
        angles[k] = std::acos(std::max(-1.0, std::min(1.0, cosine))) * 180.0 / constants::kPi;
    }
}

double BoundingLineArrayWrapper::min_angle() const {
    double angles[4];
    interior_angles(angles);
    return std::min(std::min(angles[0], angles[1]), std::min(angles[2], angles[3]));
}

void BoundingLineArrayWrapper::calculate_interior_angle_disparity(double& first, double& second) const {
    double angles[4];
    interior_angles(angles);
    first = std::fabs(angles[3] - angles[2]);
    second = std::fabs(angles[1] - angles[0]);
}

bool BoundingLineArrayWrapper::check_interior_angle_disparity(double first, double second) const {
    const double m = std::max(first, second);
    const double n = std::min(first, second);
    return !((n < 1.0 ? m : m / n) > interior_angle_ratio_limit);
}

void BoundingLineArrayWrapper::calculate_gap_distance(std::vector<double>& gaps) const {
    auto gap = [](const Geocoordinate<int>& p, const Geocoordinate<int>& q) {
        const double dx = static_cast<double>(p.x) - q.x;
        const double dy = static_cast<double>(p.y) - q.y;
        return std::sqrt(dx * dx + dy * dy);
    };
    const BoundingLine& left = slot(geometric::LEFT_BOUNDARY);
    const BoundingLine& top = slot(geometric::TOP_BOUNDARY);
    const BoundingLine& right = slot(geometric::RIGHT_BOUNDARY);
    const BoundingLine& bottom = slot(geometric::BOTTOM_BOUNDARY);
    const double d0 = gap(left.end_point(1), bottom.end_point(0));
    const double d1 = gap(left.end_point(0), top.end_point(0));
    const double d2 = gap(top.end_point(1), right.end_point(0));
    const double d3 = gap(right.end_point(1), bottom.end_point(1));
    gaps.assign({std::min(d0, d1), std::min(d1, d2), std::min(d2, d3), std::min(d3, d0)});
}

bool BoundingLineArrayWrapper::is_boundary_closed_with_neighbors(const std::vector<double>& gaps,
                                                                 BoundingLinePosition position) const {
    if (position < 0 || position > 3 || gaps.size() < 4) return false;
    const double gap = gaps[position];
    return gap <= closure_gap_limit || 0.3 > gap / slot(position).polyline_length();
}

// ---- corners ----

bool BoundingLineArrayWrapper::obtain_cross_boundaries(BoundingLinePosition corner, BoundingLine** first,
                                                       BoundingLine** second) {
    static const BoundingLinePosition kPairs[4][2] = {{geometric::TOP_BOUNDARY, geometric::LEFT_BOUNDARY},
                                                      {geometric::TOP_BOUNDARY, geometric::RIGHT_BOUNDARY},
                                                      {geometric::BOTTOM_BOUNDARY, geometric::RIGHT_BOUNDARY},
                                                      {geometric::BOTTOM_BOUNDARY, geometric::LEFT_BOUNDARY}};
    if (corner < 0 || corner > 3) {
        *first = nullptr;
        *second = nullptr;
        return false;
    }
    *first = &slot(kPairs[corner][0]);
    *second = &slot(kPairs[corner][1]);
    return (*first)->is_valid() && (*second)->is_valid();
}

// ---- pairs of opposite boundaries ----

double BoundingLineArrayWrapper::boundary_pair_angle_disparity(geometric::Direction direction) const {
    if (direction == geometric::VERTICAL_DIRECTION) {
        return geometric::LineAngleComparator::calculate_disparity(slot(geometric::LEFT_BOUNDARY).line,
                                                                   slot(geometric::RIGHT_BOUNDARY).line);
    }
    return geometric::LineAngleComparator::calculate_disparity(slot(geometric::TOP_BOUNDARY).line,
                                                               slot(geometric::BOTTOM_BOUNDARY).line);
}

float BoundingLineArrayWrapper::boundary_pair_distance(geometric::Direction direction) const {
    const bool vertical = direction == geometric::VERTICAL_DIRECTION;
    const BoundingLine& first = slot(vertical ? geometric::LEFT_BOUNDARY : geometric::TOP_BOUNDARY);
    const BoundingLine& second = slot(vertical ? geometric::RIGHT_BOUNDARY : geometric::BOTTOM_BOUNDARY);
    if (!first.is_valid() || !second.is_valid() || first.points.empty()) return 0.0f;
    // The sum is an int on purpose: each distance loses its fraction as it is added.
    int sum = 0;
    for (const Geocoordinate<int>& p : first.points) sum = static_cast<int>(sum + second.line.point_distance(p));
    return static_cast<float>(sum) / static_cast<float>(first.points.size());
}

bool BoundingLineArrayWrapper::is_small_vertical_angle_disparity() const {
    if (!slot(geometric::LEFT_BOUNDARY).is_valid() || !slot(geometric::RIGHT_BOUNDARY).is_valid()) return true;
    return !(boundary_pair_angle_disparity(geometric::VERTICAL_DIRECTION) > vertical_angle_limit);
}

bool BoundingLineArrayWrapper::check_cross_angles_disparity() const { return true; }

BoundingLine& BoundingLineArrayWrapper::superior_boundary(geometric::Direction direction) {
    const bool vertical = direction == geometric::VERTICAL_DIRECTION;
    BoundingLine& first = slot(vertical ? geometric::LEFT_BOUNDARY : geometric::TOP_BOUNDARY);
    BoundingLine& second = slot(vertical ? geometric::RIGHT_BOUNDARY : geometric::BOTTOM_BOUNDARY);
    if (!first.is_valid() || !second.is_valid()) return first.is_valid() ? first : second;
    const int first_length = static_cast<int>(first.polyline_length());
    const int second_length = static_cast<int>(second.polyline_length());
    return first_length > second_length ? first : second;
}

BoundingLine& BoundingLineArrayWrapper::inferior_boundary(geometric::Direction direction) {
    const bool vertical = direction == geometric::VERTICAL_DIRECTION;
    BoundingLine& first = slot(vertical ? geometric::LEFT_BOUNDARY : geometric::TOP_BOUNDARY);
    BoundingLine& second = slot(vertical ? geometric::RIGHT_BOUNDARY : geometric::BOTTOM_BOUNDARY);
    return second.polyline_length() > first.polyline_length() ? first : second;
}

// ---- vanishing points ----

void BoundingLineArrayWrapper::obtain_vanishing_points(geometric::VanishingPointHorVerInfo& info) const {
    const BoundingLine& left = slot(geometric::LEFT_BOUNDARY);
    const BoundingLine& right = slot(geometric::RIGHT_BOUNDARY);
    if (left.is_valid() && right.is_valid()) {
        Geocoordinate<double> point;
        if (!geometric::intersect_lines(left.line, right.line, point)) {
            info.vertical.is_parallel = true;
        } else {
            info.vertical_point = point;
            // A crossing inside the frame, edges included, is no vanishing point.
            const bool inside = point.x >= 0.0 && point.x <= width && point.y >= 0.0 && point.y <= height;
            info.vertical.has_vanishing_point = !inside;
        }
    }
    const BoundingLine& top = slot(geometric::TOP_BOUNDARY);
    const BoundingLine& bottom = slot(geometric::BOTTOM_BOUNDARY);
    if (top.is_valid() && bottom.is_valid()) {
        Geocoordinate<double> point;
        if (!geometric::intersect_lines(top.line, bottom.line, point)) {
            info.horizontal.is_parallel = true;
        } else {
            // No frame test for this pair: the asymmetry is wanted.
            info.horizontal_point = point;
            info.horizontal.has_vanishing_point = true;
        }
    }
}

}  // namespace geometric_test

// The four lines of the simple corner chain.
#include "cornersearch/bounding_lines.h"

#include <cmath>

#include "textgeometry/geoline_base.h"

namespace geometric_test {

namespace {

// A segment end further than this from its corner, on the inner side, makes
// the corner implausible.
constexpr float kCornerFeasibleDistance = 50.0f;

float distance(float x0, float y0, float x1, float y1) {
    const float dx = x0 - x1;
    const float dy = y0 - y1;
    return std::sqrt(dx * dx + dy * dy);
}

float x_on_line(const geometric::GeolineBase& line, float y) {
    return static_cast<float>(-(line.b * y + line.c) / line.a);
}

float y_on_line(const geometric::GeolineBase& line, float x) {
    return static_cast<float>(-(line.a * x + line.c) / line.b);
}

}  // namespace

int BoundingLines::initialize() {
    top_index = -1;
    bottom_index = -1;
    left_index = -1;
    right_index = -1;
    if (lines.size() != 4) return -1;
    for (int i = 0; i < 4; ++i) {
        switch (lines[i].position) {
            case geometric::LEFT_BOUNDARY: left_index = i; break;
            case geometric::TOP_BOUNDARY: top_index = i; break;
            case geometric::RIGHT_BOUNDARY: right_index = i; break;
            case geometric::BOTTOM_BOUNDARY: bottom_index = i; break;
            default: break;
        }
    }
    return 0;
}

const geometric::BoundingLine* BoundingLines::line_at(int index) const {
    if (index < 0 || index >= static_cast<int>(lines.size())) return nullptr;
    return &lines[index];
}

void BoundingLines::obtain_quadrangle_vetex(std::vector<geometric::Geocoordinate<float>>& corners) const {
    corners.resize(4);
    const int pairs[4][2] = {{left_index, top_index},
                             {top_index, right_index},
                             {right_index, bottom_index},
                             {bottom_index, left_index}};
    for (int k = 0; k < 4; ++k) {
        const geometric::BoundingLine* first = line_at(pairs[k][0]);
        const geometric::BoundingLine* second = line_at(pairs[k][1]);
        if (first == nullptr || second == nullptr) continue;
        geometric::Geocoordinate<double> point;
        if (geometric::intersect_lines(first->line, second->line, point)) {
            corners[k] = geometric::Geocoordinate<float>(static_cast<float>(point.x), static_cast<float>(point.y));
        }
    }
}

void BoundingLines::obtain_quadrangle_area(const std::vector<geometric::Geocoordinate<float>>& corners, float& area) {
    float sum = 0.0f;
    const std::size_t n = corners.size();
    for (std::size_t i = 0; i < n; ++i) {
        const geometric::Geocoordinate<float>& p = corners[i];
        const geometric::Geocoordinate<float>& q = corners[(i + 1) % n];
        sum += p.x * q.y - q.x * p.y;
    }
    area = std::fabs(sum * 0.5f);
}

bool BoundingLines::is_top_corner_feasible(const geometric::Geocoordinate<float>& corner,
                                           const geometric::BoundingLine& line) {
    if (!(corner.y > line.y1)) return true;
    return distance(x_on_line(line.line, line.y1), line.y1, corner.x, corner.y) <= kCornerFeasibleDistance;
}

bool BoundingLines::is_bottom_corner_feasible(const geometric::Geocoordinate<float>& corner,
                                              const geometric::BoundingLine& line) {
    if (!(line.y2 > corner.y)) return true;
    return distance(x_on_line(line.line, line.y2), line.y2, corner.x, corner.y) <= kCornerFeasibleDistance;
}

bool BoundingLines::is_left_corner_feasible(const geometric::Geocoordinate<float>& corner,
                                            const geometric::BoundingLine& line) {
    if (!(corner.x > line.x1)) return true;
    return distance(line.x1, y_on_line(line.line, line.x1), corner.x, corner.y) <= kCornerFeasibleDistance;
}

bool BoundingLines::is_right_corner_feasible(const geometric::Geocoordinate<float>& corner,
                                             const geometric::BoundingLine& line) {
    if (!(line.x2 > corner.x)) return true;
    return distance(line.x2, y_on_line(line.line, line.x2), corner.x, corner.y) <= kCornerFeasibleDistance;
}

// Each corner is judged by the ends of its two sides that reach towards it:
// the top test takes the top end (y1) of a side line, the left test the left
// end (x1) of a top or bottom line, and so on. Given the other way round, the
// top test would read a top line's left end at both top corners, so only a
// page whose edges all rise to the right could pass, and x on a nearly level
// line is ill-conditioned; this pairing lets any page whose sides reach their
// corners pass, and still refuses a side that runs more than 50 pixels past one.
bool BoundingLines::is_top_left_corner_feasible(const geometric::Geocoordinate<float>& corner) const {
    const geometric::BoundingLine* top = line_at(top_index);
    const geometric::BoundingLine* left = line_at(left_index);
    return (left == nullptr || is_top_corner_feasible(corner, *left)) &&
           (top == nullptr || is_left_corner_feasible(corner, *top));
}

bool BoundingLines::is_top_right_corner_feasible(const geometric::Geocoordinate<float>& corner) const {
    const geometric::BoundingLine* top = line_at(top_index);
    const geometric::BoundingLine* right = line_at(right_index);
    return (right == nullptr || is_top_corner_feasible(corner, *right)) &&
           (top == nullptr || is_right_corner_feasible(corner, *top));
}

bool BoundingLines::is_bottom_right_corner_feasible(const geometric::Geocoordinate<float>& corner) const {
    const geometric::BoundingLine* bottom = line_at(bottom_index);
    const geometric::BoundingLine* right = line_at(right_index);
    return (right == nullptr || is_bottom_corner_feasible(corner, *right)) &&
           (bottom == nullptr || is_right_corner_feasible(corner, *bottom));
}

bool BoundingLines::is_bottom_left_corner_feasible(const geometric::Geocoordinate<float>& corner) const {
    const geometric::BoundingLine* bottom = line_at(bottom_index);
    const geometric::BoundingLine* left = line_at(left_index);
    return (left == nullptr || is_bottom_corner_feasible(corner, *left)) &&
           (bottom == nullptr || is_left_corner_feasible(corner, *bottom));
}

bool BoundingLines::is_bounding_box_corner_feasible(const std::vector<geometric::Geocoordinate<float>>& corners) const {
    if (corners.size() < 4) return false;
    return is_top_left_corner_feasible(corners[0]) && is_top_right_corner_feasible(corners[1]) &&
           is_bottom_right_corner_feasible(corners[2]) && is_bottom_left_corner_feasible(corners[3]);
}

}  // namespace geometric_test

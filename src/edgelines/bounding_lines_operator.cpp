// Indexing, measures and corners of a list of page-edge lines.
#include "edgelines/bounding_lines_operator.h"

#include <cmath>
#include <limits>
#include <utility>

#include "textgeometry/geoline_base.h"

namespace geometric {

namespace {

const BoundingLine* line_at(const std::vector<BoundingLine>& lines, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= lines.size()) return nullptr;
    return &lines[index];
}

float mean_angle(const std::vector<BoundingLine>& lines, const std::vector<int>& family) {
    float sum = 0.0f;
    int count = 0;
    for (int index : family) {
        const BoundingLine* line = line_at(lines, index);
        if (line == nullptr) continue;
        sum += static_cast<float>(line->line.line_angle());
        ++count;
    }
    return sum / static_cast<float>(count);
}

// The crossing in double, stored as float; a pair that does not cross leaves
// `corner` as it is.
void cross(const BoundingLine* first, const BoundingLine* second, Geocoordinate<float>& corner) {
    if (first == nullptr || second == nullptr) return;
    Geocoordinate<double> point;
    if (!intersect_lines(first->line, second->line, point)) return;
    corner.x = static_cast<float>(point.x);
    corner.y = static_cast<float>(point.y);
}

float gap(float x1, float y1, float x2, float y2) {
    const float dx = x1 - x2;
    const float dy = y1 - y2;
    return std::sqrt(dx * dx + dy * dy);
}

}  // namespace

void BoundingLinesOperator::initializeBoundingLineProperty(std::vector<BoundingLine>& lines,
                                                           BoundingLineProperty& property) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        BoundingLine& line = lines[i];
        const int index = static_cast<int>(i);
        switch (line.position) {
            case TOP_BOUNDARY:
            case BOTTOM_BOUNDARY:
                (line.position == TOP_BOUNDARY ? property.top_index : property.bottom_index) = index;
                property.horizontal_lines.push_back(index);
                if (line.x1 > line.x2) {
                    std::swap(line.x1, line.x2);
                    std::swap(line.y1, line.y2);
                }
                break;
            case LEFT_BOUNDARY:
            case RIGHT_BOUNDARY:
                (line.position == LEFT_BOUNDARY ? property.left_index : property.right_index) = index;
                property.vertical_lines.push_back(index);
                if (line.y1 > line.y2) {
                    std::swap(line.x1, line.x2);
                    std::swap(line.y1, line.y2);
                }
                break;
            default:
                break;
        }
    }
}

float BoundingLinesOperator::getHorizontalAngle(std::vector<BoundingLine>& lines, BoundingLineProperty& property) {
    return mean_angle(lines, property.horizontal_lines);
}

float BoundingLinesOperator::getVerticalAngle(std::vector<BoundingLine>& lines, BoundingLineProperty& property) {
    return mean_angle(lines, property.vertical_lines);
}

int BoundingLinesOperator::obtainSegmentLenSum(std::vector<BoundingLine>& lines) {
    int sum = 0;
    for (const BoundingLine& line : lines) sum += line.segment_length;
    return sum;
}

void BoundingLinesOperator::obtainBoundingLineControlPoints(std::vector<BoundingLine>& lines,
                                                            BoundingLineProperty& property,
                                                            std::vector<Geocoordinate<float>>& corners) {
    const BoundingLine* left = line_at(lines, property.left_index);
    const BoundingLine* right = line_at(lines, property.right_index);
    const BoundingLine* top = line_at(lines, property.top_index);
    const BoundingLine* bottom = line_at(lines, property.bottom_index);
    corners.assign(4, Geocoordinate<float>(0.0f, 0.0f));
    cross(left, top, corners[0]);
    cross(top, right, corners[1]);
    cross(right, bottom, corners[2]);
    cross(bottom, left, corners[3]);
}

float BoundingLinesOperator::obtainUnclosedDistance(std::vector<BoundingLine>& lines, BoundingLineProperty& property) {
    const BoundingLine* left = line_at(lines, property.left_index);
    const BoundingLine* right = line_at(lines, property.right_index);
    const BoundingLine* top = line_at(lines, property.top_index);
    const BoundingLine* bottom = line_at(lines, property.bottom_index);
    if (left == nullptr || right == nullptr || top == nullptr || bottom == nullptr)
        return std::numeric_limits<float>::infinity();
    float sum = gap(left->x1, left->y1, top->x1, top->y1);
    sum += gap(right->x1, right->y1, top->x2, top->y2);
    sum += gap(right->x2, right->y2, bottom->x2, bottom->y2);
    sum += gap(left->x2, left->y2, bottom->x1, bottom->y1);
    return sum;
}

}  // namespace geometric

// The page-edge line records that registrations exchange: the side a line
// stands for, the line with its supporting segment, and the index of a list.
#ifndef MORVANE_EDGELINES_BOUNDING_LINE_H
#define MORVANE_EDGELINES_BOUNDING_LINE_H

#include <cstdint>
#include <vector>

#include "textgeometry/geoline_base.h"

namespace geometric {

// Even values are vertical edges, odd values horizontal ones.
enum BoundingLinePosition : std::int32_t {
    INVALID_BOUNDARY = -1,  // no side; an empty slot of a line array
    LEFT_BOUNDARY = 0,
    TOP_BOUNDARY = 1,
    RIGHT_BOUNDARY = 2,
    BOTTOM_BOUNDARY = 3
};

// The lowest bit decides: the sides alternate vertical and horizontal round
// the page. INVALID_BOUNDARY has it set and so counts as horizontal here.
inline bool is_horizontal_boundary(BoundingLinePosition position) { return (position & 1) != 0; }

enum BoundingLineType : std::int32_t {
    REGULAR_BOUNDING_LINE = 0,  // found in the image
    WEAK_BOUNDING_LINE = 3      // single source or constructed: seeds a candidate, never trusted alone
};

// A plain record copied by value. One whose a and b are both zero was never filled.
struct BoundingLine {
    BoundingLinePosition position = LEFT_BOUNDARY;
    GeolineBase line;                 // a x + b y + c = 0
    std::int32_t support_count = 1;  // 1 in every record the system creates
    std::int32_t segment_length = 0;  // pixels of the supporting segment
    float x1 = 0.0f;                  // ends of that segment
    float y1 = 0.0f;
    float x2 = 0.0f;
    float y2 = 0.0f;
    // False when the largest connected run held under 60% of the points near the line.
    bool has_dominant_segment = true;

    bool is_filled() const { return line.a != 0.0 || line.b != 0.0; }
};

// Which line of a list is which side. The angle disparities are written by the
// bounding-line vanishing point solver; 45 means "not measured".
struct BoundingLineProperty {
    double horizontal_intercept_disparity = 0.0;
    double vertical_intercept_disparity = 0.0;
    std::vector<int> horizontal_lines;  // top and bottom, in list order
    std::vector<int> vertical_lines;    // left and right, in list order
    int left_index = -1;
    int right_index = -1;
    int top_index = -1;
    int bottom_index = -1;
    double horizontal_angle_disparity = 45.0;
    double vertical_angle_disparity = 45.0;
};

}  // namespace geometric

#endif

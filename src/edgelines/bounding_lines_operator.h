// Operations on a list of page-edge lines indexed by side: the index itself,
// mean angles, total support, the corners where neighbouring sides meet and
// the gaps between the ends that should meet there.
#ifndef MORVANE_EDGELINES_BOUNDING_LINES_OPERATOR_H
#define MORVANE_EDGELINES_BOUNDING_LINES_OPERATOR_H

#include <vector>

#include "edgelines/bounding_line.h"
#include "textgeometry/geocoordinate.h"

namespace geometric {

class BoundingLinesOperator {
public:
    // Walks `lines` by index: a top or bottom line sets top_index or
    // bottom_index, joins horizontal_lines and has its ends put in order of x
    // (x1 <= x2); a left or right line sets left_index or right_index, joins
    // vertical_lines and has its ends put in order of y. Other positions are
    // skipped. `property` is added to, not reset: hand in a fresh one.
    static void initializeBoundingLineProperty(std::vector<BoundingLine>& lines, BoundingLineProperty& property);

    // Mean angle in degrees, accumulated in single precision, of the lines of
    // horizontal_lines (vertical_lines). The plain mean, so 1 and 179 give 90;
    // an empty list gives 0 / 0, not a number.
    static float getHorizontalAngle(std::vector<BoundingLine>& lines, BoundingLineProperty& property);
    static float getVerticalAngle(std::vector<BoundingLine>& lines, BoundingLineProperty& property);

    // Integer sum of segment_length over all lines; 0 for none.
    static int obtainSegmentLenSum(std::vector<BoundingLine>& lines);

    // `corners` becomes four points: the crossings of left and top, top and
    // right, right and bottom, bottom and left, with the lines the property
    // names for each side. A pair that does not cross (parallel lines, or a
    // side whose index names no line) leaves its corner at (0, 0).
    static void obtainBoundingLineControlPoints(std::vector<BoundingLine>& lines, BoundingLineProperty& property,
                                                std::vector<Geocoordinate<float>>& corners);

    // Sum of the four gaps, in single precision, between the segment ends
    // that should meet: left (x1, y1) and top (x1, y1), right (x1, y1) and top
    // (x2, y2), right (x2, y2) and bottom (x2, y2), left (x2, y2) and bottom
    // (x1, y1), the ends ordered as initializeBoundingLineProperty left them.
    // A side whose index names no line makes the frame open: infinity.
    static float obtainUnclosedDistance(std::vector<BoundingLine>& lines, BoundingLineProperty& property);
};

}  // namespace geometric

#endif

// Operations on a list of page-edge lines indexed by side: the corners where
// neighbouring sides meet.
#ifndef MORVANE_EDGELINES_BOUNDING_LINES_OPERATOR_H
#define MORVANE_EDGELINES_BOUNDING_LINES_OPERATOR_H

#include <vector>

#include "registration/bounding_line.h"
#include "textgeometry/geocoordinate.h"

namespace geometric {

class BoundingLinesOperator {
public:
    // `corners` becomes the crossings of left and top, top and right, right
    // and bottom, bottom and left, with the lines the property names for each
    // side; a parallel pair leaves its corner at (0, 0).
    // Not built yet: `corners` is emptied, so no corner comes from lines.
    static void obtainBoundingLineControlPoints(std::vector<BoundingLine>& lines, BoundingLineProperty& property,
                                                std::vector<Geocoordinate<float>>& corners);
};

}  // namespace geometric

#endif

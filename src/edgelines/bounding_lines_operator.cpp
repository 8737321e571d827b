// Operations on a list of page-edge lines indexed by side.
#include "edgelines/bounding_lines_operator.h"

namespace geometric {

void BoundingLinesOperator::obtainBoundingLineControlPoints(std::vector<BoundingLine>&, BoundingLineProperty&,
                                                            std::vector<Geocoordinate<float>>& corners) {
    corners.clear();
}

}  // namespace geometric

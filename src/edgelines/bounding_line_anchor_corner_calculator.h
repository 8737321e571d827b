// The point where a page-edge line crosses the middle of the image, used to
// move an anchor onto a side of the page.
#ifndef MORVANE_EDGELINES_BOUNDING_LINE_ANCHOR_CORNER_CALCULATOR_H
#define MORVANE_EDGELINES_BOUNDING_LINE_ANCHOR_CORNER_CALCULATOR_H

#include "edgelines/bounding_line.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

class BoundingLineAnchorCornerCalculator {
public:
    BoundingLineAnchorCornerCalculator(int width_, int height_) : width(width_), height(height_) {}

    // Left or right side: y = (float)(height / 2), x = -(b y + c) / a, x kept
    // within [0, width - 1]. Top or bottom: x = (float)(width / 2),
    // y = -(a x + c) / b, y kept within [0, height - 1]. The bound at 0 is
    // applied first. Answers 1; any other position leaves `anchor` untouched
    // and answers 0.
    int obtainAnchorPoint(const GeolineBase& line, BoundingLinePosition position, Geocoordinate<float>& anchor) const;

    int width;
    int height;
};

}  // namespace geometric

#endif

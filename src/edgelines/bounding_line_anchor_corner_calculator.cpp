// Anchors on page-edge lines at the middle of the image.
#include "edgelines/bounding_line_anchor_corner_calculator.h"

namespace geometric {

namespace {

float keep_within(float value, float far_bound) {
    if (value < 0.0f) value = 0.0f;
    if (value > far_bound) value = far_bound;
    return value;
}

}  // namespace

int BoundingLineAnchorCornerCalculator::obtainAnchorPoint(const GeolineBase& line, BoundingLinePosition position,
                                                          Geocoordinate<float>& anchor) const {
    switch (position) {
        case LEFT_BOUNDARY:
        case RIGHT_BOUNDARY: {
            const float y = static_cast<float>(height / 2);
            const float x = static_cast<float>(-(line.b * y + line.c) / line.a);
            anchor.x = keep_within(x, static_cast<float>(width - 1));
            anchor.y = y;
            return 1;
        }
        case TOP_BOUNDARY:
        case BOTTOM_BOUNDARY: {
            const float x = static_cast<float>(width / 2);
            const float y = static_cast<float>(-(line.a * x + line.c) / line.b);
            anchor.x = x;
            anchor.y = keep_within(y, static_cast<float>(height - 1));
            return 1;
        }
        default:
            return 0;
    }
}

}  // namespace geometric

// The pixels covered by a segment's rectangle, swept column by column: for
// each whole x between the leftmost and rightmost corner, the whole y between
// the rectangle's lower and upper border at that x.
#ifndef MORVANE_LINESEGMENTS_RECTANGLE_ITERATOR_H
#define MORVANE_LINESEGMENTS_RECTANGLE_ITERATOR_H

#include "linesegments/line_segment_rect.h"

namespace geometric {

// Pixel (x, y) is inside when x lies between the corners' extreme x values
// and ceil(lower border) <= y <= floor(upper border) at that x. Pixel
// coordinates are the integer indices, as in the region images.
class RectangleIterator {
public:
    explicit RectangleIterator(const LineSegmentRect& rect);

    // Whole columns the rectangle spans, first > last when it spans none.
    double first_column() const;
    double last_column() const;
    // Lower and upper border at column x (x within the corners' span).
    double lower_border(double x) const;
    double upper_border(double x) const;

    // Corners, leftmost first, then round the rectangle so that corner 1 is
    // the neighbour with the larger y and corner 3 the one with the smaller.
    double corner_x[4];
    double corner_y[4];

private:
    static double interpolate_low(double x, double xa, double ya, double xb, double yb);
    static double interpolate_high(double x, double xa, double ya, double xb, double yb);
};

}  // namespace geometric

#endif

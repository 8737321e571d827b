// The column sweep over a segment's rectangle.
#include "linesegments/rectangle_iterator.h"

#include <cmath>

#include "linesegments/nfa_score.h"

namespace geometric {

RectangleIterator::RectangleIterator(const LineSegmentRect& rect) {
    const double dx = std::cos(rect.theta);
    const double dy = std::sin(rect.theta);
    const double half = rect.width / 2.0;
    // Round the rectangle: first end on one side, second end, second end on
    // the other side, first end on the other side.
    const double cx[4] = {rect.x1 - dy * half, rect.x2 - dy * half, rect.x2 + dy * half, rect.x1 + dy * half};
    const double cy[4] = {rect.y1 + dx * half, rect.y2 + dx * half, rect.y2 - dx * half, rect.y1 - dx * half};

    int start = 0;
    for (int i = 1; i < 4; ++i)
        if (cx[i] < cx[start]) start = i;
    int upper = (start + 1) % 4;
    int lower = (start + 3) % 4;
    if (cy[lower] > cy[upper]) {
        const int t = upper;
        upper = lower;
        lower = t;
    }
    const int order[4] = {start, upper, (start + 2) % 4, lower};
    for (int i = 0; i < 4; ++i) {
        corner_x[i] = cx[order[i]];
        corner_y[i] = cy[order[i]];
    }
}

double RectangleIterator::first_column() const { return std::ceil(corner_x[0]); }

double RectangleIterator::last_column() const { return std::floor(corner_x[2]); }

// On a vertical edge the border is the edge's lower (or upper) end.
double RectangleIterator::interpolate_low(double x, double xa, double ya, double xb, double yb) {
    if (nfa_score::nearly_equal(xa, xb)) return ya < yb ? ya : yb;
    return ya + (x - xa) * (yb - ya) / (xb - xa);
}

double RectangleIterator::interpolate_high(double x, double xa, double ya, double xb, double yb) {
    if (nfa_score::nearly_equal(xa, xb)) return ya < yb ? yb : ya;
    return ya + (x - xa) * (yb - ya) / (xb - xa);
}

double RectangleIterator::lower_border(double x) const {
    if (x < corner_x[3]) return interpolate_low(x, corner_x[0], corner_y[0], corner_x[3], corner_y[3]);
    return interpolate_low(x, corner_x[3], corner_y[3], corner_x[2], corner_y[2]);
}

double RectangleIterator::upper_border(double x) const {
    if (x < corner_x[1]) return interpolate_high(x, corner_x[0], corner_y[0], corner_x[1], corner_y[1]);
    return interpolate_high(x, corner_x[1], corner_y[1], corner_x[2], corner_y[2]);
}

}  // namespace geometric

// One detected line segment: a rectangle with its ends, its angle tolerance
// and its score.
#ifndef MORVANE_LINESEGMENTS_LINE_SEGMENT_RECT_H
#define MORVANE_LINESEGMENTS_LINE_SEGMENT_RECT_H

namespace geometric {

// Coordinates are pixels, angles radians. The field order is fixed: the
// exported family hands out x1, y1, x2, y2, width, p and log_nfa.
struct LineSegmentRect {
    double x1 = 0.0;       // first end
    double y1 = 0.0;
    double x2 = 0.0;       // second end; the way from the first end to it is `theta`
    double y2 = 0.0;
    double width = 0.0;    // across the segment
    double x = 0.0;        // centre
    double y = 0.0;
    double theta = 0.0;    // direction, radians
    double prec = 0.0;     // angle tolerance, radians
    double p = 0.0;        // prec / pi: the chance that a random pixel is aligned
    double length = 0.0;
    double log_nfa = 0.0;  // -log10 of the number of false alarms: higher is surer
};

}  // namespace geometric

#endif

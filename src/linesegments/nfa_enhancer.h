// Validation of a candidate rectangle: its score, and five variations of it
// (finer angle tolerance, narrower, one side or the other trimmed) that may
// bring the score above the detection threshold.
#ifndef MORVANE_LINESEGMENTS_NFA_ENHANCER_H
#define MORVANE_LINESEGMENTS_NFA_ENHANCER_H

#include "linesegments/image_object.h"
#include "linesegments/line_segment_rect.h"

namespace geometric {

class NFAEnhancer {
public:
    // `angles` is held by reference and must outlive the enhancer.
    NFAEnhancer(const ImageObject<double>& angles, double log_eps);

    // Tries, in order: the rectangle as it is (1), finer precision (2),
    // reduced width (3), one side trimmed (4), the other side trimmed (5),
    // finer precision again (6). Returns the number of the first step after
    // which log_nfa > log_eps, or -1. `rect` and `log_nfa` hold the best
    // variation found either way.
    int enhance_nfa(LineSegmentRect& rect, double& log_nfa) const;

    // Each of these tries `tries` variations on a working copy of `rect`,
    // keeps every one that scores strictly above log_nfa, and returns 1 when
    // log_nfa > log_eps on leaving, else -1.
    // Halves prec and p together, the working copy going on from its halved
    // state whether it improved or not.
    int enhance_via_finer_precision(LineSegmentRect& rect, double& log_nfa) const;
    // Narrows by delta while the width stays at least 0.5.
    int enhance_via_reduced_width(LineSegmentRect& rect, double& log_nfa) const;
    // Moves both ends by delta / 2 towards the side at (-sin, cos) theta and narrows by delta.
    int enhance_via_reduced_rectangle_side1(LineSegmentRect& rect, double& log_nfa) const;
    // The same towards the other side.
    int enhance_via_reduced_rectangle_side2(LineSegmentRect& rect, double& log_nfa) const;

private:
    int enhance_via_reduced_side(LineSegmentRect& rect, double& log_nfa, double side) const;
    int verdict(double log_nfa) const { return log_nfa > log_eps ? 1 : -1; }

    const ImageObject<double>& angles;
    double log_eps;
    int tries;
    double delta;
};

}  // namespace geometric

#endif

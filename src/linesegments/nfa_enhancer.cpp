// Validation of candidate rectangles by their number of false alarms.
#include "linesegments/nfa_enhancer.h"

#include <cmath>

#include "linesegments/nfa_score.h"

namespace geometric {

NFAEnhancer::NFAEnhancer(const ImageObject<double>& angles_, double log_eps_)
    : angles(angles_), log_eps(log_eps_), tries(5), delta(0.5) {}

int NFAEnhancer::enhance_nfa(LineSegmentRect& rect, double& log_nfa) const {
    log_nfa = nfa_score::rect_nfa(rect, angles);
    if (log_nfa > log_eps) return 1;
    if (enhance_via_finer_precision(rect, log_nfa) > 0) return 2;
    if (enhance_via_reduced_width(rect, log_nfa) > 0) return 3;
    if (enhance_via_reduced_rectangle_side1(rect, log_nfa) > 0) return 4;
    if (enhance_via_reduced_rectangle_side2(rect, log_nfa) > 0) return 5;
    if (enhance_via_finer_precision(rect, log_nfa) > 0) return 6;
    return -1;
}

int NFAEnhancer::enhance_via_finer_precision(LineSegmentRect& rect, double& log_nfa) const {
    LineSegmentRect trial = rect;
    for (int n = 0; n < tries; ++n) {
        trial.p /= 2.0;
        trial.prec /= 2.0;
        const double score = nfa_score::rect_nfa(trial, angles);
        if (score > log_nfa) {
            log_nfa = score;
            rect = trial;
        }
    }
    return verdict(log_nfa);
}

int NFAEnhancer::enhance_via_reduced_width(LineSegmentRect& rect, double& log_nfa) const {
    LineSegmentRect trial = rect;
    for (int n = 0; n < tries; ++n) {
        if (trial.width - delta < 0.5) continue;
        trial.width -= delta;
        const double score = nfa_score::rect_nfa(trial, angles);
        if (score > log_nfa) {
            log_nfa = score;
            rect = trial;
        }
    }
    return verdict(log_nfa);
}

int NFAEnhancer::enhance_via_reduced_side(LineSegmentRect& rect, double& log_nfa, double side) const {
    LineSegmentRect trial = rect;
    const double dx = std::cos(trial.theta);
    const double dy = std::sin(trial.theta);
    const double half_delta = delta / 2.0;
    for (int n = 0; n < tries; ++n) {
        if (trial.width - delta < 0.5) continue;
        trial.x1 += -dy * half_delta * side;
        trial.y1 += dx * half_delta * side;
        trial.x2 += -dy * half_delta * side;
        trial.y2 += dx * half_delta * side;
        trial.width -= delta;
        const double score = nfa_score::rect_nfa(trial, angles);
        if (score > log_nfa) {
            log_nfa = score;
            rect = trial;
        }
    }
    return verdict(log_nfa);
}

int NFAEnhancer::enhance_via_reduced_rectangle_side1(LineSegmentRect& rect, double& log_nfa) const {
    return enhance_via_reduced_side(rect, log_nfa, 1.0);
}

int NFAEnhancer::enhance_via_reduced_rectangle_side2(LineSegmentRect& rect, double& log_nfa) const {
    return enhance_via_reduced_side(rect, log_nfa, -1.0);
}

}  // namespace geometric

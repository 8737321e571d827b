// The answers of the vanishing-point solvers.
#ifndef MORVANE_VANISHING_VANISHING_POINT_CODES_H
#define MORVANE_VANISHING_VANISHING_POINT_CODES_H

namespace geometric {

enum VanishingPointCode : int {
    VPOINT_NO_RESULT = 0,         // no usable result
    VPOINT_FOUND = 1,             // a vanishing point, found and accepted
    VPOINT_EXACTLY_PARALLEL = 2,  // the lines do not meet: exactly parallel
    VPOINT_PREVIOUS_STANDS = 3,   // the caller's previous point remains the best
    VPOINT_TREAT_AS_PARALLEL = 4, // the lines are straighter as they are than under any candidate
    VPOINT_GO_ON = 5              // more than two lines: the search proper is needed
};

// The candidate index that names no previous point.
constexpr int kNoPreviousCandidate = 100;

}  // namespace geometric

#endif

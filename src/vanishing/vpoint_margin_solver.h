// The vertical vanishing point of a page's few margin lines. Two to four
// lines leave random sampling nothing to choose from, so the point is
// estimated from all of them at once in the dual plane, plainly and
// weighted by the lines' quality, and the rectification judge picks.
#ifndef MORVANE_VANISHING_VPOINT_MARGIN_SOLVER_H
#define MORVANE_VANISHING_VPOINT_MARGIN_SOLVER_H

#include <vector>

#include "textgeometry/direction.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

// Answers are VanishingPointCode values; VPOINT_PREVIOUS_STANDS never comes
// from this solver.
class VpointMarginSolver {
public:
    VpointMarginSolver(int image_width, int image_height, float maximum_error, Direction direction);

    //  1. Fewer than 2 lines: VPOINT_NO_RESULT.
    //  2. Dual points (a / c, b / c).
    //  3. More than 2 lines: a line whose raw weight is below
    //     (1 / n in single precision) / 3 is dropped, with its weight; should
    //     fewer than 2 lines stay, only the first line of smallest weight
    //     goes. `lines` stays whole and is what the judge tests.
    //  4. Candidates: the plain fit of the dual points; the weighted fit
    //     (weights normalised to sum 1); the incoming `point` unless it is
    //     (0, 0).
    //  5. The judge, with no previous candidate named even when the incoming
    //     point is one, without the last-line flag, with maximum_error and
    //     `reference_angle`. `point` changes only with VPOINT_FOUND.
    int perform_margin_vpoint_searching(const std::vector<GeolineBase>& lines, std::vector<double>& weights,
                                        Geocoordinate<double>& point, float reference_angle);

    int image_width;
    int image_height;
    Direction direction;
    float maximum_error;  // degrees
};

}  // namespace geometric

#endif

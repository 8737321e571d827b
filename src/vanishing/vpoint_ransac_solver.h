// The vanishing point of a family of lines by consensus in the dual plane:
// a line a x + b y + c = 0 becomes the point (a / c, b / c), and all lines
// through (x0, y0) become points on the line x0 u + y0 v + 1 = 0.
#ifndef MORVANE_VANISHING_VPOINT_RANSAC_SOLVER_H
#define MORVANE_VANISHING_VPOINT_RANSAC_SOLVER_H

#include <utility>
#include <vector>

#include "textgeometry/direction.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

struct RansacVanishingPointConstrains {
    float distance_threshold = 0.0001f;          // consensus distance in the dual plane
    float success_probability = 0.99f;           // desired probability of the consensus search
    int priority_count = 10;                     // carried into the solver, not read further
    int sample_size = 2;                         // not read: the line estimator's 2 is fixed
    bool use_priority = true;                    // try the priority pairs first
    float maximum_rectification_error = 3.5f;    // degrees
    float spare_limit = 2.0f;                    // kept in the record, read by nothing

    RansacVanishingPointConstrains() = default;
    // Copies as assignment does.
    RansacVanishingPointConstrains(const RansacVanishingPointConstrains& other) { *this = other; }
    // Copies the five fields that the solver reads; deliberately not
    // sample_size and spare_limit.
    RansacVanishingPointConstrains& operator=(const RansacVanishingPointConstrains& other);
};

// Answers are VanishingPointCode values.
class VpointRansacSolver {
public:
    VpointRansacSolver(Direction direction, int image_width, int image_height,
                       const RansacVanishingPointConstrains& constrains);

    // Without priority, which stays switched off in this object from then on.
    //  1. Fewer than 2 lines: no result. Exactly 2: `inliers` = [0, 1], their
    //     crossing (found) or exactly parallel.
    //  2. Consensus of the dual points, for the vertical direction scaled by
    //     100000 (vertical lines have tiny coefficients), as is the threshold.
    //  3. Fewer than 2 inliers: no result; exactly 2: their crossing, as in 1.
    //  4. Vertical: the iterative fit of the inliers' dual points (normalised,
    //     tolerance 0.0001) gives (A, B, D) and `point` = (A / D, B / D),
    //     found. Dual points on a line through the origin (D = 0) belong to
    //     exactly parallel lines: that answer, `point` untouched.
    //  5. Horizontal: the plain fit and then the iterative fit are the
    //     candidates, each put in `point` in turn (a point at infinity
    //     never), and the judge (choose_rectification_candidate) decides with
    //     reference angle 0. So after no result or a parallel answer
    //     `point` holds the last finite candidate.
    int perform_ransac_vpoint_searching(const std::vector<GeolineBase>& lines, std::vector<int>& inliers,
                                        Geocoordinate<double>& point);

    // With the priority pairs `pairs` (kept as the solver's), the flag
    // use_priority as set, and candidates: the plain fit; for the horizontal
    // direction the fit weighted by `weights` of the inlier lines (normalised
    // to sum 1, Muv rounded to single precision after each addition), for
    // the vertical the iterative fit; and the incoming `point` unless it is
    // (0, 0), which is the previous candidate; each put in `point` in turn,
    // as above. With `keep_last_line` the last line, which the caller forced
    // in, joins the inliers once the search has found a line, and the judge
    // may test it alone. For the horizontal direction `weights` must hold a
    // weight for every line, else no result.
    int perform_ransac_vpoint_searching(const std::vector<GeolineBase>& lines,
                                        const std::vector<std::pair<int, int>>& pairs,
                                        const std::vector<double>& weights, std::vector<int>& inliers,
                                        Geocoordinate<double>& point, float reference_angle, bool keep_last_line);

    // Step 1 above: VPOINT_NO_RESULT, VPOINT_FOUND, VPOINT_EXACTLY_PARALLEL,
    // or VPOINT_GO_ON for more than two lines. `inliers` is cleared first.
    static int special_treatment_for_input_lines(const std::vector<GeolineBase>& lines, std::vector<int>& inliers,
                                                 Geocoordinate<double>& point);

    Direction direction;
    double threshold;  // distance_threshold, times 100000 for the vertical direction
    float probability;
    bool use_priority;
    std::vector<std::pair<int, int>> priority_pairs;
    int priority_count;
    float maximum_error;  // degrees
    int image_width;
    int image_height;

private:
    // Steps 1 to 3: VPOINT_GO_ON with the inliers' dual points, scaled back,
    // in `duals`, or the final answer.
    int search_dual_line(const std::vector<GeolineBase>& lines, bool keep_last_line, std::vector<int>& inliers,
                         Geocoordinate<double>& point, std::vector<Geocoordinate<double>>& duals);
};

}  // namespace geometric

#endif

// Consensus of lines in the dual plane, and the candidates it hands to the
// rectification judge.
#include "vanishing/vpoint_ransac_solver.h"

#include <cmath>

#include "common/constants.h"
#include "textgeometry/geoline_adaptive_least_square.h"
#include "textgeometry/geoline_least_square.h"
#include "vanishing/dual_plane_fit.h"
#include "vanishing/general_line_param_estimator.h"
#include "vanishing/ransac.h"
#include "vanishing/rectification_candidate.h"
#include "vanishing/vanishing_point_codes.h"

namespace geometric {

namespace {

// Vertical lines have tiny coefficients in the normal form b = -1 (their
// slope is large), so their dual points are scaled up for the search.
constexpr double kVerticalDualScale = 100000.0;
constexpr double kIterativeTolerance = 0.0001;
// Without a caller's reference, horizontal lines are judged against 0 degrees.
constexpr float kHorizontalReference = 0.0f;

using Points = std::vector<Geocoordinate<double>>;

double dual_scale(Direction direction) { return direction == VERTICAL_DIRECTION ? kVerticalDualScale : 1.0; }

bool is_finite(const Geocoordinate<double>& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

Geocoordinate<double> iterative_fit_point(const Points& duals) {
    GeolineAdaptiveLeastSquare line;
    line.use_pt_line_dis_iterative(duals, true, kIterativeTolerance);
    return dual_meeting_point(line);
}

// The weighted fit of the inliers' dual points, each with its line's weight.
Geocoordinate<double> weighted_fit_point(const Points& duals, const std::vector<double>& weights,
                                         const std::vector<int>& inliers) {
    std::vector<double> inlier_weights;
    inlier_weights.reserve(inliers.size());
    for (int i : inliers) inlier_weights.push_back(weights[i]);
    return weighted_dual_fit_point(duals, inlier_weights);
}

// Appends a candidate and, when it is finite, puts it in `point`: each
// candidate in turn, and never a point at infinity.
void add_candidate(Points& candidates, const Geocoordinate<double>& candidate, Geocoordinate<double>& point) {
    candidates.push_back(candidate);
    if (is_finite(candidate)) point = candidate;
}

std::vector<GeolineBase> lines_of(const std::vector<GeolineBase>& lines, const std::vector<int>& inliers) {
    std::vector<GeolineBase> chosen;
    for (int i : inliers) chosen.push_back(lines[i]);
    return chosen;
}

int crossing(const GeolineBase& first, const GeolineBase& second, Geocoordinate<double>& point) {
    return intersect_lines(first, second, point) ? VPOINT_FOUND : VPOINT_EXACTLY_PARALLEL;
}

}  // namespace

RansacVanishingPointConstrains& RansacVanishingPointConstrains::operator=(const RansacVanishingPointConstrains& other) {
    distance_threshold = other.distance_threshold;
    success_probability = other.success_probability;
    priority_count = other.priority_count;
    use_priority = other.use_priority;
    maximum_rectification_error = other.maximum_rectification_error;
    return *this;
}

VpointRansacSolver::VpointRansacSolver(Direction direction_, int image_width_, int image_height_,
                                       const RansacVanishingPointConstrains& constrains)
    : direction(direction_),
      threshold(constrains.distance_threshold * dual_scale(direction_)),
      probability(constrains.success_probability),
      use_priority(constrains.use_priority),
      priority_count(constrains.priority_count),
      maximum_error(constrains.maximum_rectification_error),
      image_width(image_width_),
      image_height(image_height_) {}

int VpointRansacSolver::special_treatment_for_input_lines(const std::vector<GeolineBase>& lines,
                                                          std::vector<int>& inliers, Geocoordinate<double>& point) {
    inliers.clear();
    if (lines.size() < 2) return VPOINT_NO_RESULT;
    if (lines.size() > 2) return VPOINT_GO_ON;
    inliers = {0, 1};
    return crossing(lines[0], lines[1], point);
}

int VpointRansacSolver::search_dual_line(const std::vector<GeolineBase>& lines, bool keep_last_line,
                                         std::vector<int>& inliers, Geocoordinate<double>& point, Points& duals) {
    // 1. Two lines or fewer.
    const int code = special_treatment_for_input_lines(lines, inliers, point);
    if (code != VPOINT_GO_ON) return code;

    // 2. The dual points. A line through the origin (c = 0) has its dual
    // point at infinity: it stays, and agrees with nothing.
    const double scale = dual_scale(direction);
    Points all;
    all.reserve(lines.size());
    for (const GeolineBase& line : lines) all.emplace_back(line.a / line.c * scale, line.b / line.c * scale);
    GeneralLineParamEstimator<double> estimator(threshold * threshold);
    std::vector<double> parameters;
    RANSAC<Geocoordinate<double>, double>::compute(parameters, &estimator, all, probability, inliers, use_priority,
                                                   priority_pairs);
    if (parameters.size() != 3) return VPOINT_NO_RESULT;
    const int last = static_cast<int>(lines.size()) - 1;
    if (keep_last_line && (inliers.empty() || inliers.back() != last)) inliers.push_back(last);

    // 3. The inliers' dual points, scaled back.
    const double back = 1.0 / scale;
    duals.clear();
    for (int i : inliers) duals.emplace_back(all[i].x * back, all[i].y * back);
    if (inliers.size() < 2) return VPOINT_NO_RESULT;
    if (inliers.size() == 2) return crossing(lines[inliers[0]], lines[inliers[1]], point);
    return VPOINT_GO_ON;
}

int VpointRansacSolver::perform_ransac_vpoint_searching(const std::vector<GeolineBase>& lines,
                                                        std::vector<int>& inliers, Geocoordinate<double>& point) {
    use_priority = false;
    Points duals;
    const int code = search_dual_line(lines, false, inliers, point, duals);
    if (code != VPOINT_GO_ON) return code;

    if (direction == VERTICAL_DIRECTION) {
        // 4. Unjudged. A dual line through the origin meets nothing.
        const Geocoordinate<double> found = iterative_fit_point(duals);
        if (!is_finite(found)) return VPOINT_EXACTLY_PARALLEL;
        point = found;
        return VPOINT_FOUND;
    }
    // 5.
    Points candidates;
    add_candidate(candidates, plain_dual_fit_point(duals), point);
    add_candidate(candidates, iterative_fit_point(duals), point);
    return choose_rectification_candidate(image_width, image_height, direction, candidates, lines_of(lines, inliers),
                                          point, kNoPreviousCandidate, false, maximum_error, kHorizontalReference);
}

int VpointRansacSolver::perform_ransac_vpoint_searching(const std::vector<GeolineBase>& lines,
                                                        const std::vector<std::pair<int, int>>& pairs,
                                                        const std::vector<double>& weights, std::vector<int>& inliers,
                                                        Geocoordinate<double>& point, float reference_angle,
                                                        bool keep_last_line) {
    const Geocoordinate<double> incoming = point;
    priority_pairs = pairs;
    Points duals;
    const int code = search_dual_line(lines, keep_last_line, inliers, point, duals);
    if (code != VPOINT_GO_ON) return code;
    if (direction == HORIZONTAL_DIRECTION && weights.size() < lines.size()) return VPOINT_NO_RESULT;

    Points candidates;
    add_candidate(candidates, plain_dual_fit_point(duals), point);
    add_candidate(candidates, direction == HORIZONTAL_DIRECTION ? weighted_fit_point(duals, weights, inliers)
                                                                : iterative_fit_point(duals),
                  point);
    int previous_index = kNoPreviousCandidate;
    if (incoming.x != 0.0 || incoming.y != 0.0) {
        previous_index = static_cast<int>(candidates.size());
        add_candidate(candidates, incoming, point);
    }
    return choose_rectification_candidate(image_width, image_height, direction, candidates, lines_of(lines, inliers),
                                          point, previous_index, keep_last_line, maximum_error, reference_angle);
}

}  // namespace geometric

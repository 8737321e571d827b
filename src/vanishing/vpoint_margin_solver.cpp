// The margin lines' vanishing point by direct fits in the dual plane.
#include "vanishing/vpoint_margin_solver.h"

#include <algorithm>

#include "vanishing/dual_plane_fit.h"
#include "vanishing/rectification_candidate.h"
#include "vanishing/vanishing_point_codes.h"

namespace geometric {

namespace {

// Drops the lines too weak to vote, with their weights; `lines` is not touched.
void drop_weak_lines(std::vector<Geocoordinate<double>>& duals, std::vector<double>& weights) {
    const std::size_t n = duals.size();
    if (n <= 2) return;
    // Raw weights against a third of an equal share: the weights are not
    // normalised here, so equal weights of 1 over three lines are compared with 1/9.
    const double limit = static_cast<double>(1.0f / static_cast<float>(n)) / 3.0;
    std::size_t kept = 0;
    for (std::size_t k = 0; k < n; ++k)
        if (!(weights[k] < limit)) ++kept;
    if (kept >= 2) {
        std::size_t out = 0;
        for (std::size_t k = 0; k < n; ++k) {
            if (weights[k] < limit) continue;
            duals[out] = duals[k];
            weights[out] = weights[k];
            ++out;
        }
        duals.resize(out);
        weights.resize(out);
        return;
    }
    // Too few would stay: only the weakest line goes.
    const std::size_t weakest =
        static_cast<std::size_t>(std::min_element(weights.begin(), weights.begin() + n) - weights.begin());
    duals.erase(duals.begin() + static_cast<std::ptrdiff_t>(weakest));
    weights.erase(weights.begin() + static_cast<std::ptrdiff_t>(weakest));
}

}  // namespace

VpointMarginSolver::VpointMarginSolver(int image_width_, int image_height_, float maximum_error_,
                                       Direction direction_)
    : image_width(image_width_), image_height(image_height_), direction(direction_), maximum_error(maximum_error_) {}

int VpointMarginSolver::perform_margin_vpoint_searching(const std::vector<GeolineBase>& lines,
                                                        std::vector<double>& weights, Geocoordinate<double>& point,
                                                        float reference_angle) {
    if (lines.size() < 2 || weights.size() < lines.size()) return VPOINT_NO_RESULT;
    weights.resize(lines.size());
    std::vector<Geocoordinate<double>> duals;
    duals.reserve(lines.size());
    for (const GeolineBase& line : lines) duals.emplace_back(line.a / line.c, line.b / line.c);
    drop_weak_lines(duals, weights);

    std::vector<Geocoordinate<double>> candidates;
    candidates.push_back(plain_dual_fit_point(duals));
    candidates.push_back(weighted_dual_fit_point(duals, weights));
    if (point.x != 0.0 || point.y != 0.0) candidates.push_back(point);
    // No previous candidate is named even when the incoming point is among
    // the candidates: a previous point that wins counts as found.
    return choose_rectification_candidate(image_width, image_height, direction, candidates, lines, point,
                                          kNoPreviousCandidate, false, maximum_error, reference_angle);
}

}  // namespace geometric

// Ordered line pairs for the consensus search of the text route.
#include "edgelines/priority_selector.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "edgelines/balanced_point_distributor.h"

namespace geometric {

namespace {

std::size_t line_count(const std::vector<double>& weights, const std::vector<double>& positions) {
    return std::min(weights.size(), positions.size());
}

struct ScoredPair {
    double score;
    int first;
    int second;
};

}  // namespace

void PrioritySelector::obtain_natural_priority_array(const std::vector<double>& weights,
                                                     const std::vector<double>& positions,
                                                     std::vector<std::pair<int, int>>& pairs) const {
    std::vector<int> order(line_count(weights, positions));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&weights](int a, int b) { return weights[a] > weights[b]; });
    const std::size_t kept = static_cast<std::size_t>(std::max(selection_count, 0));
    if (order.size() > kept) order.resize(kept);
    obtain_priority_based_on_weighting(weights, order, positions, pairs);
}

void PrioritySelector::obtain_uniform_priority_array(const std::vector<double>& weights,
                                                     const std::vector<double>& positions,
                                                     std::vector<std::pair<int, int>>& pairs) const {
    // 1. Few lines: all of them can take part.
    const std::size_t n = line_count(weights, positions);
    if (static_cast<long long>(selection_count) + 2 >= static_cast<long long>(n)) {
        obtain_natural_priority_array(weights, positions, pairs);
        return;
    }
    // 2. Lines by position.
    std::vector<int> order(n);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&positions](int a, int b) { return positions[a] < positions[b]; });
    std::vector<double> sorted_positions(n);
    for (std::size_t k = 0; k < n; ++k) sorted_positions[k] = positions[order[k]];

    // 3. An evenly spaced path. At spacing 0 (or a spacing that division
    // cannot change) another try would find the same path: it stands.
    BalancedPointDistributor distributor(2 * selection_count);
    std::vector<int> path;
    while (!distributor.perform_path_searching(sorted_positions, path)) {
        if (!(distributor.spacing > 0.0 && std::isfinite(distributor.spacing))) break;
        distributor.spacing /= 5.0;
    }

    // 4. The lines of the path, 5. the natural form on them, 6. their own indices.
    std::vector<int> collected;
    std::vector<double> collected_weights, collected_positions;
    for (int k : path) {
        const int s = order[k];
        collected.push_back(s);
        collected_weights.push_back(weights[s]);
        collected_positions.push_back(positions[s]);
    }
    std::vector<std::pair<int, int>> selected;
    obtain_natural_priority_array(collected_weights, collected_positions, selected);
    for (const auto& pair : selected) pairs.emplace_back(collected[pair.first], collected[pair.second]);
}

void PrioritySelector::obtain_priority_based_on_weighting(const std::vector<double>& weights,
                                                          const std::vector<int>& indices,
                                                          const std::vector<double>& positions,
                                                          std::vector<std::pair<int, int>>& pairs) const {
    const long long n = static_cast<long long>(line_count(weights, positions));
    std::vector<ScoredPair> scored;
    for (std::size_t a = 0; a < indices.size(); ++a)
        for (std::size_t b = a + 1; b < indices.size(); ++b) {
            const int i = indices[a], j = indices[b];
            if (i < 0 || i >= n || j < 0 || j >= n) continue;
            scored.push_back({weights[i] * weights[j] * std::fabs(positions[i] - positions[j]), i, j});
        }
    std::stable_sort(scored.begin(), scored.end(),
                     [](const ScoredPair& x, const ScoredPair& y) { return x.score > y.score; });
    for (const ScoredPair& s : scored) pairs.emplace_back(s.first, s.second);
}

}  // namespace geometric

// The evenly spaced path through sorted positions.
#include "edgelines/balanced_point_distributor.h"

#include <algorithm>
#include <cmath>

namespace geometric {

bool BalancedPointDistributor::perform_path_searching(std::vector<double>& positions, std::vector<int>& path) const {
    path.clear();
    const int n = static_cast<int>(positions.size());
    if (n == 0) return minimum_path_size <= 0;

    const double first = positions.front();
    const double range = positions.back() - first;
    for (double& p : positions) p = (p - first) / range;

    std::vector<double> cost(n, 0.0);
    std::vector<int> previous(n, 0);
    for (int i = 1; i < n; ++i) {
        int nearest = i - 1;
        double best = cost[i - 1] + std::fabs((positions[i] - positions[i - 1]) - spacing);
        for (int j = i - 2; j >= 0; --j) {
            const double candidate = cost[j] + std::fabs((positions[i] - positions[j]) - spacing);
            if (candidate < best) {
                best = candidate;
                nearest = j;
            }
        }
        cost[i] = best;
        previous[i] = nearest;
    }
    // Every predecessor lies before its point: the chain ends at 0, and
    // read backwards it is ascending without repeats.
    for (int i = n - 1; i > 0; i = previous[i]) path.push_back(i);
    path.push_back(0);
    std::reverse(path.begin(), path.end());
    return static_cast<int>(path.size()) >= minimum_path_size;
}

}  // namespace geometric

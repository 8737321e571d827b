// Picks points spread evenly along a line of positions: a shortest path from
// the first to the last whose steps are as near as possible to one spacing.
#ifndef MORVANE_EDGELINES_BALANCED_POINT_DISTRIBUTOR_H
#define MORVANE_EDGELINES_BALANCED_POINT_DISTRIBUTOR_H

#include <vector>

namespace geometric {

class BalancedPointDistributor {
public:
    // A spacing of 1 / count of the whole range, and a path of at least count / 4 points.
    explicit BalancedPointDistributor(int count) : spacing(1.0 / count), minimum_path_size(count / 4) {}

    // `positions`, ascending, are mapped in place onto 0..1 by
    // (p - first) / (last - first). Then, with cost[0] = 0,
    //   cost[i] = min over j < i of cost[j] + |(p_i - p_j) - spacing|,
    // the predecessors tried from j = i - 1 down and replaced only by a
    // strictly smaller cost, so the nearest wins ties (and a cost that is
    // not a number, from equal first and last positions, keeps j = i - 1).
    // `path` receives the chain back from the last index to 0, ascending.
    // True when it holds at least minimum_path_size indices.
    bool perform_path_searching(std::vector<double>& positions, std::vector<int>& path) const;

    double spacing;
    int minimum_path_size;
};

}  // namespace geometric

#endif

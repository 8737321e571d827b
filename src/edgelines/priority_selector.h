// The order in which the text route tries pairs of candidate lines: pairs of
// strong lines lying far apart first.
#ifndef MORVANE_EDGELINES_PRIORITY_SELECTOR_H
#define MORVANE_EDGELINES_PRIORITY_SELECTOR_H

#include <utility>
#include <vector>

namespace geometric {

// Line i takes part when it has both a weight and a position: the lines are
// the first min(weights.size(), positions.size()). Pairs are appended to
// `pairs`, which is not cleared first.
class PrioritySelector {
public:
    explicit PrioritySelector(int selection_count_ = 10) : selection_count(selection_count_) {}

    // The selection_count heaviest lines (a stable sort: equal weights keep
    // their order), then obtain_priority_based_on_weighting over them.
    void obtain_natural_priority_array(const std::vector<double>& weights, const std::vector<double>& positions,
                                       std::vector<std::pair<int, int>>& pairs) const;

    // Keeps the selection spread across the page. With no more than
    // selection_count + 2 lines, the natural form. Otherwise the lines are
    // sorted by position (stable), a BalancedPointDistributor of
    // 2 selection_count points picks an evenly spaced path through them (its
    // spacing divided by 5 while the path is too short, until no smaller
    // spacing exists), and the natural form runs on the lines of the path.
    void obtain_uniform_priority_array(const std::vector<double>& weights, const std::vector<double>& positions,
                                       std::vector<std::pair<int, int>>& pairs) const;

    // Every pair (i, j) of `indices`, i earlier in the list than j, scored
    // weights[i] weights[j] |positions[i] - positions[j]|, appended by
    // descending score; equal scores keep the order in which the pairs were
    // formed, so the order is the same with every standard library. Indices
    // of lines that do not take part are left out.
    void obtain_priority_based_on_weighting(const std::vector<double>& weights, const std::vector<int>& indices,
                                            const std::vector<double>& positions,
                                            std::vector<std::pair<int, int>>& pairs) const;

    int selection_count;  // how many lines take part
};

}  // namespace geometric

#endif

// Joining point lists by groups of indices.
#include "edgelines/merge_point_groups.h"

#include <utility>

namespace geometric {

void merge_point_groups(const std::vector<std::set<int>>& groups,
                        const std::vector<std::vector<Geocoordinate<float>>>& lists,
                        std::vector<std::vector<Geocoordinate<float>>>& merged) {
    merged.clear();
    const int n = static_cast<int>(lists.size());
    std::vector<char> used(n, 0);
    for (int i = 0; i < n; ++i) {
        if (used[i]) continue;
        const std::set<int>* holder = nullptr;
        for (const std::set<int>& group : groups)
            if (group.count(i) != 0) {
                holder = &group;
                break;
            }
        if (holder == nullptr) {
            merged.push_back(lists[i]);
            continue;
        }
        std::vector<Geocoordinate<float>> joined;
        for (int j : *holder) {
            if (j < 0 || j >= n) continue;
            used[j] = 1;
            joined.insert(joined.end(), lists[j].begin(), lists[j].end());
        }
        merged.push_back(std::move(joined));
    }
}

}  // namespace geometric

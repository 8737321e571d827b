// Which left margin group goes with which right margin group: those that
// share a text line.
#ifndef MORVANE_TEXTLINES_CORRESPONDING_PAIRS_H
#define MORVANE_TEXTLINES_CORRESPONDING_PAIRS_H

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace geometric {

// Members are text line indices, one list per margin group.
class CorrespondingPairs {
public:
    // `pairs` becomes the (left group, right group) pairs that share at
    // least one text line, each once, in ascending order.
    static void search_corresponding_margins(const std::vector<std::vector<int>>& left_members,
                                             const std::vector<std::vector<int>>& right_members,
                                             std::vector<std::pair<int, int>>& pairs);

    // Adds to `found` each [left group, right group] that shares a text line.
    static void find_corresponding_margins(const std::vector<std::vector<int>>& left_members,
                                           const std::vector<std::vector<int>>& right_members,
                                           std::set<std::vector<int>>& found);

    // Text line to the first group, in order, that holds it.
    static void build_map(const std::vector<std::vector<int>>& members, std::map<int, int>& line_to_group);

    // Adds [l, group of t] for every text line t of left group l that the map holds.
    static void find_correponding(const std::vector<std::vector<int>>& left_members,
                                  const std::map<int, int>& line_to_group, std::set<std::vector<int>>& found);
};

}  // namespace geometric

#endif

// Left and right margin groups matched through their text lines.
#include "textlines/corresponding_pairs.h"

namespace geometric {

void CorrespondingPairs::search_corresponding_margins(const std::vector<std::vector<int>>& left_members,
                                                      const std::vector<std::vector<int>>& right_members,
                                                      std::vector<std::pair<int, int>>& pairs) {
    std::set<std::vector<int>> found;
    find_corresponding_margins(left_members, right_members, found);
    pairs.clear();
    for (const std::vector<int>& pair : found) pairs.emplace_back(pair[0], pair[1]);
}

void CorrespondingPairs::find_corresponding_margins(const std::vector<std::vector<int>>& left_members,
                                                    const std::vector<std::vector<int>>& right_members,
                                                    std::set<std::vector<int>>& found) {
    std::map<int, int> line_to_group;
    build_map(right_members, line_to_group);
    find_correponding(left_members, line_to_group, found);
}

void CorrespondingPairs::build_map(const std::vector<std::vector<int>>& members, std::map<int, int>& line_to_group) {
    for (std::size_t k = 0; k < members.size(); ++k)
        for (int line : members[k]) line_to_group.emplace(line, static_cast<int>(k));
}

void CorrespondingPairs::find_correponding(const std::vector<std::vector<int>>& left_members,
                                           const std::map<int, int>& line_to_group,
                                           std::set<std::vector<int>>& found) {
    for (std::size_t l = 0; l < left_members.size(); ++l)
        for (int line : left_members[l]) {
            const std::map<int, int>::const_iterator group = line_to_group.find(line);
            if (group != line_to_group.end()) found.insert(std::vector<int>{static_cast<int>(l), group->second});
        }
}

}  // namespace geometric

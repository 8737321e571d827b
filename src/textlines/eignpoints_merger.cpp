// Merging of eigenpoint groups that continue one another along a text line.
#include "textlines/eignpoints_merger.h"

#include <cmath>
#include <cstddef>

#include "edgelines/merge_point_groups.h"
#include "textgeometry/geoline_adaptive_least_square.h"

namespace geometric {

namespace {

float distance(const Geocoordinate<float>& a, const Geocoordinate<float>& b) {
    const float dx = a.x - b.x;
    const float dy = a.y - b.y;
    return std::sqrt(dx * dx + dy * dy);
}

// The first point of smallest x (largest with `largest`) of a group.
Geocoordinate<float> extreme_in_x(const std::vector<Geocoordinate<float>>& group, bool largest) {
    Geocoordinate<float> best = group.front();
    for (const Geocoordinate<float>& p : group)
        if (largest ? p.x > best.x : p.x < best.x) best = p;
    return best;
}

bool shares_member(const std::set<int>& a, const std::set<int>& b) {
    for (int member : a)
        if (b.count(member) != 0) return true;
    return false;
}

}  // namespace

EignpointsMerger::EignpointsMerger(Pageanalysis* analysis_, const EignpointsMergerConstraints& constraints_)
    : constraints(constraints_), analysis(analysis_) {}

bool EignpointsMerger::perform_eignpoint_group_merge(const std::vector<std::vector<Geocoordinate<float>>>& groups,
                                                     std::vector<std::vector<Geocoordinate<float>>>& merged) {
    const std::size_t n = groups.size();
    if (n < 2 || analysis == nullptr) return false;

    // Each piece's line, to compare two pieces where one ends.
    std::vector<GeolineAdaptiveLeastSquare> lines(n);
    for (std::size_t i = 0; i < n; ++i) lines[i].use_pt_line_dis_iterative<float>(groups[i], false, 0.01);

    std::vector<Geocoordinate<float>> left_points, right_points, extended_right_points;
    obtain_eignpoints_on_margins(groups, left_points, right_points, extended_right_points);
    note_extreme_points(left_points, right_points);

    // Each piece's partner: the first piece that starts near where it ends.
    std::vector<std::pair<int, int>> pairs;
    for (std::size_t i = 0; i < n; ++i) {
        const Geocoordinate<float>& e = extended_right_points[i];
        for (std::size_t j = 0; j < n; ++j) {
            if (!(constraints.end_distance > distance(e, left_points[j]))) continue;
            if (j == i) return false;
            const float y_partner = static_cast<float>(lines[j].y_at(e.x));
            const float y_own = static_cast<float>(lines[i].y_at(e.x));
            if (std::fabs(y_partner - y_own) < constraints.line_gap) {
                pairs.emplace_back(static_cast<int>(i), static_cast<int>(j));
                break;
            }
        }
    }

    merge_point_groups(gather_partners(pairs), groups, merged);
    return true;
}

void EignpointsMerger::obtain_eignpoints_on_margins(const std::vector<std::vector<Geocoordinate<float>>>& groups,
                                                    std::vector<Geocoordinate<float>>& left_points,
                                                    std::vector<Geocoordinate<float>>& right_points,
                                                    std::vector<Geocoordinate<float>>& extended_right_points) const {
    left_points.resize(groups.size());
    right_points.resize(groups.size());
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (groups[i].empty()) continue;
        left_points[i] = extreme_in_x(groups[i], false);
        right_points[i] = extreme_in_x(groups[i], true);
    }
    analysis->obtain_regular_text_bottom_right(right_points, extended_right_points, constraints.search_step);
}

std::vector<std::set<int>> EignpointsMerger::gather_partners(const std::vector<std::pair<int, int>>& pairs) {
    std::vector<std::set<int>> sets;
    for (const std::pair<int, int>& pair : pairs) {
        std::set<int>* holder = nullptr;
        for (std::set<int>& set : sets)
            if (set.count(pair.first) != 0 || set.count(pair.second) != 0) {
                holder = &set;
                break;
            }
        if (holder == nullptr) {
            sets.push_back(std::set<int>{pair.first, pair.second});
        } else {
            holder->insert(pair.first);
            holder->insert(pair.second);
        }
    }
    // A chain of pairs may have opened two sets that a later pair links.
    for (bool united = true; united;) {
        united = false;
        for (std::size_t a = 0; a < sets.size() && !united; ++a)
            for (std::size_t b = a + 1; b < sets.size() && !united; ++b)
                if (shares_member(sets[a], sets[b])) {
                    sets[a].insert(sets[b].begin(), sets[b].end());
                    sets.erase(sets.begin() + static_cast<std::ptrdiff_t>(b));
                    united = true;
                }
    }
    return sets;
}

void EignpointsMerger::note_extreme_points(const std::vector<Geocoordinate<float>>& left_points,
                                           const std::vector<Geocoordinate<float>>& right_points) {
    Geocoordinate<float> top = left_points.front(), bottom = left_points.front(), leftmost = left_points.front();
    for (const Geocoordinate<float>& p : left_points) {
        if (p.y < top.y) top = p;
        if (p.y > bottom.y) bottom = p;
        if (p.x < leftmost.x) leftmost = p;
    }
    Geocoordinate<float> right_top = right_points.front(), right_bottom = right_points.front(),
                         rightmost = right_points.front();
    for (const Geocoordinate<float>& p : right_points) {
        if (p.y < right_top.y) right_top = p;
        if (p.y > right_bottom.y) right_bottom = p;
        if (p.x > rightmost.x) rightmost = p;
    }
    top_point = right_top.y < top.y ? right_top : top;
    bottom_point = right_bottom.y > bottom.y ? right_bottom : bottom;
    leftmost_point = leftmost;
    rightmost_point = rightmost;
}

}  // namespace geometric

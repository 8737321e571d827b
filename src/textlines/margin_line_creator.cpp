// Candidate margins formed from the ends of the text lines, and the top of
// the margin search.
#include "textlines/margin_line_creator.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "textlines/corresponding_pairs.h"

namespace geometric {

namespace {

// A margin survives among too few others to compare: its one line, weighed alone.
constexpr double kLoneMarginWeight = 1.0;
// Extra tolerance earned by well-populated margins on both sides.
constexpr float kAngleDifferenceBonus = 5.0f;
constexpr float kLengthRatioRelief = 0.1f;

float float_distance(const Geocoordinate<float>& p, const Geocoordinate<float>& q) {
    const float dx = p.x - q.x, dy = p.y - q.y;
    return std::sqrt(dx * dx + dy * dy);
}

// The first point of smallest x and the first point of largest x.
void line_ends(const std::vector<Geocoordinate<float>>& group, Geocoordinate<float>& left,
               Geocoordinate<float>& right) {
    left = right = group.front();
    for (const Geocoordinate<float>& p : group) {
        if (p.x < left.x) left = p;
        if (p.x > right.x) right = p;
    }
}

template <typename T>
void keep_flagged(std::vector<T>& items, const std::vector<bool>& flags) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (flags[i]) items[kept++] = items[i];
    items.resize(kept);
}

std::size_t largest_group(const MarginLineCreator::groups& groups) {
    std::size_t largest = 0;
    for (const std::vector<Geocoordinate<float>>& g : groups) largest = std::max(largest, g.size());
    return largest;
}

}  // namespace

MarginLineCreator::MarginLineCreator(const MarginConstraints& constraints_, int image_width_, int image_height_,
                                     Pageanalysis* analysis_)
    : constraints(constraints_), image_width(image_width_), image_height(image_height_), analysis(analysis_) {}

bool MarginLineCreator::perform_margin_line_formulation(const groups& text_groups, groups& margin_groups,
                                                        std::vector<GeolineBase>& margin_lines,
                                                        std::vector<double>& weights) {
    // Candidates and their partners.
    groups left_ends, right_ends;
    std::vector<std::pair<int, int>> pairs;
    if (!identify_left_right_eignpoints(text_groups, left_ends, right_ends, pairs)) return false;
    std::vector<int> left_ids, right_ids;
    obtain_unique_margin_line_pair_indicator(pairs, left_ids, static_cast<int>(left_ends.size()), right_ids,
                                             static_cast<int>(right_ends.size()));

    // Blob corners, and the candidates that verify.
    groups left_corners, right_corners, left_groups, right_groups;
    std::vector<GeolineBase> left_lines, right_lines;
    formulate_margin_points(left_ends, left_corners, LEFT_MARGIN);
    formulate_margin_points(right_ends, right_corners, RIGHT_MARGIN);
    eleminate_margin_points(left_corners, left_ids, left_groups, left_lines, LEFT_MARGIN);
    eleminate_margin_points(right_corners, right_ids, right_groups, right_lines, RIGHT_MARGIN);

    // A lone margin is handed out for the caller to use by itself.
    if (left_groups.size() + right_groups.size() < 2) {
        if (left_groups.size() == 1) {
            margin_lines.push_back(left_lines.front());
            margin_groups = left_groups;
        }
        if (right_groups.size() == 1) {
            margin_lines.push_back(right_lines.front());
            margin_groups = right_groups;
        }
        weights.push_back(kLoneMarginWeight);
        return false;
    }

    const std::size_t fewest = std::min(largest_group(left_groups), largest_group(right_groups));
    if (2LL * constraints.minimum_inliers < static_cast<long long>(fewest)) {
        constraints.maximum_angle_difference += kAngleDifferenceBonus;
        constraints.minimum_length_ratio -= kLengthRatioRelief;
    }
    if (!compare_neighboring_margin_length_threshold(left_groups, left_lines, left_ids, right_groups, right_lines,
                                                     right_ids))
        return false;

    groups all_groups(left_groups);
    all_groups.insert(all_groups.end(), right_groups.begin(), right_groups.end());
    std::vector<GeolineBase> all_lines(left_lines);
    all_lines.insert(all_lines.end(), right_lines.begin(), right_lines.end());
    merge_margin_lines(all_groups, all_lines, margin_groups, margin_lines, weights);

    if (margin_lines.size() < 2) return false;
    if (margin_lines.size() > 2) return true;
    const float x1 = static_cast<float>(margin_lines[0].x_at(0.0));
    const float x2 = static_cast<float>(margin_lines[1].x_at(0.0));
    return !(constraints.minimum_separation * static_cast<float>(image_width) > std::fabs(x1 - x2));
}

bool MarginLineCreator::identify_left_right_eignpoints(const groups& text_groups, groups& left_groups,
                                                       groups& right_groups,
                                                       std::vector<std::pair<int, int>>& pairs) const {
    left_groups.clear();
    right_groups.clear();
    // For each margin group, the text lines that feed it.
    std::vector<std::vector<int>> left_members, right_members;
    for (std::size_t i = 0; i < text_groups.size(); ++i) {
        if (text_groups[i].empty()) continue;
        Geocoordinate<float> left, right;
        line_ends(text_groups[i], left, right);
        const int k = add_point_to_margin_group(left, left_groups);
        left_members.resize(left_groups.size());
        left_members[static_cast<std::size_t>(k)].push_back(static_cast<int>(i));
        const int m = add_point_to_margin_group(right, right_groups);
        right_members.resize(right_groups.size());
        right_members[static_cast<std::size_t>(m)].push_back(static_cast<int>(i));
    }
    keep_flagged(left_members, eliminate_small_point_array(left_groups, constraints.minimum_group_size));
    keep_flagged(right_members, eliminate_small_point_array(right_groups, constraints.minimum_group_size));
    CorrespondingPairs::search_corresponding_margins(left_members, right_members, pairs);
    return left_groups.size() + right_groups.size() >= 2;
}

int MarginLineCreator::add_point_to_margin_group(const Geocoordinate<float>& point, groups& margin_groups) const {
    for (std::size_t k = 0; k < margin_groups.size(); ++k) {
        float nearest = 0.0f;
        for (std::size_t i = 0; i < margin_groups[k].size(); ++i) {
            const float d = float_distance(point, margin_groups[k][i]);
            if (i == 0 || d < nearest) nearest = d;
        }
        if (!margin_groups[k].empty() && constraints.grouping_distance > nearest) {
            margin_groups[k].push_back(point);
            return static_cast<int>(k);
        }
    }
    margin_groups.push_back(std::vector<Geocoordinate<float>>(1, point));
    return static_cast<int>(margin_groups.size() - 1);
}

std::vector<bool> MarginLineCreator::eliminate_small_point_array(groups& margin_groups, int minimum_size) {
    std::vector<bool> kept(margin_groups.size());
    for (std::size_t k = 0; k < margin_groups.size(); ++k)
        kept[k] = static_cast<long long>(margin_groups[k].size()) >= minimum_size;
    keep_flagged(margin_groups, kept);
    return kept;
}

void MarginLineCreator::obtain_unique_margin_line_pair_indicator(const std::vector<std::pair<int, int>>& pairs,
                                                                 std::vector<int>& left_ids, int left_count,
                                                                 std::vector<int>& right_ids, int right_count) {
    left_ids.resize(static_cast<std::size_t>(std::max(left_count, 0)));
    right_ids.resize(static_cast<std::size_t>(std::max(right_count, 0)));
    for (std::size_t i = 0; i < left_ids.size(); ++i) left_ids[i] = static_cast<int>(i);
    for (std::size_t j = 0; j < right_ids.size(); ++j) right_ids[j] = left_count + static_cast<int>(j);
    const int total = left_count + right_count;
    int counter = total;
    for (const std::pair<int, int>& pair : pairs) {
        if (pair.first < 0 || pair.first >= left_count || pair.second < 0 || pair.second >= right_count) continue;
        int& p = left_ids[static_cast<std::size_t>(pair.first)];
        int& q = right_ids[static_cast<std::size_t>(pair.second)];
        if (p < total && q < total)
            p = q = ++counter;
        else if (p < total)
            p = q;
        else
            q = p;
    }
}

void MarginLineCreator::formulate_margin_points(const groups& line_end_groups, groups& corner_groups,
                                                MarginDir side) const {
    corner_groups.clear();
    for (const std::vector<Geocoordinate<float>>& ends : line_end_groups) {
        std::vector<Geocoordinate<float>> corners;
        if (analysis == nullptr)
            corners = ends;
        else if (side == LEFT_MARGIN)
            analysis->obtain_regular_text_bottom_left(ends, corners);
        else
            analysis->obtain_regular_text_bottom_right(ends, corners, constraints.frame_margin);
        corner_groups.push_back(corners);
    }
}

bool MarginLineCreator::eleminate_margin_points(const groups& corner_groups, std::vector<int>& ids,
                                                groups& kept_groups, std::vector<GeolineBase>& kept_lines,
                                                MarginDir side) const {
    kept_groups.clear();
    kept_lines.clear();
    std::vector<bool> kept(corner_groups.size(), false);
    for (std::size_t k = 0; k < corner_groups.size(); ++k) {
        std::vector<Geocoordinate<float>> points(corner_groups[k]);
        GeolineBase line;
        if (!verify_vertical_margin_line(points, line, side)) continue;
        kept[k] = true;
        kept_groups.push_back(points);
        kept_lines.push_back(line);
    }
    if (ids.size() == kept.size()) keep_flagged(ids, kept);
    return true;
}

}  // namespace geometric

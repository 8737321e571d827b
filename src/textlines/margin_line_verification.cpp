// Whether a candidate margin is one, how a left margin agrees with its right
// partner, and the merging of margins that coincide.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "common/int_truncation.h"
#include "edgelines/line_weightor.h"
#include "edgelines/merge_point_groups.h"
#include "textgeometry/geoline_adaptive_least_square.h"
#include "textlines/eignpoints_merger.h"
#include "textlines/margin_line_creator.h"

namespace geometric {

namespace {

constexpr double kFitAngleTolerance = 0.01;
// A margin with more points than this is allowed three inlier distances of
// spread, a shorter one two.
constexpr std::size_t kLongMarginPoints = 10;
constexpr double kLongSpreadFactor = 3.0;
constexpr double kShortSpreadFactor = 2.0;
// Below this share of points away from the image's side, a margin must keep
// kFramedMinimumPoints points.
constexpr float kFrameShareForTrust = 0.8f;
constexpr std::size_t kFramedMinimumPoints = 7;
// A pair of partners with more than this share of points each lowers the
// length ratio required of later pairs by kLengthRatioStep.
constexpr float kBalancedCountShare = 0.5f;
constexpr float kLengthRatioStep = 0.1f;

using common::truncate_to_int32;

// Each distance loses its fraction as it is added: the sum is an int.
std::int32_t truncated_distance_sum(const GeolineBase& line, const std::vector<Geocoordinate<float>>& points) {
    std::int32_t sum = 0;
    for (const Geocoordinate<float>& p : points)
        sum = truncate_to_int32(static_cast<float>(sum) + static_cast<float>(line.point_distance(p)));
    return sum;
}

// Sample standard deviation (divisor n - 1) of the distances; 0 below 2 points.
double distance_deviation(const GeolineBase& line, const std::vector<Geocoordinate<float>>& points) {
    if (points.size() < 2) return 0.0;
    double mean = 0.0;
    for (const Geocoordinate<float>& p : points) mean += line.point_distance(p);
    mean /= static_cast<double>(points.size());
    double squares = 0.0;
    for (const Geocoordinate<float>& p : points) {
        const double d = line.point_distance(p) - mean;
        squares += d * d;
    }
    return std::sqrt(squares / static_cast<double>(points.size() - 1));
}

float vertical_extent(const std::vector<Geocoordinate<float>>& points) {
    if (points.empty()) return 0.0f;
    float low = points.front().y, high = points.front().y;
    for (const Geocoordinate<float>& p : points) low = std::min(low, p.y), high = std::max(high, p.y);
    return high - low;
}

template <typename T>
void drop_marked(std::vector<T>& items, const std::vector<bool>& marked) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (i >= marked.size() || !marked[i]) items[kept++] = items[i];
    items.resize(kept);
}

}  // namespace

GeolineBase MarginLineCreator::fit_both_ways(const std::vector<Geocoordinate<float>>& points) {
    GeolineAdaptiveLeastSquare along_x;
    along_x.use_pt_line_dis_iterative<float>(points, false, kFitAngleTolerance);
    const GeolineBase first(along_x.a, along_x.b, along_x.c);

    std::vector<Geocoordinate<float>> swapped;
    swapped.reserve(points.size());
    for (const Geocoordinate<float>& p : points) swapped.emplace_back(p.y, p.x);
    GeolineAdaptiveLeastSquare along_y;
    along_y.use_pt_line_dis_iterative<float>(swapped, false, kFitAngleTolerance);
    // a' y + b' x + c' = 0, divided by -a' into the normal form b = -1.
    const GeolineBase second(-along_y.b / along_y.a, -1.0, -along_y.c / along_y.a);

    return truncated_distance_sum(second, points) > truncated_distance_sum(first, points) ? first : second;
}

bool MarginLineCreator::verify_vertical_margin_line(std::vector<Geocoordinate<float>>& points, GeolineBase& line,
                                                    MarginDir side) const {
    const GeolineBase fitted = fit_both_ways(points);
    const float angle = static_cast<float>(fitted.line_angle());
    if (std::fabs(angle - 90.0f) > constraints.maximum_vertical_deviation) return false;
    line = fitted;

    float inlier_ratio = 0.0f;
    if (!verify_point_dispersion(points, line, inlier_ratio)) return false;
    float frame_ratio = 0.0f;
    verfiy_point_away_frame(points, side, frame_ratio);
    if (constraints.minimum_quality > inlier_ratio * frame_ratio) return false;
    return frame_ratio >= kFrameShareForTrust || points.size() >= kFramedMinimumPoints;
}

bool MarginLineCreator::verify_point_dispersion(std::vector<Geocoordinate<float>>& points, const GeolineBase& line,
                                                float& inlier_ratio) const {
    const std::size_t n = points.size();
    const double factor = n > kLongMarginPoints ? kLongSpreadFactor : kShortSpreadFactor;
    if (distance_deviation(line, points) > factor * constraints.inlier_distance) return false;

    inlier_ratio = 0.0f;
    // Kept only when near: a distance that is not a number removes its point.
    points.erase(std::remove_if(points.begin(), points.end(),
                                [&](const Geocoordinate<float>& p) {
                                    return !(line.point_distance(p) <= constraints.inlier_distance);
                                }),
                 points.end());
    const std::size_t m = points.size();
    if (static_cast<long long>(m) <= constraints.minimum_inliers) return false;
    inlier_ratio = static_cast<float>(m) / static_cast<float>(n);
    return inlier_ratio > constraints.minimum_inlier_ratio;
}

void MarginLineCreator::verfiy_point_away_frame(std::vector<Geocoordinate<float>>& points, MarginDir side,
                                                float& frame_ratio) const {
    const std::size_t n = points.size();
    const float last_column = static_cast<float>(image_width - 1);
    points.erase(std::remove_if(points.begin(), points.end(),
                                [&](const Geocoordinate<float>& p) {
                                    return side == RIGHT_MARGIN ? p.x + constraints.frame_margin >= last_column
                                                                : p.x - constraints.frame_margin <= 0.0f;
                                }),
                 points.end());
    frame_ratio = n == 0 ? 0.0f : static_cast<float>(points.size()) / static_cast<float>(n);
}

bool MarginLineCreator::compare_neighboring_margin_length_threshold(
    groups& left_groups, std::vector<GeolineBase>& left_lines, const std::vector<int>& left_ids,
    groups& right_groups, std::vector<GeolineBase>& right_lines, const std::vector<int>& right_ids) {
    if (left_groups.empty() || right_groups.empty()) return true;
    const std::size_t left_count = std::min({left_groups.size(), left_lines.size(), left_ids.size()});
    const std::size_t right_count = std::min({right_groups.size(), right_lines.size(), right_ids.size()});

    std::vector<bool> left_marked(left_groups.size(), false), right_marked(right_groups.size(), false);
    bool examined = false;
    // The ratio or lean difference computed last: an exact 0 still accepts.
    double last = 0.0;
    for (std::size_t i = 0; i < left_count; ++i)
        for (std::size_t j = 0; j < right_count; ++j) {
            if (left_ids[i] != right_ids[j]) continue;
            const float left_length = vertical_extent(left_groups[i]);
            const float right_length = vertical_extent(right_groups[j]);
            const bool left_is_short = right_length > left_length;

            const float fewer = static_cast<float>(std::min(left_groups[i].size(), right_groups[j].size()));
            const float more = static_cast<float>(std::max(left_groups[i].size(), right_groups[j].size()));
            if (fewer / more > kBalancedCountShare) constraints.minimum_length_ratio -= kLengthRatioStep;

            const float ratio = left_is_short ? left_length / right_length : right_length / left_length;
            last = ratio;
            if (constraints.minimum_length_ratio > ratio) {
                (left_is_short ? left_marked[i] : right_marked[j]) = true;
                continue;
            }
            const double left_lean = std::fabs(90.0 - left_lines[i].line_angle());
            const double right_lean = std::fabs(90.0 - right_lines[j].line_angle());
            const double difference = std::fabs(left_lean - right_lean);
            last = difference;
            examined = true;
            if (difference > constraints.maximum_angle_difference)
                (left_lean > right_lean ? left_marked[i] : right_marked[j]) = true;
        }

    if (examined) {
        drop_marked(left_groups, left_marked);
        drop_marked(right_groups, right_marked);
        drop_marked(left_lines, left_marked);
        drop_marked(right_lines, right_marked);
    }
    return examined || last == 0.0;
}

void MarginLineCreator::formulate_coordinates_with_index(const std::vector<GeolineBase>& lines,
                                                         std::vector<std::pair<float, int>>& coordinates) const {
    const float middle = static_cast<float>(0.5 * image_height);
    coordinates.clear();
    for (std::size_t i = 0; i < lines.size(); ++i)
        coordinates.emplace_back(static_cast<float>(lines[i].x_at(middle)), static_cast<int>(i));
    // A total order even with not-a-number, which sorting could not survive.
    std::stable_sort(coordinates.begin(), coordinates.end(),
                     [](const std::pair<float, int>& p, const std::pair<float, int>& q) {
                         if (std::isnan(p.first)) return false;
                         return std::isnan(q.first) || p.first < q.first;
                     });
}

bool MarginLineCreator::formulate_merged_groups(const std::vector<std::pair<float, int>>& coordinates,
                                                std::vector<std::set<int>>& sets) const {
    std::vector<std::pair<int, int>> pairs;
    for (std::size_t k = 1; k < coordinates.size(); ++k)
        if (constraints.merge_distance > coordinates[k].first - coordinates[k - 1].first)
            pairs.emplace_back(coordinates[k - 1].second, coordinates[k].second);
    sets = EignpointsMerger::gather_partners(pairs);
    return !pairs.empty();
}

void MarginLineCreator::merge_margin_lines(const groups& all_groups, const std::vector<GeolineBase>& all_lines,
                                           groups& merged_groups, std::vector<GeolineBase>& merged_lines,
                                           std::vector<double>& weights) const {
    std::vector<std::pair<float, int>> coordinates;
    formulate_coordinates_with_index(all_lines, coordinates);
    std::vector<std::set<int>> sets;
    if (formulate_merged_groups(coordinates, sets)) {
        groups merged;
        merge_point_groups(sets, all_groups, merged);
        merged_groups.swap(merged);
    } else {
        merged_groups = all_groups;
    }

    merged_lines.clear();
    std::vector<LineWeightor> records;
    for (const std::vector<Geocoordinate<float>>& group : merged_groups) {
        const GeolineBase line = fit_both_ways(group);
        merged_lines.push_back(line);
        LineWeightor record;
        record.value = distance_deviation(line, group);
        record.count = static_cast<std::int32_t>(group.size());
        record.angle = static_cast<float>(line.line_angle());
        records.push_back(record);
    }
    obtain_line_self_weighting(records, weights);
}

}  // namespace geometric

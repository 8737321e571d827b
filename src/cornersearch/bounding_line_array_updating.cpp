// How lines enter the boundary array: one more line with a rollback when it
// does not help, a fourth side built from three, the replacement rule, and
// the merging of candidate sets into one answer.
#include <algorithm>
#include <climits>
#include <cmath>
#include <vector>

#include "common/constants.h"
#include "cornersearch/bounding_line_array_wrapper.h"
#include "edgelines/line_angle_comparator.h"
#include "textgeometry/geoline_base.h"

namespace geometric_test {

using geometric::BoundingLinePosition;
using geometric::Geocoordinate;

namespace {

// A constructed side is tried only when its neighbours are this alike in
// length and their ends this close to where the opposite side meets them.
constexpr double kNeighbourLengthRatioHigh = 1.1;
constexpr double kNeighbourLengthRatioLow = 0.9;
constexpr double kConstructedGapLimit = 10.0;
// Opposite boundaries nearer than this share of the image are suspect in a combination.
constexpr double kCombinedDistanceRatio = 0.1;
// Replacement rule: an outer but shorter line loses only to a clearly longer,
// differently angled occupant; an inner line wins only when clearly longer and near.
constexpr double kOccupantLengthRatio = 1.2;
constexpr double kOccupantAngleDisparity = 1.0;
constexpr int kInnerCoordinateLimit = 100;
constexpr double kInnerLengthRatio = 1.5;

double distance(const Geocoordinate<int>& p, const Geocoordinate<int>& q) {
    const double dx = static_cast<double>(p.x) - q.x;
    const double dy = static_cast<double>(p.y) - q.y;
    return std::sqrt(dx * dx + dy * dy);
}

// The coordinate that tells how far out a line of the side lies: smallest x
// for left, smallest y for top, largest x for right, largest y for bottom.
// A line without points lies innermost.
int outer_coordinate(const BoundingLine& line, BoundingLinePosition side) {
    const bool leading = side == geometric::LEFT_BOUNDARY || side == geometric::TOP_BOUNDARY;
    const bool along_x = side == geometric::LEFT_BOUNDARY || side == geometric::RIGHT_BOUNDARY;
    int result = leading ? INT_MAX : INT_MIN;
    for (const Geocoordinate<int>& p : line.points) {
        const int value = along_x ? p.x : p.y;
        result = leading ? std::min(result, value) : std::max(result, value);
    }
    return result;
}

// True when `line` lies further out than `other` on the side.
bool is_outer(const BoundingLine& line, const BoundingLine& other, BoundingLinePosition side) {
    const bool leading = side == geometric::LEFT_BOUNDARY || side == geometric::TOP_BOUNDARY;
    const int mine = outer_coordinate(line, side);
    const int theirs = outer_coordinate(other, side);
    return leading ? mine < theirs : mine > theirs;
}

bool same_coefficients(const BoundingLine& first, const BoundingLine& second) {
    return std::fabs(first.line.a - second.line.a) <= constants::kDoubleEpsilon &&
           std::fabs(first.line.b - second.line.b) <= constants::kDoubleEpsilon &&
           std::fabs(first.line.c - second.line.c) <= constants::kDoubleEpsilon;
}

// Drops every line whose coefficients equal those of the line before it in
// the list as it came.
void remove_repeated_lines(std::vector<BoundingLine>& lines) {
    std::vector<BoundingLine> kept;
    kept.reserve(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0 && same_coefficients(lines[i], lines[i - 1])) continue;
        kept.push_back(lines[i]);
    }
    lines.swap(kept);
}

}  // namespace

// ---- one more line ----

bool BoundingLineArrayWrapper::update_with_potential_boundary(BoundingLine& candidate, bool strict_gray) {
    const int valid = calculate_valid_boundary_number();
    if (valid != 3 && valid != 2) return false;
    if (candidate.position < 0 || candidate.position > 3) return false;
    if (slot(candidate.position).is_valid()) return false;

    // Everything the checks may change, so that a line that does not help leaves no trace.
    const std::vector<BoundingLine> saved_boundaries = boundaries;
    const std::vector<Geocoordinate<float>> saved_vertices = vertices;
    const std::vector<double> saved_confidences = confidences;
    const float saved_gray_failures = gray_failures;
    const bool saved_examined = is_four_boundary_examined;
    const int saved_width = width;
    const int saved_height = height;

    slot(candidate.position) = candidate;
    const bool ready = valid == 3 ? is_four_boundaries_ready(false, strict_gray) : is_cross_boundaries_ready();
    if (!ready) {
        boundaries = saved_boundaries;
        vertices = saved_vertices;
        confidences = saved_confidences;
        gray_failures = saved_gray_failures;
        is_four_boundary_examined = saved_examined;
        width = saved_width;
        height = saved_height;
    }
    // With two boundaries at hand a third can only improve the set, not end the search.
    return valid == 3 ? ready : false;
}

bool BoundingLineArrayWrapper::update_with_three_available_boundaries() {
    if (calculate_valid_boundary_number() != 3) return false;
    int missing = 0;
    while (boundaries[missing].is_valid()) ++missing;
    const auto side = static_cast<BoundingLinePosition>(missing);
    const auto opposite = static_cast<BoundingLinePosition>((missing + 2) % 4);
    // The neighbours of a horizontal side are left and right, of a vertical one top and bottom.
    const auto first_neighbour = static_cast<BoundingLinePosition>(geometric::is_horizontal_boundary(side) ? 0 : 1);
    const auto second_neighbour = static_cast<BoundingLinePosition>(first_neighbour + 2);
    // The new side runs through the neighbours' ends nearest to it: their first
    // points for top and left, their second for right and bottom.
    const std::size_t near_end = (side == geometric::TOP_BOUNDARY || side == geometric::LEFT_BOUNDARY) ? 0 : 1;
    const std::size_t far_end = 1 - near_end;

    // The line through the two near ends.
    const Geocoordinate<int> p1 = slot(first_neighbour).end_point(near_end);
    const Geocoordinate<int> p2 = slot(second_neighbour).end_point(near_end);
    geometric::GeolineBasePoints<int> source;
    const int d = p1.x - p2.x;
    if (d == 0) {
        source.a = 1.0;
        source.b = 0.0;
        source.c = -p1.x;
    } else {
        source.a = static_cast<double>(p1.y - p2.y) / d;
        source.b = -1.0;
        source.c = p2.y - source.a * p2.x;
    }
    source.points = {p1, p2};
    BoundingLine candidate(side, source, geometric::REGULAR_BOUNDING_LINE);

    // The far ends must reach the opposite side: the gap to where it meets
    // each neighbour, the crossing truncated to int.
    double gap = 0.0;
    for (BoundingLinePosition neighbour : {first_neighbour, second_neighbour}) {
        Geocoordinate<double> crossing;
        if (!geometric::intersect_lines(slot(opposite).line, slot(neighbour).line, crossing)) return false;
        const Geocoordinate<int> vertex(static_cast<int>(crossing.x), static_cast<int>(crossing.y));
        gap += distance(slot(neighbour).end_point(far_end), vertex);
    }

    // Nearly parallel to the opposite side.
    if (geometric::LineAngleComparator::calculate_disparity(candidate.line, slot(opposite).line) >=
        horizontal_angle_limit) {
        return false;
    }
    // Neighbours alike in length, ends closing on the opposite side.
    const double q = slot(first_neighbour).polyline_length() / slot(second_neighbour).polyline_length();
    if (q > kNeighbourLengthRatioHigh || q < kNeighbourLengthRatioLow || gap > kConstructedGapLimit) return false;
    // The four must make a page, strictly grey-tested.
    if (!update_with_potential_boundary(candidate, true)) return false;
    // The three real lines become one candidate set, the constructed line,
    // weak, a set of its own.
    slot(side).clear();
    keep_as_candidate_boundaries();
    clear_current_boundaries();
    candidate.type = geometric::WEAK_BOUNDING_LINE;
    slot(side) = candidate;
    keep_as_candidate_boundaries();
    return true;
}

bool BoundingLineArrayWrapper::place_boundary(const BoundingLine& line) {
    if (line.position < 0 || line.position > 3) return false;
    BoundingLine& occupant = slot(line.position);
    if (!occupant.is_valid()) {
        occupant = line;
        return true;
    }
    const double line_length = line.polyline_length();
    const double occupant_length = occupant.polyline_length();
    const bool longer = line_length > occupant_length;
    const bool outer = is_outer(line, occupant, line.position);
    bool replace;
    if (outer) {
        replace = longer || !(occupant_length / line_length > kOccupantLengthRatio &&
                              geometric::LineAngleComparator::calculate_disparity(occupant.line, line.line) >
                                  kOccupantAngleDisparity);
    } else if (longer) {
        const long long shift = static_cast<long long>(outer_coordinate(line, line.position)) -
                                outer_coordinate(occupant, line.position);
        replace = std::llabs(shift) <= kInnerCoordinateLimit && line_length / occupant_length > kInnerLengthRatio;
    } else {
        replace = false;
    }
    if (replace) occupant = line;
    return replace;
}

// ---- candidate sets ----

void BoundingLineArrayWrapper::keep_as_candidate_boundaries() {
    for (int k = 0; k < 4; ++k) boundaries.push_back(boundaries[k]);
    if (vertices.size() < 4) vertices.resize(4);
    for (int k = 0; k < 4; ++k) vertices.push_back(vertices[k]);
    for (int k = 0; k < 4; ++k) boundaries[k].clear();
    confidences.push_back(current_confidence());
}

void BoundingLineArrayWrapper::select_prominent_four_boundaries() {
    if (boundaries.size() < 8) return;
    // Every set counts, the current one too: it stays when no candidate set
    // is strictly fuller.
    std::size_t best = 0;
    int best_count = -1;
    for (std::size_t start = 0; start + 4 <= boundaries.size(); start += 4) {
        int count = 0;
        for (std::size_t k = 0; k < 4; ++k) count += boundaries[start + k].is_valid() ? 1 : 0;
        if (count > best_count) {
            best_count = count;
            best = start;
        }
    }
    if (best == 0) return;
    for (std::size_t k = 0; k < 4; ++k) boundaries[k] = boundaries[best + k];
}

bool BoundingLineArrayWrapper::is_small_polygon_candiate_boundary_available(std::vector<int>& set_starts) const {
    set_starts.clear();
    for (std::size_t start = 4; start + 4 <= boundaries.size(); start += 4) {
        bool full = true;
        for (std::size_t k = 0; k < 4; ++k) full = full && boundaries[start + k].is_valid();
        if (full) set_starts.push_back(static_cast<int>(start));
    }
    return !set_starts.empty();
}

int BoundingLineArrayWrapper::replace_with_small_polygon_candiate_boundary(const std::vector<int>& set_starts) {
    if (set_starts.empty()) return -1;
    int chosen = set_starts[0];
    if (set_starts.size() > 1) {
        float largest = polygon_area(static_cast<std::size_t>(chosen));
        for (std::size_t i = 1; i < set_starts.size(); ++i) {
            const float area = polygon_area(static_cast<std::size_t>(set_starts[i]));
            if (area > largest) {
                largest = area;
                chosen = set_starts[i];
            }
        }
    }
    const std::size_t start = static_cast<std::size_t>(chosen);
    if (start + 4 > boundaries.size()) return -1;
    for (std::size_t k = 0; k < 4; ++k) boundaries[k] = boundaries[start + k];
    if (vertices.size() >= start + 4) {
        for (std::size_t k = 0; k < 4; ++k) vertices[k] = vertices[start + k];
    }
    if (confidences.size() > start / 4) current_confidence() = confidences[start / 4];
    return chosen + 3;
}

void BoundingLineArrayWrapper::update_with_candiate_boundaries(BoundingLine& slot_line,
                                                               BoundingLinePosition /*position*/,
                                                               std::vector<BoundingLine>& own_list,
                                                               std::vector<BoundingLine>& opposite_list) {
    remove_repeated_lines(own_list);
    remove_repeated_lines(opposite_list);
    if (!own_list.empty()) {
        slot_line = own_list.front();
        if (slot_line.type != geometric::WEAK_BOUNDING_LINE) return;
        for (std::size_t i = 1; i < own_list.size(); ++i) {
            if (own_list[i].type != geometric::WEAK_BOUNDING_LINE) {
                slot_line = own_list[i];
                own_list.erase(own_list.begin(), own_list.begin() + static_cast<std::ptrdiff_t>(i) + 1);
                return;
            }
        }
        return;
    }
    // Nothing of its own: the innermost line of the opposite side stands in.
    if (opposite_list.size() < 2) return;
    slot_line = opposite_list.back();
    if (slot_line.type != geometric::WEAK_BOUNDING_LINE) return;
    int regular_before = 0;
    for (std::size_t i = 0; i + 1 < opposite_list.size(); ++i) {
        regular_before += opposite_list[i].type != geometric::WEAK_BOUNDING_LINE ? 1 : 0;
    }
    if (regular_before < 2) return;
    for (std::size_t i = opposite_list.size() - 1; i-- > 0;) {
        if (opposite_list[i].type != geometric::WEAK_BOUNDING_LINE) {
            slot_line = opposite_list[i];
            return;
        }
    }
}

bool BoundingLineArrayWrapper::combine_multiple_candidate_boundaries() {
    // Candidates survive from an earlier stage through its current slots.
    if (previous_wrapper) {
        for (int k = 0; k < 4; ++k) boundaries.push_back(previous_wrapper->boundaries[k]);
    }
    // The current set and at most one candidate set: take the fuller.
    if (boundaries.size() < 12) {
        select_prominent_four_boundaries();
        return false;
    }
    // Lists by side, without lines on the image's border.
    std::vector<BoundingLine> lists[4];
    for (std::size_t i = 4; i < boundaries.size(); ++i) {
        const BoundingLine& line = boundaries[i];
        if (!line.is_valid()) continue;
        const BoundingLinePosition side = line.position;
        if (line.points.empty()) {
            if (side == geometric::LEFT_BOUNDARY || side == geometric::TOP_BOUNDARY) continue;
        } else {
            long long sum_x = 0, sum_y = 0;
            for (const Geocoordinate<int>& p : line.points) {
                sum_x += p.x;
                sum_y += p.y;
            }
            const long long count = static_cast<long long>(line.points.size());
            const long long mean_x = sum_x / count;
            const long long mean_y = sum_y / count;
            if ((side == geometric::LEFT_BOUNDARY && mean_x == 0) || (side == geometric::TOP_BOUNDARY && mean_y == 0) ||
                (side == geometric::RIGHT_BOUNDARY && mean_x == width - 1) ||
                (side == geometric::BOTTOM_BOUNDARY && mean_y == height - 1)) {
                continue;
            }
        }
        lists[side].push_back(line);
    }
    // Outermost first; lines of equal extreme keep the order of their sets.
    for (int k = 0; k < 4; ++k) {
        const auto side = static_cast<BoundingLinePosition>(k);
        std::stable_sort(lists[k].begin(), lists[k].end(), [side](const BoundingLine& p, const BoundingLine& q) {
            return is_outer(p, q, side);
        });
    }
    // Each slot from its own list, or from the opposite one when its own is empty.
    bool empty[4];
    for (int k = 0; k < 4; ++k) empty[k] = lists[k].empty();
    const int order[4] = {geometric::LEFT_BOUNDARY, geometric::RIGHT_BOUNDARY, geometric::TOP_BOUNDARY,
                          geometric::BOTTOM_BOUNDARY};
    for (int k : order) {
        update_with_candiate_boundaries(boundaries[k], static_cast<BoundingLinePosition>(k), lists[k],
                                        lists[(k + 2) % 4]);
    }
    // A pair too close together loses the side that had no line of its own.
    for (int first : {geometric::TOP_BOUNDARY, geometric::LEFT_BOUNDARY}) {
        const int second = first + 2;
        if (!boundaries[first].is_valid() || !boundaries[second].is_valid()) continue;
        const Geocoordinate<int> p = boundaries[second].end_point(0);
        const Geocoordinate<int> q = boundaries[second].end_point(1);
        const Geocoordinate<int> middle((p.x + q.x) / 2, (p.y + q.y) / 2);
        const int extent = first == geometric::TOP_BOUNDARY ? height : width;
        if (boundaries[first].line.point_distance(middle) < kCombinedDistanceRatio * extent) {
            if (empty[first]) boundaries[first].clear();
            if (empty[second]) boundaries[second].clear();
        }
    }
    // A slot filled from the opposite list takes its own side.
    for (int k = 0; k < 4; ++k) {
        if (boundaries[k].is_valid()) boundaries[k].position = static_cast<BoundingLinePosition>(k);
    }
    return is_four_boundaries_ready(false, false);
}

}  // namespace geometric_test

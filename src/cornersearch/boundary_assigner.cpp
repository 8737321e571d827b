// One polygon's lines sorted to the four sides of the page and offered to the
// boundary array, with the rules for lines on the image's border and for
// lines that reach past the polygon's box.
#include <algorithm>
#include <cmath>

#include "cornersearch/blob_boundary_estimator.h"
#include "edgelines/line_angle_comparator.h"

namespace geometric_test {

namespace {

typedef BlobBoundaryEstimator::Line Line;
using geometric::LineAngleComparator;

double mean_x(const Line& line) {
    double sum = 0.0;
    for (const auto& p : line.points) sum += p.x;
    return line.points.empty() ? 0.0 : sum / static_cast<double>(line.points.size());
}

double mean_y(const Line& line) {
    double sum = 0.0;
    for (const auto& p : line.points) sum += p.y;
    return line.points.empty() ? 0.0 : sum / static_cast<double>(line.points.size());
}

double angle_of(const Line& line) { return LineAngleComparator::calculate_line_angle(line); }

double length_of(const Line& line) {
    if (line.points.size() < 2) return 0.0;
    return std::hypot(static_cast<double>(line.points[1].x - line.points[0].x),
                      static_cast<double>(line.points[1].y - line.points[0].y));
}

// Lines within this many degrees of the dominant direction near the
// horizontal run across the page; the others stand upright.
constexpr double kFamilyHalfAngle = 45.0;
// From this many lines across on, only those close to the dominant direction stay.
constexpr std::size_t kCloseFamilyCount = 3;
// A dominant direction further than this from the horizontal, in degrees,
// makes the polygon a tilted one.
constexpr double kTiltedAngle = 15.0;
// Degrees from the horizontal within which a line across lies flat, and from
// the vertical within which an upright line stands straight: such a line is
// sorted by its mean, not by where it meets the box.
constexpr double kFlatTolerance = 1.0;
constexpr double kStraightTolerance = 10.0;
// On a tilted polygon, a gap between right lines wider than this share of
// the image's width parts the right side from lines of the left one.
constexpr double kRightSideGapShare = 0.1;
// A side line whose mean lies within this many pixels of the image's own
// edge is the image's edge, not the page's.
constexpr int kImageEdgeBand = 2;
// A line across whose mean y is below kTopBorderBand, or at least
// height - kBottomBorderBand, lies on the image's top or bottom border.
constexpr double kTopBorderBand = 4.0;
constexpr int kBottomBorderBand = 5;

// Primary and secondary candidates of one side.
struct SideLists {
    std::vector<Line> primary;
    std::vector<Line> secondary;
    void add(const Line& line, bool is_primary) { (is_primary ? primary : secondary).push_back(line); }
    // An empty primary list takes the secondary one.
    void settle() {
        if (primary.empty()) primary.swap(secondary);
    }
};

// Candidates by slot position: left, top, right, bottom.
typedef SideLists Sides[4];

// Distance from v to the nearer end of [low, high].
double to_nearer_end(double v, int low, int high) { return std::min(std::fabs(v - low), std::fabs(v - high)); }

// Splits the lines into the two families around the dominant direction near
// the horizontal, the angle of the longest line within 45 degrees of it (0
// without one), and returns that angle.
double split_into_families(const std::vector<Line>& lines, double angle_limit, std::vector<Line>& across,
                           std::vector<Line>& upright) {
    double dominant = 0.0, longest = -1.0;
    for (const Line& line : lines) {
        if (LineAngleComparator::fold(angle_of(line)) <= kFamilyHalfAngle && length_of(line) > longest) {
            longest = length_of(line);
            dominant = angle_of(line);
        }
    }
    for (const Line& line : lines)
        (LineAngleComparator::fold(angle_of(line) - dominant) < kFamilyHalfAngle ? across : upright).push_back(line);
    if (across.size() >= kCloseFamilyCount) {
        std::vector<Line> close;
        for (const Line& line : across)
            if (LineAngleComparator::fold(angle_of(line) - dominant) < 2.0 * angle_limit) close.push_back(line);
        across.swap(close);
    }
    return dominant;
}

// How the lines across meet the polygon's box: the near side is the top, the
// far side the bottom, and a line lies on the image's border by its mean y.
struct AcrossTheBox {
    const geometric::Geobox<int>& box;
    int height;
    static bool lies_flat(const Line& line) {
        const double t = angle_of(line);
        return t < kFlatTolerance || t > 180.0 - kFlatTolerance;
    }
    static double mean(const Line& line) { return mean_y(line); }
    bool on_border(const Line& line) const {
        return BlobBoundaryEstimator::BoundaryAssigner::is_horizontal_border_line(line, height);
    }
    int near_side() const { return box.top; }
    int far_side() const { return box.bottom; }
    static double crossing(const Line& line, int side) { return line.x_at(side); }
    int low_end() const { return box.left; }
    int high_end() const { return box.right; }
};

// The same for the upright lines: left is near, right far, and no line lies
// on a border.
struct UprightInTheBox {
    const geometric::Geobox<int>& box;
    static bool lies_flat(const Line& line) {
        const double t = angle_of(line);
        return (t >= 90.0 - kStraightTolerance && t <= 90.0 + kStraightTolerance) || line.b == 0.0;
    }
    static double mean(const Line& line) { return mean_x(line); }
    bool on_border(const Line&) const { return false; }
    int near_side() const { return box.left; }
    int far_side() const { return box.right; }
    static double crossing(const Line& line, int side) { return line.y_at(side); }
    int low_end() const { return box.top; }
    int high_end() const { return box.bottom; }
};

// One family's lines to its two sides. A line parallel to them goes to the
// side nearer its mean, to the far one on a tie, as primary when within
// `limit` and not on the border. Another goes, as primary, to the side it
// meets within the box, the near side tried first; failing both, to the side
// whose crossing lies nearer the box's ends, the far one on a tie, as primary
// when the near crossing is within `limit`. Then empty primary lists take
// the secondary ones.
template <typename Box>
void sort_to_sides(const std::vector<Line>& lines, const Box& box, double limit, SideLists& near, SideLists& far) {
    for (const Line& line : lines) {
        if (Box::lies_flat(line)) {
            const double m = Box::mean(line);
            const bool border = box.on_border(line);
            const double to_near = std::fabs(box.near_side() - m), to_far = std::fabs(box.far_side() - m);
            if (to_near < to_far) {
                near.add(line, to_near < limit && !border);
            } else {
                far.add(line, to_far < limit && !border);
            }
            continue;
        }
        const double at_near = Box::crossing(line, box.near_side());
        if (at_near >= box.low_end() && at_near <= box.high_end()) {
            near.add(line, true);
            continue;
        }
        const double at_far = Box::crossing(line, box.far_side());
        if (at_far >= box.low_end() && at_far <= box.high_end()) {
            far.add(line, true);
            continue;
        }
        const double d1 = to_nearer_end(at_near, box.low_end(), box.high_end());
        const double d2 = to_nearer_end(at_far, box.low_end(), box.high_end());
        (d1 >= d2 ? far : near).add(line, d1 < limit);
    }
    near.settle();
    far.settle();
}

// Bottom lines on the image's border give way: in both lists the lines off
// the border stay where they are, and the border lines go to the end of the
// secondary list, those it held already before those of the primary list.
// An emptied primary list then takes the secondary lines off the border, or
// all of them when there are none. The top lists have no such step,
// deliberately.
void let_border_lines_give_way(SideLists& bottom, int height) {
    const auto on_border = [height](const Line& line) {
        return BlobBoundaryEstimator::BoundaryAssigner::is_horizontal_border_line(line, height);
    };
    std::vector<Line> primary, secondary, border;
    for (const Line& line : bottom.secondary) (on_border(line) ? border : secondary).push_back(line);
    for (const Line& line : bottom.primary) (on_border(line) ? border : primary).push_back(line);
    if (primary.empty() && !secondary.empty()) {
        primary.swap(secondary);
    } else if (primary.empty()) {
        primary.swap(border);
    }
    secondary.insert(secondary.end(), border.begin(), border.end());
    bottom.primary.swap(primary);
    bottom.secondary.swap(secondary);
}

// On a tilted polygon clear of the image's border, right lines far left of
// the outermost ones belong to the left side: sorted by their x at half the
// image's height, right to left, the lines past the first wide gap move to
// the secondary left list.
void hand_far_right_lines_to_left(SideLists& right, SideLists& left, int width, int height) {
    if (right.primary.size() < 2) return;
    std::vector<std::pair<double, Line>> placed;
    for (const Line& line : right.primary) placed.emplace_back(line.x_at(height / 2.0), line);
    std::stable_sort(placed.begin(), placed.end(),
                     [](const std::pair<double, Line>& a, const std::pair<double, Line>& b) { return a.first > b.first; });
    std::size_t cut = placed.size();
    for (std::size_t i = 1; i < placed.size(); ++i) {
        if (placed[i - 1].first - placed[i].first > kRightSideGapShare * width) {
            cut = i;
            break;
        }
    }
    right.primary.clear();
    for (std::size_t i = 0; i < placed.size(); ++i) (i < cut ? right.primary : left.secondary).push_back(placed[i].second);
}

// The lines of a side worth offering: all of a single one, else those off
// the image's own edge.
std::vector<Line> considered(geometric::BoundingLinePosition position, const std::vector<Line>& list, int width,
                             int height) {
    const auto on_image_edge = [&](const Line& line) {
        switch (position) {
            case geometric::TOP_BOUNDARY: return mean_y(line) < kImageEdgeBand;
            case geometric::LEFT_BOUNDARY: return mean_x(line) < kImageEdgeBand;
            case geometric::RIGHT_BOUNDARY: return mean_x(line) >= width - kImageEdgeBand;
            default: return mean_y(line) >= height - kImageEdgeBand;
        }
    };
    std::vector<Line> result;
    for (const Line& line : list)
        if (list.size() <= 1 || !on_image_edge(line)) result.push_back(line);
    return result;
}

// The array, its size, and the sorted lines: how they are offered to it.
struct Offering {
    BoundingLineArrayWrapper& wrapper;
    int width;
    int height;
    Sides& sides;

    // Each list's lines into the slots by the replacement rule, top, bottom, left, right.
    void place_primary_lines() const {
        const geometric::BoundingLinePosition order[4] = {geometric::TOP_BOUNDARY, geometric::BOTTOM_BOUNDARY,
                                                          geometric::LEFT_BOUNDARY, geometric::RIGHT_BOUNDARY};
        for (geometric::BoundingLinePosition position : order)
            for (const Line& line : considered(position, sides[position].primary, width, height))
                wrapper.place_boundary(BoundingLine(position, line, geometric::REGULAR_BOUNDING_LINE));
    }

    // The lines one by one as a missing side, until one makes a page.
    bool offer(geometric::BoundingLinePosition position, const std::vector<Line>& list) const {
        for (const Line& line : considered(position, list, width, height)) {
            BoundingLine candidate(position, line, geometric::REGULAR_BOUNDING_LINE);
            if (wrapper.update_with_potential_boundary(candidate, false)) return true;
        }
        return false;
    }

    // Each missing side in turn, left, right, top, bottom, from the lists that
    // `lists_for` names, until one makes a page.
    template <typename ListsFor>
    bool complete_missing_sides(ListsFor lists_for) const {
        const geometric::BoundingLinePosition order[4] = {geometric::LEFT_BOUNDARY, geometric::RIGHT_BOUNDARY,
                                                          geometric::TOP_BOUNDARY, geometric::BOTTOM_BOUNDARY};
        for (geometric::BoundingLinePosition position : order) {
            if (wrapper.boundaries[position].is_valid()) continue;
            const std::pair<const std::vector<Line>*, const std::vector<Line>*> lists = lists_for(position);
            if (offer(position, *lists.first) || offer(position, *lists.second)) return true;
        }
        return false;
    }

    // Three trusted sides of an earlier stage, completed by this polygon's
    // lines, the primary list of the side first.
    bool complete_previous_stage() const {
        const BoundingLineArrayWrapper& previous = *wrapper.previous_wrapper;
        for (std::size_t k = 0; k < 4; ++k) {
            wrapper.boundaries[k] = previous.boundaries[k];
            wrapper.vertices[k] = previous.vertices[k];
        }
        return complete_missing_sides([this](geometric::BoundingLinePosition position) {
            return std::make_pair(&sides[position].primary, &sides[position].secondary);
        });
    }

    // The missing sides from the secondary lines, the side's own list first,
    // then the opposite side's.
    bool complete_from_secondary_lines() const {
        return complete_missing_sides([this](geometric::BoundingLinePosition position) {
            const int opposite = (position + 2) % 4;
            return std::make_pair(&sides[position].secondary, &sides[opposite].secondary);
        });
    }
};

}  // namespace

bool BlobBoundaryEstimator::BoundaryAssigner::is_horizontal_border_line(const Line& line, int height) {
    const double m = mean_y(line);
    return m < kTopBorderBand || m >= height - kBottomBorderBand;
}

int BlobBoundaryEstimator::BoundaryAssigner::assign(const Polygon& polygon, const std::vector<Line>& lines) {
    BoundingLineArrayWrapper& wrapper = *owner.wrapper;
    const int W = owner.width, H = owner.height;
    const geometric::Geobox<int>& box = (*owner.boxes)[static_cast<std::size_t>(polygon.blob_index)];
    const double limit = wrapper.corner_overshoot_limit;

    // The lines sorted to the sides.
    std::vector<Line> across, upright;
    const double dominant = split_into_families(lines, wrapper.horizontal_angle_limit, across, upright);
    const bool tilted = LineAngleComparator::fold(dominant) > kTiltedAngle;
    Sides sides;
    sort_to_sides(across, AcrossTheBox{box, H}, limit, sides[geometric::TOP_BOUNDARY],
                  sides[geometric::BOTTOM_BOUNDARY]);
    let_border_lines_give_way(sides[geometric::BOTTOM_BOUNDARY], H);
    sort_to_sides(upright, UprightInTheBox{box}, limit, sides[geometric::LEFT_BOUNDARY],
                  sides[geometric::RIGHT_BOUNDARY]);
    if (tilted && !polygon.touches_image_border)
        hand_far_right_lines_to_left(sides[geometric::RIGHT_BOUNDARY], sides[geometric::LEFT_BOUNDARY], W, H);

    // The lines offered to the array.
    const Offering offering{wrapper, W, H, sides};
    const bool started_empty = wrapper.calculate_valid_boundary_number() == 0 && wrapper.boundaries.size() == 4;
    offering.place_primary_lines();
    const std::shared_ptr<BoundingLineArrayWrapper>& previous = wrapper.previous_wrapper;
    if (started_empty && previous && previous->can_be_trusted_as_previous_wrapper() &&
        offering.complete_previous_stage())
        return 0;
    if (wrapper.is_four_boundaries_ready(true, false)) return 0;
    // Without two sides that meet there is nothing to complete: one strong
    // side is kept as a candidate for a later polygon, anything less dropped.
    if (!wrapper.is_cross_boundaries_ready()) {
        if (wrapper.is_single_boundary_ready()) {
            wrapper.keep_as_candidate_boundaries();
        } else {
            wrapper.clear_current_boundaries();
        }
        return -3;
    }
    if (wrapper.calculate_valid_boundary_number() >= 2 && offering.complete_from_secondary_lines()) return 0;
    // Still short of a page: a fourth side built from three, or the set kept as a candidate.
    if (!wrapper.update_with_three_available_boundaries()) wrapper.keep_as_candidate_boundaries();
    return -2;
}

}  // namespace geometric_test

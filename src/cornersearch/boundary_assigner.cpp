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

// Distance from v to the nearer end of [low, high].
double to_nearer_end(double v, int low, int high) { return std::min(std::fabs(v - low), std::fabs(v - high)); }

}  // namespace

bool BlobBoundaryEstimator::BoundaryAssigner::is_horizontal_border_line(const Line& line, int height) {
    const double m = mean_y(line);
    return m < 4.0 || m >= height - 5;
}

int BlobBoundaryEstimator::BoundaryAssigner::assign(const Polygon& polygon, const std::vector<Line>& lines) {
    BoundingLineArrayWrapper& wrapper = *owner.wrapper;
    const int W = owner.width, H = owner.height;
    const geometric::Geobox<int>& box = (*owner.boxes)[static_cast<std::size_t>(polygon.blob_index)];
    const double limit = wrapper.corner_overshoot_limit;

    // 1. Two families around the dominant direction near the horizontal.
    double t0 = 0.0, longest = -1.0;
    for (const Line& line : lines) {
        if (LineAngleComparator::fold(angle_of(line)) <= 45.0 && length_of(line) > longest) {
            longest = length_of(line);
            t0 = angle_of(line);
        }
    }
    std::vector<Line> across, upright;
    for (const Line& line : lines) (LineAngleComparator::fold(angle_of(line) - t0) < 45.0 ? across : upright).push_back(line);
    if (across.size() >= 3) {
        std::vector<Line> close;
        for (const Line& line : across)
            if (LineAngleComparator::fold(angle_of(line) - t0) < 2.0 * wrapper.horizontal_angle_limit) close.push_back(line);
        across.swap(close);
    }
    // 2.
    const bool tilted = LineAngleComparator::fold(t0) > 15.0;

    // 3. Top and bottom.
    SideLists top, bottom;
    for (const Line& line : across) {
        const double m = mean_y(line);
        const bool border = is_horizontal_border_line(line, H);
        const double t = angle_of(line);
        if (t < 1.0 || t > 179.0) {
            const double to_top = std::fabs(box.top - m), to_bottom = std::fabs(box.bottom - m);
            if (to_top < to_bottom) {
                top.add(line, to_top < limit && !border);
            } else {
                bottom.add(line, to_bottom < limit && !border);
            }
            continue;
        }
        const double x_top = line.x_at(box.top);
        if (x_top >= box.left && x_top <= box.right) {
            top.add(line, true);
            continue;
        }
        const double x_bottom = line.x_at(box.bottom);
        if (x_bottom >= box.left && x_bottom <= box.right) {
            bottom.add(line, true);
            continue;
        }
        const double d1 = to_nearer_end(x_top, box.left, box.right);
        const double d2 = to_nearer_end(x_bottom, box.left, box.right);
        (d1 >= d2 ? bottom : top).add(line, d1 < limit);
    }
    top.settle();
    bottom.settle();
    // Bottom lines on the image's border give way; the top has no such step.
    {
        std::vector<Line> kept;
        for (const Line& line : bottom.primary)
            (is_horizontal_border_line(line, H) ? bottom.secondary : kept).push_back(line);
        bottom.primary.swap(kept);
        if (bottom.primary.empty()) {
            std::vector<Line> regular, rest;
            for (const Line& line : bottom.secondary)
                (is_horizontal_border_line(line, H) ? rest : regular).push_back(line);
            if (!regular.empty()) {
                bottom.primary.swap(regular);
                bottom.secondary.swap(rest);
            } else {
                bottom.primary.swap(bottom.secondary);
            }
        }
    }

    // 4. Left and right, mirrored, without a border list.
    SideLists left, right;
    for (const Line& line : upright) {
        const double t = angle_of(line);
        if ((t >= 80.0 && t <= 100.0) || line.b == 0.0) {
            const double m = mean_x(line);
            const double to_left = std::fabs(box.left - m), to_right = std::fabs(box.right - m);
            if (to_left < to_right) {
                left.add(line, to_left < limit);
            } else {
                right.add(line, to_right < limit);
            }
            continue;
        }
        const double y_left = line.y_at(box.left);
        if (y_left >= box.top && y_left <= box.bottom) {
            left.add(line, true);
            continue;
        }
        const double y_right = line.y_at(box.right);
        if (y_right >= box.top && y_right <= box.bottom) {
            right.add(line, true);
            continue;
        }
        const double d1 = to_nearer_end(y_left, box.top, box.bottom);
        const double d2 = to_nearer_end(y_right, box.top, box.bottom);
        (d1 >= d2 ? right : left).add(line, d1 < limit);
    }
    left.settle();
    right.settle();

    // 5. On a tilted free-standing polygon, right lines far left of the
    // outermost ones belong to the left side.
    if (tilted && !polygon.touches_image_border && right.primary.size() >= 2) {
        std::vector<std::pair<double, Line>> placed;
        for (const Line& line : right.primary) placed.emplace_back(line.x_at(H / 2.0), line);
        std::stable_sort(placed.begin(), placed.end(),
                         [](const std::pair<double, Line>& a, const std::pair<double, Line>& b) { return a.first > b.first; });
        std::size_t cut = placed.size();
        for (std::size_t i = 1; i < placed.size(); ++i) {
            if (placed[i - 1].first - placed[i].first > 0.1 * W) {
                cut = i;
                break;
            }
        }
        right.primary.clear();
        for (std::size_t i = 0; i < placed.size(); ++i) (i < cut ? right.primary : left.secondary).push_back(placed[i].second);
    }

    // A line on the image's own edge is no page side, unless it is the only one.
    const auto on_image_border = [W, H](geometric::BoundingLinePosition position, const Line& line) {
        switch (position) {
            case geometric::TOP_BOUNDARY: return mean_y(line) < 2.0;
            case geometric::LEFT_BOUNDARY: return mean_x(line) < 2.0;
            case geometric::RIGHT_BOUNDARY: return mean_x(line) >= W - 2;
            default: return mean_y(line) >= H - 2;
        }
    };
    const auto considered = [&](geometric::BoundingLinePosition position, const std::vector<Line>& list) {
        std::vector<Line> result;
        for (const Line& line : list)
            if (list.size() <= 1 || !on_image_border(position, line)) result.push_back(line);
        return result;
    };
    SideLists* sides[4] = {&left, &top, &right, &bottom};  // by slot position
    const auto offer = [&](geometric::BoundingLinePosition position, const std::vector<Line>& list) {
        for (const Line& line : considered(position, list)) {
            BoundingLine candidate(position, line, geometric::REGULAR_BOUNDING_LINE);
            if (wrapper.update_with_potential_boundary(candidate, false)) return true;
        }
        return false;
    };
    const geometric::BoundingLinePosition completion_order[4] = {geometric::LEFT_BOUNDARY, geometric::RIGHT_BOUNDARY,
                                                                 geometric::TOP_BOUNDARY, geometric::BOTTOM_BOUNDARY};

    // 6. The primary lists into the slots.
    const bool started_empty = wrapper.calculate_valid_boundary_number() == 0 && wrapper.boundaries.size() == 4;
    const geometric::BoundingLinePosition placing_order[4] = {geometric::TOP_BOUNDARY, geometric::BOTTOM_BOUNDARY,
                                                              geometric::LEFT_BOUNDARY, geometric::RIGHT_BOUNDARY};
    for (geometric::BoundingLinePosition position : placing_order)
        for (const Line& line : considered(position, sides[position]->primary))
            wrapper.place_boundary(BoundingLine(position, line, geometric::REGULAR_BOUNDING_LINE));

    // 7. Three trusted sides of an earlier stage, completed by this polygon.
    const std::shared_ptr<BoundingLineArrayWrapper>& previous = wrapper.previous_wrapper;
    if (started_empty && previous && previous->can_be_trusted_as_previous_wrapper()) {
        for (std::size_t k = 0; k < 4; ++k) {
            wrapper.boundaries[k] = previous->boundaries[k];
            wrapper.vertices[k] = previous->vertices[k];
        }
        for (geometric::BoundingLinePosition position : completion_order) {
            if (wrapper.boundaries[position].is_valid()) continue;
            if (offer(position, sides[position]->primary) || offer(position, sides[position]->secondary)) return 0;
        }
    }
    // 8.
    if (wrapper.is_four_boundaries_ready(true, false)) return 0;
    // 9.
    if (!wrapper.is_cross_boundaries_ready()) {
        if (wrapper.is_single_boundary_ready()) {
            wrapper.keep_as_candidate_boundaries();
        } else {
            wrapper.clear_current_boundaries();
        }
        return -3;
    }
    // 10. The missing sides from the secondary lines, its own side's first.
    if (wrapper.calculate_valid_boundary_number() >= 2) {
        for (geometric::BoundingLinePosition position : completion_order) {
            if (wrapper.boundaries[position].is_valid()) continue;
            const geometric::BoundingLinePosition opposite = static_cast<geometric::BoundingLinePosition>((position + 2) % 4);
            if (offer(position, sides[position]->secondary) || offer(position, sides[opposite]->secondary)) return 0;
        }
    }
    // 11.
    if (!wrapper.update_with_three_available_boundaries()) wrapper.keep_as_candidate_boundaries();
    return -2;
}

}  // namespace geometric_test

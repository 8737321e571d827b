// The segment-level linking pass of the line segment detector.
#include "linesegments/segment_linker.h"

#include <algorithm>
#include <cmath>

#include "common/constants.h"
#include "linesegments/angle_tools.h"
#include "linesegments/nfa_enhancer.h"

namespace geometric {

namespace {

double distance(double x1, double y1, double x2, double y2) {
    return std::sqrt((x2 - x1) * (x2 - x1) + (y2 - y1) * (y2 - y1));
}

// Segment ends bucketed on a square grid of cells at least link_gap wide, so
// that a member only looks at segments with an end near one of its own. The
// candidates are visited in their sorted order, exactly as a scan of all
// segments would visit the ones that can pass the gap test.
class EndGrid {
public:
    // The query reaches a hair further than link_gap, so that rounding never
    // hides an end that lies exactly at the limit.
    EndGrid(const std::vector<LineSegmentRect>& segments, double link_gap)
        : reach(link_gap + std::fabs(link_gap) * 1e-9 + 1e-9) {
        cell = std::max(reach, 4.0);  // also bounds the cell count for tiny gaps
        min_x = min_y = 0.0;
        double max_x = 0.0, max_y = 0.0;
        bool first = true;
        for (const LineSegmentRect& s : segments) {
            const double xs[2] = {s.x1, s.x2};
            const double ys[2] = {s.y1, s.y2};
            for (int e = 0; e < 2; ++e) {
                if (first || xs[e] < min_x) min_x = xs[e];
                if (first || ys[e] < min_y) min_y = ys[e];
                if (first || xs[e] > max_x) max_x = xs[e];
                if (first || ys[e] > max_y) max_y = ys[e];
                first = false;
            }
        }
        columns = static_cast<int>(std::min((max_x - min_x) / cell, 4096.0)) + 1;
        rows = static_cast<int>(std::min((max_y - min_y) / cell, 4096.0)) + 1;
        starts.assign(static_cast<std::size_t>(columns) * rows + 1, 0);
        std::vector<int> cells(segments.size() * 2);
        for (std::size_t i = 0; i < segments.size(); ++i) {
            cells[2 * i] = cell_of(segments[i].x1, segments[i].y1);
            cells[2 * i + 1] = cell_of(segments[i].x2, segments[i].y2);
        }
        for (int c : cells) ++starts[c + 1];
        for (std::size_t c = 1; c < starts.size(); ++c) starts[c] += starts[c - 1];
        entries.resize(cells.size());
        std::vector<int> fill(starts.begin(), starts.end() - 1);
        for (std::size_t e = 0; e < cells.size(); ++e) entries[fill[cells[e]]++] = static_cast<int>(e / 2);
    }

    // Appends the segments with an end in a cell that meets the square of
    // half-side `reach` round (x, y).
    void collect(double x, double y, std::vector<int>& out) const {
        const int c0 = clamp_column(std::floor((x - reach - min_x) / cell));
        const int c1 = clamp_column(std::floor((x + reach - min_x) / cell));
        const int r0 = clamp_row(std::floor((y - reach - min_y) / cell));
        const int r1 = clamp_row(std::floor((y + reach - min_y) / cell));
        for (int r = r0; r <= r1; ++r)
            for (int c = c0; c <= c1; ++c) {
                const int id = r * columns + c;
                out.insert(out.end(), entries.begin() + starts[id], entries.begin() + starts[id + 1]);
            }
    }

private:
    int clamp_column(double c) const { return static_cast<int>(std::max(0.0, std::min(c, columns - 1.0))); }
    int clamp_row(double r) const { return static_cast<int>(std::max(0.0, std::min(r, rows - 1.0))); }
    int cell_of(double x, double y) const {
        return clamp_row(std::floor((y - min_y) / cell)) * columns + clamp_column(std::floor((x - min_x) / cell));
    }

    double reach;
    double cell;
    double min_x, min_y;
    int columns = 1, rows = 1;
    std::vector<int> starts;   // first entry of each cell, cells in row order
    std::vector<int> entries;  // segment index of each end
};

}  // namespace

SegmentLinker::SegmentLinker(double link_angle_, double link_gap_, bool validate_, double log_eps_)
    : link_angle(link_angle_), link_gap(link_gap_), validate(validate_), log_eps(log_eps_) {}

double SegmentLinker::pair_ends(const LineSegmentRect& m, const LineSegmentRect& c, double link_gap,
                                bool& at_first_end) {
    const double d11 = distance(m.x1, m.y1, c.x1, c.y1);
    const double d12 = distance(m.x1, m.y1, c.x2, c.y2);
    const double d21 = distance(m.x2, m.y2, c.x1, c.y1);
    const double d22 = distance(m.x2, m.y2, c.x2, c.y2);
    const double refused = link_gap + 1.0;
    // The first of the smallest, in the order d11, d12, d21, d22.
    if (d11 <= d12 && d11 <= d21 && d11 <= d22) {
        at_first_end = true;
        return d21 > d22 ? refused : d11;
    }
    if (d12 <= d21 && d12 <= d22) {
        at_first_end = true;
        return d22 > d21 ? refused : d12;
    }
    if (d21 <= d22) {
        at_first_end = false;
        return d11 > d12 ? refused : d21;
    }
    at_first_end = false;
    return d12 > d11 ? refused : d22;
}

void SegmentLinker::link(std::vector<LineSegmentRect>& segments, const ImageObject<double>& angles) const {
    std::stable_sort(segments.begin(), segments.end(),
                     [](const LineSegmentRect& a, const LineSegmentRect& b) { return a.length > b.length; });
    const int count = static_cast<int>(segments.size());
    const double tolerance = link_angle * constants::kPi / 180.0;
    const NFAEnhancer enhancer(angles, log_eps);
    const EndGrid grid(segments, link_gap);

    std::vector<LineSegmentRect> linked;
    std::vector<char> taken(count, 0);
    std::vector<int> group;
    std::vector<int> candidates;
    for (int seed = 0; seed < count; ++seed) {
        if (taken[seed]) continue;
        taken[seed] = 1;
        group.assign(1, seed);
        double sum_x = segments[seed].x2 - segments[seed].x1;
        double sum_y = segments[seed].y2 - segments[seed].y1;
        double direction = std::atan2(sum_y, sum_x);

        for (std::size_t g = 0; g < group.size(); ++g) {
            const LineSegmentRect& m = segments[group[g]];
            candidates.clear();
            grid.collect(m.x1, m.y1, candidates);
            grid.collect(m.x2, m.y2, candidates);
            std::sort(candidates.begin(), candidates.end());
            candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
            for (int ci : candidates) {
                if (taken[ci]) continue;
                const LineSegmentRect& c = segments[ci];
                bool at_first_end = false;
                const double gap = pair_ends(m, c, link_gap, at_first_end);
                if (gap > link_gap) continue;
                if (!lsd_angle::is_aligned(c.theta, direction, tolerance)) continue;
                taken[ci] = 1;
                group.push_back(ci);
                const double sign = at_first_end ? -1.0 : 1.0;
                sum_x += sign * (c.x - m.x);
                sum_y += sign * (c.y - m.y);
                direction = std::atan2(sum_y, sum_x);
            }
        }

        LineSegmentRect rect = group_rectangle(segments, group, direction);
        if (validate) {
            double log_nfa = 0.0;
            if (enhancer.enhance_nfa(rect, log_nfa) < 0) continue;
            rect.log_nfa = log_nfa;
        }
        linked.push_back(rect);
    }
    segments.swap(linked);
}

LineSegmentRect SegmentLinker::group_rectangle(const std::vector<LineSegmentRect>& segments,
                                               const std::vector<int>& group, double direction) const {
    const bool single = group.size() == 1;
    LineSegmentRect rect;
    if (single) rect = segments[group[0]];

    // Centre: the members' centres weighted by their length.
    double total = 0.0;
    for (int i : group) total += segments[i].length;
    const bool unweighted = !(total > 0.0);
    if (unweighted) total = static_cast<double>(group.size());
    double cx = 0.0;
    double cy = 0.0;
    for (int i : group) {
        const double w = unweighted ? 1.0 : segments[i].length;
        cx += w * segments[i].x;
        cy += w * segments[i].y;
    }
    cx /= total;
    cy /= total;

    const double tolerance = link_angle * constants::kPi / 180.0;
    double theta = rect.theta;
    if (!single) {
        double ixx = 0.0, iyy = 0.0, ixy = 0.0;
        for (int i : group) {
            const double w = unweighted ? 1.0 : segments[i].length;
            const double ex = segments[i].x - cx;
            const double ey = segments[i].y - cy;
            ixx += ey * ey * w;
            iyy += ex * ex * w;
            ixy -= ex * ey * w;
        }
        if (ixx == 0.0 && iyy == 0.0 && ixy == 0.0) {
            theta = direction;  // all centres in one place: no axis of their own
        } else {
            const double lambda = 0.5 * (ixx + iyy - std::sqrt((ixx - iyy) * (ixx - iyy) + 4.0 * ixy * ixy));
            theta = std::fabs(ixx) > std::fabs(iyy) ? std::atan2(lambda - ixx, ixy) : std::atan2(ixy, lambda - iyy);
            if (lsd_angle::difference(theta, direction) > tolerance) theta += constants::kPi;
        }
    }

    const double dx = std::cos(theta);
    const double dy = std::sin(theta);
    double l_min = 0.0, l_max = 0.0, w_min = 0.0, w_max = 0.0;
    for (int i : group) {
        const double xs[2] = {segments[i].x1, segments[i].x2};
        const double ys[2] = {segments[i].y1, segments[i].y2};
        for (int e = 0; e < 2; ++e) {
            const double l = (xs[e] - cx) * dx + (ys[e] - cy) * dy;
            const double w = -(xs[e] - cx) * dy + (ys[e] - cy) * dx;
            l_min = std::min(l_min, l);
            l_max = std::max(l_max, l);
            w_min = std::min(w_min, w);
            w_max = std::max(w_max, w);
        }
    }
    rect.x1 = cx + l_min * dx;
    rect.y1 = cy + l_min * dy;
    rect.x2 = cx + l_max * dx;
    rect.y2 = cy + l_max * dy;
    rect.width = std::max(w_max - w_min, 1.0);
    rect.x = cx;
    rect.y = cy;
    rect.theta = theta;
    rect.prec = tolerance;
    rect.p = rect.prec / constants::kPi;
    if (!single) {
        rect.length = 0.0;
        rect.log_nfa = segments[group[0]].log_nfa;
    }
    return rect;
}

}  // namespace geometric

// The page-edge Hough transform: from a set of edge points to the four sides
// of a page, each candidate line checked against the points themselves.
#ifndef MORVANE_EDGELINES_HOUGH_TRANSFORM_H
#define MORVANE_EDGELINES_HOUGH_TRANSFORM_H

#include <utility>
#include <vector>

#include "common/image.h"
#include "edgelines/bounding_line.h"
#include "edgelines/hough_transform_para.h"
#include "textgeometry/geobox.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

// A candidate line between two picture edges: (x1, y1), (x2, y2).
typedef std::pair<std::pair<int, int>, std::pair<int, int>> HoughLineEnds;

// Conventions. A line is the accumulator cell (distance index d, angle index
// t): points (x, y) with cos(t) dx + sin(t) dy + maximum_distance close to d,
// where dx = x - width / 2 and dy = y - height / 2; t is the angle of the
// line's normal. Cell (d, t) is stored at d * angle_cells + t, so one row
// holds every angle of one distance. `horizontal` means 45 <= t < 136: the
// line runs mainly across the image.
//
// The search is not a general line detector: it takes the strongest line,
// its partner at the opposite side, the strongest roughly perpendicular line
// and its partner. The parameters are always the record's defaults.
class HoughTransform : public HoughTransformPara {
public:
    HoughTransform(int width, int height);
    // Takes its size from `image`, which the single-argument voting reads.
    explicit HoughTransform(common::Image* image);

    // The whole search. True only when `boundaries` holds four accepted lines
    // whose segments together reach minimum_boundary_length_ratio of the
    // image's perimeter. Fewer than 10 points: false, nothing touched. On
    // false `boundaries` keeps what was appended; `partial_boundaries` is
    // filled only when three lines were accepted and the fourth failed.
    bool get_bounding_lines(const std::vector<int>& xs, const std::vector<int>& ys,
                            std::vector<BoundingLine>& boundaries, std::vector<BoundingLine>& partial_boundaries,
                            bool& first_line_is_horizontal);

    // Resizes the accumulator to distance_cells x angle_cells, votes every
    // point once per angle, then smooths when smooth_accumulator is set.
    void set_up_accumulator_map(std::vector<unsigned int>& accumulator, const std::vector<int>& xs,
                                const std::vector<int>& ys) const;
    // The same for every pixel of `image` whose value is 1.
    void set_up_accumulator_map(std::vector<unsigned int>& accumulator) const;
    // Rows 1 to distance_cells - 2, in order and in place, become the mean of
    // themselves and their two neighbours (unsigned division): a row reads
    // the row above already smoothed and the row below still raw. Only along
    // the distance; nothing with fewer than three rows.
    void smooth_accumulator_map(std::vector<unsigned int>& accumulator) const;

    // The first cell of the highest count in storage order.
    void peak(const std::vector<unsigned int>& accumulator, int& distance_index, int& angle_index,
              unsigned int& votes) const;
    // The first cell above every earlier one, over the distance rows in
    // order, within a row the ranges in order, within a range the angles
    // start to end inclusive. Nothing above 0: the indices stay as they came
    // in and votes is 0.
    void peak(const std::vector<unsigned int>& accumulator, const std::vector<int>& range_starts,
              const std::vector<int>& range_ends, int& distance_index, int& angle_index,
              unsigned int& votes) const;

    // The cell's line cut by the top and bottom borders (a vertical line) or
    // by the left and right ones (a horizontal line). Answers `horizontal`.
    bool estimate_double_end_line(int distance_index, int angle_index, HoughLineEnds& line) const;
    bool estimate_double_end_line(int distance_index, int angle_index, std::vector<HoughLineEnds>& lines) const;
    bool supporting_double_end_line(int distance_index, int angle_index, int& x1, int& y1, int& x2,
                                    int& y2) const;

    // The angle cells within half_range of centre, wrapped at 180: one range,
    // or two when the window crosses 0 or 179.
    static void obtain_angle_search_range(int centre, int half_range, std::vector<int>& starts,
                                          std::vector<int>& ends);

    // The partner of `first_line` on the other side of the page: cells near
    // its angle with at least peak_vote_ratio of its votes, the threshold
    // halving between parallel_search_attempts tries.
    bool select_hough_line_same_direction(const std::vector<unsigned int>& accumulator,
                                          const HoughLineEnds& first_line, int angle_index, unsigned int votes,
                                          bool horizontal, HoughLineEnds& found, int& distance_index,
                                          int& angle_index_found) const;
    bool perform_parallel_line_selection(const std::vector<unsigned int>& accumulator, unsigned int threshold,
                                         const std::vector<int>& starts, const std::vector<int>& ends,
                                         const HoughLineEnds& first_line, bool horizontal, HoughLineEnds& found,
                                         int& distance_index, int& angle_index) const;
    // Every cell of the ranges with votes >= threshold, rows ascending.
    bool collect_parallel_lines(const std::vector<unsigned int>& accumulator, unsigned int threshold,
                                const std::vector<int>& starts, const std::vector<int>& ends,
                                std::vector<HoughLineEnds>& lines, std::vector<unsigned int>& votes,
                                std::vector<int>& distance_indices, std::vector<int>& angle_indices) const;
    bool select_best_parallel_line(const HoughLineEnds& first_line, const std::vector<HoughLineEnds>& lines,
                                   const std::vector<unsigned int>& votes, int& best_index, bool horizontal) const;
    // Within maximum_angle degrees of the first line, and with its midpoint
    // at least minimum_distance away from it.
    static bool is_parallel_line_qualified(const HoughLineEnds& first_line, const HoughLineEnds& candidate,
                                           double& distance, bool& positive_side, float maximum_angle,
                                           float minimum_distance);
    // The index of the best score (1 - distance_weight) votes' + distance_weight
    // distance', each normalised; a single candidate wins outright.
    int obtain_best_parallel_line_index(std::vector<double>& votes, std::vector<double>& distances,
                                        const std::vector<int>& indices) const;

    // Verification of one candidate: the largest connected run near it,
    // re-fitted, must reach minimum_segment_ratio of the reference length
    // (reference's segment, or the image's width or height).
    bool evalute_selected_hough_line(const std::vector<int>& xs, const std::vector<int>& ys,
                                     const std::vector<unsigned int>& accumulator, const HoughLineEnds& line,
                                     int distance_index, int angle_index, bool horizontal, BoundingLine& result,
                                     const BoundingLine* reference) const;
    // The line fitted to the largest connected group of the points within
    // segment_band_half_width of the cell's line; `box` becomes the group's
    // box and `dominant` whether it held at least 60% of those points. The
    // accumulator is not consulted.
    GeolineBase obtain_largest_segment_around_selected_hough_line(
        const std::vector<int>& xs, const std::vector<int>& ys, const std::vector<unsigned int>& accumulator,
        const HoughLineEnds& line, int distance_index, int angle_index, bool horizontal, Geobox<int>& box,
        bool& dominant) const;

    int distance_cells = 0;
    int angle_cells = 0;
    float maximum_distance = 0.0f;  // offset that makes every distance non-negative
    double angle_step_radians = 0.0;
    int image_width = 0;
    int image_height = 0;
    std::vector<double> sine_table;
    std::vector<double> cosine_table;
    common::Image* image = nullptr;  // not owned

private:
    void initialize_hough_table();
    void vote(std::vector<unsigned int>& accumulator, int x, int y) const;
};

}  // namespace geometric

#endif

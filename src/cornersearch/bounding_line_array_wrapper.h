// The working memory of the corner search: four current boundaries (left,
// top, right, bottom), earlier sets of four kept as candidates, the
// quadrilateral's vertices and a confidence per set.
//
// The class is split across sources: bounding_line_array_wrapper.cpp holds
// the state and the measures that leave the set as it is;
// bounding_line_array_repairs.cpp the predicates that clear the boundary at
// fault when they fail; bounding_line_array_examination.cpp the grey test and
// the decisions whether a set is a page; bounding_line_array_updating.cpp how
// lines enter the set, are rolled back, and how candidate sets combine.
#ifndef MORVANE_CORNERSEARCH_BOUNDING_LINE_ARRAY_WRAPPER_H
#define MORVANE_CORNERSEARCH_BOUNDING_LINE_ARRAY_WRAPPER_H

#include <memory>
#include <vector>

#include "common/image.h"
#include "cornersearch/bounding_line.h"
#include "edgelines/bounding_line.h"
#include "textgeometry/direction.h"
#include "textgeometry/geobox.h"
#include "textgeometry/geocoordinate.h"
#include "vanishing/vanishing_point_output.h"

namespace geometric_test {

// Slots 0 to 3 hold the current set by position: a slot's index is the
// position of the boundary it is meant for. Predicates may change the set
// they test: a failed test clears the boundary at fault, and the caller reads
// the state again.
class BoundingLineArrayWrapper {
public:
    std::shared_ptr<BoundingLineArrayWrapper> previous_wrapper;  // result of an earlier stage
    // In groups of four, the current set's first.
    std::vector<geometric::Geocoordinate<float>> vertices;
    // Slots 0 to 3, then candidate sets in groups of four.
    std::vector<BoundingLine> boundaries;
    int width = 0;
    int height = 0;
    float horizontal_distance_ratio = 0.1f;  // not read
    float distance_ratio = 0.1f;             // smallest share of the extent between opposite boundaries
    double horizontal_angle_limit = 20.0;    // degrees between top and bottom
    double vertical_angle_limit = 20.0;      // degrees between left and right
    double interior_angle_ratio_limit = 15.0;
    int closure_gap_limit = 50;              // pixels between boundary ends that still count as closed
    double minimum_corner_angle = 45.0;      // degrees between the boundaries of a corner
    int corner_overshoot_limit = 50;         // pixels a segment end may reach beyond its vertex
    int gray_disparity_limit = 6;            // grey levels; a boundary at or below fails
    bool is_binary_contour = true;           // built by the binary stage (or the line stage)
    const common::Image* image = nullptr;    // grey samples; not owned
    float gray_failures = 0.0f;              // boundaries that failed the last grey examination
    std::vector<double> confidences{100.0};  // one per set; element 0 is the current set's
    bool is_four_boundary_examined = false;  // a four-boundary check reached the grey test

    // Four empty slots and four zero vertices, for an image of no size.
    BoundingLineArrayWrapper();
    BoundingLineArrayWrapper(int width, int height);
    // For the image's width and height, reading grey samples from it.
    explicit BoundingLineArrayWrapper(const common::Image& image, bool is_binary_contour = true);

    // Four empty slots, four zero vertices, no grey failures, not examined.
    // Candidates and confidences go with the slots.
    void initBoundingLineArray();
    void clear();
    // Clears slots 0 to 3 only, and zeroes the same two fields.
    void clear_current_boundaries();

    // ---- validity ----
    bool are_four_boundaries_valid() const;
    bool are_four_boundaries_invalid() const;
    int calculate_valid_boundary_number() const;
    // At least one of left, right and at least one of top, bottom.
    bool does_cross_boundary_exist() const;
    // Exactly three valid slots, no slot of the weak type, no grey failure.
    bool can_be_trusted_as_previous_wrapper() const;

    // ---- extremes ----
    // Widens `box` over the first two points of each valid slot.
    void obtain_bounding_box(geometric::Geobox<int>& box) const;
    int vertical_left_most_x() const;     // -1 without a left boundary
    int vertical_right_most_x() const;    // 10000 without a right boundary
    int horizontal_top_most_y() const;    // -1 without a top boundary
    int horizontal_bottom_most_y() const; // 10000 without a bottom boundary

    // ---- the quadrilateral ----
    // Vertex 0 = left with top, 1 = top with right, 2 = right with bottom,
    // 3 = bottom with left; a parallel pair leaves its vertex as it was.
    void calculate_vertex();
    // Shoelace area of the vertices (float) over width x height: true unless
    // the share is below 0.1.
    bool is_large_polygon() const;
    // Smallest interior angle, degrees: acos(u.v / sqrt(|u|^2 |v|^2 + 1e-10)).
    double min_angle() const;
    // first = |angle 3 - angle 2|, second = |angle 1 - angle 0|.
    void calculate_interior_angle_disparity(double& first, double& second) const;
    // With m the larger and n the smaller: true unless
    // (n < 1 ? m : m / n) > interior_angle_ratio_limit.
    bool check_interior_angle_disparity(double first, double second) const;
    // gaps[k] is the smaller of the two gaps between slot k's ends and its
    // neighbours' ends.
    void calculate_gap_distance(std::vector<double>& gaps) const;
    // gaps[k] <= closure_gap_limit, or below 0.3 of slot k's length.
    bool is_boundary_closed_with_neighbors(const std::vector<double>& gaps,
                                           geometric::BoundingLinePosition position) const;

    // ---- corners ----
    // The two boundaries of corner k (0 top-left: top, left; 1 top-right:
    // top, right; 2 bottom-right: bottom, right; 3 bottom-left: bottom, left)
    // and whether both are valid. Pointers are null for k outside 0 to 3.
    bool obtain_cross_boundaries(geometric::BoundingLinePosition corner, BoundingLine** first, BoundingLine** second);
    // Every corner with both boundaries valid must have an angle of at least
    // minimum_corner_angle; at the first that does not, the first boundary is
    // cleared when the second is strictly longer, else the second, and the
    // result is false.
    bool is_large_cross_boundary_angle();
    bool is_large_angle();

    // ---- pairs of opposite boundaries ----
    // Left against right (vertical) or top against bottom (horizontal), 0 for
    // two vertical lines.
    double boundary_pair_angle_disparity(geometric::Direction direction) const;
    // Mean distance of the first boundary's points (left or top) from the
    // second's line, the running sum an int that truncates at every addition;
    // 0 when either is invalid.
    float boundary_pair_distance(geometric::Direction direction) const;
    // Opposite boundaries must lie at least distance_ratio of the image's
    // extent apart; the shorter of a pair that does not is cleared.
    bool is_distant_boundary_pair();
    bool is_small_horizontal_angle_disparity();
    bool is_small_vertical_angle_disparity() const;
    // The horizontal result only: the vertical pair is deliberately never
    // refused here.
    bool check_four_angle_disparity();
    bool check_cross_angles_disparity() const;
    // The longer of the pair (lengths truncated to int, first at a tie loses);
    // with an invalid slot, the first if valid, else the second.
    BoundingLine& superior_boundary(geometric::Direction direction);
    // The shorter of the pair: the first (left or top) when the second is
    // strictly longer, else the second.
    BoundingLine& inferior_boundary(geometric::Direction direction);

    // ---- segment ends against vertices ----
    // The segment ends of corner k's two boundaries may reach beyond vertex k
    // by at most corner_overshoot_limit. Past it the shorter boundary is
    // cleared (the horizontal one at equal length) and the result is false;
    // otherwise confidences[0] falls to 100 - overshoot * 100 / limit for
    // each end.
    bool is_correct_corners(geometric::BoundingLinePosition corner);
    bool is_correct_corners();
    // True when corner k's pair is not valid; otherwise vertex k becomes the
    // pair's crossing and is_correct_corners(k) decides.
    bool is_cross_boundary_corner_correct(geometric::BoundingLinePosition corner);
    bool is_cross_boundary_corner_correct();

    // Crossings of opposite boundaries. Left and right: parallel sets
    // vertical.is_parallel; otherwise the crossing is stored and counts as a
    // vanishing point only outside [0, width] x [0, height]. Top and bottom:
    // parallel sets horizontal.is_parallel; otherwise the crossing is always a
    // vanishing point. Flags no step names stay as they came in.
    void obtain_vanishing_points(geometric::VanishingPointHorVerInfo& info) const;

    // ---- is it a page? ----
    // Four valid boundaries that pass, in order, the corner angles, the
    // segment ends at the vertices, the top and bottom angle, the distances of
    // opposite pairs and the grey test. A small polygon (under a tenth of the
    // image) passes unless `keep_small_polygon`, which sets it aside as a
    // candidate instead and answers false. Failed tests may clear a boundary.
    bool is_four_boundaries_ready(bool keep_small_polygon, bool strict_gray);
    // Two boundaries that meet (at least one of each family) and pass the
    // corner angle, distance, corner and grey tests.
    bool is_cross_boundaries_ready();
    // Exactly one valid boundary whose grey disparity exceeds the limit: it
    // is marked weak and the answer is true.
    bool is_single_boundary_ready();

    // The page must be brighter than what lies outside it. Samples 7 pixels
    // either side of the boundary between its first two points, outside in the
    // first list and inside in the second for left and top (the reverse for
    // right and bottom); `disparity` is inside median - outside median, the
    // median being element n / 2 of the sorted list. An invalid slot answers
    // true with `disparity` as it came; an empty list gives 1000 and true.
    // Otherwise true when `disparity` >= 1.
    bool examine_gray_disparity(geometric::BoundingLinePosition position, int& disparity) const;
    // Every valid boundary with |disparity| <= gray_disparity_limit fails;
    // gray_failures counts them. Unless `strict`, a set whose top and bottom
    // differ by at most 5 degrees is forgiven one failure (two when all four
    // slots are valid) while confidences[0] >= 70. Otherwise the failing
    // boundaries are cleared and the answer is false.
    bool examine_gray_disparity(bool strict);

    // ---- updating ----
    // Offers one line for an empty slot. With three valid slots the line must
    // complete a page; with two it must form a crossing pair, and the answer
    // is false even then, as a third line can only improve the set. A line
    // that does not help is rolled back: boundaries, vertices, confidences,
    // counters and size are restored exactly. Any other count does nothing.
    bool update_with_potential_boundary(BoundingLine& candidate, bool strict_gray);
    // With exactly three valid slots, constructs the fourth through the ends
    // of its two neighbours and tries it. On success the three real lines are
    // kept as one candidate set and the constructed line, weak, as a set of
    // its own, and the current slots are left empty.
    bool update_with_three_available_boundaries();
    // Puts a line into its slot by the replacement rule: an empty slot takes
    // it; an occupied one keeps its line unless the new line lies further out
    // or is clearly longer. True when the slot took the line.
    bool place_boundary(const BoundingLine& line);

    // ---- candidate sets ----
    // Appends slots 0 to 3, the four current vertices and confidences[0] as a
    // new candidate set, and clears the slots.
    void keep_as_candidate_boundaries();
    // Copies the first set (the current one included) with the most valid
    // slots over slots 0 to 3; nothing without candidate sets.
    void select_prominent_four_boundaries();
    // Start indices of the candidate sets with four valid slots.
    bool is_small_polygon_candiate_boundary_available(std::vector<int>& set_starts) const;
    // The listed set of the largest vertex area (first of equals) replaces the
    // current slots, vertices and confidence; answers its start + 3, or -1
    // when none is listed.
    int replace_with_small_polygon_candiate_boundary(const std::vector<int>& set_starts);
    // Fills `slot` from sorted candidate lists of its own side and of the
    // opposite side, skipping weak lines where a regular one is at hand.
    // `position` names the slot's side and is not read.
    void update_with_candiate_boundaries(BoundingLine& slot, geometric::BoundingLinePosition position,
                                         std::vector<BoundingLine>& own_list,
                                         std::vector<BoundingLine>& opposite_list);
    // Merges every candidate set (and the previous wrapper's slots) into one
    // answer: the outermost line of each side, border lines left out. With
    // fewer than 12 entries (the current set and at most one candidate set)
    // only the fullest set is taken, and the answer is false.
    bool combine_multiple_candidate_boundaries();

private:
    // Shoelace area, in float, of the four vertices from `start` on.
    float polygon_area(std::size_t start) const;
    BoundingLine& slot(geometric::BoundingLinePosition position) { return boundaries[position]; }
    const BoundingLine& slot(geometric::BoundingLinePosition position) const { return boundaries[position]; }
    double& current_confidence();
    void interior_angles(double angles[4]) const;
};

}  // namespace geometric_test

#endif

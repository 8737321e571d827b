// The page's margins: the near-vertical lines along which the left ends and
// the right ends of its text lines line up, the text route's evidence for
// the vertical vanishing point.
#ifndef MORVANE_TEXTLINES_MARGIN_LINE_CREATOR_H
#define MORVANE_TEXTLINES_MARGIN_LINE_CREATOR_H

#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "pageanalysis/pageanalysis.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"
#include "textlines/hybrid_projective_para.h"

namespace geometric {

// The side of the page a margin stands on.
enum MarginDir : std::int32_t { LEFT_MARGIN = 0, RIGHT_MARGIN = 1 };

// Formation (margin_line_creator.cpp): line ends grouped into candidate
// margins, left candidates paired with right ones through a shared text line,
// line-end points replaced by the corners of their blobs. Verification and
// merging (margin_line_verification.cpp): each candidate must be straight,
// near vertical, away from the image's side and mostly within a tight
// tolerance; partners must agree in length and lean; coinciding margins merge.
//
// One creator serves one page: a run lowers minimum_length_ratio and may
// raise maximum_angle_difference in the creator's own copy of the
// constraints, so a second run starts from those values.
class MarginLineCreator {
public:
    typedef std::vector<std::vector<Geocoordinate<float>>> groups;

    // The analysis, not owned, is the one the text groups came from: line
    // ends are turned into the corners of its blobs. Without one the line
    // ends stand for themselves.
    MarginLineCreator(const MarginConstraints& constraints_, int image_width_, int image_height_,
                      Pageanalysis* analysis_);

    // The margin search of a page whose text lines are `text_groups`:
    //  1. line ends grouped and paired (identify_left_right_eignpoints); on
    //     false, false with every output untouched;
    //  2. partners given shared ids;
    //  3. ends turned into blob corners, and each candidate verified;
    //  4. fewer than 2 margins in all: the one survivor, if any, has its line
    //     appended to `margin_lines` and its side's groups become
    //     `margin_groups`; weight 1.0 is appended once; false;
    //  5. when the largest margin of each side holds more than twice
    //     minimum_inliers points, maximum_angle_difference grows by 5 and
    //     minimum_length_ratio falls by 0.1: well-populated margins earn tolerance;
    //  6. partners compared (compare_neighboring_margin_length_threshold);
    //     on false, false;
    //  7. left then right margins merged into `margin_groups`, `margin_lines`
    //     and `weights`;
    //  8. false with fewer than 2 lines; with exactly 2, false when their x at
    //     y = 0 (in single precision) lie less than minimum_separation of the
    //     image width apart; true otherwise. The outputs stay filled either way.
    bool perform_margin_line_formulation(const groups& text_groups, groups& margin_groups,
                                         std::vector<GeolineBase>& margin_lines, std::vector<double>& weights);

    // ---- formation ----

    // `left_groups` and `right_groups` (cleared first) receive the left ends
    // (first point of smallest x) and right ends (first point of largest x) of
    // the text groups, each added by add_point_to_margin_group; groups of
    // fewer than minimum_group_size points are dropped; `pairs` becomes the
    // (left, right) groups that share a text line. Empty text groups are
    // skipped. True when at least 2 margin groups remain in all.
    bool identify_left_right_eignpoints(const groups& text_groups, groups& left_groups, groups& right_groups,
                                        std::vector<std::pair<int, int>>& pairs) const;

    // The point joins the first group, in order, holding a member nearer than
    // grouping_distance (float distance), not the nearest group; otherwise it
    // opens a new group. Answers the index of the group that took it.
    int add_point_to_margin_group(const Geocoordinate<float>& point, groups& margin_groups) const;

    // Removes the groups of fewer than minimum_size points, keeping the order
    // of the rest; answers one flag per group given, true for those kept.
    static std::vector<bool> eliminate_small_point_array(groups& margin_groups, int minimum_size);

    // Ids that mark partners: left i starts as i, right j as left_count + j;
    // with T = left_count + right_count and a counter c from T, each pair
    // (l, r) in order, p = left_ids[l], q = right_ids[r]:
    //   p < T and q < T: both take ++c;  p < T <= q: both take q;  p >= T: both take p.
    // Ids below T are unpaired, equal ids are partners. In the last case a
    // right candidate loses an earlier identity while its former partner
    // keeps it: identities are overwritten, never united. Pairs naming a
    // candidate outside the counts are ignored.
    static void obtain_unique_margin_line_pair_indicator(const std::vector<std::pair<int, int>>& pairs,
                                                         std::vector<int>& left_ids, int left_count,
                                                         std::vector<int>& right_ids, int right_count);

    // One corner group per line-end group: each left end becomes the
    // bottom-left corner of its blob, each right end the bottom-right corner
    // reached through the blobs beside it, in strips of frame_margin. A
    // margin is then a set of true blob edges, not blob centres. A point in
    // no regular blob becomes (0, 0).
    void formulate_margin_points(const groups& line_end_groups, groups& corner_groups, MarginDir side) const;

    // `kept_groups` and `kept_lines` (cleared first) receive the candidates
    // that verify_vertical_margin_line passes, thinned as it left them, with
    // their lines; `ids` is thinned alike. Always true.
    bool eleminate_margin_points(const groups& corner_groups, std::vector<int>& ids, groups& kept_groups,
                                 std::vector<GeolineBase>& kept_lines, MarginDir side) const;

    // ---- verification and merging ----

    // The line of a near-vertical point set, fitted both ways: L1 the
    // iterative fit of y on x, L2 that of x on y turned back into the x, y
    // frame. Each is scored by an int sum of the points' distances that
    // truncates at every addition (a not-a-number, or a value beyond the int
    // range, truncates to the smallest int, as the processor does); L1 is
    // chosen only when L2 scores strictly more.
    static GeolineBase fit_both_ways(const std::vector<Geocoordinate<float>>& points);

    // A candidate is a margin when its two-way line leans at most
    // maximum_vertical_deviation from vertical, its points pass
    // verify_point_dispersion, and after verfiy_point_away_frame the inlier
    // share times the frame share reaches minimum_quality; with a frame share
    // below 0.8 it must also keep at least 7 points. `line` takes the fit
    // once the lean is accepted.
    bool verify_vertical_margin_line(std::vector<Geocoordinate<float>>& points, GeolineBase& line,
                                     MarginDir side) const;

    // With n points at entry: false, `inlier_ratio` untouched, when the
    // distances' standard deviation (divisor n - 1) exceeds 3 inlier_distance
    // (n >= 11) or 2 inlier_distance (n <= 10: a short margin is held to a
    // tighter spread). Otherwise the points farther than inlier_distance go,
    // and so do those whose distance is not a number; with m left, false when
    // m <= minimum_inliers (ratio 0), else the ratio m / n, true when it
    // exceeds minimum_inlier_ratio.
    bool verify_point_dispersion(std::vector<Geocoordinate<float>>& points, const GeolineBase& line,
                                 float& inlier_ratio) const;

    // Removes the points where page edges and scan borders fake a margin:
    // right, x + frame_margin >= image_width - 1; left, x - frame_margin <= 0.
    // `frame_ratio` = kept / points at entry (0 for none).
    void verfiy_point_away_frame(std::vector<Geocoordinate<float>>& points, MarginDir side,
                                 float& frame_ratio) const;

    // Each pair of partners (equal ids, left index first): a share of points
    // (fewer / more) above 0.5 lowers minimum_length_ratio by 0.1 for this
    // and every later pair; the shorter margin (by y extent; the right one
    // at a tie) is marked when its length over the longer's is below
    // minimum_length_ratio; otherwise the pair is examined, and when the two
    // leans from vertical differ by more than maximum_angle_difference the
    // one leaning more is marked. Marked margins go only when some pair was
    // examined. True with no group on either side, when some pair was
    // examined, or when the last ratio or lean difference computed (0 before
    // any) is exactly 0.
    bool compare_neighboring_margin_length_threshold(groups& left_groups, std::vector<GeolineBase>& left_lines,
                                                     const std::vector<int>& left_ids, groups& right_groups,
                                                     std::vector<GeolineBase>& right_lines,
                                                     const std::vector<int>& right_ids);

    // (x of each line at half the image height, in single precision, line
    // index), ascending; equal coordinates keep the index order, and a line
    // without a crossing there (not a number) comes last.
    void formulate_coordinates_with_index(const std::vector<GeolineBase>& lines,
                                          std::vector<std::pair<float, int>>& coordinates) const;

    // Neighbours in that order nearer than merge_distance are partners,
    // gathered into sets as broken text lines are; true when any pair formed.
    bool formulate_merged_groups(const std::vector<std::pair<float, int>>& coordinates,
                                 std::vector<std::set<int>>& sets) const;

    // Coinciding margins joined (or all kept as they are), each result fitted
    // both ways into `merged_lines` (cleared first) and weighed by its
    // spread (standard deviation of the distances, divisor n - 1) and its
    // number of points into `weights`.
    void merge_margin_lines(const groups& all_groups, const std::vector<GeolineBase>& all_lines,
                            groups& merged_groups, std::vector<GeolineBase>& merged_lines,
                            std::vector<double>& weights) const;

    MarginConstraints constraints;
    int image_width;
    int image_height;
    Pageanalysis* analysis;
};

}  // namespace geometric

#endif

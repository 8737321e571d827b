// Joins the pieces of text lines that clustering broke at wide gaps: a group
// whose extended right end lies close to the left end of another group, with
// both lines passing close together there, belongs to the same text line.
#ifndef MORVANE_TEXTLINES_EIGNPOINTS_MERGER_H
#define MORVANE_TEXTLINES_EIGNPOINTS_MERGER_H

#include <set>
#include <utility>
#include <vector>

#include "pageanalysis/pageanalysis.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"
#include "textlines/hybrid_projective_para.h"

namespace geometric {

class EignpointsMerger {
public:
    // The analysis is not owned; it must be the one the groups' eigenpoints
    // came from, since the right ends are followed through its blobs.
    EignpointsMerger(Pageanalysis* analysis_, const EignpointsMergerConstraints& constraints_);

    // With fewer than 2 groups (or no analysis): false, nothing else done.
    //  1. Each group's line: the iterative fit (tolerance 0.01, not normalised).
    //  2. Its left end, its right end and the right end extended through the
    //     blobs to its right (obtain_eignpoints_on_margins).
    //  3. The four extreme points below.
    //  4. For each group i in order, the first group j, in index order, whose
    //     left end is nearer than end_distance to i's extended right end e,
    //     and whose line passes nearer than line_gap to i's line at e.x
    //     (both y in single precision), becomes i's partner. Should i itself
    //     come up first, within end_distance of its own extended end, the
    //     merge ends for the page: false, `merged` as it was. Such a group
    //     is so short against the spacing that the page's measure cannot be
    //     trusted to join its lines.
    //  5. Partners are gathered into sets of group indices, sets sharing a
    //     member united, and `merged` receives, in the order of each result's
    //     smallest index, each set's groups joined in ascending index order
    //     and each group without a partner as it is. True.
    bool perform_eignpoint_group_merge(const std::vector<std::vector<Geocoordinate<float>>>& groups,
                                       std::vector<std::vector<Geocoordinate<float>>>& merged);

    // Per group: the first point of smallest x, the first point of largest
    // x, and the bottom-right corner reached from that right end by
    // following the analysis's irregular blobs in strips of search_step.
    void obtain_eignpoints_on_margins(const std::vector<std::vector<Geocoordinate<float>>>& groups,
                                      std::vector<Geocoordinate<float>>& left_points,
                                      std::vector<Geocoordinate<float>>& right_points,
                                      std::vector<Geocoordinate<float>>& extended_right_points) const;

    // Pairs of group indices gathered into sets: a pair joins the first set
    // that holds one of its members, or opens a new one; then sets sharing
    // a member are united until none do. Sets keep the order of their first pair.
    static std::vector<std::set<int>> gather_partners(const std::vector<std::pair<int, int>>& pairs);

    EignpointsMergerConstraints constraints;
    Pageanalysis* analysis;
    // The text's extreme points, noted from the groups' ends while merging:
    // top and bottom, the first left end of smallest (largest) y, replaced by
    // the first right end of smaller (larger) y, strictly; leftmost the
    // first left end of smallest x; rightmost the first right end of
    // largest x. Untouched when fewer than 2 groups are given.
    Geocoordinate<float> top_point;
    Geocoordinate<float> bottom_point;
    Geocoordinate<float> leftmost_point;
    Geocoordinate<float> rightmost_point;

private:
    void note_extreme_points(const std::vector<Geocoordinate<float>>& left_points,
                             const std::vector<Geocoordinate<float>>& right_points);
};

}  // namespace geometric

#endif

// Eigenpoints (the bottom centres of regular text blobs) grouped along the
// baselines they lie on: each group is a candidate text line.
#ifndef MORVANE_TEXTLINES_EIGNPOINTS_CLUSTER_H
#define MORVANE_TEXTLINES_EIGNPOINTS_CLUSTER_H

#include <vector>

#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_least_square.h"
#include "textlines/hybrid_projective_para.h"

namespace geometric {

// A group grows from a seed by walking to the nearest remaining point, first
// toward the back of the group and then toward its front, while each next
// point is near enough to the last one reached, near enough to the group's
// line, and the line stays near horizontal.
class EignpointsCluster {
public:
    explicit EignpointsCluster(const EignpointsClusteringConstraints& constraints_);

    // Consumes `points`, in their order (the blob list's): notes the four
    // points below, clears `groups`, then, while at least
    // minimum_group_size points remain, takes the first as a seed and walks
    // back, then front. A group of minimum_group_size points or more joins
    // `groups`; the points of a smaller one are dropped for good. Points
    // left over at the end are ignored. True when `groups` is not empty.
    bool perform_eignpoints_clustering(std::vector<Geocoordinate<float>>& points,
                                       std::vector<std::vector<Geocoordinate<float>>>& groups);

    // Moves the first point out of `points` into `seed`.
    static void pick_up_seeding(std::vector<Geocoordinate<float>>& points, Geocoordinate<float>& seed);

    // One walk. The line is fitted to the group when it holds 2 points or
    // more. Then, again and again: from the group's last point (back) or
    // first point (front), the nearest point of `points` not tried in this
    // walk, by float distance, the first among equals; the walk ends unless
    // neighbor_distance > that distance (10000 when none is left). The
    // candidate joins the group at that end when verify_line_constraint says
    // so; tried it is either way. The points that joined leave `points` at
    // the end of the walk; those refused stay for later seeds.
    void formulate_points_on_line(std::vector<Geocoordinate<float>>& points,
                                  std::vector<Geocoordinate<float>>& group,
                                  HybridProjectivePara::InsertDirection direction);

    // The single-point form for a group of one point, the multiple-point
    // form otherwise; `line` is the walk's running line.
    static bool verify_line_constraint(const std::vector<Geocoordinate<float>>& group,
                                       const Geocoordinate<float>& candidate, GeolineLeastSquare& line,
                                       float line_distance, float maximum_angle);
    // The line through seed and candidate (vertical, (1, 0, -seed.x), when
    // their x differ by at most the single-precision epsilon), and whether
    // it leans less than maximum_angle from the horizontal. A refused
    // vertical pair leaves its vertical line in `line`.
    static bool verify_line_constraint_single_point(const Geocoordinate<float>& seed,
                                                    const Geocoordinate<float>& candidate,
                                                    GeolineLeastSquare& line, float maximum_angle);
    // False, `line` unchanged, unless line_distance > the candidate's
    // distance to `line`. Otherwise `line` becomes the plain fit of the
    // group and the candidate, and the answer is whether it leans less than
    // maximum_angle from the horizontal. That line stays even when the
    // answer is no: the next candidate is judged against the line of a
    // refused one.
    static bool verify_line_constraint_multiple_points(const std::vector<Geocoordinate<float>>& group,
                                                       const Geocoordinate<float>& candidate,
                                                       GeolineLeastSquare& line, float line_distance,
                                                       float maximum_angle);

    // Appends the group to `groups` when it holds minimum_group_size points
    // or more, otherwise its points to `rejected`.
    static void collect_point_group(const std::vector<Geocoordinate<float>>& group,
                                    std::vector<Geocoordinate<float>>& rejected,
                                    std::vector<std::vector<Geocoordinate<float>>>& groups, int minimum_group_size);

    EignpointsClusteringConstraints constraints;
    // Noted at the start of a clustering from the points it was given: the
    // first, the last, the first of smallest x and the first of largest x.
    // Left as they were when no point was given.
    Geocoordinate<float> first_point;
    Geocoordinate<float> last_point;
    Geocoordinate<float> leftmost_point;
    Geocoordinate<float> rightmost_point;
};

}  // namespace geometric

#endif

// The parameters of the text route, and the constraint records it gathers.
// The records stand here, beside the aggregate, rather than with the
// classes that read them: those classes also name the aggregate's own
// types, so one header serves both without a circle.
#ifndef MORVANE_TEXTLINES_HYBRID_PROJECTIVE_PARA_H
#define MORVANE_TEXTLINES_HYBRID_PROJECTIVE_PARA_H

#include <cstdint>

#include "vanishing/projective_registration_para.h"
#include "vanishing/vpoint_ransac_solver.h"

namespace geometric {

// The search for left and right margins. The distances are multiples of the
// page's median eigenpoint spacing, written in per page by
// EignpointsParaSetup; until then they are 0.
struct MarginConstraints {
    // A margin needs more kept points than this.
    int minimum_inliers = 5;
    // A point this near to the line is kept (half the median spacing).
    float inlier_distance = 0.0f;
    // The kept share must exceed this.
    float minimum_inlier_ratio = 0.6f;
    // Degrees from the vertical.
    float maximum_vertical_deviation = 45.0f;
    // Degrees between the deviations of paired margins.
    float maximum_angle_difference = 15.0f;
    // Lower bound on the inlier share times the frame share.
    float minimum_quality = 0.5f;
    // A line end joins a margin group within this (six median spacings).
    float grouping_distance = 0.0f;
    // Smaller margin groups are dropped.
    int minimum_group_size = 5;
    // Points this near the image's side do not count; also the search step
    // for right corners (the median spacing).
    float frame_margin = 0.0f;
    // Margin lines closer than this at mid-height merge (the median spacing).
    float merge_distance = 0.0f;
    // Shorter to longer of a margin pair.
    float minimum_length_ratio = 0.5f;
    // Share of the image width that two final margins keep between them.
    float minimum_separation = 0.2f;
};

// What the clustering of eigenpoints needs. The distances are multiples of
// the page's median nearest-neighbour spacing of the eigenpoints, which
// EignpointsParaSetup measures and writes in; until then they are 0 and
// nothing groups.
struct EignpointsClusteringConstraints {
    // Points a group needs to be kept.
    int minimum_group_size = 8;
    // The nearest remaining point must be closer than this to join the walk
    // (neighbor_distance_factor times the median spacing).
    float neighbor_distance = 0.0f;
    // A candidate must be closer than this to the group's line (the median spacing).
    float line_distance = 0.0f;
    // Degrees from the horizontal axis that a group's line may lean.
    float maximum_line_angle = 20.0f;
    float neighbor_distance_factor = 3.0f;
    float median_spacing = 0.0f;
};

// What the merging of broken text lines needs, again in median spacings.
struct EignpointsMergerConstraints {
    // Strip width of the walk to a line's extended right end (the spacing).
    float search_step = 0.0f;
    // A group's extended right end must be closer than this to the left end
    // of its partner (twice the spacing).
    float end_distance = 0.0f;
    // The two lines must pass closer than this at that end (a quarter spacing).
    float line_gap = 0.0f;
};

struct HybridProjectivePara {
    // The side on which a group of eigenpoints grows.
    enum InsertDirection : std::int32_t {
        INSERT_AT_FRONT = 0,
        INSERT_AT_BACK = 1
    };

    MarginConstraints margin;
    EignpointsClusteringConstraints clustering;
    EignpointsMergerConstraints merger;
    RansacVanishingPointConstrains ransac;
    hybrid::ProjectiveRegistrationPara registration;
};

}  // namespace geometric

#endif

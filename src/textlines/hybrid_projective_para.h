// The parameters of the text route, and the constraint records it gathers.
// The records stand here, beside the aggregate, rather than with the
// classes that read them: those classes also name the aggregate's own
// types, so one header serves both without a circle.
#ifndef MORVANE_TEXTLINES_HYBRID_PROJECTIVE_PARA_H
#define MORVANE_TEXTLINES_HYBRID_PROJECTIVE_PARA_H

#include <cstdint>

namespace geometric {

// What the clustering of eigenpoints needs. The distances are multiples of
// the page's median nearest-neighbour spacing of the eigenpoints, which the
// caller measures and writes in; until then they are 0 and nothing groups.
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

struct HybridProjectivePara {
    // The side on which a group of eigenpoints grows.
    enum InsertDirection : std::int32_t {
        INSERT_AT_FRONT = 0,
        INSERT_AT_BACK = 1
    };

    EignpointsClusteringConstraints clustering;
};

}  // namespace geometric

#endif

// The classic edge route: page-edge lines from a Hough search, each
// direction judged by the crossing of its opposite lines, and the corners
// they imply. Without a geometry it still leaves the crossings of opposite
// lines for the text search.
#ifndef MORVANE_REGISTRATION_EDGE_REGISTRATION_H
#define MORVANE_REGISTRATION_EDGE_REGISTRATION_H

#include <vector>

#include "cornersearch/corner_search_para.h"
#include "edgelines/bounding_line.h"
#include "registration/projective_registration.h"

namespace hybrid {

class EdgeRegistration : public geometric::ProjectiveRegistration {
public:
    explicit EdgeRegistration(const common::Image* image_);
    ~EdgeRegistration() override;

    // Every result of an earlier run is dropped first.
    //  1. The page-edge lines of the image, and a second list of candidates.
    //  2. getResultsFromBoundingBox gives the result r.
    //  3. r of 1 to 4: the corners; failing them r is -1, else r is what the
    //     flags left by the corner examination stand for (the wider
    //     straightness test of the base).
    //  4. Any other r: the crossings of opposite lines are recorded in
    //     bounding_vanishing_points (record_opposite_crossings).
    // `registration_output` holds r.
    geometric::RegistrationOutputType run_registration() override;

    // Each direction's pair of opposite lines judged by the bounding-line
    // solver, with this object's angle disparities as its parallel limits:
    // a crossing sets the direction's vanishing point, a pair treated as
    // parallel its parallel flag and its mean angle. The two codes combine:
    //   vp + vp: 1    vp + parallel: 4    vp alone: 5    parallel alone: 6
    //   parallel + parallel: 2 when is_straight_page, else 3    nothing: -1
    // The solver's angle disparities go into bounding_line_property.
    geometric::RegistrationOutputType getResultsFromBoundingBox();

    // The narrow straightness test of this route: the horizontal angle below
    // 0.2 or above 179.8 degrees, the vertical one within 89.6 to 90.4, ends
    // included, compared in single precision as the angles are kept. It
    // stays apart from the base's test, which widens with the disparities.
    static bool is_straight_page(float horizontal_angle, float vertical_angle);

    // What the text search can still use when no geometry came out: with
    // exactly four candidates, the crossings of their top and bottom and of
    // their left and right lines; otherwise the crossing of the left and
    // right bounding lines when the vertical direction is undecided (both
    // flags alike) and there are two vertical lines; otherwise the crossing
    // of the top and bottom lines when the vertical direction is decided,
    // the horizontal one is not, and there are two horizontal lines. A
    // crossing's existence is the direction's vanishing point flag.
    void record_opposite_crossings(std::vector<geometric::BoundingLine>& candidates);

    // Read afresh at every run: the line search scales its own copy.
    geometric::CornerSearchPara corner_search_para;
};

}  // namespace hybrid

#endif

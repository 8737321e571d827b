// The object behind a corner search handle: one method number turned into an
// assembly of search strategies, run on any number of images in turn.
#ifndef MORVANE_REGISTRATION_PROJECTIVE_CORRECTION_CORNER_DETECTION_ENGINEE_H
#define MORVANE_REGISTRATION_PROJECTIVE_CORRECTION_CORNER_DETECTION_ENGINEE_H

#include <cstdint>
#include <memory>

#include "common/image.h"
#include "cornersearch/edge_strategies.h"
#include "cornersearch/projective_registration_base.h"
#include "morvane/morvane.h"

namespace geometric_test {

enum EdgeRegistrationMethod : std::int32_t {
    HYBRID_EDGE_SEARCH = 0,     // the corrector's edge search
    CANNY_HOUGH_EDGE = 1,
    OTSU_HOUGH_EDGE = 2,
    COMBINED_HOUGH_EDGE = 3,
    CANNY_LARGE_BLOB_EDGE = 4,
    OTSU_LARGE_BLOB_EDGE = 5,
    OPERATIONAL_EDGE = 6,       // binary, edge, then line stage
    OPERATIONAL_LINE = 7        // the line stage alone
};

class ProjectiveCorrectionCornerDetectionEnginee {
public:
    // Methods 8 and above assemble a chain of null strategies, which must
    // never run.
    explicit ProjectiveCorrectionCornerDetectionEnginee(EdgeRegistrationMethod method);

    // Always writes corners: what was found, rounded by floor(v + 0.5); on
    // failure the image's own corners (method 0) or what the search left.
    // 1, or -1 and the search's negative codes.
    int perform_corner_detection(common::Image& image, ControlPointCorners& corners);

    // Null for method 0.
    std::shared_ptr<ProjectiveRegistration> registration;

private:
    static std::shared_ptr<BoundingCornerFactory> make_factory(EdgeRegistrationMethod method);
};

}  // namespace geometric_test

#endif

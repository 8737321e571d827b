// The base of the corner search engine's registrations: a luminance working
// image no larger than the maximum dimension, the search itself in the
// derived class, and the checks of the corners it gives.
#ifndef MORVANE_CORNERSEARCH_PROJECTIVE_REGISTRATION_BASE_H
#define MORVANE_CORNERSEARCH_PROJECTIVE_REGISTRATION_BASE_H

#include <memory>
#include <vector>

#include "common/basic_image.h"
#include "common/image.h"
#include "textgeometry/geocoordinate.h"

namespace geometric_test {

class ProjectiveRegistration {
public:
    virtual ~ProjectiveRegistration() = default;

    // The search on a working image: 1 with four corners, negative without.
    virtual int implement_registration(const common::Image& image,
                                       std::vector<geometric::Geocoordinate<float>>& corners) = 0;
    int run_projective_registration_without_pre_post_processing(const common::Image& image,
                                                                std::vector<geometric::Geocoordinate<float>>& corners) {
        return implement_registration(image, corners);
    }

    // Longer over shorter side, in single precision, at most 7, and the
    // shorter side at least 10 pixels.
    bool is_input_qualified(const common::Image& image) const;
    // A luminance gray copy, down-sampled by the rate that brings the longer
    // side within maximum_dimension (the rate grows by one per halving).
    std::shared_ptr<common::BasicImage> preprocessing_projective(const common::Image& image, int& rate) const;
    // The search on the working image, corners scaled back to the image,
    // then the checks: -1 unqualified input, -3 a corner outside the image
    // (when asked), -5 angles, -4 area, -6 output size; else 1.
    int run_projective_registration(const common::Image& image, std::vector<geometric::Geocoordinate<float>>& corners);

    bool corner_detection_within_image = false;
    int maximum_dimension = 1500;
    float minimum_quadrilateral_angle = 45.0f;                 // degrees
    float minimum_quadrilateral_area = 0.05f;                  // fraction of the image area
    double minimum_largest_dimension_percentage_threshold = 0.1;  // fraction of 1
};

}  // namespace geometric_test

#endif

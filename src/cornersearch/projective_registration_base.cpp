// Working image and output checks around a corner search.
#include "cornersearch/projective_registration_base.h"

#include <algorithm>

#include "cornersearch/corner_examiner.h"
#include "pixel/image_integer_down_sampling.h"

namespace geometric_test {

bool ProjectiveRegistration::is_input_qualified(const common::Image& image) const {
    const int longer = std::max(image.get_width(), image.get_height());
    const int shorter = std::min(image.get_width(), image.get_height());
    if (shorter < 10) return false;
    return static_cast<float>(longer) / static_cast<float>(shorter) <= 7.0f;
}

std::shared_ptr<common::BasicImage> ProjectiveRegistration::preprocessing_projective(const common::Image& image,
                                                                                   int& rate) const {
    auto gray = std::make_shared<common::BasicImage>(image);
    if (gray->get_image_type() == common::RGB) {
        gray->convert_rgb_to_gray(true);
    } else if (gray->get_image_type() == common::BINARY) {
        gray->convert_binary_to_gray();
    }
    int m = std::max(gray->get_width(), gray->get_height());
    rate = 1;
    if (maximum_dimension >= m) return gray;
    do {
        ++rate;
        m /= 2;
    } while (maximum_dimension < m);
    auto working = std::make_shared<common::BasicImage>();
    geometric::ImageIntegerDownSampling::DownSamplingCombined(*gray, *working, rate);
    return working;
}

int ProjectiveRegistration::run_projective_registration(const common::Image& image,
                                                        std::vector<geometric::Geocoordinate<float>>& corners) {
    if (!is_input_qualified(image)) return -1;
    int rate = 1;
    const std::shared_ptr<common::BasicImage> working = preprocessing_projective(image, rate);
    const int r = run_projective_registration_without_pre_post_processing(*working, corners);
    if (r != 1) return r;
    if (rate > 1) {
        for (auto& corner : corners) {
            corner.x *= static_cast<float>(rate);
            corner.y *= static_cast<float>(rate);
        }
    }
    return geometric::CornerExaminer::examine_page_output(corners, image.get_width(), image.get_height(),
                                                          corner_detection_within_image, minimum_quadrilateral_angle,
                                                          minimum_quadrilateral_area,
                                                          minimum_largest_dimension_percentage_threshold);
}

}  // namespace geometric_test

// Assembly of the corner search strategies and the run on one image.
#include "registration/projective_correction_corner_detection_enginee.h"

#include <cmath>
#include <vector>

#include "common/basic_image.h"
#include "common/int_truncation.h"
#include "cornersearch/bounding_edge_registration.h"
#include "registration/hybrid_registration.h"

namespace geometric_test {

namespace {

// Halves up, in double as the corrector rounds, so that 0.49999997 stays 0.
// A corner beyond the int range (the crossing of two nearly parallel sides),
// or not a number, gives the smallest int, as the processor's conversion
// does, rather than undefined behaviour.
int rounded(float value) { return common::truncate_to_int32(std::floor(static_cast<double>(value) + 0.5)); }

}  // namespace

std::shared_ptr<BoundingCornerFactory> ProjectiveCorrectionCornerDetectionEnginee::make_factory(
    EdgeRegistrationMethod method) {
    auto factory = std::make_shared<BoundingCornerFactory>();
    switch (method) {
        case CANNY_HOUGH_EDGE:
        case CANNY_LARGE_BLOB_EDGE: factory->extractor = std::make_shared<CannyEdgeExtractor>(); break;
        case OTSU_HOUGH_EDGE:
        case OTSU_LARGE_BLOB_EDGE: factory->extractor = std::make_shared<OTSUEdgeExtractor>(); break;
        default: return factory;  // three null strategies
    }
    if (method == CANNY_HOUGH_EDGE || method == OTSU_HOUGH_EDGE) {
        factory->analyzer = std::make_shared<HoughEdgeAnalyzer>();
    } else {
        factory->analyzer = std::make_shared<LargeBlobCornerAnalyzer>();
    }
    factory->estimator = std::make_shared<StrictBoundinglineCornerEstimator>();
    return factory;
}

ProjectiveCorrectionCornerDetectionEnginee::ProjectiveCorrectionCornerDetectionEnginee(EdgeRegistrationMethod method) {
    switch (method) {
        case HYBRID_EDGE_SEARCH: return;
        case COMBINED_HOUGH_EDGE:
            registration = std::make_shared<CombinedBoundingEdgeRegistration>(
                std::vector<std::shared_ptr<BoundingCornerFactory>>{make_factory(CANNY_HOUGH_EDGE),
                                                                    make_factory(OTSU_HOUGH_EDGE)});
            break;
        case OPERATIONAL_EDGE: registration = std::make_shared<OperationalBoundingEdgeRegistration>(); break;
        case OPERATIONAL_LINE:
            registration =
                std::make_shared<OperationalBoundingEdgeRegistration>(OperationalBoundingEdgeRegistration::LINE_SEARCH);
            break;
        default: registration = std::make_shared<BoundingEdgeRegistration>(make_factory(method)); break;
    }
    registration->corner_detection_within_image = false;
}

int ProjectiveCorrectionCornerDetectionEnginee::perform_corner_detection(common::Image& image,
                                                                         ControlPointCorners& corners) {
    const float w = static_cast<float>(image.get_width()), h = static_cast<float>(image.get_height());
    std::vector<geometric::Geocoordinate<float>> found = {{0.0f, 0.0f}, {w - 1, 0.0f}, {w - 1, h - 1}, {0.0f, h - 1}};
    const auto write = [&corners](const std::vector<geometric::Geocoordinate<float>>& list) {
        for (std::size_t k = 0; k < 4 && k < list.size(); ++k) {
            corners.x[k] = rounded(list[k].x);
            corners.y[k] = rounded(list[k].y);
        }
    };
    if (registration) {
        const int result = registration->run_projective_registration(image, found);
        write(found);
        return result;
    }
    common::BasicImage* input = dynamic_cast<common::BasicImage*>(&image);
    common::BasicImage copy;
    if (input == nullptr) {
        copy = image;
        input = &copy;
    }
    hybrid::HybridRegistration hybrid(input);
    const int result = hybrid.run_edge_searching(false);
    if (result == 1 || result == 2) {
        hybrid.obtain_four_corners(corners);
        return 1;
    }
    write(found);
    return -1;
}

}  // namespace geometric_test

// The corner search family: a handle on an engine that finds a page's corners
// without rectifying it. Nothing here catches exceptions.
#include "common/basic_image.h"
#include "common/image_c_api_transformer.h"
#include "morvane/morvane.h"
#include "registration/projective_correction_corner_detection_enginee.h"

namespace {

geometric_test::ProjectiveCorrectionCornerDetectionEnginee& engine(void* handle) {
    return *static_cast<geometric_test::ProjectiveCorrectionCornerDetectionEnginee*>(handle);
}

}  // namespace

void* create_corner_search_enginee(int method) {
    return new geometric_test::ProjectiveCorrectionCornerDetectionEnginee(
        static_cast<geometric_test::EdgeRegistrationMethod>(method));
}

void destroy_corner_search_enginee(void* handle) {
    delete static_cast<geometric_test::ProjectiveCorrectionCornerDetectionEnginee*>(handle);
}

int perform_corner_searching(void* handle, const ImageCApi* image, ControlPointCorners* corners) {
    common::BasicImage view;
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(*image, view);
    return engine(handle).perform_corner_detection(view, *corners);
}

void set_corner_detection_minimum_quadrilateral_area(void* handle, float fraction) {
    engine(handle).registration->minimum_quadrilateral_area = fraction;
}

void set_corner_detection_minimum_quadrilateral_angle(void* handle, float degrees) {
    engine(handle).registration->minimum_quadrilateral_angle = degrees;
}

void set_corner_detection_minimum_largest_dimension_percentage_threshold(void* handle, float fraction) {
    engine(handle).registration->minimum_largest_dimension_percentage_threshold = fraction;
}

void set_corner_detection_within_image(void* handle) { engine(handle).registration->corner_detection_within_image = true; }

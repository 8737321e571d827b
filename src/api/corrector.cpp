// The corrector family: a handle on the driver that finds a page's corners
// and rectifies it. Only run_projective_correction catches exceptions.
#include <vector>

#include "common/basic_image.h"
#include "common/image_c_api_transformer.h"
#include "morvane/morvane.h"
#include "registration/hybrid_registration.h"

namespace {

hybrid::HybridRegistration& driver(void* handle) { return *static_cast<hybrid::HybridRegistration*>(handle); }

// The boundary shows "no usable result" as 3, never as -1.
int exported_code(int code) { return code == -1 ? 3 : code; }

}  // namespace

void* corrector_create(void) { return new hybrid::HybridRegistration(); }

void destroy_corrector(void* handle) { delete static_cast<hybrid::HybridRegistration*>(handle); }

int run_projective_correction(void* handle, const ImageCApi* image) {
    driver(handle).set_input_image(*image);
    return exported_code(driver(handle).run_program());
}

int run_edge_searching(void* handle, const ImageCApi* image) {
    driver(handle).set_input_image(*image);
    return exported_code(driver(handle).run_edge_searching(true));
}

int run_feature_searching(void* handle) { return exported_code(driver(handle).run_feature_searching()); }

void set_registration_method(void* handle, int method) { driver(handle).set_registration_method(method); }

void set_line_registration(void* handle, int use) { driver(handle).use_line_registration = use; }

void set_corner_type(void* handle, int type) { driver(handle).set_corner_type(type == 1); }

void set_angle_disparity(void* handle, float horizontal, float vertical) {
    driver(handle).horizontal_angle_disparity = horizontal;
    driver(handle).vertical_angle_disparity = vertical;
}

void set_minimum_quadrilateral_angle(void* handle, float degrees) {
    driver(handle).minimum_quadrilateral_angle = degrees;
}

void set_minimum_largest_dimension_percentage_threshold(void* handle, float fraction) {
    driver(handle).minimum_largest_dimension_percentage_threshold = fraction;
}

void set_minimum_aoi_area(void* handle, float fraction) { driver(handle).set_minimum_aoi_area(fraction); }

void set_within_the_image(void* handle) { driver(handle).within_the_image = true; }

void set_binarization_method(void* handle, int method) { driver(handle).set_binarization_method(method); }

void set_binarization_k(void* handle, float k) { driver(handle).set_binarization_k(k); }

void set_binarization_window(void* handle, int window) { driver(handle).set_binarization_window(window); }

void set_filling_color(void* handle, unsigned char* color) {
    if (color != nullptr) driver(handle).set_filling_color(color);
}

void obtain_four_corners(void* handle, ControlPointCorners* corners) { driver(handle).obtain_four_corners(*corners); }

int obtain_vanishing_point(void* handle, VanishingPointsCApi* out) {
    geometric::VanishingPointHorVerInfo info;
    driver(handle).obtain_vanishing_points(info);
    out->horizontal_is_valid = info.horizontal.has_vanishing_point ? 1 : 0;
    out->horizontal_point[0] = info.horizontal_point.x;
    out->horizontal_point[1] = info.horizontal_point.y;
    out->horizontal_is_parallel = info.horizontal.is_parallel ? 1 : 0;
    out->horizontal_angle = info.horizontal.angle;
    out->vertical_is_valid = info.vertical.has_vanishing_point ? 1 : 0;
    out->vertical_point[0] = info.vertical_point.x;
    out->vertical_point[1] = info.vertical_point.y;
    out->vertical_is_parallel = info.vertical.is_parallel ? 1 : 0;
    out->vertical_angle = info.vertical.angle;
    return 0;
}

void reset_four_corners(void* handle, const ControlPointCorners* corners) {
    driver(handle).reset_four_corners(*corners);
}

void obtain_corrected_img_dimension(void* handle, int* width, int* height) {
    driver(handle).obtain_corrected_img_dimension(*width, *height);
}

void obtain_corrected_img_dimension_given_corners(void* handle, const ControlPointCorners* corners, int* width,
                                                  int* height) {
    driver(handle).reset_four_corners(*corners);
    driver(handle).obtain_corrected_img_dimension(*width, *height);
}

void obtain_downsampled_corrected_img_dimension(void* handle, int* width, int* height) {
    driver(handle).obtain_corrected_downsampled_img_dimension(*width, *height);
}

void obtain_corrected_image(void* handle, ImageCApi* output) {
    common::BasicImage target;
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(*output, target);
    driver(handle).perform_correction(target);
    morvane::ImageCApiTransformer::transform_image_to_c_api_image(target, *output);
}

void obtain_corrected_image_given_corners(void* handle, const ImageCApi* input, const ControlPointCorners* corners,
                                          ImageCApi* output) {
    driver(handle).set_input_image(*input);
    driver(handle).reset_four_corners(*corners);
    obtain_corrected_image(handle, output);
}

void obtain_downsampled_corrected_image(void* handle, ImageCApi* output) {
    common::BasicImage target;
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(*output, target);
    if (driver(handle).perform_correction_on_downsampled_gray_image(target) != 0)
        morvane::ImageCApiTransformer::transform_image_to_c_api_image(target, *output);
}

void obtain_binarized_corrected_image(void* handle, const ImageCApi* input, ImageCApi* output) {
    common::BasicImage source;
    common::BasicImage target;
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(*input, source);
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(*output, target);
    driver(handle).obtain_binarized_corrected_image(source, target);
    morvane::ImageCApiTransformer::transform_image_to_c_api_image(target, *output);
}

void estimate_spatial_resolution(void* handle, const ImageCApi* image, int* resolution) {
    hybrid::HybridRegistration& corrector = driver(handle);
    if (image->data == corrector.input_image->get_data()) {
        *resolution = corrector.estimate_spatial_resolution();
        return;
    }
    common::BasicImage alone;
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(*image, alone);
    *resolution = corrector.estimate_spatial_resolution(alone);
}

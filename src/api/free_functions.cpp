// The handle-free functions: rectification from caller-given corners.
#include <vector>

#include "common/basic_image.h"
#include "common/image_c_api_transformer.h"
#include "correction/projective_correction.h"
#include "morvane/morvane.h"

namespace {

std::vector<geometric::Geocoordinate<float>> corners_of(const ControlPointCorners& corners) {
    std::vector<geometric::Geocoordinate<float>> points;
    points.reserve(4);
    for (int i = 0; i < 4; ++i)
        points.emplace_back(static_cast<float>(corners.x[i]), static_cast<float>(corners.y[i]));
    return points;
}

}  // namespace

int perform_projective_correction(const ControlPointCorners* corners, const ImageCApi* input, ImageCApi* output) {
    common::BasicImage input_image;
    common::BasicImage output_image;
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(*input, input_image);
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(*output, output_image);
    // A binary input becomes gray inside input_image only: the caller's buffer is not touched.
    geometric::ProjectiveCorrection correction(&input_image, &output_image);
    correction.set_control_points(corners_of(*corners));
    correction.run_correction();
    morvane::ImageCApiTransformer::transform_image_to_c_api_image(output_image, *output);
    return 0;
}

int obtain_output_image_dimension(const ControlPointCorners* corners, int* width, int* height) {
    geometric::ProjectiveCorrection::calculate_output_dimension(corners_of(*corners), *width, *height);
    return 0;
}

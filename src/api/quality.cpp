// The image-quality evaluator family: a blob-share grade of a whole image or
// of the page inside it. Nothing here catches exceptions.
#include <vector>

#include "common/basic_image.h"
#include "common/image_c_api_transformer.h"
#include "morvane/morvane.h"
#include "quality/blob_quality.h"

namespace {

geometric::BlobQuality& evaluator(void* handle) { return *static_cast<geometric::BlobQuality*>(handle); }

double grade(void* handle, const ImageCApi* image) {
    common::BasicImage view;
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(*image, view);
    return evaluator(handle).calculate_global_quality(view, nullptr);
}

}  // namespace

void* create_image_quality_evaluator(void) {
    return new geometric::BlobQuality(geometric::BLOB_SHARE_ANY_CONTRAST, geometric::WHOLE_IMAGE, geometric::OMIN, 1);
}

double evaluate_image_quality(void* handle, const ImageCApi* image) {
    evaluator(handle).resetDocumentMargins();
    return grade(handle, image);
}

double evaluate_image_quality_given_corners(void* handle, const ImageCApi* image, const ControlPointCorners* corners) {
    if (corners == nullptr) return evaluate_image_quality(handle, image);
    std::vector<geometric::Geocoordinate<float>> points;
    for (int i = 0; i < 4; ++i)
        points.emplace_back(static_cast<float>(corners->x[i]), static_cast<float>(corners->y[i]));
    evaluator(handle).createDocumentMarginsFromCorners(points);
    return grade(handle, image);
}

void destroy_image_quality_evaluator(void* handle) { delete static_cast<geometric::BlobQuality*>(handle); }

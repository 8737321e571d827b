// Boundary record to image and back.
#include "common/image_c_api_transformer.h"

#include "common/constants.h"

namespace morvane {

void ImageCApiTransformer::transform_c_api_image_to_image(const ImageCApi& source, common::BasicImage& target) {
    common::ImageType type = common::GRAY;
    if (source.is_binary != 0)
        type = common::BINARY;
    else if (source.channels == 3)
        type = common::RGB;
    else if (source.channels == 4)
        type = common::BGRA;
    target.attach(source.data, source.height, source.width, type, constants::kBoundaryResolution,
                  constants::kBoundaryResolution);
}

void ImageCApiTransformer::transform_image_to_c_api_image(const common::Image& source, ImageCApi& target) {
    target.width = source.get_width();
    target.height = source.get_height();
    target.x_resolution = source.get_x_resolution();
    target.y_resolution = source.get_y_resolution();
    source.get_channels(target.channels);
    target.data = source.get_line_pointer(0);
    target.is_binary = source.get_image_type() == common::BINARY ? 1 : 0;
}

}  // namespace morvane

// Converts between the boundary record ImageCApi and the library's images.
#ifndef MORVANE_COMMON_IMAGE_C_API_TRANSFORMER_H
#define MORVANE_COMMON_IMAGE_C_API_TRANSFORMER_H

#include "common/basic_image.h"
#include "morvane/morvane.h"

namespace morvane {

class ImageCApiTransformer {
public:
    // Makes target a view on the record's buffer: BINARY when is_binary is
    // non-zero, else RGB for 3 channels, BGRA for 4 and GRAY for any other
    // value. The record's resolutions are not read: every image entering the
    // library counts as 300 by 300 dots per inch.
    static void transform_c_api_image_to_image(const ImageCApi& source, common::BasicImage& target);
    // Fills the record from the image; channels keeps its value for a binary image.
    static void transform_image_to_c_api_image(const common::Image& source, ImageCApi& target);
};

}  // namespace morvane

#endif

// Whole-image services: central patch, saturating difference, mean, background
// deviation, and tests on binary images (empty, ink on the border, ink pixels).
#ifndef MORVANE_PIXEL_IMAGE_OPERATOR_H
#define MORVANE_PIXEL_IMAGE_OPERATOR_H

#include <vector>

#include "common/basic_image.h"

namespace geometric {

class ImageOperator {
public:
    // The centred patch whose sides are share^(1/2) of the image's, so that its
    // area is share of the image's; patch becomes a copy of it, of the image's
    // type. GRAY and RGB only: any other type throws
    // "UNKNOWN and BGRA types are not handled in fct get_pixel_pointer".
    static void fetch_image_patch_central(const common::BasicImage& image, double share, common::BasicImage& patch);
    // second = first - second byte by byte over the buffer, 0 where the second
    // byte is the greater. Throws a const char* when the buffers differ in size.
    static void substract(const common::BasicImage& first, common::BasicImage& second);
    // Sum of all bytes of the buffer over its size, the sum kept in single
    // precision; 0 for an image without bytes.
    static float mean(const common::BasicImage& image);
    // True when all height * row size bytes are zero.
    static bool is_complete_background(const common::BasicImage& image);
    // Binary image: true when the first or last line has ink, or any inner line
    // has ink at its first or last pixel.
    static bool image_border_contains_text(const common::BasicImage& image);
    // Gray image: the deviation sqrt(mean square - mean^2) of six s by s patches,
    // s = max(min(width, height) / 100, 7): the four corners and the middles of
    // the left and right edges. The six are sorted ascending: lowest (when not
    // null) gets the first, the answer is the third. Patches are clipped to
    // the image. Other types throw a const char*.
    static float calculate_background_std(const common::BasicImage& image, float* lowest);
    // Binary image: appends x and y of every ink pixel in line order, after
    // reserving room for 1% of the pixel count.
    static void obtain_object_coordinates(const common::BasicImage& image, std::vector<int>& xs, std::vector<int>& ys);
};

}  // namespace geometric

#endif

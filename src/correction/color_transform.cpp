// Colour space conversion in place, pixel by pixel.
#include "correction/color_transform.h"

namespace geometric {

namespace {

inline unsigned char clamp_byte(int value) {
    return static_cast<unsigned char>(value < 0 ? 0 : (value > 255 ? 255 : value));
}

template <typename Convert>
void convert_pixels(common::BasicImage& image, Convert convert) {
    if (image.get_image_type() != common::RGB || image.get_data() == nullptr) return;
    for (int y = 0; y < image.get_height(); ++y) {
        unsigned char* p = image.get_line_pointer(y);
        for (int x = 0; x < image.get_width(); ++x, p += 3) convert(p);
    }
}

}  // namespace

void ColorTransform::color_transform(common::BasicImage& image) const {
    if (direction == RGB_TO_YUV)
        trans_RGB2YUV(image);
    else
        trans_YUV2RGB(image);
}

// The results stay within 0..255 for every input, so a byte holds them
// without clamping.
void ColorTransform::trans_RGB2YUV(common::BasicImage& image) {
    convert_pixels(image, [](unsigned char* p) {
        const int r = p[0], g = p[1], b = p[2];
        p[0] = static_cast<unsigned char>((19595 * r + 38470 * g + 7471 * b) / 65536);
        p[1] = static_cast<unsigned char>((32768 * r - 27440 * g - 5328 * b) / 65536 + 128);
        p[2] = static_cast<unsigned char>((-11056 * r - 21712 * g + 32768 * b) / 65536 + 128);
    });
}

void ColorTransform::trans_YUV2RGB(common::BasicImage& image) {
    convert_pixels(image, [](unsigned char* p) {
        const int y = p[0], u = p[1] - 128, v = p[2] - 128;
        p[0] = clamp_byte(y + 91881 * u / 65536);
        p[1] = clamp_byte(y + (-22553 * v - 46802 * u) / 65536);
        p[2] = clamp_byte(y + 116130 * v / 65536);
    });
}

}  // namespace geometric

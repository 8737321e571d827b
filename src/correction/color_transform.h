// In-place conversion of an RGB image between red-green-blue and a luminance
// with two colour differences, the form that sampling_color reads.
#ifndef MORVANE_CORRECTION_COLOR_TRANSFORM_H
#define MORVANE_CORRECTION_COLOR_TRANSFORM_H

#include "common/basic_image.h"

namespace geometric {

class ColorTransform {
public:
    enum Direction { RGB_TO_YUV = 0, YUV_TO_RGB = 1 };

    explicit ColorTransform(int direction = RGB_TO_YUV) : direction(direction) {}

    // Converts an RGB image in place in the chosen direction; other types are left alone.
    void color_transform(common::BasicImage& image) const;

    // Y = (19595 R + 38470 G + 7471 B) / 65536,
    // U = (32768 R - 27440 G - 5328 B) / 65536 + 128,
    // V = (-11056 R - 21712 G + 32768 B) / 65536 + 128, integer division.
    static void trans_RGB2YUV(common::BasicImage& image);
    // The conversion of sampling_color, on every pixel.
    static void trans_YUV2RGB(common::BasicImage& image);

    int get_direction() const { return direction; }

private:
    int direction;
};

}  // namespace geometric

#endif

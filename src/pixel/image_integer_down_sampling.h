// Integer reduction of gray images by block means: the working image of every
// search is made here.
#ifndef MORVANE_PIXEL_IMAGE_INTEGER_DOWN_SAMPLING_H
#define MORVANE_PIXEL_IMAGE_INTEGER_DOWN_SAMPLING_H

#include "common/basic_image.h"

namespace geometric {

// All operations take a GRAY input (any other type throws a const char*) and
// give a GRAY output of width / n by height / n pixels, truncated: a partial
// last block column or line is dropped. Each output pixel is the integer mean
// of its n-by-n block (the block sum divided by n * n, truncated).
class ImageIntegerDownSampling {
public:
    // Rate 2. An output that has a buffer large enough already is reused
    // through change_image_dimension, so that output may be input itself:
    // each output byte lies behind the bytes that it reads.
    static void DownSampling2(const common::Image& input, common::BasicImage& output);
    // In place: the image keeps its buffer and shrinks.
    static void DownSampling2(common::BasicImage& image);

    // Rate n >= 1, block by block: the plain form the others are checked against.
    static void DownSamplingN(const common::Image& input, common::BasicImage& output, int n);
    // Rate n >= 1 from running sums of each line of a block line, kept in a
    // buffer of n lines.
    static void DownSamplingSummedAreaTable(const common::Image& input, common::BasicImage& output, int n);
    // Rate n >= 1, the fastest route: DownSampling2 for n = 2, otherwise column
    // sums over each block line. The last three forms build a fresh image at
    // 300 dots per inch and swap it in, so output may be input itself.
    static void DownSamplingCombined(const common::Image& input, common::BasicImage& output, int n);
    // DownSamplingCombined of the luminance image of an RGB input (any other
    // type throws), in one pass: each line is turned gray just before it is
    // summed, so that no gray copy of the whole input is made. The bytes are
    // those of create_gray_from_rgb_luminance followed by DownSamplingCombined.
    static void DownSamplingCombinedLuminance(const common::Image& input, common::BasicImage& output, int n);

    // Lays a gray image of width by height over the image's buffer as it is:
    // width, row size = width, height and byte count change, nothing else.
    static void change_image_dimension(common::BasicImage& image, int width, int height);
};

}  // namespace geometric

#endif

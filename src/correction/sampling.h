// Pixel samplers of the warp: the method is chosen once per correction and
// reached through a stored function object for every interior output pixel.
#ifndef MORVANE_CORRECTION_SAMPLING_H
#define MORVANE_CORRECTION_SAMPLING_H

#include <boost/function.hpp>

#include "common/image.h"

namespace geometric {

// Sampling methods; the value picks the member function of Sampling.
enum InterpolationType : int {
    INTERPOLATION_NEAREST = 0,       // sampling_nearest, margin 0
    INTERPOLATION_LINEAR = 1,        // sampling_linear, margin 1
    INTERPOLATION_BICUBIC = 2,       // sampling_bicubic, margin 2
    INTERPOLATION_COLOR = 3,         // sampling_color, margin 2
    INTERPOLATION_COLOR_LINEAR = 4   // color_linear, margin 1
};

// Every method reads the pixel at source, its right neighbour (source + b)
// and the pixel below (source + s), with b = bytes_per_pixel and
// s = row_size; the bicubic one reaches one pixel up and left and two down
// and right. fx and fy are the fractions of the position, in [0, 1). A float
// becomes an integer by cutting toward zero, and "8 bits" is the low byte of
// that integer: nothing is clamped unless a method says so.
class Sampling {
public:
    typedef boost::function<void(const unsigned char*, float, float, unsigned char*)> Sampler;

    // bytes_per_pixel: 1 for GRAY, 3 for RGB, 4 for BGRA, 0 for any other
    // type; row_size = width * bytes_per_pixel. An interpolation of 5 or
    // more leaves the sampler empty: calling it throws std::runtime_error
    // "call to empty boost::function".
    Sampling(common::ImageType type, int width, InterpolationType interpolation);
    // The stored function is bound to this object: copies would call the original.
    Sampling(const Sampling&) = delete;
    Sampling& operator=(const Sampling&) = delete;

    // The byte at source; the integer part of the position decides, no rounding.
    void sampling_nearest(const unsigned char* source, float fx, float fy, unsigned char* output) const;
    // Bilinear on the first byte of each pixel:
    //   top = 8 bits of ((1 - fx) source[0] + fx source[b]), bottom likewise one row down,
    //   output[0] = (1 - fy) top + fy bottom, cut to an integer.
    void sampling_linear(const unsigned char* source, float fx, float fy, unsigned char* output) const;
    // Catmull-Rom on the 4 x 4 neighbourhood, rows first. Row values keep
    // only their low byte, so an overshoot past 255 or below 0 wraps around.
    void sampling_bicubic(const unsigned char* source, float fx, float fy, unsigned char* output) const;
    // Bilinear Y, U, V (channels 0, 1, 2) turned into three bytes with U' = U - 128, V' = V - 128:
    //   output[0] = Y + 91881 U' / 65536, output[1] = Y + (-22553 V' - 46802 U') / 65536,
    //   output[2] = Y + 116130 V' / 65536, integer division, each clamped to 0..255.
    void sampling_color(const unsigned char* source, float fx, float fy, unsigned char* output) const;
    // sampling_linear on channels 0, 1 and 2.
    void color_linear(const unsigned char* source, float fx, float fy, unsigned char* output) const;

    int get_margin() const { return margin; }
    int get_bytes_per_pixel() const { return bytes_per_pixel; }
    int get_row_size() const { return row_size; }
    const Sampler& get_sampler() const { return sampler; }

private:
    int margin;
    int bytes_per_pixel;
    int row_size;
    Sampler sampler;
};

}  // namespace geometric

#endif

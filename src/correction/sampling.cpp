// The five samplers and the choice among them.
#include "correction/sampling.h"

namespace geometric {

namespace {

// One bilinear step in single precision, cut toward zero.
inline int interpolate(int first, int second, float f) {
    return static_cast<int>((1 - f) * static_cast<float>(first) + f * static_cast<float>(second));
}

// Bilinear value of the channel at source: the row values keep their low
// byte before the vertical step.
inline int bilinear(const unsigned char* source, int b, int s, float fx, float fy) {
    const int top = interpolate(source[0], source[b], fx) & 0xff;
    const int bottom = interpolate(source[s], source[s + b], fx) & 0xff;
    return interpolate(top, bottom, fy);
}

// Catmull-Rom through s0..s3 at t in [0, 1): the integer coefficients are
// formed in integers, the bracket in single precision, the factor 0.5 in
// double precision, as the results depend on it.
inline double catmull_rom(int s0, int s1, int s2, int s3, float t) {
    const float bracket = ((static_cast<float>(3 * s1 - s0 - 3 * s2 + s3) * t +
                            static_cast<float>(4 * s2 + 2 * s0 - 5 * s1 - s3)) * t +
                           static_cast<float>(s2 - s0)) * t +
                          static_cast<float>(2 * s1);
    return 0.5 * static_cast<double>(bracket);
}

// Cut toward zero, then the low byte: values past 0..255 wrap around.
inline int low_byte(double value) { return static_cast<int>(value) & 0xff; }

inline unsigned char clamp_byte(int value) {
    return static_cast<unsigned char>(value < 0 ? 0 : (value > 255 ? 255 : value));
}

}  // namespace

Sampling::Sampling(common::ImageType type, int width, InterpolationType interpolation)
    : margin(0), bytes_per_pixel(0), row_size(0) {
    switch (type) {
        case common::GRAY: bytes_per_pixel = 1; break;
        case common::RGB: bytes_per_pixel = 3; break;
        case common::BGRA: bytes_per_pixel = 4; break;
        default: break;
    }
    row_size = width * bytes_per_pixel;
    // Lambdas rather than bound member pointers: the call through the stored
    // function is the only indirect call a pixel, the body is inlined into it.
    switch (interpolation) {
        case INTERPOLATION_NEAREST:
            margin = 0;
            sampler = [this](const unsigned char* s, float fx, float fy, unsigned char* o) {
                sampling_nearest(s, fx, fy, o);
            };
            break;
        case INTERPOLATION_LINEAR:
            margin = 1;
            sampler = [this](const unsigned char* s, float fx, float fy, unsigned char* o) {
                sampling_linear(s, fx, fy, o);
            };
            break;
        case INTERPOLATION_BICUBIC:
            margin = 2;
            sampler = [this](const unsigned char* s, float fx, float fy, unsigned char* o) {
                sampling_bicubic(s, fx, fy, o);
            };
            break;
        case INTERPOLATION_COLOR:
            margin = 2;
            sampler = [this](const unsigned char* s, float fx, float fy, unsigned char* o) {
                sampling_color(s, fx, fy, o);
            };
            break;
        case INTERPOLATION_COLOR_LINEAR:
            margin = 1;
            sampler = [this](const unsigned char* s, float fx, float fy, unsigned char* o) {
                color_linear(s, fx, fy, o);
            };
            break;
        default: break;  // no method: the sampler stays empty
    }
}

void Sampling::sampling_nearest(const unsigned char* source, float, float, unsigned char* output) const {
    output[0] = source[0];
}

void Sampling::sampling_linear(const unsigned char* source, float fx, float fy, unsigned char* output) const {
    output[0] = static_cast<unsigned char>(bilinear(source, bytes_per_pixel, row_size, fx, fy));
}

void Sampling::color_linear(const unsigned char* source, float fx, float fy, unsigned char* output) const {
    const int b = bytes_per_pixel;
    const int s = row_size;
    output[0] = static_cast<unsigned char>(bilinear(source, b, s, fx, fy));
    output[1] = static_cast<unsigned char>(bilinear(source + 1, b, s, fx, fy));
    output[2] = static_cast<unsigned char>(bilinear(source + 2, b, s, fx, fy));
}

void Sampling::sampling_color(const unsigned char* source, float fx, float fy, unsigned char* output) const {
    const int b = bytes_per_pixel;
    const int s = row_size;
    const int y = bilinear(source, b, s, fx, fy);
    const int u = bilinear(source + 1, b, s, fx, fy) - 128;
    const int v = bilinear(source + 2, b, s, fx, fy) - 128;
    output[0] = clamp_byte(y + 91881 * u / 65536);
    output[1] = clamp_byte(y + (-22553 * v - 46802 * u) / 65536);
    output[2] = clamp_byte(y + 116130 * v / 65536);
}

void Sampling::sampling_bicubic(const unsigned char* source, float fx, float fy, unsigned char* output) const {
    const int b = bytes_per_pixel;
    const int s = row_size;
    int rows[4];
    for (int k = 0; k < 4; ++k) {
        const unsigned char* row = source + (k - 1) * s;
        rows[k] = low_byte(catmull_rom(row[-b], row[0], row[b], row[2 * b], fx));
    }
    output[0] = static_cast<unsigned char>(low_byte(catmull_rom(rows[0], rows[1], rows[2], rows[3], fy)));
}

}  // namespace geometric

// The five samplers and the choice among them.
#include "correction/sampling.h"

#include "correction/sampling_kernels.h"

namespace geometric {

using namespace sampling_kernels;

void Sampling::sampling_nearest(const unsigned char* source, float fx, float fy, unsigned char* output) const {
    nearest_kernel(source, bytes_per_pixel, row_size, fx, fy, output);
}

void Sampling::sampling_linear(const unsigned char* source, float fx, float fy, unsigned char* output) const {
    linear_kernel(source, bytes_per_pixel, row_size, fx, fy, output);
}

void Sampling::color_linear(const unsigned char* source, float fx, float fy, unsigned char* output) const {
    color_linear_kernel(source, bytes_per_pixel, row_size, fx, fy, output);
}

void Sampling::sampling_color(const unsigned char* source, float fx, float fy, unsigned char* output) const {
    color_kernel(source, bytes_per_pixel, row_size, fx, fy, output);
}

void Sampling::sampling_bicubic(const unsigned char* source, float fx, float fy, unsigned char* output) const {
    bicubic_kernel(source, bytes_per_pixel, row_size, fx, fy, output);
}

Sampling::Sampling(common::ImageType type, int width, InterpolationType interpolation)
    : margin(0), bytes_per_pixel(0), row_size(0) {
    switch (type) {
        case common::GRAY: bytes_per_pixel = 1; break;
        case common::RGB: bytes_per_pixel = 3; break;
        case common::BGRA: bytes_per_pixel = 4; break;
        default: break;
    }
    row_size = width * bytes_per_pixel;
    // Lambdas on the kernels rather than bound member pointers: the call
    // through the stored function is then the only call a pixel.
    switch (interpolation) {
        case INTERPOLATION_NEAREST:
            margin = 0;
            sampler = [this](const unsigned char* s, float fx, float fy, unsigned char* o) {
                nearest_kernel(s, bytes_per_pixel, row_size, fx, fy, o);
            };
            break;
        case INTERPOLATION_LINEAR:
            margin = 1;
            sampler = [this](const unsigned char* s, float fx, float fy, unsigned char* o) {
                linear_kernel(s, bytes_per_pixel, row_size, fx, fy, o);
            };
            break;
        case INTERPOLATION_BICUBIC:
            margin = 2;
            sampler = [this](const unsigned char* s, float fx, float fy, unsigned char* o) {
                bicubic_kernel(s, bytes_per_pixel, row_size, fx, fy, o);
            };
            break;
        case INTERPOLATION_COLOR:
            margin = 2;
            sampler = [this](const unsigned char* s, float fx, float fy, unsigned char* o) {
                color_kernel(s, bytes_per_pixel, row_size, fx, fy, o);
            };
            break;
        case INTERPOLATION_COLOR_LINEAR:
            margin = 1;
            sampler = [this](const unsigned char* s, float fx, float fy, unsigned char* o) {
                color_linear_kernel(s, bytes_per_pixel, row_size, fx, fy, o);
            };
            break;
        default: break;  // no method: the sampler stays empty
    }
}

}  // namespace geometric

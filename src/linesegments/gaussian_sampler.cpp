// Gaussian down-scaling of the line segment detector.
#include "linesegments/gaussian_sampler.h"

#include <cmath>
#include <vector>

namespace geometric {

void GaussianSampler::fill_kernel(double* kernel, int taps, double sigma, double mean) {
    double sum = 0.0;
    for (int i = 0; i < taps; ++i) {
        const double v = (i - mean) / sigma;
        kernel[i] = std::exp(-0.5 * v * v);
        sum += kernel[i];
    }
    if (sum >= 0.0)
        for (int i = 0; i < taps; ++i) kernel[i] /= sum;
}

int GaussianSampler::mirror(int j, int size) {
    const int period = 2 * size;
    while (j < 0) j += period;
    while (j >= period) j -= period;
    if (j >= size) j = period - 1 - j;
    return j;
}

namespace {

// Kernels and source positions of every output position along one axis,
// computed once so that the pixel loops only multiply and add.
struct AxisTaps {
    int taps = 0;
    std::vector<double> weights;  // taps per output position
    std::vector<int> sources;     // mirrored input index per tap

    AxisTaps(int output_size, int input_size, double scale, double sigma, int half)
        : taps(2 * half + 1),
          weights(static_cast<std::size_t>(output_size) * taps),
          sources(static_cast<std::size_t>(output_size) * taps) {
        for (int o = 0; o < output_size; ++o) {
            const double position = o / scale;
            const int centre = static_cast<int>(std::floor(position + 0.5));
            GaussianSampler::fill_kernel(&weights[static_cast<std::size_t>(o) * taps], taps, sigma,
                                         half + position - centre);
            for (int i = 0; i < taps; ++i)
                sources[static_cast<std::size_t>(o) * taps + i] = GaussianSampler::mirror(centre - half + i, input_size);
        }
    }
};

}  // namespace

ImageObject<double> GaussianSampler::down_scale(const ImageObject<unsigned char>& image, double scale,
                                                double sigma_scale) {
    const int width = image.get_width();
    const int height = image.get_height();
    const double sigma = scale < 1.0 ? sigma_scale / scale : sigma_scale;
    const int half = static_cast<int>(std::ceil(sigma * kHalfSizeFactor));
    const int out_width = static_cast<int>(std::ceil(width * scale));
    const int out_height = static_cast<int>(std::ceil(height * scale));

    const AxisTaps across(out_width, width, scale, sigma, half);
    const AxisTaps down(out_height, height, scale, sigma, half);
    const int taps = across.taps;

    // x pass: out_width by height. Each output is summed over the taps in
    // order from 0.0, as the plain form does; going tap by tap across a whole
    // row keeps those sums independent, so they run side by side.
    std::vector<int> tap_sources(static_cast<std::size_t>(taps) * out_width);
    std::vector<double> tap_weights(static_cast<std::size_t>(taps) * out_width);
    for (int x = 0; x < out_width; ++x)
        for (int i = 0; i < taps; ++i) {
            tap_sources[static_cast<std::size_t>(i) * out_width + x] = across.sources[static_cast<std::size_t>(x) * taps + i];
            tap_weights[static_cast<std::size_t>(i) * out_width + x] = across.weights[static_cast<std::size_t>(x) * taps + i];
        }
    std::vector<double> row_in(static_cast<std::size_t>(width));
    ImageObject<double> partial(out_width, height);
    for (int y = 0; y < height; ++y) {
        const unsigned char* in = image.row(y);
        for (int x = 0; x < width; ++x) row_in[x] = in[x];
        double* out = partial.row(y);
        for (int x = 0; x < out_width; ++x) out[x] = 0.0;
        for (int i = 0; i < taps; ++i) {
            const int* s = &tap_sources[static_cast<std::size_t>(i) * out_width];
            const double* w = &tap_weights[static_cast<std::size_t>(i) * out_width];
            for (int x = 0; x < out_width; ++x) out[x] += row_in[s[x]] * w[x];
        }
    }

    // y pass: whole rows at a time, tap by tap, so that the inner loop runs
    // along memory.
    ImageObject<double> result(out_width, out_height);
    for (int y = 0; y < out_height; ++y) {
        const double* w = &down.weights[static_cast<std::size_t>(y) * taps];
        const int* s = &down.sources[static_cast<std::size_t>(y) * taps];
        double* out = result.row(y);
        for (int x = 0; x < out_width; ++x) out[x] = 0.0;
        for (int i = 0; i < taps; ++i) {
            const double* in = partial.row(s[i]);
            const double weight = w[i];
            for (int x = 0; x < out_width; ++x) out[x] += in[x] * weight;
        }
    }
    return result;
}

}  // namespace geometric

// Gaussian down-scaling ahead of line segment detection: each output pixel is
// a Gaussian-weighted mean of the input around its position, so that the
// smaller image carries no aliasing that would show up as false gradients.
#ifndef MORVANE_LINESEGMENTS_GAUSSIAN_SAMPLER_H
#define MORVANE_LINESEGMENTS_GAUSSIAN_SAMPLER_H

#include "linesegments/image_object.h"

namespace geometric {

class GaussianSampler {
public:
    // sqrt(2 * 3.0 * ln 10): with a precision of 3.0, the kernel is cut where
    // it falls below 10^-3 of its peak.
    static constexpr double kHalfSizeFactor = 3.7169221888498387;

    // Output of ceil(width * scale) by ceil(height * scale), 0 < scale.
    // sigma = sigma_scale / scale when scale < 1, else sigma_scale; kernel
    // half-size h = ceil(sigma * kHalfSizeFactor), 2 h + 1 taps. Output
    // pixel x sits at x / scale in the input; the kernel is centred there,
    // on the nearest whole pixel plus the fraction. Borders mirror, with a
    // period of twice the image size. An x pass, then a y pass.
    static ImageObject<double> down_scale(const ImageObject<unsigned char>& image, double scale, double sigma_scale);

    // Taps of a sampled Gaussian of `sigma` centred at `mean`, summing to 1.
    static void fill_kernel(double* kernel, int taps, double sigma, double mean);

    // Where tap position j (any integer) falls in [0, size) under mirroring.
    static int mirror(int j, int size);
};

}  // namespace geometric

#endif

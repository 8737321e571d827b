// The Gaussian down-scaling: its size, a flat image, and every pixel against
// a plain per-pixel sum.
#include "linesegments/gaussian_sampler.h"

#include <gtest/gtest.h>

#include <cmath>

#include "linesegments/angle_tools.h"
#include "linesegments/line_segment_generator.h"

using geometric::GaussianSampler;
using geometric::ImageObject;
using geometric::LineSegmentGenerator;

TEST(GaussianSampler, SizeIsRoundedUpAndFlatStaysFlat) {
    const ImageObject<unsigned char> flat(101, 37, 77);
    const ImageObject<double> out = GaussianSampler::down_scale(flat, 0.8, 0.6);
    EXPECT_EQ(out.get_width(), 81);   // ceil(80.8)
    EXPECT_EQ(out.get_height(), 30);  // ceil(29.6)
    for (int y = 0; y < out.get_height(); ++y)
        for (int x = 0; x < out.get_width(); ++x) ASSERT_NEAR(out.at(x, y), 77.0, 1e-12);
    EXPECT_EQ(static_cast<int>(std::ceil(0.75 * GaussianSampler::kHalfSizeFactor)), 3);
}

TEST(GaussianSampler, MatchesAPlainPerPixelSum) {
    ImageObject<unsigned char> image(23, 17);
    for (int y = 0; y < 17; ++y)
        for (int x = 0; x < 23; ++x) image.at(x, y) = static_cast<unsigned char>((x * 37 + y * 91 + x * y) % 251);
    const double scale = 0.6, sigma = 0.6 / 0.6;
    const int half = static_cast<int>(std::ceil(sigma * GaussianSampler::kHalfSizeFactor));
    const ImageObject<double> fast = GaussianSampler::down_scale(image, scale, 0.6);
    // x pass then y pass, written the plain way, one pixel at a time.
    std::vector<double> kernel(2 * half + 1);
    const int w = fast.get_width(), h = fast.get_height();
    std::vector<double> partial(static_cast<std::size_t>(w) * 17);
    for (int x = 0; x < w; ++x) {
        const double position = x / scale;
        const int centre = static_cast<int>(std::floor(position + 0.5));
        GaussianSampler::fill_kernel(kernel.data(), 2 * half + 1, sigma, half + position - centre);
        for (int y = 0; y < 17; ++y) {
            double sum = 0.0;
            for (int i = 0; i <= 2 * half; ++i) sum += image.at(GaussianSampler::mirror(centre - half + i, 23), y) * kernel[i];
            partial[y * w + x] = sum;
        }
    }
    for (int y = 0; y < h; ++y) {
        const double position = y / scale;
        const int centre = static_cast<int>(std::floor(position + 0.5));
        GaussianSampler::fill_kernel(kernel.data(), 2 * half + 1, sigma, half + position - centre);
        for (int x = 0; x < w; ++x) {
            double sum = 0.0;
            for (int i = 0; i <= 2 * half; ++i) sum += partial[GaussianSampler::mirror(centre - half + i, 17) * w + x] * kernel[i];
            EXPECT_EQ(fast.at(x, y), sum) << x << "," << y;  // bit for bit
        }
    }
}

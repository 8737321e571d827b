// The Gaussian down-scaling and the gradient step with its pseudo-sort.
#include "linesegments/gaussian_sampler.h"

#include <gtest/gtest.h>

#include <cmath>

#include "linesegments/angle_tools.h"
#include "linesegments/line_segment_generator.h"

using geometric::GaussianSampler;
using geometric::ImageObject;
using geometric::LineSegmentGenerator;

TEST(GaussianSampler, MirrorsWithAPeriodOfTwiceTheSize) {
    const struct { int j, expected; } cases[] = {{0, 0}, {4, 4}, {5, 4}, {6, 3}, {9, 0}, {10, 0},
                                                 {-1, 0}, {-2, 1}, {-6, 4}, {-11, 0}, {23, 3}};
    for (const auto& c : cases) EXPECT_EQ(GaussianSampler::mirror(c.j, 5), c.expected) << c.j;
}

TEST(GaussianSampler, KernelSumsToOneAndPeaksAtItsMean) {
    double kernel[7];
    GaussianSampler::fill_kernel(kernel, 7, 0.75, 3.0);
    double sum = 0.0;
    for (double k : kernel) sum += k;
    EXPECT_NEAR(sum, 1.0, 1e-15);
    EXPECT_DOUBLE_EQ(kernel[2], kernel[4]);
    EXPECT_GT(kernel[3], kernel[2]);
    GaussianSampler::fill_kernel(kernel, 7, 0.75, 3.4);
    EXPECT_GT(kernel[4], kernel[2]);
}

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

TEST(Gradient, AVerticalStepHasItsNormAndAngleAndTheBordersHaveNone) {
    ImageObject<unsigned char> image(6, 4, 0);
    for (int y = 0; y < 4; ++y)
        for (int x = 3; x < 6; ++x) image.at(x, y) = 100;
    ImageObject<double> angles, norms;
    const double largest = LineSegmentGenerator::compute_gradient(image, 5.2, angles, norms);
    EXPECT_EQ(largest, 100.0);
    for (int y = 0; y < 3; ++y) {
        EXPECT_EQ(norms.at(2, y), 100.0);  // gx = 200, gy = 0: sqrt(200^2 / 4)
        EXPECT_DOUBLE_EQ(angles.at(2, y), constants::kPi / 2);
        EXPECT_EQ(angles.at(1, y), geometric::lsd_angle::kNotDefined);
    }
    for (int x = 0; x < 6; ++x) {
        EXPECT_EQ(angles.at(x, 3), geometric::lsd_angle::kNotDefined);
        EXPECT_EQ(norms.at(x, 3), 0.0);
    }
    for (int y = 0; y < 4; ++y) EXPECT_EQ(angles.at(5, y), geometric::lsd_angle::kNotDefined);
    // A norm equal to the threshold is not enough.
    LineSegmentGenerator::compute_gradient(image, 100.0, angles, norms);
    EXPECT_EQ(angles.at(2, 0), geometric::lsd_angle::kNotDefined);
}

TEST(PseudoSort, StrongestBinsFirstAndColumnsBeforeRowsInsideABin) {
    ImageObject<double> angles(3, 3, 0.0);
    ImageObject<double> norms(3, 3, 1.0);
    angles.at(2, 2) = geometric::lsd_angle::kNotDefined;
    norms.at(1, 0) = 10.0;  // the largest: the last bin
    norms.at(0, 2) = 9.99;  // same bin of 4 as the largest
    norms.at(2, 0) = 6.0;
    std::vector<geometric::Geocoordinate<int>> order;
    LineSegmentGenerator::pseudo_sort(angles, norms, 10.0, 4, order);
    ASSERT_EQ(order.size(), 8u);
    const int expected[8][2] = {{0, 2}, {1, 0}, {2, 0}, {0, 0}, {0, 1}, {1, 1}, {1, 2}, {2, 1}};
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(order[i].x, expected[i][0]) << i;
        EXPECT_EQ(order[i].y, expected[i][1]) << i;
    }
    LineSegmentGenerator::pseudo_sort(angles, norms, 0.0, 4, order);
    EXPECT_TRUE(order.empty());
}

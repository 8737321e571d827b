// The one-pass working image from RGB against the two-pass route it replaces:
// a gray copy of the whole photo, then the block means.
#include <gtest/gtest.h>

#include "pixel/image_integer_down_sampling.h"
#include "support/images.h"

namespace {

using geometric::ImageIntegerDownSampling;

TEST(LuminanceDownSampling, MatchesGrayCopyThenBlockMeans) {
    // Widths below, at and past one vector step and its tail; rate 1 compares
    // every pixel's luminance, including the full 0..255 range of each channel.
    const struct {
        int height, width, rate;
    } cases[] = {{1024, 256, 1}, {7, 3, 1}, {9, 9, 3}, {30, 31, 2}, {41, 97, 3}, {64, 130, 5}, {5, 300, 7}, {2, 40, 3}};
    unsigned seed = 7;
    for (const auto& c : cases) {
        const common::BasicImage rgb = support::noise_image(c.height, c.width, seed++, common::RGB);
        common::BasicImage gray, expected, fused;
        gray.create_gray_from_rgb_luminance(rgb);
        ImageIntegerDownSampling::DownSamplingCombined(gray, expected, c.rate);
        ImageIntegerDownSampling::DownSamplingCombinedLuminance(rgb, fused, c.rate);
        ASSERT_EQ(fused.get_width(), expected.get_width()) << c.width << " by " << c.rate;
        ASSERT_EQ(fused.get_height(), expected.get_height()) << c.height << " by " << c.rate;
        // (2 rows at rate 3 give an empty image, whose data is null.)
        EXPECT_EQ(support::bytes_of(fused), support::bytes_of(expected))
            << c.width << " x " << c.height << " by " << c.rate;
    }
}

TEST(LuminanceDownSampling, RefusesOtherTypes) {
    common::BasicImage gray = support::noise_image(8, 8, 1), out;
    EXPECT_THROW(ImageIntegerDownSampling::DownSamplingCombinedLuminance(gray, out, 2), const char*);
}

}  // namespace

// The colour space conversion in place and its inverse, the sampler's conversion.
#include <gtest/gtest.h>

#include <cstdlib>

#include "common/basic_image.h"
#include "correction/color_transform.h"

namespace {

TEST(ColorTransform, GrayColoursHaveNeutralDifferences) {
    common::BasicImage image(1, 3, common::RGB);
    const int levels[3] = {0, 100, 255};
    for (int x = 0; x < 3; ++x) image.set_pixel(x, 0, levels[x] * 0x010101u);
    geometric::ColorTransform(geometric::ColorTransform::RGB_TO_YUV).color_transform(image);
    for (int x = 0; x < 3; ++x) EXPECT_EQ(image.get_pixel(x, 0), (levels[x] << 16) | 0x8080u) << levels[x];
}

TEST(ColorTransform, RoundTripStaysWithinThreeLevels) {
    common::BasicImage image(1, 6, common::RGB);
    const unsigned colours[6] = {0xff0000u, 0x00ff00u, 0x0000ffu, 0x123456u, 0xfedcbau, 0x808080u};
    for (int x = 0; x < 6; ++x) image.set_pixel(x, 0, colours[x]);
    // Both directions cut toward zero, so the errors add up.
    geometric::ColorTransform(geometric::ColorTransform::RGB_TO_YUV).color_transform(image);
    geometric::ColorTransform(geometric::ColorTransform::YUV_TO_RGB).color_transform(image);
    for (int x = 0; x < 6; ++x)
        for (int shift = 0; shift <= 16; shift += 8) {
            const int want = static_cast<int>((colours[x] >> shift) & 0xff);
            const int got = static_cast<int>((image.get_pixel(x, 0) >> shift) & 0xff);
            EXPECT_LE(std::abs(want - got), 3) << std::hex << colours[x] << " shift " << std::dec << shift;
        }
}

}  // namespace

// The samplers: what each kind of pixel is sampled with, the wrap-around of the cubic and
// the failure of an empty sampler; the colour space conversion and its inverse.
#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "common/basic_image.h"
#include "correction/color_transform.h"
#include "correction/sampling.h"
#include "support/errors.h"

namespace {

using geometric::Sampling;

// Four rows of four pixels, bytes_per_pixel bytes each; source of a sampler
// call is the pixel at column 1 of row 1.
struct Patch {
    unsigned char bytes[4 * 4 * 4];
    int bytes_per_pixel;
    const unsigned char* at(int x, int y) const { return bytes + (y * 4 + x) * bytes_per_pixel; }
    unsigned char* at(int x, int y) { return bytes + (y * 4 + x) * bytes_per_pixel; }
};

TEST(Sampling, LinearCutsEachStepTowardZero) {
    Patch gray{{}, 1};
    *gray.at(1, 1) = 10;
    *gray.at(2, 1) = 21;  // top: 15.5 -> 15
    *gray.at(1, 2) = 30;
    *gray.at(2, 2) = 31;  // bottom: 30.5 -> 30
    const Sampling linear(common::GRAY, 4, geometric::INTERPOLATION_LINEAR);
    unsigned char out = 0;
    linear.get_sampler()(gray.at(1, 1), 0.5f, 0.5f, &out);
    EXPECT_EQ(out, 22);  // (15 + 30) / 2 = 22.5 -> 22, not 23 from the unrounded 23.0
    linear.get_sampler()(gray.at(1, 1), 0.5f, 0.0f, &out);
    EXPECT_EQ(out, 15);
}

TEST(Sampling, ColorClampsEachChannel) {
    const Sampling color(common::RGB, 4, geometric::INTERPOLATION_COLOR);
    Patch yuv{{}, 3};
    for (int i = 0; i < 16; ++i) {
        yuv.bytes[3 * i] = 100;      // Y
        yuv.bytes[3 * i + 1] = 255;  // U' = 127: channel 0 overshoots, channel 1 drops
        yuv.bytes[3 * i + 2] = 0;    // V' = -128: channel 2 undershoots
    }
    unsigned char out[3] = {0, 0, 0};
    color.get_sampler()(yuv.at(1, 1), 0.0f, 0.0f, out);
    EXPECT_EQ(out[0], 255);
    EXPECT_EQ(out[1], 100 + (-22553 * -128 - 46802 * 127) / 65536);
    EXPECT_EQ(out[2], 0);
}

// The Catmull-Rom cubic overshoots a step; the row value keeps its low byte,
// so the overshoot wraps around instead of being clamped.
TEST(Sampling, BicubicWrapsAroundOnAnOvershootingStep) {
    const Sampling bicubic(common::GRAY, 4, geometric::INTERPOLATION_BICUBIC);
    struct Case {
        unsigned char row[4];
        int expected;  // 0.5 * bracket at t = 0.5, cut, low byte
    };
    const Case cases[] = {
        {{0, 255, 255, 255}, 270 & 0xff},   // 270.9375 -> 270 -> 14
        {{255, 0, 0, 0}, (-15) & 0xff},     // -15.9375 -> -15 -> 241
        {{0, 0, 255, 255}, 127},            // symmetric step: no overshoot
    };
    for (const Case& c : cases) {
        Patch gray{{}, 1};
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 4; ++x) *gray.at(x, y) = c.row[x];
        unsigned char out = 0;
        bicubic.get_sampler()(gray.at(1, 1), 0.5f, 0.3f, &out);
        EXPECT_EQ(out, c.expected);
    }
}

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

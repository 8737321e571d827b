// The samplers: their stated properties, the wrap-around of the cubic and
// the failure of an empty sampler.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "correction/sampling.h"

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

TEST(Sampling, UnknownMethodLeavesAnEmptySamplerThatThrows) {
    const Sampling sampling(common::GRAY, 10, static_cast<geometric::InterpolationType>(5));
    ASSERT_TRUE(sampling.get_sampler().empty());
    unsigned char pixel[4] = {1, 2, 3, 4};
    unsigned char output = 0;
    try {
        sampling.get_sampler()(pixel, 0.0f, 0.0f, &output);
        FAIL() << "an empty sampler must throw";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(std::string(error.what()), "call to empty boost::function");
    }
}

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

}  // namespace

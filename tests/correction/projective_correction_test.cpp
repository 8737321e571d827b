// The projective correction: output size, warps with answers known by
// construction, the binary path, the fill colour and its strips.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "correction/projective_correction.h"
#include "support/errors.h"
#include "support/images.h"

namespace {

using geometric::ProjectiveCorrection;
using support::Corners;

TEST(OutputDimension, MeanOfOppositeSidesPlusOneRounded) {
    struct Case {
        Corners corners;
        int width, height;
    };
    const Case cases[] = {
        {support::own_corners(640, 480), 640, 480},
        {support::own_corners(1, 1), 1, 1},
        // top 10, bottom 11: 10.5 + 1.5 = 12 exactly; sides 5 and sqrt(26): 6.55 -> 6
        {support::corners(0, 0, 10, 0, 11, 5, 0, 5), 12, 6},
        // top 10, bottom 10: 11.5 -> 11 (the half is cut, not rounded up)
        {support::corners(0, 0, 10, 0, 10, 20, 0, 20), 11, 21},
        // corners outside the image count as they are
        {support::corners(-100, -50, 299, -50, 299, 149, -100, 149), 400, 200},
    };
    for (const Case& c : cases) {
        int width = -1, height = -1;
        ProjectiveCorrection::calculate_output_dimension(c.corners, width, height);
        EXPECT_EQ(width, c.width);
        EXPECT_EQ(height, c.height);
    }
}

// Nearest sampling of own corners: output bit (u, v) is the input bit at
// the floors of (W - 1) u / W and (H - 1) v / H, never an integer inside.
TEST(ProjectiveCorrection, BinaryInputComesOutBinaryOwnedOrNot) {
    const int w = 70, h = 45;
    common::BasicImage bits = support::noise_image(h, w, 3, common::BINARY);
    for (bool owned : {true, false}) {
        common::BasicImage input(bits);
        std::vector<unsigned char> buffer(static_cast<size_t>(h * common::row_size_of(common::BINARY, w)), 0xa5);
        common::BasicImage output;
        if (!owned) output.attach(buffer.data(), h, w, common::BINARY);
        ProjectiveCorrection correction(&input, &output);
        EXPECT_EQ(correction.get_input_type(), common::BINARY);
        EXPECT_EQ(input.get_image_type(), common::GRAY);
        EXPECT_EQ(correction.get_para().interpolation, geometric::INTERPOLATION_NEAREST);
        correction.set_control_points(support::own_corners(w, h));
        correction.run_correction();
        ASSERT_EQ(output.get_image_type(), common::BINARY);
        ASSERT_EQ(output.get_width(), w);
        ASSERT_EQ(output.get_height(), h);
        EXPECT_EQ(output.get_data() == buffer.data(), !owned);
        for (int v = 0; v < h; ++v)
            for (int u = 0; u < w; ++u)
                ASSERT_EQ(output.get_pixel(u, v), bits.get_pixel((w - 1) * u / w, (h - 1) * v / h))
                    << (owned ? "owned " : "view ") << u << "," << v;
    }
}

// A white binary page whose corners reach past the image: the outside gets
// the fill value, which becomes ink at 128 and paper at 129.
TEST(ProjectiveCorrection, GrayValueOf128BecomesInk) {
    struct Case {
        bool owned;
        unsigned char fill;
        unsigned ink;
    };
    const Case cases[] = {{true, 128, 1}, {true, 129, 0}, {false, 128, 1}, {false, 129, 0}};
    for (const Case& c : cases) {
        common::BasicImage input(20, 20, common::BINARY);
        std::vector<unsigned char> buffer(static_cast<size_t>(30 * 4), 0);
        common::BasicImage output;
        if (!c.owned) output.attach(buffer.data(), 30, 30, common::BINARY);
        ProjectiveCorrection correction(&input, &output);
        correction.set_filling_mode(0);
        correction.get_filling_pixel()[0] = c.fill;
        correction.set_control_points(support::corners(-5, -5, 24, -5, 24, 24, -5, 24));
        correction.run_correction();
        ASSERT_EQ(output.get_width(), 30);
        EXPECT_EQ(output.get_pixel(0, 0), c.ink) << int(c.fill) << (c.owned ? " owned" : " view");
        EXPECT_EQ(output.get_pixel(29, 29), c.ink);
        EXPECT_EQ(output.get_pixel(15, 15), 0u);  // paper inside
    }
}

TEST(ProjectiveCorrection, ViewOfAnotherSizeOrTypeIsRefused) {
    common::BasicImage input(20, 20, common::GRAY);
    std::vector<unsigned char> buffer(3 * 20 * 20);
    const int views[3][3] = {{20, 19, common::GRAY}, {19, 20, common::GRAY}, {20, 20, common::RGB}};  // height, width, type
    for (const auto& view : views) {
        common::BasicImage output;
        output.attach(buffer.data(), view[0], view[1], static_cast<common::ImageType>(view[2]));
        ProjectiveCorrection correction(&input, &output);
        correction.set_control_points(support::own_corners(20, 20));
        EXPECT_EQ(support::thrown_text<const char*>([&] { correction.run_correction(); }),
                  "output image does not match the corrected image dimensions or the input type")
            << view[0] << " x " << view[1];
    }
}

// Image value y on 60 x 60. With its own corners the top strip (row 5)
// gives nine 5s, the bottom strip (row 54) nine 54s, the left and right
// strips (columns 5 and 54) rows 0, 7, ..., 56 each. The brighter 18 of these
// 36: 56 56, 54 x 9, 49 49 42 42 35 35 28, mean 878 / 18 = 48.8 -> 48. With
// the bottom corners at row 80 the bottom strip lies outside and gives
// nothing: 13 brighter values 56 56 49 49 42 42 35 35 28 28 21 21 14, mean
// 36.6 -> 36, which fills every output pixel below the image. A warp that
// stays inside never computes the colour.
TEST(FillColour, GrayIsTheMeanOfTheBrighterHalfOfTheStripsWhenTheWarpLeavesTheImage) {
    common::BasicImage input(60, 60, common::GRAY);
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 60; ++x) input.set_pixel(x, y, static_cast<unsigned>(y));
    {
        common::BasicImage output;
        ProjectiveCorrection correction(&input, &output);
        correction.set_control_points(support::own_corners(60, 60));
        correction.calculate_filling_pixel();
        EXPECT_EQ(correction.get_filling_pixel()[0], 48);
        ProjectiveCorrection inside(&input, &output);
        inside.set_control_points(support::own_corners(60, 60));
        inside.run_correction();
        EXPECT_EQ(inside.get_filling_pixel()[0], 255);
    }
    common::BasicImage output;
    ProjectiveCorrection correction(&input, &output);
    correction.set_control_points(support::corners(0, 0, 59, 0, 59, 80, 0, 80));
    correction.run_correction();
    EXPECT_EQ(correction.get_filling_pixel()[0], 36);
    ASSERT_EQ(output.get_height(), 81);
    for (int u = 0; u < output.get_width(); ++u) ASSERT_EQ(output.get_pixel(u, 80), 36u);
}

// Fewer than two pixels give black; of three pixels of brightness 76 and a
// dark one the brighter half is the first two of the equal three in their
// order; the sums are divided, unsigned, by the half count.
TEST(FillColour, RgbBrighterHalf) {
    struct Case { int count; std::vector<unsigned char> pixels, colour; };
    const Case cases[] = {
        {1, {200, 210, 220}, {0, 0, 0}},
        {4, {0, 0, 0, 0, 130, 0, 100, 79, 0, 255, 0, 0}, {50, 104, 0}},
        {3, {255, 255, 255, 254, 254, 253, 0, 0, 0}, {255, 255, 255}},  // half = 1: only the brightest
    };
    for (const Case& c : cases) {
        std::vector<unsigned char> colour = {1, 2, 3};
        ProjectiveCorrection::find_above_median_color(c.count, c.pixels.data(), colour.data());
        EXPECT_EQ(colour, c.colour) << c.count;
    }
}

TEST(FillColour, FourByteImageThrowsWhenTheWarpLeavesIt) {
    common::BasicImage input(20, 20, common::BGRA);
    common::BasicImage output;
    ProjectiveCorrection correction(&input, &output);
    correction.set_control_points(support::corners(0, 0, 19, 0, 19, 30, 0, 30));
    EXPECT_EQ(support::thrown_text<const char*>([&] { correction.run_correction(); }),
              "UNKNOWN and BGRA types are not handled in fct get_pixel_pointer");  // no strip pixels
    // With the colour given there is nothing to compute.
    common::BasicImage given;
    ProjectiveCorrection known(&input, &given);
    known.set_filling_mode(0);
    for (int i = 0; i < 4; ++i) known.get_filling_pixel()[i] = static_cast<unsigned char>(10 + i);
    known.set_control_points(support::corners(0, 0, 19, 0, 19, 30, 0, 30));
    known.run_correction();
    const unsigned char* last = given.get_data() + (given.get_height() - 1) * given.get_row_size();
    for (int i = 0; i < 4; ++i) EXPECT_EQ(last[i], 10 + i);
}

}  // namespace

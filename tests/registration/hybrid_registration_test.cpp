// The corrector's driver: the result codes, the output check, the rounding and
// reset of corners, the fill colour from reset corners. The exported
// functions' tests cover the refusals at their limits, the rate, the working
// image and the caller's fill colour. The resolution estimate of an image
// alone and of the bound input.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "common/basic_image.h"
#include "registration/hybrid_registration.h"
#include "support/images.h"
#include "support/text_pages.h"

using common::BasicImage;
using geometric::Geocoordinate;
using hybrid::HybridRegistration;

// A driver on a 100 x 200 gray page whose corner list is set by the test.
class HybridResult : public ::testing::Test {
protected:
    HybridResult() : image(support::flat_image(100, 200, 200)), driver(&image) {}
    void set_corners(const std::vector<Geocoordinate<float>>& given) { driver.corners = given; }

    BasicImage image;
    HybridRegistration driver;
};

TEST_F(HybridResult, ReturnCodeTableRowByRow) {
    // Passing corners: the check answers 1. Failing corners (outside the
    // image with within_the_image on): the check answers -3.
    const auto passing = support::corners(10, 10, 180, 10, 180, 90, 10, 90);
    const auto failing = support::corners(-5, 10, 180, 10, 180, 90, 10, 90);
    struct Flags { bool edge_corners; bool check; };
    const Flags flags[] = {{true, true}, {true, false}, {false, true}, {false, false}};
    driver.within_the_image = true;
    for (int r = -7; r <= 6; ++r) {
        for (const Flags& f : flags) {
            for (int verdict : {1, -3}) {
                set_corners(verdict == 1 ? passing : failing);
                driver.set_corner_type(f.edge_corners);
                int expected;
                if (r == -2) expected = 0;
                else if (r == 2) expected = (f.edge_corners && f.check) ? (verdict == 1 ? 2 : verdict) : 2;
                else if (r <= 0) expected = r;
                else expected = (f.edge_corners && f.check) ? verdict : 1;
                EXPECT_EQ(driver.return_hybrid_result(static_cast<geometric::RegistrationOutputType>(r), f.check),
                          expected)
                    << "r " << r << " edge corners " << f.edge_corners << " check " << f.check << " verdict "
                    << verdict;
            }
        }
    }
}

TEST_F(HybridResult, OutputCheckCodes) {
    struct Case { const char* what; std::vector<Geocoordinate<float>> corners; bool within; int expected; };
    const Case cases[] = {
        {"inside", support::corners(10, 10, 180, 10, 180, 90, 10, 90), true, 1},
        {"left of corner 0", support::corners(-0.5f, 10, 180, 10, 180, 90, 10, 90), true, -3},
        {"right of corner 1", support::corners(10, 10, 199.5f, 10, 180, 90, 10, 90), true, -3},
        {"above corner 1", support::corners(10, 10, 180, -1, 180, 90, 10, 90), true, -3},
        {"below corner 3", support::corners(10, 10, 180, 10, 180, 90, 10, 99.5f), true, -3},
        {"at the last pixel", support::corners(0, 0, 199, 0, 199, 99, 0, 99), true, 1},
        {"outside without the flag", support::corners(-50, -50, 250, -50, 250, 150, -50, 150), false, 1},
        {"not convex", support::corners(10, 10, 180, 10, 60, 40, 10, 90), false, -5},
        {"sharp angle at corner 1", support::corners(10, 10, 190, 50, 20, 80, 10, 60), false, -5},
        {"too thin", support::corners(10, 10, 14, 10, 14, 12, 10, 12), false, -6},
    };
    for (const Case& c : cases) {
        set_corners(c.corners);
        driver.within_the_image = c.within;
        EXPECT_EQ(driver.check_projective_output(), c.expected) << c.what;
    }
}

TEST_F(HybridResult, FourCornersRoundByFloorOfValuePlusHalf) {
    set_corners(support::corners(1.5f, 2.49f, -0.5f, -1.5f, 10.4999f, -0.51f, 7.0f, 2.5f));
    ControlPointCorners out;
    driver.obtain_four_corners(out);
    EXPECT_EQ(std::vector<int>(out.x, out.x + 4), (std::vector<int>{2, 0, 10, 7}));
    EXPECT_EQ(std::vector<int>(out.y, out.y + 4), (std::vector<int>{2, -1, -1, 3}));
}

TEST_F(HybridResult, ResetFourCornersMarksOnlyARealChange) {
    const ControlPointCorners given = {{5, 50, 50, 5}, {6, 6, 60, 60}};
    driver.reset_four_corners(given);  // an empty list takes the corners without a mark
    EXPECT_FALSE(driver.corners_were_reset);
    EXPECT_EQ(driver.corners[2].y, 60.0f);
    driver.reset_four_corners(given);  // no change, no mark
    EXPECT_FALSE(driver.corners_were_reset);
    driver.reset_four_corners({{5, 50, 51, 5}, {6, 6, 60, 60}});
    EXPECT_TRUE(driver.corners_were_reset);
    EXPECT_EQ(driver.corners[2].x, 51.0f);

    HybridRegistration fresh(&image);
    fresh.obtain_internal_corners();  // the whole image, as after a run that found nothing
    ControlPointCorners found;
    fresh.obtain_four_corners(found);
    fresh.reset_four_corners(found);
    EXPECT_FALSE(fresh.corners_were_reset);
}

// Corners whose top-left lies outside the 40 x 40 page, so that output pixel
// (0, 0) takes the fill colour; the other three lie on pixels inside.
const ControlPointCorners kPartlyOutside = {{-10, 30, 30, 2}, {-10, 3, 30, 35}};

// Output pixel (0, 0) takes the brightest pixel under marked reset corners,
// or else the correction's own colour (the paper's 200). A reset marks only
// a list that held corners before.
TEST(HybridFill, ResetCornersGiveTheBrightestPixelUnderThem) {
    struct Case { bool corners_found_first; ControlPointCorners corners; unsigned expected; };
    const Case cases[] = {
        {true, kPartlyOutside, 90},
        {false, kPartlyOutside, 200},
        {true, {{-5, 20, 45, 20}, {20, -5, 20, 45}}, 200},  // a diamond with every corner outside
    };
    for (const Case& c : cases) {
        BasicImage image = support::flat_image(40, 40, 200);
        image.set_pixel(30, 3, 90);   // under corner 1
        image.set_pixel(30, 30, 50);  // under corner 2
        image.set_pixel(2, 35, 70);   // under corner 3
        HybridRegistration driver(&image);
        if (c.corners_found_first) driver.obtain_internal_corners();
        driver.reset_four_corners(c.corners);
        EXPECT_EQ(driver.corners_were_reset, c.corners_found_first);
        int width = 0, height = 0;
        driver.obtain_corrected_img_dimension(width, height);
        BasicImage output(height, width, common::GRAY);
        EXPECT_EQ(driver.perform_correction(output), 1);
        EXPECT_EQ(output.get_pixel(0, 0), c.expected);
    }
}

// Pages of body text 44 rows high. An image alone is analysed as it is: a
// gray page, and the luminance of an RGB one, by text-picture separation
// (whose smoothing adds up to two rows at a glyph's foot); a 1-bit page by
// dilation and area, whose blobs are two rows taller at each end. The bound
// input is analysed on the working image, here half as high, and the
// answer doubled. Too little text gives 300, as before any run.
TEST(HybridResolution, EstimatesFromTheCharacterSize) {
    support::TextPageSpec spec;
    spec.width = 1000;
    spec.height = 1600;
    spec.body_height = 44;
    spec.glyph_width = 28;
    spec.stroke = 6;
    spec.glyph_gap = 10;
    spec.line_pitch = 88;
    spec.lines = 12;
    const support::TextPage page = support::make_text_page(spec);
    BasicImage rgb(page.gray.get_height(), page.gray.get_width(), common::RGB);
    for (int i = 0; i < page.gray.get_data_size(); ++i)
        std::memset(rgb.get_data() + 3 * i, page.gray.get_data()[i], 3);
    const auto dots = [](int rows) { return static_cast<int>(300.0f * (static_cast<float>(rows) / 22.0f)); };

    BasicImage input(page.gray);
    HybridRegistration driver(&input);
    EXPECT_EQ(driver.estimate_spatial_resolution(), 300);
    const int gray = driver.estimate_spatial_resolution(input);
    EXPECT_GE(gray, dots(44));
    EXPECT_LE(gray, dots(46));
    EXPECT_EQ(driver.estimate_spatial_resolution(rgb), gray);
    BasicImage ink(page.ink);
    EXPECT_EQ(driver.estimate_spatial_resolution(ink), dots(48));
    for (common::ImageType type : {common::GRAY, common::RGB, common::BINARY, common::BGRA}) {
        BasicImage blank(20, 20, type);
        EXPECT_EQ(driver.estimate_spatial_resolution(blank), 300) << type;
    }

    driver.run_program();
    ASSERT_EQ(driver.downsampling_rate, 2);
    const int bound = driver.estimate_spatial_resolution();
    EXPECT_GE(bound, 2 * dots(22));
    EXPECT_LE(bound, 2 * dots(24));
}

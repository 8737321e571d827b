// The driver's runs as they stand without a page, the fill colour from reset
// corners, and vanishing points scaled by the rate. The exported functions'
// tests cover the refusals, the caller's fill colour, the working-image
// variants and the resolution estimate.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "registration/hybrid_registration.h"
#include "support/images.h"

using common::BasicImage;
using geometric::Geocoordinate;
using hybrid::HybridRegistration;

namespace {

// Corners whose top-left lies outside the 40 x 40 page, so that output pixel
// (0, 0) takes the fill colour; the other three lie on pixels inside.
const ControlPointCorners kPartlyOutside = {{-10, 30, 30, 2}, {-10, 3, 30, 35}};

}  // namespace

TEST(HybridRun, ARunEmptiesTheCornersAndTheMarkAndTheTextSearchNeedsTheEdgeSearch) {
    BasicImage image = support::flat_image(40, 60, 200);
    HybridRegistration driver(&image);
    driver.reset_four_corners(kPartlyOutside);
    driver.reset_four_corners({{1, 2, 3, 4}, {5, 6, 7, 8}});
    ASSERT_TRUE(driver.corners_were_reset);
    EXPECT_EQ(driver.run_program(), -1);
    EXPECT_TRUE(driver.corners.empty());
    EXPECT_FALSE(driver.corners_were_reset);
    EXPECT_NE(driver.feature_registration, nullptr);
    HybridRegistration early(&image);
    EXPECT_THROW(early.run_feature_searching(), const char*);
}

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
    // In colour the brightness is (598 R + 587 G) / 1000: blue counts for nothing.
    BasicImage rgb = support::flat_image(40, 40, 255, common::RGB);
    rgb.set_pixel(30, 3, 0x0000C8);   // 0
    rgb.set_pixel(30, 30, 0xFF0000);  // 152
    rgb.set_pixel(2, 35, 0x00C800);   // 117
    HybridRegistration driver(&rgb);
    driver.obtain_internal_corners();
    driver.reset_four_corners(kPartlyOutside);
    int width = 0, height = 0;
    driver.obtain_corrected_img_dimension(width, height);
    BasicImage output(height, width, common::RGB);
    driver.perform_correction(output);
    EXPECT_EQ(output.get_pixel(0, 0), 0xFF0000u);
}

TEST(HybridVanishingPoints, ComeFromTheTextSearchScaledByTheRate) {
    BasicImage image = support::flat_image(40, 60, 200);
    HybridRegistration driver(&image);
    driver.run_program();
    driver.downsampling_rate = 3;
    driver.feature_registration->vanishing_points.horizontal_point = Geocoordinate<double>(10.0, -2.0);
    driver.feature_registration->vanishing_points.horizontal.has_vanishing_point = true;
    driver.edge_registration->vanishing_points.horizontal_point = Geocoordinate<double>(99.0, 99.0);
    geometric::VanishingPointHorVerInfo info;
    driver.obtain_vanishing_points(info);
    EXPECT_TRUE(info.horizontal.has_vanishing_point);
    EXPECT_EQ(info.horizontal_point.x, 30.0);
    EXPECT_EQ(info.horizontal_point.y, -6.0);
    EXPECT_EQ(info.vertical.angle, 90.0f);
}

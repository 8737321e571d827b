// The driver's runs as they stand without searches, and the rectification it
// drives: the three sources of the fill colour, the working-image variants,
// the resolution estimate.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "common/basic_image.h"
#include "correction/projective_correction.h"
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

TEST(HybridRun, FindsNothingYetAndFallsBackToTheWholeImage) {
    BasicImage image = support::flat_image(40, 60, 200);
    for (int method : {0, 1}) {
        HybridRegistration driver(&image);
        driver.set_registration_method(method);
        EXPECT_EQ(driver.run_program(), -1) << method;
        EXPECT_NE(driver.edge_registration, nullptr);
        EXPECT_EQ(driver.feature_registration != nullptr, method == 1);
        ControlPointCorners out;
        driver.obtain_four_corners(out);
        const ControlPointCorners whole = {{0, 59, 59, 0}, {0, 0, 39, 39}};
        EXPECT_EQ(std::memcmp(&out, &whole, sizeof out), 0);
    }
}

TEST(HybridRun, RunProgramEmptiesTheCornersAndTheMark) {
    BasicImage image = support::flat_image(40, 60, 200);
    HybridRegistration driver(&image);
    driver.reset_four_corners(kPartlyOutside);
    driver.reset_four_corners({{1, 2, 3, 4}, {5, 6, 7, 8}});
    ASSERT_TRUE(driver.corners_were_reset);
    driver.run_program();
    EXPECT_TRUE(driver.corners.empty());
    EXPECT_FALSE(driver.corners_were_reset);
}

TEST(HybridRun, RefusedImageGivesZeroFromTheProgramAndMinusOneFromTheEdgeSearch) {
    BasicImage image = support::flat_image(100, 800, 200);
    for (int method : {0, 1}) {
        HybridRegistration driver(&image);
        driver.set_registration_method(method);
        EXPECT_EQ(driver.run_program(), 0);
        EXPECT_EQ(driver.edge_registration, nullptr);
    }
    HybridRegistration driver(&image);
    EXPECT_EQ(driver.run_edge_searching(true), -1);
    EXPECT_EQ(driver.run_feature_searching(), -1);
}

TEST(HybridRun, BgraAndAFeatureSearchBeforeTheEdgeSearchThrow) {
    BasicImage bgra(30, 30, common::BGRA);
    HybridRegistration driver(&bgra);
    EXPECT_EQ(driver.run_program(), 0);  // the program ends with zero, the edge search throws
    EXPECT_THROW(driver.run_edge_searching(true), const char*);
    BasicImage image = support::flat_image(40, 60, 200);
    HybridRegistration early(&image);
    EXPECT_THROW(early.run_feature_searching(), const char*);
}

// Output pixel (0, 0) takes the fill colour: the caller's, the brightest pixel
// under marked reset corners, or else the correction's own (the paper's 200).
TEST(HybridFill, SourcesOfTheColourTable) {
    struct Case {
        const char* what;
        bool callers_colour, corners_found_first;
        ControlPointCorners corners;
        unsigned expected;
    };
    const Case cases[] = {
        {"the caller's colour comes first", true, true, kPartlyOutside, 7},
        {"marked reset: the brightest pixel under the corners", false, true, kPartlyOutside, 90},
        {"a reset on an empty list is not marked", false, false, kPartlyOutside, 200},
        {"a diamond with every corner outside", false, true, {{-5, 20, 45, 20}, {20, -5, 20, 45}}, 200},
    };
    for (const Case& c : cases) {
        BasicImage image = support::flat_image(40, 40, 200);
        image.set_pixel(30, 3, 90);   // under corner 1
        image.set_pixel(30, 30, 50);  // under corner 2
        image.set_pixel(2, 35, 70);   // under corner 3
        HybridRegistration driver(&image);
        unsigned char colour[1] = {7};
        if (c.callers_colour) driver.set_filling_color(colour);
        if (c.corners_found_first) driver.obtain_internal_corners();
        driver.reset_four_corners(c.corners);
        EXPECT_EQ(driver.corners_were_reset, c.corners_found_first) << c.what;
        int width = 0, height = 0;
        driver.obtain_corrected_img_dimension(width, height);
        BasicImage output(height, width, common::GRAY);
        EXPECT_EQ(driver.perform_correction(output), 1) << c.what;
        EXPECT_EQ(output.get_pixel(0, 0), c.expected) << c.what;
        if (c.callers_colour) {
            colour[0] = 9;  // kept by pointer: the next correction reads the new byte
            driver.perform_correction(output);
            EXPECT_EQ(output.get_pixel(0, 0), 9u);
        }
    }
}

TEST(HybridFillRgb, ResetCornersTakeTheBrightestByRedAndGreen) {
    BasicImage image(40, 40, common::RGB);
    std::memset(image.get_data(), 255, static_cast<size_t>(image.get_data_size()));
    image.set_pixel(30, 3, 0x0000C8);   // blue only: brightness 0
    image.set_pixel(30, 30, 0xFF0000);  // red: (598 * 255) / 1000 = 152
    image.set_pixel(2, 35, 0x00C800);   // green: (587 * 200) / 1000 = 117
    HybridRegistration driver(&image);
    driver.obtain_internal_corners();
    driver.reset_four_corners(kPartlyOutside);
    int width = 0, height = 0;
    driver.obtain_corrected_img_dimension(width, height);
    BasicImage output(height, width, common::RGB);
    driver.perform_correction(output);
    EXPECT_EQ(output.get_pixel(0, 0), 0xFF0000u);
}

TEST(HybridCorrection, MatchesAPlainCorrectionOnTheSameCorners) {
    BasicImage image(50, 70, common::GRAY);
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 70; ++x) image.set_pixel(x, y, static_cast<unsigned>((x * 7 + y * 13) % 256));
    const ControlPointCorners given = {{3, 60, 66, 1}, {2, 5, 47, 44}};
    HybridRegistration driver(&image);
    driver.reset_four_corners(given);
    int width = 0, height = 0;
    driver.obtain_corrected_img_dimension(width, height);
    BasicImage output(height, width, common::GRAY);
    driver.perform_correction(output);

    BasicImage copy(image);
    BasicImage expected;
    geometric::ProjectiveCorrection plain(&copy, &expected);
    std::vector<Geocoordinate<float>> corners;
    for (int i = 0; i < 4; ++i) corners.emplace_back(static_cast<float>(given.x[i]), static_cast<float>(given.y[i]));
    plain.set_control_points(corners);
    plain.run_correction();
    ASSERT_EQ(expected.get_data_size(), output.get_data_size());
    EXPECT_EQ(std::memcmp(expected.get_data(), output.get_data(), static_cast<size_t>(output.get_data_size())), 0);
}

TEST(HybridCorrection, WorkingImageVariantsWaitForARun) {
    BasicImage image = support::flat_image(3001, 1000, 120);
    HybridRegistration driver(&image);
    int width = 0, height = 0;
    driver.obtain_corrected_downsampled_img_dimension(width, height);
    EXPECT_EQ(width, 1000);
    EXPECT_EQ(height, 3001);
    BasicImage output;
    EXPECT_EQ(driver.perform_correction_on_downsampled_gray_image(output), 0);
    EXPECT_EQ(output.get_data(), nullptr);

    driver.run_program();
    ASSERT_EQ(driver.downsampling_rate, 2);
    driver.obtain_corrected_downsampled_img_dimension(width, height);
    // The whole input, 999 x 3000 from corner to corner, halved: 499.5 + 1.5 and 1500 + 1.5.
    EXPECT_EQ(width, 501);
    EXPECT_EQ(height, 1501);
    EXPECT_EQ(driver.perform_correction_on_downsampled_gray_image(output), 1);
    EXPECT_EQ(output.get_width(), 501);
    EXPECT_EQ(output.get_height(), 1501);
    // Linear sampling cuts toward zero: a flat page may lose one level.
    EXPECT_NEAR(static_cast<int>(output.get_pixel(250, 700)), 120, 1);
}

TEST(HybridResolution, FallsBackToThreeHundredWithoutPageAnalysis) {
    BasicImage image = support::flat_image(40, 60, 200);
    HybridRegistration driver(&image);
    EXPECT_EQ(driver.estimate_spatial_resolution(), 300);
    for (common::ImageType type : {common::GRAY, common::RGB, common::BINARY}) {
        BasicImage other(20, 20, type);
        EXPECT_EQ(driver.estimate_spatial_resolution(other), 300) << type;
    }
    driver.run_program();
    EXPECT_EQ(driver.estimate_spatial_resolution(), 300);
}

TEST(HybridVanishingPoints, ScaledByTheRate) {
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

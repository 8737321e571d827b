// Whole-image services: patch, difference, mean, deviation, binary tests.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "common/basic_image.h"
#include "pixel/image_operator.h"

using common::BasicImage;
using geometric::ImageOperator;

TEST(ImageOperator, CentralPatchOfAQuarterHasHalfEachSide) {
    BasicImage image(40, 60, common::RGB);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 60; ++x) image.set_pixel(x, y, static_cast<unsigned>(y << 16 | x << 8 | 7));
    BasicImage patch;
    ImageOperator::fetch_image_patch_central(image, 0.25, patch);
    ASSERT_EQ(patch.get_width(), 30);
    ASSERT_EQ(patch.get_height(), 20);
    EXPECT_EQ(patch.get_image_type(), common::RGB);
    EXPECT_EQ(patch.get_pixel(0, 0), image.get_pixel(15, 10));
    EXPECT_EQ(patch.get_pixel(29, 19), image.get_pixel(44, 29));
}

TEST(ImageOperator, CentralPatchRefusesBinaryAndBgra) {
    BasicImage patch;
    for (common::ImageType type : {common::BINARY, common::BGRA, common::UNKNOWN}) {
        BasicImage image(8, 8, type);
        try {
            ImageOperator::fetch_image_patch_central(image, 0.25, patch);
            ADD_FAILURE() << "no exception for type " << type;
        } catch (const char* text) {
            EXPECT_STREQ(text, "UNKNOWN and BGRA types are not handled in fct get_pixel_pointer");
        }
    }
}

TEST(ImageOperator, SubstractSaturatesAtZeroIntoTheSecondImage) {
    BasicImage first(1, 4, common::GRAY);
    BasicImage second(1, 4, common::GRAY);
    const unsigned char a[4] = {10, 10, 200, 0};
    const unsigned char b[4] = {3, 10, 201, 255};
    std::memcpy(first.get_data(), a, 4);
    std::memcpy(second.get_data(), b, 4);
    ImageOperator::substract(first, second);
    const unsigned char expected[4] = {7, 0, 0, 0};
    EXPECT_EQ(std::memcmp(second.get_data(), expected, 4), 0);
    EXPECT_EQ(first.get_pixel(0, 0), 10u);
    BasicImage other(2, 4, common::GRAY);
    EXPECT_THROW(ImageOperator::substract(first, other), const char*);
}

TEST(ImageOperator, MeanCoversPaddingAndEmptyImages) {
    BasicImage image(2, 2, common::GRAY);
    const unsigned char bytes[4] = {0, 1, 2, 3};
    std::memcpy(image.get_data(), bytes, 4);
    EXPECT_FLOAT_EQ(ImageOperator::mean(image), 1.5f);
    EXPECT_EQ(ImageOperator::mean(BasicImage()), 0.0f);
}

TEST(ImageOperator, MeanKeepsItsSumInSinglePrecision) {
    // 2^24 + 1 ones: a float sum stalls at 2^24, a double one would not.
    const int count = (1 << 24) + 1;
    BasicImage image(1, count, common::GRAY);
    std::memset(image.get_data(), 1, static_cast<size_t>(count));
    EXPECT_EQ(ImageOperator::mean(image), 16777216.0f / static_cast<float>(count));
}

TEST(ImageOperator, CompleteBackgroundAndBorderText) {
    BasicImage binary(6, 40, common::BINARY);
    EXPECT_TRUE(ImageOperator::is_complete_background(binary));
    EXPECT_FALSE(ImageOperator::image_border_contains_text(binary));
    binary.set_pixel(20, 3, 1);  // inside
    EXPECT_FALSE(ImageOperator::is_complete_background(binary));
    EXPECT_FALSE(ImageOperator::image_border_contains_text(binary));
    const int border[][2] = {{20, 0}, {39, 5}, {0, 2}, {39, 4}};
    for (const auto& at : border) {
        BasicImage copy(binary);
        copy.set_pixel(at[0], at[1], 1);
        EXPECT_TRUE(ImageOperator::image_border_contains_text(copy)) << at[0] << ", " << at[1];
    }
}

TEST(ImageOperator, ObjectCoordinatesInLineOrder) {
    BasicImage binary(3, 5, common::BINARY);
    binary.set_pixel(4, 0, 1);
    binary.set_pixel(1, 2, 1);
    binary.set_pixel(0, 1, 1);
    std::vector<int> xs, ys;
    ImageOperator::obtain_object_coordinates(binary, xs, ys);
    EXPECT_EQ(xs, (std::vector<int>{4, 0, 1}));
    EXPECT_EQ(ys, (std::vector<int>{0, 1, 2}));
}

TEST(ImageOperator, BackgroundStdAnswersTheThirdOfSixPatches) {
    // 700 by 700: s = 7. Patches differ by the amplitude of a checkerboard:
    // top-left 0, top-right 2, bottom-left 4, bottom-right 6, middle-left 8,
    // middle-right 10. A checkerboard of +-a around 100 has deviation close to a
    // (49 pixels: 25 and 24 of each sign).
    const int size = 700, s = 7;
    BasicImage image(size, size, common::GRAY);
    std::memset(image.get_data(), 100, static_cast<size_t>(image.get_data_size()));
    const int origins[6][2] = {{0, 0}, {size - s, 0}, {0, size - s}, {size - s, size - s},
                               {0, size / 2 - s / 2}, {size - s, size / 2 - s / 2}};
    for (int p = 0; p < 6; ++p)
        for (int y = 0; y < s; ++y)
            for (int x = 0; x < s; ++x)
                image.set_pixel(origins[p][0] + x, origins[p][1] + y,
                                static_cast<unsigned>((x + y) % 2 ? 100 - 2 * p : 100 + 2 * p));
    auto deviation = [&](int amplitude) {
        const double n = 49.0;
        const double mean = (25.0 * (100 + amplitude) + 24.0 * (100 - amplitude)) / n;
        const double square = (25.0 * (100 + amplitude) * (100 + amplitude) + 24.0 * (100 - amplitude) * (100 - amplitude)) / n;
        return std::sqrt(square - mean * mean);
    };
    float lowest = -1.0f;
    const float third = ImageOperator::calculate_background_std(image, &lowest);
    EXPECT_EQ(lowest, 0.0f);
    EXPECT_NEAR(third, deviation(4), 1e-2);
    EXPECT_EQ(ImageOperator::calculate_background_std(image, nullptr), third);
}

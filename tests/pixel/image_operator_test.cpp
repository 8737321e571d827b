// Whole-image services: patch, difference, mean, binary tests.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "pixel/image_operator.h"
#include "support/images.h"

using common::BasicImage;
using geometric::ImageOperator;

TEST(ImageOperator, CentralPatchDifferenceAndSinglePrecisionMean) {
    BasicImage image(40, 60, common::RGB);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 60; ++x) image.set_pixel(x, y, static_cast<unsigned>(y << 16 | x << 8 | 7));
    BasicImage patch;
    ImageOperator::fetch_image_patch_central(image, 0.25, patch);  // a quarter: half of each side
    ASSERT_EQ(patch.get_width(), 30);
    ASSERT_EQ(patch.get_height(), 20);
    EXPECT_EQ(patch.get_pixel(0, 0), image.get_pixel(15, 10));
    EXPECT_EQ(patch.get_pixel(29, 19), image.get_pixel(44, 29));
    EXPECT_THROW(ImageOperator::fetch_image_patch_central(BasicImage(8, 8, common::BINARY), 0.25, patch), const char*);

    unsigned char a[4] = {10, 10, 200, 0}, b[4] = {3, 10, 201, 255};
    BasicImage first(a, 1, 4, common::GRAY), second(b, 1, 4, common::GRAY), other(2, 4, common::GRAY);
    ImageOperator::substract(first, second);  // saturating at zero, into the second
    EXPECT_EQ(std::vector<unsigned char>(b, b + 4), (std::vector<unsigned char>{7, 0, 0, 0}));
    EXPECT_THROW(ImageOperator::substract(first, other), const char*);

    EXPECT_FLOAT_EQ(ImageOperator::mean(BasicImage(a, 2, 2, common::GRAY)), 55.0f);
    EXPECT_EQ(ImageOperator::mean(BasicImage()), 0.0f);
    // 2^24 + 1 ones: a float sum stalls at 2^24, a double one would not.
    const int count = (1 << 24) + 1;
    EXPECT_EQ(ImageOperator::mean(support::flat_image(1, count, 1)), 16777216.0f / static_cast<float>(count));
}

TEST(ImageOperator, BinaryTestsAndObjectCoordinates) {
    BasicImage binary(6, 40, common::BINARY);
    EXPECT_TRUE(ImageOperator::is_complete_background(binary));
    binary.set_pixel(20, 3, 1);  // inside
    EXPECT_FALSE(ImageOperator::is_complete_background(binary));
    EXPECT_FALSE(ImageOperator::image_border_contains_text(binary));
    for (const auto& at : {std::make_pair(20, 0), std::make_pair(39, 5), std::make_pair(0, 2)}) {
        BasicImage copy(binary);
        copy.set_pixel(at.first, at.second, 1);
        EXPECT_TRUE(ImageOperator::image_border_contains_text(copy)) << at.first << ", " << at.second;
    }
    BasicImage dots = support::binary_from_text({"....#", "#....", ".#..."});
    std::vector<int> xs, ys;
    ImageOperator::obtain_object_coordinates(dots, xs, ys);
    EXPECT_EQ(xs, (std::vector<int>{4, 0, 1}));
    EXPECT_EQ(ys, (std::vector<int>{0, 1, 2}));
}

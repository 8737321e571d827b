// Whole-image services: patch, difference, mean, binary tests.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "pixel/image_operator.h"
#include "support/images.h"

using common::BasicImage;
using geometric::ImageOperator;

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

// Whole-image services: binary tests, object coordinates, background deviation.
#include <gtest/gtest.h>

#include <cmath>
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

// 700 by 700: patches of 7 in the corners and the middle of the sides, each a
// checkerboard of +-2 p around 100 for patch p; the answer is the third
// smallest deviation, that of amplitude 4 (49 pixels: 25 and 24 of each sign).
TEST(ImageOperator, BackgroundStdAnswersTheThirdOfSixPatches) {
    const int size = 700, s = 7;
    BasicImage image = support::flat_image(size, size, 100);
    const int origins[6][2] = {{0, 0}, {size - s, 0}, {0, size - s}, {size - s, size - s},
                               {0, size / 2 - s / 2}, {size - s, size / 2 - s / 2}};
    for (int p = 0; p < 6; ++p)
        for (int i = 0; i < s * s; ++i)
            image.set_pixel(origins[p][0] + i % s, origins[p][1] + i / s, static_cast<unsigned>(100 + (i % 2 ? -2 : 2) * p));
    const double mean = (25.0 * 104 + 24.0 * 96) / 49, square = (25.0 * 104 * 104 + 24.0 * 96 * 96) / 49;
    float lowest = -1.0f;
    const float third = ImageOperator::calculate_background_std(image, &lowest);
    EXPECT_EQ(lowest, 0.0f);
    EXPECT_NEAR(third, std::sqrt(square - mean * mean), 1e-2);
    EXPECT_EQ(ImageOperator::calculate_background_std(image, nullptr), third);
}

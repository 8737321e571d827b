// Down-sampling: the routes agree byte for byte, the in-place form is safe,
// odd borders are dropped and means truncate.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "common/basic_image.h"
#include "pixel/block_mean_divisor.h"
#include "pixel/image_integer_down_sampling.h"

using common::BasicImage;
using geometric::ImageIntegerDownSampling;

namespace {

// A gray image of pseudo-random bytes from a fixed seed.
BasicImage noise_image(int height, int width, uint32_t seed) {
    BasicImage image(height, width, common::GRAY);
    for (int i = 0; i < image.get_data_size(); ++i) {
        seed = seed * 1664525u + 1013904223u;
        image.get_data()[i] = static_cast<unsigned char>(seed >> 24);
    }
    return image;
}

std::vector<unsigned char> bytes_of(const BasicImage& image) {
    return std::vector<unsigned char>(image.get_data(), image.get_data() + image.get_data_size());
}

}  // namespace

TEST(DownSampling2, FiveByFiveGivesTwoByTwoDroppingTheOddBorder) {
    BasicImage image(5, 5, common::GRAY);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 5; ++x) image.set_pixel(x, y, static_cast<unsigned>(10 * y + x));
    BasicImage output;
    ImageIntegerDownSampling::DownSampling2(image, output);
    ASSERT_EQ(output.get_width(), 2);
    ASSERT_EQ(output.get_height(), 2);
    EXPECT_EQ(output.get_image_type(), common::GRAY);
    // (0 + 1 + 10 + 11) / 4 = 5.5 is shifted to 5, (2 + 3 + 12 + 13) / 4 to 7, and so on.
    EXPECT_EQ(bytes_of(output), (std::vector<unsigned char>{5, 7, 25, 27}));
}

TEST(DownSampling2, InPlaceKeepsTheBufferAndMatchesTheCopyingForm) {
    BasicImage image = noise_image(37, 101, 7);  // 50 columns: three vector groups and a tail
    BasicImage expected;
    ImageIntegerDownSampling::DownSampling2(image, expected);
    const unsigned char* buffer = image.get_data();
    ImageIntegerDownSampling::DownSampling2(image);
    EXPECT_EQ(image.get_data(), buffer);
    EXPECT_EQ(image.get_width(), 50);
    EXPECT_EQ(image.get_height(), 18);
    EXPECT_EQ(image.get_row_size(), 50);
    EXPECT_EQ(image.get_data_size(), 50 * 18);
    EXPECT_EQ(bytes_of(image), bytes_of(expected));
}

TEST(DownSampling2, InPlaceOnAViewWritesIntoTheCallersBuffer) {
    BasicImage source = noise_image(8, 12, 3);
    std::vector<unsigned char> caller(source.get_data(), source.get_data() + source.get_data_size());
    BasicImage expected;
    ImageIntegerDownSampling::DownSampling2(source, expected);
    BasicImage view(caller.data(), 8, 12, common::GRAY);
    ImageIntegerDownSampling::DownSampling2(view);
    EXPECT_EQ(view.get_data(), caller.data());
    EXPECT_FALSE(view.get_owns_data());
    EXPECT_EQ(std::vector<unsigned char>(caller.begin(), caller.begin() + 24), bytes_of(expected));
}

TEST(DownSampling2, TooSmallViewOutputIsReplacedAndLeftAlone) {
    BasicImage image = noise_image(10, 10, 5);
    unsigned char foreign[4] = {9, 9, 9, 9};
    BasicImage output(foreign, 2, 2, common::GRAY);
    ImageIntegerDownSampling::DownSampling2(image, output);
    EXPECT_NE(output.get_data(), foreign);
    EXPECT_TRUE(output.get_owns_data());
    EXPECT_EQ(output.get_data_size(), 25);
    EXPECT_EQ(foreign[0], 9);
}

TEST(DownSampling, RoutesAgreeByteForByte) {
    const int sizes[][2] = {{1, 1}, {7, 5}, {30, 41}, {64, 64}, {97, 13}, {9, 131}};
    for (const auto& size : sizes) {
        const BasicImage image = noise_image(size[0], size[1], static_cast<uint32_t>(size[0] * 131 + size[1]));
        for (int n = 1; n <= 9; ++n) {
            SCOPED_TRACE("height " + std::to_string(size[0]) + " width " + std::to_string(size[1]) + " rate " +
                         std::to_string(n));
            BasicImage plain, table, combined;
            ImageIntegerDownSampling::DownSamplingN(image, plain, n);
            ImageIntegerDownSampling::DownSamplingSummedAreaTable(image, table, n);
            ImageIntegerDownSampling::DownSamplingCombined(image, combined, n);
            ASSERT_EQ(plain.get_width(), size[1] / n);
            ASSERT_EQ(plain.get_height(), size[0] / n);
            EXPECT_EQ(plain.get_image_type(), common::GRAY);
            EXPECT_EQ(bytes_of(table), bytes_of(plain));
            EXPECT_EQ(bytes_of(combined), bytes_of(plain));
            EXPECT_EQ(combined.get_width(), plain.get_width());
            EXPECT_EQ(combined.get_height(), plain.get_height());
        }
    }
}

TEST(DownSampling, BlockMeansTruncateAndWhiteStaysWhite) {
    // A 3 by 3 block summing to 9 * 200 + 8 = 1808 gives 200 (200.9 truncated).
    BasicImage image(3, 3, common::GRAY);
    std::memset(image.get_data(), 200, 9);
    image.get_data()[4] = 208;
    BasicImage output;
    ImageIntegerDownSampling::DownSamplingCombined(image, output, 3);
    EXPECT_EQ(output.get_pixel(0, 0), 200u);

    BasicImage white(300, 300, common::GRAY);
    std::memset(white.get_data(), 255, static_cast<size_t>(white.get_data_size()));
    ImageIntegerDownSampling::DownSamplingCombined(white, output, 300);
    ASSERT_EQ(output.get_data_size(), 1);
    EXPECT_EQ(output.get_pixel(0, 0), 255u);
}

TEST(DownSampling, OutputMayBeTheInput) {
    BasicImage image = noise_image(33, 34, 11);
    BasicImage expected;
    ImageIntegerDownSampling::DownSamplingN(image, expected, 3);
    ImageIntegerDownSampling::DownSamplingCombined(image, image, 3);
    EXPECT_EQ(bytes_of(image), bytes_of(expected));
    EXPECT_EQ(image.get_x_resolution(), 300);
}

TEST(DownSampling, RefusesOtherTypesAndRatesBelowOne) {
    BasicImage rgb(4, 4, common::RGB);
    BasicImage gray(4, 4, common::GRAY);
    BasicImage output;
    EXPECT_THROW(ImageIntegerDownSampling::DownSampling2(rgb, output), const char*);
    EXPECT_THROW(ImageIntegerDownSampling::DownSamplingCombined(rgb, output, 3), const char*);
    EXPECT_THROW(ImageIntegerDownSampling::DownSamplingN(gray, output, 0), const char*);
    EXPECT_THROW(ImageIntegerDownSampling::DownSamplingSummedAreaTable(gray, output, -1), const char*);
}

TEST(BlockMeanDivisor, DividesEveryBlockSumExactly) {
    for (int n = 1; n <= geometric::BlockMeanDivisor::kLargestReciprocalRate + 2; ++n) {
        const geometric::BlockMeanDivisor divisor(n);
        const uint64_t area = static_cast<uint64_t>(n) * n;
        for (uint64_t sum = 0; sum <= 255 * area; ++sum)
            if (divisor.divide(sum) != sum / area) FAIL() << "rate " << n << " sum " << sum;
    }
}

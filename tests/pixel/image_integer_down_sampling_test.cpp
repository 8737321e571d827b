// Down-sampling: every route against truncated block means computed here, odd
// borders dropped; the in-place forms, and refusals.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "pixel/block_mean_divisor.h"
#include "pixel/image_integer_down_sampling.h"
#include "support/images.h"

using common::BasicImage;
using geometric::ImageIntegerDownSampling;
using support::bytes_of;

namespace {

// Means of whole n x n blocks, truncated; the partial blocks at the right and
// bottom are dropped.
std::vector<unsigned char> block_means(const BasicImage& image, int n) {
    std::vector<unsigned char> means;
    for (int by = 0; by < image.get_height() / n; ++by)
        for (int bx = 0; bx < image.get_width() / n; ++bx) {
            unsigned sum = 0;
            for (int y = 0; y < n; ++y)
                for (int x = 0; x < n; ++x) sum += image.get_pixel(bx * n + x, by * n + y);
            means.push_back(static_cast<unsigned char>(sum / (n * n)));
        }
    return means;
}

}  // namespace

TEST(DownSampling, EveryRouteGivesTheTruncatedBlockMeans) {
    const int sizes[][2] = {{1, 1}, {5, 5}, {7, 5}, {37, 101}, {64, 64}, {97, 13}, {9, 131}};
    for (const auto& size : sizes) {
        BasicImage image = support::noise_image(size[0], size[1], static_cast<uint32_t>(size[0] * 131 + size[1]));
        for (int n = 1; n <= 9; ++n) {
            SCOPED_TRACE("height " + std::to_string(size[0]) + " width " + std::to_string(size[1]) + " rate " +
                         std::to_string(n));
            const std::vector<unsigned char> expected = block_means(image, n);
            BasicImage plain, table, combined;
            ImageIntegerDownSampling::DownSamplingN(image, plain, n);
            ImageIntegerDownSampling::DownSamplingSummedAreaTable(image, table, n);
            ImageIntegerDownSampling::DownSamplingCombined(image, combined, n);
            for (const BasicImage* output : {&plain, &table, &combined}) {
                EXPECT_EQ(output->get_width(), size[1] / n);
                EXPECT_EQ(output->get_height(), size[0] / n);
                EXPECT_EQ(output->get_image_type(), common::GRAY);
                EXPECT_EQ(bytes_of(*output), expected);
            }
            if (n != 2) continue;
            BasicImage halved;
            ImageIntegerDownSampling::DownSampling2(image, halved);
            EXPECT_EQ(bytes_of(halved), expected);
            // In place: the buffer stays, and so does a view's, the caller's bytes rewritten.
            BasicImage copy(image);
            const unsigned char* buffer = copy.get_data();
            ImageIntegerDownSampling::DownSampling2(copy);
            EXPECT_EQ(copy.get_data(), buffer);
            EXPECT_EQ(copy.get_row_size(), size[1] / 2);
            EXPECT_EQ(bytes_of(copy), expected);
            std::vector<unsigned char> caller = bytes_of(image);
            BasicImage view(caller.data(), size[0], size[1], common::GRAY);
            ImageIntegerDownSampling::DownSampling2(view);
            EXPECT_EQ(view.get_data(), caller.data());
            EXPECT_FALSE(view.get_owns_data());
            EXPECT_EQ(std::vector<unsigned char>(caller.begin(), caller.begin() + expected.size()), expected);
        }
    }
    // A 300 x 300 white block stays white, and a block summing to 1808 gives 200.
    BasicImage white = support::flat_image(300, 300, 255), output;
    ImageIntegerDownSampling::DownSamplingCombined(white, output, 300);
    EXPECT_EQ(bytes_of(output), std::vector<unsigned char>{255});
    BasicImage block = support::flat_image(3, 3, 200);
    block.get_data()[4] = 208;
    ImageIntegerDownSampling::DownSamplingCombined(block, output, 3);
    EXPECT_EQ(output.get_pixel(0, 0), 200u);
}

TEST(DownSampling, OutputsThatAreTheInputOrTooSmallAViewAndRefusals) {
    BasicImage image = support::noise_image(33, 34, 11);
    const std::vector<unsigned char> expected = block_means(image, 3);
    ImageIntegerDownSampling::DownSamplingCombined(image, image, 3);
    EXPECT_EQ(bytes_of(image), expected);
    EXPECT_EQ(image.get_x_resolution(), 300);

    unsigned char foreign[4] = {9, 9, 9, 9};
    BasicImage output(foreign, 2, 2, common::GRAY);
    ImageIntegerDownSampling::DownSampling2(support::noise_image(10, 10, 5), output);
    EXPECT_NE(output.get_data(), foreign);  // replaced, and the caller's bytes left alone
    EXPECT_TRUE(output.get_owns_data());
    EXPECT_EQ(output.get_data_size(), 25);
    EXPECT_EQ(foreign[0], 9);

    BasicImage rgb(4, 4, common::RGB), gray(4, 4, common::GRAY);
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

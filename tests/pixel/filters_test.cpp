// Filters and down-sampling against per-pixel references: box means in every
// form, the weighted 3 by 3 smoothing, block means of every down-sampling route.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "pixel/average_filtering.h"
#include "pixel/image_integer_down_sampling.h"
#include "pixel/weighted_filtering.h"
#include "support/images.h"

using common::BasicImage;
using geometric::AverageFiltering;
using geometric::ImageIntegerDownSampling;
using geometric::WeightedFiltering;
using support::bytes_of;

namespace {

// Reflection without the edge pixel doubled, folding again as often as needed.
int reflect(int i, int n) {
    if (n == 1) return 0;
    while (i < 0 || i >= n) i = i < 0 ? -i : 2 * (n - 1) - i;
    return i;
}

typedef void (*BoxForm)(const common::Image&, BasicImage&, int, int);
const BoxForm kForms[] = {&AverageFiltering::use_native, &AverageFiltering::use_summed_area_table,
                          &AverageFiltering::use_opencv_algorithm};

}  // namespace

// The truncating forms give sum / area, the running form (area + 2 sum) /
// (2 area): one more exactly where the remainder is at least half the area.
// The plain inner form agrees on the pixels it writes and leaves the others.
TEST(AverageFiltering, FormsAgreeWithTheDirectMirroredSum) {
    const int cases[][4] = {  // height, width, window_x, window_y
        {40, 50, 2, 2}, {40, 50, 3, 5}, {40, 50, 4, 7}, {31, 29, 7, 7}, {60, 70, 35, 35}, {12, 9, 8, 3},
        {7, 9, 15, 11}, {1, 30, 5, 3},  {30, 1, 3, 6},  {2, 2, 9, 9},   {13, 17, 1, 1}, {5, 1, 1, 3}};
    int rounded_up = 0;
    for (const auto& c : cases) {
        const BasicImage image = support::noise_image(c[0], c[1], static_cast<uint32_t>(c[0] * 131 + c[2]));
        const int wx = c[2], wy = c[3];
        const uint32_t area = static_cast<uint32_t>(wx * wy);
        BasicImage native, table, running;
        AverageFiltering::use_native(image, native, wx, wy);
        AverageFiltering::use_summed_area_table(image, table, wx, wy);
        AverageFiltering::use_opencv_algorithm(image, running, wx, wy);
        std::vector<unsigned char> plain(static_cast<size_t>(c[0] * c[1]), 7);
        AverageFiltering::sum_area_table(image.get_data(), c[1], c[0], plain.data(), wx, wy);
        for (int y = 0; y < c[0]; ++y)
            for (int x = 0; x < c[1]; ++x) {
                uint32_t sum = 0;
                for (int i = 0; i < wy; ++i)
                    for (int j = 0; j < wx; ++j)
                        sum += image.get_pixel(reflect(x - wx / 2 + j, c[1]), reflect(y - wy / 2 + i, c[0]));
                ASSERT_EQ(table.get_pixel(x, y), sum / area) << x << "," << y << " window " << wx << "x" << wy;
                ASSERT_EQ(native.get_pixel(x, y), sum / area) << x << "," << y << " window " << wx << "x" << wy;
                ASSERT_EQ(running.get_pixel(x, y), (area + 2 * sum) / (2 * area)) << x << "," << y;
                rounded_up += running.get_pixel(x, y) != table.get_pixel(x, y);
                const bool inner = x >= wx / 2 && x <= c[1] - wx + wx / 2 && y >= wy / 2 && y <= c[0] - wy + wy / 2;
                ASSERT_EQ(plain[static_cast<size_t>(y * c[1] + x)], inner ? sum / area : 7u) << x << "," << y;
            }
        for (const BasicImage* output : {&native, &table, &running}) {
            EXPECT_EQ(output->get_image_type(), common::GRAY);
            EXPECT_EQ(output->get_x_resolution(), 300);
        }
    }
    EXPECT_GT(rounded_up, 1000);
}

TEST(AverageFiltering, OutputMayBeTheInputAndBadArgumentsThrow) {
    for (BoxForm form : kForms) {
        const BasicImage original = support::noise_image(25, 33, 3);
        BasicImage expected;
        form(original, expected, 5, 5);
        BasicImage image(original);
        form(image, image, 5, 5);
        EXPECT_TRUE(support::same_bytes(image, expected));

        BasicImage rgb(4, 4, common::RGB), output;
        EXPECT_THROW(form(rgb, output, 3, 3), const char*);
        EXPECT_THROW(form(original, output, 0, 3), const char*);
        EXPECT_THROW(form(original, output, 3, -1), const char*);
        form(BasicImage(0, 0, common::GRAY), output, 3, 3);
        EXPECT_EQ(output.get_data_size(), 0);
        EXPECT_EQ(output.get_image_type(), common::GRAY);
    }
}

TEST(WeightedFiltering, MatchesTheWeightedMeanAndCopiesTheFrame) {
    const int sizes[][2] = {{17, 23}, {2, 7}, {3, 3}};
    for (const auto& size : sizes)
        for (int weight : {0, 1, 4, 100, 2000000000}) {
            const int h = size[0], w = size[1];
            const BasicImage image = support::noise_image(h, w, static_cast<uint32_t>(weight) + 1);
            BasicImage output, in_place(image);
            WeightedFiltering::perform_filtering_3_by_3(image, output, weight);
            WeightedFiltering::perform_filtering_3_by_3(in_place, in_place, weight);
            EXPECT_TRUE(support::same_bytes(output, in_place));
            ASSERT_EQ(output.get_data_size(), h * w);
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    uint64_t expected = image.get_pixel(x, y);
                    if (y > 0 && y < h - 1 && x > 0 && x < w - 1) {
                        uint64_t ring = 0;
                        for (int i = -1; i <= 1; ++i)
                            for (int j = -1; j <= 1; ++j)
                                if (i != 0 || j != 0) ring += image.get_pixel(x + j, y + i);
                        expected = (static_cast<uint64_t>(weight) * expected + ring) / (static_cast<uint64_t>(weight) + 8);
                    }
                    ASSERT_EQ(output.get_pixel(x, y), expected) << x << "," << y << " weight " << weight;
                }
        }
    BasicImage rgb(3, 3, common::RGB), output;
    EXPECT_THROW(WeightedFiltering::perform_filtering_3_by_3(rgb, output, 4), const char*);
    EXPECT_THROW(WeightedFiltering::perform_filtering_3_by_3(support::noise_image(3, 3, 1), output, -1), const char*);
}

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


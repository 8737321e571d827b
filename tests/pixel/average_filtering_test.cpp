// Box means: the padded, native and running forms against a direct sum over
// a mirrored window, flat and step images, the mirror rule at the border.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "common/basic_image.h"
#include "pixel/average_filtering.h"

using common::BasicImage;
using geometric::AverageFiltering;

namespace {

BasicImage noise_image(int height, int width, uint32_t seed) {
    BasicImage image(height, width, common::GRAY);
    for (int i = 0; i < image.get_data_size(); ++i) {
        seed = seed * 1664525u + 1013904223u;
        image.get_data()[i] = static_cast<unsigned char>(seed >> 24);
    }
    return image;
}

BasicImage flat_image(int height, int width, unsigned char value) {
    BasicImage image(height, width, common::GRAY);
    std::memset(image.get_data(), value, static_cast<size_t>(image.get_data_size()));
    return image;
}

// Reflection without the edge pixel doubled, folding again as often as needed.
int reflect(int i, int n) {
    if (n == 1) return 0;
    while (i < 0 || i >= n) i = i < 0 ? -i : 2 * (n - 1) - i;
    return i;
}

// Sum of the window of (x, y) over the mirrored image.
uint32_t window_sum(const BasicImage& image, int x, int y, int window_x, int window_y) {
    uint32_t sum = 0;
    for (int i = 0; i < window_y; ++i)
        for (int j = 0; j < window_x; ++j)
            sum += image.get_pixel(reflect(x - window_x / 2 + j, image.get_width()),
                                   reflect(y - window_y / 2 + i, image.get_height()));
    return sum;
}

typedef void (*BoxForm)(const common::Image&, BasicImage&, int, int);
const BoxForm kForms[] = {&AverageFiltering::use_native, &AverageFiltering::use_summed_area_table,
                          &AverageFiltering::use_opencv_algorithm};

}  // namespace

TEST(AverageFiltering, FlatImagesStayFlatAndOneByOneReturnsTheImage) {
    const int windows[][2] = {{1, 1}, {2, 2}, {4, 3}, {7, 7}, {35, 35}, {1, 60}};
    for (BoxForm form : kForms)
        for (const auto& window : windows) {
            const BasicImage flat = flat_image(20, 30, 173);
            BasicImage output;
            form(flat, output, window[0], window[1]);
            ASSERT_EQ(output.get_data_size(), 600);
            for (int i = 0; i < 600; ++i) ASSERT_EQ(output.get_data()[i], 173) << window[0] << "x" << window[1];
        }
    for (BoxForm form : kForms) {
        const BasicImage noise = noise_image(13, 17, 5);
        BasicImage output;
        form(noise, output, 1, 1);
        EXPECT_EQ(0, std::memcmp(output.get_data(), noise.get_data(), 13 * 17));
        EXPECT_EQ(output.get_image_type(), common::GRAY);
        EXPECT_EQ(output.get_x_resolution(), 300);
        EXPECT_TRUE(output.get_owns_data());
    }
}

// A step from 0 to 100 between columns 9 and 10 under a 3 by 3 window:
// 100/3 and 200/3 beside the step, truncated by two forms, rounded by the third.
TEST(AverageFiltering, StepGivesThirdsTruncatedOrRounded) {
    BasicImage step(8, 20, common::GRAY);
    for (int y = 0; y < 8; ++y)
        for (int x = 10; x < 20; ++x) step.set_pixel(x, y, 100);
    for (int f = 0; f < 3; ++f) {
        BasicImage output;
        kForms[f](step, output, 3, 3);
        for (int y = 0; y < 8; ++y) {
            EXPECT_EQ(output.get_pixel(8, y), 0u);
            EXPECT_EQ(output.get_pixel(9, y), 33u);
            EXPECT_EQ(output.get_pixel(10, y), f == 2 ? 67u : 66u);
            EXPECT_EQ(output.get_pixel(11, y), 100u);
        }
    }
}

// Column -1 reads column 1 and column 5 reads column 3: 10 20 30 40 50 under a
// 3 by 1 window gives (20 + 10 + 20) / 3 and (40 + 50 + 40) / 3 at the ends,
// not the 13 and 46 of a doubled edge pixel (the running form rounds 16.7 up).
TEST(AverageFiltering, BorderReadsTheMirrorWithoutDoublingTheEdgePixel) {
    BasicImage line(1, 5, common::GRAY);
    for (int x = 0; x < 5; ++x) line.set_pixel(x, 0, 10u * (x + 1));
    for (int f = 0; f < 3; ++f) {
        const BoxForm form = kForms[f];
        const unsigned first = f == 2 ? 17u : 16u;
        BasicImage output;
        form(line, output, 3, 1);
        EXPECT_EQ(output.get_pixel(0, 0), first);
        EXPECT_EQ(output.get_pixel(4, 0), 43u);
        BasicImage column;
        BasicImage tall(5, 1, common::GRAY);
        for (int y = 0; y < 5; ++y) tall.set_pixel(0, y, 10u * (y + 1));
        form(tall, column, 1, 3);
        EXPECT_EQ(column.get_pixel(0, 0), first);
        EXPECT_EQ(column.get_pixel(0, 4), 43u);
    }
}

// Every pixel of every form against the direct mirrored sum: the truncating
// forms give sum / area, the running form (area + 2 sum) / (2 area), one more
// exactly where the remainder is at least half the area. The plain inner form
// agrees on the pixels it writes and leaves the others alone.
TEST(AverageFiltering, FormsAgreeWithTheDirectMirroredSum) {
    const int cases[][4] = {  // height, width, window_x, window_y
        {40, 50, 2, 2}, {40, 50, 3, 5}, {40, 50, 4, 7}, {31, 29, 7, 7}, {60, 70, 35, 35}, {12, 9, 8, 3},
        {7, 9, 15, 11}, {1, 30, 5, 3},  {30, 1, 3, 6},  {2, 2, 9, 9}};
    int rounded_up = 0;
    for (const auto& c : cases) {
        const BasicImage image = noise_image(c[0], c[1], static_cast<uint32_t>(c[0] * 131 + c[2]));
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
                const uint32_t sum = window_sum(image, x, y, wx, wy);
                ASSERT_EQ(table.get_pixel(x, y), sum / area) << x << "," << y << " window " << wx << "x" << wy;
                ASSERT_EQ(native.get_pixel(x, y), sum / area) << x << "," << y << " window " << wx << "x" << wy;
                ASSERT_EQ(running.get_pixel(x, y), (area + 2 * sum) / (2 * area)) << x << "," << y;
                rounded_up += running.get_pixel(x, y) != table.get_pixel(x, y);
                const bool inner = x >= wx / 2 && x <= c[1] - wx + wx / 2 && y >= wy / 2 && y <= c[0] - wy + wy / 2;
                ASSERT_EQ(plain[static_cast<size_t>(y * c[1] + x)], inner ? sum / area : 7u) << x << "," << y;
            }
    }
    EXPECT_GT(rounded_up, 1000);
}

// A sub-block: skip_x, skip_y move the first window, target_row bounds the
// columns and is the target's line distance, target_height bounds the lines.
TEST(AverageFiltering, PerformAveragingWritesTheRequestedSubBlock) {
    const BasicImage image = noise_image(20, 24, 99);
    std::vector<unsigned char> target(6 * 10, 0);
    ASSERT_EQ(0, AverageFiltering::perform_averaging(image.get_data(), 24, 20, target.data(), 10, 5, 3, 4, 2, 7));
    for (int t = 0; t < 6; ++t)
        for (int c = 0; c < 10; ++c) {
            uint32_t sum = 0;
            for (int i = 0; i < 4; ++i)
                for (int j = 0; j < 3; ++j) sum += image.get_pixel(c + 2 + j, t + 7 + i);
            EXPECT_EQ(target[static_cast<size_t>(t * 10 + c)], t < 5 ? sum / 12 : 0u) << c << "," << t;
        }
    // A block narrower than the window writes nothing.
    EXPECT_EQ(0, AverageFiltering::perform_averaging(image.get_data(), 2, 20, target.data(), 10, 5, 3, 4, 0, 0));
}

TEST(AverageFiltering, OutputMayBeTheInputAndBadArgumentsThrow) {
    for (BoxForm form : kForms) {
        const BasicImage original = noise_image(25, 33, 3);
        BasicImage expected;
        form(original, expected, 5, 5);
        BasicImage image(original);
        form(image, image, 5, 5);
        EXPECT_EQ(0, std::memcmp(image.get_data(), expected.get_data(), 25 * 33));

        BasicImage rgb(4, 4, common::RGB), output;
        EXPECT_THROW(form(rgb, output, 3, 3), const char*);
        EXPECT_THROW(form(original, output, 0, 3), const char*);
        EXPECT_THROW(form(original, output, 3, -1), const char*);
        BasicImage empty(0, 0, common::GRAY);
        form(empty, output, 3, 3);
        EXPECT_EQ(output.get_data_size(), 0);
        EXPECT_EQ(output.get_image_type(), common::GRAY);
    }
}

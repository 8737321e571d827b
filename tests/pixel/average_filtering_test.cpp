// Box means: the native, table and running forms and the plain inner sum
// against a direct sum over a mirrored window, the sub-block form, in-place
// runs and bad arguments.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "pixel/average_filtering.h"
#include "support/images.h"

using common::BasicImage;
using geometric::AverageFiltering;

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

// A sub-block: skip_x, skip_y move the first window, target_row bounds the
// columns and is the target's line distance, target_height bounds the lines.
TEST(AverageFiltering, PerformAveragingWritesTheRequestedSubBlock) {
    const BasicImage image = support::noise_image(20, 24, 99);
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

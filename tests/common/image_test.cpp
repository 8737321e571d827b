// The image model: sizes, views and their buffers, pixel access, the
// brightest colour, conversions, failures. The records at the boundary are
// checked through the exported functions and by the C consumer.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "common/basic_image.h"
#include "support/errors.h"

using common::BasicImage;

namespace {

unsigned char* malloc_filled(size_t size, unsigned char value) {
    unsigned char* p = static_cast<unsigned char*>(std::malloc(size));
    std::memset(p, value, size);
    return p;
}

}  // namespace

TEST(ImageConstruction, RowSizeByTypeZeroFilledBuffersAndTheAllocationText) {
    struct Case { common::ImageType type; int width; int row; } cases[] = {
        {common::BINARY, 32, 4}, {common::BINARY, 33, 8}, {common::BINARY, 1, 4}, {common::BINARY, 64, 8},
        {common::BINARY, 0, 0},  {common::GRAY, 7, 7},    {common::RGB, 7, 21},   {common::BGRA, 7, 28},
        {common::UNKNOWN, 7, 0}, {static_cast<common::ImageType>(9), 7, 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(common::row_size_of(c.type, c.width), c.row) << c.type << " width " << c.width;
        BasicImage image(3, c.width, c.type, 200, 100);
        EXPECT_EQ(image.get_row_size(), c.row);
        EXPECT_EQ(image.get_data_size(), 3 * c.row);
        for (int i = 0; i < image.get_data_size(); ++i) ASSERT_EQ(image.get_data()[i], 0);
        EXPECT_EQ(image.get_x_resolution(), 200);
        EXPECT_EQ(image.get_y_resolution(), 100);
    }
    EXPECT_EQ(support::thrown_text<std::string>([] { BasicImage image(100000, 100000, common::RGB); }),
              "error while constructing BasicImage 100000 x 100000 no data, could not allocate enough memory");
}

// Required as it stands: a view reset to its own size takes over the buffer,
// zeroed; reset to another size frees even a foreign buffer.
TEST(ImageViews, ResetOfAViewTakesOverOrFreesTheBuffer) {
    unsigned char* foreign = malloc_filled(12, 7);
    BasicImage same(foreign, 3, 4, common::GRAY);
    same.reset(3, 4, common::GRAY);
    EXPECT_EQ(same.get_data(), foreign);
    EXPECT_TRUE(same.get_owns_data());
    for (int i = 0; i < 12; ++i) EXPECT_EQ(foreign[i], 0);
    BasicImage other(malloc_filled(12, 7), 3, 4, common::GRAY);
    other.reset(5, 5, common::RGB, 72, 96);
    EXPECT_EQ(other.get_data_size(), 75);
    EXPECT_EQ(other.get_x_resolution(), 72);
    EXPECT_TRUE(other.get_owns_data());
}

// Brightness (598 R + 587 G) / 1000: red counts most, blue not at all; the
// first pixel of the highest wins, and 255 stops the search. Red comes back
// in the low byte.
TEST(ImageBrightestColor, RedCountsMostBlueNotAtAllAndTheFirstWins) {
    struct Case { std::vector<unsigned> pixels; unsigned brightest; };
    const Case cases[] = {
        {{0x0000FF, 0x640000, 0x006400, 0x000000}, 0x64u},  // red 100: 59; green 100: 58
        {{0x000001, 0xFFFF0A, 0xFFFFFF, 0x000000}, 0x0AFFFFu},  // blue comes back in the high byte
        {{0x0A0000, 0x0A0005, 0x000000, 0x000000}, 0x0Au},
        {{0x000000, 0x000000, 0x0A0000, 0x0B0000}, 0x0Bu},  // on the second row
    };
    for (const Case& c : cases) {
        BasicImage rgb(2, 2, common::RGB);
        for (int i = 0; i < 4; ++i) rgb.set_pixel(i % 2, i / 2, c.pixels[static_cast<size_t>(i)]);
        EXPECT_EQ(rgb.obtain_brightest_color(), c.brightest);
    }
}

TEST(ImageConversions, GrayFromRgbByMeanAndLuminanceAndBinaryBothWays) {
    BasicImage rgb(1, 2, common::RGB);
    rgb.set_pixel(0, 0, 0xFF0000);
    rgb.set_pixel(1, 0, 0x0A141E);  // 10, 20, 30
    BasicImage mean;
    mean.create_gray_from_rgb_mean(rgb);
    EXPECT_EQ(mean.get_pixel(0, 0), 85u);
    EXPECT_EQ(mean.get_pixel(1, 0), 20u);
    BasicImage luminance(rgb);
    luminance.convert_rgb_to_gray(true);
    EXPECT_EQ(luminance.get_pixel(0, 0), 76u);  // 299 * 255 / 1000
    EXPECT_EQ(luminance.get_pixel(1, 0), 18u);  // (2990 + 11740 + 3420) / 1000

    BasicImage binary(2, 37, common::BINARY);
    binary.set_pixel(0, 0, 1);
    binary.set_pixel(36, 1, 1);
    binary.convert_binary_to_gray();
    EXPECT_EQ(binary.get_row_size(), 37);
    EXPECT_EQ(binary.get_pixel(0, 0), 0u);    // ink is black
    EXPECT_EQ(binary.get_pixel(1, 0), 255u);  // paper white
    EXPECT_EQ(binary.get_pixel(36, 1), 0u);

    BasicImage gray(1, 3, common::GRAY);
    gray.set_pixel(0, 0, 128);
    gray.set_pixel(1, 0, 129);
    BasicImage by_threshold(gray);
    by_threshold.convert_gray_to_binary(128);
    EXPECT_EQ(by_threshold.get_pixel(0, 0), 1u);  // equal to the threshold is ink
    EXPECT_EQ(by_threshold.get_pixel(1, 0), 0u);
    EXPECT_EQ(by_threshold.get_pixel(2, 0), 1u);
    EXPECT_EQ(by_threshold.get_data()[0] & 0x1F, 0);  // padding bits clear
    gray.convert_gray_to_binary();
    EXPECT_EQ(gray.get_pixel(0, 0), 1u);  // non-zero is ink
    EXPECT_EQ(gray.get_pixel(2, 0), 0u);
}


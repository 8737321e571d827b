// The image model and the boundary record: sizes, ownership, copies, views,
// pixel access, conversions, failures; record types, the fixed 300 dots per
// inch, the way back. The C consumer checks the record layouts.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "common/basic_image.h"
#include "common/image_c_api_transformer.h"

using common::BasicImage;
using morvane::ImageCApiTransformer;

namespace {

// An Image that is not a BasicImage, with its pixels starting at bit 3 of a
// row's first byte, to drive the pixel-by-pixel copy and the swap refusal.
class OffsetBinaryImage : public common::Image {
public:
    OffsetBinaryImage(int h, int w) : height(h), width(w), bits(static_cast<size_t>(h * w), 0) {}
    int get_height() const override { return height; }
    int get_width() const override { return width; }
    int get_row_size() const override { return common::row_size_of(common::BINARY, width + 3); }
    int get_x_resolution() const override { return 150; }
    int get_y_resolution() const override { return 200; }
    common::ImageType get_image_type() const override { return common::BINARY; }
    unsigned char* get_line_pointer(int) const override { return nullptr; }
    int get_bit_offset() const override { return 3; }
    bool get_channels(int&) const override { return false; }
    unsigned get_pixel(int x, int y) const override { return bits[static_cast<size_t>(y * width + x)]; }
    void set_pixel(int x, int y, unsigned v) override { bits[static_cast<size_t>(y * width + x)] = v != 0; }
    void swap(common::Image&) override {}

private:
    int height, width;
    std::vector<unsigned> bits;
};

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
    try {
        BasicImage image(100000, 100000, common::RGB);
        FAIL() << "no exception";
    } catch (const std::string& text) {
        EXPECT_EQ(text, "error while constructing BasicImage 100000 x 100000 no data, could not allocate enough memory");
    }
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

TEST(ImageSwap, ExchangesEveryFieldOrRefusesAnotherKindOfImage) {
    unsigned char buffer[4] = {9, 8, 7, 6};
    BasicImage view(buffer, 2, 2, common::GRAY, 100, 100);
    BasicImage owned(3, 3, common::RGB);
    unsigned char* owned_data = owned.get_data();
    view.swap(owned);
    EXPECT_EQ(view.get_data(), owned_data);
    EXPECT_TRUE(view.get_owns_data());
    EXPECT_EQ(view.get_image_type(), common::RGB);
    EXPECT_EQ(owned.get_data(), buffer);
    EXPECT_FALSE(owned.get_owns_data());
    EXPECT_EQ(owned.get_x_resolution(), 100);
    OffsetBinaryImage other(2, 2);
    try {
        owned.swap(other);
        FAIL() << "no exception";
    } catch (const char* text) {
        EXPECT_STREQ(text, "The images you want to swap must be both of type BasicImage.");
    }
}

TEST(ImagePixels, AccessPointersAndInversionByType) {
    BasicImage binary(2, 40, common::BINARY);
    binary.set_pixel(0, 0, 5);
    binary.set_pixel(39, 1, 1);
    EXPECT_EQ(binary.get_data()[0], 0x80);      // most significant bit leftmost
    EXPECT_EQ(binary.get_data()[8 + 4], 0x01);  // pixel 39 is bit 0 of byte 4 of row 1
    binary.set_pixel(0, 0, 0);
    EXPECT_EQ(binary.get_pixel(0, 0), 0u);

    BasicImage rgb(3, 4, common::RGB);
    rgb.set_pixel(1, 2, 0xAABBCC);
    EXPECT_EQ(rgb.get_data()[24 + 3], 0xAA);  // red first
    EXPECT_EQ(rgb.get_data()[24 + 5], 0xCC);
    EXPECT_EQ(rgb.get_pixel_pointer(2, 1), rgb.get_data() + 12 + 6);
    try {
        binary.get_pixel_pointer(0, 0);
        FAIL() << "no exception";
    } catch (const char* text) {
        EXPECT_STREQ(text, "UNKNOWN and BGRA types are not handled in fct get_pixel_pointer");
    }

    unsigned char bgra_pixels[8] = {0};
    BasicImage bgra(bgra_pixels, 1, 2, common::BGRA);
    EXPECT_EQ(bgra.get_line_pointer(0), nullptr);  // although it has a buffer
    EXPECT_EQ(bgra.get_pixel(0, 0), 0u);
    int channels = -1;
    EXPECT_TRUE(bgra.get_channels(channels));
    EXPECT_EQ(channels, 4);
    EXPECT_FALSE(binary.get_channels(channels));
    EXPECT_EQ(channels, 4);  // left alone

    BasicImage narrow(1, 3, common::BINARY);
    narrow.invert();
    for (int i = 0; i < 4; ++i) EXPECT_EQ(narrow.get_data()[i], 0xFF);  // padding included
}

// Brightness (598 R + 587 G) / 1000: red counts most, blue not at all; the
// first pixel of the highest wins, and 255 stops the search. Red comes back
// in the low byte.
TEST(ImageBrightestColor, RedCountsMostBlueNotAtAllAndTheFirstWins) {
    struct Case { std::vector<unsigned> pixels; unsigned brightest; };
    const Case cases[] = {
        {{0x0000FF, 0x640000, 0x006400, 0x000000}, 0x64u},  // red 100: 59; green 100: 58
        {{0x000001, 0xFFFF00, 0xFFFFFF, 0x000000}, 0x00FFFFu},
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
    EXPECT_EQ(mean.get_image_type(), common::GRAY);
    EXPECT_EQ(mean.get_pixel(0, 0), 85u);
    EXPECT_EQ(mean.get_pixel(1, 0), 20u);
    EXPECT_EQ(mean.get_gray_data(), mean.get_data());
    BasicImage luminance(rgb);
    luminance.convert_rgb_to_gray(true);
    EXPECT_EQ(luminance.get_pixel(0, 0), 76u);  // 299 * 255 / 1000
    EXPECT_EQ(luminance.get_pixel(1, 0), 18u);  // (2990 + 11740 + 3420) / 1000
    EXPECT_EQ(luminance.get_gray_data(), luminance.get_data());

    BasicImage binary(2, 37, common::BINARY);
    binary.set_pixel(0, 0, 1);
    binary.set_pixel(36, 1, 1);
    binary.convert_binary_to_gray();
    EXPECT_EQ(binary.get_image_type(), common::GRAY);
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


// The binarization frame, the engine's table and Otsu's threshold.
#include <gtest/gtest.h>

#include <exception>
#include <string>

#include "binarization/binarization_enginee.h"
#include "binarization/otsu_binarization.h"
#include "common/geometricexception.h"
#include "support/images.h"

namespace geometric {
namespace {


unsigned char otsu_threshold(const common::BasicImage& gray) {
    unsigned char threshold = 77;
    OtsuBinarization::obtain_threshold(gray, threshold);
    return threshold;
}

// Left half `dark`, right half `bright`.
common::BasicImage two_level_page(int height, int width, unsigned char dark, unsigned char bright) {
    common::BasicImage page = support::flat_image(height, width, bright);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width / 2; ++x) page.get_line_pointer(y)[x] = dark;
    return page;
}

TEST(OtsuBinarization, InkIsDarkInsideAndTheFrameAndPaddingAreSetAfterTheComplement) {
    // 40 columns: 8 bytes a row, the last 24 bits padding.
    common::BasicImage gray = two_level_page(6, 40, 40, 200);
    common::BasicImage output;
    OtsuBinarization otsu(&gray, &output);
    otsu.set_despeckle(false);
    ASSERT_TRUE(otsu.run_binarization());
    ASSERT_EQ(output.get_image_type(), common::BINARY);
    ASSERT_EQ(output.get_row_size(), 8);
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 40; ++x) {
            const bool frame = x == 0 || y == 0 || x == 39 || y == 5;
            EXPECT_EQ(output.get_pixel(x, y), frame || x < 20 ? 1u : 0u) << x << "," << y;
        }
        for (int b = 5; b < 8; ++b) EXPECT_EQ(output.get_line_pointer(y)[b], 0xFF) << "padding byte " << b;
    }
}

// The application packs eight pixels to a byte; it must set exactly the bits
// of a plain per-pixel walk, at every width around the byte edges.
TEST(OtsuBinarization, PackedApplicationMatchesAPerPixelWalk) {
    unsigned state = 12345u;
    for (int width = 3; width <= 42; ++width) {
        common::BasicImage gray = support::flat_image(5, width, 0);
        for (int y = 0; y < 5; ++y)
            for (int x = 0; x < width; ++x) {
                state = state * 1664525u + 1013904223u;
                gray.get_line_pointer(y)[x] = static_cast<unsigned char>(state >> 24);
            }
        const unsigned char threshold = otsu_threshold(gray);
        common::BasicImage output;
        OtsuBinarization otsu(&gray, &output);
        otsu.set_invert(false);
        otsu.set_despeckle(false);
        ASSERT_TRUE(otsu.run_binarization());
        for (int y = 0; y < 5; ++y) {
            for (int x = 0; x < width; ++x) {
                const bool inner = x >= 1 && y >= 1 && x <= width - 2 && y <= 3;
                const bool expected = inner && gray.get_line_pointer(y)[x] > threshold;
                ASSERT_EQ(output.get_pixel(x, y), expected ? 1u : 0u) << width << ": " << x << "," << y;
            }
            for (int b = (width + 7) / 8; b < output.get_row_size(); ++b) {
                ASSERT_EQ(output.get_line_pointer(y)[b], 0);
            }
            if (width % 8 != 0) {
                ASSERT_EQ(output.get_line_pointer(y)[width / 8] & (0xFF >> (width % 8)), 0);
            }
        }
    }
}

TEST(BinarizationFrame, FourChannelSourceAnswersFalseWithAnEmptyOutput) {
    common::BasicImage bgra(8, 8, common::BGRA);
    common::BasicImage output;
    OtsuBinarization otsu(&bgra, &output);
    EXPECT_FALSE(otsu.run_binarization());
    EXPECT_EQ(output.get_image_type(), common::BINARY);
    EXPECT_EQ(output.get_height(), 8);
    for (int i = 0; i < output.get_data_size(); ++i) EXPECT_EQ(output.get_data()[i], 0);
}

TEST(BinarizationFrame, NullOutputThrows) {
    common::BasicImage gray = support::flat_image(4, 4, 0);
    try {
        OtsuBinarization otsu(&gray, nullptr);
        FAIL() << "no exception";
    } catch (const std::exception& e) {  // a caller that cannot name the type reads the text too
        EXPECT_STREQ(e.what(), "the output image is empty");
    }
}

TEST(BinarizationFrame, DespecklingRemovesAnIsolatedInkPixelUnlessCleared) {
    // One dark pixel on bright paper: Otsu makes it ink, despeckling drops it.
    common::BasicImage gray = support::flat_image(12, 64, 200);
    gray.get_line_pointer(6)[20] = 10;
    for (const bool despeckle : {true, false}) {
        common::BasicImage output;
        OtsuBinarization otsu(&gray, &output);
        otsu.set_despeckle(despeckle);
        ASSERT_TRUE(otsu.run_binarization());
        EXPECT_EQ(output.get_pixel(20, 6), despeckle ? 0u : 1u);
    }
}

TEST(BinarizationEnginee, TableOfMethods) {
    common::BasicImage gray = two_level_page(40, 64, 40, 200);
    struct Case { int method; int answer; };
    const Case cases[] = {{SAUVOLA_QUICK, 0}, {OMIN, -1}, {SAUVOLA_ORIGINAL, 0}, {WOLF_ORIGINAL, 0}, {OTSU, 0},
                          {5, -1}, {-1, -1}};
    for (const Case& c : cases) {
        common::BasicImage output;
        BinarizationEnginee engine(&gray, &output, static_cast<BinarizationMethod>(c.method));
        EXPECT_EQ(engine.get_binarization() != nullptr, c.answer == 0) << c.method;
        EXPECT_EQ(engine.perfomr_binarization(), c.answer) << c.method;
    }
    common::BasicImage bgra(8, 8, common::BGRA);
    common::BasicImage output;
    EXPECT_EQ(BinarizationEnginee(&bgra, &output, OTSU).perfomr_binarization(), -1);
}

}  // namespace
}  // namespace geometric

// The classical binarizations and their frame: mean and deviation maps against a
// box summed pixel by pixel, Sauvola's window rule and Wolf's flat page, Otsu's
// packed application against a per-pixel walk, the frame's refusals and the
// engine's table.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "binarization/binarization_enginee.h"
#include "binarization/mean_and_deviation_maps.h"
#include "binarization/otsu_binarization.h"
#include "binarization/sauvola_binarization_original.h"
#include "binarization/wolf_binarization_original.h"
#include "common/geometricexception.h"
#include "support/errors.h"
#include "support/images.h"

namespace geometric {
namespace {

TEST(MeanAndDeviationMaps, MatchABoxSummedPixelByPixel) {
    const common::BasicImage gray = support::noise_image(23, 31, 17u);
    const int windows[][2] = {{5, 5}, {4, 7}, {40, 3}};
    for (const auto& wnd : windows) {
        Image<double> mean(31, 23), deviation(31, 23);
        mean.set_window(wnd[0], wnd[1]);
        deviation.set_window(wnd[0], wnd[1]);
        calculate_mean_and_deviation_maps(gray, mean, deviation);
        for (int y = 0; y < 23; ++y)
            for (int x = 0; x < 31; ++x) {
                double sum = 0.0, square = 0.0, n = 0.0;
                for (int v = y - wnd[1] / 2; v <= y - wnd[1] / 2 + wnd[1] - 1; ++v)
                    for (int u = x - wnd[0] / 2; u <= x - wnd[0] / 2 + wnd[0] - 1; ++u) {
                        if (u < 0 || v < 0 || u >= 31 || v >= 23) continue;
                        const double p = gray.get_line_pointer(v)[u];
                        sum += p, square += p * p, n += 1.0;
                    }
                const double m = sum / n;
                ASSERT_NEAR(mean.at(x, y), m, 1e-9) << x << "," << y;
                ASSERT_NEAR(deviation.at(x, y), std::sqrt(square / n - m * m), 1e-6) << x << "," << y;
            }
    }
}

TEST(SauvolaBinarizationOriginal, WindowRule) {
    struct Case { int width, height, window; };
    const Case cases[] = {{204, 500, 51}, {203, 500, 51}, {200, 200, 51}, {196, 300, 49}, {40, 40, 11}, {8, 8, 3}, {2, 9, 3}};
    for (const Case& c : cases)
        EXPECT_EQ(SauvolaBinarizationOriginal::obtain_window_size(c.width, c.height), c.window) << c.width << "x" << c.height;
}

// A dark bar (gray 60) across bright paper (gray 200).
common::BasicImage bar_page() {
    common::BasicImage page = support::flat_image(120, 160, 200);
    for (int y = 50; y < 60; ++y)
        for (int x = 20; x < 140; ++x) page.get_line_pointer(y)[x] = 60;
    return page;
}

TEST(ClassicalMethods, InkIsTheBarOnly) {
    const common::BasicImage gray = bar_page();
    for (const int method : {0, 1}) {
        common::BasicImage output;
        bool done;
        if (method == 0) {
            SauvolaBinarizationOriginal sauvola(&gray, &output);
            done = sauvola.run_binarization();
        } else {
            WolfBinarizationOriginal wolf(&gray, &output);
            done = wolf.run_binarization();
        }
        ASSERT_TRUE(done);
        for (int y = 0; y < 120; y += 3)
            for (int x = 0; x < 160; x += 3) {
                const bool bar = y >= 50 && y < 60 && x >= 20 && x < 140;
                ASSERT_EQ(output.get_pixel(x, y), bar ? 1u : 0u) << method << " at " << x << "," << y;
            }
    }
}

}  // namespace
}  // namespace geometric

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

// Large images are counted two bytes at a time, small ones byte by byte;
// both must give the plain count, odd widths and flat images included.
TEST(OtsuBinarization, HistogramEqualsAPlainCount) {
    const int sizes[][3] = {{1, 1, 0}, {3, 5, 0}, {7, 64, 0}, {513, 515, 0}, {512, 512, 1}, {300, 1001, 0}};  // h, w, flat
    for (const auto& size : sizes) {
        const common::BasicImage gray =
            size[2] ? support::flat_image(size[0], size[1], 201) : support::noise_image(size[0], size[1], 7u);
        unsigned long long expected[256] = {};
        for (int y = 0; y < size[0]; ++y)
            for (int x = 0; x < size[1]; ++x) ++expected[gray.get_line_pointer(y)[x]];
        unsigned long long histogram[256];
        OtsuBinarization::obtain_histogram(gray, histogram);
        for (int i = 0; i < 256; ++i) ASSERT_EQ(histogram[i], expected[i]) << size[0] << "x" << size[1] << " at " << i;
    }
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

// The application packs eight pixels to a byte, sixty-four at a time, and
// takes the complement in the same pass; it must set exactly the bits of a
// plain per-pixel walk, at every width around the byte and word edges.
TEST(OtsuBinarization, PackedApplicationMatchesAPerPixelWalk) {
    unsigned state = 12345u;
    std::vector<int> widths;
    for (int width = 3; width <= 42; ++width) widths.push_back(width);
    for (int width : {63, 64, 65, 66, 67, 130, 131, 137}) widths.push_back(width);
    for (const bool invert : {false, true})
        for (const int width : widths) {
            common::BasicImage gray = support::flat_image(5, width, 0);
            for (int y = 0; y < 5; ++y)
                for (int x = 0; x < width; ++x) {
                    state = state * 1664525u + 1013904223u;
                    gray.get_line_pointer(y)[x] = static_cast<unsigned char>(state >> 24);
                }
            const unsigned char threshold = otsu_threshold(gray);
            const common::BasicImage before(gray);
            common::BasicImage output;
            OtsuBinarization otsu(&gray, &output);
            otsu.set_invert(invert);
            otsu.set_despeckle(false);
            ASSERT_TRUE(otsu.run_binarization());
            ASSERT_TRUE(support::same_bytes(gray, before));
            const unsigned flip = invert ? 1u : 0u;
            for (int y = 0; y < 5; ++y) {
                for (int x = 0; x < width; ++x) {
                    const bool inner = x >= 1 && y >= 1 && x <= width - 2 && y <= 3;
                    const bool bright = inner && gray.get_line_pointer(y)[x] > threshold;
                    ASSERT_EQ(output.get_pixel(x, y), (bright ? 1u : 0u) ^ flip) << width << ": " << x << "," << y;
                }
                const unsigned char padding = invert ? 0xFF : 0;
                for (int b = (width + 7) / 8; b < output.get_row_size(); ++b)
                    ASSERT_EQ(output.get_line_pointer(y)[b], padding);
                if (width % 8 != 0) {
                    const unsigned char mask = static_cast<unsigned char>(0xFF >> (width % 8));
                    ASSERT_EQ(output.get_line_pointer(y)[width / 8] & mask, padding & mask);
                }
            }
        }
}

// Otsu reads a gray source in place; a source that is also the output is
// still copied before the output is reset.
TEST(BinarizationFrame, GraySourceThatIsTheOutputGivesTheSameBits) {
    common::BasicImage gray = two_level_page(9, 70, 40, 200);
    common::BasicImage separate;
    OtsuBinarization(&gray, &separate).run_binarization();
    OtsuBinarization in_place(&gray, &gray);
    ASSERT_TRUE(in_place.run_binarization());
    EXPECT_TRUE(support::same_bytes(gray, separate));
}

// Only a GRAY source is read in place: an RGB one is made gray on a copy,
// and gives the bits of its luminance.
TEST(BinarizationFrame, RgbSourceBinarizesItsLuminanceOnACopy) {
    const common::BasicImage rgb = support::noise_image(9, 70, 3u, common::RGB);
    const common::BasicImage before(rgb);
    common::BasicImage gray;
    gray.create_gray_from_rgb_luminance(rgb);
    common::BasicImage from_rgb, from_gray;
    ASSERT_TRUE(OtsuBinarization(&rgb, &from_rgb).run_binarization());
    ASSERT_TRUE(OtsuBinarization(&gray, &from_gray).run_binarization());
    EXPECT_TRUE(support::same_bytes(from_rgb, from_gray));
    EXPECT_TRUE(support::same_bytes(rgb, before));
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
    // A caller that cannot name the type reads the text too.
    EXPECT_EQ(support::thrown_text<std::exception>([&] { OtsuBinarization otsu(&gray, nullptr); }),
              "the output image is empty");
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
    const Case cases[] = {{SAUVOLA_QUICK, 0}, {OMIN, 0}, {SAUVOLA_ORIGINAL, 0}, {WOLF_ORIGINAL, 0}, {OTSU, 0},
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

// The line segment family through the shared library.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "morvane/morvane.h"

namespace {

struct Page {
    int width = 160;
    int height = 120;
    std::vector<unsigned char> pixels;

    Page() : pixels(static_cast<std::size_t>(160) * 120, 235) {
        for (int y = 30; y < 90; ++y)
            for (int x = 40; x < 120; ++x) pixels[y * width + x] = 30;
    }
    ImageCApi record() { return ImageCApi{width, height, 0, 0, 1, 0, pixels.data()}; }
};

}  // namespace

TEST(LineSegmentFamily, FindsTheFourSidesOfARectangleAsSevenValuesEach) {
    Page page;
    ImageCApi image = page.record();
    void* lsd = lsd_create();
    ASSERT_NE(lsd, nullptr);
    int count = -1;
    double* lines = search_for_line_segments(lsd, &image, &count);
    ASSERT_EQ(count, 4);
    ASSERT_NE(lines, nullptr);
    for (int i = 0; i < count; ++i) {
        const double* s = lines + 7 * i;
        const double length = std::hypot(s[2] - s[0], s[3] - s[1]);
        EXPECT_GT(length, 50.0);
        // Horizontal or vertical, on the rectangle's border (39.5 .. 119.5, 29.5 .. 89.5).
        const bool horizontal = std::fabs(s[1] - s[3]) < 2.0;
        const bool vertical = std::fabs(s[0] - s[2]) < 2.0;
        EXPECT_TRUE(horizontal != vertical);
        if (horizontal) {
            EXPECT_TRUE(std::fabs(s[1] - 29.5) < 2.0 || std::fabs(s[1] - 89.5) < 2.0) << s[1];
        }
        if (vertical) {
            EXPECT_TRUE(std::fabs(s[0] - 39.5) < 2.0 || std::fabs(s[0] - 119.5) < 2.0) << s[0];
        }
        EXPECT_GE(s[4], 0.5 / 0.8);                   // width
        EXPECT_NEAR(s[5], 7.0 / 180.0, 7.0 / 180.0);  // p of the linked rectangle, or finer
        EXPECT_GT(s[6], 0.0);                         // log_nfa
    }
    // The caller's pixels are read, never written.
    EXPECT_TRUE(std::memcmp(page.pixels.data(), Page().pixels.data(), page.pixels.size()) == 0);
    clean_lines(lines);
    destroy_lsd(lsd);
}

TEST(LineSegmentFamily, NoPixelsOrNoEdgesGiveNoSegmentAndNull) {
    void* lsd = lsd_create();
    ImageCApi empty{50, 40, 0, 0, 1, 0, nullptr};
    int count = -1;
    EXPECT_EQ(search_for_line_segments(lsd, &empty, &count), nullptr);  // null data: a black image
    EXPECT_EQ(count, 0);
    std::vector<unsigned char> flat(50 * 40, 128);
    empty.data = flat.data();
    count = -1;
    EXPECT_EQ(search_for_line_segments(lsd, &empty, &count), nullptr);
    EXPECT_EQ(count, 0);
    destroy_lsd(lsd);
    clean_lines(nullptr);  // both release functions accept null
    destroy_lsd(nullptr);
}

TEST(LineSegmentFamily, RefusesBinaryAndColourRecords) {
    void* lsd = lsd_create();
    std::vector<unsigned char> pixels(64 * 64 * 3, 0);
    const int variants[3][2] = {{1, 1}, {3, 0}, {4, 0}};  // channels, is_binary
    for (const auto& variant : variants) {
        ImageCApi image{64, 64, 0, 0, variant[0], variant[1], pixels.data()};
        int count = -1;
        try {
            search_for_line_segments(lsd, &image, &count);
            ADD_FAILURE() << "no exception for " << variant[0] << " channels";
        } catch (const char* message) {
            EXPECT_EQ(std::string(message), "line segment detection needs an 8-bit gray image");
        }
        EXPECT_EQ(count, 0);
    }
    destroy_lsd(lsd);
}

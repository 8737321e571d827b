// The line segment family through the shared library: seven values a segment,
// no segment and NULL without pixels or edges, and refused record kinds.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "morvane/morvane.h"
#include "support/errors.h"

TEST(LineSegmentFamily, FindsTheFourSidesOfARectangleAsSevenValuesEach) {
    std::vector<unsigned char> pixels(160 * 120, 235);
    for (int y = 30; y < 90; ++y) std::memset(&pixels[static_cast<size_t>(y) * 160 + 40], 30, 80);
    const std::vector<unsigned char> before = pixels;
    ImageCApi image{160, 120, 0, 0, 1, 0, pixels.data()};
    void* lsd = lsd_create();
    int count = -1;
    double* lines = search_for_line_segments(lsd, &image, &count);
    ASSERT_EQ(count, 4);
    for (int i = 0; i < count; ++i) {
        const double* s = lines + 7 * i;
        EXPECT_GT(std::hypot(s[2] - s[0], s[3] - s[1]), 50.0);
        // Horizontal or vertical, on the rectangle's border (39.5 .. 119.5, 29.5 .. 89.5).
        const bool horizontal = std::fabs(s[1] - s[3]) < 2.0, vertical = std::fabs(s[0] - s[2]) < 2.0;
        EXPECT_TRUE(horizontal != vertical);
        const double at = horizontal ? s[1] : s[0], near = horizontal ? 29.5 : 39.5, far = horizontal ? 89.5 : 119.5;
        EXPECT_TRUE(std::fabs(at - near) < 2.0 || std::fabs(at - far) < 2.0) << at;
        EXPECT_GE(s[4], 0.5 / 0.8);                   // width
        EXPECT_NEAR(s[5], 7.0 / 180.0, 7.0 / 180.0);  // p of the linked rectangle, or finer
        EXPECT_GT(s[6], 0.0);                         // log_nfa
    }
    EXPECT_EQ(pixels, before);  // read, never written
    clean_lines(lines);

    ImageCApi empty{50, 40, 0, 0, 1, 0, nullptr};  // null data: a black image
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
        EXPECT_EQ(support::thrown_text<const char*>([&] { search_for_line_segments(lsd, &image, &count); }),
                  "line segment detection needs an 8-bit gray image")
            << variant[0] << " channels";
        EXPECT_EQ(count, 0);
    }
    destroy_lsd(lsd);
}

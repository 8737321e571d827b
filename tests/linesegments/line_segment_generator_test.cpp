// The detector on generated scenes: what it finds and where (the thread
// test of the exported families checks that it finds the same every time).
#include "linesegments/line_segment_generator.h"

#include <gtest/gtest.h>

#include <cmath>

#include "linesegments/angle_tools.h"
#include "support/segment_scenes.h"

using geometric::LineSegmentGenerator;
using geometric::LineSegmentRect;

namespace {

std::vector<LineSegmentRect> detect(support::Gray& image, const LineSegmentGenerator& generator) {
    std::vector<LineSegmentRect> segments;
    generator.generate_line_segments(image.view(), segments);
    return segments;
}

LineSegmentGenerator with(double scale, bool link) {
    LineSegmentGenerator g;
    g.scale = scale;
    g.link_segments = link;
    return g;
}

}  // namespace

// Uniform images, and images too small for a gradient, at both scale paths.
TEST(LineSegmentGenerator, UniformOrTinyImagesHaveNoSegments) {
    for (double scale : {1.0, 0.8}) {
        for (unsigned char value : {0, 128, 255}) {
            support::Gray image(64, 48, value);
            EXPECT_TRUE(detect(image, with(scale, true)).empty()) << int(value) << " at " << scale;
        }
        for (int w : {1, 2})
            for (int h : {1, 2}) {
                support::Gray image(w, h, 0);
                image.at(0, 0) = 255;
                EXPECT_TRUE(detect(image, with(scale, true)).empty()) << w << "x" << h << " at " << scale;
            }
    }
}

TEST(LineSegmentGenerator, ABrightBarGivesItsTwoLongEdgesRunningWithTheBrightSideOnTheLeft) {
    support::Gray image(200, 120, 30);
    image.fill(20, 50, 180, 62, 220);  // rows 50..61 bright: edges between rows 49|50 and 61|62
    for (double scale : {1.0, 0.8}) {
        const auto segments = detect(image, with(scale, true));
        const LineSegmentRect* top = support::longest_on_line(segments, 0, 49.5, 200, 49.5, 1.5);
        const LineSegmentRect* bottom = support::longest_on_line(segments, 0, 61.5, 200, 61.5, 1.5);
        ASSERT_NE(top, nullptr) << scale;
        ASSERT_NE(bottom, nullptr) << scale;
        EXPECT_GT(support::length_of(*top), 150.0) << scale;
        EXPECT_GT(support::length_of(*bottom), 150.0) << scale;
        // Bright below the top edge: walking right to left keeps it on the left on screen.
        EXPECT_GT(top->x1, top->x2);
        EXPECT_LT(bottom->x1, bottom->x2);
        // theta is not brought into one turn: the inertia axis may be turned by pi past it.
        EXPECT_LT(geometric::lsd_angle::difference(top->theta, constants::kPi), 0.02);
        EXPECT_LT(geometric::lsd_angle::difference(bottom->theta, 0.0), 0.02);
        for (const auto& s : segments) EXPECT_GT(s.log_nfa, 0.0);
    }
}

namespace {

// A dark horizontal line, 4 pixels thick, broken by a short bright gap.
support::Gray broken_line(int gap) {
    support::Gray image(240, 80, 230);
    image.fill(10, 38, 230, 42, 25);
    image.fill(120, 38, 120 + gap, 42, 230);
    return image;
}

}  // namespace

TEST(LineSegmentGenerator, TheLinkingPassJoinsAnEdgeBrokenByASmallGap) {
    support::Gray image = broken_line(2);
    const auto pieces = detect(image, with(1.0, false));
    const auto joined = detect(image, with(1.0, true));
    auto long_on_top = [](const std::vector<LineSegmentRect>& segments) {
        int count = 0;
        for (const auto& s : segments)
            if (support::line_distance(s.x1, s.y1, 0, 37.5, 1, 37.5) < 1.5 && support::length_of(s) > 50) ++count;
        return count;
    };
    EXPECT_EQ(long_on_top(pieces), 2);
    EXPECT_EQ(long_on_top(joined), 1);
    const LineSegmentRect* whole = support::longest_on_line(joined, 0, 37.5, 1, 37.5, 1.5);
    ASSERT_NE(whole, nullptr);
    EXPECT_GT(support::length_of(*whole), 200.0);
    // At scale 1.0 nothing recomputes the length of a linked group.
    EXPECT_EQ(whole->length, 0.0);
}

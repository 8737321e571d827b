// The linking pass on hand-made segments: end pairing, the angle test and
// the rectangle of a group.
#include "linesegments/segment_linker.h"

#include <gtest/gtest.h>

#include <cmath>

#include "common/constants.h"

using geometric::ImageObject;
using geometric::LineSegmentRect;
using geometric::SegmentLinker;

namespace {

// Width 2, tolerance 0.39 (p 1/8) and score 3.
LineSegmentRect segment(double x1, double y1, double x2, double y2) {
    return LineSegmentRect{x1, y1, x2, y2, 2.0, (x1 + x2) / 2, (y1 + y2) / 2, std::atan2(y2 - y1, x2 - x1),
                           0.39, 0.125, std::hypot(x2 - x1, y2 - y1), 3.0};
}

double degrees(double d) { return d * constants::kPi / 180.0; }

}  // namespace

TEST(SegmentLinker, EndPairingAcceptsOnlySegmentsLyingOutward) {
    const LineSegmentRect m = segment(0, 0, 10, 0);
    const struct {
        LineSegmentRect c;
        double gap;        // < 0: refused
        bool first_end;
    } cases[] = {
        {segment(12, 0, 20, 0), 2.0, false},    // beyond the second end
        {segment(-10, 0, -3, 0), 3.0, true},    // before the first end
        {segment(20, 0, 13, 0), 3.0, false},    // beyond, reversed: the pairing passes, the angle decides
        {segment(8, 0, 20, 0), 2.0, false},     // overlapping the second end, still outward
        {segment(2, 0, 8, 0), -1.0, true},      // inside m
        {segment(-1, 0, 11, 0), -1.0, true},    // covering m
    };
    for (const auto& c : cases) {
        bool first_end = !c.first_end;
        const double gap = SegmentLinker::pair_ends(m, c.c, 5.0, first_end);
        if (c.gap < 0) {
            EXPECT_EQ(gap, 6.0) << c.c.x1;
        } else {
            EXPECT_DOUBLE_EQ(gap, c.gap) << c.c.x1;
        }
        EXPECT_EQ(first_end, c.first_end) << c.c.x1;
    }
}

TEST(SegmentLinker, JoinsCollinearPiecesAcrossAGapAndRefusesTheRest) {
    const ImageObject<double> angles(200, 100, 0.0);
    const SegmentLinker linker(7.0, 5.0, false, 0.0);
    const struct {
        const char* what;
        LineSegmentRect c;
        size_t groups;
    } cases[] = {
        {"collinear, gap 4", segment(64, 50, 100, 50), 1},
        {"collinear, gap 5", segment(65, 50, 100, 50), 1},
        {"collinear, gap 6", segment(66, 50, 100, 50), 2},
        {"turned by 6 degrees", segment(63, 50, 63 + 40 * std::cos(degrees(6)), 50 + 40 * std::sin(degrees(6))), 1},
        {"turned by 10 degrees", segment(63, 50, 63 + 40 * std::cos(degrees(10)), 50 + 40 * std::sin(degrees(10))), 2},
        {"parallel, offset by 6", segment(62, 56, 100, 56), 2},
        {"collinear but reversed", segment(100, 50, 63, 50), 2},
    };
    for (const auto& c : cases) {
        std::vector<LineSegmentRect> segments = {segment(10, 50, 60, 50), c.c};
        linker.link(segments, angles);
        EXPECT_EQ(segments.size(), c.groups) << c.what;
    }
}

TEST(SegmentLinker, AGroupSpansItsMembersAndHasNoLengthYet) {
    const ImageObject<double> angles(200, 100, 0.0);
    std::vector<LineSegmentRect> segments = {segment(70, 50, 120, 50), segment(10, 50, 66, 50), segment(124, 50, 150, 50)};
    SegmentLinker(7.0, 5.0, false, 0.0).link(segments, angles);
    ASSERT_EQ(segments.size(), 1u);
    const LineSegmentRect& g = segments[0];
    EXPECT_NEAR(g.x1, 10.0, 1e-9);
    EXPECT_NEAR(g.x2, 150.0, 1e-9);
    EXPECT_NEAR(g.y1, 50.0, 1e-9);
    EXPECT_EQ(g.width, 1.0);
    EXPECT_EQ(g.length, 0.0);
    EXPECT_DOUBLE_EQ(g.prec, degrees(7.0));
    EXPECT_DOUBLE_EQ(g.p, g.prec / constants::kPi);
    EXPECT_EQ(g.log_nfa, 3.0);  // the first member's, without validation
    // Length-weighted centre: (56 * 38 + 50 * 95 + 26 * 137) / 132.
    EXPECT_NEAR(g.x, (56.0 * 38 + 50.0 * 95 + 26.0 * 137) / 132.0, 1e-9);
}

TEST(SegmentLinker, ValidationScoresGroupsOnTheAngleImageAndDropsTheUnsupported) {
    ImageObject<double> angles(200, 100, 1.5);
    for (int x = 0; x < 200; ++x) angles.at(x, 50) = 0.0;
    std::vector<LineSegmentRect> segments = {segment(10, 50, 60, 50), segment(63, 50, 100, 50),
                                             segment(10, 80, 100, 80)};
    SegmentLinker(7.0, 5.0, true, 0.0).link(segments, angles);
    ASSERT_EQ(segments.size(), 1u);  // the segment on row 80 has no aligned pixel beneath
    EXPECT_GT(segments[0].log_nfa, 0.0);
    EXPECT_NE(segments[0].log_nfa, 3.0);
}

TEST(SegmentLinker, ALoneSegmentKeepsItsDirectionLengthAndScoreWithoutValidation) {
    const ImageObject<double> angles(100, 100, 0.0);
    std::vector<LineSegmentRect> segments = {segment(20, 30, 60, 70)};
    const LineSegmentRect before = segments[0];
    SegmentLinker(7.0, 5.0, false, 0.0).link(segments, angles);
    ASSERT_EQ(segments.size(), 1u);
    EXPECT_EQ(segments[0].theta, before.theta);
    EXPECT_EQ(segments[0].length, before.length);
    EXPECT_EQ(segments[0].log_nfa, before.log_nfa);
    EXPECT_NEAR(segments[0].x1, 20.0, 1e-9);
    EXPECT_NEAR(segments[0].y2, 70.0, 1e-9);
    EXPECT_DOUBLE_EQ(segments[0].prec, degrees(7.0));
}

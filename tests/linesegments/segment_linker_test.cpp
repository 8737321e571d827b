// The linking pass on hand-made segments, with the validation of its groups.
#include "linesegments/segment_linker.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using geometric::ImageObject;
using geometric::LineSegmentRect;
using geometric::SegmentLinker;

namespace {

// Width 2, tolerance 0.39 (p 1/8) and score 3.
LineSegmentRect segment(double x1, double y1, double x2, double y2) {
    return LineSegmentRect{x1, y1, x2, y2, 2.0, (x1 + x2) / 2, (y1 + y2) / 2, std::atan2(y2 - y1, x2 - x1),
                           0.39, 0.125, std::hypot(x2 - x1, y2 - y1), 3.0};
}

}  // namespace

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

// Side judging of page-edge lines: which held line a new one is paired with,
// and the sides a pair takes.
#include <gtest/gtest.h>

#include <vector>

#include "edgelines/bounding_line_judger.h"

using namespace geometric;

namespace {

BoundingLine at(BoundingLinePosition position, float x1, float y1, float x2 = 0, float y2 = 0) {
    BoundingLine line;
    line.position = position;
    line.x1 = x1;
    line.y1 = y1;
    line.x2 = x2;
    line.y2 = y2;
    return line;
}

}  // namespace

// A new line is paired with the last held line of its direction when fewer
// than three are held, with the third otherwise; it is appended either way.
TEST(BoundingLineJudger, FormulatedLinesArePairedByIndexAndAlwaysAppended) {
    BoundingLineJudger judger(400, 300);
    std::vector<BoundingLine> lines;
    BoundingLine top = at(INVALID_BOUNDARY, 20, 20, 380, 25), bottom = at(INVALID_BOUNDARY, 20, 280, 380, 270);
    BoundingLine left = at(INVALID_BOUNDARY, 30, 20, 25, 280);
    EXPECT_TRUE(judger.formulateBoundingLine(lines, top, true));
    EXPECT_TRUE(judger.formulateBoundingLine(lines, bottom, true));
    EXPECT_TRUE(judger.formulateBoundingLine(lines, left, false));  // the last held is horizontal: judged alone
    EXPECT_EQ(left.position, LEFT_BOUNDARY);                        // the caller's record carries the side too
    BoundingLine second_left = at(INVALID_BOUNDARY, 100, 20, 100, 280);
    EXPECT_FALSE(judger.formulateBoundingLine(lines, second_left, false));  // paired with the third
    ASSERT_EQ(lines.size(), 4u);
    const BoundingLinePosition expected[] = {TOP_BOUNDARY, BOTTOM_BOUNDARY, LEFT_BOUNDARY, RIGHT_BOUNDARY};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(lines[i].position, expected[i]) << i;

    // Two held: the second; the first keeps its side.
    std::vector<BoundingLine> two{at(LEFT_BOUNDARY, 30, 0), at(RIGHT_BOUNDARY, 370, 0)};
    BoundingLine line = at(INVALID_BOUNDARY, 10, 0, 10, 280);
    EXPECT_TRUE(judger.formulateBoundingLine(two, line, false));
    EXPECT_EQ(two[0].position, LEFT_BOUNDARY);
    EXPECT_EQ(two[1].position, RIGHT_BOUNDARY);
    EXPECT_EQ(two[2].position, LEFT_BOUNDARY);
    // Four held: the third, whichever way it runs; the held top is relabelled.
    std::vector<BoundingLine> four{at(LEFT_BOUNDARY, 30, 0), at(RIGHT_BOUNDARY, 370, 0), at(TOP_BOUNDARY, 200, 20),
                                   at(BOTTOM_BOUNDARY, 0, 280)};
    BoundingLine right = at(INVALID_BOUNDARY, 300, 0, 300, 280);
    EXPECT_TRUE(judger.formulateBoundingLine(four, right, false));
    EXPECT_EQ(four[2].position, LEFT_BOUNDARY);
    EXPECT_EQ(four[4].position, RIGHT_BOUNDARY);
}

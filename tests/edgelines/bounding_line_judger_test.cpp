// Side judging of page-edge lines: the single rule against the centre, the
// pairing of a line with a held one, and the order in which lines are paired.
#include <gtest/gtest.h>

#include <vector>

#include "edgelines/bounding_line_judger.h"

using namespace geometric;

namespace {

BoundingLine segment(float x1, float y1, float x2, float y2) {
    BoundingLine line;
    line.x1 = x1;
    line.y1 = y1;
    line.x2 = x2;
    line.y2 = y2;
    return line;
}

BoundingLine at_side(BoundingLinePosition position, float x1, float y1) {
    BoundingLine line = segment(x1, y1, x1, y1);
    line.position = position;
    return line;
}

}  // namespace

TEST(BoundingLineJudger, SingleLineSideByItsFirstEnd) {
    BoundingLineJudger judger(401, 301);  // centre (200, 150) by integer division
    struct Case {
        float x1, y1, x2, y2;
        BoundingLinePosition vertical, horizontal;
    };
    const Case cases[] = {
        {199.99f, 149.99f, 199.99f, 149.99f, LEFT_BOUNDARY, TOP_BOUNDARY},
        {200.0f, 150.0f, 200.0f, 150.0f, RIGHT_BOUNDARY, BOTTOM_BOUNDARY},  // exactly at the centre
        {200.01f, 150.01f, 200.01f, 150.01f, RIGHT_BOUNDARY, BOTTOM_BOUNDARY},
        {10.0f, 10.0f, 390.0f, 290.0f, LEFT_BOUNDARY, TOP_BOUNDARY},        // the second end has no say
        {390.0f, 290.0f, 10.0f, 10.0f, RIGHT_BOUNDARY, BOTTOM_BOUNDARY},
    };
    for (const Case& c : cases) {
        BoundingLine line = segment(c.x1, c.y1, c.x2, c.y2);
        judger.SetSingleVerticalLinePosition(line);
        EXPECT_EQ(line.position, c.vertical) << c.x1;
        judger.setSingleHorizontalLinePostion(line);
        EXPECT_EQ(line.position, c.horizontal) << c.y1;
    }
}

TEST(BoundingLineJudger, TwoLinesTakeOppositeSides) {
    BoundingLineJudger judger(400, 300);  // centre (200, 150)
    struct Case {
        const char* what;
        float held_x1, line_x1;
        BoundingLinePosition held_side_in;
        bool consistent;
        BoundingLinePosition held_side, line_side;
    };
    const Case cases[] = {
        {"both left of the centre", 100.0f, 50.0f, LEFT_BOUNDARY, false, RIGHT_BOUNDARY, LEFT_BOUNDARY},
        {"a left and a right line", 100.0f, 300.0f, LEFT_BOUNDARY, true, LEFT_BOUNDARY, RIGHT_BOUNDARY},
        {"right held, left line", 300.0f, 100.0f, RIGHT_BOUNDARY, true, RIGHT_BOUNDARY, LEFT_BOUNDARY},
        {"equal x1: the new line is left", 250.0f, 250.0f, RIGHT_BOUNDARY, false, RIGHT_BOUNDARY, LEFT_BOUNDARY},
        {"new line on the border", 350.0f, 0.5f, RIGHT_BOUNDARY, true, RIGHT_BOUNDARY, LEFT_BOUNDARY},
        {"new line on the border beside a left line", 100.0f, 0.5f, LEFT_BOUNDARY, false, RIGHT_BOUNDARY,
         LEFT_BOUNDARY},
    };
    for (const Case& c : cases) {
        BoundingLine held = at_side(c.held_side_in, c.held_x1, 0.0f);
        BoundingLine line = at_side(INVALID_BOUNDARY, c.line_x1, 0.0f);
        EXPECT_EQ(judger.setTwoVerticalLinePosition(held, line), c.consistent) << c.what;
        EXPECT_EQ(held.position, c.held_side) << c.what;
        EXPECT_EQ(line.position, c.line_side) << c.what;

        // The same with y for horizontal lines: left becomes top, right bottom.
        auto turn = [](BoundingLinePosition p) { return p == LEFT_BOUNDARY ? TOP_BOUNDARY : BOTTOM_BOUNDARY; };
        BoundingLine held_h = at_side(turn(c.held_side_in), 0.0f, c.held_x1 * 0.75f);
        BoundingLine line_h = at_side(INVALID_BOUNDARY, 0.0f, c.line_x1 * 0.75f);
        EXPECT_EQ(judger.setTwoHorizontalLinePositon(held_h, line_h), c.consistent) << c.what;
        EXPECT_EQ(held_h.position, turn(c.held_side)) << c.what;
        EXPECT_EQ(line_h.position, turn(c.line_side)) << c.what;
    }
}

TEST(BoundingLineJudger, FormulatesTheFourLinesOfASearchInOrder) {
    BoundingLineJudger judger(400, 300);
    std::vector<BoundingLine> lines;
    BoundingLine top = segment(20, 20, 380, 25);
    BoundingLine bottom = segment(20, 280, 380, 270);
    BoundingLine left = segment(30, 20, 25, 280);
    BoundingLine right = segment(370, 20, 375, 280);
    EXPECT_TRUE(judger.formulateBoundingLine(lines, top, true));
    EXPECT_TRUE(judger.formulateBoundingLine(lines, bottom, true));
    EXPECT_TRUE(judger.formulateBoundingLine(lines, left, false));  // partner of a horizontal line: none
    EXPECT_TRUE(judger.formulateBoundingLine(lines, right, false));
    ASSERT_EQ(lines.size(), 4u);
    const BoundingLinePosition expected[] = {TOP_BOUNDARY, BOTTOM_BOUNDARY, LEFT_BOUNDARY, RIGHT_BOUNDARY};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(lines[i].position, expected[i]) << i;
    EXPECT_EQ(right.position, RIGHT_BOUNDARY);  // the caller's record carries the side too
}

TEST(BoundingLineJudger, InconsistentLineIsStillAppended) {
    BoundingLineJudger judger(400, 300);
    std::vector<BoundingLine> lines{at_side(TOP_BOUNDARY, 20, 20), at_side(BOTTOM_BOUNDARY, 20, 280),
                                    at_side(LEFT_BOUNDARY, 30, 20)};
    BoundingLine second_left = segment(100, 20, 100, 280);
    EXPECT_FALSE(judger.formulateBoundingLine(lines, second_left, false));
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[3].position, RIGHT_BOUNDARY);  // larger x1 than its partner
    EXPECT_EQ(lines[2].position, LEFT_BOUNDARY);
}

TEST(BoundingLineJudger, PartnerIsFoundByIndex) {
    BoundingLineJudger judger(400, 300);
    {
        // One vertical line held: a horizontal line is judged alone.
        std::vector<BoundingLine> lines{at_side(LEFT_BOUNDARY, 30, 200)};
        BoundingLine line = segment(20, 200, 380, 200);
        EXPECT_TRUE(judger.formulateBoundingLine(lines, line, true));
        EXPECT_EQ(lines[1].position, BOTTOM_BOUNDARY);
        EXPECT_EQ(lines[0].position, LEFT_BOUNDARY);
    }
    {
        // Two held: only the second is considered; the first keeps its side.
        // Against the first (x1 30) the new line would be a second left line.
        std::vector<BoundingLine> lines{at_side(LEFT_BOUNDARY, 30, 0), at_side(RIGHT_BOUNDARY, 370, 0)};
        BoundingLine line = segment(10, 0, 10, 280);
        EXPECT_TRUE(judger.formulateBoundingLine(lines, line, false));
        EXPECT_EQ(lines[0].position, LEFT_BOUNDARY);
        EXPECT_EQ(lines[1].position, RIGHT_BOUNDARY);
        EXPECT_EQ(lines[2].position, LEFT_BOUNDARY);
    }
    {
        // Three or more held: the third, whichever way it runs.
        std::vector<BoundingLine> lines{at_side(LEFT_BOUNDARY, 30, 0), at_side(RIGHT_BOUNDARY, 370, 0),
                                        at_side(TOP_BOUNDARY, 200, 20), at_side(BOTTOM_BOUNDARY, 0, 280)};
        BoundingLine line = segment(300, 0, 300, 280);
        EXPECT_TRUE(judger.formulateBoundingLine(lines, line, false));  // RIGHT differs from TOP
        EXPECT_EQ(lines[2].position, LEFT_BOUNDARY);                    // the held top line is relabelled
        EXPECT_EQ(lines[4].position, RIGHT_BOUNDARY);
        EXPECT_EQ(lines[3].position, BOTTOM_BOUNDARY);
    }
}

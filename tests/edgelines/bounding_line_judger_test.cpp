// Side judging of page-edge lines: the single rule against the centre, the
// pairing with a held line, and which held line a new one is paired with.
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

TEST(BoundingLineJudger, SingleLinesBySideOfTheCentreAndPairsOnOppositeSides) {
    BoundingLineJudger odd(401, 301);  // centre (200, 150) by integer division
    // x1 of the first end, and whether it lies right of (below) the centre: the centre itself does.
    const float firsts[][2] = {{199.99f, 0}, {200.0f, 1}, {200.01f, 1}};
    for (const auto& f : firsts) {
        BoundingLine line = at(INVALID_BOUNDARY, f[0], f[0] * 0.75f, 10, 10);  // the second end has no say
        odd.SetSingleVerticalLinePosition(line);
        EXPECT_EQ(line.position, f[1] ? RIGHT_BOUNDARY : LEFT_BOUNDARY) << f[0];
        odd.setSingleHorizontalLinePostion(line);
        EXPECT_EQ(line.position, f[1] ? BOTTOM_BOUNDARY : TOP_BOUNDARY) << f[0];
    }
    BoundingLineJudger judger(400, 300);  // centre (200, 150)
    struct Case {
        float held_x1, line_x1;
        BoundingLinePosition held_side_in;
        bool consistent;
        BoundingLinePosition held_side, line_side;
    };
    const Case cases[] = {
        {100.0f, 50.0f, LEFT_BOUNDARY, false, RIGHT_BOUNDARY, LEFT_BOUNDARY},   // both left of the centre
        {100.0f, 300.0f, LEFT_BOUNDARY, true, LEFT_BOUNDARY, RIGHT_BOUNDARY},
        {300.0f, 100.0f, RIGHT_BOUNDARY, true, RIGHT_BOUNDARY, LEFT_BOUNDARY},
        {250.0f, 250.0f, RIGHT_BOUNDARY, false, RIGHT_BOUNDARY, LEFT_BOUNDARY},  // equal x1: the new line is left
    };
    auto turn = [](BoundingLinePosition p) { return p == LEFT_BOUNDARY ? TOP_BOUNDARY : BOTTOM_BOUNDARY; };
    for (const Case& c : cases) {
        BoundingLine held = at(c.held_side_in, c.held_x1, 0), line = at(INVALID_BOUNDARY, c.line_x1, 0);
        EXPECT_EQ(judger.setTwoVerticalLinePosition(held, line), c.consistent) << c.held_x1 << " " << c.line_x1;
        EXPECT_EQ(held.position, c.held_side);
        EXPECT_EQ(line.position, c.line_side);
        // The same with y for horizontal lines: left becomes top, right bottom.
        BoundingLine held_h = at(turn(c.held_side_in), 0, c.held_x1 * 0.75f);
        BoundingLine line_h = at(INVALID_BOUNDARY, 0, c.line_x1 * 0.75f);
        EXPECT_EQ(judger.setTwoHorizontalLinePositon(held_h, line_h), c.consistent) << c.held_x1 << " " << c.line_x1;
        EXPECT_EQ(held_h.position, turn(c.held_side));
        EXPECT_EQ(line_h.position, turn(c.line_side));
    }
}

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

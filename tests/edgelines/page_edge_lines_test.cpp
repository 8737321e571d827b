// Page-edge lines: the corners of a frame, the pairing of a new line with a
// held one, and undirected angle comparisons (the wrap at 0/180, vertical
// lines, strict and inclusive limits).
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "edgelines/bounding_line_judger.h"
#include "edgelines/bounding_lines_operator.h"
#include "edgelines/line_angle_comparator.h"

using namespace geometric;
using Corners = std::vector<Geocoordinate<float>>;

namespace {

BoundingLine make(BoundingLinePosition position, GeolineBase line, float x1 = 0, float y1 = 0, float x2 = 0,
                  float y2 = 0, int length = 0) {
    BoundingLine b;
    b.position = position;
    b.line = line;
    b.x1 = x1;
    b.y1 = y1;
    b.x2 = x2;
    b.y2 = y2;
    b.segment_length = length;
    return b;
}

BoundingLineProperty indexed(std::vector<BoundingLine>& lines) {
    BoundingLineProperty property;
    BoundingLinesOperator::initializeBoundingLineProperty(lines, property);
    return property;
}

// The frame x = 10, x = 390, y = 20, y = 280, with segments whose ends meet.
std::vector<BoundingLine> closed_frame() {
    return {make(LEFT_BOUNDARY, GeolineBase(1, 0, -10), 10, 280, 10, 20, 260),
            make(TOP_BOUNDARY, GeolineBase(0, -1, 20), 390, 20, 10, 20, 380),
            make(RIGHT_BOUNDARY, GeolineBase(1, 0, -390), 390, 20, 390, 280, 260),
            make(BOTTOM_BOUNDARY, GeolineBase(0, -1, 280), 10, 280, 390, 280, 380)};
}

void expect_corners(const Corners& actual, const Corners& expected, float tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(actual[i].x, expected[i].x, tolerance) << i;
        EXPECT_NEAR(actual[i].y, expected[i].y, tolerance) << i;
    }
}

// The general form whose angle is `degrees` (not for 90).
GeolineBase line_at(double degrees) { return GeolineBase(std::tan(degrees * M_PI / 180.0), -1.0, 10.0); }

const GeolineBase kVertical(1.0, 0.0, -25.0);

}  // namespace

TEST(BoundingLinesOperator, CornersWhereTheSidesCrossOrAtTheOrigin) {
    std::vector<BoundingLine> lines = closed_frame();
    EXPECT_EQ(BoundingLinesOperator::obtainSegmentLenSum(lines), 1280);
    BoundingLineProperty p = indexed(lines);
    Corners corners{{5, 5}};
    BoundingLinesOperator::obtainBoundingLineControlPoints(lines, p, corners);
    expect_corners(corners, {{10, 20}, {390, 20}, {390, 280}, {10, 280}}, 0.0f);
    // A slanted top, y = 0.1 x + 20, and a left side with unscaled coefficients, 2 x - 20 = 0.
    lines[1].line = GeolineBase(0.1, -1, 20);
    lines[0].line = GeolineBase(2, 0, -20);
    BoundingLinesOperator::obtainBoundingLineControlPoints(lines, p, corners);
    expect_corners(corners, {{10, 21}, {390, 59}, {390, 280}, {10, 280}}, 1e-4f);

    lines[1].line = GeolineBase(1, 0, -200);  // a top parallel to left and right
    BoundingLinesOperator::obtainBoundingLineControlPoints(lines, p, corners);
    expect_corners(corners, {{0, 0}, {0, 0}, {390, 280}, {10, 280}}, 0.0f);
    lines = closed_frame();
    p.bottom_index = -1;  // a side without a line
    BoundingLinesOperator::obtainBoundingLineControlPoints(lines, p, corners);
    expect_corners(corners, {{10, 20}, {390, 20}, {0, 0}, {0, 0}}, 0.0f);
    p = indexed(lines);
    p.right_index = 4;  // past the end of the list
    BoundingLinesOperator::obtainBoundingLineControlPoints(lines, p, corners);
    expect_corners(corners, {{10, 20}, {0, 0}, {0, 0}, {10, 280}}, 0.0f);
}

// A new line is paired with the last held line of its direction when fewer
// than three are held, with the third otherwise; it is appended either way.
TEST(BoundingLineJudger, FormulatedLinesArePairedByIndexAndAlwaysAppended) {
    BoundingLineJudger judger(400, 300);
    std::vector<BoundingLine> lines;
    BoundingLine top = make(INVALID_BOUNDARY, GeolineBase(), 20, 20, 380, 25), bottom = make(INVALID_BOUNDARY, GeolineBase(), 20, 280, 380, 270);
    BoundingLine left = make(INVALID_BOUNDARY, GeolineBase(), 30, 20, 25, 280);
    EXPECT_TRUE(judger.formulateBoundingLine(lines, top, true));
    EXPECT_TRUE(judger.formulateBoundingLine(lines, bottom, true));
    EXPECT_TRUE(judger.formulateBoundingLine(lines, left, false));  // the last held is horizontal: judged alone
    EXPECT_EQ(left.position, LEFT_BOUNDARY);                        // the caller's record carries the side too
    BoundingLine second_left = make(INVALID_BOUNDARY, GeolineBase(), 100, 20, 100, 280);
    EXPECT_FALSE(judger.formulateBoundingLine(lines, second_left, false));  // paired with the third
    ASSERT_EQ(lines.size(), 4u);
    const BoundingLinePosition expected[] = {TOP_BOUNDARY, BOTTOM_BOUNDARY, LEFT_BOUNDARY, RIGHT_BOUNDARY};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(lines[i].position, expected[i]) << i;

    // Two held: the second; the first keeps its side.
    std::vector<BoundingLine> two{make(LEFT_BOUNDARY, GeolineBase(), 30, 0), make(RIGHT_BOUNDARY, GeolineBase(), 370, 0)};
    BoundingLine line = make(INVALID_BOUNDARY, GeolineBase(), 10, 0, 10, 280);
    EXPECT_TRUE(judger.formulateBoundingLine(two, line, false));
    EXPECT_EQ(two[0].position, LEFT_BOUNDARY);
    EXPECT_EQ(two[1].position, RIGHT_BOUNDARY);
    EXPECT_EQ(two[2].position, LEFT_BOUNDARY);
    // Four held: the third, whichever way it runs; the held top is relabelled.
    std::vector<BoundingLine> four{make(LEFT_BOUNDARY, GeolineBase(), 30, 0), make(RIGHT_BOUNDARY, GeolineBase(), 370, 0), make(TOP_BOUNDARY, GeolineBase(), 200, 20),
                                   make(BOTTOM_BOUNDARY, GeolineBase(), 0, 280)};
    BoundingLine right = make(INVALID_BOUNDARY, GeolineBase(), 300, 0, 300, 280);
    EXPECT_TRUE(judger.formulateBoundingLine(four, right, false));
    EXPECT_EQ(four[2].position, LEFT_BOUNDARY);
    EXPECT_EQ(four[4].position, RIGHT_BOUNDARY);
}

TEST(LineAngleComparatorTest, AnglesInTheHalfOpenRangeAndDisparitiesFoldedAtOneEighty) {
    EXPECT_DOUBLE_EQ(LineAngleComparator::calculate_line_angle(GeolineBase(3.0, 2.2e-16, 1.0)), 90.0);
    EXPECT_NEAR(LineAngleComparator::calculate_line_angle(line_at(179.5)), 179.5, 1e-9);
    EXPECT_DOUBLE_EQ(LineAngleComparator::calculate_line_angle(GeolineBase(0.0, -1.0, 5.0)), 0.0);
    const double cases[][3] = {{5.0, 175.0, 10.0}, {175.0, 5.0, 10.0}, {0.0, 179.5, 0.5}, {90.0, 0.0, 90.0},
                               {89.0, 91.0, 2.0},  {44.0, 136.0, 88.0}, {30.0, 30.0, 0.0}};
    for (const auto& c : cases)
        EXPECT_NEAR(LineAngleComparator::calculate_disparity(c[0], c[1]), c[2], 1e-12) << c[0] << " vs " << c[1];
}

// Large is strict and small its negation; vertical lines (b = 0) have no
// disparity between them and exactly 90 against a horizontal one.
TEST(LineAngleComparatorTest, LargeDisparityIsStrictAndSmallIsItsNegation) {
    EXPECT_FALSE(LineAngleComparator::is_large_disparity(5.0, 175.0, 10.0));
    EXPECT_TRUE(LineAngleComparator::is_small_disparity(5.0, 175.0, 10.0));
    EXPECT_TRUE(LineAngleComparator::is_large_disparity(5.0, 175.0, 9.999));
    EXPECT_FALSE(LineAngleComparator::is_small_disparity(5.0, 175.0, 9.999));
    EXPECT_TRUE(LineAngleComparator::is_large_disparity(kVertical, GeolineBase(0.0, -1.0, 3.0), 89.999));
    EXPECT_FALSE(LineAngleComparator::is_large_disparity(kVertical, GeolineBase(0.0, -1.0, 3.0), 90.0));
    const GeolineBase other(-2.0, 0.0, 7.0);
    EXPECT_DOUBLE_EQ(LineAngleComparator::calculate_disparity(kVertical, other), 0.0);
    EXPECT_TRUE(LineAngleComparator::is_large_disparity(kVertical, other, -0.5));
    EXPECT_NEAR(LineAngleComparator::calculate_disparity(kVertical, line_at(80.0)), 10.0, 1e-9);
    EXPECT_NEAR(LineAngleComparator::calculate_disparity(line_at(100.0), kVertical), 10.0, 1e-9);
}

// Near the axes: strict on a line's angle, wrapping at 180; inclusive on a
// range, which wraps through 0 when its first end is the larger.
TEST(LineAngleComparatorTest, NearTheAxes) {
    struct Case { GeolineBase line; double tolerance; geometric::Direction direction; bool near; };
    const Case cases[] = {
        {line_at(179.5), 1.0, HORIZONTAL_DIRECTION, true},  {line_at(0.5), 1.0, HORIZONTAL_DIRECTION, true},
        {line_at(178.5), 1.0, HORIZONTAL_DIRECTION, false}, {line_at(1.5), 1.0, HORIZONTAL_DIRECTION, false},
        {kVertical, 89.999, HORIZONTAL_DIRECTION, false},   {kVertical, 90.001, HORIZONTAL_DIRECTION, true},
        {kVertical, 0.0, VERTICAL_DIRECTION, false},        {kVertical, 1e-9, VERTICAL_DIRECTION, true},
        {line_at(90.5), 1.0, VERTICAL_DIRECTION, true},     {line_at(88.5), 1.0, VERTICAL_DIRECTION, false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(LineAngleComparator::is_near_coordinate_axes(c.line, c.tolerance, c.direction), c.near)
            << LineAngleComparator::calculate_line_angle(c.line) << " tolerance " << c.tolerance;
    struct Range { double first, second, angle; geometric::Direction direction; bool inside; };
    const Range ranges[] = {
        {170.0, 10.0, 175.0, HORIZONTAL_DIRECTION, true}, {170.0, 10.0, 5.0, HORIZONTAL_DIRECTION, true},
        {170.0, 10.0, 170.0, HORIZONTAL_DIRECTION, true}, {170.0, 10.0, 10.0, HORIZONTAL_DIRECTION, true},
        {170.0, 10.0, 90.0, HORIZONTAL_DIRECTION, false}, {30.0, 10.0, 31.0, HORIZONTAL_DIRECTION, false},
        {10.0, 30.0, 20.0, HORIZONTAL_DIRECTION, false},  {85.0, 95.0, 95.0, VERTICAL_DIRECTION, true},
        {85.0, 95.0, 95.5, VERTICAL_DIRECTION, false},
    };
    for (const Range& c : ranges)
        EXPECT_EQ(LineAngleComparator::is_near_coordinate_axes(c.first, c.second, c.angle, c.direction), c.inside)
            << c.first << ", " << c.second << ": " << c.angle;
}

// The difference of two vertical disparities reverses for opposite leans; it
// is rounded to float before its magnitude is taken.
TEST(LineAngleComparatorTest, VerticalDisparityDifference) {
    const double cases[][4] = {{80, 100, 0, 0}, {80, 95, 5, 0}, {80, 85, 5, 1}, {100, 120, 20, 1}, {90, 70, 20, 1}};
    for (const auto& c : cases) {  // first, second, difference, same side
        bool same_side = c[3] == 0;
        EXPECT_DOUBLE_EQ(LineAngleComparator::calculate_vertical_disparity_difference(c[0], c[1], same_side), c[2]);
        EXPECT_EQ(same_side, c[3] == 1) << c[0] << ", " << c[1];
    }
    bool same_side = false;
    EXPECT_EQ(LineAngleComparator::calculate_vertical_disparity_difference(90.1, 90.3, same_side),
              static_cast<double>(std::fabs(static_cast<float>((90.1 - 90.0) - (90.3 - 90.0)))));
}

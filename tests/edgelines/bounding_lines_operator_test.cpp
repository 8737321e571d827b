// The side index of a list of page-edge lines and the corners of the frame.
#include <gtest/gtest.h>

#include <vector>

#include "edgelines/bounding_lines_operator.h"

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

}  // namespace

TEST(BoundingLinesOperator, IndexesTheSidesAndOrdersTheEnds) {
    std::vector<BoundingLine> lines{
        make(TOP_BOUNDARY, GeolineBase(), 300, 1, 10, 2),    // swapped by x
        make(LEFT_BOUNDARY, GeolineBase(), 3, 250, 4, 5),    // swapped by y
        make(INVALID_BOUNDARY, GeolineBase(), 9, 9, 1, 1),   // skipped, untouched
        make(BOTTOM_BOUNDARY, GeolineBase(), 10, 7, 10, 3),  // equal x: stays
        make(RIGHT_BOUNDARY, GeolineBase(), 8, 5, 6, 250),   // already in order
        make(TOP_BOUNDARY, GeolineBase(), 1, 1, 2, 2),       // a second top line takes the index
    };
    const BoundingLineProperty p = indexed(lines);
    EXPECT_EQ((std::vector<int>{p.left_index, p.top_index, p.right_index, p.bottom_index}),
              (std::vector<int>{1, 5, 4, 3}));
    EXPECT_EQ(p.horizontal_lines, (std::vector<int>{0, 3, 5}));
    EXPECT_EQ(p.vertical_lines, (std::vector<int>{1, 4}));
    const float expected[6][4] = {{10, 2, 300, 1}, {4, 5, 3, 250}, {9, 9, 1, 1}, {10, 7, 10, 3}, {8, 5, 6, 250},
                                  {1, 1, 2, 2}};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ((std::vector<float>{lines[i].x1, lines[i].y1, lines[i].x2, lines[i].y2}),
                  std::vector<float>(expected[i], expected[i] + 4))
            << i;
    EXPECT_EQ(p.horizontal_angle_disparity, 45.0);  // not the index's business

    std::vector<BoundingLine> none;
    BoundingLineProperty untouched;
    untouched.left_index = 7;
    BoundingLinesOperator::initializeBoundingLineProperty(none, untouched);
    EXPECT_EQ(untouched.left_index, 7);
    EXPECT_EQ(BoundingLinesOperator::obtainSegmentLenSum(none), 0);
}

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

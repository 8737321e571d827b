// The boundary record: reading order of its ends, clearing, and the simple
// four-line holder of the corner chain.
#include "cornersearch/bounding_line.h"

#include <gtest/gtest.h>

#include "cornersearch/bounding_lines.h"

namespace {

using geometric::Geocoordinate;
using geometric_test::BoundingLine;
using geometric_test::BoundingLines;

TEST(BoundingLineTest, ConstructorPutsTheFirstTwoPointsInReadingOrder) {
    struct Case {
        geometric::BoundingLinePosition position;
        Geocoordinate<int> first, second;
        bool swapped;
    };
    const Case cases[] = {
        {geometric::TOP_BOUNDARY, {10, 5}, {2, 9}, true},      {geometric::BOTTOM_BOUNDARY, {2, 9}, {10, 5}, false},
        {geometric::LEFT_BOUNDARY, {5, 10}, {9, 2}, true},     {geometric::RIGHT_BOUNDARY, {9, 2}, {5, 10}, false},
        {geometric::RIGHT_BOUNDARY, {9, 20}, {5, 20}, false},  {geometric::TOP_BOUNDARY, {7, 1}, {7, 0}, false},
        {geometric::INVALID_BOUNDARY, {10, 10}, {2, 2}, false},
    };
    for (const Case& c : cases) {
        geometric::GeolineBasePoints<int> source(geometric::GeolineBase(0.5, -1.0, 3.0));
        source.points = {c.first, c.second, {40, 40}};
        const BoundingLine line(c.position, source, geometric::WEAK_BOUNDING_LINE);
        const Geocoordinate<int>& expected_first = c.swapped ? c.second : c.first;
        EXPECT_EQ(line.points[0].x, expected_first.x) << "position " << c.position;
        EXPECT_EQ(line.points[0].y, expected_first.y) << "position " << c.position;
        EXPECT_EQ(line.points[2].x, 40);
        EXPECT_EQ(line.type, geometric::WEAK_BOUNDING_LINE);
        EXPECT_EQ(line.line.a, 0.5);
    }
}

geometric::BoundingLine record(geometric::BoundingLinePosition position, double a, double b, double c, float x1,
                               float y1, float x2, float y2) {
    geometric::BoundingLine line;
    line.position = position;
    line.line = geometric::GeolineBase(a, b, c);
    line.x1 = x1;
    line.y1 = y1;
    line.x2 = x2;
    line.y2 = y2;
    return line;
}

BoundingLines rectangle_lines() {
    BoundingLines lines;
    lines.lines = {record(geometric::BOTTOM_BOUNDARY, 0.0, -1.0, 80.0, 10, 80, 110, 80),
                   record(geometric::LEFT_BOUNDARY, 1.0, 0.0, -10.0, 10, 20, 10, 80),
                   record(geometric::TOP_BOUNDARY, 0.0, -1.0, 20.0, 10, 20, 110, 20),
                   record(geometric::RIGHT_BOUNDARY, 1.0, 0.0, -110.0, 110, 20, 110, 80)};
    return lines;
}

TEST(BoundingLinesTest, InitializeIndexesFourLinesByPositionLastWinning) {
    BoundingLines lines = rectangle_lines();
    ASSERT_EQ(lines.initialize(), 0);
    EXPECT_EQ(lines.bottom_index, 0);
    EXPECT_EQ(lines.left_index, 1);
    EXPECT_EQ(lines.top_index, 2);
    EXPECT_EQ(lines.right_index, 3);

    lines.lines[3].position = geometric::TOP_BOUNDARY;
    ASSERT_EQ(lines.initialize(), 0);
    EXPECT_EQ(lines.top_index, 3);
    EXPECT_EQ(lines.right_index, -1);

    lines.lines.pop_back();
    EXPECT_EQ(lines.initialize(), -1);
    EXPECT_EQ(lines.top_index, -1);
    EXPECT_EQ(lines.left_index, -1);
}

TEST(BoundingLinesTest, QuadrangleRunsLeftTopRightBottomAndAreaIgnoresOrientation) {
    BoundingLines lines = rectangle_lines();
    ASSERT_EQ(lines.initialize(), 0);
    std::vector<Geocoordinate<float>> corners;
    lines.obtain_quadrangle_vetex(corners);
    ASSERT_EQ(corners.size(), 4u);
    const float expected[4][2] = {{10, 20}, {110, 20}, {110, 80}, {10, 80}};
    for (int k = 0; k < 4; ++k) {
        EXPECT_FLOAT_EQ(corners[k].x, expected[k][0]) << k;
        EXPECT_FLOAT_EQ(corners[k].y, expected[k][1]) << k;
    }
    float area = 0.0f;
    BoundingLines::obtain_quadrangle_area(corners, area);
    EXPECT_FLOAT_EQ(area, 6000.0f);
    std::swap(corners[1], corners[3]);  // the same rectangle walked the other way
    BoundingLines::obtain_quadrangle_area(corners, area);
    EXPECT_FLOAT_EQ(area, 6000.0f);
    std::swap(corners[2], corners[3]);  // bow-tie: the two triangles cancel
    BoundingLines::obtain_quadrangle_area(corners, area);
    EXPECT_FLOAT_EQ(area, 0.0f);
    EXPECT_TRUE(lines.is_bounding_box_corner_feasible({{10, 20}, {110, 20}, {110, 80}, {10, 80}}));
}

TEST(BoundingLinesTest, SegmentEndsMayLieAtMostFiftyPixelsInsideTheCorner) {
    // Every line is y = x; its ends are (10, 10) and (100, 100).
    const geometric::BoundingLine line = record(geometric::TOP_BOUNDARY, 1.0, -1.0, 0.0, 10, 10, 100, 100);
    struct Case {
        bool (*test)(const Geocoordinate<float>&, const geometric::BoundingLine&);
        Geocoordinate<float> corner;
        bool feasible;
        const char* name;
    };
    const Case cases[] = {
        {&BoundingLines::is_top_corner_feasible, {40, 50}, true, "top at 50"},
        {&BoundingLines::is_top_corner_feasible, {40, 51}, false, "top past 50"},
        {&BoundingLines::is_top_corner_feasible, {200, 10}, true, "top not applying"},
        {&BoundingLines::is_left_corner_feasible, {50, 40}, true, "left at 50"},
        {&BoundingLines::is_left_corner_feasible, {51, 40}, false, "left past 50"},
        {&BoundingLines::is_left_corner_feasible, {10, 200}, true, "left not applying"},
        {&BoundingLines::is_bottom_corner_feasible, {70, 60}, true, "bottom at 50"},
        {&BoundingLines::is_bottom_corner_feasible, {70, 59}, false, "bottom past 50"},
        {&BoundingLines::is_bottom_corner_feasible, {0, 100}, true, "bottom not applying"},
        {&BoundingLines::is_right_corner_feasible, {60, 70}, true, "right at 50"},
        {&BoundingLines::is_right_corner_feasible, {59, 70}, false, "right past 50"},
        {&BoundingLines::is_right_corner_feasible, {100, 0}, true, "right not applying"},
    };
    for (const Case& c : cases) EXPECT_EQ(c.test(c.corner, line), c.feasible) << c.name;
}

}  // namespace

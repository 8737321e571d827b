// Undirected angle comparisons: the wrap at 0/180, vertical lines, strict and
// inclusive limits.
#include "edgelines/line_angle_comparator.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

using geometric::GeolineBase;
using geometric::HORIZONTAL_DIRECTION;
using geometric::LineAngleComparator;
using geometric::VERTICAL_DIRECTION;

// The general form whose angle is `degrees` (not for 90).
GeolineBase line_at(double degrees) { return GeolineBase(std::tan(degrees * M_PI / 180.0), -1.0, 10.0); }

const GeolineBase kVertical(1.0, 0.0, -25.0);

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

}  // namespace

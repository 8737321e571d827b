// The box and the implicit line: inclusive bounds, distances, angles, crossings.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

#include "textgeometry/geobox.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

using geometric::Geobox;
using geometric::Geocoordinate;
using geometric::GeolineBase;

// Boxes are written {right, bottom, left, top} throughout.
static_assert(offsetof(Geobox<int>, right) == 0 && offsetof(Geobox<int>, top) == 3 * sizeof(int), "field order");

TEST(GeolineBase, AngleTable) {
    struct Case {
        GeolineBase line;
        double angle;
    };
    const Case cases[] = {
        {GeolineBase(0.0, -1.0, 3.0), 0.0},
        {GeolineBase(1.0, -1.0, 0.0), 45.0},
        {GeolineBase(-1.0, -1.0, 0.0), 135.0},  // negative atan wraps by 180
        {GeolineBase(1.0, 0.0, -5.0), 90.0},
        {GeolineBase(1.0, 2.2e-16, 0.0), 90.0},   // |b| at the double epsilon counts as vertical
        {GeolineBase(-2.0, 2.0, 1.0), 45.0},      // not in normal form
    };
    for (const Case& c : cases) EXPECT_NEAR(c.line.line_angle(), c.angle, 1e-12) << c.line.a << " " << c.line.b;
    EXPECT_NE(GeolineBase(1.0, 2.3e-16, 0.0).line_angle(), 90.0);
}

TEST(IntersectLines, CrossingPointAndParallelCases) {
    Geocoordinate<double> p(-1.0, -1.0);
    ASSERT_TRUE(geometric::intersect_lines(GeolineBase(1.0, -1.0, 0.0), GeolineBase(1.0, 0.0, -3.0), p));
    EXPECT_DOUBLE_EQ(p.x, 3.0);
    EXPECT_DOUBLE_EQ(p.y, 3.0);
    ASSERT_TRUE(geometric::intersect_lines(GeolineBase(0.0, -1.0, 4.0), GeolineBase(1.0, 0.0, -2.0), p));
    EXPECT_DOUBLE_EQ(p.x, 2.0);
    EXPECT_DOUBLE_EQ(p.y, 4.0);

    // Equal slopes, two verticals, or one line twice: false, point untouched.
    const GeolineBase pairs[][2] = {
        {GeolineBase(0.3, -1.0, 0.0), GeolineBase(0.3, -1.0, 50.0)},
        {GeolineBase(1.0, 0.0, -1.0), GeolineBase(1.0, 0.0, -9.0)},
        {GeolineBase(2.0, -1.0, 1.0), GeolineBase(2.0, -1.0, 1.0)},
    };
    for (const auto& pair : pairs) {
        Geocoordinate<double> q(-1.0, -2.0);
        EXPECT_FALSE(geometric::intersect_lines(pair[0], pair[1], q));
        EXPECT_EQ(q.x, -1.0);
        EXPECT_EQ(q.y, -2.0);
    }
}

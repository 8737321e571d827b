// The rectangle of a region: along a row, either way round, and along a diagonal.
#include "linesegments/region_grow.h"

#include <gtest/gtest.h>

#include "linesegments/angle_tools.h"
#include "linesegments/region_rectangle.h"

using geometric::BlobCoordinatesWrapper;
using geometric::ImageObject;
using geometric::RegionGrow;

TEST(RegionRectangle, ARowOfPixelsGivesARectangleAlongIt) {
    const int n = 10;
    ImageObject<double> norms(20, 5, 1.0);
    BlobCoordinatesWrapper region(20, 5);
    for (int x = 3; x < 3 + n; ++x) region.append(x, 2);
    geometric::LineSegmentRect rect;
    ASSERT_TRUE(geometric::RegionRectangle::build(region, norms, 0.0, 0.39, 0.125, rect));
    EXPECT_DOUBLE_EQ(rect.x, 7.5);
    EXPECT_DOUBLE_EQ(rect.y, 2.0);
    EXPECT_NEAR(rect.x1, 3.0, 1e-12);
    EXPECT_NEAR(rect.x2, 12.0, 1e-12);
    EXPECT_EQ(rect.width, 1.0);  // no spread across: at least one pixel
    // The region's own angle decides which way it runs.
    ASSERT_TRUE(geometric::RegionRectangle::build(region, norms, 3.1, 0.39, 0.125, rect));
    EXPECT_NEAR(rect.x1, 12.0, 1e-12);
    EXPECT_NEAR(rect.x2, 3.0, 1e-12);
    // One pixel has no inertia: no rectangle.
    region.size = 1;
    EXPECT_FALSE(geometric::RegionRectangle::build(region, norms, 0.0, 0.39, 0.125, rect));
    // A diagonal runs at 45 degrees, through its centre.
    BlobCoordinatesWrapper diagonal(20, 20);
    for (int k = 4; k < 12; ++k) diagonal.append(k, k);
    ASSERT_TRUE(geometric::RegionRectangle::build(diagonal, ImageObject<double>(20, 20, 1.0), 0.8, 0.39, 0.125, rect));
    EXPECT_NEAR(rect.theta, constants::kPi / 4, 1e-9);
    EXPECT_DOUBLE_EQ(rect.x, 7.5);
    EXPECT_NEAR(rect.x2 - rect.x1, 7.0, 1e-9);
}

// Region growing: seeds, borders, the angle wrap and the moving mean angle.
#include "linesegments/region_grow.h"

#include <gtest/gtest.h>

#include "linesegments/angle_tools.h"
#include "linesegments/region_rectangle.h"

using geometric::BlobCoordinatesWrapper;
using geometric::ImageObject;
using geometric::RegionGrow;

TEST(RegionGrow, AUsedSeedGivesMinusOneAnEmptyRegionAndLeavesTheAngle) {
    const ImageObject<double> angles(5, 5, 0.3);
    const ImageObject<unsigned char> used(5, 5, 0);
    used.at(2, 2) = 1;
    BlobCoordinatesWrapper region(5, 5);
    region.size = 7;
    double region_angle = 42.0;
    EXPECT_EQ(RegionGrow(angles, used, 0.4).perform_region_grow(2, 2, region, region_angle), -1);
    EXPECT_EQ(region.size, 0);
    EXPECT_EQ(region_angle, 42.0);
}

TEST(RegionGrow, ASeedInTheCornerTakesTheWholeAlignedImageAndMarksIt) {
    const ImageObject<double> angles(4, 3, 0.3);
    const ImageObject<unsigned char> used(4, 3, 0);
    BlobCoordinatesWrapper region(4, 3);
    double region_angle = 0.0;
    EXPECT_EQ(RegionGrow(angles, used, 0.1).perform_region_grow(0, 0, region, region_angle), 0);
    ASSERT_EQ(region.size, 12);
    EXPECT_EQ(region.coordinates[0].x, 0);
    EXPECT_EQ(region.coordinates[0].y, 0);
    // Neighbours of the seed in the order x outer, y inner.
    EXPECT_EQ(region.coordinates[1].x, 0);
    EXPECT_EQ(region.coordinates[1].y, 1);
    EXPECT_EQ(region.coordinates[2].x, 1);
    EXPECT_EQ(region.coordinates[2].y, 0);
    EXPECT_DOUBLE_EQ(region_angle, 0.3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) EXPECT_EQ(used.at(x, y), 1);
}

TEST(RegionGrow, AnglesAcrossPlusMinusPiAgreeAndUndefinedOnesNever) {
    ImageObject<double> angles(3, 1, 3.1);
    angles.at(1, 0) = -3.1;
    angles.at(2, 0) = geometric::lsd_angle::kNotDefined;
    const ImageObject<unsigned char> used(3, 1, 0);
    const RegionGrow grow(angles, used, 0.1);
    // |-3.1 - 3.1| = 6.2 is past 3 pi / 2: taken as |6.2 - 6.28318530718| = 0.083.
    EXPECT_TRUE(grow.is_angle_aligned(1, 0, 3.1, 0.1));
    EXPECT_FALSE(grow.is_angle_aligned(1, 0, 3.1, 0.08));
    EXPECT_FALSE(grow.is_angle_aligned(2, 0, geometric::lsd_angle::kNotDefined, 10.0));
    // Exactly at the tolerance is aligned.
    EXPECT_TRUE(grow.is_angle_aligned(0, 0, 3.1 + 0.25, 0.25));

    BlobCoordinatesWrapper region(3, 1);
    double region_angle = 0.0;
    grow.perform_region_grow(0, 0, region, region_angle);
    EXPECT_EQ(region.size, 2);
    EXPECT_EQ(used.at(2, 0), 0);
}

TEST(RegionGrow, TheMeanAngleMovesWithEveryPixelTaken) {
    // A row drifting by 0.06 a pixel: the third pixel (0.12) is beyond 0.1
    // from the seed but within it of the mean of the first two (0.03).
    ImageObject<double> angles(8, 1, 0.0);
    for (int x = 0; x < 8; ++x) angles.at(x, 0) = 0.06 * x;
    const ImageObject<unsigned char> used(8, 1, 0);
    BlobCoordinatesWrapper region(8, 1);
    double region_angle = 0.0;
    RegionGrow(angles, used, 0.1).perform_region_grow(0, 0, region, region_angle);
    EXPECT_EQ(region.size, 3);
    EXPECT_NEAR(region_angle, 0.06, 1e-12);
}

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

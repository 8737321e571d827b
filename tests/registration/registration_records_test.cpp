// Layouts and defaults of the records that registrations exchange.
#include <gtest/gtest.h>

#include <cstddef>

#include "edgelines/bounding_line.h"
#include "registration/registration_output_type.h"
#include "vanishing/vanishing_point_output.h"

using namespace geometric;

static_assert(sizeof(RegistrationOutputType) == 4, "an int");
static_assert(REGISTRATION_VIRTUAL_CORNERS_REJECTED == -7 && REGISTRATION_NO_GEOMETRY == -1 &&
                  REGISTRATION_NO_RESULT == 0 && REGISTRATION_STRAIGHT_PAGE == 2 &&
                  REGISTRATION_ONE_PARALLEL_DIRECTION == 6,
              "fixed values");
static_assert(sizeof(BoundingLinePosition) == 4 && sizeof(BoundingLineType) == 4, "32-bit enumerations");
static_assert(INVALID_BOUNDARY == -1 && LEFT_BOUNDARY == 0 && TOP_BOUNDARY == 1 && RIGHT_BOUNDARY == 2 &&
                  BOTTOM_BOUNDARY == 3,
              "fixed values");
static_assert(REGULAR_BOUNDING_LINE == 0 && WEAK_BOUNDING_LINE == 3, "fixed values");

static_assert(offsetof(VanishingPointOutput, status) == 0, "");
static_assert(offsetof(VanishingPointOutput, has_vanishing_point) == 4, "");
static_assert(offsetof(VanishingPointOutput, is_parallel) == 5, "");
static_assert(offsetof(VanishingPointOutput, angle) == 8, "");
static_assert(offsetof(VanishingPointHorVerInfo, horizontal_point) < offsetof(VanishingPointHorVerInfo, horizontal) &&
                  offsetof(VanishingPointHorVerInfo, horizontal) < offsetof(VanishingPointHorVerInfo, vertical_point) &&
                  offsetof(VanishingPointHorVerInfo, vertical_point) < offsetof(VanishingPointHorVerInfo, vertical),
              "horizontal point, horizontal, vertical point, vertical");

static_assert(offsetof(BoundingLine, position) == 0, "");
static_assert(offsetof(BoundingLine, line) == 8, "three doubles after the position");
static_assert(offsetof(BoundingLine, support_count) == 32, "");
static_assert(offsetof(BoundingLine, segment_length) == 36, "");
static_assert(offsetof(BoundingLine, x1) == 40 && offsetof(BoundingLine, y1) == 44 &&
                  offsetof(BoundingLine, x2) == 48 && offsetof(BoundingLine, y2) == 52,
              "");
static_assert(offsetof(BoundingLine, has_dominant_segment) == 56, "");

// Defaults that other code reads as meaning: an unmeasured vertical direction
// is at 90, an unfilled line has a = b = 0, no side is indexed.
TEST(RegistrationRecords, DefaultsCarryMeaning) {
    EXPECT_EQ(VanishingPointHorVerInfo().vertical.angle, 90.0f);
    BoundingLine line;
    EXPECT_FALSE(line.is_filled());
    line.line = GeolineBase(1.0, 0.0, -4.0);
    EXPECT_TRUE(line.is_filled());
    const BoundingLineProperty property;
    EXPECT_EQ(property.left_index + property.right_index + property.top_index + property.bottom_index, -4);
}

TEST(RegistrationRecords, BoundaryFamilyIsTheLowestBit) {
    for (BoundingLinePosition p : {LEFT_BOUNDARY, TOP_BOUNDARY, RIGHT_BOUNDARY, BOTTOM_BOUNDARY})
        EXPECT_EQ(is_horizontal_boundary(p), p == TOP_BOUNDARY || p == BOTTOM_BOUNDARY) << p;
}

// Anchors where a page-edge line crosses the middle of the image.
#include <gtest/gtest.h>

#include "edgelines/bounding_line_anchor_corner_calculator.h"

using namespace geometric;

TEST(BoundingLineAnchorCornerCalculator, AnchorAtTheMiddleKeptInsideTheImage) {
    const BoundingLineAnchorCornerCalculator calculator(641, 301);  // middle (320, 150)
    struct Case {
        const char* what;
        BoundingLinePosition position;
        GeolineBase line;
        float x, y;
    };
    const Case cases[] = {
        {"left, x = 0.5 y + 10", LEFT_BOUNDARY, GeolineBase(1, -0.5, -10), 85, 150},
        {"right, exactly at the far bound", RIGHT_BOUNDARY, GeolineBase(1, 0, -640), 640, 150},
        {"right, one past the far bound", RIGHT_BOUNDARY, GeolineBase(1, 0, -641), 640, 150},
        {"left, exactly at 0", LEFT_BOUNDARY, GeolineBase(1, 0, 0), 0, 150},
        {"left, one step below 0", LEFT_BOUNDARY, GeolineBase(1, 0, 1), 0, 150},
        {"top, y = 0.25 x + 5", TOP_BOUNDARY, GeolineBase(0.25, -1, 5), 320, 85},
        {"bottom, exactly at the far bound", BOTTOM_BOUNDARY, GeolineBase(0, -1, 300), 320, 300},
        {"bottom, past the far bound", BOTTOM_BOUNDARY, GeolineBase(0, -1, 300.5), 320, 300},
        {"top, above the image", TOP_BOUNDARY, GeolineBase(0, -1, -3), 320, 0},
    };
    for (const Case& c : cases) {
        Geocoordinate<float> anchor(-9, -9);
        EXPECT_EQ(calculator.obtainAnchorPoint(c.line, c.position, anchor), 1) << c.what;
        EXPECT_EQ(anchor.x, c.x) << c.what;
        EXPECT_EQ(anchor.y, c.y) << c.what;
    }
    Geocoordinate<float> anchor(-9, -9);  // no side: refused, left alone
    EXPECT_EQ(calculator.obtainAnchorPoint(GeolineBase(1, 0, -5), INVALID_BOUNDARY, anchor), 0);
    EXPECT_EQ(anchor.x, -9.0f);
    EXPECT_EQ(anchor.y, -9.0f);
}

// The corner calculators: zones, corners from the vanishing points of a
// projected rectangle, parallel and mixed directions, anchors, and degenerate
// directions that must end in a plain false.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "vanishing/corner_calculator_mixed_from_anchor_points.h"
#include "vanishing/corner_calculator_parallel.h"
#include "vanishing/corner_calculator_parallel_from_anchor_points.h"
#include "vanishing/corner_calculator_parallel_mixed_projective.h"
#include "vanishing/corner_calculator_projective.h"
#include "textgeometry/geoline_base.h"

using namespace geometric;
using Point = Geocoordinate<float>;
using Corners = std::vector<Point>;
using VPoint = Geocoordinate<double>;

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 480;
constexpr float kW = kWidth - 1;
constexpr float kH = kHeight - 1;
const Corners kSentinel{{-7, -7}};

void expect_corners(const Corners& actual, const Corners& expected, float tolerance, const char* what) {
    ASSERT_EQ(actual.size(), expected.size()) << what;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(actual[i].x, expected[i].x, tolerance) << what << " corner " << i;
        EXPECT_NEAR(actual[i].y, expected[i].y, tolerance) << what << " corner " << i;
    }
}

// Twice the signed area of p, q, r divided by |q - p|: the distance of r from
// the line p-q, signed by its side.
double side_distance(const Point& p, const Point& q, const VPoint& r) {
    const double ux = q.x - p.x, uy = q.y - p.y;
    return (ux * (r.y - p.y) - uy * (r.x - p.x)) / std::sqrt(ux * ux + uy * uy);
}

// The quadrilateral contains the whole image, and each side touches it.
void expect_encloses_image(const Corners& q, const char* what) {
    ASSERT_EQ(q.size(), 4u) << what;
    const VPoint image[4] = {{0, 0}, {kW, 0}, {kW, kH}, {0, kH}};
    for (int side = 0; side < 4; ++side) {
        double nearest = 1e30;
        for (const VPoint& corner : image) {
            const double d = side_distance(q[side], q[(side + 1) % 4], corner);
            EXPECT_GT(d, -1e-2) << what << ": image corner outside side " << side;
            nearest = std::min(nearest, std::fabs(d));
        }
        EXPECT_LT(nearest, 1e-2) << what << ": side " << side << " does not touch the image";
    }
}

// The line through the side p-q passes through `point`, measured relative to
// the point's distance so that far points are judged fairly.
void expect_side_through(const Point& p, const Point& q, const VPoint& point, const char* what) {
    const double reach = std::hypot(point.x - p.x, point.y - p.y);
    EXPECT_LT(std::fabs(side_distance(p, q, point)) / reach, 1e-5) << what;
}

}  // namespace

TEST(CornerCalculators, ZoneOfAPoint) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        double x, y;
        int zone;
    };
    const Case cases[] = {
        {-1, -1, 0},        {0, -0.001, 1},    {639.9, -5, 1},  {640, -5, 2},      {-0.5, 0, 3},
        {0, 0, 4},          {639.999, 479.999, 4},               {640, 240, 5},     {-1, 480, 6},
        {320, 480, 7},      {640, 480, 8},     {1e9, -1e9, 2},  {nan, nan, 4},     {nan, -1, 1},
    };
    const CornerCalculatorProjective calculator(kWidth, kHeight);
    for (const Case& c : cases) {
        int zone = -1;
        calculator.estimate_vp_position(VPoint(c.x, c.y), zone);
        EXPECT_EQ(zone, c.zone) << c.x << ", " << c.y;
    }
}

// Every refusal is a plain false that leaves the corners as they were.
TEST(CornerCalculators, RefusalsAndDegenerateDirectionsLeaveTheCornersAlone) {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const CornerCalculatorProjective calculator(kWidth, kHeight);
    const VPoint centre(320, 240), above(320, -500), left(-500, 240);
    Corners corners = kSentinel;
    EXPECT_FALSE(calculator.estimate_virtual_corners(left, above, false, false, corners));
    EXPECT_FALSE(calculator.estimate_virtual_corners(above, above, true, false, corners));  // zone 1, horizontal
    EXPECT_FALSE(calculator.estimate_virtual_corners(left, left, false, true, corners));    // zone 3, vertical
    EXPECT_FALSE(calculator.estimate_virtual_corners(centre, centre, true, true, corners));
    EXPECT_FALSE(calculator.estimate_virtual_corners(left, centre, true, true, corners));
    EXPECT_FALSE(calculator.estimate_virtual_corners(VPoint(nan, nan), VPoint(nan, 0), true, true, corners));
    // The left side of a point just above the top-left corner is vertical, the right runs along the top edge.
    EXPECT_FALSE(calculator.estimate_vertical_virtual_corners(VPoint(0, -1e-20), corners));
    // Parallel sides from one point on a diagonal through two image corners.
    EXPECT_FALSE(calculator.estimate_two_direction_virtual_corners(VPoint(-kW, -kH), VPoint(-kW, -kH), corners));
    CornerCalculatorParallelMixedProjective mixed(kWidth, kHeight);
    EXPECT_FALSE(mixed.estimate_mixed_virtual_corners(VERTICAL_DIRECTION, centre, corners, 0.0f));
    EXPECT_FALSE(mixed.estimate_mixed_virtual_corners(HORIZONTAL_DIRECTION, above, corners, 90.0f));
    expect_corners(corners, kSentinel, 0.0f, "untouched");
    // Infinitely far points make whatever the arithmetic gives; no fault.
    calculator.estimate_virtual_corners(VPoint(inf, 100), VPoint(100, -inf), true, true, corners);

    // Coincident sides from anchors: the list is emptied first.
    CornerCalculatorMixedFromAnchorPoints anchors(kWidth, kHeight);
    EXPECT_FALSE(anchors.identifyTwoDirectionInputCorners(VPoint(-100, -100), VPoint(-100, -100), Point(0, 0),
                                                          Point(600, 20), Point(0, 0), Point(20, 400), corners));
    EXPECT_TRUE(corners.empty());
}

TEST(CornerCalculators, AnchorCornersAreTheExtremes) {
    // 100 x 100, both directions at 45 and 135 degrees: a diamond around the image.
    CornerCalculatorParallel calculator(100, 100);
    Corners corners;
    calculator.estimate_parallel_virtual_corners(true, true, 135.0f, 45.0f, corners);
    Point top, bottom, left, right;
    EXPECT_TRUE(calculator.estimate_anchor_corners(true, true, 135.0f, 45.0f, top, bottom, left, right));
    expect_corners({top, bottom, left, right}, {{49.5f, -49.5f}, {49.5f, 148.5f}, {-49.5f, 49.5f}, {148.5f, 49.5f}},
                   1e-3f, "diamond");
    // The image's own box: ties take corners 0, 2, 0 and 1.
    EXPECT_TRUE(calculator.estimate_anchor_corners(false, false, 0.0f, 90.0f, top, bottom, left, right));
    expect_corners({top, bottom, left, right}, {{0, 0}, {99, 99}, {0, 0}, {99, 0}}, 0.0f, "ties");
}

TEST(CornerCalculators, MixedDirections) {
    CornerCalculatorParallelMixedProjective mixed(100, 100);
    const CornerCalculatorProjective projective(100, 100);
    Corners corners, expected;
    // An axis-parallel other direction gives the one-direction corners.
    ASSERT_TRUE(mixed.estimate_mixed_virtual_corners(VERTICAL_DIRECTION, VPoint(49.5, -99), corners, 0.0f));
    ASSERT_TRUE(projective.estimate_vertical_virtual_corners(VPoint(49.5, -99), expected));
    expect_corners(corners, expected, 0.0f, "vertical point, horizontal 0");
    ASSERT_TRUE(mixed.estimate_mixed_virtual_corners(HORIZONTAL_DIRECTION, VPoint(-99, 49.5), corners, 90.0f));
    ASSERT_TRUE(projective.estimate_horizontal_virtual_corners(VPoint(-99, 49.5), expected));
    expect_corners(corners, expected, 0.0f, "horizontal point, vertical 90");

    // Slanted other direction on both sides of 90: the image stays inside.
    CornerCalculatorParallelMixedProjective wide(kWidth, kHeight);
    const float slants[][2] = {{3.0f, 87.0f}, {177.0f, 93.0f}};
    for (const auto& slant : slants) {
        ASSERT_TRUE(wide.estimate_mixed_virtual_corners(VERTICAL_DIRECTION, VPoint(300, 3000), corners, slant[0]));
        expect_encloses_image(corners, "vertical point, slanted horizontal");
        expect_side_through(corners[0], corners[3], VPoint(300, 3000), "left through the point");
        ASSERT_TRUE(
            wide.estimate_mixed_virtual_corners(HORIZONTAL_DIRECTION, VPoint(-3000, -100), corners, slant[1]));
        expect_encloses_image(corners, "horizontal point, slanted vertical");
        expect_side_through(corners[3], corners[2], VPoint(-3000, -100), "bottom through the point");
    }
}


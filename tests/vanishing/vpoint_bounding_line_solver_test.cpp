// Pairs of opposite page edges: parallel pairs are called parallel, converging
// pairs give their crossing, implausible pairs nothing; with the angle and
// length limits at their boundaries.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "vanishing/vanishing_point_codes.h"
#include "vanishing/vpoint_bounding_line_solver.h"

using namespace geometric;

namespace {

constexpr int kWidth = 400, kHeight = 300;

// The line through (x, y) at `degrees`, whose line_angle() is that angle.
BoundingLine edge(BoundingLinePosition position, double x, double y, double degrees, int length = 200) {
    const double t = degrees * M_PI / 180.0;
    BoundingLine line;
    line.position = position;
    line.line = GeolineBase(std::sin(t), -std::cos(t), -(std::sin(t) * x - std::cos(t) * y));
    line.segment_length = length;
    return line;
}

struct Result {
    int code;
    Geocoordinate<double> point;
    BoundingLineProperty property;
    float disparity;
};

Result solve(const BoundingLine& first, const BoundingLine& second, Direction direction) {
    std::vector<BoundingLine> lines = {first, second};
    Result r{0, {-1.0, -1.0}, BoundingLineProperty(), 0.0f};
    (direction ? r.property.vertical_lines : r.property.horizontal_lines) = {0, 1};
    VpointBoundingLineSolver solver(kWidth, kHeight);
    r.code = solver.perform_boundingline_vpoint_searching(lines, r.property, direction, r.point);
    r.disparity = direction ? solver.vertical_disparity : solver.horizontal_disparity;
    return r;
}

// Top at y = 50 and bottom at y = 50 + gap, both through x = 0. Below 0.65
// of the height apart (195) the limit is 12 degrees, beyond it 17; a pair
// more than 90 degrees apart is measured from 180 against 15.
TEST(VpointBoundingLineSolver, HorizontalPairsByAngleAndSeparation) {
    struct Case {
        double top, bottom, gap;
        int code;
        float disparity;
    };
    const Case cases[] = {
        {0.0, 0.0, 150, VPOINT_TREAT_AS_PARALLEL, 0.0f},   {3.0, 3.1875, 150, VPOINT_TREAT_AS_PARALLEL, 0.1875f},
        {3.0, 3.25, 150, VPOINT_FOUND, 0.25f},
        {0.0, 11.5, 150, VPOINT_FOUND, 11.5f},             {0.0, 12.0, 150, VPOINT_NO_RESULT, 12.0f},
        {0.0, 12.0, 196, VPOINT_FOUND, 12.0f},             {0.0, 17.0, 196, VPOINT_NO_RESULT, 17.0f},
        {171.0, 5.0, 150, VPOINT_FOUND, 14.0f},            {170.0, 5.0, 150, VPOINT_NO_RESULT, 15.0f},
        {90.0, 90.0, 150, VPOINT_TREAT_AS_PARALLEL, 0.0f}};
    for (const Case& c : cases) {
        const BoundingLine top = edge(TOP_BOUNDARY, 0, 50, c.top), bottom = edge(BOTTOM_BOUNDARY, 0, 50 + c.gap, c.bottom);
        const Result r = solve(top, bottom, HORIZONTAL_DIRECTION);
        EXPECT_EQ(r.code, c.code) << c.top << " " << c.bottom << " " << c.gap;
        EXPECT_NEAR(r.disparity, c.disparity, 1e-4) << c.top << " " << c.bottom;
        if (c.top != 90.0) {
            EXPECT_NEAR(r.property.horizontal_intercept_disparity, c.gap, 1e-3);
        }
        if (c.code == VPOINT_FOUND) {
            EXPECT_NEAR(top.line.point_distance(r.point), 0.0, 1e-6);
            EXPECT_NEAR(bottom.line.point_distance(r.point), 0.0, 1e-6);
        } else {
            EXPECT_EQ(r.point.x, -1.0);  // untouched
        }
    }
}

// Left and right edges through (100, 150) and (300, 150). Lengths of 200 make
// a large blob (limits 25 and 25), of 50 a small one (7 leaning alike, 14
// leaning apart). A pair leaning apart that passes is always crossed.
TEST(VpointBoundingLineSolver, VerticalPairsByLeanAndLength) {
    struct Case {
        double left, right;
        int length, code;
        float disparity;
    };
    const Case cases[] = {
        {90.0, 90.0, 200, VPOINT_TREAT_AS_PARALLEL, 0.0f}, {91.0, 91.375, 50, VPOINT_TREAT_AS_PARALLEL, 0.375f},
        {91.0, 91.5, 50, VPOINT_FOUND, 0.5f},              {92.0, 98.5, 50, VPOINT_FOUND, 6.5f},
        {92.0, 99.0, 50, VPOINT_NO_RESULT, 7.0f},          {92.0, 116.5, 200, VPOINT_FOUND, 24.5f},
        {92.0, 117.0, 200, VPOINT_NO_RESULT, 25.0f},       {80.0, 100.0, 50, VPOINT_FOUND, 0.8f},
        {76.0, 91.0, 50, VPOINT_FOUND, 0.8f},              {75.0, 91.0, 50, VPOINT_NO_RESULT, 14.0f},
        {65.0, 91.0, 200, VPOINT_FOUND, 0.8f},             {64.0, 91.0, 200, VPOINT_NO_RESULT, 25.0f}};
    for (const Case& c : cases) {
        const BoundingLine left = edge(LEFT_BOUNDARY, 100, 150, c.left, c.length);
        const BoundingLine right = edge(RIGHT_BOUNDARY, 300, 150, c.right, c.length);
        const Result r = solve(left, right, VERTICAL_DIRECTION);
        EXPECT_EQ(r.code, c.code) << c.left << " " << c.right << " " << c.length;
        EXPECT_NEAR(r.disparity, c.disparity, 1e-4) << c.left << " " << c.right;
        if (c.code == VPOINT_NO_RESULT) {
            EXPECT_EQ(r.property.vertical_intercept_disparity, 0.0);  // only a plausible pair is measured
        } else {
            EXPECT_NEAR(r.property.vertical_intercept_disparity,
                        std::fabs(left.line.x_at(0.0) - right.line.x_at(0.0)), 1e-3);
        }
        if (c.code == VPOINT_FOUND) {
            EXPECT_NEAR(left.line.point_distance(r.point), 0.0, 1e-6);
            EXPECT_NEAR(right.line.point_distance(r.point), 0.0, 1e-6);
        }
    }
}

// With t = 0.3 of the height (90): both above t, or together above 0.7 of
// the height (210) with each above t / 2 (45). All limits strict.
TEST(VpointBoundingLineSolver, LargeBlobByLengths) {
    const struct {
        int first, second;
        bool large;
    } cases[] = {{91, 91, true}, {90, 200, true}, {46, 165, true}, {46, 164, false},
                 {45, 200, false}, {90, 90, false}};
    const VpointBoundingLineSolver solver(kWidth, kHeight);
    for (const auto& c : cases) {
        EXPECT_EQ(solver.is_large_vertical_blob(edge(LEFT_BOUNDARY, 0, 0, 90, c.first),
                                                edge(RIGHT_BOUNDARY, 0, 0, 90, c.second)),
                  c.large)
            << c.first << " " << c.second;
    }
}

TEST(VpointBoundingLineSolver, PairNeedsExactlyTwoIndices) {
    std::vector<BoundingLine> lines = {edge(TOP_BOUNDARY, 0, 50, 0), edge(BOTTOM_BOUNDARY, 0, 250, 5),
                                       edge(BOTTOM_BOUNDARY, 0, 260, 5)};
    VpointBoundingLineSolver solver(kWidth, kHeight);
    Geocoordinate<double> point;
    BoundingLineProperty property;
    property.horizontal_lines = {0};
    EXPECT_EQ(solver.perform_boundingline_vpoint_searching(lines, property, HORIZONTAL_DIRECTION, point),
              VPOINT_NO_RESULT);
    property.horizontal_lines = {0, 1, 2};
    EXPECT_EQ(solver.perform_boundingline_vpoint_searching(lines, property, HORIZONTAL_DIRECTION, point),
              VPOINT_NO_RESULT);
    property.vertical_lines = {0, 1};  // the other direction's list is not read
    EXPECT_EQ(solver.perform_boundingline_vpoint_searching(lines, property, HORIZONTAL_DIRECTION, point),
              VPOINT_NO_RESULT);
}

}  // namespace

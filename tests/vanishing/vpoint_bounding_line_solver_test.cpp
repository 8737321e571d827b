// Pairs of opposite page edges: parallel, crossing or implausible, with the
// angle, separation and length limits at their boundaries.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "vanishing/vanishing_point_codes.h"
#include "vanishing/vpoint_bounding_line_solver.h"

namespace geometric {
namespace {

// The line through (x, y) whose line_angle() is `degrees`.
BoundingLine edge(double x, double y, double degrees, int length) {
    const double t = degrees * M_PI / 180.0;
    BoundingLine line;
    line.line = GeolineBase(std::sin(t), -std::cos(t), std::cos(t) * y - std::sin(t) * x);
    line.segment_length = length;
    return line;
}

// A 400 x 300 image. Top and bottom pass (0, 50) and (0, 50 + gap): limit 12
// degrees, 17 when more than 0.65 of the height (195) apart, 15 measured
// from 180 for a pair more than 90 apart. Left and right pass (100, 150) and (300, 150): 7 degrees
// leaning alike, 14 leaning apart, 25 and 25 for long edges (both above 90,
// or together above 210 and each above 45). Parallel up to 0.2 and 0.4; a
// pair leaning apart that passes is always crossed.
TEST(VpointBoundingLineSolver, OppositeEdgesByAngleSeparationAndLength) {
    const Direction H = HORIZONTAL_DIRECTION, V = VERTICAL_DIRECTION;
    const int no = VPOINT_NO_RESULT, found = VPOINT_FOUND, parallel = VPOINT_TREAT_AS_PARALLEL;
    const struct {
        Direction direction;
        double first, second, gap;
        int length1, length2, code;
        float disparity;
    } cases[] = {{H, 0, 0, 150, 9, 9, parallel, 0},      {H, 3, 3.1875, 150, 9, 9, parallel, 0.1875f},
                 {H, 3, 3.25, 150, 9, 9, found, 0.25f},   {H, 0, 11.5, 150, 9, 9, found, 11.5f},
                 {H, 0, 12, 195, 9, 9, no, 12},           {H, 0, 12, 196, 9, 9, found, 12},
                 {H, 0, 17, 196, 9, 9, no, 17},           {H, 171, 5, 150, 9, 9, found, 14},
                 {H, 170, 5, 150, 9, 9, no, 15},          {H, 90, 90, 150, 9, 9, parallel, 0},
                 {H, 163, 0, 196, 9, 9, found, 17},       {H, 160, 0, 196, 9, 9, no, 20},
                 {V, 90, 90, 0, 50, 50, parallel, 0},     {V, 91, 91.375, 0, 50, 50, parallel, 0.375f},
                 {V, 91, 91.5, 0, 50, 50, found, 0.5f},   {V, 92, 98.5, 0, 50, 50, found, 6.5f},
                 {V, 92, 99, 0, 50, 50, no, 7},           {V, 92, 116.5, 0, 91, 91, found, 24.5f},
                 {V, 92, 117, 0, 200, 200, no, 25},       {V, 92, 116.5, 0, 90, 90, no, 24.5f},
                 {V, 92, 116.5, 0, 46, 165, found, 24.5f}, {V, 92, 116.5, 0, 46, 164, no, 24.5f},
                 {V, 92, 116.5, 0, 45, 200, no, 24.5f},   {V, 80, 100, 0, 50, 50, found, 0.8f},
                 {V, 76, 91, 0, 50, 50, found, 0.8f},     {V, 75, 91, 0, 50, 50, no, 14},
                 {V, 65, 91, 0, 200, 200, found, 0.8f},   {V, 64, 91, 0, 200, 200, no, 25}};
    for (const auto& c : cases) {
        std::vector<BoundingLine> lines = {
            c.direction ? edge(100, 150, c.first, c.length1) : edge(0, 50, c.first, c.length1),
            c.direction ? edge(300, 150, c.second, c.length2) : edge(0, 50 + c.gap, c.second, c.length2)};
        BoundingLineProperty property;
        (c.direction ? property.vertical_lines : property.horizontal_lines) = {0, 1};
        VpointBoundingLineSolver solver(400, 300);
        Geocoordinate<double> point(-1.0, -1.0);
        const int code = solver.perform_boundingline_vpoint_searching(lines, property, c.direction, point);
        EXPECT_EQ(code, c.code) << c.first << " " << c.second << " " << c.length1;
        EXPECT_NEAR(c.direction ? solver.vertical_disparity : solver.horizontal_disparity, c.disparity, 1e-4)
            << c.first << " " << c.second;
        // A plausible vertical pair has its separation measured; a horizontal one always.
        const double across = std::fabs(lines[0].line.x_at(0.0) - lines[1].line.x_at(0.0));
        const double separation = c.direction ? (code == no ? 0.0 : across) : c.gap;
        if (c.first != 90 || c.direction) {
            EXPECT_NEAR(c.direction ? property.vertical_intercept_disparity : property.horizontal_intercept_disparity,
                        separation, 1e-3);
        }
        EXPECT_EQ(point.x == -1.0, code != found);
        if (code == found) {
            EXPECT_LT(lines[0].line.point_distance(point) + lines[1].line.point_distance(point), 1e-6);
        }
    }
}

}  // namespace
}  // namespace geometric

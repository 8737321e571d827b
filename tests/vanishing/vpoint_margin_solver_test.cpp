// The margin solver: margins through a known vertical vanishing point give
// that point, weakly weighted strays are dropped before the fits (but still
// judged), and too few lines give nothing.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "vanishing/corner_lines.h"
#include "vanishing/vanishing_point_codes.h"
#include "vanishing/vpoint_margin_solver.h"

using namespace geometric;
using Point = Geocoordinate<double>;

namespace {

constexpr int kWidth = 1000, kHeight = 800;
const Point kTruth(430.0, -6000.0);

// A margin through the truth, meeting the bottom row at x.
GeolineBase margin(double x) { return corner_line_through(Point(x, kHeight - 1.0), kTruth); }

}  // namespace

TEST(VpointMarginSolver, MarginsGiveTheirPointAndStraysWithLowWeightsAreDropped) {
    struct Case {
        const char* name;
        std::vector<GeolineBase> lines;
        std::vector<double> weights;
        std::size_t weights_left;
    };
    // The stray leans 3 degrees off; its weight is below a third of an
    // equal share (1/4 / 3 over four lines), so it is dropped.
    const GeolineBase stray = corner_line_through(Point(700.0, kHeight - 1.0), Point(700.0 + 0.052 * 6800, -6000.0));
    const Case cases[] = {
        {"two", {margin(100), margin(880)}, {1.0, 1.0}, 2},
        {"three equal", {margin(100), margin(500), margin(880)}, {1.0, 1.0, 1.0}, 3},
        {"stray dropped", {margin(100), margin(500), margin(880), stray}, {0.3, 0.3, 0.3, 0.01}, 3},
    };
    for (const Case& c : cases) {
        VpointMarginSolver solver(kWidth, kHeight, 3.5f, VERTICAL_DIRECTION);
        std::vector<double> weights = c.weights;
        Point point(0.0, 0.0);
        const int code = solver.perform_margin_vpoint_searching(c.lines, weights, point, 90.0f);
        ASSERT_EQ(code, VPOINT_FOUND) << c.name;
        EXPECT_EQ(weights.size(), c.weights_left) << c.name;
        // The direction seen from the image's centre, where a rectification is judged.
        const double found = std::atan2(point.x - kWidth / 2.0, kHeight / 2.0 - point.y);
        const double truth = std::atan2(kTruth.x - kWidth / 2.0, kHeight / 2.0 - kTruth.y);
        EXPECT_NEAR(found, truth, 1e-6) << c.name;
    }
}

TEST(VpointMarginSolver, TooFewLinesOrWeightsGiveNothingAndLeaveThePoint) {
    VpointMarginSolver solver(kWidth, kHeight, 3.5f, VERTICAL_DIRECTION);
    Point point(1.0, 2.0);
    std::vector<double> weights = {1.0};
    EXPECT_EQ(solver.perform_margin_vpoint_searching({margin(100)}, weights, point, 90.0f), VPOINT_NO_RESULT);
    weights = {1.0};
    EXPECT_EQ(solver.perform_margin_vpoint_searching({margin(100), margin(800)}, weights, point, 90.0f),
              VPOINT_NO_RESULT);
    EXPECT_EQ(point.x, 1.0);
    EXPECT_EQ(point.y, 2.0);
}

// Upright margins are straighter as they are than under any point: with the
// reference at 90 degrees they are taken as parallel, the point untouched.
TEST(VpointMarginSolver, UprightMarginsAreParallel) {
    VpointMarginSolver solver(kWidth, kHeight, 3.5f, VERTICAL_DIRECTION);
    const std::vector<GeolineBase> lines = {GeolineBase(1.0, 0.0, -100.0), GeolineBase(1.0, 0.0, -500.0),
                                            GeolineBase(1.0, 0.0, -880.0)};
    std::vector<double> weights = {1.0, 1.0, 1.0};
    Point point(0.0, 0.0);
    const int code = solver.perform_margin_vpoint_searching(lines, weights, point, 90.0f);
    EXPECT_TRUE(code == VPOINT_TREAT_AS_PARALLEL || code == VPOINT_NO_RESULT) << code;
    EXPECT_EQ(point.x, 0.0);
    EXPECT_EQ(point.y, 0.0);
}

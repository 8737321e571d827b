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

// The stray leans 3 degrees off; its weight is below a third of an equal
// share (1/4 / 3 over four lines), so it is dropped. Upright margins are
// straighter as they are than under any point: with the reference at 90
// degrees they are taken as parallel. Every answer but a point found leaves
// the point untouched.
TEST(VpointMarginSolver, MarginsGiveTheirPointStraysAreDroppedAndTooFewOrUprightGiveNone) {
    struct Case {
        const char* name;
        std::vector<GeolineBase> lines;
        std::vector<double> weights;
        std::size_t weights_left;
        int code;
    };
    const GeolineBase stray = corner_line_through(Point(700.0, kHeight - 1.0), Point(700.0 + 0.052 * 6800, -6000.0));
    const std::vector<GeolineBase> upright = {GeolineBase(1.0, 0.0, -100.0), GeolineBase(1.0, 0.0, -500.0),
                                              GeolineBase(1.0, 0.0, -880.0)};
    const Case cases[] = {
        {"two", {margin(100), margin(880)}, {1.0, 1.0}, 2, VPOINT_FOUND},
        {"three equal", {margin(100), margin(500), margin(880)}, {1.0, 1.0, 1.0}, 3, VPOINT_FOUND},
        {"stray dropped", {margin(100), margin(500), margin(880), stray}, {0.3, 0.3, 0.3, 0.01}, 3, VPOINT_FOUND},
        {"one line", {margin(100)}, {1.0}, 1, VPOINT_NO_RESULT},
        {"fewer weights than lines", {margin(100), margin(800)}, {1.0}, 1, VPOINT_NO_RESULT},
        {"upright", upright, {1.0, 1.0, 1.0}, 3, VPOINT_TREAT_AS_PARALLEL},
    };
    for (const Case& c : cases) {
        VpointMarginSolver solver(kWidth, kHeight, 3.5f, VERTICAL_DIRECTION);
        std::vector<double> weights = c.weights;
        Point point(1.0, 2.0);
        const int code = solver.perform_margin_vpoint_searching(c.lines, weights, point, 90.0f);
        if (c.code == VPOINT_TREAT_AS_PARALLEL) {
            EXPECT_TRUE(code == VPOINT_TREAT_AS_PARALLEL || code == VPOINT_NO_RESULT) << code;
        } else {
            ASSERT_EQ(code, c.code) << c.name;
        }
        if (c.code != VPOINT_FOUND) {
            EXPECT_TRUE(point.x == 1.0 && point.y == 2.0) << c.name;
            continue;
        }
        EXPECT_EQ(weights.size(), c.weights_left) << c.name;
        // The direction seen from the image's centre, where a rectification is judged.
        const double found = std::atan2(point.x - kWidth / 2.0, kHeight / 2.0 - point.y);
        const double truth = std::atan2(kTruth.x - kWidth / 2.0, kHeight / 2.0 - kTruth.y);
        EXPECT_NEAR(found, truth, 1e-6) << c.name;
    }
}

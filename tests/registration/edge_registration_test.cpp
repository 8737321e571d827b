// The classic edge route: pages found on photos, the crossing it leaves for
// the text search, its narrow straightness test, and the driver's choice
// between it and the staged search.
#include <gtest/gtest.h>

#include "registration/edge_registration.h"
#include "registration/hybrid_registration.h"
#include "support/images.h"

namespace hybrid {
namespace {

// Upright: straight (2); tilted: two vanishing points (1); a parallelogram:
// both directions parallel, slanted (3); a trapezoid: parallel top and
// bottom, converging sides (4). A page a quarter of the image high loses its
// horizontal direction to the corner examination (the output would be too
// low): one vanishing point remains (5), and only then is the crossing of top
// and bottom kept for the text search. A second run starts afresh.
TEST(EdgeRegistration, FindsPagesAndKeepsTheCrossingOfADroppedDirection) {
    const struct {
        support::Quad page;
        int result;
    } cases[] = {
        {support::quad(120, 80, 680, 80, 680, 520, 120, 520), 2},
        {support::quad(160, 100, 660, 60, 720, 540, 100, 500), 1},
        {support::quad(140, 100, 660, 60, 620, 500, 100, 540), 3},
        {support::quad(200, 100, 600, 100, 700, 500, 100, 500), 4},
        {support::quad(200, 250, 600, 250, 630, 400, 170, 400), 5},
    };
    for (const auto& c : cases) {
        const common::BasicImage photo = support::photo(800, 600, c.page);
        EdgeRegistration registration(&photo);
        for (int run = 0; run < 2; ++run) {
            EXPECT_EQ(registration.run_registration(), c.result);
            ASSERT_EQ(registration.corners.size(), 4u);
            EXPECT_LE(support::worst_corner_error(registration.corners, c.page), 4.0) << c.result;
            EXPECT_EQ(registration.bounding_vanishing_points.horizontal.has_vanishing_point, c.result == 5);
        }
    }
}

// Ends included, in single precision as the angles are kept.
TEST(EdgeRegistration, StraightnessTestAtItsLimits) {
    const struct {
        float horizontal, vertical;
        bool straight;
    } cases[] = {{0.19f, 90.0f, true}, {0.2f, 90.0f, false}, {179.8f, 90.0f, false}, {179.81f, 90.0f, true},
                 {0.0f, 89.6f, true},  {0.0f, 89.59f, false}, {0.0f, 90.4f, true},  {0.0f, 90.41f, false}};
    for (const auto& c : cases)
        EXPECT_EQ(EdgeRegistration::is_straight_page(c.horizontal, c.vertical), c.straight) << &c - cases;
}

TEST(EdgeRegistration, DriverRunsTheEdgeSearchThatUseLineRegistrationNames) {
    const support::Quad page = support::quad(160, 100, 660, 60, 720, 540, 100, 500);
    common::BasicImage photo = support::photo(800, 600, page);
    for (int use : {0, 1}) {
        HybridRegistration driver(&photo);
        driver.use_line_registration = use;
        ASSERT_EQ(driver.run_program(), 1);
        EXPECT_EQ(dynamic_cast<EdgeRegistration*>(driver.edge_registration) != nullptr, use == 0);
        EXPECT_LE(support::worst_corner_error(driver.corners, page), 5.0);
    }
}

}  // namespace
}  // namespace hybrid

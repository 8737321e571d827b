// The classic edge route: pages found on photos, the crossings it leaves for
// the text search, its narrow straightness test.
#include <gtest/gtest.h>

#include <tuple>

#include "edgelines/bounding_lines_operator.h"
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
// and bottom kept for the text search. The driver makes the classic object
// when use_line_registration is 0 (else the cast throws); a second run
// starts afresh.
TEST(EdgeRegistration, FindsPagesAndKeepsTheCrossingOfADroppedDirection) {
    const std::pair<support::Quad, int> cases[] = {
        {support::quad(120, 80, 680, 80, 680, 520, 120, 520), 2},
        {support::quad(160, 100, 660, 60, 720, 540, 100, 500), 1},
        {support::quad(140, 100, 660, 60, 620, 500, 100, 540), 3},
        {support::quad(200, 100, 600, 100, 700, 500, 100, 500), 4},
        {support::quad(200, 250, 600, 250, 630, 400, 170, 400), 5},
    };
    for (const auto& [page, result] : cases) {
        common::BasicImage photo = support::photo(800, 600, page);
        HybridRegistration driver(&photo);
        driver.use_line_registration = 0;
        driver.run_edge_searching(false);
        EdgeRegistration& registration = dynamic_cast<EdgeRegistration&>(*driver.edge_registration);
        for (int run = 0; run < 2; ++run) {
            EXPECT_EQ(registration.registration_output, result);
            ASSERT_EQ(registration.corners.size(), 4u);
            EXPECT_LE(support::worst_corner_error(registration.corners, page), 4.0) << result;
            EXPECT_EQ(registration.bounding_vanishing_points.horizontal.has_vanishing_point, result == 5);
            registration.run_registration();
        }
    }
}

// No geometry, the vertical direction open, no candidates: the crossing of
// the left line x = 0 and the right one x = 100 - y / 10 stays.
TEST(EdgeRegistration, NoGeometryLeavesTheCrossingOfTheOpenDirection) {
    EdgeRegistration registration(nullptr);
    registration.bounding_lines = {{geometric::LEFT_BOUNDARY, geometric::GeolineBase(1.0, 0.0, 0.0)},
                                   {geometric::RIGHT_BOUNDARY, geometric::GeolineBase(-10.0, -1.0, 1000.0)}};
    geometric::BoundingLinesOperator::initializeBoundingLineProperty(registration.bounding_lines,
                                                                     registration.bounding_line_property);
    std::vector<geometric::BoundingLine> no_candidates;
    registration.record_opposite_crossings(no_candidates);
    EXPECT_TRUE(registration.bounding_vanishing_points.vertical.has_vanishing_point);
    EXPECT_EQ(registration.bounding_vanishing_points.vertical_point.y, 1000.0);
}

// Ends included, in single precision as the angles are kept.
TEST(EdgeRegistration, StraightnessTestAtItsLimits) {
    const std::tuple<float, float, bool> cases[] = {
        {0.19f, 90.0f, true}, {0.2f, 90.0f, false}, {179.8f, 90.0f, false}, {179.81f, 90.0f, true},
        {0.0f, 89.6f, true},  {0.0f, 89.59f, false}, {0.0f, 90.4f, true},  {0.0f, 90.41f, false}};
    for (const auto& [horizontal, vertical, straight] : cases)
        EXPECT_EQ(EdgeRegistration::is_straight_page(horizontal, vertical), straight) << horizontal << " " << vertical;
}

}  // namespace
}  // namespace hybrid

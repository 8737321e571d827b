// The classic edge route: pages found on photos, the codes of opposite line
// pairs, its narrow straightness test, the crossings it leaves for the text
// search, and the driver's choice between it and the staged search.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "edgelines/bounding_lines_operator.h"
#include "registration/edge_registration.h"
#include "registration/hybrid_registration.h"
#include "registration/line_registration.h"
#include "support/images.h"
#include "vanishing/vanishing_point_codes.h"

namespace hybrid {
namespace {

using geometric::BoundingLine;
using geometric::GeolineBase;

// A side through (x, y) at `degrees`, with a segment long enough for a large blob.
BoundingLine side(geometric::BoundingLinePosition position, double degrees, double x, double y) {
    BoundingLine line;
    line.position = position;
    line.segment_length = 400;
    if (degrees == 90.0) {
        line.line = GeolineBase(1.0, 0.0, -x);
    } else {
        const double a = std::tan(degrees * M_PI / 180.0);
        line.line = GeolineBase(a, -1.0, y - a * x);
    }
    return line;
}

TEST(EdgeRegistration, FindsThePageOnPagePhotos) {
    const struct {
        const char* name;
        support::Quad page;
        geometric::RegistrationOutputType result;
    } cases[] = {
        {"upright", support::quad(120, 80, 680, 80, 680, 520, 120, 520), geometric::REGISTRATION_STRAIGHT_PAGE},
        {"tilted", support::quad(160, 100, 660, 60, 720, 540, 100, 500), geometric::REGISTRATION_TWO_VANISHING_POINTS},
        {"leaning", support::quad(140, 100, 660, 60, 620, 500, 100, 540),
         geometric::REGISTRATION_TWO_PARALLEL_DIRECTIONS},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const common::BasicImage photo = support::photo(800, 600, c.page);
        EdgeRegistration registration(&photo);
        EXPECT_EQ(registration.run_registration(), c.result);
        EXPECT_EQ(registration.registration_output, c.result);
        ASSERT_EQ(registration.corners.size(), 4u);
        EXPECT_LE(support::worst_corner_error(registration.corners, c.page), 4.0);
        // A second run starts afresh and gives the same.
        const support::Corners first = registration.corners;
        EXPECT_EQ(registration.run_registration(), c.result);
        EXPECT_EQ(registration.bounding_lines.size(), 4u);
        for (std::size_t k = 0; k < 4; ++k) {
            EXPECT_EQ(registration.corners[k].x, first[k].x);
            EXPECT_EQ(registration.corners[k].y, first[k].y);
        }
    }
}

// Opposite lines by their angles, on an 800 x 600 image; an empty pair is no line.
TEST(EdgeRegistration, OppositeLinePairsCombineIntoOneCode) {
    const common::BasicImage image = support::flat_image(600, 800, 128);
    const struct {
        const char* name;
        std::vector<double> horizontal, vertical;  // top and bottom, left and right
        int result;
    } cases[] = {
        {"two crossings", {0.0, 6.0}, {88.0, 93.0}, 1},
        {"straight", {0.1, 0.1}, {90.0, 90.0}, 2},
        {"straight near 180", {179.9, 179.9}, {90.0, 90.0}, 2},
        {"parallel, one slanted", {0.1, 0.1}, {90.5, 90.5}, 3},
        {"crossing and parallel", {0.0, 6.0}, {90.0, 90.0}, 4},
        {"parallel and crossing", {0.0, 0.0}, {88.0, 93.0}, 4},
        {"horizontal crossing alone", {0.0, 6.0}, {}, 5},
        {"vertical crossing alone", {}, {88.0, 93.0}, 5},
        {"parallel alone", {}, {90.0, 90.0}, 6},
        {"implausible pair", {0.0, 30.0}, {}, -1},
        {"nothing", {}, {}, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EdgeRegistration registration(&image);
        auto& lines = registration.bounding_lines;
        if (!c.horizontal.empty()) {
            lines.push_back(side(geometric::TOP_BOUNDARY, c.horizontal[0], 0, 100));
            lines.push_back(side(geometric::BOTTOM_BOUNDARY, c.horizontal[1], 0, 500));
        }
        if (!c.vertical.empty()) {
            lines.push_back(side(geometric::LEFT_BOUNDARY, c.vertical[0], 100, 300));
            lines.push_back(side(geometric::RIGHT_BOUNDARY, c.vertical[1], 700, 300));
        }
        geometric::BoundingLinesOperator::initializeBoundingLineProperty(lines, registration.bounding_line_property);
        EXPECT_EQ(registration.getResultsFromBoundingBox(), c.result);
        const geometric::VanishingPointHorVerInfo& found = registration.vanishing_points;
        // A parallel pair keeps its mean angle; a crossing lies on both lines.
        if (found.horizontal.is_parallel) {
            EXPECT_NEAR(found.horizontal.angle, c.horizontal[0], 1e-4);
        }
        if (found.vertical.is_parallel) {
            EXPECT_NEAR(found.vertical.angle, c.vertical[0], 1e-4);
        }
        if (found.horizontal.has_vanishing_point) {
            EXPECT_NEAR(lines[0].line.point_distance(found.horizontal_point), 0.0, 1e-6);
        }
        if (found.vertical.has_vanishing_point) {
            EXPECT_NEAR(lines.back().line.point_distance(found.vertical_point), 0.0, 1e-6);
        }
        EXPECT_FALSE(found.horizontal.has_vanishing_point && found.horizontal.is_parallel);
    }
}

// Ends included, in single precision; the base's test, widened by the
// disparities, calls a page straight that this one does not.
TEST(EdgeRegistration, StraightnessTestAtItsLimits) {
    const struct {
        float horizontal, vertical;
        bool straight;
    } cases[] = {
        {0.0f, 90.0f, true},   {0.19f, 90.0f, true},  {0.2f, 90.0f, false},  {179.8f, 90.0f, false},
        {179.81f, 90.0f, true}, {0.0f, 89.6f, true},  {0.0f, 89.59f, false}, {0.0f, 90.4f, true},
        {0.0f, 90.41f, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(EdgeRegistration::is_straight_page(c.horizontal, c.vertical), c.straight)
            << c.horizontal << " " << c.vertical;
    geometric::VanishingPointHorVerInfo wide;
    wide.horizontal = {4, false, true, 0.25f};
    wide.vertical = {4, false, true, 90.45f};
    EXPECT_EQ(geometric::ProjectiveRegistration::classify_vanishing_point_flags(wide, 0.2, 0.4),
              geometric::REGISTRATION_STRAIGHT_PAGE);
    EXPECT_FALSE(EdgeRegistration::is_straight_page(0.25f, 90.45f));
}

// Without a geometry the crossings of opposite lines stay for the text
// search: of four candidates, else of the bounding lines of the one direction
// that is still open.
TEST(EdgeRegistration, NoGeometryLeavesTheCrossingsOfOppositeLines) {
    const common::BasicImage image = support::flat_image(600, 800, 128);
    const std::vector<BoundingLine> frame = {
        side(geometric::TOP_BOUNDARY, 0.0, 0, 100), side(geometric::BOTTOM_BOUNDARY, 5.0, 0, 500),
        side(geometric::LEFT_BOUNDARY, 90.0, 100, 0), side(geometric::RIGHT_BOUNDARY, 95.0, 700, 0)};
    const std::vector<BoundingLine> parallel_frame = {
        side(geometric::TOP_BOUNDARY, 0.0, 0, 100), side(geometric::BOTTOM_BOUNDARY, 0.0, 0, 500),
        side(geometric::LEFT_BOUNDARY, 90.0, 100, 0), side(geometric::RIGHT_BOUNDARY, 95.0, 700, 0)};
    const struct {
        const char* name;
        std::vector<BoundingLine> candidates;
        bool vertical_parallel, horizontal_parallel;
        bool horizontal_crossing, vertical_crossing;
    } cases[] = {
        {"four candidates", frame, false, false, true, true},
        {"four candidates, parallel top and bottom", parallel_frame, false, false, false, true},
        {"vertical open", {}, false, false, false, true},
        {"vertical decided, horizontal open", {}, true, false, true, false},
        {"both decided", {}, true, true, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EdgeRegistration registration(&image);
        registration.bounding_lines = frame;
        geometric::BoundingLinesOperator::initializeBoundingLineProperty(registration.bounding_lines,
                                                                         registration.bounding_line_property);
        registration.vanishing_points.vertical.is_parallel = c.vertical_parallel;
        registration.vanishing_points.horizontal.is_parallel = c.horizontal_parallel;
        std::vector<BoundingLine> candidates = c.candidates;
        registration.record_opposite_crossings(candidates);
        const geometric::VanishingPointHorVerInfo& crossings = registration.bounding_vanishing_points;
        EXPECT_EQ(crossings.horizontal.has_vanishing_point, c.horizontal_crossing);
        EXPECT_EQ(crossings.vertical.has_vanishing_point, c.vertical_crossing);
        // Top y = 100 meets bottom y = 500 + x tan 5; left x = 100 meets right through (700, 0) at 95 degrees.
        if (c.horizontal_crossing) {
            EXPECT_NEAR(crossings.horizontal_point.x, -400.0 / std::tan(5.0 * M_PI / 180.0), 1e-6);
            EXPECT_NEAR(crossings.horizontal_point.y, 100.0, 1e-6);
        }
        if (c.vertical_crossing) {
            EXPECT_NEAR(crossings.vertical_point.x, 100.0, 1e-6);
            EXPECT_NEAR(crossings.vertical_point.y, 600.0 * std::tan(85.0 * M_PI / 180.0), 1e-6);
        }
    }
}

// A page a quarter of the image high: the corner examination drops its
// parallel horizontal direction (the output would be too low), the vertical
// vanishing point alone remains, and the crossing of top and bottom stays
// for the text search.
TEST(EdgeRegistration, DirectionDroppedByTheCornersLeavesItsCrossing) {
    const support::Quad page = support::quad(200, 250, 600, 250, 630, 400, 170, 400);
    const common::BasicImage photo = support::photo(800, 600, page);
    EdgeRegistration registration(&photo);
    EXPECT_EQ(registration.run_registration(), geometric::REGISTRATION_ONE_VANISHING_POINT);
    EXPECT_EQ(registration.vanishing_points.horizontal.status, geometric::VPOINT_TREAT_AS_PARALLEL);
    EXPECT_FALSE(registration.vanishing_points.horizontal.is_parallel);
    EXPECT_TRUE(registration.vanishing_points.vertical.has_vanishing_point);
    const geometric::VanishingPointHorVerInfo& crossings = registration.bounding_vanishing_points;
    ASSERT_TRUE(crossings.horizontal.has_vanishing_point);
    EXPECT_FALSE(crossings.vertical.has_vanishing_point);
    const auto& top = registration.bounding_lines[static_cast<std::size_t>(registration.bounding_line_property.top_index)];
    EXPECT_LT(top.line.point_distance(crossings.horizontal_point), 1e-6 * std::fabs(crossings.horizontal_point.x));
}

// use_line_registration picks the edge object; either finds a clear page,
// with edges alone and with the text search after them.
TEST(EdgeRegistration, DriverRunsTheEdgeSearchThatUseLineRegistrationNames) {
    const support::Quad page = support::quad(160, 100, 660, 60, 720, 540, 100, 500);
    common::BasicImage photo = support::photo(800, 600, page);
    for (int use : {0, 1}) {
        for (int method : {0, 1}) {
            SCOPED_TRACE(::testing::Message() << "use_line_registration " << use << " method " << method);
            HybridRegistration driver(&photo);
            driver.use_line_registration = use;
            driver.set_registration_method(method);
            EXPECT_EQ(driver.run_program(), 1);
            const bool classic = dynamic_cast<EdgeRegistration*>(driver.edge_registration) != nullptr;
            const bool staged = dynamic_cast<geometric_test::LineRegistration*>(driver.edge_registration) != nullptr;
            EXPECT_EQ(classic, use == 0);
            EXPECT_EQ(staged, use != 0);
            ASSERT_EQ(driver.corners.size(), 4u);
            EXPECT_LE(support::worst_corner_error(driver.corners, page), 5.0);
        }
    }
}

}  // namespace
}  // namespace hybrid

// The boundary array's state, measures and the predicates that clear the
// boundary at fault: each limit one step inside and one step outside.
#include <cmath>

#include <gtest/gtest.h>

#include "support/boundary_scenes.h"
#include "cornersearch/bounding_line_array_wrapper.h"

namespace {

using support::make_boundary;
using support::place_rectangle;
using support::Rectangle;
using support::valid_slots;
using geometric::Geocoordinate;
using geometric_test::BoundingLine;
using geometric_test::BoundingLineArrayWrapper;

// 800 wide, 700 high, in an image of 1000 x 1000.
const Rectangle kPage{100, 100, 900, 800};

BoundingLineArrayWrapper page_array() {
    BoundingLineArrayWrapper wrapper(1000, 1000);
    place_rectangle(wrapper, kPage);
    return wrapper;
}

// A boundary with exact coefficients whose polyline is given separately.
BoundingLine boundary_with_line(geometric::BoundingLinePosition position, const geometric::GeolineBase& line,
                                std::vector<Geocoordinate<int>> points) {
    BoundingLine boundary;
    boundary.position = position;
    boundary.line = line;
    boundary.points = std::move(points);
    return boundary;
}

// The line through (x, y) at `degrees`, not vertical.
geometric::GeolineBase line_through(double x, double y, double degrees) {
    const double a = std::tan(degrees * M_PI / 180.0);
    return geometric::GeolineBase(a, -1.0, y - a * x);
}

TEST(BoundingLineArrayTest, PerfectRectangleFormsAPage) {
    BoundingLineArrayWrapper wrapper = page_array();
    wrapper.calculate_vertex();
    const float expected[4][2] = {{100, 100}, {900, 100}, {900, 800}, {100, 800}};
    for (int k = 0; k < 4; ++k) {
        EXPECT_FLOAT_EQ(wrapper.vertices[k].x, expected[k][0]) << k;
        EXPECT_FLOAT_EQ(wrapper.vertices[k].y, expected[k][1]) << k;
    }
    EXPECT_TRUE(wrapper.are_four_boundaries_valid());
    EXPECT_TRUE(wrapper.is_large_polygon());
    EXPECT_NEAR(wrapper.min_angle(), 90.0, 1e-9);
    EXPECT_TRUE(wrapper.is_large_angle());
    EXPECT_TRUE(wrapper.is_correct_corners());
    EXPECT_EQ(wrapper.confidences[0], 100.0);
    EXPECT_TRUE(wrapper.check_four_angle_disparity());
    EXPECT_TRUE(wrapper.is_distant_boundary_pair());
    EXPECT_TRUE(wrapper.is_cross_boundary_corner_correct());
    EXPECT_EQ(valid_slots(wrapper), "LTRB");
    double first = -1.0, second = -1.0;
    wrapper.calculate_interior_angle_disparity(first, second);
    EXPECT_NEAR(first, 0.0, 1e-9);
    EXPECT_TRUE(wrapper.check_interior_angle_disparity(first, second));
}

TEST(BoundingLineArrayTest, BowTieOrderOfTheSameLinesIsRefused) {
    // Vertices of the same rectangle in bow-tie order enclose no area.
    BoundingLineArrayWrapper crossed = page_array();
    crossed.calculate_vertex();
    std::swap(crossed.vertices[2], crossed.vertices[3]);
    EXPECT_FALSE(crossed.is_large_polygon());
    EXPECT_LT(crossed.min_angle(), 45.0);

    // Left and right exchanged: every vertex lands at the far end of the top
    // and bottom, so the segments overshoot it by the page's width; the
    // shorter boundary of corner 0, the left, is dropped.
    BoundingLineArrayWrapper exchanged(1000, 1000);
    place_rectangle(exchanged, kPage);
    std::swap(exchanged.boundaries[geometric::LEFT_BOUNDARY].line, exchanged.boundaries[geometric::RIGHT_BOUNDARY].line);
    std::swap(exchanged.boundaries[geometric::LEFT_BOUNDARY].points,
              exchanged.boundaries[geometric::RIGHT_BOUNDARY].points);
    exchanged.calculate_vertex();
    EXPECT_FLOAT_EQ(exchanged.vertices[0].x, 900.0f);
    EXPECT_TRUE(exchanged.is_large_polygon());  // the area alone cannot tell
    EXPECT_FALSE(exchanged.is_correct_corners());
    EXPECT_EQ(valid_slots(exchanged), "-TRB");
}

TEST(BoundingLineArrayTest, OppositeBoundariesMustBeATenthOfTheImageApart) {
    struct Case {
        bool horizontal;
        int gap;
        bool result;
        const char* slots;
    };
    // The second boundary of each pair is the shorter one and goes when too near.
    const Case cases[] = {{true, 100, true, "LTRB"}, {true, 99, true, "LTR-"},
                          {false, 100, true, "LTRB"}, {false, 99, true, "LT-B"}};
    for (const Case& c : cases) {
        BoundingLineArrayWrapper wrapper = page_array();
        if (c.horizontal) {
            wrapper.boundaries[geometric::BOTTOM_BOUNDARY] =
                make_boundary(geometric::BOTTOM_BOUNDARY, 150, 100 + c.gap, 850, 100 + c.gap);
        } else {
            wrapper.boundaries[geometric::RIGHT_BOUNDARY] =
                make_boundary(geometric::RIGHT_BOUNDARY, 100 + c.gap, 150, 100 + c.gap, 750);
        }
        EXPECT_EQ(wrapper.is_distant_boundary_pair(), c.result) << c.gap;
        EXPECT_EQ(valid_slots(wrapper), c.slots) << (c.horizontal ? "horizontal " : "vertical ") << c.gap;
    }
    // Without a crossing pair left, the refusal is final.
    BoundingLineArrayWrapper pair_only(1000, 1000);
    pair_only.boundaries[geometric::TOP_BOUNDARY] = make_boundary(geometric::TOP_BOUNDARY, 100, 100, 900, 100);
    pair_only.boundaries[geometric::BOTTOM_BOUNDARY] = make_boundary(geometric::BOTTOM_BOUNDARY, 100, 150, 800, 150);
    EXPECT_FALSE(pair_only.is_distant_boundary_pair());
    EXPECT_EQ(valid_slots(pair_only), "-T--");
}

TEST(BoundingLineArrayTest, PairDistanceTruncatesItsRunningSum) {
    BoundingLineArrayWrapper wrapper(100, 100);
    wrapper.boundaries[geometric::TOP_BOUNDARY] =
        boundary_with_line(geometric::TOP_BOUNDARY, geometric::GeolineBase(0.0, -1.0, 0.0), {{0, 0}, {10, 0}, {20, 0}});
    wrapper.boundaries[geometric::BOTTOM_BOUNDARY] = boundary_with_line(
        geometric::BOTTOM_BOUNDARY, geometric::GeolineBase(0.0, -1.0, 10.7), {{0, 11}, {20, 11}});
    // 10.7 three times: 10, 20, 30, not 32.1.
    EXPECT_FLOAT_EQ(wrapper.boundary_pair_distance(geometric::HORIZONTAL_DIRECTION), 10.0f);
    EXPECT_FLOAT_EQ(wrapper.boundary_pair_distance(geometric::VERTICAL_DIRECTION), 0.0f);
}

TEST(BoundingLineArrayTest, HorizontalPairAngleLimitDropsTheShorterLine) {
    struct Case {
        double degrees;
        bool result;
        const char* slots;
    };
    const Case cases[] = {{19.99, true, "LTRB"}, {20.01, false, "LTR-"}, {160.01, true, "LTRB"},
                          {159.99, false, "LTR-"}, {30.0, false, "LTR-"}};
    for (const Case& c : cases) {
        BoundingLineArrayWrapper wrapper = page_array();
        // Shorter than the top: 600 pixels across.
        wrapper.boundaries[geometric::BOTTOM_BOUNDARY] =
            boundary_with_line(geometric::BOTTOM_BOUNDARY, line_through(200, 700, c.degrees), {{200, 700}, {800, 700}});
        EXPECT_EQ(wrapper.check_four_angle_disparity(), c.result) << c.degrees;
        EXPECT_EQ(valid_slots(wrapper), c.slots) << c.degrees;
    }
}

TEST(BoundingLineArrayTest, VerticalPairAtThirtyDegreesIsNeverRefusedByTheFourAngleCheck) {
    BoundingLineArrayWrapper wrapper = page_array();
    wrapper.boundaries[geometric::RIGHT_BOUNDARY] =
        boundary_with_line(geometric::RIGHT_BOUNDARY, line_through(900, 100, 60.0), {{900, 100}, {1304, 800}});
    EXPECT_FALSE(wrapper.is_small_vertical_angle_disparity());
    EXPECT_TRUE(wrapper.check_four_angle_disparity());
    EXPECT_EQ(valid_slots(wrapper), "LTRB");
    EXPECT_NEAR(wrapper.boundary_pair_angle_disparity(geometric::VERTICAL_DIRECTION), 30.0, 1e-9);

    wrapper.boundaries[geometric::RIGHT_BOUNDARY] =
        boundary_with_line(geometric::RIGHT_BOUNDARY, line_through(900, 100, 70.01), {{900, 100}, {1155, 800}});
    EXPECT_TRUE(wrapper.is_small_vertical_angle_disparity());
}

TEST(BoundingLineArrayTest, CornerAngleLimitDropsTheShorterOfTheCorner) {
    struct Case {
        double degrees;   // of the left boundary, the top being horizontal
        int left_bottom;  // y of the left's lower end: decides which is longer
        bool result;
        const char* slots;
    };
    // The left from (100, 100) to y 900 is longer than the top (800), to y 400 shorter.
    const Case cases[] = {
        {45.01, 900, true, "LTRB"},  {44.99, 900, false, "L-RB"},  {44.99, 400, false, "-TRB"},
        {134.99, 400, true, "LTRB"}, {135.01, 400, false, "-TRB"}, {44.0, 900, false, "L-RB"},
    };
    for (const Case& c : cases) {
        BoundingLineArrayWrapper wrapper = page_array();
        const geometric::GeolineBase left = line_through(100, 100, c.degrees);
        const int x_end = static_cast<int>(left.x_at(c.left_bottom));
        wrapper.boundaries[geometric::LEFT_BOUNDARY] =
            boundary_with_line(geometric::LEFT_BOUNDARY, left, {{100, 100}, {x_end, c.left_bottom}});
        EXPECT_EQ(wrapper.is_large_cross_boundary_angle(), c.result) << c.degrees;
        EXPECT_EQ(valid_slots(wrapper), c.slots) << c.degrees << " to y " << c.left_bottom;
    }
}

TEST(BoundingLineArrayTest, SegmentEndsMayOvershootTheirVertexByTheLimit) {
    enum End { HORIZONTAL, VERTICAL, BOTH };
    struct Case {
        int corner;
        End end;
        int overshoot;
        bool square;  // 700 x 700, equal sides
        bool result;
        const char* slots;
        double confidence;
    };
    const Case cases[] = {
        {0, HORIZONTAL, 50, false, true, "LTRB", 0.0},  {0, HORIZONTAL, 51, false, false, "-TRB", 100.0},
        {0, VERTICAL, 25, false, true, "LTRB", 50.0},   {0, VERTICAL, 51, false, false, "-TRB", 100.0},
        {1, HORIZONTAL, 51, false, false, "LT-B", 100.0}, {1, VERTICAL, 50, false, true, "LTRB", 0.0},
        {2, VERTICAL, 51, true, false, "LTR-", 100.0},  {2, BOTH, 51, true, false, "LTR-", 100.0},
        {2, HORIZONTAL, 51, true, false, "LT-B", 100.0}, {3, VERTICAL, 51, false, false, "-TRB", 100.0},
        {3, HORIZONTAL, 50, false, true, "LTRB", 0.0},
    };
    for (const Case& c : cases) {
        const Rectangle r = c.square ? Rectangle{100, 100, 800, 800} : kPage;
        BoundingLineArrayWrapper wrapper(1000, 1000);
        place_rectangle(wrapper, r);
        const bool upper = c.corner < 2;
        const bool leftward = c.corner == 0 || c.corner == 3;
        BoundingLine& horizontal = wrapper.boundaries[upper ? geometric::TOP_BOUNDARY : geometric::BOTTOM_BOUNDARY];
        BoundingLine& vertical = wrapper.boundaries[leftward ? geometric::LEFT_BOUNDARY : geometric::RIGHT_BOUNDARY];
        if (c.end != VERTICAL) horizontal.points[leftward ? 0 : 1].x += leftward ? -c.overshoot : c.overshoot;
        if (c.end != HORIZONTAL) vertical.points[upper ? 0 : 1].y += upper ? -c.overshoot : c.overshoot;
        wrapper.calculate_vertex();
        const BoundingLineArrayWrapper before = wrapper;
        const auto corner = static_cast<geometric::BoundingLinePosition>(c.corner);
        EXPECT_EQ(wrapper.is_correct_corners(corner), c.result) << "corner " << c.corner << " by " << c.overshoot;
        // Whatever was not cleared is untouched, and the cleared slot kept its type.
        for (int k = 0; k < 4; ++k) {
            const BoundingLine& slot = wrapper.boundaries[k];
            if (slot.is_valid()) {
                EXPECT_TRUE(support::same_boundary(slot, before.boundaries[k])) << k;
            } else {
                EXPECT_TRUE(slot.points.empty() && slot.line.a == 0.0 && slot.line.b == 0.0 && slot.line.c == 0.0);
                EXPECT_EQ(slot.type, before.boundaries[k].type);
            }
        }
        EXPECT_EQ(valid_slots(wrapper), c.slots) << "corner " << c.corner << " by " << c.overshoot;
        EXPECT_DOUBLE_EQ(wrapper.confidences[0], c.confidence) << "corner " << c.corner << " by " << c.overshoot;
    }
}

TEST(BoundingLineArrayTest, CrossCornerTestSetsTheVertexOfAValidPairOnly) {
    BoundingLineArrayWrapper wrapper(1000, 1000);
    place_rectangle(wrapper, kPage);
    wrapper.boundaries[geometric::RIGHT_BOUNDARY].clear();
    wrapper.boundaries[geometric::BOTTOM_BOUNDARY].clear();
    EXPECT_TRUE(wrapper.is_cross_boundary_corner_correct());
    EXPECT_FLOAT_EQ(wrapper.vertices[0].x, 100.0f);
    EXPECT_FLOAT_EQ(wrapper.vertices[0].y, 100.0f);
    EXPECT_FLOAT_EQ(wrapper.vertices[1].x, 0.0f);  // no right: untouched

    wrapper.boundaries[geometric::TOP_BOUNDARY].points[0].x = 40;  // 60 beyond the top-left vertex
    EXPECT_FALSE(wrapper.is_cross_boundary_corner_correct());
    EXPECT_EQ(valid_slots(wrapper), "-T--");
}

TEST(BoundingLineArrayTest, ClosureGapAndNeighbourGaps) {
    BoundingLineArrayWrapper wrapper = page_array();
    struct Case {
        double gap;
        int length;  // of the top boundary
        bool closed;
    };
    // Past the gap limit a boundary still counts as closed when the gap stays below 0.3 of its length.
    const Case cases[] = {{50.0, 100, true}, {51.0, 100, false}, {51.0, 200, true}, {60.0, 200, false}, {0.0, 0, true}};
    for (const Case& c : cases) {
        wrapper.boundaries[geometric::TOP_BOUNDARY] = make_boundary(geometric::TOP_BOUNDARY, 100, 100, 100 + c.length, 100);
        const std::vector<double> gaps = {0.0, c.gap, 0.0, 0.0};
        EXPECT_EQ(wrapper.is_boundary_closed_with_neighbors(gaps, geometric::TOP_BOUNDARY), c.closed)
            << c.gap << " on " << c.length;
    }
    // Left's lower end 30 above the bottom's first point, right's upper end 40 below the top's second.
    BoundingLineArrayWrapper open = page_array();
    open.boundaries[geometric::LEFT_BOUNDARY].points[1].y -= 30;
    open.boundaries[geometric::RIGHT_BOUNDARY].points[0].y += 40;
    std::vector<double> gaps;
    open.calculate_gap_distance(gaps);
    EXPECT_EQ(gaps, std::vector<double>(4, 0.0));  // each the smaller gap of its corner: min(30, 0), ...
    open.boundaries[geometric::TOP_BOUNDARY].points[0].x += 10;
    open.calculate_gap_distance(gaps);
    EXPECT_EQ(gaps, (std::vector<double>{10.0, 10.0, 0.0, 0.0}));  // min(30, 10), min(10, 40)
}

TEST(BoundingLineArrayTest, TrustAsPreviousWrapperNeedsThreeRegularBoundariesWithoutGreyFailure) {
    struct Case {
        int cleared;                         // slot emptied, -1 for none
        int weak;                            // slot given the weak type, -1 for none
        float gray_failures;
        bool trusted;
    };
    const Case cases[] = {{2, -1, 0.0f, true},  {-1, -1, 0.0f, false}, {2, 0, 0.0f, false},
                          {2, 2, 0.0f, false},  // a cleared slot keeps its type
                          {2, -1, 1.0f, false}, {2, -1, 0.5f, true}};
    for (const Case& c : cases) {
        BoundingLineArrayWrapper wrapper = page_array();
        if (c.weak >= 0) wrapper.boundaries[c.weak].type = geometric::WEAK_BOUNDING_LINE;
        if (c.cleared >= 0) wrapper.boundaries[c.cleared].clear();
        wrapper.gray_failures = c.gray_failures;
        EXPECT_EQ(wrapper.can_be_trusted_as_previous_wrapper(), c.trusted)
            << c.cleared << " " << c.weak << " " << c.gray_failures;
    }
}

TEST(BoundingLineArrayTest, SuperiorAndInferiorBoundariesAtTies) {
    BoundingLineArrayWrapper wrapper(1000, 1000);
    place_rectangle(wrapper, Rectangle{100, 100, 800, 800});
    // Equal lengths: the second of the pair in both cases.
    EXPECT_EQ(&wrapper.inferior_boundary(geometric::VERTICAL_DIRECTION), &wrapper.boundaries[geometric::RIGHT_BOUNDARY]);
    EXPECT_EQ(&wrapper.superior_boundary(geometric::VERTICAL_DIRECTION), &wrapper.boundaries[geometric::RIGHT_BOUNDARY]);
    // Lengths 700.4 and 700 truncate to equal: still the second is superior.
    wrapper.boundaries[geometric::TOP_BOUNDARY].points[1] = Geocoordinate<int>(800, 93);
    EXPECT_EQ(&wrapper.superior_boundary(geometric::HORIZONTAL_DIRECTION),
              &wrapper.boundaries[geometric::BOTTOM_BOUNDARY]);
    EXPECT_EQ(&wrapper.inferior_boundary(geometric::HORIZONTAL_DIRECTION),
              &wrapper.boundaries[geometric::BOTTOM_BOUNDARY]);
    wrapper.boundaries[geometric::BOTTOM_BOUNDARY].clear();
    EXPECT_EQ(&wrapper.superior_boundary(geometric::HORIZONTAL_DIRECTION), &wrapper.boundaries[geometric::TOP_BOUNDARY]);
}

TEST(BoundingLineArrayTest, VanishingPointsOfOppositePairs) {
    geometric::VanishingPointHorVerInfo parallel;
    page_array().obtain_vanishing_points(parallel);
    EXPECT_TRUE(parallel.vertical.is_parallel);
    EXPECT_TRUE(parallel.horizontal.is_parallel);
    EXPECT_FALSE(parallel.vertical.has_vanishing_point);

    // Left and right meet at (500, 1000), on the frame's edge: inside, so no
    // vanishing point; top and bottom meet inside too, and still count.
    BoundingLineArrayWrapper converging = page_array();
    converging.boundaries[geometric::LEFT_BOUNDARY] = make_boundary(geometric::LEFT_BOUNDARY, 100, 200, 500, 1000);
    converging.boundaries[geometric::RIGHT_BOUNDARY] = make_boundary(geometric::RIGHT_BOUNDARY, 900, 200, 500, 1000);
    converging.boundaries[geometric::TOP_BOUNDARY] = make_boundary(geometric::TOP_BOUNDARY, 100, 100, 900, 300);
    geometric::VanishingPointHorVerInfo info;
    converging.obtain_vanishing_points(info);
    EXPECT_FALSE(info.vertical.has_vanishing_point);
    EXPECT_NEAR(info.vertical_point.y, 1000.0, 1e-9);
    EXPECT_TRUE(info.horizontal.has_vanishing_point);
    EXPECT_FALSE(info.horizontal.is_parallel);

    converging.boundaries[geometric::RIGHT_BOUNDARY] = make_boundary(geometric::RIGHT_BOUNDARY, 900, 200, 501, 1000);
    converging.obtain_vanishing_points(info);
    EXPECT_TRUE(info.vertical.has_vanishing_point);  // just beyond the frame
}

}  // namespace

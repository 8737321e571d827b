// The boundary array's measures and the predicates that clear the boundary at
// fault: each limit one step inside and one step outside.
#include <cmath>

#include <gtest/gtest.h>

#include "cornersearch/bounding_line_array_wrapper.h"
#include "support/boundary_scenes.h"

namespace {

using geometric::Geocoordinate;
using geometric_test::BoundingLine;
using geometric_test::BoundingLineArrayWrapper;
using support::make_boundary;
using support::valid_slots;

// 800 wide, 700 high, in an image of 1000 x 1000.
const support::Rectangle kPage{100, 100, 900, 800};

BoundingLineArrayWrapper page_array(const support::Rectangle& page = kPage) {
    BoundingLineArrayWrapper wrapper(1000, 1000);
    support::place_rectangle(wrapper, page);
    return wrapper;
}

// A boundary with exact coefficients: the line through (x, y) at `degrees`
// (not vertical), with the polyline given separately.
BoundingLine slanted(geometric::BoundingLinePosition position, double x, double y, double degrees,
                     std::vector<Geocoordinate<int>> points) {
    BoundingLine boundary;
    boundary.position = position;
    const double a = std::tan(degrees * M_PI / 180.0);
    boundary.line = geometric::GeolineBase(a, -1.0, y - a * x);
    boundary.points = std::move(points);
    return boundary;
}

}  // namespace

TEST(BoundingLineArrayTest, PerfectRectangleFormsAPageAndItsBowTieDoesNot) {
    BoundingLineArrayWrapper wrapper = page_array();
    wrapper.calculate_vertex();
    const float expected[4][2] = {{100, 100}, {900, 100}, {900, 800}, {100, 800}};
    for (int k = 0; k < 4; ++k) {
        EXPECT_FLOAT_EQ(wrapper.vertices[k].x, expected[k][0]) << k;
        EXPECT_FLOAT_EQ(wrapper.vertices[k].y, expected[k][1]) << k;
    }
    EXPECT_TRUE(wrapper.is_large_polygon());
    EXPECT_NEAR(wrapper.min_angle(), 90.0, 1e-9);
    EXPECT_TRUE(wrapper.is_large_angle());
    EXPECT_TRUE(wrapper.is_correct_corners());
    EXPECT_TRUE(wrapper.check_four_angle_disparity());
    EXPECT_TRUE(wrapper.is_distant_boundary_pair());
    EXPECT_TRUE(wrapper.is_cross_boundary_corner_correct());
    EXPECT_EQ(valid_slots(wrapper), "LTRB");
    EXPECT_EQ(wrapper.confidences[0], 100.0);
    double first = -1.0, second = -1.0;
    wrapper.calculate_interior_angle_disparity(first, second);
    EXPECT_NEAR(first, 0.0, 1e-9);
    EXPECT_TRUE(wrapper.check_interior_angle_disparity(first, second));
    std::swap(wrapper.vertices[2], wrapper.vertices[3]);  // bow-tie order: no area
    EXPECT_FALSE(wrapper.is_large_polygon());
    EXPECT_LT(wrapper.min_angle(), 45.0);

    // Left and right exchanged: each vertex lands at the far end of top and
    // bottom, the area cannot tell, the overshoot can: the left goes.
    BoundingLineArrayWrapper exchanged = page_array();
    std::swap(exchanged.boundaries[geometric::LEFT_BOUNDARY].line, exchanged.boundaries[geometric::RIGHT_BOUNDARY].line);
    std::swap(exchanged.boundaries[geometric::LEFT_BOUNDARY].points,
              exchanged.boundaries[geometric::RIGHT_BOUNDARY].points);
    exchanged.calculate_vertex();
    EXPECT_TRUE(exchanged.is_large_polygon());
    EXPECT_FALSE(exchanged.is_correct_corners());
    EXPECT_EQ(valid_slots(exchanged), "-TRB");
}

// Opposite boundaries a tenth of the image apart; pairs within 20 degrees; a
// corner of at least 45 degrees. Each failure clears the shorter boundary.
TEST(BoundingLineArrayTest, PairDistanceAndAngleLimitsDropTheShorterBoundary) {
    for (int gap : {100, 99}) {
        BoundingLineArrayWrapper rows = page_array(), columns = page_array();
        rows.boundaries[geometric::BOTTOM_BOUNDARY] = make_boundary(geometric::BOTTOM_BOUNDARY, 150, 100 + gap, 850, 100 + gap);
        columns.boundaries[geometric::RIGHT_BOUNDARY] = make_boundary(geometric::RIGHT_BOUNDARY, 100 + gap, 150, 100 + gap, 750);
        EXPECT_TRUE(rows.is_distant_boundary_pair());
        EXPECT_TRUE(columns.is_distant_boundary_pair());
        EXPECT_EQ(valid_slots(rows), gap == 100 ? "LTRB" : "LTR-");
        EXPECT_EQ(valid_slots(columns), gap == 100 ? "LTRB" : "LT-B");
    }
    BoundingLineArrayWrapper pair_only(1000, 1000);  // without a crossing pair left the refusal is final
    pair_only.boundaries[geometric::TOP_BOUNDARY] = make_boundary(geometric::TOP_BOUNDARY, 100, 100, 900, 100);
    pair_only.boundaries[geometric::BOTTOM_BOUNDARY] = make_boundary(geometric::BOTTOM_BOUNDARY, 100, 150, 800, 150);
    EXPECT_FALSE(pair_only.is_distant_boundary_pair());
    EXPECT_EQ(valid_slots(pair_only), "-T--");

    // A bottom shorter than the top (600 pixels) at an angle to it.
    const std::pair<double, bool> bottoms[] = {{19.99, true}, {20.01, false}, {160.01, true}, {159.99, false}};
    for (const auto& b : bottoms) {
        BoundingLineArrayWrapper wrapper = page_array();
        wrapper.boundaries[geometric::BOTTOM_BOUNDARY] =
            slanted(geometric::BOTTOM_BOUNDARY, 200, 700, b.first, {{200, 700}, {800, 700}});
        EXPECT_EQ(wrapper.check_four_angle_disparity(), b.second) << b.first;
        EXPECT_EQ(valid_slots(wrapper), b.second ? "LTRB" : "LTR-") << b.first;
    }
    // The four-angle check never refuses the vertical pair, even at 30 degrees.
    BoundingLineArrayWrapper leaning = page_array();
    leaning.boundaries[geometric::RIGHT_BOUNDARY] =
        slanted(geometric::RIGHT_BOUNDARY, 900, 100, 60.0, {{900, 100}, {1304, 800}});
    EXPECT_FALSE(leaning.is_small_vertical_angle_disparity());
    EXPECT_TRUE(leaning.check_four_angle_disparity());
    EXPECT_NEAR(leaning.boundary_pair_angle_disparity(geometric::VERTICAL_DIRECTION), 30.0, 1e-9);

    // The left from (100, 100) to y 900 is longer than the top (800), to y 400 shorter.
    struct Corner { double degrees; int left_bottom; bool result; const char* slots; };
    const Corner corners[] = {{45.01, 900, true, "LTRB"},  {44.99, 900, false, "L-RB"}, {44.99, 400, false, "-TRB"},
                              {134.99, 400, true, "LTRB"}, {135.01, 400, false, "-TRB"}};
    for (const Corner& c : corners) {
        BoundingLineArrayWrapper wrapper = page_array();
        BoundingLine left = slanted(geometric::LEFT_BOUNDARY, 100, 100, c.degrees, {{100, 100}});
        left.points.emplace_back(static_cast<int>(left.line.x_at(c.left_bottom)), c.left_bottom);
        wrapper.boundaries[geometric::LEFT_BOUNDARY] = left;
        EXPECT_EQ(wrapper.is_large_cross_boundary_angle(), c.result) << c.degrees;
        EXPECT_EQ(valid_slots(wrapper), c.slots) << c.degrees << " to y " << c.left_bottom;
    }
}

TEST(BoundingLineArrayTest, PairDistanceTruncatesItsRunningSum) {
    BoundingLineArrayWrapper wrapper(100, 100);
    BoundingLine top = support::make_boundary(geometric::TOP_BOUNDARY, 0, 0, 20, 0);
    top.points.insert(top.points.begin() + 1, Geocoordinate<int>(10, 0));
    BoundingLine bottom = support::make_boundary(geometric::BOTTOM_BOUNDARY, 0, 11, 20, 11);
    bottom.line = geometric::GeolineBase(0.0, -1.0, 10.7);
    wrapper.boundaries[geometric::TOP_BOUNDARY] = top;
    wrapper.boundaries[geometric::BOTTOM_BOUNDARY] = bottom;
    // 10.7 three times: 10, 20, 30, not 32.1.
    EXPECT_FLOAT_EQ(wrapper.boundary_pair_distance(geometric::HORIZONTAL_DIRECTION), 10.0f);
    EXPECT_FLOAT_EQ(wrapper.boundary_pair_distance(geometric::VERTICAL_DIRECTION), 0.0f);
}

// A segment end may reach 50 pixels beyond its vertex, and the set's
// confidence becomes 100 less two per pixel of overshoot; past the limit the
// shorter boundary of the corner goes and the confidence is left alone.
TEST(BoundingLineArrayTest, SegmentEndsMayOvershootTheirVertexByTheLimit) {
    enum End { HORIZONTAL, VERTICAL, BOTH };
    struct Case { int corner; End end; int overshoot; bool square, result; const char* slots; double confidence; };
    const Case cases[] = {
        {0, HORIZONTAL, 50, false, true, "LTRB", 0.0},    {0, HORIZONTAL, 51, false, false, "-TRB", 100.0},
        {0, VERTICAL, 25, false, true, "LTRB", 50.0},     {1, HORIZONTAL, 51, false, false, "LT-B", 100.0},
        {2, VERTICAL, 51, true, false, "LTR-", 100.0},    {2, BOTH, 51, true, false, "LTR-", 100.0},
        {2, HORIZONTAL, 51, true, false, "LT-B", 100.0},  {3, VERTICAL, 51, false, false, "-TRB", 100.0},
    };
    for (const Case& c : cases) {
        BoundingLineArrayWrapper wrapper = page_array(c.square ? support::Rectangle{100, 100, 800, 800} : kPage);
        const bool upper = c.corner < 2, leftward = c.corner == 0 || c.corner == 3;
        BoundingLine& horizontal = wrapper.boundaries[upper ? geometric::TOP_BOUNDARY : geometric::BOTTOM_BOUNDARY];
        BoundingLine& vertical = wrapper.boundaries[leftward ? geometric::LEFT_BOUNDARY : geometric::RIGHT_BOUNDARY];
        if (c.end != VERTICAL) horizontal.points[leftward ? 0 : 1].x += leftward ? -c.overshoot : c.overshoot;
        if (c.end != HORIZONTAL) vertical.points[upper ? 0 : 1].y += upper ? -c.overshoot : c.overshoot;
        wrapper.calculate_vertex();
        const BoundingLineArrayWrapper before = wrapper;
        EXPECT_EQ(wrapper.is_correct_corners(static_cast<geometric::BoundingLinePosition>(c.corner)), c.result)
            << "corner " << c.corner << " by " << c.overshoot;
        EXPECT_EQ(valid_slots(wrapper), c.slots) << "corner " << c.corner << " by " << c.overshoot;
        EXPECT_DOUBLE_EQ(wrapper.confidences[0], c.confidence) << "corner " << c.corner << " by " << c.overshoot;
        for (int k = 0; k < 4; ++k) {  // the rest untouched; a cleared slot keeps its type
            const BoundingLine& slot = wrapper.boundaries[k];
            if (slot.is_valid()) {
                EXPECT_TRUE(support::same_boundary(slot, before.boundaries[k])) << k;
            } else {
                EXPECT_TRUE(slot.points.empty() && slot.line.b == 0.0 && slot.type == before.boundaries[k].type);
            }
        }
    }
    // The cross-corner test sets the vertex of a valid pair only.
    BoundingLineArrayWrapper pair = page_array();
    pair.boundaries[geometric::RIGHT_BOUNDARY].clear();
    pair.boundaries[geometric::BOTTOM_BOUNDARY].clear();
    EXPECT_TRUE(pair.is_cross_boundary_corner_correct());
    EXPECT_FLOAT_EQ(pair.vertices[0].y, 100.0f);
    EXPECT_FLOAT_EQ(pair.vertices[1].x, 0.0f);  // no right: untouched
    pair.boundaries[geometric::TOP_BOUNDARY].points[0].x = 40;  // 60 beyond the top-left vertex
    EXPECT_FALSE(pair.is_cross_boundary_corner_correct());
    EXPECT_EQ(valid_slots(pair), "-T--");
}

TEST(BoundingLineArrayTest, ClosureGapsTrustAndTies) {
    // Past the gap limit of 50 a boundary still counts as closed while the gap is below 0.3 of its length.
    const int closure[][3] = {{50, 100, 1}, {51, 100, 0}, {51, 200, 1}, {60, 200, 0}};  // gap, length, closed
    BoundingLineArrayWrapper wrapper = page_array();
    for (const auto& c : closure) {
        wrapper.boundaries[geometric::TOP_BOUNDARY] = make_boundary(geometric::TOP_BOUNDARY, 100, 100, 100 + c[1], 100);
        EXPECT_EQ(wrapper.is_boundary_closed_with_neighbors({0.0, double(c[0]), 0.0, 0.0}, geometric::TOP_BOUNDARY),
                  c[2] == 1)
            << c[0] << " on " << c[1];
    }
    // Each gap is the smaller of its corner's two: left's lower end 30 short,
    // right's upper end 40 short, then the top's first point 10 in.
    BoundingLineArrayWrapper open = page_array();
    open.boundaries[geometric::LEFT_BOUNDARY].points[1].y -= 30;
    open.boundaries[geometric::RIGHT_BOUNDARY].points[0].y += 40;
    std::vector<double> gaps;
    open.calculate_gap_distance(gaps);
    EXPECT_EQ(gaps, std::vector<double>(4, 0.0));
    open.boundaries[geometric::TOP_BOUNDARY].points[0].x += 10;
    open.calculate_gap_distance(gaps);
    EXPECT_EQ(gaps, (std::vector<double>{10.0, 10.0, 0.0, 0.0}));

    // Trusted as a previous stage's: three regular boundaries and less than one grey failure.
    struct Trust { int cleared, weak; float failures; bool trusted; };
    const Trust trust[] = {{2, -1, 0.0f, true}, {-1, -1, 0.0f, false}, {2, 0, 0.0f, false}, {2, -1, 1.0f, false},
                           {2, -1, 0.5f, true}};
    for (const Trust& t : trust) {
        BoundingLineArrayWrapper w = page_array();
        if (t.weak >= 0) w.boundaries[t.weak].type = geometric::WEAK_BOUNDING_LINE;
        if (t.cleared >= 0) w.boundaries[t.cleared].clear();
        w.gray_failures = t.failures;
        EXPECT_EQ(w.can_be_trusted_as_previous_wrapper(), t.trusted) << t.cleared << " " << t.weak << " " << t.failures;
    }

    // Lengths 700.4 and 700 truncate to equal: the second of the pair is superior and inferior.
    BoundingLineArrayWrapper square = page_array(support::Rectangle{100, 100, 800, 800});
    square.boundaries[geometric::TOP_BOUNDARY].points[1] = Geocoordinate<int>(800, 93);
    BoundingLine* bottom = &square.boundaries[geometric::BOTTOM_BOUNDARY];
    EXPECT_EQ(&square.superior_boundary(geometric::HORIZONTAL_DIRECTION), bottom);
    EXPECT_EQ(&square.inferior_boundary(geometric::HORIZONTAL_DIRECTION), bottom);
    EXPECT_EQ(&square.inferior_boundary(geometric::VERTICAL_DIRECTION), &square.boundaries[geometric::RIGHT_BOUNDARY]);
    bottom->clear();
    EXPECT_EQ(&square.superior_boundary(geometric::HORIZONTAL_DIRECTION), &square.boundaries[geometric::TOP_BOUNDARY]);
}

TEST(BoundingLineArrayTest, VanishingPointsOfOppositePairsOnlyOutsideTheFrame) {
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

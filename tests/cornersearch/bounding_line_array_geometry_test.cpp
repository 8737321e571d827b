// The boundary array's vertices and corner checks: a page, its bow tie, the
// overshoot limit one step inside and one step outside.
#include <cmath>

#include <gtest/gtest.h>

#include "cornersearch/bounding_line_array_wrapper.h"
#include "support/boundary_scenes.h"

namespace {

using geometric::Geocoordinate;
using geometric_test::BoundingLine;
using geometric_test::BoundingLineArrayWrapper;
using support::valid_slots;

// 800 wide, 700 high, in an image of 1000 x 1000.
const support::Rectangle kPage{100, 100, 900, 800};

BoundingLineArrayWrapper page_array(const support::Rectangle& page = kPage) {
    BoundingLineArrayWrapper wrapper(1000, 1000);
    support::place_rectangle(wrapper, page);
    return wrapper;
}

}  // namespace

TEST(BoundingLineArrayTest, PerfectRectangleFormsAPageAndItsBowTieDoesNot) {
    BoundingLineArrayWrapper wrapper = page_array();
    wrapper.calculate_vertex();
    EXPECT_FLOAT_EQ(wrapper.vertices[1].x + wrapper.vertices[3].y, 900.0f + 800.0f);
    EXPECT_TRUE(wrapper.is_large_polygon());
    EXPECT_NEAR(wrapper.min_angle(), 90.0, 1e-9);
    EXPECT_TRUE(wrapper.is_large_angle() && wrapper.is_correct_corners() && wrapper.check_four_angle_disparity() &&
                wrapper.is_distant_boundary_pair() && wrapper.is_cross_boundary_corner_correct());
    EXPECT_EQ(valid_slots(wrapper), "LTRB");
    EXPECT_EQ(wrapper.confidences[0], 100.0);
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

// Candidates competing for the four sides on small gray pages: the grey test,
// one more line with its rollback, small polygons kept as candidates, and the
// filling of a slot from candidate lists.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/boundary_scenes.h"
#include "common/basic_image.h"
#include "cornersearch/bounding_line_array_wrapper.h"

namespace {

using support::make_boundary;
using support::page_image;
using support::place_rectangle;
using support::Rectangle;
using support::valid_slots;
using geometric::BoundingLinePosition;
using geometric_test::BoundingLine;
using geometric_test::BoundingLineArrayWrapper;

constexpr int kWidth = 200;
constexpr int kHeight = 160;
// Bright from x 40 to 160 and y 30 to 130: a third of the image.
const Rectangle kPage{40, 30, 160, 130};

class BoundaryUpdatingTest : public ::testing::Test {
protected:
    BoundaryUpdatingTest() : image(page_image(kWidth, kHeight, kPage)) {}

    BoundingLineArrayWrapper page_array() const {
        BoundingLineArrayWrapper wrapper(image);
        place_rectangle(wrapper, kPage);
        return wrapper;
    }

    // The page's side moved outward by `shift` pixels (inward when negative).
    static BoundingLine side_at(BoundingLinePosition side, int shift,
                                geometric::BoundingLineType type = geometric::REGULAR_BOUNDING_LINE) {
        const Rectangle& r = kPage;
        switch (side) {
            case geometric::LEFT_BOUNDARY: return make_boundary(side, r.left - shift, r.top, r.left - shift, r.bottom, type);
            case geometric::TOP_BOUNDARY: return make_boundary(side, r.left, r.top - shift, r.right, r.top - shift, type);
            case geometric::RIGHT_BOUNDARY:
                return make_boundary(side, r.right + shift, r.top, r.right + shift, r.bottom, type);
            default: return make_boundary(side, r.left, r.bottom + shift, r.right, r.bottom + shift, type);
        }
    }

    common::BasicImage image;
};

const BoundingLinePosition kSides[4] = {geometric::LEFT_BOUNDARY, geometric::TOP_BOUNDARY, geometric::RIGHT_BOUNDARY,
                                        geometric::BOTTOM_BOUNDARY};

TEST_F(BoundaryUpdatingTest, GreyDisparityOfOneBoundary) {
    struct Case { BoundingLinePosition side; int shift; bool passes; int disparity; };
    const Case cases[] = {
        {geometric::LEFT_BOUNDARY, 0, true, 170},      {geometric::BOTTOM_BOUNDARY, 0, true, 170},
        {geometric::TOP_BOUNDARY, 3, true, 170},       {geometric::RIGHT_BOUNDARY, -3, true, 170},
        {geometric::TOP_BOUNDARY, 15, false, 0},       {geometric::RIGHT_BOUNDARY, 20, false, 0},  // on the dark side
        {geometric::BOTTOM_BOUNDARY, -40, false, 0},                                               // inside the page
        {geometric::LEFT_BOUNDARY, -120, false, -170},  // the right edge taken for the left: page outside
        {geometric::TOP_BOUNDARY, 25, true, 1000},      // 5 pixels from the image's edge: no samples
    };
    for (const Case& c : cases) {
        BoundingLineArrayWrapper wrapper(image);
        wrapper.boundaries[c.side] = side_at(c.side, c.shift);
        int disparity = -5;
        EXPECT_EQ(wrapper.examine_gray_disparity(c.side, disparity), c.passes) << c.side << " by " << c.shift;
        EXPECT_EQ(disparity, c.disparity) << c.side << " by " << c.shift;
    }
    BoundingLineArrayWrapper empty(image);
    int disparity = -5;
    EXPECT_TRUE(empty.examine_gray_disparity(geometric::TOP_BOUNDARY, disparity));
    EXPECT_EQ(disparity, -5);
}

TEST_F(BoundaryUpdatingTest, GreyTestOfASetClearsFailuresUnlessForgiven) {
    struct Case {
        std::vector<std::pair<BoundingLinePosition, int>> moved;  // side, shift into the dark
        bool strict;
        double confidence;
        bool passes;
        float failures;
        const char* slots;
    };
    const Case cases[] = {
        {{}, true, 100.0, true, 0.0f, "LTRB"},
        {{{geometric::LEFT_BOUNDARY, 20}}, true, 100.0, false, 1.0f, "-TRB"},
        {{{geometric::LEFT_BOUNDARY, 20}}, false, 100.0, true, 1.0f, "LTRB"},
        {{{geometric::LEFT_BOUNDARY, 20}}, false, 69.0, false, 1.0f, "-TRB"},
        {{{geometric::LEFT_BOUNDARY, 20}, {geometric::RIGHT_BOUNDARY, 20}}, false, 100.0, true, 2.0f, "LTRB"},
        {{{geometric::LEFT_BOUNDARY, 20}, {geometric::RIGHT_BOUNDARY, 20}, {geometric::TOP_BOUNDARY, 15}},
         false, 100.0, false, 3.0f, "---B"},
        // The line on the page's far side: a strong step the wrong way round passes by its magnitude.
        {{{geometric::LEFT_BOUNDARY, -120}}, true, 100.0, true, 0.0f, "LTRB"},
    };
    for (const Case& c : cases) {
        BoundingLineArrayWrapper wrapper = page_array();
        for (const auto& move : c.moved) wrapper.boundaries[move.first] = side_at(move.first, move.second);
        wrapper.confidences[0] = c.confidence;
        EXPECT_EQ(wrapper.examine_gray_disparity(c.strict), c.passes) << valid_slots(wrapper) << " " << c.strict;
        EXPECT_EQ(wrapper.gray_failures, c.failures);
        EXPECT_EQ(valid_slots(wrapper), c.slots);
    }
    // Three valid slots are forgiven one failure only.
    BoundingLineArrayWrapper three = page_array();
    three.boundaries[geometric::LEFT_BOUNDARY].clear();
    three.boundaries[geometric::RIGHT_BOUNDARY] = side_at(geometric::RIGHT_BOUNDARY, 20);
    BoundingLineArrayWrapper no_bottom = three;
    EXPECT_TRUE(three.examine_gray_disparity(false));
    three.boundaries[geometric::TOP_BOUNDARY] = side_at(geometric::TOP_BOUNDARY, 15);
    EXPECT_FALSE(three.examine_gray_disparity(false));
    EXPECT_EQ(valid_slots(three), "---B");
    // An empty slot's zero line counts as vertical: without a bottom the top
    // and bottom differ by 90 degrees, and nothing is forgiven.
    no_bottom.boundaries[geometric::LEFT_BOUNDARY] = side_at(geometric::LEFT_BOUNDARY, 0);
    no_bottom.boundaries[geometric::BOTTOM_BOUNDARY].clear();
    EXPECT_FALSE(no_bottom.examine_gray_disparity(false));
    EXPECT_EQ(valid_slots(no_bottom), "LT--");
}

TEST_F(BoundaryUpdatingTest, LargestSmallPolygonCandidateWins) {
    BoundingLineArrayWrapper wrapper(image);
    const Rectangle sets[] = {{60, 50, 100, 80}, {50, 40, 120, 100}, {60, 50, 100, 80}};
    for (int i = 0; i < 3; ++i) {
        place_rectangle(wrapper, sets[i]);
        wrapper.calculate_vertex();
        wrapper.confidences[0] = 10.0 * (i + 1);
        wrapper.keep_as_candidate_boundaries();
    }
    wrapper.boundaries[8 + geometric::LEFT_BOUNDARY].clear();  // the middle set is no longer full
    std::vector<int> starts;
    ASSERT_TRUE(wrapper.is_small_polygon_candiate_boundary_available(starts));
    EXPECT_EQ(starts, std::vector<int>({4, 12}));
    EXPECT_EQ(wrapper.replace_with_small_polygon_candiate_boundary(starts), 7);  // equal areas: the first

    wrapper.boundaries[8 + geometric::LEFT_BOUNDARY] = make_boundary(geometric::LEFT_BOUNDARY, 50, 40, 50, 100);
    ASSERT_TRUE(wrapper.is_small_polygon_candiate_boundary_available(starts));
    EXPECT_EQ(wrapper.replace_with_small_polygon_candiate_boundary(starts), 11);
    EXPECT_EQ(wrapper.confidences[0], 20.0);
    EXPECT_EQ(wrapper.boundaries[geometric::RIGHT_BOUNDARY].points[0].x, 120);
    EXPECT_FLOAT_EQ(wrapper.vertices[2].y, 100.0f);
    EXPECT_EQ(wrapper.replace_with_small_polygon_candiate_boundary({}), -1);
}

TEST_F(BoundaryUpdatingTest, CandidateListsFillASlotSkippingWeakLines) {
    BoundingLineArrayWrapper wrapper(image);
    BoundingLine slot;
    const BoundingLine weak_outer = side_at(geometric::LEFT_BOUNDARY, 10, geometric::WEAK_BOUNDING_LINE);
    const BoundingLine regular = side_at(geometric::LEFT_BOUNDARY, 0);
    const BoundingLine inner = side_at(geometric::LEFT_BOUNDARY, -5);

    // Repeated lines go; a weak first line gives way to the next regular one,
    // which leaves the list with everything before it.
    std::vector<BoundingLine> own = {weak_outer, weak_outer, regular, inner};
    std::vector<BoundingLine> opposite;
    wrapper.update_with_candiate_boundaries(slot, geometric::LEFT_BOUNDARY, own, opposite);
    EXPECT_EQ(slot.points[0].x, 40);
    ASSERT_EQ(own.size(), 1u);
    EXPECT_EQ(own[0].points[0].x, 45);

    // A regular first line is taken and the list stays.
    own = {regular, inner};
    wrapper.update_with_candiate_boundaries(slot, geometric::LEFT_BOUNDARY, own, opposite);
    EXPECT_EQ(own.size(), 2u);

    // Only weak lines: the first stays in the slot.
    own = {weak_outer};
    wrapper.update_with_candiate_boundaries(slot, geometric::LEFT_BOUNDARY, own, opposite);
    EXPECT_EQ(slot.type, geometric::WEAK_BOUNDING_LINE);

    // Nothing of its own: the opposite list's last line, if it holds two.
    const BoundingLine right_outer = side_at(geometric::RIGHT_BOUNDARY, 10);
    const BoundingLine right = side_at(geometric::RIGHT_BOUNDARY, 0);
    const BoundingLine right_weak = side_at(geometric::RIGHT_BOUNDARY, -10, geometric::WEAK_BOUNDING_LINE);
    BoundingLine untouched = side_at(geometric::LEFT_BOUNDARY, 3);
    own.clear();
    opposite = {right};
    wrapper.update_with_candiate_boundaries(untouched, geometric::LEFT_BOUNDARY, own, opposite);
    EXPECT_EQ(untouched.points[0].x, 37);
    struct Case { std::vector<BoundingLine> opposite; int x; };  // x of the line the slot takes
    const Case cases[] = {
        {{right_outer, right}, 160},
        {{right_outer, right_weak}, 150},          // one regular line before it: the weak one is kept
        {{right_outer, right, right_weak}, 160},   // two: the nearest regular one
    };
    for (const Case& c : cases) {
        std::vector<BoundingLine> list = c.opposite;
        wrapper.update_with_candiate_boundaries(slot, geometric::LEFT_BOUNDARY, own, list);
        EXPECT_EQ(slot.points[0].x, c.x);
        EXPECT_EQ(slot.position, geometric::RIGHT_BOUNDARY);  // repaired by the combination
    }
}

}  // namespace

// The line stage on page photos built in code: completing what an earlier
// stage left, and corners by vanishing points beyond the frame.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "cornersearch/bounding_edge_registration.h"
#include "cornersearch/corner_detector_via_lsd.h"
#include "support/boundary_scenes.h"
#include "support/errors.h"
#include "support/images.h"

namespace geometric_test {
namespace {

using support::Corners;
using support::worst_corner_error;

// An earlier stage found three sides of the page and missed one: the stage
// offers the missing side's family, longest first (the opposite side is the
// longest and is rolled back), and completes the page at its true corners.
TEST(CornerDetectorViaLsd, CompletesTheSideAnEarlierStageMissed) {
    const support::Quad page = support::quad(160, 100, 660, 60, 720, 540, 100, 500);
    const common::BasicImage photo = support::photo(800, 600, page);
    // Side k runs from corner k to corner k + 1 in the order top, right, bottom, left.
    const geometric::BoundingLinePosition sides[4] = {geometric::TOP_BOUNDARY, geometric::RIGHT_BOUNDARY,
                                                      geometric::BOTTOM_BOUNDARY, geometric::LEFT_BOUNDARY};
    for (int missing = 0; missing < 4; ++missing) {
        SCOPED_TRACE(missing);
        auto earlier = std::make_shared<BoundingLineArrayWrapper>(photo, true);
        for (int k = 0; k < 4; ++k) {
            if (k == missing) continue;
            const support::Point& p = page[k];
            const support::Point& q = page[(k + 1) % 4];
            earlier->boundaries[sides[k]] = support::make_boundary(sides[k], static_cast<int>(p.x), static_cast<int>(p.y),
                                                                   static_cast<int>(q.x), static_cast<int>(q.y));
        }
        ASSERT_TRUE(earlier->can_be_trusted_as_previous_wrapper());
        BoundingLineArrayWrapper wrapper(photo, true);
        wrapper.previous_wrapper = earlier;
        ASSERT_EQ(CornerDetectorViaLsd(wrapper).pick_up_boundaries(), 0);
        EXPECT_TRUE(wrapper.are_four_boundaries_valid());
        EXPECT_GT(wrapper.confidences[0], 50.0);
        EXPECT_LE(worst_corner_error(Corners(wrapper.vertices.begin(), wrapper.vertices.begin() + 4), page), 4.0);
    }
}

// The line stage alone: a page in full view, and one whose bottom-right
// corner lies beyond the frame, its right and bottom sides cut by the
// border. Segments that reach the border give no anchor, so the cut sides
// pass through the vanishing points and the far ends of the other sides, and
// meet at the true corner outside the image.
TEST(CornerDetectorViaLsd, FindsCornersByVanishingPointsBeyondTheFrame) {
    // The upright page's families are exactly parallel: its sides run at 0
    // and 90 degrees through the anchors.
    const support::Quad pages[] = {support::quad(160, 100, 660, 60, 720, 540, 100, 500),
                                   support::quad(160, 100, 700, 110, 840, 700, 150, 520),
                                   support::quad(120, 80, 680, 80, 680, 520, 120, 520)};
    for (const support::Quad& page : pages) {
        const common::BasicImage photo = support::photo(800, 600, page);
        OperationalBoundingEdgeRegistration search(OperationalBoundingEdgeRegistration::LINE_SEARCH);
        Corners corners;
        ASSERT_EQ(search.run_projective_registration(photo, corners), 1);
        EXPECT_EQ(search.method_code, 300);
        EXPECT_LE(worst_corner_error(corners, page), 6.0);
        ASSERT_NE(search.previous_wrapper, nullptr);
        Corners again;
        ASSERT_EQ(search.run_projective_registration(photo, again), 1);
        for (std::size_t k = 0; k < 4; ++k) EXPECT_TRUE(again[k].x == corners[k].x && again[k].y == corners[k].y);
    }
}

// Short of a family of two lines there is no vanishing point, and the stage
// declines: a page with its right side out of view has one vertical edge.
TEST(CornerDetectorViaLsd, DeclinesWithASingleLineInAFamily) {
    const common::BasicImage photo = support::photo(800, 600, support::quad(160, 100, 900, 80, 900, 520, 100, 500));
    BoundingLineArrayWrapper wrapper(photo, true);
    CornerDetectorViaLsd detector(wrapper);
    EXPECT_EQ(detector.pick_up_boundaries(), -1);
    EXPECT_EQ(detector.manager.vertical_lines.size(), 1u);
    for (const auto& vertex : wrapper.vertices) EXPECT_EQ(vertex.x + vertex.y, 0.0f);
}

// Four sides that come out parallel (here all through one vanishing point
// and the one anchor left at the origin) give no corners: the stage fails
// rather than answer the zero vertices.
TEST(CornerDetectorViaLsd, ParallelNeighbouringSidesGiveNoCorners) {
    const common::BasicImage flat = support::flat_image(60, 80, 128);
    BoundingLineArrayWrapper wrapper(flat, true);
    CornerDetectorViaLsd detector(wrapper);
    geometric::VanishingPointOutput found;
    found.status = 1;
    const geometric::Geocoordinate<double> point(100.0, 50.0);
    EXPECT_FALSE(detector.generate_boundary_corners_based_on_vps(point, point, found, found));
    for (const auto& vertex : wrapper.vertices) EXPECT_EQ(vertex.x + vertex.y, 0.0f);
}

TEST(LineSegmentManager, DetectsOnGrayImagesOnly) {
    for (common::ImageType type : {common::BINARY, common::RGB, common::BGRA}) {
        const common::BasicImage image(40, 50, type);
        CornerDetectorViaLsd::LineSegmentManager manager;
        EXPECT_EQ(support::thrown_text<const char*>([&] { manager.generate(image); }),
                  "line segment detection needs an 8-bit gray image") << type;
    }
}

TEST(LineSegmentManager, PeaksOfTheAngleHistogram) {
    struct Case {
        std::vector<std::pair<int, float>> cells;  // angle, height
        int horizontal, vertical;
    };
    const Case cases[] = {
        // The middle of a run of equal highest cells; the vertical one first.
        {{{88, 5}, {89, 5}, {90, 5}, {91, 5}, {3, 2}}, 3, 89},
        // 176 lies within 45 degrees of 2 across the wrap: the next peak is taken.
        {{{2, 5}, {176, 4}, {95, 1}}, 2, 95},
        // A run up to the last cell counts to its end.
        {{{177, 5}, {178, 5}, {179, 5}, {90, 1}}, 178, 90},
        // A second peak in the vertical range still fills the other output.
        {{{60, 5}, {120, 4}}, 120, 60},
        // The vertical range holds both its ends, 45 and 135.
        {{{45, 5}, {150, 2}}, 150, 45},
        {{{135, 5}, {20, 2}}, 20, 135},
    };
    CornerDetectorViaLsd::LineSegmentManager manager;
    for (const Case& c : cases) {
        std::vector<float> histogram(180, 0.0f);
        for (const auto& cell : c.cells) histogram[cell.first] = cell.second;
        int horizontal = -1, vertical = -1;
        EXPECT_TRUE(manager.find_hor_ver_angle_peak(histogram, horizontal, vertical, 21));
        EXPECT_EQ(horizontal, c.horizontal);
        EXPECT_EQ(vertical, c.vertical);
    }
}

// The inner frame is 5 pixels in from every side; ties between the ends of a
// segment go to the second end for the smallest, the first for the largest.
TEST(LineSegmentManager, InnerFrameAndExtremeEnds) {
    CornerDetectorViaLsd::LineSegmentManager manager;
    manager.minimum_x = manager.minimum_y = 5;
    manager.maximum_x = 94;
    manager.maximum_y = 74;
    const auto add = [&manager](int x1, int y1, int x2, int y2) {
        manager.lines.emplace_back(geometric::GeolineBase(),
                                   std::vector<geometric::Geocoordinate<int>>{{x1, y1}, {x2, y2}});
        return static_cast<int>(manager.lines.size()) - 1;
    };
    EXPECT_TRUE(manager.is_near_boundary(add(4, 20, 50, 20)));
    EXPECT_TRUE(manager.is_near_boundary(add(50, 20, 95, 20)));
    EXPECT_TRUE(manager.is_near_boundary(add(50, 75, 50, 20)));
    EXPECT_FALSE(manager.is_near_boundary(add(5, 5, 94, 74)));
    const int tie = add(30, 40, 30, 40);
    geometric::Geocoordinate<int> point;
    manager.lines[tie].points[1].y = 40;
    manager.lines[tie].points[0].y = 41;
    EXPECT_EQ(manager.left_most(tie, point), 30);
    EXPECT_EQ(point.y, 40);  // the second end
    EXPECT_EQ(manager.right_most(tie, point), 30);
    EXPECT_EQ(point.y, 41);  // the first end
    const int level = add(10, 50, 40, 50);
    manager.top_most(level, point);
    EXPECT_EQ(point.x, 40);  // the second end
    manager.bottom_most(level, point);
    EXPECT_EQ(point.x, 10);  // the first end
    const int slanted = add(10, 30, 70, 60);
    EXPECT_EQ(manager.top_most(slanted, point), 30);
    EXPECT_EQ(manager.bottom_most(slanted, point), 60);
    EXPECT_EQ(point.x, 70);
}

}  // namespace
}  // namespace geometric_test

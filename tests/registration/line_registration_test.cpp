// The driver's edge search: the staged search's sides as bounding lines.
#include <gtest/gtest.h>

#include "cornersearch/page_photos.h"
#include "registration/line_registration.h"

namespace geometric_test {
namespace {

BoundingLine side(geometric::BoundingLinePosition position, std::vector<geometric::Geocoordinate<int>> points) {
    BoundingLine line;
    line.position = position;
    line.line = geometric::GeolineBase(1.0, 0.0, 0.0);
    line.points = std::move(points);
    return line;
}

TEST(LineRegistration, SidesHuggingTheImageBorderAreDropped) {
    BoundingLineArrayWrapper wrapper(100, 80);
    wrapper.boundaries[geometric::LEFT_BOUNDARY] = side(geometric::LEFT_BOUNDARY, {{3, 10}, {4, 70}});   // mean x 3
    wrapper.boundaries[geometric::TOP_BOUNDARY] = side(geometric::TOP_BOUNDARY, {{10, 5}, {90, 5}});     // mean y 5 stays
    wrapper.boundaries[geometric::RIGHT_BOUNDARY] = side(geometric::RIGHT_BOUNDARY, {});                 // mean 0 stays
    wrapper.boundaries[geometric::BOTTOM_BOUNDARY] = side(geometric::BOTTOM_BOUNDARY, {{10, 76}, {90, 76}});  // > 75
    LineRegistration::clean_border_sides(wrapper);
    EXPECT_FALSE(wrapper.boundaries[geometric::LEFT_BOUNDARY].is_valid());
    EXPECT_TRUE(wrapper.boundaries[geometric::LEFT_BOUNDARY].points.empty());
    EXPECT_TRUE(wrapper.boundaries[geometric::TOP_BOUNDARY].is_valid());
    EXPECT_TRUE(wrapper.boundaries[geometric::RIGHT_BOUNDARY].is_valid());
    EXPECT_FALSE(wrapper.boundaries[geometric::BOTTOM_BOUNDARY].is_valid());
    // An image at most 4 pixels wide loses even a right side without support.
    BoundingLineArrayWrapper narrow(4, 80);
    narrow.boundaries[geometric::RIGHT_BOUNDARY] = side(geometric::RIGHT_BOUNDARY, {});
    LineRegistration::clean_border_sides(narrow);
    EXPECT_FALSE(narrow.boundaries[geometric::RIGHT_BOUNDARY].is_valid());
}

TEST(LineRegistration, TranslatesTheFourSidesOfAPage) {
    const common::BasicImage photo =
        page_photos::photo(800, 600, page_photos::quad(160, 100, 660, 60, 720, 540, 100, 500));
    LineRegistration registration(&photo, OperationalBoundingEdgeRegistration::BINARY_EDGE_SEARCH);
    EXPECT_EQ(registration.run_registration(), geometric::REGISTRATION_TWO_VANISHING_POINTS);
    ASSERT_EQ(registration.corners.size(), 4u);
    EXPECT_GT(registration.output_width, 500);
    EXPECT_GT(registration.output_height, 400);
    ASSERT_EQ(registration.bounding_lines.size(), 4u);
    const geometric::BoundingLineProperty& property = registration.bounding_line_property;
    // In the wrapper's order: left, top, right, bottom.
    EXPECT_EQ(property.left_index, 0);
    EXPECT_EQ(property.top_index, 1);
    EXPECT_EQ(property.right_index, 2);
    EXPECT_EQ(property.bottom_index, 3);
    EXPECT_EQ(property.horizontal_lines, (std::vector<int>{1, 3}));
    EXPECT_EQ(property.vertical_lines, (std::vector<int>{0, 2}));
    EXPECT_GT(property.horizontal_intercept_disparity, 300.0);
    EXPECT_GT(property.vertical_intercept_disparity, 400.0);
    EXPECT_LT(property.horizontal_angle_disparity, 45.0);
    EXPECT_LT(property.vertical_angle_disparity, 45.0);
    EXPECT_EQ(registration.bounding_lines[1].position, geometric::TOP_BOUNDARY);
    // The corners exist already: the edge corner search only confirms them.
    EXPECT_TRUE(registration.perform_edge_corner_searching());
}

TEST(LineRegistration, NoPageLeavesTheCornersAsTheyWereAndItsAnswerStands) {
    common::BasicImage dark(300, 400, common::GRAY);  // all zero: no contour at all
    LineRegistration registration(&dark);
    registration.corners = {{1, 2}, {3, 4}};
    EXPECT_EQ(registration.run_registration(), geometric::REGISTRATION_NO_GEOMETRY);
    ASSERT_EQ(registration.corners.size(), 2u);
    EXPECT_EQ(registration.corners[1].x, 3.0f);
    registration.corners.clear();
    EXPECT_TRUE(registration.bounding_lines.empty());
    EXPECT_EQ(registration.bounding_line_property.left_index, -1);
    // With no corners the base class fails its examination.
    registration.para.use_edge_corners = true;
    EXPECT_FALSE(registration.obtain_corners());
}

}  // namespace
}  // namespace geometric_test

// The driver's edge search: the staged search's sides as bounding lines.
#include <gtest/gtest.h>

#include "support/images.h"
#include "registration/line_registration.h"

namespace geometric_test {
namespace {

TEST(LineRegistration, TranslatesTheFourSidesOfAPage) {
    const common::BasicImage photo =
        support::photo(800, 600, support::quad(160, 100, 660, 60, 720, 540, 100, 500));
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

TEST(LineRegistration, NoPageLeavesNoCornersAndItsAnswerStands) {
    common::BasicImage dark(300, 400, common::GRAY);  // all zero: no contour at all
    LineRegistration registration(&dark);
    EXPECT_EQ(registration.run_registration(), geometric::REGISTRATION_NO_GEOMETRY);
    EXPECT_TRUE(registration.corners.empty());
    EXPECT_TRUE(registration.bounding_lines.empty());
    EXPECT_EQ(registration.bounding_line_property.left_index, -1);
    // With no corners the base class fails its examination.
    registration.para.use_edge_corners = true;
    EXPECT_FALSE(registration.obtain_corners());
}

}  // namespace
}  // namespace geometric_test

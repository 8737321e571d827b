// The text route's vertical direction: margins first, then columns of slim
// blobs; the hybrid run on pages that show text and no page edge; and the
// vertical trust tests' boundaries.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "common/basic_image.h"
#include "registration/feature_registration.h"
#include "registration/hybrid_registration.h"
#include "support/text_pages.h"

using common::BasicImage;
using geometric::Geocoordinate;
using geometric::GeolineBase;
using hybrid::FeatureRegistration;
using hybrid::HybridRegistration;

namespace {

// Text well inside the frame, the paper beyond every side of the image.
support::TextPageSpec text_only_page(double degrees, double tilt, double pan, int ragged) {
    support::TextPageSpec spec;
    spec.left = 150;
    spec.right = 850;
    spec.top = 120;
    spec.lines = 13;
    spec.stem_every = 4;
    spec.ragged = ragged;
    spec.homography = support::turned_homography(degrees, 500.0, 400.0, tilt, pan);
    return spec;
}

double angle_of(double dx, double dy) {
    double angle = std::atan2(dy, dx) * 180.0 / 3.141592653589793;
    if (angle < 0.0) angle += 180.0;
    return angle >= 180.0 ? angle - 180.0 : angle;
}

}  // namespace

// A text-only page in perspective: both directions come from the text and
// the corners are the text box pushed outward. Each corner must lie beyond
// the true corner of the text area and within three character heights (66
// px) of it: the box is pushed out by two character boxes (44 px down, 28
// px across) and its anchors are glyph corners that may stand up to one
// more glyph off a line's end after the homography. The vertical direction
// must agree with the true one at the text's left and right ends within
// 1 degree, the margin solver's own acceptance.
TEST(FeatureVertical, TextOnlyPageInPerspectiveIsStraightenedAroundItsText) {
    for (const int ragged : {0, 6}) {
        const support::TextPageSpec spec = text_only_page(-2.0, 0.0003, 0.0002, ragged);
        const support::TextPage page = support::make_text_page(spec);
        BasicImage input(page.gray);
        HybridRegistration driver(&input);
        ASSERT_EQ(driver.run_program(), 1) << "ragged " << ragged;
        ASSERT_NE(driver.feature_registration, nullptr);
        const geometric::VanishingPointHorVerInfo& found = driver.feature_registration->vanishing_points;
        ASSERT_TRUE(found.vertical.has_vanishing_point || found.vertical.is_parallel) << "ragged " << ragged;

        const double bottom = spec.top + (spec.lines - 1) * spec.line_pitch + spec.body_height;
        const double us[4] = {double(spec.left), double(spec.right), double(spec.right), double(spec.left)};
        const double vs[4] = {double(spec.top), double(spec.top), bottom, bottom};
        const double outward_x[4] = {-1, 1, 1, -1}, outward_y[4] = {-1, -1, 1, 1};
        ASSERT_EQ(driver.corners.size(), 4u);
        for (int k = 0; k < 4; ++k) {
            const Geocoordinate<double> truth = support::apply(spec.homography, us[k], vs[k]);
            const double dx = driver.corners[k].x - truth.x, dy = driver.corners[k].y - truth.y;
            EXPECT_LT(std::hypot(dx, dy), 66.0) << "ragged " << ragged << " corner " << k;
            EXPECT_GE(dx * outward_x[k] + dy * outward_y[k], 0.0) << "ragged " << ragged << " corner " << k;
        }
        for (const double u : {double(spec.left), double(spec.right)}) {
            const Geocoordinate<double> p = support::apply(spec.homography, u, 400.0);
            const Geocoordinate<double> q = support::apply(spec.homography, u, 401.0);
            const double angle = found.vertical.has_vanishing_point
                                     ? angle_of(found.vertical_point.x - p.x, found.vertical_point.y - p.y)
                                     : found.vertical.angle;
            double gap = std::fabs(angle - angle_of(q.x - p.x, q.y - p.y));
            if (gap > 90.0) gap = 180.0 - gap;
            EXPECT_LT(gap, 1.0) << "ragged " << ragged << " at u " << u;
        }
    }
}

// Upright text with upright margins: straight, the answer that needs no warp.
TEST(FeatureVertical, UprightTextIsStraight) {
    const support::TextPage page = support::make_text_page(text_only_page(0.0, 0.0, 0.0, 0));
    BasicImage input(page.gray);
    HybridRegistration driver(&input);
    EXPECT_EQ(driver.run_program(), 2);
}

// A justified column gives the direction by its margins; a ragged one has
// no right margin and leaves it to the columns of stems.
TEST(FeatureVertical, JustifiedTextTakesTheMarginRouteAndRaggedTextTheBlobRoute) {
    struct Case {
        const char* name;
        double degrees, tilt, pan;
        int ragged;
        bool by_margins;
    };
    const Case cases[] = {{"justified, turned", 3.0, 0.0, 0.0, 0, true},
                          {"justified, in perspective", -2.0, 0.0003, 0.0002, 0, true},
                          {"ragged, turned", 3.0, 0.0, 0.0, 6, false},
                          {"ragged, in perspective", -2.0, 0.0003, 0.0002, 6, false}};
    for (const Case& c : cases) {
        const support::TextPage page = support::make_text_page(text_only_page(c.degrees, c.tilt, c.pan, c.ragged));
        BasicImage input(page.gray);
        FeatureRegistration feature(&input);
        std::vector<std::vector<Geocoordinate<float>>> groups;
        ASSERT_TRUE(feature.execute_page_anlysis()) << c.name;
        ASSERT_TRUE(feature.execute_eigen_clustering(groups)) << c.name;
        const int margin = feature.perform_vertical_vp_searching_via_margin_lines(groups);
        EXPECT_EQ(margin != hybrid::DIRECTION_NOTHING, c.by_margins) << c.name;
        if (c.by_margins) continue;
        bool again = true;
        EXPECT_NE(feature.perform_vertical_vp_searching_via_blob_analysis(again), hybrid::DIRECTION_NOTHING) << c.name;
        EXPECT_FALSE(again) << c.name;
    }
}

// Boundaries of the vertical trust tests: equal angles are parallel
// whatever the tolerance; an intercept disparity equal to the span does not
// exceed it; edges leaning alike to opposite sides stand.
TEST(FeatureVertical, VerticalTrustTestsAtTheirBoundaries) {
    BasicImage input(800, 1000, common::GRAY);  // 1000 wide
    FeatureRegistration feature(&input);
    feature.para.registration.vertical_angle_disparity = 0.0f;
    const std::vector<GeolineBase> lines = {{1.0, -0.02, -200.0}, {1.0, -0.02, -700.0}, {1.0, 0.05, -450.0}};
    float first = 0.0f, second = 0.0f;
    int count = 0;
    EXPECT_TRUE(feature.is_blob_line_parallel(lines, {{0, 1}}, first, second, count));
    EXPECT_EQ(count, 500);
    EXPECT_FALSE(feature.is_blob_line_parallel(lines, {{0, 2}}, first, second, count));

    // Left and right edges at 89.5 and 90.5 degrees: alike leans, opposite sides.
    feature.bounding_lines.resize(2);
    feature.bounding_lines[0].line = GeolineBase(1.0, std::tan(0.5 * 3.141592653589793 / 180.0), -100.0);
    feature.bounding_lines[1].line = GeolineBase(1.0, -std::tan(0.5 * 3.141592653589793 / 180.0), -900.0);
    feature.bounding_line_property.left_index = 0;
    feature.bounding_line_property.right_index = 1;
    feature.bounding_line_property.vertical_lines = {0, 1};
    feature.bounding_line_property.vertical_intercept_disparity = 300.0;
    EXPECT_FALSE(feature.is_previous_vertical_detection_trustable(5, 90.0f, 90.0f, 300.0f)) << "no direction held";
    feature.vanishing_points.vertical.is_parallel = true;
    EXPECT_FALSE(feature.is_previous_vertical_detection_trustable(5, 80.0f, 100.0f, 300.0f)) << "limit equals span";
    EXPECT_TRUE(feature.is_previous_vertical_detection_trustable(5, 80.0f, 100.0f, 299.0f));
    EXPECT_TRUE(feature.is_previous_vertical_detection_trustable(30, 89.0f, 91.0f, 500.0f));
    EXPECT_FALSE(feature.is_previous_vertical_detection_trustable(30, 89.0f, 91.0f, 700.0f)) << "limit under half";
}

// The left and right edges join the vertical search when they lean like the
// text within twice the tolerance (ten times with the flag), both ends
// included, the longer edge first; margins are parallel up to exactly the
// vertical tolerance, and then make the vertical direction parallel.
TEST(FeatureVertical, EdgeIndicatorAndParallelMarginsAtTheirLimits) {
    BasicImage input(800, 1000, common::GRAY);
    FeatureRegistration feature(&input);
    feature.para.angle_tolerance = 1.0f;
    std::vector<GeolineBase> lines;
    std::vector<double> weights;
    EXPECT_FALSE(feature.can_provide_ver_boundingline_indicator(lines, weights, 90.0f, 90.0f, true)) << "no edges";
    feature.bounding_lines.resize(2);
    feature.bounding_lines[0].line = GeolineBase(1.0, 0.0, -100.0);  // upright, 100 long
    feature.bounding_lines[0].segment_length = 100;
    feature.bounding_lines[1].line = GeolineBase(1.0, 0.0, -900.0);  // upright, 300 long
    feature.bounding_lines[1].segment_length = 300;
    feature.bounding_line_property.left_index = 0;
    feature.bounding_line_property.right_index = 1;
    feature.bounding_line_property.vertical_lines = {0, 1};
    struct Case {
        float first, second;
        bool flag;
        std::size_t appended;
        double first_c;  // the first appended edge: the longer of two
    };
    for (const Case& c : {Case{92.0f, 88.0f, false, 2, -900.0}, Case{92.5f, 88.0f, false, 1, -900.0},
                          Case{92.5f, 87.5f, false, 0, 0.0}, Case{100.0f, 79.5f, true, 1, -100.0},
                          Case{100.5f, 80.0f, true, 1, -900.0}}) {
        lines.assign(1, GeolineBase(1.0, 0.0, -500.0));
        weights.assign(1, 1.0);
        const bool provided = feature.can_provide_ver_boundingline_indicator(lines, weights, c.first, c.second, c.flag);
        EXPECT_EQ(provided, c.appended > 0) << c.first << " " << c.second;
        ASSERT_EQ(lines.size(), 1 + c.appended) << c.first << " " << c.second;
        EXPECT_EQ(weights.size(), lines.size());
        if (c.appended > 0) {
            EXPECT_EQ(lines[1].c, c.first_c) << c.first << " " << c.second;
        }
    }

    const std::vector<GeolineBase> margins = {GeolineBase(1.0, 0.0, -150.0), GeolineBase(1.0, 0.012, -850.0)};
    const float leaning = static_cast<float>(margins[1].line_angle());
    const float limit = std::fabs(90.0f - leaning);
    ASSERT_GT(limit, 0.5f);
    std::vector<int> selected;
    feature.para.registration.vertical_angle_disparity = std::nextafter(limit, 0.0f);
    EXPECT_FALSE(feature.is_margin_line_parallel(margins, selected));
    EXPECT_FALSE(feature.vanishing_points.vertical.is_parallel);
    EXPECT_FALSE(feature.is_margin_line_parallel({margins[0]}, selected)) << "one margin";
    feature.para.registration.vertical_angle_disparity = limit;
    feature.vanishing_points.vertical.has_vanishing_point = true;
    ASSERT_TRUE(feature.is_margin_line_parallel(margins, selected));
    EXPECT_EQ(selected, (std::vector<int>{0, 1}));
    EXPECT_FALSE(feature.vanishing_points.vertical.has_vanishing_point);
    EXPECT_TRUE(feature.vanishing_points.vertical.is_parallel);
    EXPECT_FLOAT_EQ(feature.vanishing_points.vertical.angle, 0.5f * (90.0f + leaning));
}

// The hybrid run's text search: a page whose edges are out of view gets its
// horizontal direction from the text and corners around the text; a page
// with clear edges keeps the edge result without analysing the text; a
// blank page falls back to no result and the whole image.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "common/basic_image.h"
#include "registration/feature_registration.h"
#include "registration/hybrid_registration.h"
#include "support/images.h"
#include "support/pixels.h"
#include "support/text_pages.h"

using common::BasicImage;
using geometric::Geocoordinate;
using hybrid::HybridRegistration;

namespace {

// Undirected angle of a direction in degrees, in [0, 180).
double direction_angle(double dx, double dy) {
    double angle = std::atan2(dy, dx) * 180.0 / 3.141592653589793;
    if (angle < 0.0) angle += 180.0;
    return angle >= 180.0 ? angle - 180.0 : angle;
}

double angle_gap(double first, double second) {
    const double d = std::fabs(first - second);
    return d > 90.0 ? 180.0 - d : d;
}

bool inside_corners(const std::vector<Geocoordinate<float>>& c, double x, double y) {
    return support::inside(support::quad(c[0].x, c[0].y, c[1].x, c[1].y, c[2].x, c[2].y, c[3].x, c[3].y), x, y);
}

}  // namespace

// Text over the whole frame, the paper running past every side of the image:
// no edge to find. Turned, and turned with perspective, by known
// homographies. The found horizontal direction, a vanishing point or a
// parallel angle, is compared with the true one at both ends of the middle
// text line. Tolerance 0.25 degrees: baselines are bottoms of glyph boxes,
// whole pixels, so over a line of some 800 pixels one pixel of difference
// between its ends is 0.07 degrees, and the lines' fit averages many glyphs;
// the solver itself accepts a rectification error of 3.5 degrees, so a
// wrong consensus lies far outside.
TEST(FeatureRegistration, TextWithoutEdgesGivesTheHorizontalDirectionAndCornersAroundIt) {
    struct Case {
        const char* name;
        double degrees, tilt, pan;
    };
    const Case cases[] = {{"turned", 4.0, 0.0, 0.0}, {"turned in perspective", -3.0, 0.0002, 0.0003}};
    for (const Case& c : cases) {
        support::TextPageSpec spec;
        spec.left = 60;
        spec.right = 940;
        spec.top = 60;
        spec.lines = 15;
        spec.homography = support::turned_homography(c.degrees, 500.0, 400.0, c.tilt, c.pan);
        const support::TextPage page = support::make_text_page(spec);
        BasicImage input(page.gray);
        HybridRegistration driver(&input);
        EXPECT_EQ(driver.run_program(), 1) << c.name;
        ASSERT_NE(driver.feature_registration, nullptr);
        const hybrid::FeatureRegistration& feature = *driver.feature_registration;
        EXPECT_FALSE(feature.edge_result_is_preferred) << c.name;
        ASSERT_NE(feature.page_analysis, nullptr) << c.name;
        const geometric::VanishingPointHorVerInfo& found = feature.vanishing_points;
        ASSERT_TRUE(found.horizontal.has_vanishing_point || found.horizontal.is_parallel) << c.name;

        const double v = spec.top + 7 * spec.line_pitch + spec.body_height;
        for (const double u : {double(spec.left), double(spec.right)}) {
            const Geocoordinate<double> p = support::apply(spec.homography, u, v);
            const Geocoordinate<double> q = support::apply(spec.homography, u + 1.0, v);
            const double truth = direction_angle(q.x - p.x, q.y - p.y);
            const double angle = found.horizontal.has_vanishing_point
                                     ? direction_angle(found.horizontal_point.x - p.x, found.horizontal_point.y - p.y)
                                     : found.horizontal.angle;
            EXPECT_LT(angle_gap(angle, truth), 0.25) << c.name << " at u " << u;
        }
        // The page is drawn around the text, never through it.
        ASSERT_EQ(driver.corners.size(), 4u);
        for (const geometric::Geobox<int>& box : page.glyph_boxes) {
            if (box.right < box.left) continue;  // drawn wholly outside the image
            for (const double x : {double(box.left), double(box.right)})
                for (const double y : {double(box.top), double(box.bottom)})
                    ASSERT_TRUE(inside_corners(driver.corners, x, y)) << c.name << " glyph at " << x << ", " << y;
        }
    }
}

// A page with text on a dark desk: its edges close a frame that covers the
// image, so the edge result stands at once, no page analysis is made, and
// the corners are the edge search's own.
TEST(FeatureRegistration, ClearEdgesKeepTheEdgeResultWithoutPageAnalysis) {
    const support::Quad page = support::quad(120, 90, 870, 70, 900, 730, 100, 700);
    BasicImage input = support::photo(1000, 800, page);
    HybridRegistration driver(&input);
    EXPECT_EQ(driver.run_program(), 1);
    ASSERT_NE(driver.feature_registration, nullptr);
    const hybrid::FeatureRegistration& feature = *driver.feature_registration;
    EXPECT_TRUE(feature.edge_result_is_preferred);
    EXPECT_EQ(feature.has_four_bounding_lines, 1);
    EXPECT_EQ(feature.page_analysis, nullptr);
    ASSERT_EQ(driver.corners.size(), 4u);
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(driver.corners[k].x, driver.edge_registration->corners[k].x) << k;
        EXPECT_EQ(driver.corners[k].y, driver.edge_registration->corners[k].y) << k;
        EXPECT_NEAR(driver.corners[k].x, page[k].x, 4.0) << k;
        EXPECT_NEAR(driver.corners[k].y, page[k].y, 4.0) << k;
    }
}

// Nothing to find by edges or text, gray or binarized: no result, which
// the exported functions report as 3, and the whole image as the corners.
TEST(FeatureRegistration, BlankPageFallsBackToTheWholeImage) {
    BasicImage input = support::flat_image(400, 600, 200);
    HybridRegistration driver(&input);
    EXPECT_EQ(driver.run_program(), -1);
    ASSERT_NE(driver.feature_registration, nullptr);
    EXPECT_EQ(driver.feature_registration->page_analysis, nullptr);
    ControlPointCorners corners;
    driver.obtain_four_corners(corners);
    const int x[4] = {0, 599, 599, 0}, y[4] = {0, 0, 399, 399};
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(corners.x[k], x[k]) << k;
        EXPECT_EQ(corners.y[k], y[k]) << k;
    }
}

// The vertical flags from a solver code; code 4 stands only for a direction
// that is parallel already, and otherwise becomes 0.
TEST(FeatureRegistration, VerticalFlagsFromASolverCode) {
    BasicImage image = support::flat_image(100, 100, 200);
    hybrid::FeatureRegistration feature(&image);
    struct Case {
        int code;
        bool was_parallel, answer, vp, parallel;
        int code_after;
    };
    const Case cases[] = {{1, false, true, true, false, 1}, {2, false, true, false, true, 2},
                          {0, true, false, true, true, 0}, {4, true, true, true, true, 4},
                          {4, false, false, false, false, 0}, {3, false, true, true, false, 3}};
    for (const Case& c : cases) {
        feature.vanishing_points.vertical.has_vanishing_point = true;
        feature.vanishing_points.vertical.is_parallel = c.was_parallel;
        geometric::VanishingPointOutput output;
        output.status = c.code;
        EXPECT_EQ(feature.set_vp_property(output), c.answer) << c.code;
        EXPECT_EQ(feature.vanishing_points.vertical.has_vanishing_point, c.vp) << c.code;
        EXPECT_EQ(feature.vanishing_points.vertical.is_parallel, c.parallel) << c.code;
        EXPECT_EQ(output.status, c.code_after) << c.code;
    }
}

// Anchors pushed out by two character boxes; top and bottom stop at the
// image, left and right too unless they may leave it by one character width.
TEST(FeatureRegistration, CornerExpansionStopsAtTheImageOrOneCharacterBeyond) {
    for (const bool may_leave : {false, true}) {
        const hybrid::CornerExpansion e{200, 100, 0.0f, may_leave, 1, 2, 10, 8};
        Geocoordinate<float> left(50, 50), right(150, 50), top(100, 30), bottom(100, 70);
        e.expand_left(left), e.expand_right(right), e.expand_top(top), e.expand_bottom(bottom);
        EXPECT_EQ(left.x, 30.0f);
        EXPECT_EQ(right.x, 170.0f);
        EXPECT_EQ(top.y, 14.0f);
        EXPECT_EQ(bottom.y, 86.0f);
        Geocoordinate<float> far_left(5, 50), far_right(195, 50), far_top(100, 5), far_bottom(100, 95);
        e.expand_left(far_left), e.expand_right(far_right), e.expand_top(far_top), e.expand_bottom(far_bottom);
        EXPECT_EQ(far_left.x, may_leave ? -10.0f : 0.0f);
        EXPECT_EQ(far_right.x, may_leave ? 209.0f : 199.0f);
        EXPECT_EQ(far_top.y, 0.0f);
        EXPECT_EQ(far_bottom.y, 99.0f);
    }
}

namespace {

// A text search on a 1000 x 800 page whose edge search left a top and a
// bottom edge at 1 degree, 600 pixels apart, with a horizontal vanishing point.
struct EdgesAtOneDegree {
    EdgesAtOneDegree(bool dominant, int length) : image(support::flat_image(800, 1000, 200)), feature(&image) {
        const double slope = std::tan(1.0 * 3.141592653589793 / 180.0);
        for (const double c : {100.0, 700.0}) {
            geometric::BoundingLine edge;
            edge.position = c < 400.0 ? geometric::TOP_BOUNDARY : geometric::BOTTOM_BOUNDARY;
            edge.line = geometric::GeolineBase(slope, -1.0, c);
            edge.segment_length = length;
            edge.has_dominant_segment = dominant;
            feature.bounding_lines.push_back(edge);
        }
        feature.bounding_line_property.top_index = 0;
        feature.bounding_line_property.bottom_index = 1;
        feature.bounding_line_property.horizontal_intercept_disparity = 600.0;
        feature.vanishing_points.horizontal.has_vanishing_point = true;
    }
    BasicImage image;
    hybrid::FeatureRegistration feature;
};

}  // namespace

// When the edges' horizontal direction stands against the text: the text's
// angles within 1.1 degrees of the edges, 2 or 4 times that for few lines or
// lines close together, always within the edges' distance.
TEST(FeatureRegistration, EdgesStandAgainstTextWithinTheToleranceForItsWealth) {
    struct Case {
        const char* name;
        bool dominant;
        int length, lines;
        float text_angle, span, end_distance;
        bool formed, answer;
    };
    const Case cases[] = {
        {"few lines, 4 x tolerance", true, 50, 5, 5.3f, 100, 100, true, true},
        {"few lines, beyond 4 x", true, 50, 5, 5.5f, 100, 100, true, false},
        {"few lines, 2 x without dominant edges", false, 50, 5, 3.1f, 100, 100, true, true},
        {"few lines, beyond 2 x", false, 50, 5, 3.3f, 100, 100, true, false},
        {"beyond, but long parallel edges", false, 101, 5, 3.3f, 100, 100, true, true},
        {"edges no farther apart than the text", true, 500, 5, 1.0f, 600, 100, true, false},
        {"many clean lines, plain tolerance", true, 50, 60, 2.05f, 100, 100, true, true},
        {"many clean lines, beyond", true, 50, 60, 2.15f, 100, 100, true, false},
        {"many rough lines, 4 x", true, 50, 60, 5.3f, 100, 100, false, true},
        {"some lines spread wide, plain", true, 50, 30, 2.15f, 300, 100, true, false},
        {"some lines close together, 4 x", true, 50, 30, 5.3f, 270, 400, true, true},
        {"some lines, ends far apart, plain", true, 50, 30, 2.15f, 270, 401, true, false},
    };
    for (const Case& c : cases) {
        EdgesAtOneDegree scene(c.dominant, c.length);
        EXPECT_EQ(scene.feature.is_previous_horizontal_detection_trustable(c.lines, c.text_angle, c.text_angle, c.span,
                                                                           c.end_distance, c.formed),
                  c.answer)
            << c.name;
    }
    EdgesAtOneDegree without_direction(true, 500);
    without_direction.feature.vanishing_points.horizontal.has_vanishing_point = false;
    EXPECT_FALSE(without_direction.feature.is_previous_horizontal_detection_trustable(5, 1.0f, 1.0f, 100, 100, true));
}

// The pair of text lines that tells whether they are parallel: the outer
// pair, or the second when its indices lie farther apart and it spans more;
// the line of the higher index first.
TEST(FeatureRegistration, TextLinesParallelByTheWiderPair) {
    BasicImage image = support::flat_image(800, 1000, 200);
    hybrid::FeatureRegistration feature(&image);
    const double t01 = std::tan(0.1 * 3.141592653589793 / 180.0);
    const std::vector<geometric::GeolineBase> lines = {
        {0.0, -1.0, 100.0}, {t01, -1.0, 200.0}, {0.0, -1.0, 300.0}, {4 * t01, -1.0, 700.0}};
    struct Case {
        std::vector<int> order;
        float span;
        bool parallel;
    };
    const Case cases[] = {{{0, 2, 1, 2}, 200.0f, true},    // second pair no farther apart in index
                          {{1, 2, 0, 3}, 600.0f, false},   // second pair wider: 0.4 degrees apart
                          {{0, 1, 2, 3}, 100.0f, true}};   // the outer pair, 0.1 degrees apart
    for (const Case& c : cases) {
        float first = -1.0f, second = -1.0f, span = -1.0f;
        EXPECT_EQ(feature.is_text_line_parallel(lines, c.order, first, second, span), c.parallel);
        EXPECT_EQ(span, c.span);
    }
    float first = -1.0f, second = -1.0f, span = -1.0f;
    feature.is_text_line_parallel(lines, {0, 3, 0, 3}, first, second, span);
    EXPECT_FLOAT_EQ(first, static_cast<float>(lines[3].line_angle()));
    EXPECT_EQ(second, 0.0f);
}

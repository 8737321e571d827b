// Text blobs: shape from second moments worked out by hand, and the selection
// of text blobs by area, border, count and slimness, with the bottom points
// served to text lines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <list>
#include <vector>

#include "pageanalysis/text_blob_examiner.h"
#include "pageanalysis/text_blob_filter.h"
#include "support/blob_scenes.h"

using namespace geometric;
using namespace support;

namespace {

constexpr double kPi = 3.14159265358979323846;

// Angle of the main axis in image terms and eccentricity, from moments a, b
// and c by the half-angle formula and the eigenvalues, a route apart from
// the examiner's.
double axis_angle(double a, double b, double c) {
    const double theta = 0.5 * std::atan2(2.0 * c, a - b) * 180.0 / kPi;
    return theta > 0.0 ? 180.0 - theta : -theta;
}
double eigen_eccentricity(double a, double b, double c) {
    const double root = std::sqrt((a - b) * (a - b) + 4.0 * c * c);
    const double major = 0.5 * (a + b + root);
    const double minor = 0.5 * (a + b - root);
    return std::sqrt(1.0 - minor / major);
}

struct OneBlob {
    ConnectedComponentCalculator calculator;
    TextBlob blob;
    TextBlobExaminer::TextBlobFeature feature;

    explicit OneBlob(const std::vector<std::pair<int, int>>& pixels) {
        common::BasicImage image(40, 40, common::BINARY);
        draw_pixels(image, pixels);
        const std::list<TextBlob> blobs = form_blobs(calculator, image);
        EXPECT_EQ(blobs.size(), 1u);
        blob = blobs.front();
        TextBlobExaminer::get_features_from_blob(blob, feature);
    }
};

}  // namespace

// Moments by hand, with 1/12 for the pixel's own spread:
//   staircase of 5 runs of 2: a = 25/3, b = 25/12, c = +-4;
//   diagonal of 10 pixels: a = b = 100/12, c = +-99/12;
//   upright bar 1 x 12: a = 1/12, b = 144/12, c = 0: eccentricity sqrt(143 / 144).
TEST(TextBlobExaminerTest, AnglesAndEccentricitiesMatchTheMomentsWorkedOutByHand) {
    struct Case {
        const char* name;
        std::vector<std::pair<int, int>> pixels;
        double a, b, c;
        double angle;
    };
    const double stair = axis_angle(25.0 / 3.0, 25.0 / 12.0, 4.0);
    const Case cases[] = {
        {"rising staircase", staircase(5, 5, 5, 2, true), 25.0 / 3.0, 25.0 / 12.0, 4.0, stair},
        {"falling staircase", staircase(5, 5, 5, 2, false), 25.0 / 3.0, 25.0 / 12.0, -4.0, 180.0 - stair},
        {"rising diagonal", staircase(5, 5, 10, 1, true), 100.0 / 12.0, 100.0 / 12.0, 99.0 / 12.0, 135.0},
        {"falling diagonal", staircase(5, 5, 10, 1, false), 100.0 / 12.0, 100.0 / 12.0, -99.0 / 12.0, 45.0},
    };
    EXPECT_NEAR(stair, 180.0 - 26.00063, 1e-4);  // atan(1.28) / 2 is 26.00063 degrees
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const OneBlob one(c.pixels);
        EXPECT_NEAR(one.feature.variance_x, c.a, 1e-12);
        EXPECT_NEAR(one.feature.variance_y, c.b, 1e-12);
        EXPECT_NEAR(one.feature.covariance, c.c, 1e-12);
        EXPECT_NEAR(TextBlobExaminer::get_blob_angle(one.feature), c.angle, 1e-4);
        EXPECT_NEAR(TextBlobExaminer::get_blob_eccentricity(one.feature), eigen_eccentricity(c.a, c.b, c.c), 1e-12);
    }
    // An upright bar is at 90; a flat bar's axis angle comes out as 180, not 0: t = 0 is not negative.
    const OneBlob upright(steep_staircase(10, 5, 12, 100));
    EXPECT_EQ(TextBlobExaminer::get_blob_angle(upright.feature), 90.0f);
    EXPECT_NEAR(TextBlobExaminer::get_blob_eccentricity(upright.feature), std::sqrt(143.0 / 144.0), 1e-12);
    EXPECT_EQ(TextBlobExaminer::get_blob_angle(OneBlob(staircase(5, 5, 1, 12, true)).feature), 180.0f);
}

namespace {

std::vector<unsigned> sorted_areas(const std::list<TextBlob>& blobs) {
    std::vector<unsigned> areas;
    for (const TextBlob& blob : blobs) areas.push_back(blob.area);
    std::sort(areas.begin(), areas.end());
    return areas;
}

TextBlob blob_with_box(int left, int top, int right, int bottom) {
    return TextBlob(Geobox<int>{right, bottom, left, top}, 1, nullptr);
}

// A page of blobs with the given areas, blocks of width 10 side by side in
// rows of 8, none touching the border.
struct AreaPage {
    ConnectedComponentCalculator calculator;
    TextBlobFilter filter;

    explicit AreaPage(const std::vector<unsigned>& areas) : filter(8 * 14 + 2, 200) {
        common::BasicImage image(filter.height, filter.width, common::BINARY);
        for (std::size_t i = 0; i < areas.size(); ++i)
            draw_area(image, 2 + static_cast<int>(i % 8) * 14, 2 + static_cast<int>(i / 8) * 14, 10,
                      static_cast<int>(areas[i]));
        filter.regular_blobs = form_blobs(calculator, image);
    }
};

}  // namespace

// Mean 320 / 16 = 20: the bounds 0.3 m = 6 and 5 m = 100 are exact in single
// precision, so 6 and 100 stay and 5 and 101 go. The selection needs more
// than the minimum count of regular blobs.
TEST(TextBlobFilterTest, AreaBoundsAreRegularAndTheCountMustExceedTheMinimum) {
    std::vector<unsigned> areas = {5, 6, 100, 101};
    areas.insert(areas.end(), 12, 9u);
    AreaPage page(areas);
    EXPECT_EQ(page.filter.obtain_text_area_mean(), 20.0f);
    EXPECT_TRUE(page.filter.select_blob_for_horizontal_vp());
    std::vector<unsigned> regular(12, 9u);
    regular.insert(regular.begin(), 6);
    regular.push_back(100);
    EXPECT_EQ(sorted_areas(page.filter.regular_blobs), regular);
    EXPECT_EQ(sorted_areas(page.filter.irregular_blobs), (std::vector<unsigned>{5, 101}));
    for (unsigned count : {10u, 11u}) {
        AreaPage equal(std::vector<unsigned>(count, 12u));
        EXPECT_EQ(equal.filter.select_blob_for_horizontal_vp(), count > 10u) << count;
    }
    // The upper median 40 of 13, 40, 40, 201 keeps 13 (above 12) and throws
    // out 201 (above 200), where the mean 73.5 would do the opposite.
    AreaPage median({13, 40, 40, 201});
    median.filter.para.use_median = true;
    median.filter.para.minimum_text_blobs = 2;
    EXPECT_TRUE(median.filter.select_blob_for_horizontal_vp());
    EXPECT_EQ(sorted_areas(median.filter.irregular_blobs), (std::vector<unsigned>{201}));
}

namespace {

// Upright bars 1 x 12 (eccentricity 0.9965, slim at 0.975), upright bars
// 1 x 4 (0.968, slim only at 0.935), and discs, which never are.
struct SlimPage {
    ConnectedComponentCalculator calculator;
    TextBlobFilter filter;

    SlimPage(int tall, int short_bars, int discs, int irregular_tall) : filter(200, 60) {
        common::BasicImage image(filter.height, filter.width, common::BINARY);
        int x = 3;
        for (int i = 0; i < tall; ++i, x += 4) fill_rect(image, x, 3, 1, 12);
        for (int i = 0; i < short_bars; ++i, x += 4) fill_rect(image, x, 3, 1, 4);
        for (int i = 0; i < discs; ++i, x += 12) draw_pixels(image, disc(x + 5, 10, 4));
        x = 3;
        for (int i = 0; i < irregular_tall; ++i, x += 4) fill_rect(image, x, 30, 1, 12);
        for (const TextBlob& blob : form_blobs(calculator, image))
            (blob.box.top >= 30 ? filter.irregular_blobs : filter.regular_blobs).push_back(blob);
    }
};

}  // namespace

TEST(TextBlobFilterTest, VerticalSelectionAnswersByItsThreePasses) {
    struct Case { int tall, short_bars, discs, irregular_tall, answer; std::size_t lines; };
    const Case cases[] = {
        {3, 0, 2, 0, 1, 3},  // pass 1
        {2, 4, 2, 0, 2, 6},  // pass 2 with the lowered threshold
        {2, 3, 0, 0, 3, 5},  // pass 3 keeps what pass 2 found, with no irregular blob
        {1, 0, 0, 1, 3, 2},  // pass 3 adds to pass 2
        {0, 1, 0, 0, 0, 1},
        {0, 0, 5, 3, 3, 3},  // discs never pass; irregular bars do
        {0, 0, 6, 0, 0, 0},
    };
    for (const Case& c : cases) {
        SlimPage page(c.tall, c.short_bars, c.discs, c.irregular_tall);
        std::vector<GeolineBasePoints<float>> lines;
        std::vector<double> eccentricities;
        EXPECT_EQ(page.filter.select_blob_for_vertical_vp(lines, eccentricities), c.answer)
            << c.tall << " " << c.short_bars << " " << c.discs << " " << c.irregular_tall;
        EXPECT_EQ(lines.size(), c.lines);
        EXPECT_EQ(eccentricities.size(), c.lines);
        for (const GeolineBasePoints<float>& line : lines) EXPECT_EQ(line.points.size(), 1u);
    }
}

TEST(TextBlobFilterTest, BottomPointsOfRegularBoxes) {
    TextBlobFilter filter(200, 100);
    filter.regular_blobs.push_back(blob_with_box(2, 3, 5, 7));
    filter.regular_blobs.push_back(blob_with_box(4, 1, 20, 9));
    filter.irregular_blobs.push_back(blob_with_box(30, 30, 40, 40));
    std::vector<Geocoordinate<float>> centres, corners;
    filter.obtain_regular_text_bottom_centers(centres);
    ASSERT_EQ(centres.size(), 2u);
    EXPECT_EQ(centres[0].x, 3.5f);
    EXPECT_EQ(centres[0].y, 7.0f);
    EXPECT_EQ(centres[1].x, 12.0f);
    // The first box holding the point, bounds included; irregular boxes do not count.
    filter.obtain_regular_text_bottom_left({{5.0f, 7.0f}, {5.5f, 7.0f}, {35.0f, 35.0f}}, corners);
    ASSERT_EQ(corners.size(), 3u);
    EXPECT_EQ((std::vector<float>{corners[0].x, corners[0].y, corners[1].x, corners[1].y, corners[2].x, corners[2].y}),
              (std::vector<float>{2, 7, 4, 9, 0, 0}));
}


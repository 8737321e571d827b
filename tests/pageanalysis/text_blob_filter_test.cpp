// Text blob selection: the area bounds, the border, the count limit, the
// three passes for slim blobs and the bottom points served to text lines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <list>
#include <vector>

#include "support/blob_scenes.h"
#include "pageanalysis/text_blob_filter.h"

using namespace geometric;
using namespace support;

namespace {

static_assert(offsetof(TestBlobFilterPara, minimum_text_blobs) == 0, "");
static_assert(offsetof(TestBlobFilterPara, area_floor) == 4, "");
static_assert(offsetof(TestBlobFilterPara, angle_tolerance) == 8, "");
static_assert(offsetof(TestBlobFilterPara, eccentricity_threshold) == 16, "");
static_assert(offsetof(TestBlobFilterPara, lower_area_factor) == 24, "");
static_assert(offsetof(TestBlobFilterPara, upper_area_factor) == 28, "");
static_assert(offsetof(TestBlobFilterPara, use_median) == 32, "");
static_assert(offsetof(SimplePageanalysisPara, angle_tolerance) == 0, "");
static_assert(offsetof(SimplePageanalysisPara, minimum_text_blobs) == 4, "");
static_assert(offsetof(SimplePageanalysisPara, eccentricity_threshold) == 8, "");
static_assert(offsetof(SimplePageanalysisPara, lower_area_factor) == 16, "");
static_assert(offsetof(SimplePageanalysisPara, upper_area_factor) == 20, "");
static_assert(offsetof(SimplePageanalysisPara, use_median) == 24, "");
static_assert(sizeof(SimplePageanalysisPara::use_median) == 4, "");

std::vector<unsigned> areas_of(const std::list<TextBlob>& blobs) {
    std::vector<unsigned> areas;
    for (const TextBlob& blob : blobs) areas.push_back(blob.area);
    return areas;
}

TextBlob blob_with_area(unsigned area) { return TextBlob(Geobox<int>{5, 5, 1, 1}, area, nullptr); }
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

TEST(TextBlobFilterTest, ParametersTakeTheSimpleRecordButKeepTheAreaFloor) {
    TestBlobFilterPara para;
    para.area_floor = 7;
    SimplePageanalysisPara simple;
    simple.angle_tolerance = 5.0f;
    simple.minimum_text_blobs = 3;
    simple.eccentricity_threshold = 0.5;
    simple.lower_area_factor = 0.1f;
    simple.upper_area_factor = 9.0f;
    simple.use_median = 2;
    para = simple;
    EXPECT_EQ(para.area_floor, 7u);
    EXPECT_EQ(para.angle_tolerance, 5.0f);
    EXPECT_EQ(para.minimum_text_blobs, 3u);
    EXPECT_EQ(para.eccentricity_threshold, 0.5);
    EXPECT_EQ(para.lower_area_factor, 0.1f);
    EXPECT_EQ(para.upper_area_factor, 9.0f);
    EXPECT_TRUE(para.use_median);
    const TextBlob fresh;
    EXPECT_EQ(fresh.box.right, -1000);
    EXPECT_EQ(fresh.box.top, 100000);
}

// Mean 320 / 16 = 20: the bounds 0.3 m = 6 and 5 m = 100 are exact in single
// precision, so 6 and 100 stay and 5 and 101 go.
TEST(TextBlobFilterTest, BlobsAtTheExactAreaBoundsStayRegular) {
    std::vector<unsigned> areas = {5, 6, 100, 101};
    areas.insert(areas.end(), 12, 9u);
    AreaPage page(areas);
    ASSERT_EQ(page.filter.regular_blobs.size(), 16u);
    EXPECT_EQ(page.filter.obtain_text_area_mean(), 20.0f);
    EXPECT_TRUE(page.filter.select_blob_for_horizontal_vp());
    std::vector<unsigned> regular = areas_of(page.filter.regular_blobs);
    std::sort(regular.begin(), regular.end());
    std::vector<unsigned> expected(12, 9u);
    expected.push_back(6);
    expected.push_back(100);
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(regular, expected);
    std::vector<unsigned> irregular = areas_of(page.filter.irregular_blobs);
    std::sort(irregular.begin(), irregular.end());
    EXPECT_EQ(irregular, (std::vector<unsigned>{5, 101}));
}

TEST(TextBlobFilterTest, HorizontalSelectionNeedsMoreThanTheMinimumCount) {
    for (unsigned count : {9u, 10u, 11u}) {
        AreaPage page(std::vector<unsigned>(count, 12u));
        EXPECT_EQ(page.filter.select_blob_for_horizontal_vp(), count > 10u) << count;
        EXPECT_EQ(page.filter.regular_blobs.size(), count);
    }
}

TEST(TextBlobFilterTest, MedianSelectionUsesTheUpperMedian) {
    // Areas 13, 40, 40, 201: the mean 73.5 would throw out 13 and keep 201;
    // the upper median 40 keeps 13 (above 12) and throws out 201 (above 200).
    AreaPage page({13, 40, 40, 201});
    page.filter.para.use_median = true;
    page.filter.para.minimum_text_blobs = 2;
    EXPECT_EQ(page.filter.obtain_text_area_median(), 40u);
    EXPECT_TRUE(page.filter.select_blob_for_horizontal_vp());
    EXPECT_EQ(areas_of(page.filter.irregular_blobs), (std::vector<unsigned>{201}));
}

TEST(TextBlobFilterTest, AreaMeanAndMedianSkipAreasNotAboveTheFloor) {
    TextBlobFilter filter(100, 100);
    EXPECT_TRUE(std::isnan(filter.obtain_text_area_mean()));
    struct Case {
        std::vector<unsigned> areas;
        unsigned floor;
        unsigned median;
    };
    const Case cases[] = {
        {{7, 1, 5}, 0, 5},        // odd count: the middle
        {{4, 1, 3, 2}, 0, 3},     // even count: the upper of the two middles
        {{9, 2, 3, 8, 1}, 2, 8},  // 3, 8, 9 above the floor
        {{9}, 0, 9},
    };
    for (const Case& c : cases) {
        filter.regular_blobs.clear();
        for (unsigned area : c.areas) filter.regular_blobs.push_back(blob_with_area(area));
        filter.para.area_floor = c.floor;
        EXPECT_EQ(filter.obtain_text_area_median(), c.median);
    }
    filter.regular_blobs.clear();
    for (unsigned area : {3u, 4u, 10u, 20u}) filter.regular_blobs.push_back(blob_with_area(area));
    filter.para.area_floor = 4;
    EXPECT_EQ(filter.obtain_text_area_mean(), 15.0f);
    filter.para.area_floor = 20;
    EXPECT_TRUE(std::isnan(filter.obtain_text_area_mean()));
}

TEST(TextBlobFilterTest, WithoutATypicalAreaNoBlobIsMoved) {
    for (bool median : {false, true}) {
        TextBlobFilter filter(100, 100);
        for (unsigned area : {1u, 2u, 50u}) filter.regular_blobs.push_back(blob_with_area(area));
        filter.irregular_blobs.push_back(blob_with_area(7));
        filter.para.area_floor = 100;
        filter.para.use_median = median;
        filter.para.minimum_text_blobs = 2;
        EXPECT_TRUE(filter.select_blob_for_horizontal_vp());
        EXPECT_EQ(filter.regular_blobs.size(), 3u);
        EXPECT_TRUE(filter.irregular_blobs.empty());
    }
}

TEST(TextBlobFilterTest, BorderIsTheFirstAndLastColumnAndLine) {
    const TextBlobFilter filter(50, 40);
    struct Case {
        int left, top, right, bottom;
        bool near;
    };
    const Case cases[] = {
        {1, 1, 48, 38, false}, {0, 5, 10, 10, true},  {5, 0, 10, 10, true},
        {5, 5, 49, 10, true},  {5, 5, 10, 39, true},  {5, 5, 50, 10, false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(filter.near_the_border(Geobox<int>{c.right, c.bottom, c.left, c.top}), c.near)
            << c.left << " " << c.top << " " << c.right << " " << c.bottom;
}

TEST(TextBlobFilterTest, BlobsAtTheBorderLeaveBothListsAndTheMean) {
    AreaPage page(std::vector<unsigned>(11, 12u));
    common::BasicImage image(page.filter.height, page.filter.width, common::BINARY);
    // A large block touching the last column and a small one a column short
    // of it. Counted in the mean, the large block would raise the lower bound
    // above 12 and throw out the rest.
    fill_rect(image, page.filter.width - 20, 150, 20, 20);
    fill_rect(image, page.filter.width - 5, 100, 4, 4);
    ConnectedComponentCalculator calculator;
    std::list<TextBlob> edge = form_blobs(calculator, image);
    page.filter.regular_blobs.splice(page.filter.regular_blobs.end(), edge);
    EXPECT_TRUE(page.filter.select_blob_for_horizontal_vp());
    // Mean (11 x 12 + 16) / 12, bounds 3.7 and 61.7.
    EXPECT_EQ(page.filter.regular_blobs.size(), 12u);
    EXPECT_TRUE(page.filter.irregular_blobs.empty());
    for (const TextBlob& blob : page.filter.regular_blobs) EXPECT_LT(blob.box.right, page.filter.width - 1);
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
    struct Case {
        int tall, short_bars, discs, irregular_tall;
        int answer;
        std::size_t lines;
    };
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

TEST(TextBlobFilterTest, VerticalSelectionCountsTheCallersLinesInTheFirstPass) {
    TextBlobFilter filter(100, 100);
    std::vector<GeolineBasePoints<float>> lines(3);
    std::vector<double> eccentricities(3, 0.99);
    EXPECT_EQ(filter.select_blob_for_vertical_vp(lines, eccentricities), 1);
    EXPECT_EQ(lines.size(), 3u);
    lines.resize(2);
    eccentricities.resize(2);
    EXPECT_EQ(filter.select_blob_for_vertical_vp(lines, eccentricities), 0);
    EXPECT_TRUE(lines.empty());
}

TEST(TextBlobFilterTest, SelectionsAreRepeatable) {
    std::vector<double> first;
    std::vector<double> second;
    for (std::vector<double>* out : {&first, &second}) {
        SlimPage page(2, 4, 1, 2);
        std::vector<GeolineBasePoints<float>> lines;
        std::vector<double> eccentricities;
        out->push_back(page.filter.select_blob_for_vertical_vp(lines, eccentricities));
        for (std::size_t i = 0; i < lines.size(); ++i) {
            out->insert(out->end(), {lines[i].a, lines[i].b, lines[i].c, eccentricities[i]});
            out->insert(out->end(), {lines[i].points[0].x, lines[i].points[0].y});
        }
        page.filter.para.minimum_text_blobs = 3;
        out->push_back(page.filter.select_blob_for_horizontal_vp());
        for (const TextBlob& blob : page.filter.regular_blobs) out->push_back(blob.area);
    }
    ASSERT_EQ(first.size(), second.size());
    EXPECT_EQ(std::memcmp(first.data(), second.data(), first.size() * sizeof(double)), 0);
}

TEST(TextBlobFilterTest, BottomCentersAndBottomLeftCornersOfRegularBoxes) {
    TextBlobFilter filter(100, 100);
    filter.regular_blobs.push_back(blob_with_box(2, 3, 5, 7));
    filter.regular_blobs.push_back(blob_with_box(4, 1, 20, 9));
    filter.irregular_blobs.push_back(blob_with_box(30, 30, 40, 40));
    std::vector<Geocoordinate<float>> centres;
    filter.obtain_regular_text_bottom_centers(centres);
    ASSERT_EQ(centres.size(), 2u);
    EXPECT_EQ(centres[0].x, 3.5f);
    EXPECT_EQ(centres[0].y, 7.0f);
    EXPECT_EQ(centres[1].x, 12.0f);

    const std::vector<Geocoordinate<float>> points = {{5.0f, 7.0f}, {5.5f, 7.0f}, {35.0f, 35.0f}, {2.0f, 3.0f}};
    std::vector<Geocoordinate<float>> corners;
    filter.obtain_regular_text_bottom_left(points, corners);
    ASSERT_EQ(corners.size(), 4u);
    EXPECT_EQ(corners[0].x, 2.0f);  // bounds included, the first box wins
    EXPECT_EQ(corners[0].y, 7.0f);
    EXPECT_EQ(corners[1].x, 4.0f);
    EXPECT_EQ(corners[1].y, 9.0f);
    EXPECT_EQ(corners[2].x, 0.0f);  // irregular boxes do not count
    EXPECT_EQ(corners[2].y, 0.0f);
    EXPECT_EQ(corners[3].x, 2.0f);
}

TEST(TextBlobFilterTest, BottomRightWalksStripsThroughIrregularBlobs) {
    TextBlobFilter filter(200, 100);
    filter.regular_blobs.push_back(blob_with_box(10, 10, 20, 20));
    filter.irregular_blobs.push_back(blob_with_box(22, 12, 30, 22));  // in the first strip
    filter.irregular_blobs.push_back(blob_with_box(34, 5, 40, 11));   // reached from the first
    filter.irregular_blobs.push_back(blob_with_box(51, 10, 60, 20));  // beyond a strip of nothing
    filter.irregular_blobs.push_back(blob_with_box(21, 30, 80, 40));  // below the base box
    const std::vector<Geocoordinate<float>> points = {{15.0f, 15.0f}, {70.0f, 70.0f}};
    struct Case {
        float step;
        float x, y;
    };
    const Case cases[] = {
        {5.0f, 40.0f, 11.0f},   // strips [20,25] [25,30] [30,35] [35,40] [40,45] [45,50]
        {4.5f, 40.0f, 11.0f},   // rounds to 5
        {10.5f, 60.0f, 20.0f},  // 11 wide: [42,53] reaches the far blob
        {1.0f, 20.0f, 20.0f},   // [20,21] meets nothing: the base box's own corner
        {0.4f, 20.0f, 20.0f},   // width 0 looks at column 20 once
    };
    for (const Case& c : cases) {
        std::vector<Geocoordinate<float>> out(5, Geocoordinate<float>(9.0f, 9.0f));
        filter.obtain_regular_text_bottom_right(points, out, c.step);
        ASSERT_EQ(out.size(), 2u);
        EXPECT_EQ(out[0].x, c.x) << c.step;
        EXPECT_EQ(out[0].y, c.y) << c.step;
        EXPECT_EQ(out[1].x, 0.0f);
        EXPECT_EQ(out[1].y, 0.0f);
    }
    // A strip that cannot move still sees a blob on its column, and stops.
    filter.irregular_blobs.push_back(blob_with_box(18, 18, 25, 25));
    std::vector<Geocoordinate<float>> out;
    filter.obtain_regular_text_bottom_right(points, out, 0.0f);
    EXPECT_EQ(out[0].x, 25.0f);
    EXPECT_EQ(out[0].y, 25.0f);
}

// The line fits: the plain and the weighted fit with their precision rules,
// and the outlier rejection of a split point set.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

#include "textgeometry/geobox.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_adaptive_least_square.h"
#include "textgeometry/geoline_base.h"
#include "textgeometry/geoline_least_square.h"

using geometric::Geobox;
using geometric::Geocoordinate;
using geometric::GeolineAdaptiveLeastSquare;
using geometric::GeolineBase;
using geometric::GeolineLeastSquare;

// Boxes are written {right, bottom, left, top} throughout.
static_assert(offsetof(Geobox<int>, right) == 0 && offsetof(Geobox<int>, top) == 3 * sizeof(int), "field order");

using PointsD = std::vector<Geocoordinate<double>>;
using PointsF = std::vector<Geocoordinate<float>>;

namespace {

void expect_vertical(const GeolineBase& line, double x) {
    EXPECT_EQ(line.a, 1.0);
    EXPECT_EQ(line.b, 0.0);
    EXPECT_EQ(line.c, -x);
    EXPECT_EQ(line.line_angle(), 90.0);
}

}  // namespace

TEST(PlainFit, ExactVerticalCoincidentAndEmptySets) {
    GeolineLeastSquare line;
    ASSERT_TRUE(line.fit(PointsF{{0, 3}, {2, 4}, {4, 5}, {10, 8}}));
    EXPECT_DOUBLE_EQ(line.a, 0.5);
    EXPECT_EQ(line.b, -1.0);
    EXPECT_DOUBLE_EQ(line.c, 3.0);
    line.fit(PointsF{{7, 1}, {7, 50}, {7, 300}});
    expect_vertical(line, 7.0);
    line.fit(std::vector<Geocoordinate<int>>{{12, 4}, {12, 4}});
    expect_vertical(line, 12.0);
    EXPECT_FALSE(line.fit(PointsF{}));  // the line is left as it was
    expect_vertical(line, 12.0);
}

// Spread of x with variance 2.5e-9: below the plain fit's single-precision
// limit, above the weighted fit's double-precision one.
TEST(LineFits, PlainAndWeightedFitsTestDifferentEpsilons) {
    const PointsD points{{0.0, 0.0}, {1e-4, 1.0}};
    GeolineLeastSquare plain;
    plain.fit(points);
    expect_vertical(plain, 5e-5);
    GeolineAdaptiveLeastSquare weighted;
    weighted.use_pt_line_dis_iterative(points, false, 0.01);
    EXPECT_EQ(weighted.b, -1.0);
    EXPECT_NEAR(weighted.a, 1e4, 1e-6);
}

TEST(WeightedMoments, FloatFormRoundsMxyAfterEachAdditionAndMxxWhollyInSingle) {
    // One large term of 2^24 and ten of 0.5: each 0.5 is below half a float step there.
    PointsF pf{{1.0f, 16777216.0f}};
    PointsD pd{{1.0, 16777216.0}};
    for (int i = 0; i < 10; ++i) {
        pf.push_back({1.0f, 0.5f});
        pd.push_back({1.0, 0.5});
    }
    const std::vector<double> w(pf.size(), 1.0);
    const auto mf = GeolineAdaptiveLeastSquare::weighted_moments(pf, w);
    const auto md = GeolineAdaptiveLeastSquare::weighted_moments(pd, w);
    EXPECT_EQ(mf.mxy, 16777216.0);  // every 0.5 was lost on its own
    EXPECT_EQ(md.mxy, 16777221.0);
    EXPECT_NE(mf.mxy, static_cast<double>(static_cast<float>(md.mxy)));  // not one rounding at the end
    EXPECT_EQ(mf.my, md.my);  // the means stay double in both forms
    EXPECT_EQ(mf.mx, md.mx);

    const auto sf = GeolineAdaptiveLeastSquare::weighted_moments(PointsF{{4097.0f, 0.0f}}, {1.0});
    EXPECT_EQ(sf.mxx, 16785408.0);  // 4097^2 = 16785409 has no float
    const auto sd = GeolineAdaptiveLeastSquare::weighted_moments(PointsD{{4097.0, 0.0}}, {1.0});
    EXPECT_EQ(sd.mxx, 16785409.0);
}

// With weights of one third the float form's Mxx is 49.000004 instead of 49
// for x = 7, so the variance is not zero and the line becomes a steep one;
// the double form keeps the vertical. The precision is required as it is.
TEST(AdaptiveFit, FloatAndDoubleFormsDifferOnAVerticalSetAtSeven) {
    GeolineAdaptiveLeastSquare f, d;
    f.use_pt_line_dis_iterative(PointsF{{7, 1}, {7, 50}, {7, 300}}, false, 0.01);
    d.use_pt_line_dis_iterative(PointsD{{7, 1}, {7, 50}, {7, 300}}, false, 0.01);
    expect_vertical(d, 7.0);
    EXPECT_EQ(f.b, -1.0);
    EXPECT_NE(f.line_angle(), 90.0);
}

// Every point 500 from the plain line: every weight is 0, the line becomes
// not-a-number and the passes run out instead of looping.
TEST(AdaptiveFit, AllWeightsZeroGiveNotANumberAndTheLoopEnds) {
    const PointsD pd{{0, -500}, {0, 500}, {1, 500}, {1, -500}};
    GeolineAdaptiveLeastSquare d;
    d.use_pt_line_dis_iterative(pd, false, 0.01);
    EXPECT_TRUE(std::isnan(d.a));
    EXPECT_TRUE(std::isnan(d.c));
}

// remove_outliers against the line y = 0, so a point's distance is |y|.
TEST(RemoveOutliers, LimitsTable) {
    struct Case {
        const char* what;
        std::vector<float> first, second;
        int multiple;
        std::vector<float> kept;
    };
    const Case cases[] = {
        // mean 1, sigma 1, k 0: limits 1 and 1.5 (the mean of second); strict.
        {"limits exactly at the means", {0, 1, 2}, {0.5f, 1.5f, 2.5f}, 0, {0, 0.5f}},
        // mean 2, sigma 2, k 1: first 3*2+2 = 8, second 3+2 = 5.
        {"factor three on first only", {0, 2, 4}, {1, 3, 5}, 1, {0, 2, 4, 1, 3}},
        {"first one past its limit", {0, 2, 4, 8}, {}, 0, {0, 2}},
        // first under two points: statistics of second (mean 2, sigma 2).
        {"first judged by second", {7.9f}, {0, 2, 4}, 1, {7.9f, 0, 2}},
        {"first at the borrowed limit", {8}, {0, 2, 4}, 1, {0, 2}},
        // second under two points: its limit uses the mean of first.
        {"second with one point at limit", {0, 2, 4}, {4}, 1, {0, 2, 4}},
        {"second with one point inside", {0, 2, 4}, {3.9f}, 1, {0, 2, 4, 3.9f}},
        // sigma 0: the epsilon keeps a set that lies on the line.
        {"straight set keeps itself", {0, 0, 0}, {0, 0}, 3, {0, 0, 0, 0, 0}},
        {"nothing to judge", {}, {}, 1, {}},
    };
    const GeolineBase line(0.0, -1.0, 0.0);
    for (const Case& c : cases) {
        PointsF first, second;
        for (std::size_t i = 0; i < c.first.size(); ++i) first.push_back({static_cast<float>(i), c.first[i]});
        for (std::size_t i = 0; i < c.second.size(); ++i) second.push_back({100.0f + i, -c.second[i]});
        PointsF kept{{-1.0f, -1.0f}};  // appended to, never cleared
        line.remove_outliers(first, second, kept, c.multiple);
        ASSERT_EQ(kept.size(), c.kept.size() + 1) << c.what;
        EXPECT_EQ(kept[0].x, -1.0f);
        for (std::size_t i = 0; i < c.kept.size(); ++i)
            EXPECT_EQ(std::fabs(kept[i + 1].y), c.kept[i]) << c.what << " #" << i;
    }
}

TEST(RemoveOutliers, EqualDistancesAboveOnePixelRejectThemselvesInSinglePrecision) {
    // sigma 0 adds the epsilon, but 2 + 2^-23 rounds back to 2 in float.
    const GeolineBase line(0.0, -1.0, 0.0);
    PointsF kept;
    line.remove_outliers(PointsF{{0, 2}, {1, 2}, {2, 2}}, PointsF{}, kept, 1);
    EXPECT_TRUE(kept.empty());
    line.remove_outliers(PointsF{{0, 0.5f}, {1, 0.5f}}, PointsF{}, kept, 1);
    EXPECT_EQ(kept.size(), 2u);
}

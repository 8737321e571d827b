// From eigenpoints to text lines and their vanishing point on turned pages of
// two columns whose lines are broken by smeared words; blob lines from stems;
// the limits of merging and margin pairing.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "common/constants.h"
#include "pageanalysis/apriori_pageanalysis.h"
#include "support/text_pages.h"
#include "textgeometry/geoline_least_square.h"
#include "textlines/blob_line_creator.h"
#include "textlines/corresponding_pairs.h"
#include "textlines/eignpoints_cluster.h"
#include "textlines/eignpoints_merger.h"
#include "textlines/eignpoints_para_setup.h"
#include "textlines/text_line_creator.h"
#include "vanishing/vpoint_ransac_solver.h"

namespace {

using namespace geometric;
using Points = std::vector<Geocoordinate<float>>;
using Pairs = std::vector<std::pair<int, int>>;

// Degrees between the directions from p to a and from p to b.
double degrees_between(const Geocoordinate<double>& p, const Geocoordinate<double>& a,
                       const Geocoordinate<double>& b) {
    const double turn = std::atan2(a.y - p.y, a.x - p.x) - std::atan2(b.y - p.y, b.x - p.x);
    return std::fabs(std::remainder(turn, 2.0 * constants::kPi)) * 180.0 / constants::kPi;
}

support::TextPageSpec page_spec(const support::Homography& homography) {
    support::TextPageSpec spec;
    spec.width = 1400, spec.left = 140, spec.right = 1260, spec.top = 220, spec.lines = 8;
    spec.columns = 2, spec.stroke = 2, spec.word_gap = 12, spec.homography = homography;
    return spec;
}

// Each line of each column has 25 glyphs; in every other line the 11th to
// the 15th are smeared into one blob too large for text (over six times the
// mean blob area, where the limit is five): clustering breaks those lines
// into two pieces of 10 eigenpoints, and the merger joins them again by
// following the smeared blob. The 80-pixel gutter keeps the columns apart.
// Tolerances: a line's angle comes from 20 or more eigenpoints over some 500
// pixels whose y are whole box bottoms, a row more or less after the
// binarization (about 0.5 pixel deviation): some 0.05 degree, and 0.2 is four
// times that. The vanishing point, on which 16 such lines agree, is judged by
// what it does to the page: the direction toward it from each line's middle,
// against the direction toward the true one, within half that.
TEST(TextLines, BrokenLinesMergeAndPointAtTheVanishingPointOfTheTurnedPage) {
    const support::Homography pages[] = {support::turned_homography(6.0, 700.0, 400.0, 0.0, 0.0001),
                                         support::turned_homography(-4.0, 700.0, 400.0, 0.0001, -0.0001),
                                         support::turned_homography(2.0, 700.0, 400.0, -0.00005, 0.0001)};
    for (const support::Homography& homography : pages) {
        support::TextPageSpec spec = page_spec(homography);
        spec.joined_first = 10, spec.joined_count = 5, spec.joined_line_step = 2;
        const support::TextPage page = support::make_text_page(spec);
        AprioriPageanalysis analysis(&page.gray, nullptr);
        ASSERT_TRUE(analysis.run_page_analysis());
        HybridProjectivePara para;
        Points points;
        ASSERT_TRUE(EignpointsParaSetup::set_up_eignpoints_para(&analysis, points, para));
        EignpointsCluster cluster(para.clustering);
        std::vector<Points> groups, merged;
        ASSERT_TRUE(cluster.perform_eignpoints_clustering(points, groups));
        EXPECT_EQ(groups.size(), page.baselines.size() * 3 / 2);
        EignpointsMerger merger(&analysis, para.merger);
        ASSERT_TRUE(merger.perform_eignpoint_group_merge(groups, merged));
        ASSERT_EQ(merged.size(), page.baselines.size());

        std::vector<GeolineBase> lines;
        std::vector<double> weights;
        Pairs pairs;
        EXPECT_TRUE(TextLineCreator().formulate_text_line(merged, lines, weights, pairs));
        EXPECT_EQ(pairs.size(), 45u);  // each pair of the ten heaviest lines
        VpointRansacSolver solver(HORIZONTAL_DIRECTION, spec.width, spec.height, para.ransac);
        std::vector<int> inliers;
        Geocoordinate<double> point(0.0, 0.0);
        ASSERT_EQ(solver.perform_ransac_vpoint_searching(lines, pairs, weights, inliers, point, 0.0f, false), 1);
        const Geocoordinate<double> truth = support::horizontal_vanishing_point(homography);

        // Each merged group is the whole of one line, a few pixels from its
        // baseline: all of its eigenpoints but the smeared ones.
        for (std::size_t g = 0; g < merged.size(); ++g) {
            int found = 0;
            for (std::size_t b = 0; b < page.baselines.size(); ++b) {
                const Points& truth_points = page.baselines[b];
                GeolineLeastSquare baseline;
                baseline.fit(truth_points);
                const Geocoordinate<float>& p = merged[g].front();
                if (baseline.point_distance(p) > 5.0 || std::fabs(p.x - truth_points[12].x) > 300.0f) continue;
                ++found;
                EXPECT_EQ(merged[g].size(), truth_points.size() - (b / 2 % 2 == 0 ? 5 : 0));
                for (const Geocoordinate<float>& q : merged[g]) EXPECT_LT(baseline.point_distance(q), 5.0);
                EXPECT_NEAR(lines[g].line_angle(), baseline.line_angle(), 0.2);
                const Geocoordinate<double> middle(truth_points[12].x, truth_points[12].y);
                EXPECT_LT(degrees_between(middle, point, truth), 0.1);
            }
            EXPECT_EQ(found, 1);
        }
    }
}

// Stems ("l") every fourth glyph of a turned page give lines along them
// across the width; a photo over the second quarter leaves it without
// lines; plain glyphs are no slim blobs.
TEST(BlobLineCreator, LinesFromStemsAndTheWidthTheyCover) {
    const struct {
        int stem_every;
        bool photo;
        int expected;
    } cases[] = {{4, false, 1}, {4, true, BlobLineCreator::BLOB_LINES_NOT_SPREAD}, {0, false, 0}};
    for (const auto& c : cases) {
        support::TextPageSpec spec = page_spec(support::turned_homography(3.0, 700.0, 400.0));
        spec.columns = 1, spec.stem_every = c.stem_every;
        if (c.photo) spec.photo = Geobox<int>{740, 800, 440, 0};
        const support::TextPage page = support::make_text_page(spec);
        AprioriPageanalysis analysis(&page.gray, nullptr);
        ASSERT_TRUE(analysis.run_page_analysis());
        std::vector<GeolineBasePoints<float>> lines;
        std::vector<double> weights;
        Pairs pairs;
        EXPECT_EQ(BlobLineCreator(&analysis).perform_blob_line_formulation(lines, weights, pairs), c.expected);
        EXPECT_EQ(pairs.empty(), c.expected == 0) << c.expected;
        // Upright on the page, turned 3 degrees counter-clockwise.
        for (const GeolineBasePoints<float>& line : lines) EXPECT_NEAR(line.line_angle(), 87.0, 2.5);
    }
}

// Rows of eight points ten apart on y = 100, each ending in a blob whose
// bottom-right corner is two pixels beyond the row's last point; the
// spacing 10 makes the merger's end distance 20 and its line gap 2.5.
TEST(EignpointsMerger, LimitsOfTheJoin) {
    const auto row = [](float x, float y, float step = 10.0f) {
        Points points;
        for (int i = 0; i < 8; ++i) points.emplace_back(x + i * step, y);
        return points;
    };
    const struct {
        const char* what;
        std::vector<Points> groups;
        bool result;
        std::vector<std::size_t> sizes;
    } cases[] = {
        {"a piece starting 18 past the end joins", {row(0, 100), row(90, 100)}, true, {16}},
        {"one at exactly the end distance does not", {row(0, 100), row(92, 100)}, true, {8, 8}},
        {"nor one whose line passes exactly the line gap away", {row(0, 100), row(90, 102.5f)}, true, {8, 8}},
        {"a chain of pieces becomes one group, in index order", {row(180, 100), row(0, 100), row(90, 100), row(270, 100)},
         true, {32}},
        {"a piece shorter than the end distance stops the merge", {row(0, 100, 2.0f), row(30, 100)}, false, {1}},
    };
    common::BasicImage blank(50, 50, common::GRAY);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        AprioriPageanalysis analysis(&blank, nullptr);
        for (const Points& g : c.groups) {
            const int x = static_cast<int>(g.back().x), y = static_cast<int>(g.back().y);
            analysis.filter.regular_blobs.emplace_back(Geobox<int>{x + 2, y, x - 2, y - 10}, 40, nullptr);
        }
        EignpointsMergerConstraints limits;
        limits.search_step = 10.0f, limits.end_distance = 20.0f, limits.line_gap = 2.5f;
        EignpointsMerger merger(&analysis, limits);
        std::vector<Points> merged(1, Points(1));
        EXPECT_EQ(merger.perform_eignpoint_group_merge(c.groups, merged), c.result);
        std::vector<std::size_t> sizes;
        for (const Points& g : merged) sizes.push_back(g.size());
        EXPECT_EQ(sizes, c.sizes);
        EXPECT_TRUE(c.sizes[0] != 32 || merged[0][0].x == 180.0f);
    }
}

// Left groups 0 and 1, right groups 0 and 1, members are text lines: line 4
// is in both right groups (the first counts), line 9 in no right group.
TEST(CorrespondingPairs, PairsMarginGroupsThatShareATextLine) {
    Pairs pairs(2);
    CorrespondingPairs::search_corresponding_margins({{1, 2, 9}, {4, 3}}, {{4, 3}, {2, 1, 4}}, pairs);
    EXPECT_EQ(pairs, (Pairs{{0, 1}, {1, 0}}));
}

}  // namespace

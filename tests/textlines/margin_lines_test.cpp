// Margin lines found on turned text pages: along the true edges of a justified
// block or of each column, none along a ragged edge or the image's side.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "pageanalysis/apriori_pageanalysis.h"
#include "support/text_pages.h"
#include "textlines/eignpoints_cluster.h"
#include "textlines/eignpoints_merger.h"
#include "textlines/eignpoints_para_setup.h"
#include "textlines/margin_line_creator.h"

namespace {

using namespace geometric;
using Points = std::vector<Geocoordinate<float>>;

struct Edge {
    Geocoordinate<double> top, bottom;  // image points of the ink's outermost column
};

// The block's true edges, column by column, left then right: the outer
// columns of ink of each column's first and last glyphs on the page plane,
// from its first line's top to its last line's bottom, carried into the image.
std::vector<Edge> true_edges(const support::TextPageSpec& spec, const support::TextPage& page) {
    const support::Homography back = support::inverse(spec.homography);
    std::vector<Edge> edges;
    for (int column = 0; column < spec.columns; ++column) {
        const Points& first = page.baselines[column];
        const Points& last = page.baselines[page.baselines.size() - spec.columns + column];
        for (const bool right : {false, true}) {
            const Geocoordinate<float>& a = right ? first.back() : first.front();
            const Geocoordinate<float>& b = right ? last.back() : last.front();
            const double half = (spec.glyph_width - 1) * 0.5;
            const Geocoordinate<double> pa = support::apply(back, a.x, a.y), pb = support::apply(back, b.x, b.y);
            const double u = right ? pa.x + half : pa.x - half;
            edges.push_back(Edge{support::apply(spec.homography, u, pa.y - spec.body_height + 1),
                                 support::apply(spec.homography, u, pb.y)});
        }
    }
    return edges;
}

// Every scene is on a page turned a few degrees and seen a little from below
// or aside. "edges" lists, by index into true_edges (left, right of the first
// column, then of the second), the edges that must each have a margin line
// within 4 pixels at both ends; no other line may be found. A margin runs
// through the corners of glyph boxes, which stand up to h sin(turn) off the
// glyph's edge (2.3 pixels for a 22-pixel glyph turned 6 degrees), and the
// box rounds to whole pixels.
TEST(MarginLineCreator, MarginsAlongTheTrueEdgesOfTheText) {
    struct Case {
        const char* what;
        double degrees, tilt, pan;
        int columns, left, ragged;
        bool result;
        std::vector<int> edges;
    } const cases[] = {
        {"a justified block gives both margins", 4.0, 0.0001, 0.0, 1, 160, 0, true, {0, 1}},
        {"and so turned the other way", -6.0, -0.0001, 0.0001, 1, 160, 0, true, {0, 1}},
        {"a ragged right edge gives no right margin", 3.0, 0.0, 0.0001, 1, 160, 4, false, {0}},
        {"a margin at the image's side is refused", 0.5, 0.0, 0.0, 1, 12, 0, false, {1}},
        {"two columns give a left and a right margin each", -3.0, 0.0001, 0.0, 2, 160, 0, true, {0, 1, 2, 3}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        support::TextPageSpec spec;
        spec.width = 1300, spec.height = 900, spec.left = c.left, spec.right = 1140, spec.top = 120;
        spec.lines = 14, spec.columns = c.columns, spec.ragged = c.ragged;
        spec.homography = support::turned_homography(c.degrees, 650.0, 450.0, c.tilt, c.pan);
        const support::TextPage page = support::make_text_page(spec);
        AprioriPageanalysis analysis(&page.gray, nullptr);
        ASSERT_TRUE(analysis.run_page_analysis());
        HybridProjectivePara para;
        Points points;
        ASSERT_TRUE(EignpointsParaSetup::set_up_eignpoints_para(&analysis, points, para));
        std::vector<Points> groups, text_groups, margin_groups;
        ASSERT_TRUE(EignpointsCluster(para.clustering).perform_eignpoints_clustering(points, groups));
        EignpointsMerger(&analysis, para.merger).perform_eignpoint_group_merge(groups, text_groups);

        MarginLineCreator creator(para.margin, spec.width, spec.height, &analysis);
        std::vector<GeolineBase> lines;
        std::vector<double> weights;
        EXPECT_EQ(creator.perform_margin_line_formulation(text_groups, margin_groups, lines, weights), c.result);
        ASSERT_EQ(lines.size(), c.edges.size());
        EXPECT_EQ(weights.size(), c.result ? lines.size() : 1u);

        const std::vector<Edge> edges = true_edges(spec, page);
        for (const int e : c.edges) {
            double nearest = 1e9;
            for (const GeolineBase& line : lines)
                nearest = std::min(nearest, std::max(line.point_distance(edges[e].top),
                                                     line.point_distance(edges[e].bottom)));
            EXPECT_LT(nearest, 4.0) << "edge " << e;
        }
    }
}

// Text lines given by their two ends alone (no analysis: the ends are the
// margin points), 20 pixels apart from y = 100, on a 1000-pixel-wide image
// with the thresholds of a 10-pixel spacing: groups within 60 pixels,
// inliers within 5, margins merge within 10.
TEST(MarginLineCreator, PartnersComparedAndCoincidingMarginsMerged) {
    const auto rows = [](int count, double left, double left_lean, double right, double right_lean, int gap_at = 99) {
        std::vector<Points> lines;
        for (int i = 0; i < count; ++i) {
            const float y = 100.0f + 20.0f * i + (i >= gap_at ? 200.0f : 0.0f);
            lines.push_back({{float(left + left_lean * y), y}, {float(right + right_lean * y), y}});
        }
        return lines;
    };
    std::vector<Points> unequal = rows(12, 100, 0.01, 800, 0.01);
    for (int i = 6; i < 12; ++i) unequal[i][1].x = 500.0f + 70.0f * i;  // right ends too far apart to group
    // Two blocks; the first's left margin stands at the image's side.
    std::vector<Points> blocks = rows(6, 5, 0.01, 800, 0.01), second = rows(6, 100, 0.01, 500, 0.5, 0);
    blocks.insert(blocks.end(), second.begin(), second.end());
    struct Case {
        const char* what;
        std::vector<Points> text;
        bool result;
        std::vector<std::size_t> sizes;  // of the margin groups
    } const cases[] = {
        {"margins broken by a gap merge again", rows(12, 100, 0.02, 800, 0.02, 6), true, {12, 12}},
        {"a partner leaning 26 degrees more is dropped", rows(12, 100, 0.01, 800, 0.5), false, {12}},
        {"a partner under half as long fails the page", unequal, false, {}},
        {"a refused margin leaves its partner unpaired", blocks, true, {6, 6}},
        {"four text lines make no margin", rows(4, 100, 0.01, 800, 0.01), false, {}},
        {"margins under a fifth of the width apart fail", rows(8, 400, 0.01, 590, 0.01), false, {8, 8}},
        {"and a fifth apart pass", rows(8, 400, 0.01, 601, 0.01), true, {8, 8}},
        // The fit of x on y has a slope of exactly 0, the line turned back is infinite.
        {"exactly upright margins fail", rows(8, 400, 0.0, 601, 0.0), false, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        HybridProjectivePara para;
        EignpointsParaSetup::set_up_thresholds(10.0f, para);
        para.margin.inlier_distance = 5.0f;
        MarginLineCreator creator(para.margin, 1000, 800, nullptr);
        std::vector<Points> groups;
        std::vector<GeolineBase> lines;
        std::vector<double> weights;
        EXPECT_EQ(creator.perform_margin_line_formulation(c.text, groups, lines, weights), c.result);
        std::vector<std::size_t> sizes;
        for (const Points& g : groups) sizes.push_back(g.size());
        EXPECT_EQ(sizes, c.sizes);
        EXPECT_EQ(lines.size(), c.sizes.size());
    }
    // A line end at exactly the grouping distance opens a group of its own;
    // one within reach of two groups joins the first, not the nearest.
    MarginConstraints limits;
    limits.grouping_distance = 60.0f;
    const MarginLineCreator creator(limits, 1000, 800, nullptr);
    std::vector<Points> groups{{{0.0f, 0.0f}}};
    EXPECT_EQ(creator.add_point_to_margin_group({60.0f, 0.0f}, groups), 1);
    EXPECT_EQ(creator.add_point_to_margin_group({59.5f, 0.0f}, groups), 0);
}

// A right candidate that pairs anew takes its new partner's id; its former
// partner keeps the old one. Unpaired candidates keep their places.
TEST(MarginLineCreator, PartnerIdsAreOverwrittenNotUnited) {
    std::vector<int> left, right;
    MarginLineCreator::obtain_unique_margin_line_pair_indicator({{0, 0}, {1, 1}, {1, 0}}, left, 3, right, 3);
    EXPECT_EQ(left, (std::vector<int>{7, 8, 2}));
    EXPECT_EQ(right, (std::vector<int>{8, 8, 5}));
}

// The limits of one candidate's tests, against the upright line x = 100 with
// inliers within 4 pixels and a 10-pixel frame on a 1000-pixel-wide image.
TEST(MarginLineCreator, LimitsOfSpreadInliersAndFrame) {
    MarginConstraints limits;
    limits.inlier_distance = 4.0f, limits.frame_margin = 10.0f;
    const MarginLineCreator creator(limits, 1000, 800, nullptr);
    // One point 30 off and one exactly at the inlier distance: the spread,
    // some 9.4 pixels, is too wide for 10 points (limit 8) but not for 11 (12).
    for (const std::size_t n : {10u, 11u}) {
        Points points;
        for (std::size_t i = 0; i < n; ++i)
            points.emplace_back(i == n - 1 ? 130.0f : i == n - 2 ? 104.0f : 100.0f, 20.0f * i);
        float ratio = -1.0f;
        EXPECT_EQ(creator.verify_point_dispersion(points, GeolineBase(1.0, 0.0, -100.0), ratio), n == 11) << n;
        EXPECT_EQ(ratio, n == 11 ? 10.0f / 11.0f : -1.0f) << n;
    }
    // A point at exactly the frame's distance from the side goes.
    Points left{{10.0f, 0.0f}, {10.5f, 0.0f}}, right{{989.0f, 0.0f}, {988.5f, 0.0f}};
    float left_ratio = 0.0f, right_ratio = 0.0f;
    creator.verfiy_point_away_frame(left, LEFT_MARGIN, left_ratio);
    creator.verfiy_point_away_frame(right, RIGHT_MARGIN, right_ratio);
    ASSERT_TRUE(left.size() == 1 && right.size() == 1);
    EXPECT_EQ((std::vector<float>{left[0].x, right[0].x, left_ratio, right_ratio}),
              (std::vector<float>{10.5f, 988.5f, 0.5f, 0.5f}));
    // Two points of a margin at the image's side: 7 left of 9 still make a
    // margin, 6 of 8 do not.
    for (const int kept : {6, 7}) {
        Points points;
        for (int i = 0; i < kept; ++i) points.emplace_back(900.0f + 10.0f * i, 20.0f * i);
        points.insert(points.end(), {{990.0f, 180.0f}, {1000.0f, 200.0f}});
        GeolineBase line;
        EXPECT_EQ(creator.verify_vertical_margin_line(points, line, RIGHT_MARGIN), kept == 7) << kept;
    }
}

}  // namespace

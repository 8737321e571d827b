// Body text size from blob histograms: the peak rules at their limits, the
// decision between heights and widths, and rendered pages of known sizes.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "pageanalysis/area_pageanalysis.h"
#include "pageanalysis/resolution_estimator.h"
#include "support/text_pages.h"

namespace {

using geometric::ResolutionEstimator;
typedef ResolutionEstimator::CharacterInfo Info;

ResolutionEstimator estimator(int levels = 0, float share = 0.05f) {
    return ResolutionEstimator(15, 205, share, levels);
}

Info info_at(int level, int from_widths) { return Info{0, 0, 0, 0, 0, 0, from_widths, level}; }

}  // namespace

TEST(ResolutionEstimator, BodyPeakRulesAtTheirLimits) {
    struct Case {
        std::vector<int> bins;
        int level, from_widths;
        int size, window, mass, second;
    } cases[] = {
        {{3, 7}, 0, 0, 0, 0, 0, 0},                      // no inner bin
        {{0, 5, 0}, 0, 0, 21, 21, 5, 0},                 // one peak: its size
        {{0, 5, 0}, 0, 1, 21, 19, 5, 0},                 // widths: two cells less
        {{0, 5, 0}, 1, 0, 21, 43, 5, 0},                 // level 1: twice the size, made odd
        {{0, 4, 1, 6, 0}, 0, 0, 21, 23, 10, 4},          // the greater of two neighbours wins: the smaller size, mean window
        {{0, 6, 1, 4, 0}, 0, 0, 21, 21, 10, 4},          // the smaller wins: its own size and window
        {{0, 5, 0, 0, 0, 3, 0}, 0, 0, 21, 21, 5, 3},     // peaks apart: no sum
        {{0, 3, 0, 5, 0, 5, 0, 0}, 0, 0, 23, 23, 10, 5}, // a later, weaker peak becomes the second
    };
    for (const Case& c : cases) {
        Info info = info_at(c.level, c.from_widths);
        EXPECT_EQ(ResolutionEstimator::search_bodytext_peak_in_histogram(c.bins, 20, info), c.size);
        EXPECT_EQ(info.window_size, c.window) << c.size;
        EXPECT_EQ(info.peak_mass, c.mass) << c.size;
        EXPECT_EQ(info.second_peak_count, c.second) << c.size;
    }
}

TEST(ResolutionEstimator, ScendersAreAPeakOrADipAFifthAwayFromTheBody) {
    struct Case {
        std::vector<int> bins;
        int first, scenders;
    } cases[] = {
        {{0, 0, 3, 1, 9}, 9, 1},     // a strict peak
        {{0, 0, 0, 9}, 9, 1},        // an empty cell
        {{8, 8, 8, 8}, 10, 1},       // a fifth away exactly
        {{9, 9, 9, 9}, 10, 0},       // closer
        {{5, 1, 5, 5, 5}, 5, 0},     // the dip scan starts at cell 2
    };
    for (const Case& c : cases) {
        Info info;
        info.has_scenders = 1 - c.scenders;
        info.first_peak_count = c.first;
        ResolutionEstimator::search_scenders_peak_in_histogram(c.bins, info);
        EXPECT_EQ(info.has_scenders, c.scenders) << c.bins.size() << " " << c.first;
    }
}

TEST(ResolutionEstimator, HistogramsSplitAtTheMinimumAndDropAboveTheMaximum) {
    std::vector<int> small, main;
    ResolutionEstimator::create_inferring_histograms({0, 1, 1, 3, 5, 6, 9}, 4, 6, small, main);
    EXPECT_EQ(small, (std::vector<int>{2, 2, 0, 1}));
    EXPECT_EQ(main, (std::vector<int>{0, 1, 1}));
}

TEST(ResolutionEstimator, AWeakBodyPeakGivesWayToASmallerOne) {
    // 100 blobs of 10 under the minimum 15, 50 of 6 below them, 2 of 30.
    std::vector<int> sizes(100, 10);
    sizes.insert(sizes.end(), 50, 6);
    sizes.insert(sizes.end(), 2, 30);
    for (const float share : {0.05f, 0.01f}) {
        Info info;
        info.total_count = static_cast<int>(sizes.size());
        const int size = estimator(0, share).estimate_character_size_via_histogram(sizes, info, 15, 205, true, false);
        EXPECT_EQ(size, share > 0.02f ? 10 : 30);
        EXPECT_EQ(info.window_size, share > 0.02f ? 9 : 29);
        EXPECT_EQ(info.from_widths, 1);
        EXPECT_EQ(info.has_scenders, 1);
    }
}

TEST(ResolutionEstimator, HeightsAndWidthsDecideTheClass) {
    // Info: scenders, peak mass, first and second peak counts, window, total count, from widths, level.
    struct Case {
        Info heights, widths;
        int levels, window_in, klass, window;
    } cases[] = {
        {{0, 9, 9, 0, 23, 20, 0, 0}, {0, 9, 9, 0, 19, 20, 1, 0}, 0, 0, 0, 0},      // no scenders
        {{1, 9, 9, 0, 23, 60, 0, 0}, {0, 9, 9, 0, 19, 60, 1, 0}, 0, 0, 2, 23},     // heights alone, 15%
        {{1, 9, 9, 0, 23, 60, 0, 1}, {0, 9, 9, 0, 19, 60, 1, 1}, 0, 0, 1, 23},     // 15% is short at level 1
        {{0, 9, 9, 0, 23, 20, 0, 0}, {1, 2, 2, 0, 19, 20, 1, 0}, 0, 0, 1, 19},     // widths alone, weak
        {{0, 9, 9, 0, 23, 20, 0, 0}, {1, 2, 2, 0, 19, 20, 1, 0}, 0, 35, 1, 35},    // weak keeps a window
        {{0, 9, 9, 0, 23, 20, 0, 2}, {1, 2, 2, 0, 19, 20, 1, 2}, 2, 0, 0, 0},      // weak at the last level
        {{1, 14, 9, 5, 23, 20, 0, 0}, {1, 10, 9, 1, 19, 20, 1, 0}, 0, 0, 4, 23},   // agree
        {{1, 9, 9, 0, 23, 20, 0, 0}, {1, 13, 9, 0, 19, 20, 1, 0}, 0, 0, 4, 19},    // widths lead
        {{1, 4, 4, 0, 23, 20, 0, 0}, {1, 6, 6, 0, 19, 20, 1, 0}, 0, 0, 3, 19},     // widths decide
        {{1, 44, 9, 0, 23, 20, 0, 0}, {1, 4, 4, 0, 19, 20, 1, 0}, 0, 0, 0, 23},    // far apart at the last level
        {{1, 44, 9, 0, 23, 20, 0, 1}, {1, 4, 4, 0, 19, 20, 1, 1}, 2, 0, 2, 23},    // not the last level
        {{1, 3, 2, 0, 21, 20, 0, 0}, {1, 1, 1, 0, 27, 20, 1, 0}, 0, 0, 1, 23},     // weak: mean window 22, odd
        {{1, 3, 2, 0, 21, 20, 0, 1}, {1, 1, 1, 0, 27, 20, 1, 1}, 1, 35, 0, 23},    // weak at the last level
    };
    for (const Case& c : cases) {
        ResolutionEstimator::EstimatedCharacter estimate{2, c.window_in};
        estimator(c.levels).combine_heights_and_widths(c.heights, c.widths, estimate);
        EXPECT_EQ(estimate.character_class, c.klass) << &c - cases;
        EXPECT_EQ(estimate.window_size, c.window) << &c - cases;
    }
}

TEST(ResolutionEstimator, MultiScaleBinarizationTakesTheBodySizeOfRenderedPagesAsWindow) {
    struct Case {
        int width, body, glyph, stroke, headline;
    } cases[] = {{1000, 16, 12, 2, 0}, {1000, 24, 16, 3, 0}, {1000, 40, 26, 5, 0}, {1000, 22, 14, 3, 64},
                 {1600, 40, 26, 5, 0}};
    for (const Case& c : cases) {
        support::TextPageSpec spec;
        spec.width = c.width, spec.right = c.width - 80;
        spec.height = c.width * 4 / 5;
        spec.body_height = c.body, spec.glyph_width = c.glyph, spec.stroke = c.stroke, spec.line_pitch = 2 * c.body;
        spec.lines = (spec.height - 200) / spec.line_pitch;
        spec.headline_height = c.headline, spec.headline_stem = 6;
        const support::TextPage page = support::make_text_page(spec);
        common::BasicImage bitonal;
        geometric::OminBinarization binarization(&page.gray, &bitonal);
        binarization.set_character_estimate(&ResolutionEstimator::estimate_window_for_binarization);
        binarization.run_binarization();
        EXPECT_GE(binarization.get_estimated_character().character_class, 2) << c.body;
        EXPECT_NEAR(binarization.get_estimated_character().window_size, c.body, c.width / 1000) << c.body;
    }
}

TEST(ResolutionEstimator, APageAnalysisGivesTheBodySizeOfItsRegularBlobs) {
    const support::TextPage page = support::make_text_page(support::TextPageSpec());
    geometric::AreaPageanalysis analysis(&page.ink, nullptr);
    analysis.dilate = false;
    analysis.run_page_analysis();
    ResolutionEstimator::EstimatedCharacter estimate{0, 0};
    estimator().estimate_character_size(&analysis, 0, estimate);
    EXPECT_EQ(estimate.character_class, 2);  // glyphs 14 wide: under the smallest size of 15
    EXPECT_EQ(estimate.window_size, 23);
    analysis.filter.regular_blobs.clear();
    estimator().estimate_character_size(&analysis, 0, estimate);
    EXPECT_EQ(estimate.character_class, 0);
}

TEST(ResolutionEstimator, APageWithoutTextTakesItsWindowFromItsGreaterSide) {
    const int sides[][2] = {{1999, 25}, {2000, 35}, {2500, 45}, {3000, 55}, {4000, 65}};
    for (const auto& side : sides) {
        common::BasicImage blank(16, side[0], common::GRAY);
        std::fill(blank.get_data(), blank.get_data() + blank.get_data_size(), 220);
        ResolutionEstimator::EstimatedCharacter estimate{2, 0};
        estimator().estimate_character_size(blank, std::vector<std::shared_ptr<common::BasicImage>>(), estimate);
        EXPECT_EQ(estimate.character_class, 0);
        EXPECT_EQ(estimate.window_size, side[1]) << side[0];
    }
}

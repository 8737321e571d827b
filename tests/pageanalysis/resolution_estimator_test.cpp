// Body text size from blob histograms: the peak rules at their limits, the
// decision between heights and widths, and rendered pages of known sizes.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "pageanalysis/area_pageanalysis.h"
#include "pageanalysis/resolution_estimator.h"
#include "pixel/image_integer_down_sampling.h"
#include "support/text_pages.h"

using geometric::ResolutionEstimator;
typedef ResolutionEstimator::CharacterInfo Info;
typedef std::vector<int> Ints;
typedef std::vector<std::shared_ptr<common::BasicImage>> Pyramid;

static ResolutionEstimator estimator(int levels = 0, float share = 0.05f) { return {15, 205, share, levels}; }

TEST(ResolutionEstimator, BodyPeakRulesAtTheirLimits) {
    struct Case { Ints bins; int level, from_widths, size, window, mass, second; } cases[] = {
        {{3, 7}, 0, 0, 0, 0, 0, 0}, {{0, 5, 0}, 0, 0, 21, 21, 5, 0},  // no inner bin; one peak: its size
        {{0, 5, 0}, 0, 1, 21, 19, 5, 0}, {{0, 5, 0}, 1, 0, 21, 43, 5, 0},  // widths: two cells less; level 1: twice
        // The greater of two neighbours wins: the smaller size and the mean window; the smaller: its own.
        {{0, 4, 1, 6, 0}, 0, 0, 21, 23, 10, 4}, {{0, 4, 1, 6, 0}, 0, 1, 21, 21, 10, 4},
        {{0, 6, 1, 4, 0}, 0, 0, 21, 21, 10, 4},
        // Peaks apart are not summed; a later, weaker peak becomes the second; plateaus.
        {{0, 5, 0, 0, 0, 3, 0}, 0, 0, 21, 21, 5, 3}, {{0, 3, 0, 5, 0, 5, 0, 0}, 0, 0, 23, 23, 10, 5},
        {{0, 4, 4, 0}, 0, 0, 21, 21, 8, 4}, {{5, 6, 3, 6, 5, 5, 5, 5}, 0, 0, 26, 27, 5, 6},
    };
    for (const Case& c : cases) {
        Info info{0, 0, 0, 0, 0, 0, c.from_widths, c.level};
        const int z = ResolutionEstimator::search_bodytext_peak_in_histogram(c.bins, 20, info);
        const Ints found{z, info.window_size, info.peak_mass, info.second_peak_count};
        EXPECT_EQ(found, (Ints{c.size, c.window, c.mass, c.second}));
    }
}

TEST(ResolutionEstimator, ScendersAreAPeakOrADipAFifthAwayFromTheBody) {
    struct Case { Ints bins; int first, scenders; } cases[] = {
        {{0, 0, 3, 1, 9}, 9, 1}, {{0, 1, 0}, 9, 1},     // strict peaks
        {{8, 8, 8, 8}, 10, 1}, {{9, 9, 9, 9}, 10, 0},   // a dip a fifth away exactly, and closer
        {{5, 1, 5, 5, 5}, 5, 0},                        // the dip scan starts at cell 2
    };
    for (const Case& c : cases) {
        Info info{1 - c.scenders, 0, c.first, 0, 0, 0, 0, 0};
        ResolutionEstimator::search_scenders_peak_in_histogram(c.bins, info);
        EXPECT_EQ(info.has_scenders, c.scenders) << &c - cases;
    }
}

TEST(ResolutionEstimator, HistogramsSplitAtTheMinimumDropAboveTheMaximumAndSmoothInPlace) {
    Ints small, main;
    ResolutionEstimator::create_inferring_histograms({0, 1, 1, 3, 5, 6, 9}, 4, 6, small, main);
    EXPECT_EQ((std::vector<Ints>{small, main}), (std::vector<Ints>{{2, 2, 0, 1}, {0, 1, 1}}));
    small = {6, 0, 6}, main = {9, 6, 0, 9};
    ResolutionEstimator::smooth_inferring_histograms(small, main);
    EXPECT_EQ((std::vector<Ints>{small, main}), (std::vector<Ints>{{5, 4, 5}, {6, 5, 4, 7}}));
}

TEST(ResolutionEstimator, AWeakBodyPeakGivesWayToASmallerOneBelowTheLastLevel) {
    // At level 1 (minimum 7): 100 widths of 5 and 50 of 3 under it, 2 of 15.
    Ints sizes(100, 5);
    sizes.insert(sizes.end(), 50, 3), sizes.insert(sizes.end(), 2, 15);
    struct Case { int levels; float share; int size, window; } cases[] = {
        {2, 0.05f, 5, 7}, {1, 0.05f, 15, 27}, {2, 0.01f, 15, 27}};
    for (const Case& c : cases) {
        Info info{0, 0, 0, 0, 0, static_cast<int>(sizes.size()), 0, 1};
        int s = estimator(c.levels, c.share).estimate_character_size_via_histogram(sizes, info, 15, 205, true, false);
        EXPECT_EQ((Ints{s, info.window_size, info.from_widths, info.has_scenders}), (Ints{c.size, c.window, 1, 1}));
    }
}

TEST(ResolutionEstimator, HeightsAndWidthsDecideTheClass) {
    // Info: scenders, peak mass, first and second peak counts, window, total count, from widths, level.
    struct Case { Info heights, widths; int levels, window_in, klass, window; } cases[] = {
        {{0, 9, 9, 0, 23, 20, 0, 0}, {0, 9, 9, 0, 19, 20, 1, 0}, 0, 0, 0, 0},      // no scenders
        {{1, 9, 6, 3, 23, 60, 0, 0}, {0, 9, 9, 0, 19, 60, 1, 0}, 0, 0, 2, 23},     // heights alone, 15%
        {{1, 9, 6, 3, 23, 60, 0, 1}, {0, 9, 9, 0, 19, 60, 1, 1}, 0, 0, 1, 23},     // 15% is short at level 1
        {{0, 9, 9, 0, 23, 20, 0, 0}, {1, 2, 2, 0, 19, 20, 1, 0}, 0, 0, 1, 19},     // widths alone, weak
        {{0, 9, 9, 0, 23, 20, 0, 0}, {1, 2, 2, 0, 19, 20, 1, 0}, 0, 35, 1, 35},    // weak keeps a window
        {{1, 14, 9, 5, 23, 20, 0, 0}, {1, 10, 9, 1, 19, 20, 1, 0}, 0, 0, 4, 23},   // agree
        {{1, 4, 4, 0, 23, 20, 0, 0}, {1, 6, 6, 0, 19, 20, 1, 0}, 0, 0, 3, 19},     // widths decide
        {{1, 44, 9, 0, 23, 20, 0, 0}, {1, 4, 4, 0, 19, 20, 1, 0}, 0, 0, 0, 23},    // far apart at the last level
        {{1, 3, 2, 0, 21, 20, 0, 0}, {1, 1, 1, 0, 27, 20, 1, 0}, 0, 0, 1, 23},     // weak: mean window 22, odd
        {{1, 3, 2, 0, 21, 20, 0, 1}, {1, 1, 1, 0, 27, 20, 1, 1}, 1, 35, 0, 23},    // weak at the last level
    };
    for (const Case& c : cases) {
        ResolutionEstimator::EstimatedCharacter estimate{2, c.window_in};
        estimator(c.levels).combine_heights_and_widths(c.heights, c.widths, estimate);
        EXPECT_EQ((Ints{estimate.character_class, estimate.window_size}), (Ints{c.klass, c.window})) << &c - cases;
    }
}

TEST(ResolutionEstimator, MultiScaleBinarizationTakesTheBodySizeOfRenderedPagesAsWindow) {
    struct Case { int width, body, glyph, stroke, headline; } cases[] = {
        {1000, 16, 12, 2, 0}, {1000, 24, 16, 3, 0}, {1000, 40, 26, 5, 0}, {1000, 22, 14, 3, 64}, {1600, 40, 26, 5, 0}};
    for (const Case& c : cases) {
        support::TextPageSpec spec;
        spec.width = c.width, spec.right = c.width - 80, spec.height = c.width * 4 / 5;
        spec.body_height = c.body, spec.glyph_width = c.glyph, spec.stroke = c.stroke, spec.line_pitch = 2 * c.body;
        spec.lines = (spec.height - 200) / spec.line_pitch, spec.headline_height = c.headline, spec.headline_stem = 6;
        const support::TextPage page = support::make_text_page(spec);
        common::BasicImage bitonal;  // binarized with the estimate plugged in
        geometric::OminBinarization binarization(&page.gray, &bitonal);
        binarization.set_character_estimate(&ResolutionEstimator::estimate_window_for_binarization);
        binarization.run_binarization();
        EXPECT_GE(binarization.get_estimated_character().character_class, 2) << c.body;
        EXPECT_NEAR(binarization.get_estimated_character().window_size, c.body, c.width / 1000) << c.body;
        // The same from a page analysis of the glyphs.
        geometric::AreaPageanalysis analysis(&page.ink, nullptr);
        analysis.dilate = false, analysis.run_page_analysis();
        ResolutionEstimator::EstimatedCharacter estimate{0, 0};
        estimator().estimate_character_size(&analysis, 0, estimate);
        EXPECT_NEAR(estimate.window_size, c.body, 1) << c.body;
    }
}

TEST(ResolutionEstimator, APyramidIsReadFromItsCoarsestLevelAndABlankPageTakesTheWindowOfItsSize) {
    const support::TextPage page = support::make_text_page(support::TextPageSpec());
    // A pyramid whose coarsest level is blank: the next finer decides.
    Pyramid pyramid{std::make_shared<common::BasicImage>(), std::make_shared<common::BasicImage>(200, 250, common::GRAY)};
    geometric::ImageIntegerDownSampling::DownSampling2(page.gray, *pyramid[0]);
    ResolutionEstimator::EstimatedCharacter estimate{0, 0};
    estimator(2).estimate_character_size(page.gray, pyramid, estimate);
    EXPECT_EQ(estimate.window_size, 23);
    // Without text, the window of the greater side.
    const int sides[][2] = {{1999, 25}, {2000, 35}, {2500, 45}, {3000, 55}, {4000, 65}};
    for (const auto& side : sides) {
        const common::BasicImage blank(16, side[0], common::GRAY);  // black: no ink either
        estimate = {2, 0};
        estimator().estimate_character_size(blank, Pyramid(), estimate);
        EXPECT_EQ((Ints{estimate.character_class, estimate.window_size}), (Ints{0, side[1]})) << side[0];
    }
}

// The page analyses on pages built in code: which blobs they keep, the
// resolution they read from them.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "binarization/sauvola_binarization.h"
#include "pageanalysis/apriori_pageanalysis.h"
#include "pageanalysis/area_page_analysis.h"
#include "pageanalysis/area_pageanalysis.h"
#include "support/blob_scenes.h"
#include "support/images.h"
#include "support/text_pages.h"

namespace {

using geometric::Geobox;
using support::TextPage;
using support::TextPageSpec;

// Dots per inch of body text whose boxes are `height` rows high.
int resolution_of(int height) { return static_cast<int>(300.0f * (static_cast<float>(height) / 22.0f)); }

TextPageSpec body_page(int body) {
    TextPageSpec spec;
    spec.body_height = body;
    spec.glyph_width = body * 14 / 22;
    spec.stroke = body >= 22 ? body / 7 : 2;
    spec.line_pitch = 2 * body;
    spec.lines = 8;
    return spec;
}

// The words of a page whose glyphs in a word lie `gap` pixels apart.
int words(const TextPage& page, int gap) {
    int count = 0;
    for (std::size_t i = 0; i < page.glyph_boxes.size(); ++i) {
        const Geobox<int>& box = page.glyph_boxes[i];
        if (i == 0 || box.top != page.glyph_boxes[i - 1].top || box.left - page.glyph_boxes[i - 1].right - 1 > gap)
            ++count;
    }
    return count;
}

// An empty page has no text, no box and resolution 0, and so has a 1-bit
// page for the gray analysis; a page of one glyph is too little text, but
// its box is the mean.
TEST(AprioriPageanalysis, AnEmptyPageHasNoTextAndResolutionZero) {
    const TextPage page = support::make_text_page([] {
        TextPageSpec spec;
        spec.lines = 0;
        return spec;
    }());
    geometric::AprioriPageanalysis analysis(&page.gray, nullptr);
    EXPECT_FALSE(analysis.run_page_analysis());
    int width = -1, height = -1;
    analysis.obtain_average_bounding_box(width, height);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(height, 0);
    EXPECT_EQ(analysis.obtain_spatial_resolution(), 0);
    // Text-picture separation reads gray pages only.
    const TextPage full = support::make_text_page(TextPageSpec());
    geometric::AprioriPageanalysis of_ink(&full.ink, nullptr);
    EXPECT_FALSE(of_ink.run_page_analysis());

    TextPageSpec one;
    one.lines = 1;
    one.right = one.left + one.glyph_width;
    const TextPage single = support::make_text_page(one);
    geometric::AreaPageanalysis area(&single.ink, nullptr);
    area.dilate = false;
    EXPECT_FALSE(area.run_page_analysis());
    area.obtain_average_bounding_box(width, height);
    EXPECT_EQ(width, 14);
    EXPECT_EQ(height, 22);
}

// Without dilation the boxes are the glyphs' own, so the rule shows: the
// mean box height h gives (int)(300 (h / 22)), truncated (23 rows: 313.6).
// With two rounds of dilation glyphs three pixels apart merge into words,
// and the words' boxes, two rows taller at each end, give the resolution.
TEST(AreaPageanalysis, ResolutionComesFromTheBoxesOfWhatItFinds) {
    struct Case {
        bool dilate;
        int blobs_per_word;  // 1: whole words, 0: single glyphs
        int height;
    };
    TextPageSpec spec = body_page(23);
    spec.glyph_gap = 3;
    spec.right = 876;  // eight whole words of 82 pixels a line, 20 apart
    const TextPage page = support::make_text_page(spec);
    for (const Case c : {Case{false, 0, 23}, Case{true, 1, 27}}) {
        SCOPED_TRACE(c.dilate);
        geometric::AreaPageanalysis analysis(&page.ink, nullptr);
        analysis.dilate = c.dilate;
        ASSERT_TRUE(analysis.run_page_analysis());
        EXPECT_EQ(static_cast<int>(analysis.filter.regular_blobs.size()),
                  c.blobs_per_word ? words(page, 3) : static_cast<int>(page.glyph_boxes.size()));
        EXPECT_EQ(analysis.obtain_spatial_resolution(), resolution_of(c.height));
    }
    EXPECT_EQ(resolution_of(23), 313);
}

// The newer analysis takes a BINARY page as it is and binarizes any other,
// leaves the page alone, and sorts by area: the words are regular, a block
// far above five times their mean area is not.
TEST(AreaPageAnalysisCollector, KeepsWordsOfOrdinaryAreaAndLeavesThePageAlone) {
    TextPageSpec spec;
    spec.glyph_gap = 3;
    spec.right = 876;
    TextPage page = support::make_text_page(spec);
    support::fill_rect(page.ink, 300, 700, 400, 60);
    for (int y = 700; y < 760; ++y) std::memset(page.gray.get_line_pointer(y) + 300, 40, 400);
    const common::BasicImage ink_before(page.ink);

    common::BasicImage unused;
    auto sauvola = std::make_shared<geometric::SauvolaBinarization>(&page.gray, &unused);
    geometric_test::AreaPageanalysis analysis(std::make_shared<geometric_test::PageAnalysisComponentFactory>(sauvola));
    for (const common::BasicImage* source : {&page.ink, &page.gray}) {
        SCOPED_TRACE(source->get_image_type());
        const std::shared_ptr<geometric_test::TextBlobCollector> collector = analysis.perform_page_analysis(*source);
        EXPECT_EQ(static_cast<int>(collector->regular_blobs.size()), words(page, 3));
        ASSERT_EQ(collector->irregular_blobs.size(), 1u);
        EXPECT_EQ(collector->irregular_blobs.front().box.top, 698);
    }
    EXPECT_TRUE(support::same_bytes(page.ink, ink_before));

    common::BasicImage binary;
    common::BasicImage* gray = &binary;
    EXPECT_TRUE(analysis.fetch_binary_and_gray_image(page.ink, binary, &gray));
    EXPECT_EQ(gray, nullptr);
    EXPECT_TRUE(analysis.fetch_binary_and_gray_image(page.gray, binary, &gray));
    ASSERT_NE(gray, nullptr);
    EXPECT_EQ(gray->get_image_type(), common::GRAY);
}

}  // namespace

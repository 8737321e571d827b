// The gray test of components: sharp characters are text, faint ink is
// text-like but no text, and a picture block is neither.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "common/basic_image.h"
#include "binarization/sauvola_binarization.h"
#include "pageanalysis/hqc_pageanalysis.h"
#include "pageanalysis/page_analysis_component_factory.h"
#include "support/text_pages.h"

namespace {

constexpr int kFaintFrom = 420;        // rows from here down (a line gap) hold faint ink
constexpr unsigned char kFaint = 205;  // 15 below the paper: under the least disparity of 30

struct HqcPage {
    support::TextPage page;
    common::BasicImage binary;
};

// Sharp glyphs above kFaintFrom, the same glyphs faint below it, and a
// photo block on the right whose pixels are all ink in the binary page.
HqcPage make_hqc_page() {
    support::TextPageSpec spec;
    spec.lines = 14;
    spec.photo = geometric::Geobox<int>{700, 220, 600, 120};  // under the size limits: only its thickness tells
    HqcPage hqc{support::make_text_page(spec), common::BasicImage()};
    hqc.binary = hqc.page.ink;
    for (int y = 0; y < spec.height; ++y)
        for (int x = 0; x < spec.width; ++x) {
            if (y >= kFaintFrom && hqc.page.ink.get_pixel(x, y) != 0) hqc.page.gray.set_pixel(x, y, kFaint);
            if (x >= 600 && x <= 700 && y >= 120 && y <= 220) hqc.binary.set_pixel(x, y, 1);
            // A dark rule wider than any text blob but thin, and dark specks too small for text.
            const bool rule = x >= 100 && x < 300 && y >= 760 && y < 763;
            const bool speck = y == 780 && x % 20 == 0 && x % 40 < 20;
            if (rule || speck) hqc.binary.set_pixel(x, y, 1), hqc.page.gray.set_pixel(x, y, 40);
        }
    return hqc;
}

}  // namespace

TEST(HqcPageanalysis, SeparatesSharpGlyphsFaintInkAndPictures) {
    const HqcPage hqc = make_hqc_page();
    geometric::HqcPageanalysis analysis(&hqc.page.gray, &hqc.binary, nullptr);
    analysis.para.select_text_blobs = false;
    ASSERT_TRUE(analysis.run_page_analysis());
    int sharp = 0, faint = 0;
    for (const geometric::Geobox<int>& box : hqc.page.glyph_boxes) (box.top >= kFaintFrom ? faint : sharp) += 1;
    ASSERT_GT(sharp, 50);
    ASSERT_GT(faint, 50);
    // Every sharp glyph is text, nothing faint is, the picture is not even text-like.
    EXPECT_EQ(static_cast<int>(analysis.filter.regular_blobs.size()), sharp);
    for (const geometric::TextBlob& blob : analysis.filter.regular_blobs) {
        EXPECT_LT(blob.box.bottom, kFaintFrom);
        EXPECT_TRUE(blob.box.right < 600 || blob.box.left > 700 || blob.box.bottom < 120 || blob.box.top > 220);
    }
    EXPECT_EQ(analysis.textlike_blobs, sharp + faint);
    EXPECT_NEAR(analysis.obtain_text_percentage_among_textlike_blobs(), double(sharp) / (sharp + faint), 1e-12);

    // The compression test splits the characters but loses none.
    geometric::HqcPageanalysis coded(&hqc.page.gray, &hqc.binary, nullptr);
    coded.para.select_text_blobs = false;
    coded.para.use_compression_cost = true;
    coded.run_page_analysis();
    EXPECT_EQ(static_cast<int>(coded.filter.regular_blobs.size() + coded.filter.irregular_blobs.size()), sharp);
    EXPECT_NEAR(coded.obtain_text_percentage_among_textlike_blobs(), double(sharp) / (sharp + faint), 1e-12);

    // Margins that leave every blob outside: nothing counted, share 0.
    geometric::HqcPageanalysis outside(&hqc.page.gray, &hqc.binary, nullptr);
    outside.para.select_text_blobs = false;
    outside.setDocumentMargins({{1.0, 0.0, -2000.0}, {1.0, 0.0, -3000.0}, {0.0, 1.0, 0.0}, {0.0, 1.0, -800.0}});
    outside.run_page_analysis();
    EXPECT_EQ(outside.textlike_blobs, 0);
    EXPECT_EQ(outside.obtain_text_percentage_among_textlike_blobs(), 0.0);
}

// The newer analysis binarizes the gray page itself and has no picture
// enhancement: it keeps the sharp glyphs and drops the faint ones as the
// older one does, but a hatched picture of thin strokes, far larger in area
// than any word, passes its size and thickness tests, while the older one
// marks it picture by its area.
TEST(IHqcPageAnalysis, ClassifiesGlyphsAsHqcDoesButKeepsAThinHatchedPicture) {
    support::TextPageSpec spec;
    spec.lines = 8;
    support::TextPage page = support::make_text_page(spec);
    constexpr int kFaintRows = 250, kHatchLeft = 400, kHatchTop = 500, kHatchSide = 120;
    common::BasicImage binary(page.ink);
    for (int y = 0; y < spec.height; ++y)
        for (int x = 0; x < spec.width; ++x) {
            if (y >= kFaintRows && page.ink.get_pixel(x, y) != 0) page.gray.set_pixel(x, y, kFaint);
            const int u = x - kHatchLeft, v = y - kHatchTop;
            if (u < 0 || v < 0 || u >= kHatchSide || v >= kHatchSide || (u % 6 >= 2 && v % 6 >= 2)) continue;
            binary.set_pixel(x, y, 1);
            page.gray.set_pixel(x, y, 40);
        }
    int sharp = 0;
    for (const geometric::Geobox<int>& box : page.glyph_boxes) sharp += box.top < kFaintRows ? 1 : 0;
    ASSERT_GT(sharp, 50);
    // Sauvola's smoothing may widen the hatch by a pixel.
    const auto is_hatch = [](const geometric::TextBlob& blob) { return std::abs(blob.box.left - kHatchLeft) <= 1; };

    geometric::HqcPageanalysis older(&page.gray, &binary, nullptr);
    older.para.select_text_blobs = false;
    older.run_page_analysis();
    EXPECT_EQ(static_cast<int>(older.filter.regular_blobs.size()), sharp);
    for (const geometric::TextBlob& blob : older.filter.regular_blobs) EXPECT_FALSE(is_hatch(blob));

    common::BasicImage unused;
    auto sauvola = std::make_shared<geometric::SauvolaBinarization>(&page.gray, &unused);
    geometric_test::iHQCPageAnalysis newer(std::make_shared<geometric_test::PageAnalysisComponentFactory>(sauvola));
    const auto collector = newer.perform_page_analysis(page.gray);
    EXPECT_EQ(static_cast<int>(collector->regular_blobs.size()), sharp + 1);
    int hatches = 0;
    for (const geometric::TextBlob& blob : collector->regular_blobs) {
        hatches += is_hatch(blob) ? 1 : 0;
        EXPECT_TRUE(is_hatch(blob) || blob.box.bottom < kFaintRows);
    }
    EXPECT_EQ(hatches, 1);
}

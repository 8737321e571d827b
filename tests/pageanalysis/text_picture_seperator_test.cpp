// Text told from pictures on pages built in code: body glyphs are text; bold
// stems, a photo and glyphs hardly darker than the paper are not.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <list>

#include "components/connected_component_calculator.h"
#include "pageanalysis/connected_compnent_classifier.h"
#include "pageanalysis/text_picture_seperator.h"
#include "pixel/geo_morphological.h"
#include "support/blob_scenes.h"
#include "support/text_pages.h"

namespace {

using geometric::Geobox;
using geometric::TextBlob;
using support::TextPage;
using support::TextPageSpec;

// How many of the boxes a blob matches, side by side within `slack` pixels.
int found(const std::vector<Geobox<int>>& boxes, const std::list<TextBlob>& blobs, int slack) {
    int count = 0;
    for (const Geobox<int>& box : boxes)
        for (const TextBlob& blob : blobs)
            if (std::abs(box.left - blob.box.left) <= slack && std::abs(box.right - blob.box.right) <= slack &&
                std::abs(box.top - blob.box.top) <= slack && std::abs(box.bottom - blob.box.bottom) <= slack) {
                ++count;
                break;
            }
    return count;
}

TEST(TextPictureSeparation, BodyGlyphsAreTextThickStemsAndThePhotoArePicture) {
    // Stems of 16 pixels vanish under the erosion by 8 from either side; 17 leave a core.
    for (const int stem : {16, 17}) {
        SCOPED_TRACE(stem);
        TextPageSpec spec;
        spec.width = 700;
        spec.height = 560;
        spec.right = 660;
        spec.lines = 6;
        spec.headline_height = 60;
        spec.headline_stem = stem;
        spec.photo = Geobox<int>{640, 500, 420, 250};
        const TextPage page = support::make_text_page(spec);

        geometric::TextPictureSeperator seperator;
        std::list<TextBlob> blobs;
        ASSERT_TRUE(seperator.perform_text_picture_seperation(page.gray, blobs));
        // Sauvola's smoothing lets a sharp glyph grow by a row or two at its foot.
        const int headline_text = stem == 16 ? static_cast<int>(page.headline_boxes.size()) : 0;
        EXPECT_EQ(found(page.glyph_boxes, blobs, 2), static_cast<int>(page.glyph_boxes.size()));
        EXPECT_EQ(found(page.headline_boxes, blobs, 2), headline_text);
        // Nothing of the photo.
        EXPECT_EQ(blobs.size(), page.glyph_boxes.size() + headline_text);
    }
}

// The classification on the exact ink of a line of glyphs `ink` on paper of
// 220, with a rule `rule_width` by `rule_height` beside it. The ring around
// a glyph sees paper only, so the disparity is 220 - ink, and below 30 the
// glyph is picture. A rule is text while its box extends fewer than 128
// rows and columns (bottom - top, right - left) and holds 5 pixels or more.
TEST(TextPictureSeparation, ClassifierCallsTooLargeTooSmallAndTooPaleComponentsPicture) {
    struct Case {
        int ink;
        int rule_width;
        int rule_height;
        int text;  // glyphs found as text, and rules, -1 for all the glyphs
    };
    const Case cases[] = {
        {40, 0, 0, -1},  {190, 0, 0, -1}, {191, 0, 0, 0},   {40, 3, 128, -2},
        {40, 3, 129, -1}, {40, 128, 3, -2}, {40, 129, 3, -1}, {40, 1, 4, -1}, {40, 1, 5, -2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.ink << " " << c.rule_width << " x " << c.rule_height);
        TextPageSpec spec;
        spec.width = 400;
        spec.height = 200;
        spec.right = 200;
        spec.lines = 1;
        spec.ink = static_cast<unsigned char>(c.ink);
        TextPage page = support::make_text_page(spec);
        support::fill_rect(page.ink, 250, 20, c.rule_width, c.rule_height);
        for (int y = 20; y < 20 + c.rule_height; ++y) std::memset(page.gray.get_line_pointer(y) + 250, 40, c.rule_width);
        common::BasicImage dilated(page.ink.get_height(), page.ink.get_width(), common::BINARY);
        geometric::GeoMorphological::dilate_xy(page.ink, dilated);
        const common::BasicImage nothing_thick(page.ink.get_height(), page.ink.get_width(), common::BINARY);
        geometric::ConnectedComponentCalculator calculator;
        calculator.formulate_connected_components(page.ink);

        std::list<TextBlob> blobs;
        const geometric::ConnectedCompnentClassifier classifier{geometric::TextPictureSeperatorPara()};
        classifier.identify_text_connected_components(&calculator, nothing_thick, dilated, page.ink, page.gray, blobs);
        const int glyphs = static_cast<int>(page.glyph_boxes.size());
        EXPECT_EQ(static_cast<int>(blobs.size()), c.text == -1 ? glyphs : c.text == -2 ? glyphs + 1 : c.text);
    }
}

}  // namespace

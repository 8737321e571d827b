// The multi-scale binarization: headlines stay solid where one window breaks
// them, a single-scale page against the threshold summed pixel by pixel, the
// pyramid's level rule, the limits of each scale, the spreading of marks.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "binarization/omin_binarization.h"
#include "binarization/sauvola_binarization.h"
#include "common/geometricexception.h"
#include "components/connected_component_calculator.h"
#include "support/errors.h"
#include "support/images.h"
#include "support/text_pages.h"

namespace geometric {
namespace {

// Within a glyph's box: the components of the ink, those of the paper (one
// more for each hollow stroke) and the share of the glyph's ink found.
struct Letter {
    int ink_parts, paper_parts;
    double found;
};

Letter letter_in(const common::BasicImage& bits, const support::TextPage& page, const Geobox<int>& box) {
    common::BasicImage ink(box.height(), box.width(), common::BINARY), paper(ink);
    int found = 0, truth = 0;
    for (int y = box.top; y <= box.bottom; ++y)
        for (int x = box.left; x <= box.right; ++x) {
            ink.set_pixel(x - box.left, y - box.top, bits.get_pixel(x, y));
            paper.set_pixel(x - box.left, y - box.top, 1 - bits.get_pixel(x, y));
            truth += page.ink.get_pixel(x, y);
            found += page.ink.get_pixel(x, y) & bits.get_pixel(x, y);
        }
    ConnectedComponentCalculator inks, papers;
    inks.formulate_connected_components(ink);
    papers.formulate_connected_components(paper);
    return {static_cast<int>(inks.size()), static_cast<int>(papers.size()), double(found) / truth};
}

TEST(OminBinarization, HeadlineStrokesStaySolidWhereOneWindowBreaksThem) {
    support::TextPageSpec spec;
    spec.width = 1200, spec.height = 700, spec.lines = 6, spec.ink = 90, spec.paper = 200;
    spec.headline_height = 240, spec.headline_stem = 40;
    support::TextPage page = support::make_text_page(spec);
    common::BasicImage multi, single;
    OminBinarization omin(&page.gray, &multi);
    SauvolaBinarization sauvola(&page.gray, &single);
    ASSERT_TRUE(omin.run_binarization() && sauvola.run_binarization());
    const Letter solid = letter_in(multi, page, page.headline_boxes[0]);
    const Letter broken = letter_in(single, page, page.headline_boxes[0]);
    EXPECT_EQ(solid.ink_parts, 1);
    EXPECT_EQ(solid.paper_parts, 1);  // the counter of the "n", open below
    EXPECT_GT(solid.found, 0.97);
    EXPECT_GT(broken.paper_parts, 1);
    EXPECT_LT(broken.found, 0.7);
    EXPECT_GT(letter_in(multi, page, page.glyph_boxes[3]).found, 0.9);  // body text too
}

// A page up to 1000 a side with small text is decided at scale 0 alone: ink
// where gray < (int)(m (1 - k) + 0.0078 k m d) over the 35 by 35 window, unless
// the pixel is over 200 or the window flat (m / d >= 20); the frame is paper.
TEST(OminBinarization, SingleScalePageMatchesThePlainThreshold) {
    const common::BasicImage gray = support::text_page(90, 130, 5u);
    common::BasicImage bits;
    OminBinarization omin(&gray, &bits);
    omin.set_despeckle(false);
    omin.set_k(0.3f);
    ASSERT_TRUE(omin.run_binarization());
    const common::BasicImage& marks = omin.get_scale_map();
    EXPECT_EQ(std::count(marks.get_data(), marks.get_data() + marks.get_data_size(), 2), 0);
    for (int y = 0; y < 90; ++y)
        for (int x = 0; x < 130; ++x) {
            double sum = 0, square = 0, n = 0;
            for (int v = std::max(y - 17, 0); v <= std::min(y + 17, 89); ++v)
                for (int u = std::max(x - 17, 0); u <= std::min(x + 17, 129); ++u) {
                    const double p = gray.get_line_pointer(v)[u];
                    sum += p, square += p * p, n += 1;
                }
            const double m = sum / n, d = std::sqrt(square / n - m * m);
            const int g = gray.get_line_pointer(y)[x];
            const bool frame = x == 0 || y == 0 || x == 129 || y == 89;
            const bool flat = g > 200 || m / (d + 1e-10) >= 20.0;
            const bool ink = !frame && !flat && g < static_cast<int>(m * (1 - 0.3f) + 0.0078 * 0.3f * m * d);
            ASSERT_EQ(bits.get_pixel(x, y), ink ? 1u : 0u) << x << "," << y;
        }
}

// 1100 wide: start at scale 1, window 35 / 2 = 17; the floor of each next
// scale takes 0.25 (0.9 - r) of the ceiling before, r counting up in floats.
TEST(OminBinarization, ScaleLimitsAndMarksOfALargePage) {
    common::BasicImage gray = support::flat_image(300, 1100, 230), bits;
    for (int y = 120; y < 180; ++y)
        for (int x = 100; x < 300; ++x) gray.get_line_pointer(y)[x] = 20 + x % 7;
    OminBinarization omin(&gray, &bits);
    ASSERT_TRUE(omin.run_binarization());
    const std::vector<OminPara::ScaleConstraints>& limits = omin.get_scale_constraints();
    ASSERT_EQ(limits.size(), 3u);
    EXPECT_EQ(limits[1].minimum_pixels, 0.25 * (0.9 - 0.1f) * 289);
    EXPECT_EQ(limits[2].minimum_pixels, 0.25 * (0.9 - static_cast<float>(0.1f + 0.1)) * 1156);
    EXPECT_EQ(limits[2].maximum_pixels, 1e16);
    const common::BasicImage& marks = omin.get_scale_map();
    EXPECT_EQ(marks.get_width(), 550);
    EXPECT_EQ(marks.get_pixel(0, 0), 255u);   // paper, frame repaired from inside
    EXPECT_EQ(marks.get_pixel(100, 75), 3u);  // the block fits only scale 2
    EXPECT_EQ(bits.get_pixel(200, 150), 1u);
    EXPECT_EQ(bits.get_pixel(600, 150), 0u);
}

// Little evidence (class 0 or 1) lets the search go two scales deeper, and
// class 1 keeps the window at 25 or more; the window is made odd.
TEST(OminBinarization, CharacterEstimateSetsTheWindowAndTheDepth) {
    const common::BasicImage gray = support::text_page(60, 90, 3u);
    struct Case { int character_class, window; std::size_t scales; double ceiling; };
    const Case cases[] = {{2, 35, 4, 35 * 35}, {1, 11, 6, 25 * 25}, {1, 31, 6, 31 * 31}, {0, 40, 6, 41 * 41}};
    for (const Case& c : cases) {
        common::BasicImage bits;
        OminBinarization omin(&gray, &bits);
        omin.set_character_estimate([&c](const common::Image&, const ImagePyramid& pyramid,
                                         OminBinarization::EstimatedCharacter& estimate) {
            EXPECT_EQ(pyramid.levels, 0);
            estimate = {c.character_class, c.window};
        });
        ASSERT_TRUE(omin.run_binarization());
        ASSERT_EQ(omin.get_scale_constraints().size(), c.scales) << c.window;
        EXPECT_EQ(omin.get_scale_constraints()[0].maximum_pixels, c.ceiling) << c.window;
    }
    common::BasicImage bgra(8, 8, common::BGRA), bits;
    EXPECT_FALSE(OminBinarization(&bgra, &bits).run_binarization());
    OminBinarization unbound;
    EXPECT_EQ(support::thrown_text<Geometricexception>([&] { unbound.run_binarization(); }), "the output image is empty");
}

TEST(OminBinarization, MarksSpreadBreadthFirstInsideAPaperFrame) {
    common::BasicImage map(4, 7, common::GRAY);
    map.set_pixel(1, 1, 2), map.set_pixel(5, 2, 3), map.set_pixel(6, 0, 7);
    OminBinarization::propagate_image(map);
    // Column 3 is reached from both marks in the same round: first come, first served.
    const unsigned char expected[4][7] = {{255, 255, 255, 255, 255, 255, 255}, {255, 2, 2, 2, 3, 3, 255},
                                          {255, 2, 2, 2, 3, 3, 255}, {255, 255, 255, 255, 255, 255, 255}};
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 7; ++x) EXPECT_EQ(map.get_pixel(x, y), expected[y][x]) << x << "," << y;
    OminBinarization::post_process_scale_boundary(map);
    EXPECT_EQ(map.get_pixel(0, 0), 2u);
    EXPECT_EQ(map.get_pixel(6, 3), 3u);
}

}  // namespace
}  // namespace geometric

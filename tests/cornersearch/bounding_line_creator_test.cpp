// The page-edge lines of page photos, by Canny edges or, where the page
// barely stands out, by the binarization.
#include <gtest/gtest.h>

#include <vector>

#include "cornersearch/bounding_line_creator.h"
#include "cornersearch/corner_preprocessing.h"
#include "support/images.h"

namespace geometric {
namespace {

// One line a side, each within `tolerance` of its side's two corners.
void expect_sides(const std::vector<BoundingLine>& lines, const support::Quad& page, double tolerance) {
    ASSERT_EQ(lines.size(), 4u);
    const int ends[4][2] = {{3, 0}, {0, 1}, {1, 2}, {2, 3}};  // left, top, right, bottom
    int sides = 0;
    for (const BoundingLine& line : lines) {
        sides |= 1 << line.position;
        EXPECT_TRUE(line.has_dominant_segment);
        for (int k : ends[line.position])
            EXPECT_LT(line.line.point_distance(Geocoordinate<double>(page[k].x, page[k].y)), tolerance);
    }
    EXPECT_EQ(sides, 15);
}

// Paper 136 on a desk of 128 without marks: the step stays below Canny's
// upper threshold, so the edges are empty, while the binarization keeps a
// bright rim inside the page's sides. Lines fitted to the whole rim stand
// inside the page, hence the wider tolerance; the staged search finds no page.
TEST(BoundingLineCreator, EachSideOfPagePhotosHasItsLine) {
    const support::Quad leaning = support::quad(140, 100, 660, 60, 620, 500, 100, 540);
    const struct {
        support::Quad page;
        support::Paper look;
        double tolerance;
    } cases[] = {{leaning, support::Paper(), 3.0},
                 {support::quad(200, 80, 600, 120, 700, 520, 90, 480), support::Paper(), 3.0},
                 {leaning, support::Paper{136, 128, 40, false}, 25.0}};
    for (const auto& c : cases) {
        const common::BasicImage photo = support::photo(800, 600, c.page, c.look);
        const bool clear = c.tolerance == 3.0;
        if (!clear) {
            common::BasicImage edges;
            bool strongly = true;
            geometric_test::CornerPreprocessing::perform_edge_detection(photo, edges, strongly, 1);
            ASSERT_EQ(support::checksum(edges), support::checksum(support::flat_image(600, 800, 0, common::BINARY)));
        }
        CornerSearchPara para;
        std::vector<BoundingLine> lines, partial, simplified;
        EXPECT_TRUE(BoundingLineCreator::formulate_bounding_lines(para, photo, lines, partial));
        expect_sides(lines, c.page, c.tolerance);
        EXPECT_EQ(BoundingLineCreator::formulate_bounding_lines_via_edge_simplification(para, photo, simplified), clear);
        if (clear) expect_sides(simplified, c.page, 3.0);
    }
}

}  // namespace
}  // namespace geometric

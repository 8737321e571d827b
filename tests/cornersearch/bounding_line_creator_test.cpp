// The page-edge lines of page photos: the Canny search on a clear page, the
// binarization's when the page barely stands out from the desk, the record
// scaled to the image; and the measures of four lines.
#include <gtest/gtest.h>

#include <vector>

#include "cornersearch/bounding_line_creator.h"
#include "cornersearch/corner_preprocessing.h"
#include "edgelines/bounding_lines_operator.h"
#include "edgelines/bounding_lines_quality.h"
#include "support/images.h"

namespace geometric {
namespace {

// Each side's line passes within `tolerance` of its two true corners, one line a side.
void expect_on_sides(const std::vector<BoundingLine>& lines, const support::Quad& page, double tolerance) {
    ASSERT_EQ(lines.size(), 4u);
    const int ends[4][2] = {{3, 0}, {0, 1}, {1, 2}, {2, 3}};  // left, top, right, bottom
    int seen = 0;
    for (const BoundingLine& line : lines) {
        seen |= 1 << line.position;
        for (int k : ends[line.position]) {
            const Geocoordinate<double> corner(page[k].x, page[k].y);
            EXPECT_LT(line.line.point_distance(corner), tolerance) << "side " << line.position << " corner " << k;
        }
    }
    EXPECT_EQ(seen, 15);
}

TEST(BoundingLineCreator, CannyEdgesGiveTheFourSidesOfPagePhotos) {
    const support::Quad pages[] = {support::quad(140, 100, 660, 60, 620, 500, 100, 540),
                                   support::quad(200, 80, 600, 120, 700, 520, 90, 480),
                                   support::quad(100, 100, 700, 100, 700, 500, 100, 500)};
    for (const support::Quad& page : pages) {
        const common::BasicImage photo = support::photo(800, 600, page);
        CornerSearchPara para;
        std::vector<BoundingLine> lines, partial;
        EXPECT_TRUE(BoundingLineCreator::formulate_bounding_lines(para, photo, lines, partial));
        expect_on_sides(lines, page, 3.0);
        EXPECT_TRUE(partial.empty());
    }
}

// Paper 136 on a desk of 128: the step stays below Canny's upper threshold
// (a tenth of the mean), so the edges hold nothing, while the adaptive
// binarization keeps a bright rim along the inside of the page's sides. Its
// lines are fitted to the whole rim, so they stand inside the page.
TEST(BoundingLineCreator, BinarizationTakesOverWhereCannyFindsNothing) {
    const support::Quad page = support::quad(140, 100, 660, 60, 620, 500, 100, 540);
    support::Paper look;
    look.paper = 136;
    look.desk = 128;
    look.marks = false;
    const common::BasicImage photo = support::photo(800, 600, page, look);

    common::BasicImage edges;
    bool strongly = true;
    geometric_test::CornerPreprocessing::perform_edge_detection(photo, edges, strongly, 1);
    int edge_pixels = 0;
    for (int y = 0; y < edges.get_height(); ++y)
        for (int x = 0; x < edges.get_width(); ++x) edge_pixels += edges.get_pixel(x, y) != 0;
    ASSERT_EQ(edge_pixels, 0);

    CornerSearchPara para;
    std::vector<BoundingLine> lines, partial;
    EXPECT_TRUE(BoundingLineCreator::formulate_bounding_lines(para, photo, lines, partial));
    expect_on_sides(lines, page, 25.0);
}

// Ratios become pixels of this image; a window wider than the shorter side
// becomes (m / 4) * 2 + 1, and 3 below 4.
TEST(BoundingLineCreator, RecordIsScaledToTheImage) {
    const struct {
        int width, height, window;
        float document, blob_height, blob_size;
    } cases[] = {{60, 40, 21, 120.0f, 2.0f, 3.0f}, {10, 6, 3, 3.0f, 0.3f, 3.0f}, {900, 500, 77, 22500.0f, 25.0f, 5.0f}};
    for (const auto& c : cases) {
        CornerSearchPara para;
        std::vector<BoundingLine> lines, partial;
        BoundingLineCreator::formulate_bounding_lines(para, support::flat_image(c.height, c.width, 128), lines,
                                                      partial);
        EXPECT_EQ(para.binarization_window, c.window) << c.width;
        EXPECT_NEAR(para.minimum_document_area, c.document, 1e-3) << c.width;
        EXPECT_NEAR(para.minimum_blob_height_ratio, c.blob_height, 1e-5) << c.width;
        EXPECT_NEAR(para.minimum_blob_width_ratio, c.blob_height / 2, 1e-5) << c.width;
        EXPECT_NEAR(para.minimum_blob_area_ratio, 5 * c.document, 1e-2) << c.width;
        EXPECT_NEAR(para.minimum_blob_size_ratio, c.blob_size, 1e-5) << c.width;
        EXPECT_TRUE(lines.empty());
    }
}

BoundingLine side(BoundingLinePosition position, float x1, float y1, float x2, float y2) {
    BoundingLine line;
    line.position = position;
    line.line = GeolineBase(y2 - y1, x1 - x2, x2 * y1 - x1 * y2);
    line.segment_length = static_cast<int>(std::hypot(x2 - x1, y2 - y1));
    line.x1 = x1, line.y1 = y1, line.x2 = x2, line.y2 = y2;
    return line;
}

// A 300 x 200 frame in a 400 x 300 image whose top ends 3 and 4 pixels short
// of its corners: gaps of 7 over 1000 pixels of support.
TEST(BoundingLinesQuality, MeasuresOfAFrame) {
    std::vector<BoundingLine> lines = {side(LEFT_BOUNDARY, 50, 50, 50, 250), side(TOP_BOUNDARY, 350 - 4, 50, 50 + 3, 50),
                                       side(RIGHT_BOUNDARY, 350, 250, 350, 50),
                                       side(BOTTOM_BOUNDARY, 50, 250, 350, 250)};
    BoundingLineProperty property;
    BoundingLinesOperator::initializeBoundingLineProperty(lines, property);
    const struct {
        double horizontal, vertical;
        bool parallel;
    } cases[] = {{1.9, 2.9, true}, {2.0, 0.0, false}, {0.0, 3.0, false}};
    for (const auto& c : cases) {
        property.horizontal_angle_disparity = c.horizontal;
        property.vertical_angle_disparity = c.vertical;
        BoundingLinesQuality quality;
        quality.evaluate(400, 300, 300, 200, lines, property);
        EXPECT_FLOAT_EQ(quality.unclosed_ratio, 7.0f / 993.0f);
        EXPECT_FLOAT_EQ(quality.area_ratio, 0.5f);
        EXPECT_FLOAT_EQ(quality.length_ratio, 993.0f / 1400.0f);
        EXPECT_EQ(quality.is_parallel_enough, c.parallel) << c.horizontal << " " << c.vertical;
    }
}

}  // namespace
}  // namespace geometric

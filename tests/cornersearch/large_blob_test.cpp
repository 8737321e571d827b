// Large blobs of contour images and the page sides along their outlines.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "cornersearch/adaptive_contour_generator.h"
#include "cornersearch/analysis_blob_extractor.h"
#include "cornersearch/blob_boundary_estimator.h"
#include "cornersearch/large_blob_extractor.h"
#include "support/images.h"

namespace geometric_test {
namespace {

typedef std::vector<std::vector<geometric::Geocoordinate<int>>> Contours;
typedef std::vector<geometric::Geobox<int>> Boxes;

common::BasicImage contour_image(const common::BasicImage& photo, bool edges) {
    common::BasicImage contours;
    AdaptiveContourGenerator generator(photo, contours);
    if (edges) {
        generator.generate_edge_objects();
    } else {
        generator.generate_binary_objects();
    }
    return contours;
}

// Both contour routes, an upright and a tilted page: the four vertices of the
// array lie within a few pixels of the page's corners.
TEST(BlobBoundaryEstimator, FindsTheFourSidesOfUprightAndTiltedPages) {
    const support::Quad pages[] = {support::quad(60, 40, 340, 40, 340, 260, 60, 260),
                                       support::quad(80, 50, 330, 30, 360, 270, 50, 250)};
    for (const support::Quad& page : pages) {
        for (bool edges : {false, true}) {
            SCOPED_TRACE(edges ? "edge objects" : "binary objects");
            const common::BasicImage photo = support::photo(400, 300, page);
            const common::BasicImage contours = contour_image(photo, edges);
            Contours outlines;
            Boxes boxes;
            AnalysisBlobExtractor().extract_analysis_blobs(contours, outlines, boxes);
            auto wrapper = std::make_shared<BoundingLineArrayWrapper>(photo, !edges);
            BlobBoundaryEstimator estimator(400, 300, &outlines, &boxes, wrapper);
            ASSERT_EQ(estimator.estimate_blob_lines(), 0);
            EXPECT_EQ(estimator.status, 0);
            for (int k = 0; k < 4; ++k) {
                ASSERT_TRUE(wrapper->boundaries[static_cast<std::size_t>(k)].is_valid());
                EXPECT_LE(std::hypot(wrapper->vertices[static_cast<std::size_t>(k)].x - page[static_cast<std::size_t>(k)].x,
                                     wrapper->vertices[static_cast<std::size_t>(k)].y - page[static_cast<std::size_t>(k)].y),
                          5.0)
                    << "vertex " << k;
            }
        }
    }
}

TEST(LargeBlobExtractor, SelectsByAreaThenWidthThenHeight) {
    geometric::LargeBlobExtractorPara para;
    para.minimum_total_area = 70.0f;
    para.maximum_selected_blobs = 3;
    para.minimum_blob_width = 5.0f;
    para.minimum_blob_height = 5.0f;
    geometric::LargeBlobLists lists;
    lists.areas = {10, 50, 30, 50, 8};
    lists.widths = {2, 5, 6, 5, 9};
    lists.heights = {5, 10, 5, 10, 1};
    lists.indices = {0, 1, 2, 3, 4};
    geometric::LargeBlobExtractor extractor(para);
    // 50 and 50 (the first of equals first) reach 70 with room left.
    EXPECT_TRUE(extractor.select_large_area(lists));
    EXPECT_EQ(extractor.get_selected(), (std::vector<int>{1, 3}));
    EXPECT_EQ(lists.indices, (std::vector<int>{0, 2, 4}));
    // Widths 2, 6, 9 above 5: at most min(3, 3) - 1 = 2 of them.
    extractor.select_large_width(lists);
    EXPECT_EQ(extractor.get_selected(), (std::vector<int>{1, 3, 4, 2}));
    // One blob left: nothing may be chosen.
    extractor.select_large_height(lists);
    EXPECT_EQ(extractor.get_selected().size(), 4u);
    // The count limit used up answers false; a limit of 0 or less still
    // takes the largest blob.
    para.minimum_total_area = 1000.0f;
    for (int maximum : {3, 0, -1}) {
        para.maximum_selected_blobs = maximum;
        geometric::LargeBlobLists again;
        again.areas = {10, 20};
        again.widths = again.heights = {1, 1};
        again.indices = {0, 1};
        LargeBlobExtractor second(para);
        EXPECT_FALSE(second.select_large_area(again)) << maximum;
        EXPECT_EQ(second.get_selected(), maximum > 0 ? (std::vector<int>{1, 0}) : (std::vector<int>{1})) << maximum;
    }
}

}  // namespace
}  // namespace geometric_test

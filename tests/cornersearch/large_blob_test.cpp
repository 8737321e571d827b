// Large blobs of contour images and the page sides along their outlines.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "cornersearch/adaptive_contour_generator.h"
#include "cornersearch/analysis_blob_extractor.h"
#include "cornersearch/blob_boundary_estimator.h"
#include "cornersearch/large_blob_extractor.h"
#include "page_photos.h"

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

TEST(AdaptiveContourGenerator, BinaryObjectsOfAPagePhotoAreThePageAlone) {
    const common::BasicImage photo = page_photos::photo(400, 300, page_photos::quad(60, 40, 340, 40, 340, 260, 60, 260));
    const common::BasicImage contours = contour_image(photo, false);
    ASSERT_EQ(contours.get_image_type(), common::BINARY);
    Contours outlines;
    Boxes boxes;
    EXPECT_EQ(AnalysisBlobExtractor().extract_analysis_blobs(contours, outlines, boxes), 0);
    ASSERT_EQ(boxes.size(), 1u);
    // The page's bright rim, widened by the dilation of 2.
    EXPECT_NEAR(boxes[0].left, 60, 3);
    EXPECT_NEAR(boxes[0].top, 40, 3);
    EXPECT_NEAR(boxes[0].right, 339, 3);
    EXPECT_NEAR(boxes[0].bottom, 259, 3);
    EXPECT_GT(outlines[0].size(), 900u);
}

TEST(AdaptiveContourGenerator, EdgeThresholdsFollowTheMeanAndTheQuietestBackground) {
    const common::BasicImage photo = page_photos::photo(400, 300, page_photos::quad(60, 40, 340, 40, 340, 260, 60, 260));
    common::BasicImage contours;
    AdaptiveContourGenerator generator(photo, contours);
    generator.generate_edge_objects();
    EXPECT_GE(generator.get_background_deviation(), 1.0f);
    EXPECT_LE(generator.get_background_deviation(), 2.5f);
    EXPECT_LT(generator.get_image_mean(), 140.0f);
    // A flat image has no edge at all.
    const common::BasicImage flat = page_photos::photo(200, 150, page_photos::quad(0, 0, 0, 0, 0, 0, 0, 0), 0, 128, false);
    EXPECT_EQ(contour_image(flat, true).get_image_type(), common::BINARY);
}

// Both contour routes, an upright and a tilted page: the four vertices of the
// array lie within a few pixels of the page's corners.
TEST(BlobBoundaryEstimator, FindsTheFourSidesOfUprightAndTiltedPages) {
    const page_photos::Quad pages[] = {page_photos::quad(60, 40, 340, 40, 340, 260, 60, 260),
                                       page_photos::quad(80, 50, 330, 30, 360, 270, 50, 250)};
    for (const page_photos::Quad& page : pages) {
        for (bool edges : {false, true}) {
            SCOPED_TRACE(edges ? "edge objects" : "binary objects");
            const common::BasicImage photo = page_photos::photo(400, 300, page);
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

TEST(BlobBoundaryEstimator, HorizontalBorderLinesByTheirMeanY) {
    const auto line_at = [](int y0, int y1) {
        return BlobBoundaryEstimator::Line(geometric::GeolineBase(0.0, -1.0, y0),
                                           {geometric::Geocoordinate<int>(10, y0), geometric::Geocoordinate<int>(90, y1)});
    };
    EXPECT_FALSE(BlobBoundaryEstimator::BoundaryAssigner::is_horizontal_border_line(line_at(4, 4), 300));
    EXPECT_TRUE(BlobBoundaryEstimator::BoundaryAssigner::is_horizontal_border_line(line_at(3, 3), 300));
    EXPECT_TRUE(BlobBoundaryEstimator::BoundaryAssigner::is_horizontal_border_line(line_at(3, 4), 300));  // 3.5
    EXPECT_TRUE(BlobBoundaryEstimator::BoundaryAssigner::is_horizontal_border_line(line_at(295, 295), 300));
    EXPECT_FALSE(BlobBoundaryEstimator::BoundaryAssigner::is_horizontal_border_line(line_at(294, 294), 300));
}

// Outlines drawn as plain point lists, with boxes to match.
struct Scene {
    Contours outlines;
    Boxes boxes;
    void add_rectangle(int left, int top, int right, int bottom) {
        std::vector<geometric::Geocoordinate<int>> outline;
        for (int x = left; x <= right; ++x) outline.emplace_back(x, top);
        for (int y = top + 1; y <= bottom; ++y) outline.emplace_back(right, y);
        for (int x = right - 1; x >= left; --x) outline.emplace_back(x, bottom);
        for (int y = bottom - 1; y > top; --y) outline.emplace_back(left, y);
        outlines.push_back(outline);
        geometric::Geobox<int> box;
        box.left = left;
        box.top = top;
        box.right = right;
        box.bottom = bottom;
        boxes.push_back(box);
    }
};

TEST(PolygonSelector, AGoodBlobClearOfTheBorderGoesBeforeABorderHuggingOne) {
    Scene scene;
    scene.add_rectangle(0, 0, 399, 200);     // touches the left and top sides
    scene.add_rectangle(100, 100, 300, 280);  // large, free-standing
    BlobBoundaryEstimator estimator(400, 300, &scene.outlines, &scene.boxes,
                                    std::make_shared<BoundingLineArrayWrapper>(400, 300));
    BlobBoundaryEstimator::PolygonSelector selector(estimator);
    const std::vector<BlobBoundaryEstimator::Polygon> polygons = selector.select();
    ASSERT_EQ(polygons.size(), 2u);
    EXPECT_EQ(polygons[0].blob_index, 1);
    EXPECT_FALSE(polygons[0].touches_image_border);
    EXPECT_EQ(polygons[1].blob_index, 0);
    EXPECT_TRUE(polygons[1].touches_image_border);
    // Both are now chosen: a second selection lists nothing.
    EXPECT_TRUE(selector.select().empty());
}

TEST(PolygonSelector, AThinStraightBlobNarrowerThanATenthIsSkipped) {
    Scene scene;
    scene.add_rectangle(20, 100, 120, 101);  // 101 x 2: eccentricity near 1, 2 / 300 of the height
    BlobBoundaryEstimator estimator(400, 300, &scene.outlines, &scene.boxes,
                                    std::make_shared<BoundingLineArrayWrapper>(400, 300));
    const std::vector<BlobBoundaryEstimator::Polygon> polygons = BlobBoundaryEstimator::PolygonSelector(estimator).select();
    ASSERT_EQ(polygons.size(), 1u);  // listed by its width (101 > 0.5 x 80)
    EXPECT_EQ(polygons[0].activity, 0);
    // A rectangle is not straight enough to be judged by its thickness.
    Scene square;
    square.add_rectangle(100, 50, 300, 250);
    BlobBoundaryEstimator other(400, 300, &square.outlines, &square.boxes,
                                std::make_shared<BoundingLineArrayWrapper>(400, 300));
    EXPECT_EQ(BlobBoundaryEstimator::PolygonSelector(other).select().at(0).activity, 1);
}

TEST(ContourLineBuilder, FitsAndKeepsTheSidesOfARectangle) {
    const geometric::Geocoordinate<int> a(5, 10), b(5, 90);
    std::vector<geometric::Geocoordinate<int>> support;
    for (int y = 10; y <= 90; ++y) support.emplace_back(5, y);
    const geometric::GeolineBase vertical = BlobBoundaryEstimator::ContourLineBuilder::fit(a, b, support);
    EXPECT_EQ(vertical.a, 1.0);
    EXPECT_EQ(vertical.b, 0.0);
    EXPECT_EQ(vertical.c, -5.0);
    support.clear();
    for (int x = 0; x <= 80; ++x) support.emplace_back(x, 20 + x / 40);
    const geometric::GeolineBase slanted =
        BlobBoundaryEstimator::ContourLineBuilder::fit({0, 20}, {80, 22}, support);
    EXPECT_EQ(slanted.b, -1.0);
    EXPECT_NEAR(slanted.a, 0.0194, 0.0005);  // the least-squares slope of the staircase

    Scene scene;
    scene.add_rectangle(100, 50, 300, 250);
    BlobBoundaryEstimator estimator(400, 300, &scene.outlines, &scene.boxes,
                                    std::make_shared<BoundingLineArrayWrapper>(400, 300));
    std::vector<BlobBoundaryEstimator::Line> lines;
    ASSERT_TRUE(BlobBoundaryEstimator::ContourLineBuilder(estimator).build(scene.outlines[0], lines));
    EXPECT_EQ(lines.size(), 4u);
    for (const auto& line : lines) EXPECT_EQ(line.points.size(), 2u);
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

TEST(LargeBlobExtractor, BothGenerationsHandOutTheLargeBlobsOutline) {
    common::BasicImage binary(100, 120, common::BINARY);
    const auto fill = [&](int x0, int y0, int x1, int y1) {
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x) binary.set_pixel(x, y, 1);
    };
    fill(20, 20, 80, 70);  // the large blob
    fill(100, 5, 102, 7);  // a speck
    geometric::LargeBlobExtractorPara para;
    para.minimum_blob_area = 50.0f;
    para.minimum_blob_width = 10.0f;
    para.minimum_blob_height = 10.0f;
    para.minimum_total_area = 1000.0f;
    para.maximum_selected_blobs = 3;
    std::vector<int> xs, ys;
    geometric::LargeBlobExtractor first(para);
    EXPECT_TRUE(first.obtain_large_blob(binary, xs, ys, 0, true));
    ASSERT_FALSE(xs.empty());
    for (std::size_t i = 0; i < xs.size(); ++i) {
        EXPECT_TRUE(xs[i] == 20 || xs[i] == 80 || ys[i] == 20 || ys[i] == 70) << xs[i] << "," << ys[i];
    }
    std::vector<int> xs2, ys2;
    LargeBlobExtractor second(para);
    EXPECT_TRUE(second.obtain_large_blob(binary, xs2, ys2));
    EXPECT_EQ(xs2, xs);
    EXPECT_EQ(ys2, ys);
    // All pixels rather than the outline.
    std::vector<int> all_x, all_y;
    first.obtain_large_blob(binary, all_x, all_y, 0, false);
    EXPECT_EQ(all_x.size(), 61u * 51u);
}

}  // namespace
}  // namespace geometric_test

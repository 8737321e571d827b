// Extractors, analyzers and the strict estimator of the simple corner search.
#include "cornersearch/edge_strategies.h"

#include <cstring>

#include "cornersearch/analysis_blob_extractor.h"
#include "cornersearch/corner_preprocessing.h"
#include "cornersearch/large_blob_extractor.h"
#include "edgelines/hough_transform.h"
#include "pixel/geo_morph_iterative_dilation.h"

namespace geometric_test {

int CannyEdgeExtractor::extract_edges(const common::Image& image, common::BasicImage& edges) {
    bool was_smoothed_strongly = false;
    CornerPreprocessing::perform_edge_detection(image, edges, was_smoothed_strongly, 1);
    return 0;
}

int OTSUEdgeExtractor::extract_edges(const common::Image& image, common::BasicImage& edges) {
    CornerPreprocessing::perform_adaptive_binarization(image, edges, 77);
    return 0;
}

int HoughEdgeAnalyzer::extract_bounding_lines(const common::Image& edges, BoundingLines& lines) {
    const int w = edges.get_width(), h = edges.get_height();
    const float area = static_cast<float>(w * h);
    geometric::LargeBlobExtractorPara para;
    para.minimum_blob_area = 0.1f * area;
    para.minimum_blob_width = 0.05f * static_cast<float>(w);
    para.minimum_blob_height = 0.05f * static_cast<float>(h);
    para.minimum_total_area = 0.25f * area;
    para.maximum_selected_blobs = 3;
    std::vector<int> xs, ys;
    LargeBlobExtractor(para).obtain_large_blob(edges, xs, ys);
    geometric::HoughTransform transform(w, h);
    transform.distance_weight = 0.3f;
    std::vector<geometric::BoundingLine> partial;  // three sides are no page here
    bool direction = false;
    return transform.get_bounding_lines(xs, ys, lines.lines, partial, direction) ? 1 : -1;
}

int LargeBlobCornerAnalyzer::extract_bounding_lines(const common::Image& edges, BoundingLines& /*lines*/) {
    const AnalysisBlobExtractor extractor(0.1f, 0.05f, 0.05f, 5);
    common::BasicImage image(edges);
    common::BasicImage before;
    std::vector<std::vector<geometric::Geocoordinate<int>>> contours;
    std::vector<geometric::Geobox<int>> boxes;
    const geometric::GeoMorphIterativeDilation dilation(1, true);
    passes = 0;
    for (;;) {
        contours.clear();
        boxes.clear();
        extractor.extract_analysis_blobs(image, contours, boxes);
        ++passes;
        before = image;
        dilation.dilate_image_iterative(image);
        if (image.get_data_size() == before.get_data_size() &&
            std::memcmp(image.get_data(), before.get_data(), static_cast<std::size_t>(image.get_data_size())) == 0) {
            return -1;
        }
    }
}

int KernelHoughEdgeAnalyzer::extract_bounding_lines(const common::Image& /*edges*/, BoundingLines& /*lines*/) {
    return 0;
}

int StrictBoundinglineCornerEstimator::estimate_corners(BoundingLines& lines,
                                                        std::vector<geometric::Geocoordinate<float>>& corners) {
    lines.initialize();  // its answer is not needed: missing sides leave their corners as they are
    lines.obtain_quadrangle_vetex(corners);
    return lines.is_bounding_box_corner_feasible(corners) ? 0 : -1;
}

}  // namespace geometric_test

// Bounding line creation: two Hough searches and the choice between them.
#include "cornersearch/bounding_line_creator.h"

#include <algorithm>

#include "common/basic_image.h"
#include "cornersearch/bounding_edge_registration.h"
#include "cornersearch/corner_preprocessing.h"
#include "cornersearch/large_blob_extractor.h"
#include "edgelines/bounding_lines_merger.h"
#include "edgelines/bounding_lines_operator.h"
#include "edgelines/bounding_lines_quality.h"
#include "edgelines/hough_transform.h"

namespace geometric {

namespace {

// A second finding whose corners are open by less than this share of its
// support is a closed frame and wins outright.
constexpr float kClosedFrameRatio = 0.2f;
constexpr float kMinimumBlobSize = 3.0f;

// The record's ratios become pixels of this image.
void scale_to_image(CornerSearchPara& para, int w, int h) {
    const int m = std::min(w, h);
    const float fw = static_cast<float>(w), fh = static_cast<float>(h), fm = static_cast<float>(m);
    para.minimum_document_area = para.minimum_document_area * fw * fh;
    para.minimum_blob_height_ratio = para.minimum_blob_height_ratio * fm;
    para.minimum_blob_width_ratio = para.minimum_blob_width_ratio * fm;
    para.minimum_blob_area_ratio = para.minimum_blob_area_ratio * fw * fh;
    para.minimum_blob_size_ratio = std::max(para.minimum_blob_size_ratio * fm, kMinimumBlobSize);
    if (para.binarization_window > m) {
        para.binarization_window = (m / 4) * 2 + 1;
        if (para.binarization_window < 4) para.binarization_window = 3;
    }
}

}  // namespace

bool BoundingLineCreator::formulate_bounding_lines(CornerSearchPara& para, const common::Image& image,
                                                   std::vector<BoundingLine>& boundaries,
                                                   std::vector<BoundingLine>& partial_boundaries) {
    const int w = image.get_width(), h = image.get_height();
    scale_to_image(para, w, h);

    common::BasicImage edges;
    bool was_smoothed_strongly = false;
    const bool edges_found =
        geometric_test::CornerPreprocessing::perform_edge_detection(image, edges, was_smoothed_strongly, 1);

    HoughTransform transform(w, h);
    LargeBlobExtractorPara blob_para;
    blob_para = para;
    LargeBlobExtractor extractor(blob_para);
    std::vector<int> xs, ys;
    bool direction = false;

    // First pass: the outlines of the large blobs of the edges.
    if (edges_found) {
        extractor.obtain_large_blob(edges, xs, ys, 1, true);
        if (transform.get_bounding_lines(xs, ys, boundaries, partial_boundaries, direction)) return true;
    }

    // Second pass: every pixel of the large blobs of the bright rim that the
    // binarization leaves along the inside of the page's edges.
    common::BasicImage binary;
    geometric_test::CornerPreprocessing::perform_adaptive_binarization(image, binary, para.binarization_window);
    xs.clear();
    ys.clear();
    extractor.obtain_large_blob(binary, xs, ys, 1, false);
    std::vector<BoundingLine> second, second_partial;
    const bool second_found = transform.get_bounding_lines(xs, ys, second, second_partial, direction);

    if (!second_found) {
        BoundingLinesMerger::merge_bounding_lines(boundaries, second);
        if (boundaries.size() == 4) return true;
        BoundingLinesMerger::merge_bounding_lines(partial_boundaries, second_partial);
        return false;
    }
    if (was_smoothed_strongly) {
        boundaries = second;
        return true;
    }
    BoundingLineProperty property;
    BoundingLinesOperator::initializeBoundingLineProperty(second, property);
    BoundingLinesQuality quality;
    quality.calculate_unclosed_ratio(second, property);
    if (kClosedFrameRatio > quality.unclosed_ratio) {
        boundaries = second;
    } else {
        BoundingLinesMerger::merge_bounding_lines(boundaries, second);
    }
    return true;
}

bool BoundingLineCreator::formulate_bounding_lines_via_edge_simplification(CornerSearchPara& /*para*/,
                                                                           const common::Image& image,
                                                                           std::vector<BoundingLine>& boundaries) {
    geometric_test::OperationalBoundingEdgeRegistration registration;
    std::vector<Geocoordinate<float>> corners;
    if (registration.run_projective_registration(image, corners) != 1) return false;
    boundaries.clear();
    for (std::size_t slot = 0; slot < 4; ++slot) {
        const geometric_test::BoundingLine& found = registration.previous_wrapper->boundaries[slot];
        BoundingLine line;
        line.position = found.position;
        line.line = found.line;
        line.support_count = 1;
        line.segment_length = static_cast<int>(found.polyline_length());
        const Geocoordinate<int> first = found.end_point(0), second = found.end_point(1);
        line.x1 = static_cast<float>(first.x);
        line.y1 = static_cast<float>(first.y);
        line.x2 = static_cast<float>(second.x);
        line.y2 = static_cast<float>(second.y);
        line.has_dominant_segment = true;
        boundaries.push_back(line);
    }
    return true;
}

}  // namespace geometric

// Binary and edge contour images of a gray page photo.
#include "cornersearch/adaptive_contour_generator.h"

#include <algorithm>

#include "cornersearch/corner_preprocessing.h"
#include "pixel/average_filtering.h"
#include "pixel/canny_edge_detector.h"
#include "pixel/geo_morph_iterative_dilation.h"
#include "pixel/image_operator.h"

namespace geometric_test {

AdaptiveContourGenerator::AdaptiveContourGenerator(const common::Image& image, common::BasicImage& contours)
    : image(&image), contours(&contours) {}

void AdaptiveContourGenerator::dilate(common::BasicImage& binary) const {
    // `dilation` rounds of the 3 x 3 ring, the row padding kept clear.
    geometric::GeoMorphIterativeDilation(dilation, true).dilate_image_iterative(binary);
}

void AdaptiveContourGenerator::generate_edge_objects() {
    const common::BasicImage gray(*image);
    float other = 0.0f;
    background_deviation = geometric::ImageOperator::calculate_background_std(gray, &other);
    // A textured background would raise the thresholds above the page's
    // edge; the quietest patch stands in, within [1, 2].
    if (background_deviation > 2.0f) background_deviation = std::min(2.0f, std::max(1.0f, other));
    image_mean = geometric::ImageOperator::mean(gray);
    perform_canny(1.0f);
}

void AdaptiveContourGenerator::perform_canny(float factor) {
    const float g = image_mean >= 140.0f ? 0.5f * factor : factor;
    int low = static_cast<int>(static_cast<float>(0.02 * background_deviation) * image_mean * g);
    int high;
    if (low < 1) {
        low = 1;
        high = 2;
    } else {
        high = static_cast<int>(image_mean * static_cast<float>(0.04 * background_deviation) * g);
    }
    canny_edge_detector(*image, *contours, low, high, 3);
}

void AdaptiveContourGenerator::canny_edge_detector(const common::Image& input, common::BasicImage& output, int low,
                                                   int high, int smoothing) {
    common::BasicImage source(input);
    if (smoothing != 0) geometric::AverageFiltering::use_native(source, source, 5, 5);
    common::BasicImage edges;
    geometric::CannyEdgeDetector::perform_edge_detect(low, high, source, edges);
    edges.convert_gray_to_binary();
    dilate(edges);
    output.swap(edges);
}

void AdaptiveContourGenerator::adaptive_binarize() {
    CornerPreprocessing::perform_adaptive_binarization(*image, *contours, 77);
    dilate(*contours);
}

void AdaptiveContourGenerator::generate_binary_objects() { adaptive_binarize(); }

}  // namespace geometric_test

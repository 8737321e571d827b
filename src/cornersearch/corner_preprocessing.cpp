// Edge detection and adaptive binarization for the corner search.
#include "cornersearch/corner_preprocessing.h"

#include "binarization/otsu_binarization.h"
#include "pixel/average_filtering.h"
#include "pixel/canny_edge_detector.h"
#include "pixel/geo_morph_iterative_dilation.h"
#include "pixel/image_operator.h"
#include "pixel/weighted_filtering.h"

namespace geometric_test {

bool CornerPreprocessing::perform_edge_detection(const common::Image& image, common::BasicImage& edges,
                                                 bool& was_smoothed_strongly, int dilation) {
    const common::BasicImage gray(image);
    const float s = geometric::ImageOperator::calculate_background_std(gray, nullptr);
    was_smoothed_strongly = false;
    common::BasicImage smoothed;
    const common::BasicImage* source = &gray;
    if (s > 5.0f) {
        geometric::AverageFiltering::use_native(gray, smoothed, 7, 7);
        was_smoothed_strongly = true;
        source = &smoothed;
    } else if (s > 3.0f) {
        geometric::AverageFiltering::use_native(gray, smoothed, 5, 5);
        source = &smoothed;
    } else if (s > 2.0f) {
        geometric::WeightedFiltering::perform_filtering_3_by_3(gray, smoothed, 4);
        source = &smoothed;
    }
    const float mean = geometric::ImageOperator::mean(*source);
    const bool quiet = source == &gray;
    const int low = static_cast<int>((quiet ? 0.05 : 0.04) * mean);
    const int high = static_cast<int>((quiet ? 0.1 : 0.08) * mean);
    geometric::CannyEdgeDetector::perform_edge_detect(low, high, *source, edges);
    edges.convert_gray_to_binary();
    geometric::GeoMorphIterativeDilation(dilation, true).dilate_image_iterative(edges);
    return true;
}

void CornerPreprocessing::perform_adaptive_binarization(const common::Image& image, common::BasicImage& binary,
                                                        int window) {
    const common::BasicImage gray(image);
    common::BasicImage difference;
    geometric::AverageFiltering::use_native(gray, difference, window, window);
    geometric::ImageOperator::substract(gray, difference);  // difference = gray - average, 0 below
    geometric::OtsuBinarization otsu(&difference, &binary);
    // The bright class is the object: what rises above its surroundings, a
    // rim along the inside of the page's edges. Otsu's default complement
    // would set the dark class and the one-pixel frame instead, joining the
    // desk and the frame into one component; its outline is traced along the
    // outside only, so it is the image's frame, never the page-shaped hole
    // within, and the search would take the whole image for the page.
    otsu.set_invert(false);
    otsu.run_binarization();
}

}  // namespace geometric_test

// The image preparations that the corner search stages share: edges with a
// smoothing chosen by the background's noise, and an adaptive binarization.
#ifndef MORVANE_CORNERSEARCH_CORNER_PREPROCESSING_H
#define MORVANE_CORNERSEARCH_CORNER_PREPROCESSING_H

#include "common/basic_image.h"
#include "common/image.h"

namespace geometric_test {

class CornerPreprocessing {
public:
    // With s the background deviation of the GRAY image:
    //   s > 5       7 x 7 average (was_smoothed_strongly), thresholds 0.04 and 0.08 of the smoothed mean
    //   3 < s <= 5  5 x 5 average, the same thresholds
    //   2 < s <= 3  weighted 3 x 3 with weight 4, the same thresholds
    //   s <= 2      no smoothing, 0.05 and 0.1 of the image's mean
    // thresholds truncated; edges become a BINARY image dilated by `dilation`.
    // Always true.
    static bool perform_edge_detection(const common::Image& image, common::BasicImage& edges,
                                       bool& was_smoothed_strongly, int dilation);
    // The pixels brighter than their window x window neighbourhood by more
    // than Otsu's threshold of the difference become set bits of a BINARY
    // image; on a page photo they are the bright side of the page's edges.
    static void perform_adaptive_binarization(const common::Image& image, common::BasicImage& binary, int window);
};

}  // namespace geometric_test

#endif

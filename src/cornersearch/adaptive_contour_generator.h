// Contour images for the large-blob search: binary objects from an adaptive
// threshold, or edge objects from edge detection scaled to the image's
// brightness and background noise.
#ifndef MORVANE_CORNERSEARCH_ADAPTIVE_CONTOUR_GENERATOR_H
#define MORVANE_CORNERSEARCH_ADAPTIVE_CONTOUR_GENERATOR_H

#include "common/basic_image.h"
#include "common/image.h"

namespace geometric_test {

class AdaptiveContourGenerator {
public:
    // image: GRAY, read only, not owned; contours receives a BINARY image of
    // its size and is not owned.
    AdaptiveContourGenerator(const common::Image& image, common::BasicImage& contours);

    // Edges (Canny) with thresholds from the image's mean and background
    // deviation, dilated.
    void generate_edge_objects();
    // Pixels above their 77 x 77 neighbourhood, thresholded by Otsu, dilated.
    void generate_binary_objects();

    // g = 0.5 factor on bright images (mean >= 140), else factor;
    // low = (int)((float)(0.02 deviation) mean g), high = (int)(mean (float)(0.04 deviation) g);
    // a low below 1 gives low 1 and high 2.
    void perform_canny(float factor);
    void adaptive_binarize();

    // Optional 5 x 5 average (smoothing non-zero), edge detection, conversion
    // to binary (edge pixels set) and dilation by `dilation`.
    void canny_edge_detector(const common::Image& input, common::BasicImage& output, int low, int high, int smoothing);

    float get_image_mean() const { return image_mean; }
    float get_background_deviation() const { return background_deviation; }

    const common::Image* image;
    common::BasicImage* contours;
    float image_mean = 0.0f;
    float background_deviation = 0.0f;
    int dilation = 2;

private:
    void dilate(common::BasicImage& binary) const;
};

}  // namespace geometric_test

#endif

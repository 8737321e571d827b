// Local mean and standard deviation of a gray image over a moving window,
// the raw material of the classical local thresholds.
#ifndef MORVANE_BINARIZATION_MEAN_AND_DEVIATION_MAPS_H
#define MORVANE_BINARIZATION_MEAN_AND_DEVIATION_MAPS_H

#include "binarization/image.h"
#include "common/image.h"

namespace geometric {

// mean and deviation come in sized to the gray image, with their window
// sizes set (those of mean are used). With hx = window_x / 2 and
// hy = window_y / 2, the box of pixel (x, y) is
// [x - hx, x - hx + window_x - 1] by [y - hy, y - hy + window_y - 1], clipped
// to the image, and the sums are divided by the clipped area:
//   deviation = sqrt(mean square - mean^2)
// with no guard, so that a negative rounding gives not-a-number, which
// compares false in every later test.
void calculate_mean_and_deviation_maps(const common::Image& gray, Image<double>& mean, Image<double>& deviation);

}  // namespace geometric

#endif

// Weighted 3 by 3 smoothing of gray images: a light blur before edge detection
// on pages with a little sensor noise.
#ifndef MORVANE_PIXEL_WEIGHTED_FILTERING_H
#define MORVANE_PIXEL_WEIGHTED_FILTERING_H

#include "common/basic_image.h"

namespace geometric {

class WeightedFiltering {
public:
    // Each pixel off the frame becomes (weight * centre + the sum of its eight
    // neighbours) / (weight + 8), truncating, read from the source only; line
    // 0, the last line and the first and last pixel of every line are copied.
    // GRAY input only and weight >= 0 (otherwise a const char* is thrown); the
    // output is a GRAY image of the input's size at 300 dots per inch in a
    // fresh buffer, so output may be input itself. When memory runs out the
    // output is left without a buffer (0 by 0).
    static void perform_filtering_3_by_3(const common::Image& input, common::BasicImage& output, int weight);
    // Kept for the callers that name it; does nothing.
    static void perform_filtering_5_by_5(const common::Image& input, common::BasicImage& output, int weight);
};

}  // namespace geometric

#endif

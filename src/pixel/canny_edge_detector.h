// Edge detection on gray images: scaled Sobel gradients, non-maximum
// suppression in fixed point and hysteresis with a bounded follow.
#ifndef MORVANE_PIXEL_CANNY_EDGE_DETECTOR_H
#define MORVANE_PIXEL_CANNY_EDGE_DETECTOR_H

#include "common/basic_image.h"

namespace geometric {

class CannyEdgeDetector {
public:
    // Edges of a GRAY image (any other type throws a const char*) into a GRAY
    // output of the same size at 300 dots per inch: 255 on one-pixel edges, 0
    // elsewhere, and always 0 on the first and last line and column. There is
    // no smoothing step: callers smooth first. A pixel is a candidate when its
    // gradient magnitude is >= low; a candidate that is a maximum across its
    // edge is kept when it reaches high (>= high) or is joined, by a chain of
    // kept neighbours, to one that does, each link above low (> low) and at
    // most kFollowDepth steps from where the chain was started. The output
    // takes over a fresh buffer, so output may be gray itself; when memory
    // runs out it is left without a buffer (0 by 0).
    static void perform_edge_detect(int low, int high, const common::Image& gray, common::BasicImage& output);

    // The Sobel sum (weights 1, 2, 1) brought into a signed byte: below -511
    // gives -128, 512 or more gives 127, the rest is divided by 4, truncating
    // toward zero.
    static int scale_sobel_sum(int sum);
    // round(sqrt(dx * dx + dy * dy)) for scaled gradients.
    static unsigned char magnitude_of(int dx, int dy);
    // Hysteresis over the marks of non-maximum suppression, in place. Every
    // mark other than 128 becomes 0, and so does the frame; in line order each
    // 128 with magnitude >= high becomes 255 and starts a follow, which turns
    // each of the eight neighbours (in line order) that is 128 with magnitude
    // > low into 255 and continues from it before the next neighbour is
    // looked at, down to kFollowDepth steps from the seed; a pixel reached at
    // that depth is kept but not continued from. Longer edges are picked up
    // again by later seeds, and the stack stays bounded. Every 128 left
    // becomes 0.
    static void follow_edges(unsigned char* marks, const unsigned char* magnitude, int width, int height, int low,
                             int high);

    static constexpr int kFollowDepth = 64;
};

}  // namespace geometric

#endif

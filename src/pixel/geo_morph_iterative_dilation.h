// Repeated ring dilation of a binary image through an accumulating temporary.
#ifndef MORVANE_PIXEL_GEO_MORPH_ITERATIVE_DILATION_H
#define MORVANE_PIXEL_GEO_MORPH_ITERATIVE_DILATION_H

#include "common/basic_image.h"

namespace geometric {

class GeoMorphIterativeDilation {
public:
    explicit GeoMorphIterativeDilation(int iterations_ = 1, bool clear_row_padding_ = false)
        : iterations(iterations_), clear_row_padding(clear_row_padding_) {}

    // iterations times: dilate_xy of the image into a temporary that starts
    // zero-filled and is never cleared between rounds, then the temporary's
    // whole buffer over the image. The pixel itself is not part of the ring,
    // so the image keeps a pixel only through a neighbour or an earlier round.
    // With clear_row_padding the bits past the width in the byte holding
    // column width, and in the one holding width + 1 when that is another,
    // are cleared in every line after each round. The image's pixels change
    // although it is passed as constant: its buffer is written. A BINARY
    // image with a buffer only.
    void dilate_image_iterative(const common::BasicImage& image) const;

    int get_iterations() const { return iterations; }
    bool get_clear_row_padding() const { return clear_row_padding; }

private:
    int iterations;
    bool clear_row_padding;
};

}  // namespace geometric

#endif

// Removal of isolated foreground pixels from a bit-packed binary image.
#ifndef MORVANE_PIXEL_GEO_DESPECKLE_H
#define MORVANE_PIXEL_GEO_DESPECKLE_H

#include "common/basic_image.h"

namespace geometric {

class GeoDespeckle {
public:
    // A set pixel survives only when one of its eight neighbours is set; the
    // neighbours are read across byte boundaries. Whole bytes only: the first
    // and last line, and the first and last byte of every other line (with
    // the bytes after width_in_bytes), are copied as they stand, so pixels
    // there are never removed. source and target may be the same buffer;
    // other overlaps are not allowed.
    static void removeIsolatedPixel(const unsigned char* source, int height, int width_in_bytes, int row_size,
                                    unsigned char* target);
    // Over the whole of a BINARY image, (width + 7) / 8 bytes a line. A target
    // without a buffer, or of other dimensions, becomes a fresh BINARY image
    // of 300 dots an inch. Other source types leave the target alone.
    static void removeIsolatedPixel(const common::BasicImage& source, common::BasicImage& target);
};

}  // namespace geometric

#endif

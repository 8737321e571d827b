// A 1-bit image of the library as a Leptonica PIX, for the peers that take
// one. Both keep a set bit as ink and the leftmost pixel in the highest bit,
// Leptonica of a 32-bit word: four of our bytes make one word, the first the
// highest.
#ifndef MORVANE_BENCH_LEPTONICA_PIX_H
#define MORVANE_BENCH_LEPTONICA_PIX_H

#include <leptonica/allheaders.h>

#include "common/basic_image.h"

namespace bench_leptonica {

// The caller destroys the PIX with pixDestroy.
inline PIX* to_pix(const common::BasicImage& binary) {
    const int width = binary.get_width(), height = binary.get_height();
    PIX* pix = pixCreate(width, height, 1);
    l_uint32* words = pixGetData(pix);
    const int words_per_line = pixGetWpl(pix);
    for (int y = 0; y < height; ++y) {
        const unsigned char* line = binary.get_line_pointer(y);
        for (int w = 0; w < words_per_line; ++w) {
            const unsigned char* b = line + 4 * w;
            words[y * words_per_line + w] = (static_cast<l_uint32>(b[0]) << 24) | (static_cast<l_uint32>(b[1]) << 16) |
                                            (static_cast<l_uint32>(b[2]) << 8) | b[3];
        }
    }
    return pix;
}

}  // namespace bench_leptonica

#endif

// Applies a surface of local thresholds, known on the inner lines and columns
// only, to a whole gray page: the shared last step of the classical methods.
#ifndef MORVANE_BINARIZATION_THRESHOLD_SURFACE_H
#define MORVANE_BINARIZATION_THRESHOLD_SURFACE_H

#include "common/basic_image.h"

namespace geometric {

class ThresholdSurface {
public:
    // threshold(x, y) is called for x in [hx, width - hx - 1] and y in
    // [hy, height - hy - 1] only (both clamped into the image when the window
    // is wider than the page). Pixels left and right of that take the first
    // and last value of their line; lines above and below reuse the first and
    // last line. A bit of output is set where the threshold is greater than
    // the gray value. store(x, y, t), when given, sees every pixel's threshold.
    template <typename Threshold, typename Store>
    static void apply(const common::Image& gray, common::BasicImage& output, int hx, int hy, Threshold threshold,
                      Store store) {
        const int width = gray.get_width();
        const int height = gray.get_height();
        if (width <= 0 || height <= 0) return;
        const int first_x = hx < width ? hx : width - 1;
        const int last_x = width - hx - 1 > first_x ? width - hx - 1 : first_x;
        const int first_y = hy < height ? hy : height - 1;
        const int last_y = height - hy - 1 > first_y ? height - hy - 1 : first_y;
        for (int y = 0; y < height; ++y) {
            const int sy = y < first_y ? first_y : (y > last_y ? last_y : y);
            const unsigned char* p = gray.get_line_pointer(y);
            unsigned char* out = output.get_line_pointer(y);
            const double left = threshold(first_x, sy);
            const double right = threshold(last_x, sy);
            for (int x = 0; x < width; ++x) {
                const double t = x <= first_x ? left : (x >= last_x ? right : threshold(x, sy));
                store(x, y, t);
                if (t > p[x]) out[x >> 3] |= static_cast<unsigned char>(0x80u >> (x & 7));
            }
        }
    }
};

}  // namespace geometric

#endif

// Box smoothing of gray images: three ways of one box mean that differ in
// how they reach the border and in rounding, and the inner loops they share.
#ifndef MORVANE_PIXEL_AVERAGE_FILTERING_H
#define MORVANE_PIXEL_AVERAGE_FILTERING_H

#include "common/basic_image.h"

namespace geometric {

// The window of a pixel (x, y) covers columns x - window_x / 2 to
// x - window_x / 2 + window_x - 1 and lines likewise: centred for odd windows,
// one more pixel before than after for even ones. Outside the image the
// window reads the mirror image of the inner pixels, the edge pixel not
// doubled (column -1 reads column 1, column width reads width - 2).
//
// The three public forms take a GRAY input (any other type throws a
// const char*) and a window of at least 1 by 1 (a smaller one throws), and
// give a GRAY output of the input's size at 300 dots per inch, built in a
// fresh buffer that the output takes over, so output may be input itself.
// When memory runs out the output is left without a buffer (0 by 0).
class AverageFiltering {
public:
    // Border strips are mirrored one at a time into a small buffer; the inner
    // region is read from the image in place. Same bytes as the next form.
    static void use_native(const common::Image& input, common::BasicImage& output, int window_x, int window_y);
    // The whole image is mirrored into a padded copy and averaged in one pass.
    // Each pixel is the window sum divided by the area, truncating.
    static void use_summed_area_table(const common::Image& input, common::BasicImage& output, int window_x,
                                      int window_y);
    // Running column sums over the padded copy, each mean rounded to nearest,
    // halves up: (area + 2 * sum) / (2 * area). So a pixel is one above the
    // truncating forms exactly where the remainder sum % area is at least half
    // the area, and equal elsewhere.
    static void use_opencv_algorithm(const common::Image& input, common::BasicImage& output, int window_x,
                                     int window_y);

    // The plain form, summing each window directly: only pixels whose window
    // lies wholly inside the image are written (x from window_x / 2 to
    // width - window_x + window_x / 2, lines likewise); the others keep what
    // target held. Source and target are width bytes a line.
    static void sum_area_table(const unsigned char* source, int width, int height, unsigned char* target,
                               int window_x, int window_y);

    // Truncated window means of a block of padded_height lines of
    // padded_width bytes, from column sums slid down the block. The mean whose
    // window starts at block column c and line t is written at
    // target[(t - skip_y) * target_row + (c - skip_x)], for c from skip_x and t
    // from skip_y up to the last window that fits the block, but at most
    // target_row columns and target_height lines: target_row is both the
    // distance between target lines and the widest line written.
    // Answers 0, or -1 when the table cannot be allocated (nothing written).
    static int perform_averaging(const unsigned char* padded, int padded_width, int padded_height,
                                 unsigned char* target, int target_row, int target_height, int window_x,
                                 int window_y, int skip_x, int skip_y);
};

}  // namespace geometric

#endif

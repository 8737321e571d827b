// Binary morphology on bit-packed images (most significant bit leftmost):
// the 3x3 ring dilation on whole words, and one-dimensional open, dilate and
// erode on runs, as x twins along lines and y twins down columns.
#ifndef MORVANE_PIXEL_GEO_MORPHOLOGICAL_H
#define MORVANE_PIXEL_GEO_MORPHOLOGICAL_H

#include "common/image.h"

namespace geometric {

// The run operations work in the window of columns [x0, x1) and lines
// [y0, y1); nothing outside it is read or written, and a run ends where the
// window does. The image forms take the whole image, and act only on BINARY
// images with a buffer.
class GeoMorphological {
public:
    // ORs into each target byte the eight one-pixel shifts of the source
    // (above, below, left, right, the diagonals), across byte boundaries and
    // clipped at the buffer's edges; the source pixel itself is not ORed in
    // and the target is not cleared. Whole rows of row_size bytes, padding
    // included. Source and target must be different buffers.
    static void dilate_xy(const unsigned char* source, unsigned char* target, int height, int row_size);
    // Needs a target of the source's height and row size; otherwise nothing happens.
    static void dilate_xy(const common::Image& source, common::Image& target);

    // Clears every run shorter than size; longer runs stay as they are.
    static void open_x(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1);
    static void open_x(common::Image& image, int size);
    // Sets up to size pixels on both sides of every run, clipped at x0 and x1.
    // The runs of a line are taken before the line changes.
    static void dilate_x(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1);
    static void dilate_x(common::Image& image, int size);
    // Clears size pixels at both ends of every run; a run of at most 2 size
    // pixels disappears.
    static void erode_x(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1);
    static void erode_x(common::Image& image, int size);

    // The same three on vertical runs, column by column.
    static void open_y(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1);
    static void open_y(common::Image& image, int size);
    static void dilate_y(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1);
    static void dilate_y(common::Image& image, int size);
    static void erode_y(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1);
    static void erode_y(common::Image& image, int size);

    // The column steps of the y twins, on the vertical run of column x that
    // covers lines [start, stop).
    static void set_pixel_based_on_runs_for_open(int size, unsigned char* data, int row_size, int x, int start,
                                                 int stop);
    static void set_pixel_based_on_runs_for_dilate(int size, unsigned char* data, int row_size, int x, int start,
                                                   int stop, int y0, int y1);
    static void set_pixel_based_on_runs_for_erode(int size, unsigned char* data, int row_size, int x, int start,
                                                  int stop);

    // a |= b, a ^= b and a &= ~b over height * row size bytes of a (fewer when
    // b has fewer), padding included.
    static void or2(common::Image& a, const common::Image& b);
    static void xor2(common::Image& a, const common::Image& b);
    static void remove_denotation(common::Image& a, const common::Image& b);
};

}  // namespace geometric

#endif

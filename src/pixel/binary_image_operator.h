// Pixel-level services on binary rows for blob measures: contour test, ink in
// a span, background gray level around a pixel.
#ifndef MORVANE_PIXEL_BINARY_IMAGE_OPERATOR_H
#define MORVANE_PIXEL_BINARY_IMAGE_OPERATOR_H

namespace geometric {

// Binary rows hold one bit a pixel, most significant bit leftmost, a set bit
// being ink. Row pointers point at the line of the pixel asked about; the
// lines above and below are reached through the row size.
class BinaryImageOperator {
public:
    // True when any of the eight neighbours of (x, y) that lie inside the
    // height by width image is a clear bit.
    static bool in_the_blob_contour(unsigned char* row, int x, int y, int height, int width, int row_size);
    // True when any bit of the span [start, start + length) of the row is set.
    static bool check_black_run(unsigned char* row, int start, int length);
    // Integer mean of the gray values under the clear bits of the ring of the
    // square x - radius..x + radius by y - radius..y + radius, clipped to the
    // image; -1 when no pixel of the ring is clear. binary_row and gray_row
    // point at line y; gray rows are width bytes long.
    static int calculate_background_average(unsigned char* binary_row, unsigned char* gray_row, int x, int y,
                                            int height, int width, int binary_row_size, int radius);
};

}  // namespace geometric

#endif

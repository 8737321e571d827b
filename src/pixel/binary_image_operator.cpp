// Bit tests on binary rows for the blob measures.
#include "pixel/binary_image_operator.h"

#include <cstddef>

namespace geometric {

namespace {

inline bool bit_is_set(const unsigned char* row, int x) { return (row[x >> 3] & (0x80 >> (x & 7))) != 0; }

}  // namespace

bool BinaryImageOperator::in_the_blob_contour(unsigned char* row, int x, int y, int height, int width,
                                              int row_size) {
    for (int dy = -1; dy <= 1; ++dy) {
        const int ny = y + dy;
        if (ny < 0 || ny >= height) continue;
        const unsigned char* line = row + static_cast<std::ptrdiff_t>(dy) * row_size;
        for (int dx = -1; dx <= 1; ++dx) {
            const int nx = x + dx;
            if ((dx == 0 && dy == 0) || nx < 0 || nx >= width) continue;
            if (!bit_is_set(line, nx)) return true;
        }
    }
    return false;
}

bool BinaryImageOperator::check_black_run(unsigned char* row, int start, int length) {
    if (length <= 0) return false;
    const int end = start + length;  // one past the last bit
    const int first_byte = start >> 3;
    const int last_byte = (end - 1) >> 3;
    // Bits of the first byte from start on, and of the last byte up to end - 1.
    const unsigned char head_mask = static_cast<unsigned char>(0xFFu >> (start & 7));
    const unsigned char tail_mask = static_cast<unsigned char>(0xFFu << (7 - ((end - 1) & 7)));
    if (first_byte == last_byte) return (row[first_byte] & head_mask & tail_mask) != 0;
    if (row[first_byte] & head_mask) return true;
    for (int byte = first_byte + 1; byte < last_byte; ++byte)
        if (row[byte] != 0) return true;
    return (row[last_byte] & tail_mask) != 0;
}

int BinaryImageOperator::calculate_background_average(unsigned char* binary_row, unsigned char* gray_row, int x,
                                                      int y, int height, int width, int binary_row_size,
                                                      int radius) {
    const int top = y - radius < 0 ? 0 : y - radius;
    const int bottom = y + radius > height - 1 ? height - 1 : y + radius;
    const int left = x - radius < 0 ? 0 : x - radius;
    const int right = x + radius > width - 1 ? width - 1 : x + radius;
    if (top > bottom || left > right) return -1;

    long sum = 0;
    long count = 0;
    auto take = [&](int px, int py) {
        const unsigned char* binary = binary_row + static_cast<std::ptrdiff_t>(py - y) * binary_row_size;
        if (bit_is_set(binary, px)) return;
        sum += gray_row[static_cast<std::ptrdiff_t>(py - y) * width + px];
        ++count;
    };
    for (int px = left; px <= right; ++px) take(px, top);
    if (bottom != top)
        for (int px = left; px <= right; ++px) take(px, bottom);
    for (int py = top + 1; py < bottom; ++py) {
        take(left, py);
        if (right != left) take(right, py);
    }
    return count == 0 ? -1 : static_cast<int>(sum / count);
}

}  // namespace geometric

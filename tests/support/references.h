// Plain per-pixel routes that the fast ones are compared with: a flood fill
// that labels components, and bit-packed rows read and written one pixel at a
// time (most significant bit leftmost).
#ifndef MORVANE_TESTS_SUPPORT_REFERENCES_H
#define MORVANE_TESTS_SUPPORT_REFERENCES_H

#include <random>
#include <vector>

#include "common/image.h"

namespace support {

// Component label of every pixel (0 background, from 1 in raster order of the
// components' first pixels), by a stack-based flood fill.
inline std::vector<int> flood_fill_labels(const common::Image& image, bool eight, int& count) {
    const int height = image.get_height();
    const int width = image.get_width();
    std::vector<int> labels(static_cast<size_t>(height) * width, 0);
    std::vector<int> stack;
    count = 0;
    for (int start = 0; start < width * height; ++start) {
        if (image.get_pixel(start % width, start / width) == 0 || labels[start] != 0) continue;
        labels[start] = ++count;
        stack.push_back(start);
        while (!stack.empty()) {
            const int cx = stack.back() % width, cy = stack.back() / width;
            stack.pop_back();
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) {
                    const int nx = cx + dx, ny = cy + dy;
                    if ((dx == 0 && dy == 0) || (!eight && dx != 0 && dy != 0)) continue;
                    if (nx < 0 || ny < 0 || nx >= width || ny >= height) continue;
                    if (image.get_pixel(nx, ny) == 0 || labels[ny * width + nx] != 0) continue;
                    labels[ny * width + nx] = count;
                    stack.push_back(ny * width + nx);
                }
        }
    }
    return labels;
}

struct BitBuffer {
    int height;
    int row_size;
    std::vector<unsigned char> bytes;

    BitBuffer(int height_, int row_size_)
        : height(height_), row_size(row_size_), bytes(static_cast<size_t>(height_) * row_size_, 0) {}
    bool get(int x, int y) const { return (bytes[y * row_size + (x >> 3)] >> (7 - (x & 7))) & 1; }
    void put(int x, int y, bool on) {
        unsigned char& byte = bytes[y * row_size + (x >> 3)];
        const unsigned char bit = static_cast<unsigned char>(0x80 >> (x & 7));
        byte = static_cast<unsigned char>(on ? (byte | bit) : (byte & ~bit));
    }
    // Every bit of the rows, padding included, set with the given percentage.
    void randomize(std::mt19937& random, int percent) {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < row_size * 8; ++x) put(x, y, static_cast<int>(random() % 100) < percent);
    }
};

}  // namespace support

#endif

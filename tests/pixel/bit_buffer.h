// Helpers of the morphology tests: raw bit-packed buffers, random fills and
// per-pixel access, most significant bit leftmost.
#ifndef MORVANE_TESTS_PIXEL_BIT_BUFFER_H
#define MORVANE_TESTS_PIXEL_BIT_BUFFER_H

#include <random>
#include <vector>

namespace test_support {

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

}  // namespace test_support

#endif

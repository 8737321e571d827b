// Gray test pages built in code, with their ink known by construction.
#ifndef MORVANE_TESTS_BINARIZATION_TEST_PAGES_H
#define MORVANE_TESTS_BINARIZATION_TEST_PAGES_H

#include <cstdint>
#include <cstring>

#include "common/basic_image.h"

namespace binarization_test {

// A repeatable noise source for test pages (xorshift).
struct Noise {
    std::uint32_t state;
    explicit Noise(std::uint32_t seed) : state(seed) {}
    std::uint32_t next() {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return state;
    }
};

inline common::BasicImage flat_page(int height, int width, unsigned char value) {
    common::BasicImage page(height, width, common::GRAY);
    std::memset(page.get_data(), value, static_cast<size_t>(page.get_data_size()));
    return page;
}

// Every byte drawn from [low, high].
inline common::BasicImage noise_page(int height, int width, int low, int high, std::uint32_t seed) {
    common::BasicImage page(height, width, common::GRAY);
    Noise noise(seed);
    for (int i = 0; i < page.get_data_size(); ++i)
        page.get_data()[i] = static_cast<unsigned char>(low + static_cast<int>(noise.next() % (high - low + 1)));
    return page;
}

// Paper that darkens from 225 on the left to 165 on the right, with strokes
// of gray 95 (inside the gray limits, so that the windows decide them): a
// three-pixel-wide vertical stroke every 12 columns in text bands of 14
// lines, 10 lines of gap between bands, and a margin of 40 all round.
inline bool is_stroke(int x, int y, int height, int width) {
    if (x < 40 || y < 40 || x >= width - 40 || y >= height - 40) return false;
    if ((y - 40) % 24 >= 14) return false;
    return (x - 40) % 12 < 3;
}

inline common::BasicImage text_page(int height, int width, std::uint32_t seed) {
    common::BasicImage page(height, width, common::GRAY);
    Noise noise(seed);
    for (int y = 0; y < height; ++y) {
        unsigned char* line = page.get_line_pointer(y);
        for (int x = 0; x < width; ++x) {
            const int paper = 225 - 60 * x / (width - 1);
            const int base = is_stroke(x, y, height, width) ? 95 : paper;
            line[x] = static_cast<unsigned char>(base + static_cast<int>(noise.next() % 7) - 3);
        }
    }
    return page;
}

}  // namespace binarization_test

#endif

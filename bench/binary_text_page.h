// The binarized 1500x1125 text page of the component benchmarks, built in code
// with a fixed seed: the same page in every run and every program.
#ifndef MORVANE_BENCH_BINARY_TEXT_PAGE_H
#define MORVANE_BENCH_BINARY_TEXT_PAGE_H

#include <cstddef>
#include <random>
#include <vector>

#include "common/basic_image.h"

namespace bench_page {

constexpr int kWidth = 1500;
constexpr int kHeight = 1125;

// What a Sauvola binarization makes of a printed page: text lines of small
// glyph-like blobs with some broken and touching strokes, speckles, two
// rules, and a picture block that breaks up into many irregular blobs.
// Ink is 1. Fixed seed: the same page in every run.
inline std::vector<unsigned char> make_page() {
    std::vector<unsigned char> ink(static_cast<size_t>(kWidth) * kHeight, 0);
    std::mt19937 random(1125u);
    auto set = [&](int x, int y) {
        if (x >= 0 && y >= 0 && x < kWidth && y < kHeight) ink[static_cast<size_t>(y) * kWidth + x] = 1;
    };
    auto bar = [&](int x0, int y0, int x1, int y1) {
        for (int y = y0; y < y1; ++y)
            for (int x = x0; x < x1; ++x) set(x, y);
    };
    // Text: two columns of lines, 14-pixel x-height glyphs in a 26-pixel pitch.
    for (int column = 0; column < 2; ++column) {
        const int left = 90 + column * 690;
        const int right = left + 630;
        for (int base = 120; base < kHeight - 90; base += 26) {
            if (column == 1 && base > 330 && base < 680) continue;  // the picture block
            int x = left + static_cast<int>(random() % 20);
            while (x < right - 20) {
                const int letters = 2 + static_cast<int>(random() % 8);
                for (int k = 0; k < letters && x < right - 12; ++k) {
                    const int w = 6 + static_cast<int>(random() % 6);
                    const int top = base - 14 - ((random() % 4 == 0) ? 6 : 0);
                    const int bottom = base + ((random() % 6 == 0) ? 5 : 0);
                    switch (random() % 5) {
                        case 0:  // bowl
                            bar(x, top + 2, x + 2, bottom - 2);
                            bar(x + w - 2, top + 2, x + w, bottom - 2);
                            bar(x + 1, top, x + w - 1, top + 2);
                            bar(x + 1, bottom - 2, x + w - 1, bottom);
                            break;
                        case 1:  // stem and arch
                            bar(x, top, x + 2, bottom);
                            bar(x, base - 14, x + w, base - 12);
                            bar(x + w - 2, base - 14, x + w, bottom);
                            break;
                        case 2:  // two stems joined at the bottom
                            bar(x, top, x + 2, bottom);
                            bar(x + w - 2, base - 14, x + w, bottom);
                            bar(x, bottom - 2, x + w, bottom);
                            break;
                        case 3:  // cross
                            bar(x + w / 2 - 1, top, x + w / 2 + 1, bottom);
                            bar(x, base - 10, x + w, base - 8);
                            break;
                        default:  // diagonal stroke
                            for (int y = top; y < bottom; ++y) bar(x + (y - top) * w / (bottom - top), y,
                                                                   x + (y - top) * w / (bottom - top) + 2, y + 1);
                            break;
                    }
                    x += w + 2 + static_cast<int>(random() % 2);
                }
                x += 8 + static_cast<int>(random() % 6);
            }
        }
    }
    // Speckles.
    for (int i = 0; i < 1500; ++i) set(static_cast<int>(random() % kWidth), static_cast<int>(random() % kHeight));
    // Two rules.
    bar(80, 90, kWidth - 80, 93);
    bar(80, kHeight - 70, kWidth - 80, kHeight - 68);
    // Picture block: a smooth field plus noise, thresholded.
    for (int y = 340; y < 680; ++y) {
        for (int x = 790; x < 1410; ++x) {
            const int field = ((x * 7 + y * 3) % 97) + ((x * 2 - y * 5 + 4000) % 61) + static_cast<int>(random() % 60);
            if (field > 105) set(x, y);
        }
    }
    return ink;
}

inline const std::vector<unsigned char>& page_ink() {
    static const std::vector<unsigned char> ink = make_page();
    return ink;
}

inline common::BasicImage binary_page() {
    common::BasicImage image(kHeight, kWidth, common::BINARY);
    const std::vector<unsigned char>& ink = page_ink();
    for (int y = 0; y < kHeight; ++y) {
        unsigned char* line = image.get_line_pointer(y);
        for (int x = 0; x < kWidth; ++x)
            if (ink[static_cast<size_t>(y) * kWidth + x]) line[x >> 3] |= static_cast<unsigned char>(0x80 >> (x & 7));
    }
    return image;
}

}  // namespace bench_page

#endif

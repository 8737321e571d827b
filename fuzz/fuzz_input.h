// What every fuzz target shares: a reader of the input bytes, the page image
// they describe, corners drawn from them, and the exceptions a caller expects.
//
// Layout of an input (every value little-endian; a short input reads as zeros):
//   image:   kind (1 byte: % 3 is gray, RGB, 1-bit), width and height (2 bytes
//            each: 1 + v % kMaxSide), background (1), noise amplitude (1),
//            noise seed (4), shape count (1: % 8) and per shape four corners
//            (2 + 2 bytes each, see corner_from) and a colour (3),
//            line count (1: % 16) and per line two ends (4 + 4), a colour (1)
//            and a thickness (1: % 8)
//   calls:   bytes the target reads to choose its calls and their arguments
//   tail:    a start offset (4), then raw bytes written over the pixels
// fuzz/make_corpus.py writes seeds in this layout.
#ifndef MORVANE_FUZZ_FUZZ_INPUT_H
#define MORVANE_FUZZ_FUZZ_INPUT_H

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include "morvane/morvane.h"

namespace fuzz {

constexpr int kMaxSide = 600;

class Reader {
public:
    Reader(const uint8_t* data, size_t size) : data_(data), size_(size) {}

    uint8_t u8() { return pos_ < size_ ? data_[pos_++] : 0; }
    uint16_t u16() { return static_cast<uint16_t>(u8() | (u8() << 8)); }
    uint32_t u32() { return static_cast<uint32_t>(u16()) | (static_cast<uint32_t>(u16()) << 16); }
    int32_t i32() { return static_cast<int32_t>(u32()); }
    // A float from a byte: lo + (hi - lo) * b / 255, so every setter sees its
    // defaults, its clamping limits and values beyond them.
    float unit(float lo, float hi) { return lo + (hi - lo) * static_cast<float>(u8()) / 255.0f; }

    const uint8_t* rest() const { return data_ + pos_; }
    size_t rest_size() const { return size_ - pos_; }
    void skip_all() { pos_ = size_; }

private:
    const uint8_t* data_;
    size_t size_;
    size_t pos_ = 0;
};

enum Kind { kGray = 0, kRgb = 1, kBinary = 2 };

inline int binary_row_bytes(int width) { return width / 32 * 4 + (width % 32 != 0 ? 4 : 0); }

// Bytes a buffer of this record needs.
inline size_t buffer_size(int width, int height, int channels, int is_binary) {
    const size_t rows = static_cast<size_t>(height);
    if (is_binary != 0) return rows * static_cast<size_t>(binary_row_bytes(width));
    return rows * static_cast<size_t>(width) * static_cast<size_t>(channels == 3 ? 3 : (channels == 4 ? 4 : 1));
}

// A corner from two 16-bit values: modes by the top two bits of x, so that a
// quarter of the corners lie inside the image, a quarter near it, a quarter
// far outside and a quarter on a few fixed points (degenerate quadrilaterals).
inline void corner_from(uint16_t vx, uint16_t vy, int width, int height, int* x, int* y) {
    const int mode = vx >> 14;
    const int a = vx & 0x3fff, b = vy;
    switch (mode) {
        case 0:
            *x = a % width;
            *y = b % height;
            break;
        case 1:
            *x = a % (3 * width + 1) - width;
            *y = b % (3 * height + 1) - height;
            break;
        case 2:
            *x = a * 4 - 0x8000;
            *y = static_cast<int>(b) * 2 - 0x10000;
            break;
        default: {
            const int fixed[4][2] = {{0, 0}, {width - 1, 0}, {width - 1, height - 1}, {0, height - 1}};
            *x = fixed[b & 3][0] + ((b >> 2) & 3) - 1;
            *y = fixed[b & 3][1] + ((b >> 4) & 3) - 1;
            break;
        }
    }
}

inline ControlPointCorners read_corners(Reader& in, int width, int height) {
    ControlPointCorners c;
    for (int i = 0; i < 4; ++i) {
        const uint16_t vx = in.u16(), vy = in.u16();
        corner_from(vx, vy, width, height, &c.x[i], &c.y[i]);
    }
    return c;
}

// The page image: a background with noise, filled quadrilaterals (pages,
// pictures) and straight strokes (text lines, rules), then raw bytes.
struct Page {
    Kind kind = kGray;
    int width = 1;
    int height = 1;
    std::vector<unsigned char> pixels;  // exactly the bytes of the record, so that reads past it are caught

    ImageCApi record() {
        ImageCApi image;
        image.width = width;
        image.height = height;
        image.x_resolution = 0;
        image.y_resolution = 0;
        image.channels = kind == kRgb ? 3 : 1;
        image.is_binary = kind == kBinary ? 1 : 0;
        image.data = pixels.data();
        return image;
    }
};

namespace detail {

struct Shape {
    int x[4], y[4];
    uint8_t colour[3];
};

struct Stroke {
    int x0, y0, x1, y1, thickness;
    uint8_t colour;
};

// Inside a quadrilateral by the even-odd rule, so that crossed ones draw too.
inline bool inside(const Shape& s, int px, int py) {
    bool in = false;
    for (int i = 0, j = 3; i < 4; j = i++) {
        if ((s.y[i] > py) != (s.y[j] > py)) {
            const double cross = static_cast<double>(s.x[j] - s.x[i]) * (py - s.y[i]) / (s.y[j] - s.y[i]) + s.x[i];
            if (px < cross) in = !in;
        }
    }
    return in;
}

}  // namespace detail

// Reads the image part of the input; the pixels are drawn at once, the tail
// is applied by finish_page once the target has read its calls.
inline Page read_page(Reader& in) {
    Page page;
    page.kind = static_cast<Kind>(in.u8() % 3);
    page.width = 1 + in.u16() % kMaxSide;
    page.height = 1 + in.u16() % kMaxSide;
    const int w = page.width, h = page.height;
    const uint8_t background = in.u8();
    const uint8_t noise = in.u8();
    uint32_t seed = in.u32() | 1u;

    std::vector<detail::Shape> shapes(in.u8() % 8);
    for (auto& s : shapes) {
        for (int i = 0; i < 4; ++i) {
            s.x[i] = in.u16() % (2 * w + 1) - w / 2;
            s.y[i] = in.u16() % (2 * h + 1) - h / 2;
        }
        for (auto& c : s.colour) c = in.u8();
    }
    std::vector<detail::Stroke> strokes(in.u8() % 16);
    for (auto& l : strokes) {
        l.x0 = in.u16() % (w + 1);
        l.y0 = in.u16() % (h + 1);
        l.x1 = in.u16() % (w + 1);
        l.y1 = in.u16() % (h + 1);
        l.colour = in.u8();
        l.thickness = 1 + in.u8() % 8;
    }

    // Drawn in three planes (RGB); gray and 1-bit images take the first.
    std::vector<uint8_t> plane(static_cast<size_t>(w) * h * 3);
    for (size_t i = 0; i < plane.size(); ++i) {
        seed ^= seed << 13;
        seed ^= seed >> 17;
        seed ^= seed << 5;
        const int v = background + (noise == 0 ? 0 : static_cast<int>(seed % (noise + 1u)) - noise / 2);
        plane[i] = static_cast<uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v));
    }
    for (const auto& s : shapes) {
        const int x_lo = std::max(0, *std::min_element(s.x, s.x + 4)), x_hi = std::min(w - 1, *std::max_element(s.x, s.x + 4));
        const int y_lo = std::max(0, *std::min_element(s.y, s.y + 4)), y_hi = std::min(h - 1, *std::max_element(s.y, s.y + 4));
        for (int y = y_lo; y <= y_hi; ++y) {
            for (int x = x_lo; x <= x_hi; ++x) {
                if (!detail::inside(s, x, y)) continue;
                for (int c = 0; c < 3; ++c) plane[(static_cast<size_t>(y) * w + x) * 3 + c] = s.colour[c];
            }
        }
    }
    for (const auto& l : strokes) {
        const int steps = std::max(std::abs(l.x1 - l.x0), std::abs(l.y1 - l.y0)) + 1;
        for (int k = 0; k < steps; ++k) {
            const int cx = l.x0 + (l.x1 - l.x0) * k / steps, cy = l.y0 + (l.y1 - l.y0) * k / steps;
            for (int dy = 0; dy < l.thickness; ++dy) {
                for (int dx = 0; dx < l.thickness; ++dx) {
                    const int x = cx + dx, y = cy + dy;
                    if (x >= w || y >= h) continue;
                    for (int c = 0; c < 3; ++c) plane[(static_cast<size_t>(y) * w + x) * 3 + c] = l.colour;
                }
            }
        }
    }

    ImageCApi rec = page.record();
    page.pixels.assign(buffer_size(w, h, rec.channels, rec.is_binary), 0);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const uint8_t* p = &plane[(static_cast<size_t>(y) * w + x) * 3];
            switch (page.kind) {
                case kGray: page.pixels[static_cast<size_t>(y) * w + x] = p[0]; break;
                case kRgb: std::memcpy(&page.pixels[(static_cast<size_t>(y) * w + x) * 3], p, 3); break;
                case kBinary:
                    if (p[0] <= 128)
                        page.pixels[static_cast<size_t>(y) * binary_row_bytes(w) + x / 8] |=
                            static_cast<uint8_t>(0x80u >> (x % 8));
                    break;
            }
        }
    }
    return page;
}

// Writes the rest of the input over the pixels, from an offset it reads first.
inline void finish_page(Reader& in, Page& page) {
    if (page.pixels.empty()) return;
    const uint32_t offset = in.u32();
    const size_t at = offset % page.pixels.size();
    const uint8_t* raw = in.rest();
    const size_t n = std::min(in.rest_size(), page.pixels.size() - at);
    std::memcpy(&page.pixels[at], raw, n);
    in.skip_all();
    // The offset's top bit keeps the raw bytes in the padding of a 1-bit
    // page; otherwise the padding is cleared. Callers hand both kinds: set
    // padding sends the blob family through its cleaned copy of the page,
    // clear padding through the caller's own buffer.
    const bool keep_padding = (offset & 0x80000000u) != 0;
    if (page.kind == kBinary && page.width % 32 != 0 && !keep_padding) {
        const int row = binary_row_bytes(page.width);
        for (int y = 0; y < page.height; ++y) {
            unsigned char* line = &page.pixels[static_cast<size_t>(y) * row];
            if (page.width % 8 != 0) line[page.width / 8] &= static_cast<unsigned char>(0xff00u >> (page.width % 8));
            for (int b = (page.width + 7) / 8; b < row; ++b) line[b] = 0;
        }
    }
}

// The exceptions that the interface lets pass: a caller surrounds its calls
// with these handlers (the library's own exception type reaches a caller as a
// std::exception). Anything else leaves the target and is a finding.
#define MORVANE_FUZZ_CALL(statement)                                                       \
    do {                                                                                  \
        try {                                                                             \
            statement;                                                                    \
        } catch (const char*) {                                                           \
        } catch (const std::string&) {                                                    \
        } catch (int) {                                                                   \
        } catch (const std::exception&) {                                                 \
        }                                                                                 \
    } while (0)

// A finding that the sanitizers cannot see: report and stop.
inline void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "fuzz check failed: %s\n", what);
    std::abort();
}

// The fuzz targets allocate an output only up to this many bytes (a 600 x 600
// RGB page fits): a caller would not allocate a gigabyte for such a page, and
// under the fuzzer's instrumentation a warp into 4 MiB takes seconds of CPU,
// which would pass for a hang.
constexpr size_t kMaxOutputBytes = size_t(3) << 19;

}  // namespace fuzz

#endif  // MORVANE_FUZZ_FUZZ_INPUT_H

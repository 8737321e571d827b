// Images of the library's own type built in code: flat, noisy, drawn as text,
// and photos of a page; with the byte comparisons the tests share.
#ifndef MORVANE_TESTS_SUPPORT_IMAGES_H
#define MORVANE_TESTS_SUPPORT_IMAGES_H

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "common/basic_image.h"
#include "support/pixels.h"
#include "textgeometry/geocoordinate.h"

namespace support {

inline common::BasicImage flat_image(int height, int width, unsigned char value,
                                     common::ImageType type = common::GRAY) {
    common::BasicImage image(height, width, type);
    if (image.get_data() != nullptr) std::memset(image.get_data(), value, static_cast<size_t>(image.get_data_size()));
    return image;
}

// Every byte of the buffer from noise_bytes, padding included, brought into [low, high].
inline common::BasicImage noise_image(int height, int width, std::uint32_t seed,
                                      common::ImageType type = common::GRAY, int low = 0, int high = 255) {
    common::BasicImage image(height, width, type);
    const std::vector<unsigned char> bytes = noise_bytes(static_cast<size_t>(image.get_data_size()), seed);
    for (size_t i = 0; i < bytes.size(); ++i)
        image.get_data()[i] = static_cast<unsigned char>(low + bytes[i] * (high - low + 1) / 256);
    return image;
}

// A text page: paper that darkens from 225 on the left to 165 on the right,
// with strokes of gray 95 (inside the binarizers' gray limits, so that their
// windows decide): a three-pixel-wide vertical stroke every 12 columns in
// text bands of 14 lines, 10 lines of gap between bands, a margin of 40 all
// round, and noise of -3 to 3 everywhere.
inline bool is_stroke(int x, int y, int height, int width) {
    if (x < 40 || y < 40 || x >= width - 40 || y >= height - 40) return false;
    return (y - 40) % 24 < 14 && (x - 40) % 12 < 3;
}

inline common::BasicImage text_page(int height, int width, std::uint32_t seed) {
    common::BasicImage page(height, width, common::GRAY);
    Lcg random(seed);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int base = is_stroke(x, y, height, width) ? 95 : 225 - 60 * x / (width - 1);
            page.get_line_pointer(y)[x] = static_cast<unsigned char>(base + static_cast<int>(random.next() >> 29) % 7 - 3);
        }
    return page;
}

// A gray photo of a page (see page_photo).
inline common::BasicImage photo(int width, int height, const Quad& page, const Paper& look = Paper()) {
    common::BasicImage image(height, width, common::GRAY);
    const std::vector<unsigned char> pixels = page_photo(width, height, page, 1, look);
    std::memcpy(image.get_data(), pixels.data(), pixels.size());
    return image;
}

// One string a line, '#' foreground and anything else background.
inline common::BasicImage binary_from_text(const std::vector<std::string>& lines) {
    const int height = static_cast<int>(lines.size());
    const int width = height > 0 ? static_cast<int>(lines[0].size()) : 0;
    common::BasicImage image(height, width, common::BINARY);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (lines[y][x] == '#') image.set_pixel(x, y, 1);
    return image;
}

// FNV-1a of the buffer.
inline std::uint64_t checksum(const common::BasicImage& image) {
    std::uint64_t hash = 1469598103934665603ull;
    for (int i = 0; i < image.get_data_size(); ++i) hash = (hash ^ image.get_data()[i]) * 1099511628211ull;
    return hash;
}

inline std::vector<unsigned char> bytes_of(const common::BasicImage& image) {
    return std::vector<unsigned char>(image.get_data(), image.get_data() + image.get_data_size());
}

inline bool same_bytes(const common::BasicImage& a, const common::BasicImage& b) {
    return a.get_data_size() == b.get_data_size() &&
           (a.get_data_size() == 0 ||
            std::memcmp(a.get_data(), b.get_data(), static_cast<size_t>(a.get_data_size())) == 0);
}

// Four corners: top-left, top-right, bottom-right, bottom-left.
typedef std::vector<geometric::Geocoordinate<float>> Corners;

inline Corners corners(float x0, float y0, float x1, float y1, float x2, float y2, float x3, float y3) {
    return Corners{{x0, y0}, {x1, y1}, {x2, y2}, {x3, y3}};
}

// The image's own corners.
inline Corners own_corners(int width, int height) {
    const float r = static_cast<float>(width - 1), b = static_cast<float>(height - 1);
    return corners(0, 0, r, 0, r, b, 0, b);
}

// The largest distance between a found corner and the page's true one.
inline double worst_corner_error(const Corners& found, const Quad& page) {
    double worst = 0.0;
    for (std::size_t k = 0; k < 4; ++k)
        worst = std::max(worst, std::hypot(found[k].x - page[k].x, found[k].y - page[k].y));
    return worst;
}

}  // namespace support

#endif

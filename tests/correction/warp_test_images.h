// Synthetic images and helpers shared by the warp tests.
#ifndef MORVANE_TESTS_CORRECTION_WARP_TEST_IMAGES_H
#define MORVANE_TESTS_CORRECTION_WARP_TEST_IMAGES_H

#include <cstdint>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "textgeometry/geocoordinate.h"

namespace warp_test {

typedef std::vector<geometric::Geocoordinate<float>> Corners;

inline Corners corners(float x0, float y0, float x1, float y1, float x2, float y2, float x3, float y3) {
    return Corners{{x0, y0}, {x1, y1}, {x2, y2}, {x3, y3}};
}

// The image's own corners: top-left, top-right, bottom-right, bottom-left.
inline Corners own_corners(int width, int height) {
    const float r = static_cast<float>(width - 1), b = static_cast<float>(height - 1);
    return corners(0, 0, r, 0, r, b, 0, b);
}

// Noise from a fixed seed; only the raw generator output is used, which the
// standard fixes, so the bytes are the same everywhere.
inline common::BasicImage noise_image(int width, int height, common::ImageType type, unsigned seed) {
    common::BasicImage image(height, width, type);
    std::mt19937 random(seed);
    for (int i = 0; i < image.get_data_size(); ++i) image.get_data()[i] = static_cast<unsigned char>(random() >> 24);
    return image;
}

// FNV-1a of the buffer.
inline uint64_t checksum(const common::BasicImage& image) {
    uint64_t hash = 1469598103934665603ull;
    for (int i = 0; i < image.get_data_size(); ++i) {
        hash ^= image.get_data()[i];
        hash *= 1099511628211ull;
    }
    return hash;
}

inline bool same_bytes(const common::BasicImage& a, const common::BasicImage& b) {
    if (a.get_data_size() != b.get_data_size()) return false;
    for (int i = 0; i < a.get_data_size(); ++i)
        if (a.get_data()[i] != b.get_data()[i]) return false;
    return true;
}

}  // namespace warp_test

#endif

// Pictures as plain byte buffers, built in code with their answers known by
// construction: repeatable noise and photos of a page on a desk. Nothing here
// needs the library, so the tests of the exported interface and of the tool
// use it as well as the tests of the inner classes.
#ifndef MORVANE_TESTS_SUPPORT_PIXELS_H
#define MORVANE_TESTS_SUPPORT_PIXELS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace support {

// A repeatable noise source (a linear congruential generator).
struct Lcg {
    std::uint32_t state;
    explicit Lcg(std::uint32_t seed) : state(seed) {}
    std::uint32_t next() { return state = state * 1664525u + 1013904223u; }
};

// Uniform noise; only the raw output of the generator is used, which the
// standard fixes, so the bytes are the same everywhere.
inline std::vector<unsigned char> noise_bytes(std::size_t count, std::uint32_t seed) {
    std::vector<unsigned char> bytes(count);
    std::mt19937 random(seed);
    for (unsigned char& b : bytes) b = static_cast<unsigned char>(random() >> 24);
    return bytes;
}

struct Point {
    double x, y;
};
// A page by its corners: top-left, top-right, bottom-right, bottom-left.
typedef std::array<Point, 4> Quad;

inline Quad quad(double x0, double y0, double x1, double y1, double x2, double y2, double x3, double y3) {
    return Quad{Point{x0, y0}, Point{x1, y1}, Point{x2, y2}, Point{x3, y3}};
}

inline bool inside(const Quad& q, double x, double y) {
    for (int k = 0; k < 4; ++k) {
        const Point& a = q[k];
        const Point& b = q[(k + 1) % 4];
        if ((b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x) < 0.0) return false;
    }
    return true;
}

// The point at (u, v) in [0, 1]^2 of the page, by bilinear blending of its corners.
inline Point at(const Quad& q, double u, double v) {
    return Point{(1 - u) * (1 - v) * q[0].x + u * (1 - v) * q[1].x + u * v * q[2].x + (1 - u) * v * q[3].x,
                 (1 - u) * (1 - v) * q[0].y + u * (1 - v) * q[1].y + u * v * q[2].y + (1 - u) * v * q[3].y};
}

struct Paper {
    unsigned char paper = 205, desk = 70, ink = 40;
    bool marks = true;  // rows of short dark strokes across the middle of the page
};

// A photo of a page: bright paper on a darker desk, both with a little noise
// (-3 to 4), a pixel belonging to the page when its centre lies inside the
// quadrilateral. With several channels, channel k is lifted by 3 k (paper
// and desk stay below 250).
inline std::vector<unsigned char> page_photo(int width, int height, const Quad& page, int channels = 1,
                                             const Paper& look = Paper()) {
    std::vector<unsigned char> gray(static_cast<std::size_t>(width) * height);
    Lcg random(20261123u);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int noise = static_cast<int>(random.next() >> 29) - 3;
            const int base = inside(page, x + 0.5, y + 0.5) ? look.paper : look.desk;
            gray[static_cast<std::size_t>(y) * width + x] = static_cast<unsigned char>(base + noise);
        }
    if (look.marks) {
        for (double v = 0.15; v < 0.85; v += 0.06)
            for (double u = 0.12; u < 0.88; u += 0.035)
                for (double dv = 0.0; dv < 0.02; dv += 0.002)
                    for (double du = 0.0; du < 0.02; du += 0.002) {
                        const Point p = at(page, u + du, v + dv);
                        const int x = static_cast<int>(p.x), y = static_cast<int>(p.y);
                        if (x >= 0 && y >= 0 && x < width && y < height)
                            gray[static_cast<std::size_t>(y) * width + x] = look.ink;
                    }
    }
    if (channels == 1) return gray;
    std::vector<unsigned char> colour(gray.size() * channels);
    for (std::size_t i = 0; i < gray.size(); ++i)
        for (int k = 0; k < channels; ++k) colour[i * channels + k] = static_cast<unsigned char>(gray[i] + 3 * k);
    return colour;
}

}  // namespace support

#endif

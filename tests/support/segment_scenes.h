// Scenes for the line segment detector: gray images whose edges are known by
// construction, and the segments found along a line.
#ifndef MORVANE_TESTS_SUPPORT_SEGMENT_SCENES_H
#define MORVANE_TESTS_SUPPORT_SEGMENT_SCENES_H

#include <cmath>
#include <cstdint>
#include <vector>

#include "linesegments/image_object.h"
#include "linesegments/line_segment_rect.h"
#include "support/pixels.h"

namespace support {

struct Gray {
    int width;
    int height;
    std::vector<unsigned char> pixels;

    Gray(int w, int h, unsigned char value) : width(w), height(h), pixels(static_cast<std::size_t>(w) * h, value) {}
    geometric::ImageObject<unsigned char> view() { return geometric::ImageObject<unsigned char>(pixels.data(), width, height); }
    unsigned char& at(int x, int y) { return pixels[static_cast<std::size_t>(y) * width + x]; }

    // Fills the pixels in [x0, x1) x [y0, y1).
    void fill(int x0, int y0, int x1, int y1, unsigned char value) {
        for (int y = y0; y < y1; ++y)
            for (int x = x0; x < x1; ++x) at(x, y) = value;
    }

    void noise(std::uint32_t seed) { pixels = noise_bytes(pixels.size(), seed); }
};

// Distance from point (x, y) to the infinite line through (ax, ay), (bx, by).
inline double line_distance(double x, double y, double ax, double ay, double bx, double by) {
    const double dx = bx - ax, dy = by - ay;
    return std::fabs((x - ax) * dy - (y - ay) * dx) / std::sqrt(dx * dx + dy * dy);
}

inline double length_of(const geometric::LineSegmentRect& s) {
    return std::hypot(s.x2 - s.x1, s.y2 - s.y1);
}

// The longest segment with both ends within `tolerance` of the line.
inline const geometric::LineSegmentRect* longest_on_line(const std::vector<geometric::LineSegmentRect>& segments,
                                                         double ax, double ay, double bx, double by,
                                                         double tolerance) {
    const geometric::LineSegmentRect* best = nullptr;
    for (const auto& s : segments) {
        if (line_distance(s.x1, s.y1, ax, ay, bx, by) > tolerance) continue;
        if (line_distance(s.x2, s.y2, ax, ay, bx, by) > tolerance) continue;
        if (best == nullptr || length_of(s) > length_of(*best)) best = &s;
    }
    return best;
}

}  // namespace support

#endif

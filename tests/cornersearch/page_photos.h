// Gray photos of a page, built in code: a bright page with rows of dark
// text-like marks on a darker, slightly noisy background, the page given by
// its four corners (top-left, top-right, bottom-right, bottom-left).
#ifndef MORVANE_TESTS_CORNERSEARCH_PAGE_PHOTOS_H
#define MORVANE_TESTS_CORNERSEARCH_PAGE_PHOTOS_H

#include <array>
#include <cstdint>

#include "common/basic_image.h"
#include "textgeometry/geocoordinate.h"

namespace page_photos {

typedef std::array<geometric::Geocoordinate<double>, 4> Quad;

// Which side of the directed edge from a to b the point lies on.
inline double side(const geometric::Geocoordinate<double>& a, const geometric::Geocoordinate<double>& b, double x,
                   double y) {
    return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x);
}

inline bool inside(const Quad& q, double x, double y) {
    for (int k = 0; k < 4; ++k)
        if (side(q[k], q[(k + 1) % 4], x, y) < 0.0) return false;
    return true;
}

// The point at (u, v) in [0, 1]^2 of the page, by bilinear blending of its corners.
inline geometric::Geocoordinate<double> at(const Quad& q, double u, double v) {
    const double x = (1 - u) * (1 - v) * q[0].x + u * (1 - v) * q[1].x + u * v * q[2].x + (1 - u) * v * q[3].x;
    const double y = (1 - u) * (1 - v) * q[0].y + u * (1 - v) * q[1].y + u * v * q[2].y + (1 - u) * v * q[3].y;
    return geometric::Geocoordinate<double>(x, y);
}

inline common::BasicImage photo(int width, int height, const Quad& page, unsigned char paper = 205,
                                unsigned char desk = 70, bool marks = true) {
    common::BasicImage image(height, width, common::GRAY);
    std::uint32_t state = 20261123u;
    for (int y = 0; y < height; ++y) {
        unsigned char* line = image.get_line_pointer(y);
        for (int x = 0; x < width; ++x) {
            state = state * 1664525u + 1013904223u;
            const int noise = static_cast<int>(state >> 29) - 3;  // -3 .. 4
            const int base = inside(page, x + 0.5, y + 0.5) ? paper : desk;
            line[x] = static_cast<unsigned char>(base + noise);
        }
    }
    if (marks) {
        // Rows of short strokes across the middle of the page.
        for (double v = 0.15; v < 0.85; v += 0.06)
            for (double u = 0.12; u < 0.88; u += 0.035)
                for (double dv = 0.0; dv < 0.02; dv += 0.002)
                    for (double du = 0.0; du < 0.02; du += 0.002) {
                        const geometric::Geocoordinate<double> p = at(page, u + du, v + dv);
                        const int x = static_cast<int>(p.x), y = static_cast<int>(p.y);
                        if (x >= 0 && y >= 0 && x < width && y < height) image.get_line_pointer(y)[x] = 40;
                    }
    }
    return image;
}

inline Quad quad(double x0, double y0, double x1, double y1, double x2, double y2, double x3, double y3) {
    return Quad{geometric::Geocoordinate<double>(x0, y0), geometric::Geocoordinate<double>(x1, y1),
                geometric::Geocoordinate<double>(x2, y2), geometric::Geocoordinate<double>(x3, y3)};
}

}  // namespace page_photos

#endif

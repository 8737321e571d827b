// The overlay picture: box-filtered reduction and a thick outline.
#include "overlay.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace scan {
namespace {

struct Colour {
    unsigned char r, g, b;
};

constexpr Colour kOutline{230, 20, 20};
constexpr Colour kTopLeft{20, 200, 40};

void stamp_disc(Raster& picture, double cx, double cy, double radius, Colour colour) {
    const int x0 = std::max(0, static_cast<int>(std::floor(cx - radius)));
    const int x1 = std::min(picture.width - 1, static_cast<int>(std::ceil(cx + radius)));
    const int y0 = std::max(0, static_cast<int>(std::floor(cy - radius)));
    const int y1 = std::min(picture.height - 1, static_cast<int>(std::ceil(cy + radius)));
    for (int y = y0; y <= y1; ++y) {
        unsigned char* row = picture.row(y);
        for (int x = x0; x <= x1; ++x) {
            const double dx = x - cx;
            const double dy = y - cy;
            if (dx * dx + dy * dy > radius * radius) continue;
            row[3 * x] = colour.r;
            row[3 * x + 1] = colour.g;
            row[3 * x + 2] = colour.b;
        }
    }
}

// Cuts the segment a-b to the box [low, high] on both axes (Liang-Barsky);
// false when nothing of it lies inside.
bool clip(double& ax, double& ay, double& bx, double& by, double low_x, double low_y, double high_x,
          double high_y) {
    double t0 = 0.0, t1 = 1.0;
    const double dx = bx - ax, dy = by - ay;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {ax - low_x, high_x - ax, ay - low_y, high_y - ay};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0) return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0.0) {
            t0 = std::max(t0, t);
        } else {
            t1 = std::min(t1, t);
        }
        if (t0 > t1) return false;
    }
    const double x0 = ax + t0 * dx, y0 = ay + t0 * dy;
    bx = ax + t1 * dx;
    by = ay + t1 * dy;
    ax = x0;
    ay = y0;
    return true;
}

// A line is a row of discs one pixel apart, over the part that can be seen.
void draw_line(Raster& picture, double ax, double ay, double bx, double by, double radius) {
    if (!clip(ax, ay, bx, by, -radius, -radius, picture.width + radius, picture.height + radius)) return;
    const int steps = static_cast<int>(std::hypot(bx - ax, by - ay)) + 1;
    for (int i = 0; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        stamp_disc(picture, ax + (bx - ax) * t, ay + (by - ay) * t, radius, kOutline);
    }
}

}  // namespace

Raster make_overlay(const Raster& image, const ControlPointCorners* corners) {
    const int long_side = std::max(image.width, image.height);
    const int factor = (long_side + kOverlayLongSide - 1) / kOverlayLongSide;
    const int width = std::max(1, image.width / factor);
    const int height = std::max(1, image.height / factor);
    Raster picture = make_raster(width, height, 3);

    // Each output pixel is the mean of a factor x factor block of the input.
    std::vector<unsigned> sums(static_cast<std::size_t>(width) * 3);
    const unsigned area = static_cast<unsigned>(factor * factor);
    for (int y = 0; y < height; ++y) {
        std::fill(sums.begin(), sums.end(), 0u);
        for (int dy = 0; dy < factor; ++dy) {
            const unsigned char* source = image.row(std::min(image.height - 1, y * factor + dy));
            for (int x = 0; x < width; ++x) {
                for (int dx = 0; dx < factor; ++dx) {
                    const unsigned char* pixel = source + static_cast<std::size_t>(x * factor + dx) * image.channels;
                    for (int c = 0; c < 3; ++c) sums[3 * x + c] += pixel[image.channels == 3 ? c : 0];
                }
            }
        }
        unsigned char* target = picture.row(y);
        for (std::size_t i = 0; i < sums.size(); ++i) target[i] = static_cast<unsigned char>(sums[i] / area);
    }

    if (corners) {
        // Corners are pixel centres of the input; scale them to the picture.
        const double scale = 1.0 / factor;
        const double radius = std::max(1.5, long_side * scale / 400.0);
        double x[4], y[4];
        for (int i = 0; i < 4; ++i) {
            x[i] = (corners->x[i] + 0.5) * scale - 0.5;
            y[i] = (corners->y[i] + 0.5) * scale - 0.5;
        }
        for (int i = 0; i < 4; ++i) draw_line(picture, x[i], y[i], x[(i + 1) % 4], y[(i + 1) % 4], radius);
        for (int i = 1; i < 4; ++i) stamp_disc(picture, x[i], y[i], radius * 2.5, kOutline);
        stamp_disc(picture, x[0], y[0], radius * 3.5, kTopLeft);
    }
    return picture;
}

}  // namespace scan

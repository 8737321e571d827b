// The gray 1500x1125 page photo of the working-image benchmarks, built in
// code with a fixed seed: the same page in every run and every program.
#ifndef MORVANE_BENCH_GRAY_PAGE_PHOTO_H
#define MORVANE_BENCH_GRAY_PAGE_PHOTO_H

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace bench_photo {

constexpr int kWidth = 1500;
constexpr int kHeight = 1125;

struct Lcg {
    uint32_t state = 20260523u;
    uint32_t next() { return state = state * 1664525u + 1013904223u; }
    int below(int n) { return static_cast<int>((next() >> 8) % static_cast<uint32_t>(n)); }
};

// A page slightly turned on a darker, unevenly lit desk, with lines of
// text-like strokes (stems, bars and dots of 2 to 3 pixels), a ruled table,
// a little sensor noise and a 3x3 blur for the lens.
inline std::vector<unsigned char> make_page() {
    std::vector<float> canvas(static_cast<std::size_t>(kWidth) * kHeight);
    const double angle = 0.035;
    const double c = std::cos(angle), s = std::sin(angle);
    const double cx = kWidth / 2.0, cy = kHeight / 2.0, half_w = 560.0, half_h = 480.0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const double u = (x - cx) * c + (y - cy) * s;
            const double v = -(x - cx) * s + (y - cy) * c;
            const bool on_page = std::fabs(u) <= half_w && std::fabs(v) <= half_h;
            const double light = 1.0 - 0.25 * (x + y) / static_cast<double>(kWidth + kHeight);
            canvas[static_cast<std::size_t>(y) * kWidth + x] = static_cast<float>((on_page ? 225.0 : 90.0) * light);
        }
    // Ink in page coordinates (u, v), drawn as small rectangles.
    auto ink = [&](double u0, double v0, double u1, double v1) {
        for (double v = v0; v <= v1; v += 0.5)
            for (double u = u0; u <= u1; u += 0.5) {
                const int x = static_cast<int>(cx + u * c - v * s + 0.5);
                const int y = static_cast<int>(cy + u * s + v * c + 0.5);
                if (x >= 0 && x < kWidth && y >= 0 && y < kHeight) canvas[static_cast<std::size_t>(y) * kWidth + x] = 35.0f;
            }
    };
    Lcg random;
    for (double v = -440.0; v < 150.0; v += 24.0) {
        double u = -500.0;
        while (u < 500.0) {
            const int letters = 2 + random.below(8);
            for (int l = 0; l < letters && u < 500.0; ++l) {
                const int kind = random.below(5);
                const double stroke = 2.0 + random.below(2);
                if (kind == 0) ink(u, v - 14, u + stroke, v);                       // ascender stem
                if (kind == 1) ink(u, v - 9, u + stroke, v);                        // short stem
                if (kind == 2) { ink(u, v - 9, u + 7, v - 9 + stroke); ink(u, v - 9, u + stroke, v); }  // "r"
                if (kind == 3) { ink(u, v - 9, u + stroke, v); ink(u + 6, v - 9, u + 6 + stroke, v); ink(u, v - 9, u + 7, v - 9 + stroke); }  // "n"
                if (kind == 4) { ink(u, v - 9, u + 7, v); ink(u + 2, v - 7, u + 5, v - 2); }  // "o"-like blob
                u += 10.0;
            }
            u += 8.0;
        }
    }
    // A ruled table below the text.
    for (int r = 0; r <= 6; ++r) ink(-480.0, 180.0 + r * 40.0, 480.0, 181.5 + r * 40.0);
    for (int k = 0; k <= 4; ++k) ink(-480.0 + k * 240.0, 180.0, -478.5 + k * 240.0, 421.5);

    std::vector<unsigned char> page(canvas.size());
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            float sum = 0.0f;
            int n = 0;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) {
                    const int xx = x + dx, yy = y + dy;
                    if (xx < 0 || yy < 0 || xx >= kWidth || yy >= kHeight) continue;
                    sum += canvas[static_cast<std::size_t>(yy) * kWidth + xx];
                    ++n;
                }
            const float value = sum / n + static_cast<float>(random.below(9)) - 4.0f;
            page[static_cast<std::size_t>(y) * kWidth + x] = static_cast<unsigned char>(std::min(255.0f, std::max(0.0f, value)));
        }
    return page;
}

inline std::vector<unsigned char>& page() {
    static std::vector<unsigned char> pixels = make_page();
    return pixels;
}

}  // namespace bench_photo

#endif

// The quick Sauvola binarizer against a plain per-pixel version of the same
// rules (whole-image integrals, a smoothing that keeps the original aside),
// and its required quirks.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "binarization/quick_sauvola.h"
#include "binarization/sauvola_binarization.h"
#include "common/geometricexception.h"
#include "support/errors.h"
#include "support/images.h"

namespace geometric {
namespace {


// The smoothing written pixel by pixel from the rules: the box sums come from
// the untouched original, lines (1, 1, 2) for line 1, (1, 2, 2) for line 2,
// (y - 2, y - 1, y) after; the edge pixels read the smoothed line above.
common::BasicImage reference_smoothing(const common::BasicImage& original, int weight) {
    common::BasicImage r(original);
    const int w = original.get_width();
    const int h = original.get_height();
    const auto o = [&](int x, int y) { return static_cast<int>(original.get_line_pointer(y)[x]); };
    const auto s = [&](int x, int y) { return static_cast<int>(r.get_line_pointer(y)[x]); };
    const auto set = [&](int x, int y, int v) { r.get_line_pointer(y)[x] = static_cast<unsigned char>(v); };
    const auto box = [&](int x, int y) { return o(x - 1, y) + o(x, y) + o(x + 1, y); };
    set(0, 0, (3 * o(0, 0) + o(1, 0) + o(0, 1) + o(1, 1)) / 6);
    for (int x = 1; x < w - 1; ++x) set(x, 0, (box(x, 0) + box(x, 1) + 4 * o(x, 0)) / 10);
    set(w - 1, 0, (s(w - 2, 0) + 3 * o(w - 1, 0) + o(w - 2, 1) + o(w - 1, 1)) / 6);
    for (int y = 1; y < h - 1; ++y) {
        // The ring's lines: 1, 1, 2 for line 1 and 1, 2, 2 for line 2.
        const int a = y <= 2 ? 1 : y - 2;
        const int b = y == 1 ? 1 : (y == 2 ? 2 : y - 1);
        const int c = y <= 2 ? 2 : y;
        set(0, y, (5 * o(0, y) + s(0, y - 1) + o(0, y + 1) + s(1, y - 1) + o(1, y + 1) + o(1, y)) / 10);
        for (int x = 1; x < w - 1; ++x) set(x, y, (weight * o(x, y) + box(x, a) + box(x, b) + box(x, c)) / (weight + 9));
        set(w - 1, y,
            (s(w - 2, y) + 5 * o(w - 1, y) + s(w - 1, y - 1) + o(w - 1, y + 1) + s(w - 2, y - 1) + o(w - 2, y + 1)) /
                10);
    }
    return r;
}

// The threshold of every pixel from whole-image integrals and the region table.
common::BasicImage reference_threshold(const common::BasicImage& gray, const SauvolaPara& para, int W, int M) {
    const int width = gray.get_width();
    const int height = gray.get_height();
    std::vector<std::uint64_t> sum(static_cast<size_t>(width) * height), square(sum.size());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::uint64_t p = gray.get_line_pointer(y)[x];
            const size_t i = static_cast<size_t>(y) * width + x;
            sum[i] = p + (x > 0 ? sum[i - 1] : 0) + (y > 0 ? sum[i - width] : 0) - (x > 0 && y > 0 ? sum[i - width - 1] : 0);
            square[i] = p * p + (x > 0 ? square[i - 1] : 0) + (y > 0 ? square[i - width] : 0) -
                        (x > 0 && y > 0 ? square[i - width - 1] : 0);
        }
    const auto at = [&](const std::vector<std::uint64_t>& v, int x, int y) { return v[static_cast<size_t>(y) * width + x]; };
    const auto window = [&](const std::vector<std::uint64_t>& v, int x0, int x1, int y0, int y1) {
        return at(v, x1, y1) - at(v, x0, y1) - at(v, x1, y0) + at(v, x0, y0);
    };
    common::BasicImage scratch;
    QuickSauvola tables(&scratch, &scratch);
    common::BasicImage out(height, width, common::BINARY);
    const int h = W / 2;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int p = gray.get_line_pointer(y)[x];
            if (p > para.upper_gray_limit) continue;
            if (p < para.lower_gray_limit) {
                out.set_pixel(x, y, 1);
                continue;
            }
            int x0, x1, y0, y1;
            long long area;
            bool table = true;
            if (y < M || y >= height - M - 1) {
                x0 = std::max(x - h, 0), x1 = std::min(x + h, width - 1);
                y0 = std::max(y - h, 0), y1 = std::min(y + h, height - 1);
                area = static_cast<long long>(x1 - x0) * (y1 - y0);
            } else if (x < M) {
                x0 = 0, x1 = x + h, y0 = y - h, y1 = y + h, area = static_cast<long long>(x + h) * W;
            } else if (x < width - M) {
                x0 = x - h, x1 = x - h + W, y0 = y - h, y1 = y - h + W, area = static_cast<long long>(W) * W;
                table = false;
            } else {
                x0 = x - 1, x1 = width - 1, y0 = y - h, y1 = y + h, area = static_cast<long long>(width - x) * W;
            }
            if (area <= 0) continue;
            const float a = static_cast<float>(area);
            const float mean = static_cast<float>(window(sum, x0, x1, y0, y1)) / a;
            const float variance = static_cast<float>(window(square, x0, x1, y0, y1)) / a - mean * mean;
            const float s = table ? tables.lookup_deviation(variance) : std::sqrt(std::fabs(variance));
            const float t = (s * (para.k / 128.0f) + (1.0f - para.k)) * mean;
            if (p <= static_cast<int>(t)) out.set_pixel(x, y, 1);
        }
    return out;
}

common::BasicImage quick(common::BasicImage& gray, const SauvolaPara& para) {
    common::BasicImage out(gray.get_height(), gray.get_width(), common::BINARY);
    QuickSauvola sauvola(&gray, &out);
    sauvola = para;
    sauvola.perform_quick_sauvola_binarization();
    return out;
}

// The plain threshold reads the deviation tables too: their knots are pinned here.
TEST(QuickSauvola, DeviationTablesAtTheirKnots) {
    common::BasicImage scratch;
    QuickSauvola sauvola(&scratch, &scratch);
    const float cases[][2] = {{0.0f, 0.0f},    {2.55f, 1.581f},    {100.5f, 10.0f},  // (int)(25.5) = 25; table two at 0
                              {102.0f, 10.100f}, {1004.0f, 31.623f}, {1006.0f, 31.780f},
                              {16390.0f, 128.0f}, {-0.09f, 0.0f}};
    for (const auto& c : cases) EXPECT_FLOAT_EQ(sauvola.lookup_deviation(c[0]), c[1]) << c[0];
}

TEST(QuickSauvola, SmoothingMatchesThePlainVersionAndLeavesTheLastLine) {
    const int sizes[][2] = {{40, 50}, {4, 9}, {2, 2}, {3, 17}, {61, 33}};
    for (const auto& size : sizes)
        for (const int weight : {2, 0, 7}) {
            const common::BasicImage original = support::noise_image(size[0], size[1], 11u + weight);
            common::BasicImage gray(original);
            SauvolaPara para;
            para.smoothing_weight = weight;
            para.use_wide_ring = false;  // small pages must reach the threshold
            try {
                quick(gray, para);
            } catch (const Geometricexception&) {
                // Pages under 4 pixels a side are refused after the smoothing.
            }
            const common::BasicImage expected = reference_smoothing(original, weight);
            EXPECT_TRUE(support::same_bytes(gray, expected)) << size[0] << "x" << size[1] << " weight " << weight;
            const int last = size[0] - 1;
            EXPECT_EQ(0, std::memcmp(gray.get_line_pointer(last), original.get_line_pointer(last),
                                     static_cast<size_t>(size[1])));
        }
}

TEST(QuickSauvola, ThresholdMatchesThePlainVersionInEveryRegion) {
    struct Case { int height, width, window; bool wide; float k; };
    const Case cases[] = {
        {420, 500, 35, true, 0.2f},   // wide ring, M = 2 W
        {500, 420, 35, true, 0.1f},   // portrait
        {90, 120, 35, true, 0.2f},    // window rule: W = 8
        {21, 60, 35, true, 0.3f},     // W = 2, wide
        {10, 50, 35, true, 0.2f},     // W = 2, 8 W > m: the ring narrows, M = W / 2
        {420, 500, 34, false, 0.2f},  // narrow ring by choice
        {420, 500, 35, false, 0.2f},  // odd window on a narrow ring
        {60, 60, 1, true, 0.2f}};     // a one-pixel window
    for (const Case& c : cases) {
        common::BasicImage gray = support::text_page(c.height, c.width, 5u);
        const common::BasicImage spots = support::noise_image(c.height, c.width, 9u, common::GRAY, 40, 210);
        for (int i = 0; i < gray.get_data_size(); i += 7) gray.get_data()[i] = spots.get_data()[i];
        SauvolaPara para;
        para.perform_smoothing = false;
        para.window_size = c.window;
        para.use_wide_ring = c.wide;
        para.k = c.k;
        const int W = QuickSauvola::obtain_window_size(c.window, c.width, c.height);
        const bool wide = c.wide && W * 8 <= std::min(c.width, c.height);
        const int M = wide ? 2 * W : W - W / 2;
        common::BasicImage working(gray);
        const common::BasicImage fast = quick(working, para);
        const common::BasicImage plain = reference_threshold(gray, para, W, M);
        EXPECT_TRUE(support::same_bytes(fast, plain)) << c.height << "x" << c.width << " window " << c.window;
    }
}

TEST(QuickSauvola, FailuresCarryTheirExactTexts) {
    struct Case { int height, width, weight; const char* message; };
    const Case cases[] = {{3, 100, 2, " The window size is too large"},
                          {100, 3, 2, " The window size is too large"},
                          {50, 50, -1, "Wrong weighting parameter for smoothing"}};
    for (const Case& c : cases) {
        common::BasicImage gray = support::flat_image(c.height, c.width, 120);
        SauvolaPara para;
        para.smoothing_weight = c.weight;
        EXPECT_EQ(support::thrown_text<Geometricexception>([&] { quick(gray, para); }), c.message);
    }
    common::BasicImage four = support::flat_image(4, 100, 120);
    EXPECT_NO_THROW(quick(four, SauvolaPara()));
}

}  // namespace
}  // namespace geometric

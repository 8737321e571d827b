// The fast Sauvola threshold. Memory stays at a ring of integral-image lines
// however tall the page, and pixels outside the gray limits cost no window.
#include "binarization/quick_sauvola.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "common/geometricexception.h"
#include "common/scratch_buffer.h"

namespace geometric {

namespace {

const char* const kWrongWeighting = "Wrong weighting parameter for smoothing";
const char* const kLocatingFailed = "Locating error failed!";
const char* const kWindowTooLarge = " The window size is too large";
const char* const kAllocatingFailed = "Allocating memory failed!";

// The square root to three decimals, as the tables keep it.
float rounded_root(double variance) {
    return static_cast<float>(std::floor(std::sqrt(variance) * 1000.0 + 0.5) / 1000.0);
}

}  // namespace

const unsigned char QuickSauvola::bit_masks[8] = {128, 64, 32, 16, 8, 4, 2, 1};

QuickSauvola::QuickSauvola(common::BasicImage* gray, common::BasicImage* output)
    : gray(gray), output(output), deviation_table_one(1001), deviation_table_two(451), deviation_table_three(1540) {
    for (int i = 0; i < 1001; ++i) deviation_table_one[i] = rounded_root(i / 10.0);
    for (int i = 0; i < 451; ++i) deviation_table_two[i] = rounded_root(100.0 + 2.0 * i);
    for (int i = 0; i < 1540; ++i) deviation_table_three[i] = rounded_root(1000.0 + 10.0 * i);
    deviation_table_three[1539] = 128.0f;
}

QuickSauvola& QuickSauvola::operator=(const SauvolaPara& value) {
    para = value;
    return *this;
}

int QuickSauvola::obtain_window_size(int window_size, int width, int height) {
    const int m = std::min(width, height);
    if (static_cast<long long>(window_size) * 11 > m) return m > 21 ? m / 11 : 2;
    return window_size;
}

float QuickSauvola::lookup_deviation(float variance) const {
    int index;
    const std::vector<float>* table;
    if (variance <= 100.0f) {
        index = static_cast<int>(variance * 10.0f);
        table = &deviation_table_one;
    } else if (variance <= 1000.0f) {
        index = static_cast<int>((variance - 100.0f) * 0.5f);
        table = &deviation_table_two;
    } else {
        index = static_cast<int>((variance - 1000.0f) / 10.0f + 0.5f);
        table = &deviation_table_three;
    }
    // A variance that rounding drove below zero reads the first knot.
    const int last = static_cast<int>(table->size()) - 1;
    return (*table)[std::min(std::max(index, 0), last)];
}

void QuickSauvola::perform_quick_sauvola_binarization() {
    const int window = obtain_window_size(para.window_size, gray->get_width(), gray->get_height());
    if (para.perform_smoothing) {
        if (para.smoothing_weight < 0) throw Geometricexception(kWrongWeighting);
        perform_smoothing();
    }
    perform_thresholding(window);
}

// In place, integer arithmetic truncating. A ring of three lines holds the
// sums p[x-1] + p[x] + p[x+1] of unsmoothed lines. Before line y is smoothed,
// its own sums replace slot (y - 1) mod 3, so that lines 1 and 2 see the sums
// of lines 1, 1, 2 and 1, 2, 2, and from line 3 on those of y - 2, y - 1, y:
// the box lags one line behind the pixel it smooths. Kept as is: every
// threshold downstream was tuned on this smoothing. The edge pixels read the
// already smoothed line above and left neighbour. The last line is left alone.
void QuickSauvola::perform_smoothing() {
    const int width = gray->get_width();
    const int height = gray->get_height();
    if (width < 2 || height < 2) return;  // no neighbours to smooth with
    const long long weight = para.smoothing_weight;
    const size_t w = static_cast<size_t>(width);
    const common::ScratchBuffer<int> sums_of_three(3 * w);
    if (sums_of_three.empty()) throw Geometricexception(kLocatingFailed);
    int* const ring = sums_of_three.get();

    const auto load = [&](int slot, const unsigned char* line) {
        int* sums = ring + static_cast<size_t>(slot) * w;
        for (int x = 1; x < width - 1; ++x) sums[x] = line[x - 1] + line[x] + line[x + 1];
    };
    for (int i = 0; i < 3 && i < height; ++i) load(i, gray->get_line_pointer(i));

    // Line 0: its own sums and those of line 1.
    {
        unsigned char* p = gray->get_line_pointer(0);
        const unsigned char* q = gray->get_line_pointer(1);
        const int* s0 = ring;
        const int* s1 = ring + w;
        p[0] = static_cast<unsigned char>((3 * p[0] + p[1] + q[0] + q[1]) / 6);
        for (int x = 1; x < width - 1; ++x) p[x] = static_cast<unsigned char>((s0[x] + s1[x] + 4 * p[x]) / 10);
        const int l = width - 1;
        p[l] = static_cast<unsigned char>((p[l - 1] + 3 * p[l] + q[l - 1] + q[l]) / 6);
    }

    const long long divisor = weight + 9;
    for (int y = 1; y < height - 1; ++y) {
        unsigned char* p = gray->get_line_pointer(y);
        const unsigned char* up = gray->get_line_pointer(y - 1);
        const unsigned char* down = gray->get_line_pointer(y + 1);
        load((y - 1) % 3, p);
        const int* r0 = ring;
        const int* r1 = ring + w;
        const int* r2 = ring + 2 * w;
        p[0] = static_cast<unsigned char>((5 * p[0] + up[0] + down[0] + up[1] + down[1] + p[1]) / 10);
        for (int x = 1; x < width - 1; ++x)
            p[x] = static_cast<unsigned char>((weight * p[x] + r0[x] + r1[x] + r2[x]) / divisor);
        const int l = width - 1;
        p[l] = static_cast<unsigned char>((p[l - 1] + 5 * p[l] + up[l] + down[l] + up[l - 1] + down[l - 1]) / 10);
    }
}

// Sauvola's threshold T = (s * k / 128 + (1 - k)) * mean, cut to an integer;
// p <= T is ink. Integral images of values and squares, 64-bit and inclusive,
// live in a ring: line j at slot j mod divisor, computed M lines ahead of the
// line being decided. The window of each pixel depends on its place:
//   lines y < M or y >= height - M - 1: (x0, x1] by (y0, y1], clipped at
//     x +- h and y +- h, area (x1 - x0) (y1 - y0), tabulated deviation;
//   other lines, x < M: (0, x + h] by (y - h, y + h], area (x + h) W, table;
//   other lines, M <= x < width - M: (x - h, x - h + W] by (y - h, y - h + W],
//     area W W, true square root of the absolute variance;
//   other lines, x >= width - M: (x - 1, width - 1] by (y - h, y + h],
//     area (width - x) W, table.
// The first bound is excluded by the integral's difference, so column 0 and
// line 0 never enter a clipped window. The margins' asymmetry and the areas
// that count W lines where 2h are summed are kept as they are: the gray
// limits and k were tuned with them.
void QuickSauvola::perform_thresholding(int window) {
    const int width = gray->get_width();
    const int height = gray->get_height();
    const int m = std::min(width, height);
    const int W = window;
    const int h = W / 2;
    bool wide = para.use_wide_ring;
    if (wide && static_cast<long long>(W) * 8 > m) {
        if (static_cast<long long>(W) * 2 > m) throw Geometricexception(kWindowTooLarge);
        wide = false;
    }
    // Without the wide ring a window over half the shorter side would reach
    // past the image: refused as with it.
    if (!wide && static_cast<long long>(W) * 2 > m) throw Geometricexception(kWindowTooLarge);
    // The narrow ring looks W - h lines ahead (W / 2 for the even windows of
    // the window rule), so that an odd window's last line is in the ring too.
    const int M = wide ? 2 * W : W - h;
    const int divisor = wide ? 4 * W + 1 : W + 1;

    const size_t w = static_cast<size_t>(width);
    const size_t ring_values = static_cast<size_t>(divisor) * w;
    const common::ScratchBuffer<std::uint64_t> sum_ring(ring_values);
    const common::ScratchBuffer<std::uint64_t> square_ring(ring_values);
    if (sum_ring.empty() || square_ring.empty()) throw Geometricexception(kAllocatingFailed);
    std::uint64_t* const sums = sum_ring.get();
    std::uint64_t* const squares = square_ring.get();

    const auto sum_line = [&](int j) { return sums + static_cast<size_t>(j % divisor) * w; };
    const auto square_line = [&](int j) { return squares + static_cast<size_t>(j % divisor) * w; };
    int computed = -1;
    const auto add_line = [&](int j) {
        const unsigned char* p = gray->get_line_pointer(j);
        std::uint64_t* s = sum_line(j);
        std::uint64_t* q = square_line(j);
        std::uint64_t row_sum = 0;
        std::uint64_t row_square = 0;
        if (j == 0) {
            for (int x = 0; x < width; ++x) {
                row_sum += p[x];
                row_square += static_cast<std::uint64_t>(p[x]) * p[x];
                s[x] = row_sum;
                q[x] = row_square;
            }
        } else {
            const std::uint64_t* s_above = sum_line(j - 1);
            const std::uint64_t* q_above = square_line(j - 1);
            for (int x = 0; x < width; ++x) {
                row_sum += p[x];
                row_square += static_cast<std::uint64_t>(p[x]) * p[x];
                s[x] = s_above[x] + row_sum;
                q[x] = q_above[x] + row_square;
            }
        }
    };

    const int lower = para.lower_gray_limit;
    const int upper = para.upper_gray_limit;
    const float k_over_range = para.k / 128.0f;
    const float one_minus_k = 1.0f - para.k;
    // Ink when p is at most the threshold of the window; a window without
    // pixels (a one-pixel window at the left margin) decides nothing.
    const auto is_ink = [&](int p, std::uint64_t sum, std::uint64_t square, long long area, bool tabulated) {
        if (area <= 0) return false;
        const float a = static_cast<float>(area);
        const float mean = static_cast<float>(sum) / a;
        const float variance = static_cast<float>(square) / a - mean * mean;
        const float s = tabulated ? lookup_deviation(variance) : std::sqrt(std::fabs(variance));
        const float threshold = (s * k_over_range + one_minus_k) * mean;
        return p <= static_cast<int>(threshold);
    };
    const auto box = [](const std::uint64_t* top, const std::uint64_t* bottom, int x0, int x1) {
        return bottom[x1] - top[x1] - bottom[x0] + top[x0];
    };

    for (int y = 0; y < height; ++y) {
        const int needed = std::min(y + M, height - 1);
        while (computed < needed) add_line(++computed);
        const unsigned char* p = gray->get_line_pointer(y);
        unsigned char* out = output->get_line_pointer(y);
        const bool clipped_line = y < M || y >= height - M - 1;
        const int y0 = std::max(y - h, 0);
        const int y1 = clipped_line ? std::min(y + h, height - 1) : y + h;
        const std::uint64_t* s_top = sum_line(y0);
        const std::uint64_t* s_bottom = sum_line(y1);
        const std::uint64_t* q_top = square_line(y0);
        const std::uint64_t* q_bottom = square_line(y1);
        // The central window's lines, (y - h, y - h + W].
        const std::uint64_t* s_central = clipped_line ? s_bottom : sum_line(y - h + W);
        const std::uint64_t* q_central = clipped_line ? q_bottom : square_line(y - h + W);

        for (int x = 0; x < width; ++x) {
            const int value = p[x];
            if (value > upper) continue;
            bool ink;
            if (value < lower) {
                ink = true;
            } else if (clipped_line) {
                const int x0 = std::max(x - h, 0);
                const int x1 = std::min(x + h, width - 1);
                const long long area = static_cast<long long>(x1 - x0) * (y1 - y0);
                ink = is_ink(value, box(s_top, s_bottom, x0, x1), box(q_top, q_bottom, x0, x1), area, true);
            } else if (x < M) {
                const long long area = static_cast<long long>(x + h) * W;
                ink = is_ink(value, box(s_top, s_bottom, 0, x + h), box(q_top, q_bottom, 0, x + h), area, true);
            } else if (x < width - M) {
                const int x0 = x - h;
                const int x1 = x - h + W;
                const long long area = static_cast<long long>(W) * W;
                ink = is_ink(value, box(s_top, s_central, x0, x1), box(q_top, q_central, x0, x1), area, false);
            } else {
                const long long area = static_cast<long long>(width - x) * W;
                ink = is_ink(value, box(s_top, s_bottom, x - 1, width - 1), box(q_top, q_bottom, x - 1, width - 1),
                             area, true);
            }
            if (ink) out[x >> 3] |= bit_masks[x & 7];
        }
    }
}

}  // namespace geometric

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

// R of Sauvola's formula, the dynamic range of the deviation: 8-bit values
// deviate by at most 127.5. The last knot of the third table is cut to it.
constexpr float kDynamicRange = 128.0f;
// The deviation tables: the first has its knots at variances 0 to 100 in
// steps of 0.1, the second at 100 to 1000 in steps of 2, the third from 1000
// on in steps of 10.
constexpr int kTableOneSize = 1001;
constexpr int kTableTwoSize = 451;
constexpr int kTableThreeSize = 1540;
constexpr float kTableTwoStart = 100.0f;
constexpr float kTableThreeStart = 1000.0f;
// The window rule: a window wider than one eleventh of the image's shorter
// side shrinks to that eleventh, but not below kSmallestWindow pixels.
constexpr int kWindowsAcrossShorterSide = 11;
constexpr int kSmallestWindow = 2;
// The shorter side must hold two windows, and eight for the wide ring.
constexpr long long kWindowsAcrossForAnyRing = 2;
constexpr long long kWindowsAcrossForWideRing = 8;

// The square root to three decimals, as the tables keep it.
float rounded_root(double variance) {
    return static_cast<float>(std::floor(std::sqrt(variance) * 1000.0 + 0.5) / 1000.0);
}

// The ring of integral-image lines a window size needs.
struct SauvolaRing {
    int ahead;  // M: how many lines beyond the one decided must be summed
    int size;   // lines kept; line j lives in slot j mod size

    // The wide ring of four windows when asked for and the shorter side
    // holds eight windows, else the narrow one, which looks W - h lines
    // ahead (W / 2 for the even windows of the window rule), so that an odd
    // window's last line is in the ring too. A window over half the shorter
    // side would reach past the image with either ring: refused.
    static SauvolaRing for_window(int window, int shorter_side, bool use_wide_ring) {
        if (static_cast<long long>(window) * kWindowsAcrossForAnyRing > shorter_side)
            throw Geometricexception(kWindowTooLarge);
        if (use_wide_ring && static_cast<long long>(window) * kWindowsAcrossForWideRing <= shorter_side)
            return SauvolaRing{2 * window, 4 * window + 1};
        return SauvolaRing{window - window / 2, window + 1};
    }
};

// Integral images of the values and of their squares, line by line, in a ring.
class IntegralRing {
public:
    IntegralRing(int width, int size)
        : width(width), size(size), sums(ring_values(width, size)), squares(ring_values(width, size)) {
        if (sums.empty() || squares.empty()) throw Geometricexception(kAllocatingFailed);
    }

    const std::uint64_t* sum_line(int j) const { return sums.get() + slot(j); }
    const std::uint64_t* square_line(int j) const { return squares.get() + slot(j); }

    // Line j of both integrals from line j - 1 and the running sums of the
    // image line p.
    void add_line(int j, const unsigned char* p) {
        std::uint64_t* s = sums.get() + slot(j);
        std::uint64_t* q = squares.get() + slot(j);
        std::uint64_t row_sum = 0;
        std::uint64_t row_square = 0;
        if (j == 0) {
            for (int x = 0; x < width; ++x) {
                row_sum += p[x];
                row_square += static_cast<std::uint64_t>(p[x]) * p[x];
                s[x] = row_sum;
                q[x] = row_square;
            }
            return;
        }
        const std::uint64_t* s_above = sum_line(j - 1);
        const std::uint64_t* q_above = square_line(j - 1);
        for (int x = 0; x < width; ++x) {
            row_sum += p[x];
            row_square += static_cast<std::uint64_t>(p[x]) * p[x];
            s[x] = s_above[x] + row_sum;
            q[x] = q_above[x] + row_square;
        }
    }

private:
    static size_t ring_values(int width, int size) { return static_cast<size_t>(size) * static_cast<size_t>(width); }
    size_t slot(int j) const { return static_cast<size_t>(j % size) * static_cast<size_t>(width); }

    int width;
    int size;
    common::ScratchBuffer<std::uint64_t> sums;
    common::ScratchBuffer<std::uint64_t> squares;
};

// The sum of a box of an integral image: (x0, x1] by the lines between top and bottom.
inline std::uint64_t box(const std::uint64_t* top, const std::uint64_t* bottom, int x0, int x1) {
    return bottom[x1] - top[x1] - bottom[x0] + top[x0];
}

// The decision of one pixel from its window.
struct SauvolaRule {
    const QuickSauvola& tables;
    int lower;  // below: ink without a window
    int upper;  // above: paper without a window
    float k_over_range;
    float one_minus_k;

    // Ink when p is at most the threshold of the window; a window without
    // pixels (a one-pixel window at the left margin) decides nothing.
    bool is_ink(int p, std::uint64_t sum, std::uint64_t square, long long area, bool tabulated) const {
        if (area <= 0) return false;
        const float a = static_cast<float>(area);
        const float mean = static_cast<float>(sum) / a;
        const float variance = static_cast<float>(square) / a - mean * mean;
        const float s = tabulated ? tables.lookup_deviation(variance) : std::sqrt(std::fabs(variance));
        const float threshold = (s * k_over_range + one_minus_k) * mean;
        return p <= static_cast<int>(threshold);
    }
};

// One line's pixels, each against the window its place gives it.
struct LineThresholder {
    const IntegralRing& integrals;
    const SauvolaRule& rule;
    const unsigned char* bit_masks;
    int W;  // the window
    int M;  // the margin: lines and columns this near the edges have clipped or widened windows
    int width;
    int height;

    void decide_line(int y, const unsigned char* p, unsigned char* out) const {
        const int h = W / 2;
        const bool clipped_line = y < M || y >= height - M - 1;
        const int y0 = std::max(y - h, 0);
        const int y1 = clipped_line ? std::min(y + h, height - 1) : y + h;
        const std::uint64_t* s_top = integrals.sum_line(y0);
        const std::uint64_t* s_bottom = integrals.sum_line(y1);
        const std::uint64_t* q_top = integrals.square_line(y0);
        const std::uint64_t* q_bottom = integrals.square_line(y1);
        // The central window's lines, (y - h, y - h + W].
        const std::uint64_t* s_central = clipped_line ? s_bottom : integrals.sum_line(y - h + W);
        const std::uint64_t* q_central = clipped_line ? q_bottom : integrals.square_line(y - h + W);

        for (int x = 0; x < width; ++x) {
            const int value = p[x];
            if (value > rule.upper) continue;
            bool ink;
            if (value < rule.lower) {
                ink = true;
            } else if (clipped_line) {
                const int x0 = std::max(x - h, 0);
                const int x1 = std::min(x + h, width - 1);
                const long long area = static_cast<long long>(x1 - x0) * (y1 - y0);
                ink = rule.is_ink(value, box(s_top, s_bottom, x0, x1), box(q_top, q_bottom, x0, x1), area, true);
            } else if (x < M) {
                const long long area = static_cast<long long>(x + h) * W;
                ink = rule.is_ink(value, box(s_top, s_bottom, 0, x + h), box(q_top, q_bottom, 0, x + h), area, true);
            } else if (x < width - M) {
                const int x0 = x - h;
                const int x1 = x - h + W;
                const long long area = static_cast<long long>(W) * W;
                ink = rule.is_ink(value, box(s_top, s_central, x0, x1), box(q_top, q_central, x0, x1), area, false);
            } else {
                const long long area = static_cast<long long>(width - x) * W;
                ink = rule.is_ink(value, box(s_top, s_bottom, x - 1, width - 1),
                                  box(q_top, q_bottom, x - 1, width - 1), area, true);
            }
            if (ink) out[x >> 3] |= bit_masks[x & 7];
        }
    }
};

}  // namespace

const unsigned char QuickSauvola::bit_masks[8] = {128, 64, 32, 16, 8, 4, 2, 1};

QuickSauvola::QuickSauvola(common::BasicImage* gray, common::BasicImage* output)
    : gray(gray),
      output(output),
      deviation_table_one(kTableOneSize),
      deviation_table_two(kTableTwoSize),
      deviation_table_three(kTableThreeSize) {
    for (int i = 0; i < kTableOneSize; ++i) deviation_table_one[i] = rounded_root(i / 10.0);
    for (int i = 0; i < kTableTwoSize; ++i) deviation_table_two[i] = rounded_root(kTableTwoStart + 2.0 * i);
    for (int i = 0; i < kTableThreeSize; ++i) deviation_table_three[i] = rounded_root(kTableThreeStart + 10.0 * i);
    deviation_table_three[kTableThreeSize - 1] = kDynamicRange;
}

QuickSauvola& QuickSauvola::operator=(const SauvolaPara& value) {
    para = value;
    return *this;
}

int QuickSauvola::obtain_window_size(int window_size, int width, int height) {
    const int m = std::min(width, height);
    if (static_cast<long long>(window_size) * kWindowsAcrossShorterSide > m)
        return std::max(m / kWindowsAcrossShorterSide, kSmallestWindow);
    return window_size;
}

float QuickSauvola::lookup_deviation(float variance) const {
    int index;
    const std::vector<float>* table;
    if (variance <= kTableTwoStart) {
        index = static_cast<int>(variance * 10.0f);
        table = &deviation_table_one;
    } else if (variance <= kTableThreeStart) {
        index = static_cast<int>((variance - kTableTwoStart) * 0.5f);
        table = &deviation_table_two;
    } else {
        index = static_cast<int>((variance - kTableThreeStart) / 10.0f + 0.5f);
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

// Sauvola's threshold T = (s * k / R + (1 - k)) * mean, R = 128, cut to an
// integer; p <= T is ink. Integral images of values and squares, 64-bit and
// inclusive, live in a ring: line j at slot j mod the ring's size, computed
// M lines ahead of the line being decided. The window of each pixel depends
// on its place:
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
    const SauvolaRing ring = SauvolaRing::for_window(window, std::min(width, height), para.use_wide_ring);
    IntegralRing integrals(width, ring.size);
    const SauvolaRule rule{*this, para.lower_gray_limit, para.upper_gray_limit, para.k / kDynamicRange,
                           1.0f - para.k};
    const LineThresholder thresholder{integrals, rule, bit_masks, window, ring.ahead, width, height};
    int computed = -1;
    for (int y = 0; y < height; ++y) {
        const int needed = std::min(y + ring.ahead, height - 1);
        while (computed < needed) {
            ++computed;
            integrals.add_line(computed, gray->get_line_pointer(computed));
        }
        thresholder.decide_line(y, gray->get_line_pointer(y), output->get_line_pointer(y));
    }
}

}  // namespace geometric

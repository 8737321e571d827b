// Edge detection: scaled Sobel gradients with repeated borders, magnitudes
// from a square-root table, non-maximum suppression in 16.16 fixed point and
// a hysteresis follow on an explicit stack bounded at kFollowDepth.
#include "pixel/canny_edge_detector.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "common/scratch_buffer.h"

namespace geometric {

namespace {

const char* const kNotGray = "edge detection is defined for GRAY images only";

const unsigned char kCandidate = 128;
const unsigned char kEdge = 255;

// Scaled gradients lie in [-128, 127], so dx^2 + dy^2 <= 2 * 128^2.
const int kLargestSquare = 2 * 128 * 128;

// round(sqrt(i)) for every i up to kLargestSquare: k for k^2 - k + 1 <= i <= k^2 + k
// (the halfway squares (k + 1/2)^2 are never integers). The largest is 181.
struct SquareRootTable {
    unsigned char root[kLargestSquare + 1];
    SquareRootTable() {
        int k = 0;
        for (int i = 0; i <= kLargestSquare; ++i) {
            while (i > k * k + k) ++k;
            root[i] = static_cast<unsigned char>(k);
        }
    }
};

const SquareRootTable& square_roots() {
    static const SquareRootTable table;
    return table;
}

// (smaller << 16) / larger for every pair of gradient components, indexed
// [smaller][larger]: the interpolation ratio of the non-maximum suppression
// without a division.
struct RatioTable {
    typedef int32_t Row[129];
    Row ratio[129];
    RatioTable() {
        for (int smaller = 0; smaller <= 128; ++smaller)
            for (int larger = 0; larger <= 128; ++larger)
                ratio[smaller][larger] = larger >= smaller && larger > 0 ? (smaller << 16) / larger : 0;
    }
};

const RatioTable& ratios() {
    static const RatioTable table;
    return table;
}

// The gradients of one line: scaled Sobel sums, the missing line or column
// outside the image repeating the nearest one. The vertical parts,
// column_sum (1, 2, 1 down the column) and column_difference (below -
// above), are kept with the end columns repeated, so that the horizontal
// parts need no test at the ends. Sums stay within 16 bits (|sum| <= 1020).
void gradient_line(const unsigned char* above, const unsigned char* centre, const unsigned char* below, int width,
                   int16_t* column_sum, int16_t* column_difference, signed char* gx, signed char* gy) {
    int16_t* sum = column_sum + 1;
    int16_t* difference = column_difference + 1;
    int x = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    for (; x + 16 <= width; x += 16) {
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(above + x));
        const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(centre + x));
        const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(below + x));
        const __m128i a0 = _mm_unpacklo_epi8(a, zero), a1 = _mm_unpackhi_epi8(a, zero);
        const __m128i c0 = _mm_unpacklo_epi8(c, zero), c1 = _mm_unpackhi_epi8(c, zero);
        const __m128i b0 = _mm_unpacklo_epi8(b, zero), b1 = _mm_unpackhi_epi8(b, zero);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(sum + x), _mm_add_epi16(_mm_add_epi16(a0, b0), _mm_add_epi16(c0, c0)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(sum + x + 8), _mm_add_epi16(_mm_add_epi16(a1, b1), _mm_add_epi16(c1, c1)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(difference + x), _mm_sub_epi16(b0, a0));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(difference + x + 8), _mm_sub_epi16(b1, a1));
    }
#endif
    for (; x < width; ++x) {
        sum[x] = static_cast<int16_t>(above[x] + 2 * centre[x] + below[x]);
        difference[x] = static_cast<int16_t>(below[x] - above[x]);
    }
    sum[-1] = sum[0];
    sum[width] = sum[width - 1];
    difference[-1] = difference[0];
    difference[width] = difference[width - 1];

    x = 0;
#if defined(__SSE2__)
    const __m128i three = _mm_set1_epi16(3);
    // Division by 4 toward zero: add 3 to negative sums before the shift.
    // Saturating packs then give exactly the clamps at -128 and 127.
    auto quarter = [&](__m128i v) {
        return _mm_srai_epi16(_mm_add_epi16(v, _mm_and_si128(_mm_srai_epi16(v, 15), three)), 2);
    };
    for (; x + 16 <= width; x += 16) {
        __m128i h[2], v[2];
        for (int k = 0; k < 2; ++k) {
            const int i = x + 8 * k;
            const __m128i left = _mm_loadu_si128(reinterpret_cast<const __m128i*>(column_sum + i));
            const __m128i right = _mm_loadu_si128(reinterpret_cast<const __m128i*>(column_sum + i + 2));
            const __m128i d0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(column_difference + i));
            const __m128i d1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(column_difference + i + 1));
            const __m128i d2 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(column_difference + i + 2));
            h[k] = quarter(_mm_sub_epi16(right, left));
            v[k] = quarter(_mm_add_epi16(_mm_add_epi16(d0, d2), _mm_add_epi16(d1, d1)));
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(gx + x), _mm_packs_epi16(h[0], h[1]));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(gy + x), _mm_packs_epi16(v[0], v[1]));
    }
#endif
    for (; x < width; ++x) {
        gx[x] = static_cast<signed char>(CannyEdgeDetector::scale_sobel_sum(sum[x + 1] - sum[x - 1]));
        gy[x] = static_cast<signed char>(
            CannyEdgeDetector::scale_sobel_sum(difference[x - 1] + 2 * difference[x] + difference[x + 1]));
    }
}

// The gradients and their magnitudes, line by line.
void compute_gradients(const common::Image& gray, int width, int height, int16_t* line_buffer, signed char* dx,
                       signed char* dy, unsigned char* magnitude) {
    const unsigned char* root = square_roots().root;
    int16_t* column_sum = line_buffer;
    int16_t* column_difference = line_buffer + width + 2;
    for (int y = 0; y < height; ++y) {
        const ptrdiff_t offset = static_cast<ptrdiff_t>(y) * width;
        signed char* gx = dx + offset;
        signed char* gy = dy + offset;
        gradient_line(gray.get_line_pointer(y > 0 ? y - 1 : 0), gray.get_line_pointer(y),
                      gray.get_line_pointer(y + 1 < height ? y + 1 : height - 1), width, column_sum,
                      column_difference, gx, gy);
        unsigned char* m = magnitude + offset;
        int x = 0;
#if defined(__SSE2__)
        // The squares sixteen at a time in 16-bit lanes (2 * 128^2 = 32768
        // still fits them unsigned), then the table one by one.
        alignas(16) uint16_t squares[16];
        for (; x + 16 <= width; x += 16) {
            const __m128i h = _mm_loadu_si128(reinterpret_cast<const __m128i*>(gx + x));
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(gy + x));
            const auto square_sum = [](__m128i a, __m128i b) {
                const __m128i a16 = _mm_srai_epi16(a, 8), b16 = _mm_srai_epi16(b, 8);
                return _mm_add_epi16(_mm_mullo_epi16(a16, a16), _mm_mullo_epi16(b16, b16));
            };
            // Each byte moved to the high half of its lane, then shifted down with its sign.
            _mm_store_si128(reinterpret_cast<__m128i*>(squares),
                            square_sum(_mm_unpacklo_epi8(h, h), _mm_unpacklo_epi8(v, v)));
            _mm_store_si128(reinterpret_cast<__m128i*>(squares + 8),
                            square_sum(_mm_unpackhi_epi8(h, h), _mm_unpackhi_epi8(v, v)));
            for (int k = 0; k < 16; ++k) m[x + k] = root[squares[k]];
        }
#endif
        for (; x < width; ++x) m[x] = root[gx[x] * gx[x] + gy[x] * gy[x]];
    }
}

// Non-maximum suppression. A candidate (magnitude >= low) off the frame is
// marked 128 when its magnitude, in 16.16 fixed point, is above the
// magnitude interpolated one step ahead along its gradient and not below the
// one a step behind. The axis neighbour and the diagonal neighbour on the
// gradient's side are mixed by the ratio r = (smaller component << 16) /
// larger component, truncated. The strict test ahead and the lax one behind
// keep one pixel of a step edge, the one on the side the gradient points to.
// A pixel without gradient is no maximum.
// Is pixel i, a candidate off the frame, a maximum across its edge?
inline bool is_maximum(const signed char* dx, const signed char* dy, const unsigned char* magnitude,
                       const RatioTable::Row* ratio, ptrdiff_t i, int width) {
    const int gx = dx[i];
    const int gy = dy[i];
    if (gx == 0 && gy == 0) return false;
    const int ax = gx < 0 ? -gx : gx;
    const int ay = gy < 0 ? -gy : gy;
    ptrdiff_t axis, diagonal;
    int32_t r;
    if (ax >= ay) {
        axis = gx > 0 ? 1 : -1;
        diagonal = axis + (gy >= 0 ? width : -width);
        r = ratio[ay][ax];
    } else {
        axis = gy > 0 ? width : -width;
        diagonal = axis + (gx >= 0 ? 1 : -1);
        r = ratio[ax][ay];
    }
    const int32_t ahead = magnitude[i + axis] * (65536 - r) + magnitude[i + diagonal] * r;
    const int32_t behind = magnitude[i - axis] * (65536 - r) + magnitude[i - diagonal] * r;
    const int32_t centre = magnitude[i] << 16;
    return centre > ahead && centre >= behind;
}

void suppress_non_maxima(const signed char* dx, const signed char* dy, const unsigned char* magnitude,
                         unsigned char* marks, int width, int height, int low) {
    if (low > 255) return;
    const RatioTable::Row* ratio = ratios().ratio;
    for (int y = 1; y + 1 < height; ++y) {
        const ptrdiff_t line = static_cast<ptrdiff_t>(y) * width;
        int x = 1;
#if defined(__SSE2__)
        // Sixteen magnitudes at a time; most of a page is below low.
        const __m128i floor = _mm_set1_epi8(static_cast<char>(low < 0 ? 0 : low));
        for (; x + 16 < width; x += 16) {
            const __m128i m = _mm_loadu_si128(reinterpret_cast<const __m128i*>(magnitude + line + x));
            unsigned candidates = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_max_epu8(m, floor), m)));
            while (candidates != 0) {
                const ptrdiff_t i = line + x + __builtin_ctz(candidates);
                candidates &= candidates - 1;
                if (is_maximum(dx, dy, magnitude, ratio, i, width)) marks[i] = kCandidate;
            }
        }
#endif
        for (; x + 1 < width; ++x) {
            const ptrdiff_t i = line + x;
            if (magnitude[i] >= low && is_maximum(dx, dy, magnitude, ratio, i, width)) marks[i] = kCandidate;
        }
    }
}

// Neighbours of pixel p, as bits in the order of `neighbour`, that a follow
// may continue into now: 128 with magnitude > low.
inline unsigned followable_neighbours(const unsigned char* marks, const unsigned char* magnitude, ptrdiff_t p,
                                      const ptrdiff_t* neighbour, int low) {
    unsigned bits = 0;
    for (int k = 0; k < 8; ++k) {
        const ptrdiff_t q = p + neighbour[k];
        bits |= static_cast<unsigned>((marks[q] == kCandidate) & (magnitude[q] > low)) << k;
    }
    return bits;
}

// The hysteresis follow from its seeds on: marks hold only 0 and 128, the frame is 0.
// The follow is a depth-first walk: each frame holds a pixel and the
// neighbours still to look at, in order, exactly as nested calls would. A
// follow only ever turns 128 into 255, so a neighbour that cannot be
// continued into when its frame is pushed never can be later; those that
// can are kept as bits and checked again when their turn comes.
void follow_from_seeds(unsigned char* marks, const unsigned char* magnitude, int width, int height, int low,
                       int high) {
    const ptrdiff_t w = width;
    const ptrdiff_t neighbour[8] = {-w - 1, -w, -w + 1, -1, 1, w - 1, w, w + 1};
    struct Frame {
        ptrdiff_t pixel;
        unsigned pending;
    };
    Frame stack[CannyEdgeDetector::kFollowDepth];
    const ptrdiff_t end = static_cast<ptrdiff_t>(height - 1) * w;
    for (ptrdiff_t seed = w + 1; seed < end; ++seed) {
        // Eight bytes at a time over stretches without a 128; a 255 is skipped by the test below.
        while (seed + 8 <= end) {
            uint64_t word;
            std::memcpy(&word, marks + seed, 8);
            if ((word & 0x8080808080808080ull) != 0) break;
            seed += 8;
        }
        if (marks[seed] != kCandidate || magnitude[seed] < high) continue;
        marks[seed] = kEdge;
        int depth = 0;  // of the frame on top; the seed is at depth 0
        stack[0] = Frame{seed, followable_neighbours(marks, magnitude, seed, neighbour, low)};
        while (depth >= 0) {
            Frame& frame = stack[depth];
            if (frame.pending == 0) {
                --depth;
                continue;
            }
            const ptrdiff_t q = frame.pixel + neighbour[__builtin_ctz(frame.pending)];
            frame.pending &= frame.pending - 1;
            if (marks[q] != kCandidate) continue;
            marks[q] = kEdge;
            // A pixel at depth kFollowDepth is kept and not continued from.
            if (depth + 1 < CannyEdgeDetector::kFollowDepth)
                stack[++depth] = Frame{q, followable_neighbours(marks, magnitude, q, neighbour, low)};
        }
    }
}

// After the follow, every 128 left becomes 0.
void clear_candidates(unsigned char* marks, size_t count) {
    size_t i = 0;
#if defined(__SSE2__)
    const __m128i candidate = _mm_set1_epi8(static_cast<char>(kCandidate));
    for (; i + 16 <= count; i += 16) {
        __m128i* block = reinterpret_cast<__m128i*>(marks + i);
        const __m128i v = _mm_loadu_si128(block);
        _mm_storeu_si128(block, _mm_andnot_si128(_mm_cmpeq_epi8(v, candidate), v));
    }
#endif
    for (; i < count; ++i)
        if (marks[i] == kCandidate) marks[i] = 0;
}

// The output of a run without memory: no buffer.
void leave_empty(common::BasicImage& output) {
    common::BasicImage empty;
    output.swap(empty);
}

}  // namespace

int CannyEdgeDetector::scale_sobel_sum(int sum) {
    if (sum < -511) return -128;
    if (sum >= 512) return 127;
    return sum / 4;
}

unsigned char CannyEdgeDetector::magnitude_of(int dx, int dy) { return square_roots().root[dx * dx + dy * dy]; }

void CannyEdgeDetector::follow_edges(unsigned char* marks, const unsigned char* magnitude, int width, int height,
                                     int low, int high) {
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    for (size_t i = 0; i < count; ++i)
        if (marks[i] != kCandidate) marks[i] = 0;
    if (width < 3 || height < 3) {
        std::memset(marks, 0, count);
        return;
    }
    std::memset(marks, 0, static_cast<size_t>(width));
    std::memset(marks + static_cast<ptrdiff_t>(height - 1) * width, 0, static_cast<size_t>(width));
    for (int y = 1; y + 1 < height; ++y) {
        marks[static_cast<ptrdiff_t>(y) * width] = 0;
        marks[static_cast<ptrdiff_t>(y) * width + width - 1] = 0;
    }
    follow_from_seeds(marks, magnitude, width, height, low, high);
    clear_candidates(marks, count);
}

void CannyEdgeDetector::perform_edge_detect(int low, int high, const common::Image& gray,
                                            common::BasicImage& output) {
    if (gray.get_image_type() != common::GRAY) throw kNotGray;
    const int width = gray.get_width();
    const int height = gray.get_height();
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    // Without memory for the marks or the work the output is left empty.
    common::BasicImage result;
    try {
        common::BasicImage fresh(height, width, common::GRAY);
        result.swap(fresh);
    } catch (const std::string&) {
        return leave_empty(output);
    }
    if (count == 0) return output.swap(result);
    // Two lines of 16-bit column sums first, where they are aligned, then dx, dy and magnitudes.
    const size_t line_bytes = 4 * (static_cast<size_t>(width) + 2);
    const common::ScratchBuffer<unsigned char> work(line_bytes + 3 * count);
    if (work.empty()) return leave_empty(output);
    int16_t* line_buffer = reinterpret_cast<int16_t*>(work.get());
    signed char* dx = reinterpret_cast<signed char*>(work.get() + line_bytes);
    signed char* dy = dx + count;
    unsigned char* magnitude = reinterpret_cast<unsigned char*>(dy + count);
    // The marks start at 0, as the fresh image is, rather than 255: the
    // hysteresis turns every mark but 128 into 0 in the end, so the bytes are
    // the same, and the frame, never marked, is already 0.
    unsigned char* marks = result.get_data();
    compute_gradients(gray, width, height, line_buffer, dx, dy, magnitude);
    suppress_non_maxima(dx, dy, magnitude, marks, width, height, low);
    follow_from_seeds(marks, magnitude, width, height, low, high);
    clear_candidates(marks, count);
    output.swap(result);
}

}  // namespace geometric

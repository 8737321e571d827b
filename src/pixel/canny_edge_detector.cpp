// Edge detection: scaled Sobel gradients with repeated borders, rounded
// magnitudes, non-maximum suppression in 16.16 fixed point and a hysteresis
// follow on an explicit stack bounded at kFollowDepth. Gradients and
// magnitudes live in a ring of three lines; the marks, in the output buffer,
// carry what the hysteresis needs to know of each magnitude.
#include "pixel/canny_edge_detector.h"

#include <cmath>
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

// The marks between the suppression and the end of the hysteresis. A
// maximum is followable when its magnitude is above low and a seed when it
// reaches high; a maximum that is neither can never become an edge and is
// not marked. An edge loses both bits, so that nothing follows into it or
// starts from it again. The seed bit is the top bit, for the sign masks.
const unsigned char kFollowable = 0x01;
const unsigned char kSeed = 0x80;
const unsigned char kEdge = 0x40;
static_assert(kFollowable == 1, "followable_neighbours reads the followable bit as bit 0 of each byte");

// round(sqrt(squares)) for squares up to 2 * 128^2: no root of such an
// integer lies within 1/1500 of a half (the nearest, sqrt(k^2 + k), is about
// 1/(8k) below k + 1/2), far more than the rounding of the single-precision
// root and sum (under 2^-16 there), so adding 1/2 and truncating rounds
// exactly.
inline int rounded_root(int squares) {
    return static_cast<int>(std::sqrt(static_cast<float>(squares)) + 0.5f);
}

// (smaller << 16) / larger, truncated, for 0 <= smaller <= larger <= 128:
// smaller * 65536 and larger are exact in single precision and the quotient,
// correctly rounded, is within 2^-9 of the true one, which is an integer or at
// least 1/128 from one, so truncation gives the integer quotient.
inline int ratio_of(int smaller, int larger) {
    return static_cast<int>(static_cast<float>(smaller) * 65536.0f / static_cast<float>(larger));
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

// The magnitudes of one line of gradients.
void magnitude_line(const signed char* gx, const signed char* gy, int width, unsigned char* m) {
    int x = 0;
#if defined(__SSE2__)
    // Sixteen at a time: the squares in 16-bit lanes (2 * 128^2 = 32768 still
    // fits them unsigned), the root in single precision as rounded_root does.
    const __m128i zero = _mm_setzero_si128();
    const __m128 half = _mm_set1_ps(0.5f);
    const auto square_sum = [](__m128i a, __m128i b) {
        // Each byte moved to the high half of its lane, then shifted down with its sign.
        const __m128i a16 = _mm_srai_epi16(a, 8), b16 = _mm_srai_epi16(b, 8);
        return _mm_add_epi16(_mm_mullo_epi16(a16, a16), _mm_mullo_epi16(b16, b16));
    };
    const auto root = [&](__m128i squares32) {
        return _mm_cvttps_epi32(_mm_add_ps(_mm_sqrt_ps(_mm_cvtepi32_ps(squares32)), half));
    };
    for (; x + 16 <= width; x += 16) {
        const __m128i h = _mm_loadu_si128(reinterpret_cast<const __m128i*>(gx + x));
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(gy + x));
        const __m128i low = square_sum(_mm_unpacklo_epi8(h, h), _mm_unpacklo_epi8(v, v));
        const __m128i high = square_sum(_mm_unpackhi_epi8(h, h), _mm_unpackhi_epi8(v, v));
        const __m128i roots_low = _mm_packs_epi32(root(_mm_unpacklo_epi16(low, zero)), root(_mm_unpackhi_epi16(low, zero)));
        const __m128i roots_high = _mm_packs_epi32(root(_mm_unpacklo_epi16(high, zero)), root(_mm_unpackhi_epi16(high, zero)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(m + x), _mm_packus_epi16(roots_low, roots_high));
    }
#endif
    for (; x < width; ++x) m[x] = static_cast<unsigned char>(rounded_root(gx[x] * gx[x] + gy[x] * gy[x]));
}

// Non-maximum suppression. A candidate (magnitude >= low) off the frame is a
// maximum when its magnitude, in 16.16 fixed point, is above the magnitude
// interpolated one step ahead along its gradient and not below the one a
// step behind. The axis neighbour and the diagonal neighbour on the
// gradient's side are mixed by the ratio r = (smaller component << 16) /
// larger component, truncated. The strict test ahead and the lax one behind
// keep one pixel of a step edge, the one on the side the gradient points to.
// A pixel without gradient is no maximum. With sx and sy the signs of the
// components (a zero counting as positive), the diagonal ahead is always
// (sx, sy), and the axis ahead (sx, 0) when |gx| >= |gy|, else (0, sy).
struct Limits {
    int low;
    int high;
};

// What the hysteresis needs to know of a maximum's magnitude m.
inline unsigned char hysteresis_code(int m, const Limits& limits) {
    return static_cast<unsigned char>((m > limits.low ? kFollowable : 0) | (m >= limits.high ? kSeed : 0));
}

// The mark of pixel x of a line, from its gradient and the magnitudes of its
// line and the lines above and below.
inline unsigned char mark_of(int gx, int gy, const unsigned char* up, const unsigned char* centre,
                             const unsigned char* down, int x, const Limits& limits) {
    const int m = centre[x];
    if (m < limits.low || (gx == 0 && gy == 0)) return 0;
    const int ax = gx < 0 ? -gx : gx;
    const int ay = gy < 0 ? -gy : gy;
    const int sx = gx >= 0 ? 1 : -1;
    const unsigned char* line_ahead = gy >= 0 ? down : up;
    const unsigned char* line_behind = gy >= 0 ? up : down;
    int axis_ahead, axis_behind, r;
    if (ax >= ay) {
        axis_ahead = centre[x + sx];
        axis_behind = centre[x - sx];
        r = ratio_of(ay, ax);
    } else {
        axis_ahead = line_ahead[x];
        axis_behind = line_behind[x];
        r = ratio_of(ax, ay);
    }
    const int32_t ahead = axis_ahead * (65536 - r) + line_ahead[x + sx] * r;
    const int32_t behind = axis_behind * (65536 - r) + line_behind[x - sx] * r;
    const int32_t scaled = m << 16;
    if (!(scaled > ahead && scaled >= behind)) return 0;
    return hysteresis_code(m, limits);
}

#if defined(__SSE2__)
// Sixteen pixels of mark_of at once. Every product and sum of the test is an
// integer below 2^24, exact in single precision, so the comparisons are
// those of the 32-bit integers.
class SuppressionBlock {
public:
    explicit SuppressionBlock(const Limits& limits)
        : zero(_mm_setzero_si128()),
          all(_mm_set1_epi8(-1)),
          // Unsigned m >= k as max(m, k) == m; k clamped into 0..255, with
          // "never" for k above 255.
          candidate_floor(byte_limit(limits.low)),
          followable_floor(byte_limit(limits.low + 1)),
          seed_floor(byte_limit(limits.high)),
          any_followable(limits.low + 1 <= 255),
          any_seed(limits.high <= 255) {}

    // The candidates among sixteen magnitudes.
    __m128i candidates(__m128i m) const { return at_least(m, candidate_floor); }

    __m128i marks(const signed char* gx, const signed char* gy, const unsigned char* up, const unsigned char* centre,
                  const unsigned char* down, int x, __m128i candidate) const {
        const __m128i h = load(gx + x), v = load(gy + x);
        const __m128i sx = _mm_cmpgt_epi8(h, all), sy = _mm_cmpgt_epi8(v, all);  // component >= 0
        const __m128i ax = absolute(h), ay = absolute(v);
        const __m128i larger = _mm_max_epu8(ax, ay), smaller = _mm_min_epu8(ax, ay);
        const __m128i horizontal = _mm_cmpeq_epi8(larger, ax);
        const __m128i moving = _mm_andnot_si128(_mm_cmpeq_epi8(_mm_or_si128(h, v), zero), candidate);

        const __m128i m = load(centre + x), left = load(centre + x - 1), right = load(centre + x + 1);
        const __m128i above = load(up + x), above_left = load(up + x - 1), above_right = load(up + x + 1);
        const __m128i below = load(down + x), below_left = load(down + x - 1), below_right = load(down + x + 1);
        const __m128i axis_ahead =
            select(horizontal, select(sx, right, left), select(sy, below, above));
        const __m128i axis_behind =
            select(horizontal, select(sx, left, right), select(sy, above, below));
        const __m128i diagonal_ahead =
            select(sy, select(sx, below_right, below_left), select(sx, above_right, above_left));
        const __m128i diagonal_behind =
            select(sy, select(sx, above_left, above_right), select(sx, below_left, below_right));

        __m128 centres[4], axes_ahead[4], diagonals_ahead[4], axes_behind[4], diagonals_behind[4], smallers[4],
            largers[4];
        to_floats(m, centres);
        to_floats(axis_ahead, axes_ahead);
        to_floats(diagonal_ahead, diagonals_ahead);
        to_floats(axis_behind, axes_behind);
        to_floats(diagonal_behind, diagonals_behind);
        to_floats(smaller, smallers);
        to_floats(_mm_max_epu8(larger, _mm_set1_epi8(1)), largers);  // no gradient: r is 0, the pixel is dropped
        const __m128 unit = _mm_set1_ps(65536.0f);
        __m128i maxima[4];
        for (int k = 0; k < 4; ++k) {
            const __m128 r = _mm_cvtepi32_ps(_mm_cvttps_epi32(_mm_div_ps(_mm_mul_ps(smallers[k], unit), largers[k])));
            const __m128 rest = _mm_sub_ps(unit, r);
            const __m128 ahead = _mm_add_ps(_mm_mul_ps(axes_ahead[k], rest), _mm_mul_ps(diagonals_ahead[k], r));
            const __m128 behind = _mm_add_ps(_mm_mul_ps(axes_behind[k], rest), _mm_mul_ps(diagonals_behind[k], r));
            const __m128 scaled = _mm_mul_ps(centres[k], unit);
            maxima[k] = _mm_castps_si128(_mm_and_ps(_mm_cmpgt_ps(scaled, ahead), _mm_cmpge_ps(scaled, behind)));
        }
        const __m128i maximum = _mm_and_si128(
            moving, _mm_packs_epi16(_mm_packs_epi32(maxima[0], maxima[1]), _mm_packs_epi32(maxima[2], maxima[3])));
        __m128i code = zero;
        if (any_followable) code = _mm_and_si128(at_least(m, followable_floor), _mm_set1_epi8(kFollowable));
        if (any_seed) code = _mm_or_si128(code, _mm_and_si128(at_least(m, seed_floor), _mm_set1_epi8(static_cast<char>(kSeed))));
        return _mm_and_si128(maximum, code);
    }

private:
    static __m128i byte_limit(int k) { return _mm_set1_epi8(static_cast<char>(k < 0 ? 0 : k > 255 ? 255 : k)); }
    static __m128i load(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
    static __m128i at_least(__m128i m, __m128i floor) { return _mm_cmpeq_epi8(_mm_max_epu8(m, floor), m); }
    static __m128i select(__m128i mask, __m128i a, __m128i b) {
        return _mm_or_si128(_mm_and_si128(mask, a), _mm_andnot_si128(mask, b));
    }
    // |v| of signed bytes as unsigned bytes: -128 gives 128.
    __m128i absolute(__m128i v) const {
        const __m128i negative = _mm_cmpgt_epi8(zero, v);
        return _mm_sub_epi8(_mm_xor_si128(v, negative), negative);
    }
    void to_floats(__m128i bytes, __m128 out[4]) const {
        const __m128i low = _mm_unpacklo_epi8(bytes, zero), high = _mm_unpackhi_epi8(bytes, zero);
        out[0] = _mm_cvtepi32_ps(_mm_unpacklo_epi16(low, zero));
        out[1] = _mm_cvtepi32_ps(_mm_unpackhi_epi16(low, zero));
        out[2] = _mm_cvtepi32_ps(_mm_unpacklo_epi16(high, zero));
        out[3] = _mm_cvtepi32_ps(_mm_unpackhi_epi16(high, zero));
    }

    const __m128i zero, all, candidate_floor, followable_floor, seed_floor;
    const bool any_followable, any_seed;
};
#endif

// The marks of the inner pixels of one line (1..width-2); the frame columns
// are left as they are.
void suppress_line(const signed char* gx, const signed char* gy, const unsigned char* up,
                   const unsigned char* centre, const unsigned char* down, int width, const Limits& limits,
                   unsigned char* marks) {
    int x = 1;
#if defined(__SSE2__)
    // Most of a page is below low: a block without candidates keeps its zeros.
    const SuppressionBlock block(limits);
    for (; x + 16 < width; x += 16) {
        const __m128i candidate = block.candidates(_mm_loadu_si128(reinterpret_cast<const __m128i*>(centre + x)));
        if (_mm_movemask_epi8(candidate) == 0) continue;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(marks + x), block.marks(gx, gy, up, centre, down, x, candidate));
    }
#endif
    for (; x + 1 < width; ++x) marks[x] = mark_of(gx[x], gy[x], up, centre, down, x, limits);
}

// Bits, in the order of `neighbour`, of the neighbours of p, an inner pixel,
// that a follow may continue into now.
inline unsigned followable_neighbours(const unsigned char* marks, ptrdiff_t p, ptrdiff_t width,
                                      const ptrdiff_t* neighbour) {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    // Three words, each holding the three marks of a line in its low bytes,
    // read so that none reaches outside the image (the line below from one
    // byte further left); the followable bits at 0, 8 and 16 are then
    // brought together.
    const auto word_at = [marks](ptrdiff_t i) {
        uint32_t word;
        std::memcpy(&word, marks + i, 4);
        return word;
    };
    const uint32_t above = word_at(p - width - 1) & 0x010101u;
    const uint32_t beside = word_at(p - 1) & 0x010001u;
    const uint32_t below = (word_at(p + width - 2) >> 8) & 0x010101u;
    (void)neighbour;
    return ((above | above >> 7 | above >> 14) & 7u) | ((beside | beside >> 15) & 3u) << 3 |
           ((below | below >> 7 | below >> 14) & 7u) << 5;
#else
    (void)width;
    unsigned bits = 0;
    for (int k = 0; k < 8; ++k) bits |= static_cast<unsigned>(marks[p + neighbour[k]] & kFollowable) << k;
    return bits;
#endif
}

// The hysteresis follow from every seed in line order; the frame holds no
// marks. The follow is a depth-first walk: each frame holds a pixel and the
// neighbours still to look at, in order, exactly as nested calls would. A
// follow only ever turns marks into edges, so a neighbour that cannot be
// continued into when its frame is pushed never can be later; those that
// can are kept as bits and checked again when their turn comes.
void follow_from_seeds(unsigned char* marks, int width, int height) {
    const ptrdiff_t w = width;
    const ptrdiff_t neighbour[8] = {-w - 1, -w, -w + 1, -1, 1, w - 1, w, w + 1};
    struct Frame {
        ptrdiff_t pixel;
        unsigned pending;
    };
    Frame stack[CannyEdgeDetector::kFollowDepth];
    const auto follow = [&](ptrdiff_t seed) {
        if ((marks[seed] & kSeed) == 0) return;  // reached by an earlier follow
        marks[seed] = kEdge;
        int depth = 0;  // of the frame on top; the seed is at depth 0
        stack[0] = Frame{seed, followable_neighbours(marks, seed, w, neighbour)};
        while (depth >= 0) {
            Frame& frame = stack[depth];
            if (frame.pending == 0) {
                --depth;
                continue;
            }
            const ptrdiff_t q = frame.pixel + neighbour[__builtin_ctz(frame.pending)];
            frame.pending &= frame.pending - 1;
            if ((marks[q] & kFollowable) == 0) continue;
            marks[q] = kEdge;
            // A pixel at depth kFollowDepth is kept and not continued from.
            if (depth + 1 < CannyEdgeDetector::kFollowDepth)
                stack[++depth] = Frame{q, followable_neighbours(marks, q, w, neighbour)};
        }
    };
    ptrdiff_t p = w;
    const ptrdiff_t end = static_cast<ptrdiff_t>(height - 1) * w;
#if defined(__SSE2__)
    // Sixteen marks a step; the seed bit is the sign bit. A follow may turn
    // seeds of the block into edges after its mask was taken: follow checks.
    for (; p + 16 <= end; p += 16) {
        unsigned seeds = static_cast<unsigned>(_mm_movemask_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(marks + p))));
        while (seeds != 0) {
            follow(p + __builtin_ctz(seeds));
            seeds &= seeds - 1;
        }
    }
#endif
    for (; p < end; ++p) follow(p);
}

// After the follow: edges become 255, everything else 0.
void finish_marks(unsigned char* marks, size_t count) {
    size_t i = 0;
#if defined(__SSE2__)
    const __m128i edge = _mm_set1_epi8(static_cast<char>(kEdge));
    for (; i + 16 <= count; i += 16) {
        __m128i* block = reinterpret_cast<__m128i*>(marks + i);
        _mm_storeu_si128(block, _mm_cmpeq_epi8(_mm_and_si128(_mm_loadu_si128(block), edge), edge));
    }
#endif
    for (; i < count; ++i) marks[i] = (marks[i] & kEdge) != 0 ? 255 : 0;
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

unsigned char CannyEdgeDetector::magnitude_of(int dx, int dy) {
    return static_cast<unsigned char>(rounded_root(dx * dx + dy * dy));
}

void CannyEdgeDetector::follow_edges(unsigned char* marks, const unsigned char* magnitude, int width, int height,
                                     int low, int high) {
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    if (width < 3 || height < 3) {
        std::memset(marks, 0, count);
        return;
    }
    // The frame is never marked; inside, a 128 becomes its hysteresis code.
    const Limits limits{low, high};
    for (int y = 0; y < height; ++y) {
        unsigned char* line = marks + static_cast<ptrdiff_t>(y) * width;
        const unsigned char* m = magnitude + static_cast<ptrdiff_t>(y) * width;
        const bool frame_line = y == 0 || y == height - 1;
        for (int x = 0; x < width; ++x) {
            const bool frame = frame_line || x == 0 || x == width - 1;
            line[x] = line[x] == 128 && !frame ? hysteresis_code(m[x], limits) : 0;
        }
    }
    follow_from_seeds(marks, width, height);
    finish_marks(marks, count);
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
    // Only inner pixels can be marked; with no candidate at all the fresh
    // zeros are the answer.
    if (width < 3 || height < 3 || low > 255) return output.swap(result);
    // Two lines of 16-bit column sums first, where they are aligned, then a
    // ring of three lines of dx, dy and magnitudes.
    const size_t line_bytes = 4 * (static_cast<size_t>(width) + 2);
    const size_t ring_line = 3 * static_cast<size_t>(width);
    const common::ScratchBuffer<unsigned char> work(line_bytes + 3 * ring_line);
    if (work.empty()) return leave_empty(output);
    int16_t* column_sum = reinterpret_cast<int16_t*>(work.get());
    int16_t* column_difference = column_sum + width + 2;
    struct GradientLine {
        signed char* gx;
        signed char* gy;
        unsigned char* magnitude;
    };
    GradientLine ring[3];
    for (int k = 0; k < 3; ++k) {
        unsigned char* base = work.get() + line_bytes + k * ring_line;
        ring[k] = GradientLine{reinterpret_cast<signed char*>(base), reinterpret_cast<signed char*>(base + width),
                               base + 2 * width};
    }
    const auto compute = [&](int y) {
        const GradientLine& line = ring[y % 3];
        gradient_line(gray.get_line_pointer(y > 0 ? y - 1 : 0), gray.get_line_pointer(y),
                      gray.get_line_pointer(y + 1 < height ? y + 1 : height - 1), width, column_sum,
                      column_difference, line.gx, line.gy);
        magnitude_line(line.gx, line.gy, width, line.magnitude);
    };
    // The marks start at 0, as the fresh image is, and the frame is never marked.
    unsigned char* marks = result.get_data();
    const Limits limits{low, high};
    compute(0);
    compute(1);
    for (int y = 1; y + 1 < height; ++y) {
        compute(y + 1);
        const GradientLine& line = ring[y % 3];
        suppress_line(line.gx, line.gy, ring[(y - 1) % 3].magnitude, line.magnitude, ring[(y + 1) % 3].magnitude,
                      width, limits, marks + static_cast<ptrdiff_t>(y) * width);
    }
    follow_from_seeds(marks, width, height);
    finish_marks(marks, count);
    output.swap(result);
}

}  // namespace geometric

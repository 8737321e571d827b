// Box means of gray images: mirror padding, the rolling summed-area table,
// the border strips of the native form and the rounding running-column form.
#include "pixel/average_filtering.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
// Where the compiler can build a function for AVX2 the table line is also
// built eight columns a step, and taken when the processor has the unit;
// MORVANE_SSE2_BOX keeps the narrower form, which the tests build too.
#if defined(__SSE2__) && defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__)) && \
    !defined(MORVANE_SSE2_BOX)
#define MORVANE_AVX_BOX 1
#include <immintrin.h>
#endif

#include "common/scratch_buffer.h"

namespace geometric {

namespace {

const char* const kNotGray = "box filtering is defined for GRAY images only";
const char* const kBadWindow = "box filtering needs a window of at least 1 by 1";
const char* const kWindowTooLarge = "box filtering window is too large";

// Windows up to this area keep every sum, rounded ones included, inside 32 bits.
const int64_t kLargestArea = int64_t(1) << 22;

// Index of the pixel that position i of a mirrored line of n pixels reads:
// -1 reads 1 and n reads n - 2; padding wider than the line folds again.
int mirror(int i, int n) {
    if (n == 1) return 0;
    const int period = 2 * (n - 1);
    i %= period;
    if (i < 0) i += period;
    return i < n ? i : period - i;
}

// floor(n / d) for every n up to max_numerator through one multiplication:
// with m = floor(2^shift / d) + 1 the product n * m / 2^shift exceeds n / d by
// n * (m d - 2^shift) / (d 2^shift) <= n d / (d 2^shift), which is below 1 / d,
// the least distance from n / d up to the next integer, once
// max_numerator * d < 2^shift.
class ExactDivisor {
public:
    ExactDivisor(uint32_t d, uint64_t max_numerator) : shift(0) {
        while ((uint64_t(1) << shift) <= max_numerator * d) ++shift;
        multiplier = (uint64_t(1) << shift) / d + 1;
    }
    uint32_t operator()(uint32_t n) const { return static_cast<uint32_t>((n * multiplier) >> shift); }
#if defined(__SSE2__)
    // Four quotients at once. The multiplier stays below 2^32 (about
    // 2 max_numerator / d) and every quotient below 256, so the 64-bit
    // products of the even and odd lanes can be shifted and interleaved.
    __m128i divide4(__m128i n) const {
        const __m128i m = _mm_set1_epi32(static_cast<int>(static_cast<uint32_t>(multiplier)));
        const __m128i count = _mm_cvtsi32_si128(shift);
        const __m128i even = _mm_srl_epi64(_mm_mul_epu32(n, m), count);
        const __m128i odd = _mm_srl_epi64(_mm_mul_epu32(_mm_srli_epi64(n, 32), m), count);
        return _mm_or_si128(even, _mm_slli_epi64(odd, 32));
    }
#endif

    // The multiplier, below 2^32 wherever divide4 serves, and the shift.
    uint32_t low_multiplier() const { return static_cast<uint32_t>(multiplier); }
    int shift_count() const { return shift; }

private:
    int shift;
    uint64_t multiplier;
};

// Bytes of sixteen quotients below 256.
#if defined(__SSE2__)
inline __m128i pack_quotients(__m128i q0, __m128i q1, __m128i q2, __m128i q3) {
    return _mm_packus_epi16(_mm_packs_epi32(q0, q1), _mm_packs_epi32(q2, q3));
}
#endif

// The truncating mean sum / area.
struct TruncatingMean {
    explicit TruncatingMean(uint32_t area) : divide(area, 255u * uint64_t(area)) {}
    unsigned char operator()(uint32_t sum) const { return static_cast<unsigned char>(divide(sum)); }
    ExactDivisor divide;
};

// The mean rounded to nearest, halves up: (area + 2 sum) / (2 area).
struct RoundingMean {
    explicit RoundingMean(uint32_t area_) : area(area_), divide(2 * area_, 511u * uint64_t(area_)) {}
    unsigned char operator()(uint32_t sum) const { return static_cast<unsigned char>(divide(area + 2 * sum)); }
    uint32_t area;
    ExactDivisor divide;
};

// Rows of a gray image: line 0 and the distance between lines.
struct GrayRows {
    const unsigned char* base;
    int row_size;
    const unsigned char* operator()(int y) const { return base + static_cast<ptrdiff_t>(y) * row_size; }
};

GrayRows rows_of(const common::Image& input) {
    return GrayRows{input.get_height() > 0 ? input.get_line_pointer(0) : nullptr, input.get_row_size()};
}

void check_arguments(const common::Image& input, int window_x, int window_y) {
    if (input.get_image_type() != common::GRAY) throw kNotGray;
    if (window_x < 1 || window_y < 1) throw kBadWindow;
    if (static_cast<int64_t>(window_x) * window_y > kLargestArea) throw kWindowTooLarge;
}

// Block of padded lines first_line.. and padded columns first_column.. of
// the mirrored image: padded (column p, line q) is source (p - pad_x, q - pad_y)
// reflected. target holds lines of `columns` bytes.
void mirror_block(const common::Image& input, int pad_x, int pad_y, int first_column, int first_line, int columns,
                  int lines, unsigned char* target) {
    const GrayRows rows = rows_of(input);
    const int width = input.get_width();
    const int height = input.get_height();
    for (int q = 0; q < lines; ++q) {
        const unsigned char* source = rows(mirror(first_line + q - pad_y, height));
        unsigned char* line = target + static_cast<ptrdiff_t>(q) * columns;
        int p = 0;
        // Inner columns are one block copy; only the reflected ends go pixel by pixel.
        const int inner_begin = std::max(0, std::min(columns, pad_x - first_column));
        const int inner_end = std::max(inner_begin, std::min(columns, pad_x + width - first_column));
        for (; p < inner_begin; ++p) line[p] = source[mirror(first_column + p - pad_x, width)];
        if (inner_end > inner_begin)
            std::memcpy(line + inner_begin, source + (first_column + inner_begin - pad_x),
                        static_cast<size_t>(inner_end - inner_begin));
        for (p = inner_end; p < columns; ++p) line[p] = source[mirror(first_column + p - pad_x, width)];
    }
}

// sums[j] += entering[j] - leaving[j] over count columns; leaving may be null.
void slide_column_sums(uint32_t* sums, const unsigned char* entering, const unsigned char* leaving, int count) {
    int j = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    for (; j + 16 <= count; j += 16) {
        const __m128i in = _mm_loadu_si128(reinterpret_cast<const __m128i*>(entering + j));
        const __m128i out = leaving != nullptr ? _mm_loadu_si128(reinterpret_cast<const __m128i*>(leaving + j)) : zero;
        // Differences of bytes fit 16 bits; widen them with their sign.
        const __m128i low = _mm_sub_epi16(_mm_unpacklo_epi8(in, zero), _mm_unpacklo_epi8(out, zero));
        const __m128i high = _mm_sub_epi16(_mm_unpackhi_epi8(in, zero), _mm_unpackhi_epi8(out, zero));
        const __m128i parts[4] = {_mm_srai_epi32(_mm_unpacklo_epi16(low, low), 16),
                                  _mm_srai_epi32(_mm_unpackhi_epi16(low, low), 16),
                                  _mm_srai_epi32(_mm_unpacklo_epi16(high, high), 16),
                                  _mm_srai_epi32(_mm_unpackhi_epi16(high, high), 16)};
        for (int k = 0; k < 4; ++k) {
            __m128i* target = reinterpret_cast<__m128i*>(sums + j + 4 * k);
            _mm_storeu_si128(target, _mm_add_epi32(_mm_loadu_si128(target), parts[k]));
        }
    }
#endif
    for (; j < count; ++j) sums[j] += static_cast<uint32_t>(entering[j]) - (leaving != nullptr ? leaving[j] : 0u);
}

// slide_column_sums, and at once prefix[j + 1] = prefix[0] + sums[0] + ... +
// sums[j] with prefix[0] = 0, while the new sums are still in registers.
void slide_and_prefix(uint32_t* sums, uint32_t* prefix, const unsigned char* entering, const unsigned char* leaving,
                      int count) {
    int j = 0;
    uint32_t total = 0;
    prefix[0] = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    __m128i carry = zero;
    // Four new sums: stored, then their prefix in the lanes (two shifted
    // additions) on top of the total so far.
    const auto four = [&carry, sums, prefix](int at, __m128i in, __m128i out) {
        __m128i* target = reinterpret_cast<__m128i*>(sums + at);
        __m128i x = _mm_add_epi32(_mm_loadu_si128(target), _mm_sub_epi32(in, out));
        _mm_storeu_si128(target, x);
        x = _mm_add_epi32(x, _mm_slli_si128(x, 4));
        x = _mm_add_epi32(x, _mm_slli_si128(x, 8));
        x = _mm_add_epi32(x, carry);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(prefix + at + 1), x);
        carry = _mm_shuffle_epi32(x, _MM_SHUFFLE(3, 3, 3, 3));
    };
    for (; j + 16 <= count; j += 16) {
        const __m128i in = _mm_loadu_si128(reinterpret_cast<const __m128i*>(entering + j));
        const __m128i out = leaving != nullptr ? _mm_loadu_si128(reinterpret_cast<const __m128i*>(leaving + j)) : zero;
        const __m128i in_low = _mm_unpacklo_epi8(in, zero), in_high = _mm_unpackhi_epi8(in, zero);
        const __m128i out_low = _mm_unpacklo_epi8(out, zero), out_high = _mm_unpackhi_epi8(out, zero);
        four(j, _mm_unpacklo_epi16(in_low, zero), _mm_unpacklo_epi16(out_low, zero));
        four(j + 4, _mm_unpackhi_epi16(in_low, zero), _mm_unpackhi_epi16(out_low, zero));
        four(j + 8, _mm_unpacklo_epi16(in_high, zero), _mm_unpacklo_epi16(out_high, zero));
        four(j + 12, _mm_unpackhi_epi16(in_high, zero), _mm_unpackhi_epi16(out_high, zero));
    }
    total = prefix[j];
#endif
    for (; j < count; ++j) {
        sums[j] += static_cast<uint32_t>(entering[j]) - (leaving != nullptr ? leaving[j] : 0u);
        total += sums[j];
        prefix[j + 1] = total;
    }
}

#if defined(MORVANE_AVX_BOX)
// slide_and_prefix eight columns a step. Each step's prefix is formed in
// its lanes first and the total so far added after, so the only chain from
// step to step is one addition.
__attribute__((target("avx2"))) void slide_and_prefix_avx2(uint32_t* sums, uint32_t* prefix,
                                                           const unsigned char* entering,
                                                           const unsigned char* leaving, int count) {
    int j = 0;
    prefix[0] = 0;
    __m256i carry = _mm256_setzero_si256();
    const __m256i last = _mm256_set1_epi32(7);
    for (; j + 8 <= count; j += 8) {
        const __m256i in = _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(entering + j)));
        const __m256i out = leaving != nullptr
                                ? _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(leaving + j)))
                                : _mm256_setzero_si256();
        __m256i* target = reinterpret_cast<__m256i*>(sums + j);
        __m256i x = _mm256_add_epi32(_mm256_loadu_si256(target), _mm256_sub_epi32(in, out));
        _mm256_storeu_si256(target, x);
        // Prefix within each half, then the low half's total into the high half.
        x = _mm256_add_epi32(x, _mm256_slli_si256(x, 4));
        x = _mm256_add_epi32(x, _mm256_slli_si256(x, 8));
        x = _mm256_add_epi32(x, _mm256_permute2x128_si256(_mm256_shuffle_epi32(x, _MM_SHUFFLE(3, 3, 3, 3)), x, 0x08));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(prefix + j + 1), _mm256_add_epi32(x, carry));
        carry = _mm256_add_epi32(carry, _mm256_permutevar8x32_epi32(x, last));
    }
    uint32_t total = prefix[j];
    for (; j < count; ++j) {
        sums[j] += static_cast<uint32_t>(entering[j]) - (leaving != nullptr ? leaving[j] : 0u);
        total += sums[j];
        prefix[j + 1] = total;
    }
}

// The truncating means of one table line, thirty-two columns a step, by the
// exact divisor's multiplication on the even and odd lanes.
__attribute__((target("avx2"))) inline __m256i quotients8(const uint32_t* prefix, int i, int window_x, __m256i m,
                                                          __m128i count) {
    const __m256i n = _mm256_sub_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(prefix + i + window_x)),
                                       _mm256_loadu_si256(reinterpret_cast<const __m256i*>(prefix + i)));
    const __m256i even = _mm256_srl_epi64(_mm256_mul_epu32(n, m), count);
    const __m256i odd = _mm256_srl_epi64(_mm256_mul_epu32(_mm256_srli_epi64(n, 32), m), count);
    return _mm256_or_si256(even, _mm256_slli_epi64(odd, 32));
}

__attribute__((target("avx2"))) int means_avx2(const uint32_t* prefix, int window_x, uint32_t multiplier, int shift,
                                               int columns, unsigned char* out) {
    const __m256i m = _mm256_set1_epi32(static_cast<int>(multiplier));
    const __m128i count = _mm_cvtsi32_si128(shift);
    // The packs work within halves: the four-byte groups come out as
    // columns 0, 8, 16, 24, 4, 12, 20, 28 (plus 0 to 3 each), and one
    // permutation puts them in order.
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    int c = 0;
    for (; c + 32 <= columns; c += 32) {
        const __m256i words = _mm256_packs_epi32(quotients8(prefix, c, window_x, m, count),
                                                 quotients8(prefix, c + 8, window_x, m, count));
        const __m256i more = _mm256_packs_epi32(quotients8(prefix, c + 16, window_x, m, count),
                                                quotients8(prefix, c + 24, window_x, m, count));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + c),
                            _mm256_permutevar8x32_epi32(_mm256_packus_epi16(words, more), order));
    }
    return c;
}
#endif

// A fresh GRAY image of the given size, or false when memory runs out.
bool allocate_gray(common::BasicImage& image, int height, int width) {
    try {
        common::BasicImage fresh(height, width, common::GRAY);
        image.swap(fresh);
        return true;
    } catch (const std::string&) {
        return false;
    }
}

// The output of a failed run: no buffer.
void leave_empty(common::BasicImage& output) {
    common::BasicImage empty;
    output.swap(empty);
}

}  // namespace

// Window sums are exact integers, so the order in which they are added does
// not reach the result: column sums over window_y block lines slide down the
// block, one line in and one out, sixteen columns a step; prefix sums of them
// along the line give each window sum as the difference of two prefixes,
// which is the four-corner rule of a summed-area table on one table line.
// Totals wrap around 32 bits harmlessly: every window sum fits, and
// differences of wrapped totals are exact.
int AverageFiltering::perform_averaging(const unsigned char* padded, int padded_width, int padded_height,
                                        unsigned char* target, int target_row, int target_height, int window_x,
                                        int window_y, int skip_x, int skip_y) {
    const int columns = std::min(padded_width - window_x + 1 - skip_x, target_row);
    const int lines = std::min(padded_height - window_y + 1 - skip_y, target_height);
    if (columns <= 0 || lines <= 0 || window_x < 1 || window_y < 1) return 0;
    const int span = columns + window_x - 1;
    // The column sums, then their prefixes, one more with the leading zero.
    common::ScratchBuffer<uint32_t> table(2 * static_cast<size_t>(span) + 1);
    if (table.empty()) return -1;
    uint32_t* const sums = table.get();
    uint32_t* const prefix = sums + span;
    const TruncatingMean mean(static_cast<uint32_t>(window_x) * static_cast<uint32_t>(window_y));

    const unsigned char* first = padded + static_cast<ptrdiff_t>(skip_y) * padded_width + skip_x;
    const auto block_line = [first, padded_width](int line) {
        return first + static_cast<ptrdiff_t>(line) * padded_width;
    };
    std::memset(sums, 0, static_cast<size_t>(span) * sizeof(uint32_t));
    for (int line = 0; line < window_y - 1; ++line) slide_column_sums(sums, block_line(line), nullptr, span);
#if defined(MORVANE_AVX_BOX)
    const bool wide = __builtin_cpu_supports("avx2");
#endif
    for (int t = 0; t < lines; ++t) {
        unsigned char* out = target + static_cast<ptrdiff_t>(t) * target_row;
        int c = 0;
#if defined(MORVANE_AVX_BOX)
        if (wide) {
            slide_and_prefix_avx2(sums, prefix, block_line(t + window_y - 1), t > 0 ? block_line(t - 1) : nullptr,
                                  span);
            c = means_avx2(prefix, window_x, mean.divide.low_multiplier(), mean.divide.shift_count(), columns, out);
        } else {
            slide_and_prefix(sums, prefix, block_line(t + window_y - 1), t > 0 ? block_line(t - 1) : nullptr, span);
        }
#else
        slide_and_prefix(sums, prefix, block_line(t + window_y - 1), t > 0 ? block_line(t - 1) : nullptr, span);
#endif
#if defined(__SSE2__)
        const auto quotients = [&mean, prefix, window_x](int i) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(prefix + i + window_x));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(prefix + i));
            return mean.divide.divide4(_mm_sub_epi32(a, b));
        };
        for (; c + 16 <= columns; c += 16)
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + c),
                             pack_quotients(quotients(c), quotients(c + 4), quotients(c + 8), quotients(c + 12)));
#endif
        for (; c < columns; ++c) out[c] = mean(prefix[c + window_x] - prefix[c]);
    }
    return 0;
}

void AverageFiltering::use_summed_area_table(const common::Image& input, common::BasicImage& output, int window_x,
                                             int window_y) {
    check_arguments(input, window_x, window_y);
    const int width = input.get_width();
    const int height = input.get_height();
    const int pad_x = window_x / 2;
    const int pad_y = window_y / 2;
    common::BasicImage result;
    if (!allocate_gray(result, height, width)) return leave_empty(output);
    if (width > 0 && height > 0) {
        common::BasicImage padded;
        if (!allocate_gray(padded, height + 2 * pad_y, width + 2 * pad_x)) return leave_empty(output);
        mirror_block(input, pad_x, pad_y, 0, 0, padded.get_width(), padded.get_height(), padded.get_data());
        if (perform_averaging(padded.get_data(), padded.get_width(), padded.get_height(), result.get_data(), width,
                              height, window_x, window_y, 0, 0) != 0)
            return leave_empty(output);
    }
    output.swap(result);
}

// The inner region (windows wholly inside) is averaged straight from the
// image; the four border strips around it are mirrored one at a time into one
// strip buffer, the top and bottom strips over the whole width, the left and
// right ones over the inner lines. An image smaller than the window has no
// inner region and goes the padded way.
void AverageFiltering::use_native(const common::Image& input, common::BasicImage& output, int window_x,
                                  int window_y) {
    check_arguments(input, window_x, window_y);
    const int width = input.get_width();
    const int height = input.get_height();
    if (width < window_x || height < window_y || input.get_row_size() != width)
        return use_summed_area_table(input, output, window_x, window_y);
    const int pad_x = window_x / 2;
    const int pad_y = window_y / 2;
    const int padded_width = width + 2 * pad_x;
    // Output lines and columns whose window reaches past the bottom or right edge.
    const int bottom_lines = window_y - pad_y - 1;
    const int right_columns = window_x - pad_x - 1;
    const int inner_lines = height - window_y + 1;

    common::BasicImage result;
    if (!allocate_gray(result, height, width)) return leave_empty(output);
    unsigned char* out = result.get_data();
    const size_t across = static_cast<size_t>(padded_width) * (std::max(pad_y, bottom_lines) + window_y - 1);
    const size_t down = static_cast<size_t>(height) * (std::max(pad_x, right_columns) + window_x - 1);
    common::ScratchBuffer<unsigned char> strip(std::max(across, down));
    if (strip.empty()) return leave_empty(output);

    int failed = perform_averaging(rows_of(input)(0), width, height, out + static_cast<ptrdiff_t>(pad_y) * width + pad_x,
                                   width, inner_lines, window_x, window_y, 0, 0);
    if (pad_y > 0 && failed == 0) {
        const int lines = pad_y + window_y - 1;
        mirror_block(input, pad_x, pad_y, 0, 0, padded_width, lines, strip.get());
        failed = perform_averaging(strip.get(), padded_width, lines, out, width, pad_y, window_x, window_y, 0, 0);
    }
    if (bottom_lines > 0 && failed == 0) {
        const int first = height - bottom_lines;
        const int lines = bottom_lines + window_y - 1;
        mirror_block(input, pad_x, pad_y, 0, first, padded_width, lines, strip.get());
        failed = perform_averaging(strip.get(), padded_width, lines, out + static_cast<ptrdiff_t>(first) * width, width,
                                   bottom_lines, window_x, window_y, 0, 0);
    }
    // Side strips: padded lines pad_y..pad_y+height-1, the image's own lines.
    unsigned char* inner_out = out + static_cast<ptrdiff_t>(pad_y) * width;
    if (pad_x > 0 && failed == 0) {
        const int columns = pad_x + window_x - 1;
        mirror_block(input, pad_x, pad_y, 0, pad_y, columns, height, strip.get());
        failed = perform_averaging(strip.get(), columns, height, inner_out, width, inner_lines, window_x, window_y, 0, 0);
    }
    if (right_columns > 0 && failed == 0) {
        const int first = width - right_columns;
        const int columns = right_columns + window_x - 1;
        mirror_block(input, pad_x, pad_y, first, pad_y, columns, height, strip.get());
        failed = perform_averaging(strip.get(), columns, height, inner_out + first, width, inner_lines, window_x,
                                   window_y, 0, 0);
    }
    if (failed != 0) return leave_empty(output);
    output.swap(result);
}

// Padded copy with window_y & ~1 extra lines reached through a table of line
// pointers; column sums over window_y lines slide down the image, and a
// window sum slides along each line, two additions an output.
void AverageFiltering::use_opencv_algorithm(const common::Image& input, common::BasicImage& output, int window_x,
                                            int window_y) {
    check_arguments(input, window_x, window_y);
    const int width = input.get_width();
    const int height = input.get_height();
    const int pad_x = window_x / 2;
    const int pad_y = window_y / 2;
    common::BasicImage result;
    if (!allocate_gray(result, height, width)) return leave_empty(output);
    if (width == 0 || height == 0) return output.swap(result);
    const int padded_width = width + 2 * pad_x;
    const int padded_height = height + (window_y & ~1);
    common::BasicImage padded;
    if (!allocate_gray(padded, padded_height, padded_width)) return leave_empty(output);
    mirror_block(input, pad_x, pad_y, 0, 0, padded_width, padded_height, padded.get_data());
    const int span = width + window_x - 1;
    common::ScratchBuffer<const unsigned char*> line(static_cast<size_t>(padded_height));
    common::ScratchBuffer<uint32_t> sums(static_cast<size_t>(span));
    common::ScratchBuffer<uint32_t> window(static_cast<size_t>(width));
    if (line.empty() || sums.empty() || window.empty()) return leave_empty(output);
    for (int q = 0; q < padded_height; ++q) line[q] = padded.get_data() + static_cast<ptrdiff_t>(q) * padded_width;

    const RoundingMean mean(static_cast<uint32_t>(window_x) * static_cast<uint32_t>(window_y));
    std::memset(sums.get(), 0, static_cast<size_t>(span) * sizeof(uint32_t));
    for (int q = 0; q < window_y; ++q) slide_column_sums(sums.get(), line[q], nullptr, span);
    for (int y = 0; y < height; ++y) {
        if (y > 0) slide_column_sums(sums.get(), line[y + window_y - 1], line[y - 1], span);
        unsigned char* out = result.get_data() + static_cast<ptrdiff_t>(y) * width;
        uint32_t sum = 0;
        for (int j = 0; j < window_x - 1; ++j) sum += sums[j];
        for (int x = 0; x < width; ++x) {
            sum += sums[x + window_x - 1];
            window[x] = sum;
            sum -= sums[x];
        }
        int x = 0;
#if defined(__SSE2__)
        const __m128i area = _mm_set1_epi32(static_cast<int>(mean.area));
        for (; x + 16 <= width; x += 16) {
            __m128i q[4];
            for (int k = 0; k < 4; ++k) {
                const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i*>(window.get() + x + 4 * k));
                q[k] = mean.divide.divide4(_mm_add_epi32(area, _mm_add_epi32(s, s)));
            }
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + x), pack_quotients(q[0], q[1], q[2], q[3]));
        }
#endif
        for (; x < width; ++x) out[x] = mean(window[x]);
    }
    output.swap(result);
}

void AverageFiltering::sum_area_table(const unsigned char* source, int width, int height, unsigned char* target,
                                      int window_x, int window_y) {
    const int area = window_x * window_y;
    for (int y = window_y / 2; y <= height - window_y + window_y / 2; ++y)
        for (int x = window_x / 2; x <= width - window_x + window_x / 2; ++x) {
            uint32_t sum = 0;
            for (int i = 0; i < window_y; ++i) {
                const unsigned char* line = source + static_cast<ptrdiff_t>(y - window_y / 2 + i) * width;
                for (int j = 0; j < window_x; ++j) sum += line[x - window_x / 2 + j];
            }
            target[static_cast<ptrdiff_t>(y) * width + x] = static_cast<unsigned char>(sum / area);
        }
}

}  // namespace geometric

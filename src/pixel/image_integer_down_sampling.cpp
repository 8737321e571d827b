// Block-mean reduction of gray images, in three routes that give the same bytes.
#include "pixel/image_integer_down_sampling.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
// The luminance of RGB lines takes a byte shuffle where the processor has one.
#if defined(__SSE2__) && defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__)) && \
    !defined(MORVANE_PLAIN_LUMINANCE)
#define MORVANE_SSSE3_LUMINANCE 1
#include <tmmintrin.h>
#endif

#include "common/constants.h"
#include "pixel/block_mean_divisor.h"

namespace geometric {

namespace {

const char* const kNotGray = "down-sampling is defined for GRAY images only";
const char* const kBadRate = "down-sampling rate must be at least 1";
const char* const kNotRgb = "down-sampling with luminance is defined for RGB images only";

// Rows of an image follow each other without a gap, so the first row and the
// row size reach every pixel even after the image object has been reshaped.
struct GraySource {
    const unsigned char* base;
    int row_size;
    int width;
    int height;
    const unsigned char* row(int y) const { return base + static_cast<size_t>(y) * row_size; }
};

GraySource gray_source_of(const common::Image& input, int n) {
    if (input.get_image_type() != common::GRAY) throw kNotGray;
    if (n < 1) throw kBadRate;
    const int height = input.get_height();
    return GraySource{height > 0 ? input.get_line_pointer(0) : nullptr, input.get_row_size(), input.get_width(),
                      height};
}

// The gray value of each of the width RGB pixels at rgb, from x = from on.
void luminance_row_plain(const unsigned char* rgb, unsigned char* gray, int from, int width) {
    for (int x = from; x < width; ++x)
        gray[x] = static_cast<unsigned char>(constants::luminance(rgb[3 * x], rgb[3 * x + 1], rgb[3 * x + 2]));
}

#if defined(MORVANE_SSSE3_LUMINANCE)
// luminance_row_plain eight pixels a step; returns the pixels done. The
// weighted sums are exact in 32 bits. The division by 1000 is made as
// floor(floor(sum / 8) / 125), which is the same for positive integers; the
// second through a 16-bit multiplication: with m = 33555, y m / 2^22 exceeds
// y / 125 by less than 0.0045 for every y <= 31875 (= 255000 / 8), less than
// the 1/125 that any remainder leaves to the next integer, so the floors agree.
__attribute__((target("ssse3"))) int luminance_row_ssse3(const unsigned char* rgb, unsigned char* gray, int width) {
    const __m128i red_green = _mm_setr_epi8(0, -1, 1, -1, 3, -1, 4, -1, 6, -1, 7, -1, 9, -1, 10, -1);
    const __m128i blue = _mm_setr_epi8(2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1);
    const __m128i red_green_weights = _mm_setr_epi16(constants::kLuminanceWeights[0], constants::kLuminanceWeights[1],
                                                     constants::kLuminanceWeights[0], constants::kLuminanceWeights[1],
                                                     constants::kLuminanceWeights[0], constants::kLuminanceWeights[1],
                                                     constants::kLuminanceWeights[0], constants::kLuminanceWeights[1]);
    const __m128i blue_weights = _mm_set1_epi32(constants::kLuminanceWeights[2]);
    const __m128i reciprocal = _mm_set1_epi16(static_cast<short>(33555));
    int x = 0;
    // The second load of a step reaches 4 bytes past its 8 pixels.
    for (; 3 * x + 28 <= 3 * width; x += 8) {
        const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rgb + 3 * x));
        const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rgb + 3 * x + 12));
        const __m128i sums_first =
            _mm_add_epi32(_mm_madd_epi16(_mm_shuffle_epi8(first, red_green), red_green_weights),
                          _mm_madd_epi16(_mm_shuffle_epi8(first, blue), blue_weights));
        const __m128i sums_second =
            _mm_add_epi32(_mm_madd_epi16(_mm_shuffle_epi8(second, red_green), red_green_weights),
                          _mm_madd_epi16(_mm_shuffle_epi8(second, blue), blue_weights));
        const __m128i eighths = _mm_packs_epi32(_mm_srli_epi32(sums_first, 3), _mm_srli_epi32(sums_second, 3));
        const __m128i values = _mm_srli_epi16(_mm_mulhi_epu16(eighths, reciprocal), 6);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(gray + x), _mm_packus_epi16(values, values));
    }
    return x;
}
#endif

void luminance_row(const unsigned char* rgb, unsigned char* gray, int width) {
    int x = 0;
#if defined(MORVANE_SSSE3_LUMINANCE)
    if (__builtin_cpu_supports("ssse3")) x = luminance_row_ssse3(rgb, gray, width);
#endif
    luminance_row_plain(rgb, gray, x, width);
}

// sums[x] += row[x] over the first width columns.
void add_row_to_column_sums(const unsigned char* row, uint16_t* sums, int width) {
    int x = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    for (; x + 16 <= width; x += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + x));
        __m128i* low = reinterpret_cast<__m128i*>(sums + x);
        __m128i* high = reinterpret_cast<__m128i*>(sums + x + 8);
        _mm_storeu_si128(low, _mm_add_epi16(_mm_loadu_si128(low), _mm_unpacklo_epi8(bytes, zero)));
        _mm_storeu_si128(high, _mm_add_epi16(_mm_loadu_si128(high), _mm_unpackhi_epi8(bytes, zero)));
    }
#endif
    for (; x < width; ++x) sums[x] = static_cast<uint16_t>(sums[x] + row[x]);
}

void add_row_to_column_sums(const unsigned char* row, uint32_t* sums, int width) {
    for (int x = 0; x < width; ++x) sums[x] += row[x];
}

// Column sums over the n lines of one block line, then n columns a block;
// gray_row(y) gives the gray bytes of line y. Acc is 16 bits wide while
// n * 255 fits, so that eight columns share a register.
template <typename Acc, typename GrayRow>
void combine_block_lines(GrayRow gray_row, unsigned char* out, int out_width, int out_height, int n) {
    const int used_width = out_width * n;
    const BlockMeanDivisor divisor(n);
    std::vector<Acc> column_sums(static_cast<size_t>(used_width));
    Acc* sums = column_sums.data();
    for (int by = 0; by < out_height; ++by) {
        std::fill(column_sums.begin(), column_sums.end(), Acc(0));
        for (int line = 0; line < n; ++line) add_row_to_column_sums(gray_row(by * n + line), sums, used_width);
        unsigned char* target = out + static_cast<size_t>(by) * out_width;
        for (int bx = 0; bx < out_width; ++bx) {
            const Acc* block = sums + static_cast<size_t>(bx) * n;
            uint64_t sum = 0;
            for (int i = 0; i < n; ++i) sum += block[i];
            target[bx] = static_cast<unsigned char>(divisor.divide(sum));
        }
    }
}

// One output line of rate 2 from two source lines: (a + b + c + d) >> 2.
// Each group of 16 outputs is computed from its 32 + 32 source bytes before
// it is stored, so target may lie at or before top (the in-place case).
void down_sample_line_by_2(const unsigned char* top, const unsigned char* bottom, unsigned char* target,
                           int out_width) {
    int x = 0;
#if defined(__SSE2__)
    const __m128i low_bytes = _mm_set1_epi16(0x00FF);
    for (; x + 16 <= out_width; x += 16) {
        const __m128i t0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(top + 2 * x));
        const __m128i t1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(top + 2 * x + 16));
        const __m128i b0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bottom + 2 * x));
        const __m128i b1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bottom + 2 * x + 16));
        // Each 16-bit lane holds one horizontal pair: even byte low, odd byte high.
        const __m128i s0 = _mm_add_epi16(
            _mm_add_epi16(_mm_and_si128(t0, low_bytes), _mm_srli_epi16(t0, 8)),
            _mm_add_epi16(_mm_and_si128(b0, low_bytes), _mm_srli_epi16(b0, 8)));
        const __m128i s1 = _mm_add_epi16(
            _mm_add_epi16(_mm_and_si128(t1, low_bytes), _mm_srli_epi16(t1, 8)),
            _mm_add_epi16(_mm_and_si128(b1, low_bytes), _mm_srli_epi16(b1, 8)));
        const __m128i means = _mm_packus_epi16(_mm_srli_epi16(s0, 2), _mm_srli_epi16(s1, 2));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(target + x), means);
    }
#endif
    for (; x < out_width; ++x) {
        const unsigned sum = static_cast<unsigned>(top[2 * x]) + top[2 * x + 1] + bottom[2 * x] + bottom[2 * x + 1];
        target[x] = static_cast<unsigned char>(sum >> 2);
    }
}

}  // namespace

void ImageIntegerDownSampling::change_image_dimension(common::BasicImage& image, int width, int height) {
    image.change_dimension(width, height);
}

void ImageIntegerDownSampling::DownSampling2(const common::Image& input, common::BasicImage& output) {
    const GraySource source = gray_source_of(input, 2);
    const int out_width = source.width / 2;
    const int out_height = source.height / 2;

    // Reuse a buffer that can hold the result (the in-place case always can);
    // a fresh one is swapped in rather than reset, so that a view's foreign
    // buffer is never freed.
    const int64_t needed = static_cast<int64_t>(out_width) * out_height;
    if (output.get_data() != nullptr && output.get_data_size() >= needed) {
        change_image_dimension(output, out_width, out_height);
        output.set_image_type(common::GRAY);
    } else {
        common::BasicImage fresh(out_height, out_width, common::GRAY, 300, 300);
        output.swap(fresh);
    }

    // Forward order keeps the in-place form correct: output byte y * w/2 + x
    // never lies ahead of source bytes 2y * w + 2x that are still to be read.
    unsigned char* out = output.get_data();
    for (int y = 0; y < out_height; ++y) {
        const unsigned char* top = source.row(2 * y);
        const unsigned char* bottom = top + source.row_size;
        down_sample_line_by_2(top, bottom, out + static_cast<size_t>(y) * out_width, out_width);
    }
}

void ImageIntegerDownSampling::DownSampling2(common::BasicImage& image) { DownSampling2(image, image); }

void ImageIntegerDownSampling::DownSamplingN(const common::Image& input, common::BasicImage& output, int n) {
    const GraySource source = gray_source_of(input, n);
    const int out_width = source.width / n;
    const int out_height = source.height / n;
    const uint64_t block_area = static_cast<uint64_t>(n) * static_cast<uint64_t>(n);
    common::BasicImage result(out_height, out_width, common::GRAY, 300, 300);
    unsigned char* out = result.get_data();
    for (int by = 0; by < out_height; ++by) {
        for (int bx = 0; bx < out_width; ++bx) {
            uint64_t sum = 0;
            for (int line = 0; line < n; ++line) {
                const unsigned char* row = source.row(by * n + line) + static_cast<size_t>(bx) * n;
                for (int i = 0; i < n; ++i) sum += row[i];
            }
            out[static_cast<size_t>(by) * out_width + bx] = static_cast<unsigned char>(sum / block_area);
        }
    }
    output.swap(result);
}

void ImageIntegerDownSampling::DownSamplingSummedAreaTable(const common::Image& input, common::BasicImage& output,
                                                           int n) {
    const GraySource source = gray_source_of(input, n);
    const int out_width = source.width / n;
    const int out_height = source.height / n;
    const uint64_t block_area = static_cast<uint64_t>(n) * static_cast<uint64_t>(n);
    common::BasicImage result(out_height, out_width, common::GRAY, 300, 300);
    unsigned char* out = result.get_data();

    // running[line][x] is the sum of the first x pixels of that line of the block line.
    const size_t stride = static_cast<size_t>(out_width) * n + 1;
    std::vector<uint64_t> running(stride * static_cast<size_t>(n));
    for (int by = 0; by < out_height; ++by) {
        for (int line = 0; line < n; ++line) {
            const unsigned char* row = source.row(by * n + line);
            uint64_t* sums = running.data() + static_cast<size_t>(line) * stride;
            sums[0] = 0;
            for (size_t x = 1; x < stride; ++x) sums[x] = sums[x - 1] + row[x - 1];
        }
        for (int bx = 0; bx < out_width; ++bx) {
            const size_t left = static_cast<size_t>(bx) * n;
            uint64_t sum = 0;
            for (int line = 0; line < n; ++line) {
                const uint64_t* sums = running.data() + static_cast<size_t>(line) * stride;
                sum += sums[left + n] - sums[left];
            }
            out[static_cast<size_t>(by) * out_width + bx] = static_cast<unsigned char>(sum / block_area);
        }
    }
    output.swap(result);
}

void ImageIntegerDownSampling::DownSamplingCombined(const common::Image& input, common::BasicImage& output, int n) {
    const GraySource source = gray_source_of(input, n);
    if (n == 2) {
        DownSampling2(input, output);
        return;
    }
    const int out_width = source.width / n;
    const int out_height = source.height / n;
    common::BasicImage result(out_height, out_width, common::GRAY, 300, 300);
    const auto gray_row = [&source](int y) { return source.row(y); };
    if (n <= 257)  // n * 255 still fits 16 bits
        combine_block_lines<uint16_t>(gray_row, result.get_data(), out_width, out_height, n);
    else
        combine_block_lines<uint32_t>(gray_row, result.get_data(), out_width, out_height, n);
    output.swap(result);
}

void ImageIntegerDownSampling::DownSamplingCombinedLuminance(const common::Image& input, common::BasicImage& output,
                                                             int n) {
    if (input.get_image_type() != common::RGB) throw kNotRgb;
    if (n < 1) throw kBadRate;
    const int out_width = input.get_width() / n;
    const int out_height = input.get_height() / n;
    const int used_width = out_width * n;
    const unsigned char* base = input.get_height() > 0 ? input.get_line_pointer(0) : nullptr;
    const size_t row_size = static_cast<size_t>(input.get_row_size());
    // One line of gray at a time, converted just before it is summed.
    std::vector<unsigned char> line(static_cast<size_t>(used_width));
    const auto gray_row = [&](int y) {
        luminance_row(base + static_cast<size_t>(y) * row_size, line.data(), used_width);
        return static_cast<const unsigned char*>(line.data());
    };
    common::BasicImage result(out_height, out_width, common::GRAY, 300, 300);
    if (n <= 257)
        combine_block_lines<uint16_t>(gray_row, result.get_data(), out_width, out_height, n);
    else
        combine_block_lines<uint32_t>(gray_row, result.get_data(), out_width, out_height, n);
    output.swap(result);
}

}  // namespace geometric

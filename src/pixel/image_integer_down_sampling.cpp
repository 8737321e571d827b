// Block-mean reduction of gray images, in three routes that give the same bytes.
#include "pixel/image_integer_down_sampling.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "pixel/block_mean_divisor.h"

namespace geometric {

namespace {

const char* const kNotGray = "down-sampling is defined for GRAY images only";
const char* const kBadRate = "down-sampling rate must be at least 1";

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

// Column sums over the n lines of one block line, then n columns a block.
// Acc is 16 bits wide while n * 255 fits, so that eight columns share a register.
template <typename Acc>
void combine_block_lines(const GraySource& source, unsigned char* out, int out_width, int out_height, int n) {
    const int used_width = out_width * n;
    const BlockMeanDivisor divisor(n);
    std::vector<Acc> column_sums(static_cast<size_t>(used_width));
    Acc* sums = column_sums.data();
    for (int by = 0; by < out_height; ++by) {
        std::fill(column_sums.begin(), column_sums.end(), Acc(0));
        for (int line = 0; line < n; ++line) add_row_to_column_sums(source.row(by * n + line), sums, used_width);
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
    if (n <= 257)  // n * 255 still fits 16 bits
        combine_block_lines<uint16_t>(source, result.get_data(), out_width, out_height, n);
    else
        combine_block_lines<uint32_t>(source, result.get_data(), out_width, out_height, n);
    output.swap(result);
}

}  // namespace geometric

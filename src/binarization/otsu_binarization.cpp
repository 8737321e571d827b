// Otsu's global threshold and its application inside the image frame.
#include "binarization/otsu_binarization.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "common/scratch_buffer.h"

namespace geometric {

namespace {

// One row of the packed output: bit x, most significant first, is
// source[x] > threshold for x in 1..width-2, and every other bit of the
// row_size bytes (columns 0 and width-1, the padding) is clear; with invert
// the whole row is complemented, as the frame's complement would do.
void write_packed_line(const unsigned char* source, int width, unsigned char threshold, bool invert,
                       unsigned char* target, int row_size) {
    const unsigned char flip = invert ? 0xff : 0;
    const int whole_bytes = width / 8;  // bytes whose eight pixels all lie in the row
    int b = 0;
#if defined(__SSE2__)
    // Sixty-four pixels a step, then sixteen: the saturated difference is
    // zero exactly for the pixels at or below the threshold, the dark ones.
    // Their mask gives pixel i in bit i; the packed line wants it in bit 7 - i
    // of its byte. Little-endian: byte k of a word is target[b + k].
    const __m128i limit = _mm_set1_epi8(static_cast<char>(threshold));
    const __m128i zero = _mm_setzero_si128();
    const auto dark_mask = [&](const unsigned char* pixels) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
        return static_cast<uint64_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_subs_epu8(v, limit), zero)));
    };
    const auto reversed_in_bytes = [](uint64_t bits) {
        bits = ((bits >> 1) & 0x5555555555555555ull) | ((bits & 0x5555555555555555ull) << 1);
        bits = ((bits >> 2) & 0x3333333333333333ull) | ((bits & 0x3333333333333333ull) << 2);
        return ((bits >> 4) & 0x0f0f0f0f0f0f0f0full) | ((bits & 0x0f0f0f0f0f0f0f0full) << 4);
    };
    const uint64_t bright_flip = invert ? 0 : ~0ull;
    for (; b + 8 <= whole_bytes; b += 8) {
        const unsigned char* pixels = source + 8 * b;
        const uint64_t dark = dark_mask(pixels) | dark_mask(pixels + 16) << 16 | dark_mask(pixels + 32) << 32 |
                              dark_mask(pixels + 48) << 48;
        const uint64_t bits = reversed_in_bytes(dark) ^ bright_flip;
        std::memcpy(target + b, &bits, 8);
    }
    for (; b + 2 <= whole_bytes; b += 2) {
        const uint16_t bits = static_cast<uint16_t>(reversed_in_bytes(dark_mask(source + 8 * b)) ^ bright_flip);
        std::memcpy(target + b, &bits, 2);
    }
#endif
    for (; b < whole_bytes; ++b) {
        const unsigned char* pixels = source + 8 * b;
        unsigned bits = 0;
        for (int i = 0; i < 8; ++i) bits |= static_cast<unsigned>(pixels[i] > threshold) << (7 - i);
        target[b] = static_cast<unsigned char>(bits ^ flip);
    }
    if (b < row_size) {
        unsigned bits = 0;
        for (int x = 8 * b; x < width; ++x) bits |= static_cast<unsigned>(source[x] > threshold) << (7 - (x & 7));
        target[b++] = static_cast<unsigned char>(bits ^ flip);
    }
    if (b < row_size) std::memset(target + b, flip, static_cast<size_t>(row_size - b));
    // The frame columns: clear before the complement, so set with it.
    const unsigned char first = 0x80, last = static_cast<unsigned char>(0x80u >> ((width - 1) & 7));
    target[0] = static_cast<unsigned char>(invert ? target[0] | first : target[0] & ~first);
    unsigned char& end = target[(width - 1) >> 3];
    end = static_cast<unsigned char>(invert ? end | last : end & ~last);
}

// Four interleaved counts, so that runs of equal bytes do not wait on one
// counter; they are added into the histogram before any of them could pass
// 2^32 - 1, and at the end.
void plain_histogram(const common::Image& gray, unsigned long long histogram[256]) {
    const int height = gray.get_height();
    const int width = gray.get_width();
    unsigned int counts[4][256] = {};
    unsigned long long since_merge = 0;
    const auto merge = [histogram, &counts, &since_merge] {
        for (int i = 0; i < 256; ++i)
            histogram[i] += static_cast<unsigned long long>(counts[0][i]) + counts[1][i] + counts[2][i] + counts[3][i];
        std::memset(counts, 0, sizeof counts);
        since_merge = 0;
    };
    for (int y = 0; y < height; ++y) {
        const unsigned char* line = gray.get_line_pointer(y);
        if (line == nullptr) continue;
        if (since_merge + static_cast<unsigned>(width) > 0xffffffffull) merge();
        since_merge += static_cast<unsigned>(width);
        int x = 0;
        for (; x + 8 <= width; x += 8) {
            ++counts[0][line[x]];
            ++counts[1][line[x + 1]];
            ++counts[2][line[x + 2]];
            ++counts[3][line[x + 3]];
            ++counts[0][line[x + 4]];
            ++counts[1][line[x + 5]];
            ++counts[2][line[x + 6]];
            ++counts[3][line[x + 7]];
        }
        for (; x < width; ++x) ++counts[0][line[x]];
    }
    merge();
}

// Adds the table of pair counts into the histogram, each row into its
// second byte and each column into its first, and clears it. No sum passes
// 2^32 - 1: the table holds fewer pairs than that.
void fold_pairs(unsigned int* pairs, unsigned long long histogram[256]) {
    alignas(16) unsigned int columns[256] = {};
    for (int second = 0; second < 256; ++second) {
        unsigned int* row = pairs + 256 * second;
        int first = 0;
        unsigned int row_sum = 0;
#if defined(__SSE2__)
        const __m128i zero = _mm_setzero_si128();
        __m128i sums = zero;
        for (; first < 256; first += 4) {
            __m128i* counts = reinterpret_cast<__m128i*>(row + first);
            __m128i* column = reinterpret_cast<__m128i*>(columns + first);
            const __m128i v = _mm_loadu_si128(counts);
            sums = _mm_add_epi32(sums, v);
            _mm_store_si128(column, _mm_add_epi32(_mm_load_si128(column), v));
            _mm_storeu_si128(counts, zero);
        }
        sums = _mm_add_epi32(sums, _mm_srli_si128(sums, 8));
        sums = _mm_add_epi32(sums, _mm_srli_si128(sums, 4));
        row_sum = static_cast<unsigned int>(_mm_cvtsi128_si32(sums));
#endif
        for (; first < 256; ++first) {
            row_sum += row[first];
            columns[first] += row[first];
            row[first] = 0;
        }
        histogram[second] += row_sum;
    }
    for (int first = 0; first < 256; ++first) histogram[first] += columns[first];
}

// Smaller images count pixel by pixel: the pair table costs a clear and a
// fold of 65536 counts.
const long long kFewestPixelsForPairs = 1 << 18;

// The same histogram with one count for two neighbouring bytes of a line,
// in a table indexed by both, read as one 16-bit word: half the stores of a
// count a pixel. False, with nothing counted, when the table cannot be had.
bool pair_histogram(const common::Image& gray, unsigned long long histogram[256]) {
    const int height = gray.get_height();
    const int width = gray.get_width();
    const common::ScratchBuffer<unsigned int> table(65536);
    if (table.empty()) return false;
    unsigned int* pairs = table.get();
    std::memset(pairs, 0, 65536 * sizeof(unsigned int));
    unsigned long long since_fold = 0;
    for (int y = 0; y < height; ++y) {
        const unsigned char* line = gray.get_line_pointer(y);
        if (line == nullptr) continue;
        if (since_fold + static_cast<unsigned>(width) > 0xffffffffull) {
            fold_pairs(pairs, histogram);
            since_fold = 0;
        }
        since_fold += static_cast<unsigned>(width);
        int x = 0;
        const auto pair_at = [line](int i) {
            uint16_t word;
            std::memcpy(&word, line + i, 2);
            return word;
        };
        for (; x + 8 <= width; x += 8) {
            ++pairs[pair_at(x)];
            ++pairs[pair_at(x + 2)];
            ++pairs[pair_at(x + 4)];
            ++pairs[pair_at(x + 6)];
        }
        for (; x + 2 <= width; x += 2) ++pairs[pair_at(x)];
        if (x < width) ++histogram[line[x]];
    }
    fold_pairs(pairs, histogram);
    return true;
}

}  // namespace

OtsuBinarization::OtsuBinarization(const common::Image* input, common::BasicImage* output)
    : Binarization(input, output), invert(true) {}

void OtsuBinarization::obtain_histogram(const common::Image& gray, unsigned long long histogram[256]) {
    std::fill(histogram, histogram + 256, 0ull);
    const long long pixels = static_cast<long long>(gray.get_height()) * gray.get_width();
    if (pixels >= kFewestPixelsForPairs && pair_histogram(gray, histogram)) return;
    plain_histogram(gray, histogram);
}

void OtsuBinarization::obtain_threshold(const common::Image& gray, unsigned char& threshold) {
    unsigned long long histogram[256];
    obtain_histogram(gray, histogram);
    double n = 0.0;
    double sum = 0.0;
    for (int i = 0; i < 256; ++i) {
        n += static_cast<double>(histogram[i]);
        sum += static_cast<double>(i) * static_cast<double>(histogram[i]);
    }
    const double m = n > 0.0 ? sum / n : 0.0;

    int best_t = 0;
    double best_score = 0.0;
    double w0 = 0.0;
    double s0 = 0.0;
    for (int t = 0; t < 256; ++t) {
        w0 += static_cast<double>(histogram[t]);
        s0 += static_cast<double>(t) * static_cast<double>(histogram[t]);
        const double w1 = n - w0;
        const double m0 = w0 > 0.0 ? s0 / w0 : 0.0;
        const double m1 = w1 > 0.0 ? (sum - s0) / w1 : 0.0;
        const double score = w0 * (m0 - m) * (m0 - m) + w1 * (m1 - m) * (m1 - m);
        if (score > best_score) {  // strictly: the first of equal scores stays
            best_score = score;
            best_t = t;
        }
    }
    threshold = static_cast<unsigned char>(best_t);
}

bool OtsuBinarization::run_binarization_imp(common::Image* gray) {
    unsigned char threshold = 128;
    obtain_threshold(*gray, threshold);
    const int height = gray->get_height();
    const int width = gray->get_width();
    const int row_size = output->get_row_size();
    // The application and the complement in one pass: the frame rows, and
    // every row of an image under 3 pixels a side, hold no bits before it.
    const bool inner_rows = height >= 3 && width >= 3;
    for (int y = 0; y < height; ++y) {
        unsigned char* target = output->get_line_pointer(y);
        if (inner_rows && y >= 1 && y <= height - 2)
            write_packed_line(gray->get_line_pointer(y), width, threshold, invert, target, row_size);
        else
            std::memset(target, invert ? 0xff : 0, static_cast<size_t>(row_size));
    }
    return true;
}

}  // namespace geometric

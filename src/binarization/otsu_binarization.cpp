// Otsu's global threshold and its application inside the image frame.
#include "binarization/otsu_binarization.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace geometric {

namespace {

#if defined(__SSE2__)
// The byte with its bits in reverse order, for each byte: the vector
// comparison gives pixel i in bit i, the packed line wants it in bit 7 - i.
struct ReversedBytes {
    unsigned char of[256];
    constexpr ReversedBytes() : of() {
        for (int i = 0; i < 256; ++i) {
            int reversed = 0;
            for (int bit = 0; bit < 8; ++bit)
                if (i & (1 << bit)) reversed |= 0x80 >> bit;
            of[i] = static_cast<unsigned char>(reversed);
        }
    }
};
constexpr ReversedBytes kReversed;
#endif

// Sets the bit of every x in 1..width-2 whose byte is above the threshold,
// eight pixels to a byte; the target line is zero on entry.
void set_bright_bits(const unsigned char* source, int width, unsigned char threshold, unsigned char* target) {
    const int last = width - 2;
    const int whole_bytes = (last + 1) / 8;  // bytes whose eight pixels all lie in 0..last
    int b = 0;
#if defined(__SSE2__)
    // Sixteen pixels a step; unsigned bytes compare as signed ones once
    // both sides have their top bit flipped.
    const __m128i flip = _mm_set1_epi8(static_cast<char>(0x80));
    const __m128i limit = _mm_set1_epi8(static_cast<char>(threshold ^ 0x80));
    for (; b + 2 <= whole_bytes; b += 2) {
        const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + 8 * b));
        const int bits = _mm_movemask_epi8(_mm_cmpgt_epi8(_mm_xor_si128(pixels, flip), limit));
        target[b] = kReversed.of[bits & 0xff];
        target[b + 1] = kReversed.of[bits >> 8];
    }
#endif
    for (; b < whole_bytes; ++b) {
        const unsigned char* pixels = source + 8 * b;
        unsigned bits = 0;
        for (int i = 0; i < 8; ++i) bits |= static_cast<unsigned>(pixels[i] > threshold) << (7 - i);
        target[b] = static_cast<unsigned char>(bits);
    }
    target[0] &= 0x7f;  // the frame column 0 stays clear
    for (int x = std::max(1, 8 * whole_bytes); x <= last; ++x)
        if (source[x] > threshold) target[x >> 3] |= static_cast<unsigned char>(0x80u >> (x & 7));
}

}  // namespace

OtsuBinarization::OtsuBinarization(const common::Image* input, common::BasicImage* output)
    : Binarization(input, output), invert(true) {}

void OtsuBinarization::obtain_threshold(const common::Image& gray, unsigned char& threshold) {
    const int height = gray.get_height();
    const int width = gray.get_width();
    unsigned long long histogram[256] = {};
    // Four interleaved counts, so that runs of equal bytes do not wait on one
    // counter; they are added into the histogram before any of them could
    // pass 2^32 - 1, and at the end.
    unsigned int counts[4][256] = {};
    unsigned long long since_merge = 0;
    const auto merge = [&histogram, &counts, &since_merge] {
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
    if (height >= 3 && width >= 3) {
        for (int y = 1; y <= height - 2; ++y)
            set_bright_bits(gray->get_line_pointer(y), width, threshold, output->get_line_pointer(y));
    }
    if (invert) output->invert();
    return true;
}

}  // namespace geometric

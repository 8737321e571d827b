// Otsu's global threshold and its application inside the image frame.
#include "binarization/otsu_binarization.h"

#include <algorithm>
#include <cstring>

namespace geometric {

namespace {

// Sets the bit of every x in 1..width-2 whose byte is above the threshold,
// eight pixels to a byte; the target line is zero on entry.
void set_bright_bits(const unsigned char* source, int width, unsigned char threshold, unsigned char* target) {
    const int last = width - 2;
    const int whole_bytes = (last + 1) / 8;  // bytes whose eight pixels all lie in 0..last
    for (int b = 0; b < whole_bytes; ++b) {
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
    // Four interleaved counts per line, so that runs of equal bytes do not
    // wait on one counter; a line holds fewer than 2^32 pixels.
    unsigned int counts[4][256];
    for (int y = 0; y < height; ++y) {
        const unsigned char* line = gray.get_line_pointer(y);
        if (line == nullptr) continue;
        std::memset(counts, 0, sizeof counts);
        int x = 0;
        for (; x + 4 <= width; x += 4) {
            ++counts[0][line[x]];
            ++counts[1][line[x + 1]];
            ++counts[2][line[x + 2]];
            ++counts[3][line[x + 3]];
        }
        for (; x < width; ++x) ++counts[0][line[x]];
        for (int i = 0; i < 256; ++i)
            histogram[i] += static_cast<unsigned long long>(counts[0][i]) + counts[1][i] + counts[2][i] + counts[3][i];
    }
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

// Otsu's global threshold and its application inside the image frame.
#include "binarization/otsu_binarization.h"

namespace geometric {

OtsuBinarization::OtsuBinarization(const common::Image* input, common::BasicImage* output)
    : Binarization(input, output), invert(true) {}

void OtsuBinarization::obtain_threshold(const common::Image& gray, unsigned char& threshold) {
    const int height = gray.get_height();
    const int width = gray.get_width();
    unsigned long long histogram[256] = {};
    for (int y = 0; y < height; ++y) {
        const unsigned char* line = gray.get_line_pointer(y);
        if (line == nullptr) continue;
        for (int x = 0; x < width; ++x) ++histogram[line[x]];
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
        for (int y = 1; y <= height - 2; ++y) {
            const unsigned char* source = gray->get_line_pointer(y);
            unsigned char* target = output->get_line_pointer(y);
            for (int x = 1; x <= width - 2; ++x) {
                if (source[x] > threshold) target[x >> 3] |= static_cast<unsigned char>(0x80u >> (x & 7));
            }
        }
    }
    if (invert) output->invert();
    return true;
}

}  // namespace geometric

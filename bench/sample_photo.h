// The bundled sample photo (samples/page.jpg, 1800 x 2400) scaled up
// bilinearly to a 12-megapixel 3000 x 4000 RGB photo: a page in perspective
// on a desk, as a phone camera takes it; and the gray working image that the
// corrector makes of it. Decoded through the tool's codecs, so the programs
// that use it exist only when the tools are built.
#ifndef MORVANE_BENCH_SAMPLE_PHOTO_H
#define MORVANE_BENCH_SAMPLE_PHOTO_H

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "common/basic_image.h"
#include "image_file.h"
#include "morvane/morvane.h"
#include "registration/hybrid_registration.h"

namespace bench_sample {

constexpr int kWidth = 3000;
constexpr int kHeight = 4000;

constexpr double kScale = 5.0 / 3.0;  // 1800 x 2400 to 3000 x 4000

struct Photo {
    std::vector<unsigned char> rgb;
    ImageCApi record() const {
        return ImageCApi{kWidth, kHeight, 0, 0, 3, 0, const_cast<unsigned char*>(rgb.data())};
    }
};

// A photo file scaled bilinearly to kWidth x kHeight RGB; false when the
// file cannot be read or is not RGB, with the reason in `problem`.
inline bool read_scaled_photo(const char* path, Photo& p, std::string& problem) {
    scan::Raster source;
    try {
        source = scan::read_image_file(path).raster;
    } catch (const std::exception& e) {
        problem = e.what();
        return false;
    }
    if (source.channels != 3 || source.binary) {
        problem = std::string(path) + " is not RGB";
        return false;
    }
    p.rgb.resize(static_cast<std::size_t>(kWidth) * kHeight * 3);
    const double sx = static_cast<double>(source.width) / kWidth;
    const double sy = static_cast<double>(source.height) / kHeight;
    for (int y = 0; y < kHeight; ++y) {
        const double fy = std::max(0.0, (y + 0.5) * sy - 0.5);
        const int y0 = std::min(static_cast<int>(fy), source.height - 1);
        const int y1 = std::min(y0 + 1, source.height - 1);
        const double wy = fy - y0;
        for (int x = 0; x < kWidth; ++x) {
            const double fx = std::max(0.0, (x + 0.5) * sx - 0.5);
            const int x0 = std::min(static_cast<int>(fx), source.width - 1);
            const int x1 = std::min(x0 + 1, source.width - 1);
            const double wx = fx - x0;
            for (int c = 0; c < 3; ++c) {
                const double top = source.row(y0)[3 * x0 + c] * (1 - wx) + source.row(y0)[3 * x1 + c] * wx;
                const double bottom = source.row(y1)[3 * x0 + c] * (1 - wx) + source.row(y1)[3 * x1 + c] * wx;
                p.rgb[(static_cast<std::size_t>(y) * kWidth + x) * 3 + c] =
                    static_cast<unsigned char>(top * (1 - wy) + bottom * wy + 0.5);
            }
        }
    }
    return true;
}

inline const Photo& photo() {
    static const Photo scaled = [] {
        Photo p;
        std::string problem;
        if (!read_scaled_photo(MORVANE_SAMPLE_PHOTO, p, problem)) {
            std::fprintf(stderr, "%s\n", problem.c_str());
            std::exit(2);
        }
        return p;
    }();
    return scaled;
}

// The working image of the photo (1000 x 1333: the rate is 3), made once.
inline const common::BasicImage& working_image() {
    static std::unique_ptr<common::BasicImage> working = [] {
        hybrid::HybridRegistration driver;
        driver.set_input_image(photo().record());
        driver.preprocessing();
        return std::make_unique<common::BasicImage>(*driver.downsampled_image);
    }();
    return *working;
}

}  // namespace bench_sample

#endif

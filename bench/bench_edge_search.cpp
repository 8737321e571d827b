// The page-edge search on a 12-megapixel phone photo, end to end from the
// caller's record to the corners, and each of its stages alone on the same
// photo, so that the share of each stage can be read off the medians.
//
// The photo is the bundled sample (samples/page.jpg, 1800 x 2400) scaled up
// bilinearly to 3000 x 4000 RGB: a page in perspective on a desk, as a phone
// camera takes it. It is decoded through the tool's codecs, which is why this
// program exists only when the tools are built.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "common/basic_image.h"
#include "cornersearch/adaptive_contour_generator.h"
#include "cornersearch/bounding_edge_registration.h"
#include "image_file.h"
#include "morvane/morvane.h"
#include "registration/hybrid_registration.h"
#include "registration/line_registration.h"

namespace {

constexpr int kWidth = 3000;
constexpr int kHeight = 4000;

constexpr double kScale = 5.0 / 3.0;  // 1800 x 2400 to 3000 x 4000

struct Photo {
    std::vector<unsigned char> rgb;
    ImageCApi record() const {
        return ImageCApi{kWidth, kHeight, 0, 0, 3, 0, const_cast<unsigned char*>(rgb.data())};
    }
};

const Photo& photo() {
    static const Photo scaled = [] {
        Photo p;
        scan::Raster source;
        try {
            source = scan::read_image_file(MORVANE_SAMPLE_PHOTO).raster;
        } catch (const std::exception& e) {
            std::fprintf(stderr, "%s\n", e.what());
            std::exit(2);
        }
        if (source.channels != 3 || source.binary) {
            std::fprintf(stderr, "the sample photo is not RGB\n");
            std::exit(2);
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
        return p;
    }();
    return scaled;
}

// The sample's known corners (the eight numbers of samples/page.corners, after
// its comment lines), in pixels of the sample.
std::vector<double> known_corners() {
    std::vector<double> xy;
    if (std::FILE* file = std::fopen(MORVANE_SAMPLE_CORNERS, "r")) {
        char line[256];
        while (std::fgets(line, sizeof line, file)) {
            if (line[0] == '#') continue;
            for (char* p = line; xy.size() < 8;) {
                char* end = nullptr;
                const double v = std::strtod(p, &end);
                if (end == p) break;
                xy.push_back(v);
                p = *end == ',' ? end + 1 : end;
            }
        }
        std::fclose(file);
    }
    return xy;
}

// The largest distance of a found corner from the known one, in pixels of the
// photo; -1 when the known corners cannot be read.
double corner_error(const ControlPointCorners& found) {
    const std::vector<double> truth = known_corners();
    if (truth.size() != 8) return -1;
    double worst = 0;
    for (int i = 0; i < 4; ++i)
        worst = std::max(worst, std::hypot(found.x[i] - truth[2 * i] * kScale, found.y[i] - truth[2 * i + 1] * kScale));
    return worst;
}

// The caller's whole job: a handle, the edge search, the corners.
void BM_EdgeSearch(benchmark::State& state) {
    const ImageCApi record = photo().record();
    int result = 0;
    ControlPointCorners corners{};
    for (auto _ : state) {
        void* handle = corrector_create();
        set_registration_method(handle, 0);
        result = run_edge_searching(handle, &record);
        obtain_four_corners(handle, &corners);
        destroy_corrector(handle);
        benchmark::DoNotOptimize(corners);
    }
    state.counters["result"] = result;
    state.counters["corner_error_px"] = corner_error(corners);
}
BENCHMARK(BM_EdgeSearch)->Unit(benchmark::kMillisecond);

// Stage 1: the gray working image (gray conversion and down-sampling).
void BM_WorkingImage(benchmark::State& state) {
    const ImageCApi record = photo().record();
    int rate = 0;
    for (auto _ : state) {
        hybrid::HybridRegistration driver;
        driver.set_input_image(record);
        driver.preprocessing();
        rate = driver.downsampling_rate;
        benchmark::DoNotOptimize(driver.downsampled_image);
    }
    state.counters["rate"] = rate;
}
BENCHMARK(BM_WorkingImage)->Unit(benchmark::kMillisecond);

// The working image of the photo, made once for the later stages.
const common::BasicImage& working_image() {
    static std::unique_ptr<common::BasicImage> working = [] {
        hybrid::HybridRegistration driver;
        driver.set_input_image(photo().record());
        driver.preprocessing();
        return std::make_unique<common::BasicImage>(*driver.downsampled_image);
    }();
    return *working;
}

// The contour image of the binary stage (binary objects) or of the edge stage (edge objects).
void make_contour_image(const common::BasicImage& work, bool edges, common::BasicImage& contours) {
    geometric_test::AdaptiveContourGenerator generator(work, contours);
    if (edges) {
        generator.generate_edge_objects();
    } else {
        generator.generate_binary_objects();
    }
}

// Stages 2 and 3: the contour image of a contour stage alone, and the large
// blobs with the page sides along them on that image.
void BM_ContourImage(benchmark::State& state) {
    const common::BasicImage& work = working_image();
    const bool edges = state.range(0) != 0;
    for (auto _ : state) {
        common::BasicImage contours;
        make_contour_image(work, edges, contours);
        benchmark::DoNotOptimize(contours.get_data());
    }
    state.counters["work_w"] = work.get_width();
    state.counters["work_h"] = work.get_height();
}
BENCHMARK(BM_ContourImage)->ArgName("edges")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_BlobsAndSides(benchmark::State& state) {
    const common::BasicImage& work = working_image();
    const bool edges = state.range(0) != 0;
    common::BasicImage contours;
    make_contour_image(work, edges, contours);
    geometric_test::OperationalBoundingEdgeRegistration search;
    int result = 0;
    for (auto _ : state) {
        geometric_test::BoundingLineArrayWrapper wrapper(work, !edges);
        result = search.estimate_boundaries_from_large_blobs(contours, wrapper);
    }
    state.counters["sides_found"] = result == 0 ? 1 : 0;
}
BENCHMARK(BM_BlobsAndSides)->ArgName("edges")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The whole staged search on the working image, with the translation of its
// sides that the driver makes afterwards: everything but stage 1 and the handle.
void BM_SearchOnWorkingImage(benchmark::State& state) {
    const common::BasicImage& work = working_image();
    int result = 0;
    for (auto _ : state) {
        geometric_test::LineRegistration search(
            &work, geometric_test::OperationalBoundingEdgeRegistration::BINARY_EDGE_LINE_SEARCH);
        result = search.run_registration();
        benchmark::DoNotOptimize(search.corners.data());
    }
    state.counters["result"] = result;
}
BENCHMARK(BM_SearchOnWorkingImage)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

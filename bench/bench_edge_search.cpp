// The page-edge search on a 12-megapixel phone photo (sample_photo.h), end
// to end from the caller's record to the corners, and each of its stages
// alone on the same photo, so that the share of each stage can be read off
// the medians; the whole hybrid run and its stages on the same photo and on
// a text-only photo of the same size.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "common/basic_image.h"
#include "cornersearch/adaptive_contour_generator.h"
#include "cornersearch/bounding_edge_registration.h"
#include "morvane/morvane.h"
#include "registration/hybrid_registration.h"
#include "registration/line_registration.h"
#include "sample_photo.h"
#include "text_search_stages.h"

namespace {

using bench_sample::kScale;
using bench_sample::photo;
using bench_sample::working_image;

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

// The text-only photo: a page of the shared set whose frame lies wholly
// inside the page, so that only its text tells the geometry, scaled like the
// sample to 3000 x 4000; null when the shared set is not there.
const bench_sample::Photo* text_only_photo() {
    static const std::unique_ptr<bench_sample::Photo> scaled = [] {
        auto p = std::make_unique<bench_sample::Photo>();
        std::string problem;
        if (!bench_sample::read_scaled_photo(MORVANE_SHARED_DIR "/pages/page_0001016.jpg", *p, problem)) p.reset();
        return p;
    }();
    return scaled.get();
}

// Argument 0: the sample photo; 1: the text-only photo.
const bench_sample::Photo* photo_of(benchmark::State& state) {
    const bench_sample::Photo* p = state.range(0) == 0 ? &photo() : text_only_photo();
    if (p == nullptr) state.SkipWithError("the shared set's text-only page is not there");
    return p;
}

// The whole hybrid run through the shared library: the edge search, then the
// text search unless the edges settle the page at once.
void BM_HybridSearch(benchmark::State& state) {
    const bench_sample::Photo* p = photo_of(state);
    if (p == nullptr) return;
    const ImageCApi record = p->record();
    int result = 0;
    ControlPointCorners corners{};
    for (auto _ : state) {
        void* handle = corrector_create();
        result = run_projective_correction(handle, &record);
        obtain_four_corners(handle, &corners);
        destroy_corrector(handle);
        benchmark::DoNotOptimize(corners);
    }
    state.counters["result"] = result;
    if (state.range(0) == 0) state.counters["corner_error_px"] = corner_error(corners);
}
BENCHMARK(BM_HybridSearch)->ArgName("photo")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The hybrid run up to and including one stage, from the caller's record:
// 0 the working image, 1 the edge search, then the text search's stages
// (text_search_stages.h): 2 page analysis, 3 eigenpoint groups, 4 text lines
// and the horizontal search, 5 the vertical search, 6 the corners. A stage's
// own time is the difference of two neighbouring medians (timing a stage
// alone would pause the clock around seconds of set-up per iteration). The
// counter `reached` is 0 when the text search's main line ends before the
// last stage asked for.
void BM_HybridUpToStage(benchmark::State& state) {
    const bench_sample::Photo* p = photo_of(state);
    if (p == nullptr) return;
    const ImageCApi record = p->record();
    const int last = static_cast<int>(state.range(1));
    bool reached = true;
    for (auto _ : state) {
        hybrid::HybridRegistration driver;
        driver.set_input_image(record);
        driver.preprocessing();
        if (last >= 1) driver.run_edge_searching(false);
        if (last < 2) continue;
        bench_text::TextSearch search(driver);
        reached = true;
        for (int s = 0; s <= last - 2 && reached; ++s)
            reached = bench_text::run_stage(search, static_cast<bench_text::Stage>(s));
        benchmark::DoNotOptimize(search.feature.corners.data());
    }
    state.counters["reached"] = reached ? 1 : 0;
}
BENCHMARK(BM_HybridUpToStage)
    ->ArgNames({"photo", "stage"})
    ->ArgsProduct({{0, 1}, {0, 1, 2, 3, 4, 5, 6}})
    ->Unit(benchmark::kMillisecond);

// The text search's stages 2 to 6 alone on the text-only photo, the run up
// to the stage before done with the clock paused. The later stages take
// about a millisecond, under the noise of the differences above; the long
// paused set-up is why the iterations are fixed.
void BM_TextStageAlone(benchmark::State& state) {
    const bench_sample::Photo* p = photo_of(state);
    if (p == nullptr) return;
    const ImageCApi record = p->record();
    const auto stage = static_cast<bench_text::Stage>(state.range(1) - 2);
    bool reached = true;
    for (auto _ : state) {
        state.PauseTiming();
        {
            hybrid::HybridRegistration driver;
            driver.set_input_image(record);
            driver.run_edge_searching(false);
            bench_text::TextSearch search(driver);
            reached = true;
            for (int s = 0; s < stage && reached; ++s)
                reached = bench_text::run_stage(search, static_cast<bench_text::Stage>(s));
            state.ResumeTiming();
            if (reached) bench_text::run_stage(search, stage);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.counters["reached"] = reached ? 1 : 0;
}
BENCHMARK(BM_TextStageAlone)
    ->ArgNames({"photo", "stage"})
    ->ArgsProduct({{1}, {2, 3, 4, 5, 6}})
    ->Iterations(10)
    ->Unit(benchmark::kMillisecond);

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

// The quality grade of a 12-megapixel phone photo (sample_photo.h) through
// the flat functions, as a caller makes it: of the whole photo, and of the
// page inside its known corners. Each entry reports the grade and, as
// peak_MB, how far one grade raises the resident memory of a fresh process.
// No peer library grades an image this way.
#include <benchmark/benchmark.h>

#include "morvane/morvane.h"
#include "peak_memory.h"
#include "sample_photo.h"

namespace {

// The page of samples/page.corners in the scaled photo's pixels.
const ControlPointCorners kPage = {{327, 2010, 2277, 553}, {535, 288, 2790, 2898}};

void grade(benchmark::State& state, const ControlPointCorners* page) {
    const ImageCApi record = bench_sample::photo().record();
    double quality = 0.0;
    state.counters["peak_MB"] = bench_memory::peak_growth_mb([&] {
        void* evaluator = create_image_quality_evaluator();
        evaluate_image_quality_given_corners(evaluator, &record, page);
        destroy_image_quality_evaluator(evaluator);
    });
    for (auto _ : state) {
        void* evaluator = create_image_quality_evaluator();
        quality = evaluate_image_quality_given_corners(evaluator, &record, page);
        destroy_image_quality_evaluator(evaluator);
    }
    state.counters["quality"] = quality;
}

void BM_QualityOfThePhoto(benchmark::State& state) { grade(state, nullptr); }
BENCHMARK(BM_QualityOfThePhoto)->Unit(benchmark::kMillisecond);

void BM_QualityOfThePage(benchmark::State& state) { grade(state, &kPage); }
BENCHMARK(BM_QualityOfThePage)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

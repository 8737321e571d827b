// Component formation and binary morphology on a binarized 1500x1125 text
// page, with OpenCV's and Leptonica's component labelling as peers when
// their development packages are installed.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "binary_text_page.h"
#include "common/basic_image.h"
#include "components/connected_component_calculator.h"
#include "pixel/geo_despeckle.h"
#include "pixel/geo_morphological.h"

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#ifdef MORVANE_HAVE_LEPTONICA
#include "leptonica_pix.h"
#endif

namespace {

using bench_page::binary_page;
using bench_page::kHeight;
using bench_page::kWidth;
using bench_page::page_ink;

void BM_FormationBitPacked(benchmark::State& state) {
    const common::BasicImage image = binary_page();
    for (auto _ : state) {
        geometric::ConnectedComponentCalculator calculator;
        calculator.formulate_connected_components(image);
        benchmark::DoNotOptimize(calculator.isemptyblob());
    }
    // Counted once, outside the timed loop.
    geometric::ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(image);
    size_t runs = 0;
    for (const geometric::RunsInLine& line : *calculator.get_runs_in_image()) runs += line.size();
    size_t strokes = 0;
    for (const geometric::StrokeArray& array : calculator.get_pool()) strokes += array.size();
    state.counters["components"] = static_cast<double>(calculator.size());
    state.counters["runs"] = static_cast<double>(runs);
    state.counters["strokes"] = static_cast<double>(strokes);
}
BENCHMARK(BM_FormationBitPacked)->Unit(benchmark::kMillisecond);

// The scan alone: the runs of every line of the bit-packed page.
void BM_RunsOfPage(benchmark::State& state) {
    const common::BasicImage image = binary_page();
    for (auto _ : state) {
        geometric::RunsInImage runs(image);
        benchmark::DoNotOptimize(runs[0].size());
    }
}
BENCHMARK(BM_RunsOfPage)->Unit(benchmark::kMillisecond);

void BM_FormationGray(benchmark::State& state) {
    common::BasicImage image = binary_page();
    image.convert_binary_to_gray();
    for (auto _ : state) {
        geometric::ConnectedComponentCalculator calculator;
        calculator.formulate_connected_components(image);
        benchmark::DoNotOptimize(calculator.isemptyblob());
    }
}
BENCHMARK(BM_FormationGray)->Unit(benchmark::kMillisecond);

void BM_RemoveIsolatedPixel(benchmark::State& state) {
    const common::BasicImage image = binary_page();
    common::BasicImage target(kHeight, kWidth, common::BINARY);
    for (auto _ : state) {
        geometric::GeoDespeckle::removeIsolatedPixel(image, target);
        benchmark::DoNotOptimize(target.get_data());
    }
}
BENCHMARK(BM_RemoveIsolatedPixel)->Unit(benchmark::kMillisecond);

void BM_DilateXY(benchmark::State& state) {
    const common::BasicImage image = binary_page();
    common::BasicImage target(kHeight, kWidth, common::BINARY);
    for (auto _ : state) {
        geometric::GeoMorphological::dilate_xy(image, target);
        benchmark::DoNotOptimize(target.get_data());
    }
}
BENCHMARK(BM_DilateXY)->Unit(benchmark::kMillisecond);

// Erosion changes the page, so each round works on a fresh copy; the copy is
// timed too and is small beside the pass.
void BM_ErodeX(benchmark::State& state) {
    const common::BasicImage image = binary_page();
    common::BasicImage work(image);
    for (auto _ : state) {
        std::memcpy(work.get_data(), image.get_data(), static_cast<size_t>(image.get_data_size()));
        geometric::GeoMorphological::erode_x(work, 1);
        benchmark::DoNotOptimize(work.get_data());
    }
}
BENCHMARK(BM_ErodeX)->Unit(benchmark::kMillisecond);

void BM_ErodeY(benchmark::State& state) {
    const common::BasicImage image = binary_page();
    common::BasicImage work(image);
    for (auto _ : state) {
        std::memcpy(work.get_data(), image.get_data(), static_cast<size_t>(image.get_data_size()));
        geometric::GeoMorphological::erode_y(work, 1);
        benchmark::DoNotOptimize(work.get_data());
    }
}
BENCHMARK(BM_ErodeY)->Unit(benchmark::kMillisecond);

#ifdef MORVANE_HAVE_OPENCV
// The same page as bytes, ink 255, labelled with statistics on one thread.
void BM_OpenCVConnectedComponentsWithStats(benchmark::State& state) {
    cv::setNumThreads(1);
    const std::vector<unsigned char>& ink = page_ink();
    cv::Mat page(kHeight, kWidth, CV_8UC1);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) page.at<unsigned char>(y, x) = ink[static_cast<size_t>(y) * kWidth + x] ? 255 : 0;
    cv::Mat labels, stats, centroids;
    int components = 0;
    for (auto _ : state) {
        components = cv::connectedComponentsWithStats(page, labels, stats, centroids, 8, CV_32S);
        benchmark::DoNotOptimize(labels.data);
    }
    state.counters["components"] = components - 1;  // label 0 is the background
}
BENCHMARK(BM_OpenCVConnectedComponentsWithStats)->Unit(benchmark::kMillisecond);
#endif

#ifdef MORVANE_HAVE_LEPTONICA
// The same 1 bpp page, 8-connected, boxes only.
void BM_LeptonicaPixConnComp(benchmark::State& state) {
    PIX* pix = bench_leptonica::to_pix(binary_page());
    int components = 0;
    for (auto _ : state) {
        BOXA* boxes = pixConnComp(pix, nullptr, 8);
        components = boxaGetCount(boxes);
        boxaDestroy(&boxes);
    }
    state.counters["components"] = components;
    pixDestroy(&pix);
}
BENCHMARK(BM_LeptonicaPixConnComp)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

BENCHMARK_MAIN();

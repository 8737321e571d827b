// The blob calculator's label image and contours on the binarized 1500x1125
// text page, beside OpenCV's connectedComponents and findContours (one
// thread) when its development package is installed.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "binary_text_page.h"
#include "common/basic_image.h"
#include "components/connected_component_calculator.h"

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

using bench_page::kHeight;
using bench_page::kWidth;

// What calculate_label_image does for a caller: a fresh calculator forms the
// page and labels it into the caller's array.
void BM_LabelImage(benchmark::State& state) {
    const common::BasicImage image = bench_page::binary_page();
    std::vector<int> caller(static_cast<size_t>(kWidth) * kHeight);
    for (auto _ : state) {
        geometric::ConnectedComponentCalculator calculator;
        calculator.calculate_label_image(image, caller.data(), 0);
        benchmark::DoNotOptimize(caller.data());
    }
}
BENCHMARK(BM_LabelImage)->Unit(benchmark::kMillisecond);

// A caller that asks for the boxes after the labels: the strokes that the
// labels did without are formed then, from the runs the labels kept.
void BM_LabelImageThenDimensions(benchmark::State& state) {
    const common::BasicImage image = bench_page::binary_page();
    std::vector<int> caller(static_cast<size_t>(kWidth) * kHeight);
    std::vector<int> heights, widths;
    for (auto _ : state) {
        geometric::ConnectedComponentCalculator calculator;
        calculator.calculate_label_image(image, caller.data(), 0);
        heights.clear();
        widths.clear();
        calculator.calculate_blob_dimensions(image, heights, widths);
        benchmark::DoNotOptimize(caller.data());
        benchmark::DoNotOptimize(heights.data());
    }
}
BENCHMARK(BM_LabelImageThenDimensions)->Unit(benchmark::kMillisecond);

// The labels alone: the calculator has formed the page once, before the timing.
void BM_LabelWriting(benchmark::State& state) {
    const common::BasicImage image = bench_page::binary_page();
    std::vector<int> caller(static_cast<size_t>(kWidth) * kHeight);
    geometric::ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(image);
    for (auto _ : state) {
        calculator.calculate_label_image(image, caller.data(), 0);
        benchmark::DoNotOptimize(caller.data());
    }
}
BENCHMARK(BM_LabelWriting)->Unit(benchmark::kMillisecond);

// What obtain_blob_contours_one_by_one does: form, trace every component,
// copy the points into two arrays of the caller.
void BM_Contours(benchmark::State& state) {
    const common::BasicImage image = bench_page::binary_page();
    size_t points = 0;
    for (auto _ : state) {
        geometric::ConnectedComponentCalculator calculator;
        std::vector<geometric::Geocoordinate<int>> contour;
        calculator.obtain_blob_contours_one_by_one(image, contour);
        std::vector<int> xs(contour.size()), ys(contour.size());
        for (size_t i = 0; i < contour.size(); ++i) {
            xs[i] = contour[i].x;
            ys[i] = contour[i].y;
        }
        benchmark::DoNotOptimize(xs.data());
        benchmark::DoNotOptimize(ys.data());
        points = contour.size();
    }
    state.counters["points"] = static_cast<double>(points);
}
BENCHMARK(BM_Contours)->Unit(benchmark::kMillisecond);

#ifdef MORVANE_HAVE_OPENCV
cv::Mat opencv_page() {
    cv::Mat page(kHeight, kWidth, CV_8UC1);
    const std::vector<unsigned char>& ink = bench_page::page_ink();
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) page.at<unsigned char>(y, x) = ink[static_cast<size_t>(y) * kWidth + x];
    return page;
}

void BM_OpenCVConnectedComponents(benchmark::State& state) {
    cv::setNumThreads(1);
    const cv::Mat page = opencv_page();
    cv::Mat labels;
    int count = 0;
    for (auto _ : state) {
        count = cv::connectedComponents(page, labels, 8, CV_32S);
        benchmark::DoNotOptimize(labels.data);
    }
    state.counters["components"] = count - 1;
}
BENCHMARK(BM_OpenCVConnectedComponents)->Unit(benchmark::kMillisecond);

// RETR_LIST traces the holes as well as the outer borders.
void BM_OpenCVFindContours(benchmark::State& state) {
    cv::setNumThreads(1);
    const cv::Mat page = opencv_page();
    size_t points = 0;
    size_t contours_found = 0;
    for (auto _ : state) {
        std::vector<std::vector<cv::Point>> contours;
        cv::findContours(page, contours, cv::RETR_LIST, cv::CHAIN_APPROX_NONE);
        benchmark::DoNotOptimize(contours.data());
        contours_found = contours.size();
        points = 0;
        for (const auto& c : contours) points += c.size();
    }
    state.counters["points"] = static_cast<double>(points);
    state.counters["contours"] = static_cast<double>(contours_found);
}
BENCHMARK(BM_OpenCVFindContours)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

BENCHMARK_MAIN();

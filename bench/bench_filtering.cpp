// Filtering and edge detection on a 1500x1125 page photo (the working-image
// size): the three box forms at 7x7 and 35x35 beside cv::blur, the weighted
// 3x3, and edge detection beside cv::Canny with the same thresholds and a
// 3x3 aperture. OpenCV runs on one thread, as the library does. Our
// magnitudes are a quarter of the Sobel sum, so the same numbers are far lower
// thresholds for cv::Canny; a second OpenCV entry takes four times the
// thresholds with the L2 norm, which finds about as many edges as ours.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "common/basic_image.h"
#include "pixel/average_filtering.h"
#include "pixel/canny_edge_detector.h"
#include "pixel/weighted_filtering.h"

#include "gray_page_photo.h"

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

using bench_photo::kHeight;
using bench_photo::kWidth;
using bench_photo::page;

common::BasicImage page_view() { return common::BasicImage(page().data(), kHeight, kWidth, common::GRAY); }

// The thresholds the edge search takes on a quiet page: 5% and 10% of the mean.
void canny_thresholds(int& low, int& high) {
    double sum = 0.0;
    for (unsigned char value : page()) sum += value;
    const double mean = sum / static_cast<double>(page().size());
    low = static_cast<int>(0.05 * mean);
    high = static_cast<int>(0.1 * mean);
}

typedef void (*BoxForm)(const common::Image&, common::BasicImage&, int, int);

template <BoxForm form>
void BM_Box(benchmark::State& state) {
    const common::BasicImage image = page_view();
    const int window = static_cast<int>(state.range(0));
    for (auto _ : state) {
        common::BasicImage output;
        form(image, output, window, window);
        benchmark::DoNotOptimize(output.get_data());
    }
}
void BM_BoxSummedAreaTable(benchmark::State& state) { BM_Box<&geometric::AverageFiltering::use_summed_area_table>(state); }
void BM_BoxNative(benchmark::State& state) { BM_Box<&geometric::AverageFiltering::use_native>(state); }
void BM_BoxRunningColumns(benchmark::State& state) { BM_Box<&geometric::AverageFiltering::use_opencv_algorithm>(state); }
BENCHMARK(BM_BoxSummedAreaTable)->ArgName("window")->Arg(7)->Arg(35)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BoxNative)->ArgName("window")->Arg(7)->Arg(35)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BoxRunningColumns)->ArgName("window")->Arg(7)->Arg(35)->Unit(benchmark::kMillisecond);

void BM_Weighted3By3(benchmark::State& state) {
    const common::BasicImage image = page_view();
    for (auto _ : state) {
        common::BasicImage output;
        geometric::WeightedFiltering::perform_filtering_3_by_3(image, output, 4);
        benchmark::DoNotOptimize(output.get_data());
    }
}
BENCHMARK(BM_Weighted3By3)->Unit(benchmark::kMillisecond);

void BM_CannyEdgeDetector(benchmark::State& state) {
    const common::BasicImage image = page_view();
    int low, high;
    canny_thresholds(low, high);
    common::BasicImage output;
    for (auto _ : state) {
        geometric::CannyEdgeDetector::perform_edge_detect(low, high, image, output);
        benchmark::DoNotOptimize(output.get_data());
    }
    const long edges = static_cast<long>(std::count(output.get_data(), output.get_data() + output.get_data_size(), 255));
    state.counters["low"] = low;
    state.counters["high"] = high;
    state.counters["edge_pixels"] = static_cast<double>(edges);
}
BENCHMARK(BM_CannyEdgeDetector)->Unit(benchmark::kMillisecond);

#ifdef MORVANE_HAVE_OPENCV
void BM_OpenCVBlur(benchmark::State& state) {
    cv::setNumThreads(1);
    const cv::Mat image(kHeight, kWidth, CV_8UC1, page().data());
    const int window = static_cast<int>(state.range(0));
    for (auto _ : state) {
        cv::Mat output;
        cv::blur(image, output, cv::Size(window, window), cv::Point(-1, -1), cv::BORDER_REFLECT_101);
        benchmark::DoNotOptimize(output.data);
    }
}
BENCHMARK(BM_OpenCVBlur)->ArgName("window")->Arg(7)->Arg(35)->Unit(benchmark::kMillisecond);

void BM_OpenCVCanny(benchmark::State& state) {
    cv::setNumThreads(1);
    const cv::Mat image(kHeight, kWidth, CV_8UC1, page().data());
    int low, high;
    canny_thresholds(low, high);
    const int scale = static_cast<int>(state.range(0));
    cv::Mat output;
    for (auto _ : state) {
        cv::Canny(image, output, scale * low, scale * high, 3, scale != 1);
        benchmark::DoNotOptimize(output.data);
    }
    const long edges = static_cast<long>(cv::countNonZero(output));
    state.counters["edge_pixels"] = static_cast<double>(edges);
}
BENCHMARK(BM_OpenCVCanny)->ArgName("threshold_scale")->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

BENCHMARK_MAIN();

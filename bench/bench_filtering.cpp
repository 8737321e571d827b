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

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

const int kWidth = 1500;
const int kHeight = 1125;

struct Lcg {
    uint32_t state = 20260523u;
    uint32_t next() { return state = state * 1664525u + 1013904223u; }
    int below(int n) { return static_cast<int>((next() >> 8) % static_cast<uint32_t>(n)); }
};

// A page slightly turned on a darker, unevenly lit desk, with lines of
// text-like strokes (stems, bars and dots of 2 to 3 pixels), a ruled table,
// a little sensor noise and a 3x3 blur for the lens.
std::vector<unsigned char> make_page() {
    std::vector<float> canvas(static_cast<std::size_t>(kWidth) * kHeight);
    const double angle = 0.035;
    const double c = std::cos(angle), s = std::sin(angle);
    const double cx = kWidth / 2.0, cy = kHeight / 2.0, half_w = 560.0, half_h = 480.0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const double u = (x - cx) * c + (y - cy) * s;
            const double v = -(x - cx) * s + (y - cy) * c;
            const bool on_page = std::fabs(u) <= half_w && std::fabs(v) <= half_h;
            const double light = 1.0 - 0.25 * (x + y) / static_cast<double>(kWidth + kHeight);
            canvas[static_cast<std::size_t>(y) * kWidth + x] = static_cast<float>((on_page ? 225.0 : 90.0) * light);
        }
    // Ink in page coordinates (u, v), drawn as small rectangles.
    auto ink = [&](double u0, double v0, double u1, double v1) {
        for (double v = v0; v <= v1; v += 0.5)
            for (double u = u0; u <= u1; u += 0.5) {
                const int x = static_cast<int>(cx + u * c - v * s + 0.5);
                const int y = static_cast<int>(cy + u * s + v * c + 0.5);
                if (x >= 0 && x < kWidth && y >= 0 && y < kHeight) canvas[static_cast<std::size_t>(y) * kWidth + x] = 35.0f;
            }
    };
    Lcg random;
    for (double v = -440.0; v < 150.0; v += 24.0) {
        double u = -500.0;
        while (u < 500.0) {
            const int letters = 2 + random.below(8);
            for (int l = 0; l < letters && u < 500.0; ++l) {
                const int kind = random.below(5);
                const double stroke = 2.0 + random.below(2);
                if (kind == 0) ink(u, v - 14, u + stroke, v);                       // ascender stem
                if (kind == 1) ink(u, v - 9, u + stroke, v);                        // short stem
                if (kind == 2) { ink(u, v - 9, u + 7, v - 9 + stroke); ink(u, v - 9, u + stroke, v); }  // "r"
                if (kind == 3) { ink(u, v - 9, u + stroke, v); ink(u + 6, v - 9, u + 6 + stroke, v); ink(u, v - 9, u + 7, v - 9 + stroke); }  // "n"
                if (kind == 4) { ink(u, v - 9, u + 7, v); ink(u + 2, v - 7, u + 5, v - 2); }  // "o"-like blob
                u += 10.0;
            }
            u += 8.0;
        }
    }
    // A ruled table below the text.
    for (int r = 0; r <= 6; ++r) ink(-480.0, 180.0 + r * 40.0, 480.0, 181.5 + r * 40.0);
    for (int k = 0; k <= 4; ++k) ink(-480.0 + k * 240.0, 180.0, -478.5 + k * 240.0, 421.5);

    std::vector<unsigned char> page(canvas.size());
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            float sum = 0.0f;
            int n = 0;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) {
                    const int xx = x + dx, yy = y + dy;
                    if (xx < 0 || yy < 0 || xx >= kWidth || yy >= kHeight) continue;
                    sum += canvas[static_cast<std::size_t>(yy) * kWidth + xx];
                    ++n;
                }
            const float value = sum / n + static_cast<float>(random.below(9)) - 4.0f;
            page[static_cast<std::size_t>(y) * kWidth + x] = static_cast<unsigned char>(std::min(255.0f, std::max(0.0f, value)));
        }
    return page;
}

std::vector<unsigned char>& page() {
    static std::vector<unsigned char> pixels = make_page();
    return pixels;
}

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

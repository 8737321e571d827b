// Binarization of a 1500x1125 gray page photo (the working-image size): Otsu
// beside cv::threshold with THRESH_OTSU, and the quick Sauvola beside
// Leptonica's pixSauvolaBinarize (half-window 17, factor 0.2) and OpenCV's
// contrib niBlackThreshold in its Sauvola variant (35x35, k 0.2), and the
// multi-scale method beside Leptonica's pixSauvolaBinarizeTiled (half-window
// 17, factor 0.1, 4 by 3 tiles), each peer when it is installed. Every entry also reports, as the counter peak_MB, how
// far one run raises the resident memory of a fresh process above what the
// page and the program already hold.
#include <benchmark/benchmark.h>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <vector>

#include "binarization/omin_binarization.h"
#include "binarization/otsu_binarization.h"
#include "binarization/quick_sauvola.h"
#include "binarization/sauvola_binarization.h"
#include "binarization/sauvola_binarization_original.h"
#include "binarization/wolf_binarization_original.h"
#include "common/basic_image.h"

#include "gray_page_photo.h"

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#ifdef MORVANE_HAVE_OPENCV_XIMGPROC
#include <opencv2/ximgproc.hpp>
#endif
#ifdef MORVANE_HAVE_LEPTONICA
#include <leptonica/allheaders.h>
#endif

namespace {

using bench_photo::kHeight;
using bench_photo::kWidth;
using bench_photo::page;

// Resident kilobytes of this process: the current figure and its high-water mark.
long status_kilobytes(const char* field) {
    FILE* file = std::fopen("/proc/self/status", "r");
    if (file == nullptr) return -1;
    char line[256];
    long value = -1;
    const size_t length = std::strlen(field);
    while (std::fgets(line, sizeof line, file) != nullptr)
        if (std::strncmp(line, field, length) == 0) value = std::atol(line + length);
    std::fclose(file);
    return value;
}

// Runs work once in a forked child and answers how far it raised the
// resident size, in megabytes (-1 when the figures cannot be read). The child
// first gives its free heap back and fixes the allocator's mapping threshold,
// so that what the method allocates is touched afresh and counted, then
// resets its high-water mark.
double peak_growth_mb(const std::function<void()>& work) {
    int channel[2];
    if (pipe(channel) != 0) return -1.0;
    const pid_t child = fork();
    if (child == 0) {
        close(channel[0]);
        mallopt(M_MMAP_THRESHOLD, 64 * 1024);
        mallopt(M_TRIM_THRESHOLD, 64 * 1024);
        malloc_trim(0);
        if (FILE* clear = std::fopen("/proc/self/clear_refs", "w")) {
            std::fputs("5", clear);
            std::fclose(clear);
        }
        const long before = status_kilobytes("VmRSS:");
        work();
        const long peak = status_kilobytes("VmHWM:");
        const long growth = (before < 0 || peak < 0) ? -1024 : peak - before;
        if (write(channel[1], &growth, sizeof growth) != static_cast<ssize_t>(sizeof growth)) _exit(1);
        _exit(0);
    }
    close(channel[1]);
    long growth = -1024;
    if (child > 0) {
        if (read(channel[0], &growth, sizeof growth) != static_cast<ssize_t>(sizeof growth)) growth = -1024;
        waitpid(child, nullptr, 0);
    }
    close(channel[0]);
    return static_cast<double>(growth) / 1024.0;
}

// Times work and reports its memory growth beside the time.
void run_entry(benchmark::State& state, const std::function<void()>& work) {
    page();  // built before the child is forked, so it is not counted
    state.counters["peak_MB"] = peak_growth_mb(work);
    for (auto _ : state) work();
}

common::BasicImage page_view() { return common::BasicImage(page().data(), kHeight, kWidth, common::GRAY); }

// The frame's run as the drivers make it: a gray copy, the method, no
// despeckling (which is timed on its own with the morphology).
template <class Method>
void run_frame(const std::function<void(Method&)>& configure) {
    const common::BasicImage input = page_view();
    common::BasicImage output;
    Method method(&input, &output);
    method.set_despeckle(false);
    configure(method);
    method.run_binarization();
    benchmark::DoNotOptimize(output.get_line_pointer(0));
}

void BM_Otsu(benchmark::State& state) {
    run_entry(state, [] { run_frame<geometric::OtsuBinarization>([](geometric::OtsuBinarization& otsu) { otsu.set_invert(true); }); });
}
BENCHMARK(BM_Otsu)->Unit(benchmark::kMillisecond);

void BM_OtsuThresholdSearch(benchmark::State& state) {
    const common::BasicImage input = page_view();
    run_entry(state, [&input] {
        unsigned char threshold = 0;
        geometric::OtsuBinarization::obtain_threshold(input, threshold);
        benchmark::DoNotOptimize(threshold);
    });
}
BENCHMARK(BM_OtsuThresholdSearch)->Unit(benchmark::kMillisecond);

// The quick method alone: it smooths its gray input in place, so each run
// starts from a fresh copy (the copy is part of the time, as in the frame).
void BM_QuickSauvola(benchmark::State& state) {
    run_entry(state, [] {
        const common::BasicImage view = page_view();
        common::BasicImage gray(view);  // a deep copy: the page itself must stay unsmoothed
        common::BasicImage output(kHeight, kWidth, common::BINARY);
        geometric::QuickSauvola sauvola(&gray, &output);
        sauvola.perform_quick_sauvola_binarization();
        benchmark::DoNotOptimize(output.get_line_pointer(0));
    });
}
BENCHMARK(BM_QuickSauvola)->Unit(benchmark::kMillisecond);

void BM_SauvolaBinarization(benchmark::State& state) {
    run_entry(state, [] { run_frame<geometric::SauvolaBinarization>([](geometric::SauvolaBinarization&) {}); });
}
BENCHMARK(BM_SauvolaBinarization)->Unit(benchmark::kMillisecond);

void BM_SauvolaBinarizationOriginal(benchmark::State& state) {
    run_entry(state, [] { run_frame<geometric::SauvolaBinarizationOriginal>([](geometric::SauvolaBinarizationOriginal&) {}); });
}
BENCHMARK(BM_SauvolaBinarizationOriginal)->Unit(benchmark::kMillisecond);

void BM_WolfBinarizationOriginal(benchmark::State& state) {
    run_entry(state, [] { run_frame<geometric::WolfBinarizationOriginal>([](geometric::WolfBinarizationOriginal&) {}); });
}
BENCHMARK(BM_WolfBinarizationOriginal)->Unit(benchmark::kMillisecond);

// The multi-scale method through the frame: its pyramid, the threshold maps
// from scale 1 on (the page is over 1000 pixels long), the scale map and the
// full-size page.
void BM_OminBinarization(benchmark::State& state) {
    run_entry(state, [] { run_frame<geometric::OminBinarization>([](geometric::OminBinarization&) {}); });
}
BENCHMARK(BM_OminBinarization)->Unit(benchmark::kMillisecond);

#ifdef MORVANE_HAVE_OPENCV
cv::Mat opencv_page() { return cv::Mat(kHeight, kWidth, CV_8UC1, page().data()); }

void BM_OpenCVThresholdOtsu(benchmark::State& state) {
    cv::setNumThreads(1);
    const cv::Mat input = opencv_page();
    run_entry(state, [&input] {
        cv::Mat output;
        cv::threshold(input, output, 0, 255, cv::THRESH_BINARY_INV | cv::THRESH_OTSU);
        benchmark::DoNotOptimize(output.data);
    });
}
BENCHMARK(BM_OpenCVThresholdOtsu)->Unit(benchmark::kMillisecond);
#endif

#ifdef MORVANE_HAVE_OPENCV_XIMGPROC
void BM_OpenCVNiBlackSauvola(benchmark::State& state) {
    cv::setNumThreads(1);
    const cv::Mat input = opencv_page();
    run_entry(state, [&input] {
        cv::Mat output;
        cv::ximgproc::niBlackThreshold(input, output, 255, cv::THRESH_BINARY_INV, 35, 0.2,
                                       cv::ximgproc::BINARIZATION_SAUVOLA);
        benchmark::DoNotOptimize(output.data);
    });
}
BENCHMARK(BM_OpenCVNiBlackSauvola)->Unit(benchmark::kMillisecond);
#endif

#ifdef MORVANE_HAVE_LEPTONICA
PIX* leptonica_page() {
    PIX* pix = pixCreate(kWidth, kHeight, 8);
    l_uint32* words = pixGetData(pix);
    const int words_per_line = pixGetWpl(pix);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            SET_DATA_BYTE(words + y * words_per_line, x, page()[static_cast<size_t>(y) * kWidth + x]);
    return pix;
}

void BM_LeptonicaSauvola(benchmark::State& state) {
    PIX* pix = leptonica_page();
    run_entry(state, [pix] {
        PIX* binary = nullptr;
        pixSauvolaBinarize(pix, 17, 0.2f, 1, nullptr, nullptr, nullptr, &binary);
        benchmark::DoNotOptimize(binary);
        pixDestroy(&binary);
    });
    pixDestroy(&pix);
}
BENCHMARK(BM_LeptonicaSauvola)->Unit(benchmark::kMillisecond);

void BM_LeptonicaSauvolaTiled(benchmark::State& state) {
    PIX* pix = leptonica_page();
    run_entry(state, [pix] {
        PIX* binary = nullptr;
        pixSauvolaBinarizeTiled(pix, 17, 0.1f, 4, 3, nullptr, &binary);
        benchmark::DoNotOptimize(binary);
        pixDestroy(&binary);
    });
    pixDestroy(&pix);
}
BENCHMARK(BM_LeptonicaSauvolaTiled)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

BENCHMARK_MAIN();

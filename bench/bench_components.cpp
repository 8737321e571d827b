// Component formation and binary morphology on a binarized 1500x1125 text
// page, with OpenCV's and Leptonica's component labelling as peers when
// their development packages are installed.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "components/connected_component_calculator.h"
#include "pixel/geo_despeckle.h"
#include "pixel/geo_morphological.h"

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#ifdef MORVANE_HAVE_LEPTONICA
#include <leptonica/allheaders.h>
#endif

namespace {

constexpr int kWidth = 1500;
constexpr int kHeight = 1125;

// What a Sauvola binarization makes of a printed page: text lines of small
// glyph-like blobs with some broken and touching strokes, speckles, two
// rules, and a picture block that breaks up into many irregular blobs.
// Ink is 1. Fixed seed: the same page in every run.
std::vector<unsigned char> make_page() {
    std::vector<unsigned char> ink(static_cast<size_t>(kWidth) * kHeight, 0);
    std::mt19937 random(1125u);
    auto set = [&](int x, int y) {
        if (x >= 0 && y >= 0 && x < kWidth && y < kHeight) ink[static_cast<size_t>(y) * kWidth + x] = 1;
    };
    auto bar = [&](int x0, int y0, int x1, int y1) {
        for (int y = y0; y < y1; ++y)
            for (int x = x0; x < x1; ++x) set(x, y);
    };
    // Text: two columns of lines, 14-pixel x-height glyphs in a 26-pixel pitch.
    for (int column = 0; column < 2; ++column) {
        const int left = 90 + column * 690;
        const int right = left + 630;
        for (int base = 120; base < kHeight - 90; base += 26) {
            if (column == 1 && base > 330 && base < 680) continue;  // the picture block
            int x = left + static_cast<int>(random() % 20);
            while (x < right - 20) {
                const int letters = 2 + static_cast<int>(random() % 8);
                for (int k = 0; k < letters && x < right - 12; ++k) {
                    const int w = 6 + static_cast<int>(random() % 6);
                    const int top = base - 14 - ((random() % 4 == 0) ? 6 : 0);
                    const int bottom = base + ((random() % 6 == 0) ? 5 : 0);
                    switch (random() % 5) {
                        case 0:  // bowl
                            bar(x, top + 2, x + 2, bottom - 2);
                            bar(x + w - 2, top + 2, x + w, bottom - 2);
                            bar(x + 1, top, x + w - 1, top + 2);
                            bar(x + 1, bottom - 2, x + w - 1, bottom);
                            break;
                        case 1:  // stem and arch
                            bar(x, top, x + 2, bottom);
                            bar(x, base - 14, x + w, base - 12);
                            bar(x + w - 2, base - 14, x + w, bottom);
                            break;
                        case 2:  // two stems joined at the bottom
                            bar(x, top, x + 2, bottom);
                            bar(x + w - 2, base - 14, x + w, bottom);
                            bar(x, bottom - 2, x + w, bottom);
                            break;
                        case 3:  // cross
                            bar(x + w / 2 - 1, top, x + w / 2 + 1, bottom);
                            bar(x, base - 10, x + w, base - 8);
                            break;
                        default:  // diagonal stroke
                            for (int y = top; y < bottom; ++y) bar(x + (y - top) * w / (bottom - top), y,
                                                                   x + (y - top) * w / (bottom - top) + 2, y + 1);
                            break;
                    }
                    x += w + 2 + static_cast<int>(random() % 2);
                }
                x += 8 + static_cast<int>(random() % 6);
            }
        }
    }
    // Speckles.
    for (int i = 0; i < 1500; ++i) set(static_cast<int>(random() % kWidth), static_cast<int>(random() % kHeight));
    // Two rules.
    bar(80, 90, kWidth - 80, 93);
    bar(80, kHeight - 70, kWidth - 80, kHeight - 68);
    // Picture block: a smooth field plus noise, thresholded.
    for (int y = 340; y < 680; ++y) {
        for (int x = 790; x < 1410; ++x) {
            const int field = ((x * 7 + y * 3) % 97) + ((x * 2 - y * 5 + 4000) % 61) + static_cast<int>(random() % 60);
            if (field > 105) set(x, y);
        }
    }
    return ink;
}

const std::vector<unsigned char>& page_ink() {
    static const std::vector<unsigned char> ink = make_page();
    return ink;
}

common::BasicImage binary_page() {
    common::BasicImage image(kHeight, kWidth, common::BINARY);
    const std::vector<unsigned char>& ink = page_ink();
    for (int y = 0; y < kHeight; ++y) {
        unsigned char* line = image.get_line_pointer(y);
        for (int x = 0; x < kWidth; ++x)
            if (ink[static_cast<size_t>(y) * kWidth + x]) line[x >> 3] |= static_cast<unsigned char>(0x80 >> (x & 7));
    }
    return image;
}

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
    const common::BasicImage image = binary_page();
    PIX* pix = pixCreate(kWidth, kHeight, 1);
    l_uint32* words = pixGetData(pix);
    const int words_per_line = pixGetWpl(pix);
    for (int y = 0; y < kHeight; ++y) {
        const unsigned char* line = image.get_line_pointer(y);
        for (int w = 0; w < words_per_line; ++w) {
            const unsigned char* b = line + 4 * w;
            words[y * words_per_line + w] = (static_cast<l_uint32>(b[0]) << 24) | (static_cast<l_uint32>(b[1]) << 16) |
                                            (static_cast<l_uint32>(b[2]) << 8) | b[3];
        }
    }
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

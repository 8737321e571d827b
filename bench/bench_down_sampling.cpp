// Down-sampling of a 4000x3000 phone photo to the working image, beside
// OpenCV's area resize on one thread, and the whole gray conversion plus
// down-sampling of a 12-megapixel RGB photo.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "common/basic_image.h"
#include "pixel/image_integer_down_sampling.h"

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

const int kWidth = 4000;
const int kHeight = 3000;

// A photo-like scene: smooth gradients with a little fixed-seed noise, so
// that no route profits from flat input.
common::BasicImage make_photo(common::ImageType type) {
    common::BasicImage image(kHeight, kWidth, type);
    const int channels = type == common::RGB ? 3 : 1;
    uint32_t seed = 12345;
    for (int y = 0; y < kHeight; ++y) {
        unsigned char* row = image.get_line_pointer(y);
        for (int x = 0; x < kWidth; ++x)
            for (int c = 0; c < channels; ++c) {
                seed = seed * 1664525u + 1013904223u;
                const int value = (x * 255 / kWidth + y * 255 / kHeight) / 2 + 40 * c + static_cast<int>(seed >> 29);
                row[x * channels + c] = static_cast<unsigned char>(value > 255 ? 255 : value);
            }
    }
    return image;
}

const common::BasicImage& gray_photo() {
    static const common::BasicImage photo = make_photo(common::GRAY);
    return photo;
}

void BM_DownSamplingCombined(benchmark::State& state) {
    const int rate = static_cast<int>(state.range(0));
    const common::BasicImage& photo = gray_photo();
    common::BasicImage output;
    for (auto _ : state) {
        geometric::ImageIntegerDownSampling::DownSamplingCombined(photo, output, rate);
        benchmark::DoNotOptimize(output.get_data());
    }
}
BENCHMARK(BM_DownSamplingCombined)->Arg(2)->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond);

#ifdef MORVANE_HAVE_OPENCV
// The same job: the whole blocks only (the partial last block is dropped by
// both), area interpolation, one thread.
void BM_OpenCvResizeArea(benchmark::State& state) {
    cv::setNumThreads(1);
    const int rate = static_cast<int>(state.range(0));
    const common::BasicImage& photo = gray_photo();
    const int out_width = kWidth / rate;
    const int out_height = kHeight / rate;
    const cv::Mat source(kHeight, kWidth, CV_8UC1, photo.get_data());
    const cv::Mat blocks = source(cv::Rect(0, 0, out_width * rate, out_height * rate));
    cv::Mat output;
    for (auto _ : state) {
        cv::resize(blocks, output, cv::Size(out_width, out_height), 0, 0, cv::INTER_AREA);
        benchmark::DoNotOptimize(output.data);
    }
}
BENCHMARK(BM_OpenCvResizeArea)->Arg(2)->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond);
#endif

// What the corrector does with a 12-megapixel RGB photo before any search:
// deep copy, luminance gray, down-sampling by 3 (4000 and 3000 halved until
// both are at most 1500: 3000 -> 1500, 4000 -> 2000 -> 1000).
void BM_PreprocessRgbPhoto(benchmark::State& state) {
    static const common::BasicImage photo = make_photo(common::RGB);
    for (auto _ : state) {
        common::BasicImage gray(photo);
        gray.convert_rgb_to_gray(true);
        common::BasicImage working;
        geometric::ImageIntegerDownSampling::DownSamplingCombined(gray, working, 3);
        benchmark::DoNotOptimize(working.get_data());
    }
}
BENCHMARK(BM_PreprocessRgbPhoto)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

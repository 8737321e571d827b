// Down-sampling of a 4000x3000 phone photo to the working image, beside
// OpenCV's area resize on one thread; the corrector's whole preprocessing of
// a 12-megapixel RGB photo beside the warp of the same photo.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "common/basic_image.h"
#include "correction/projective_correction.h"
#include "pixel/image_integer_down_sampling.h"
#include "registration/hybrid_registration.h"

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

const common::BasicImage& rgb_photo() {
    static const common::BasicImage photo = make_photo(common::RGB);
    return photo;
}

// What the corrector does with a 12-megapixel RGB photo before any search:
// luminance gray, then down-sampling by 3 (3000 rows halve once to 1500,
// 4000 columns become 2000 and then 1000), through the driver itself on a
// view of the caller's buffer.
void BM_CorrectorPreprocessing(benchmark::State& state) {
    const common::BasicImage& photo = rgb_photo();
    for (auto _ : state) {
        common::BasicImage view(photo.get_data(), kHeight, kWidth, common::RGB);
        hybrid::HybridRegistration driver(&view);
        benchmark::DoNotOptimize(driver.preprocessing());
        benchmark::DoNotOptimize(driver.downsampled_image->get_data());
    }
}
BENCHMARK(BM_CorrectorPreprocessing)->Unit(benchmark::kMillisecond);

// Its two parts: the gray conversion alone ...
void BM_LuminanceGray(benchmark::State& state) {
    const common::BasicImage& photo = rgb_photo();
    for (auto _ : state) {
        common::BasicImage gray;
        gray.create_gray_from_rgb_luminance(photo);
        benchmark::DoNotOptimize(gray.get_data());
    }
}
BENCHMARK(BM_LuminanceGray)->Unit(benchmark::kMillisecond);

// ... and, for scale, the final warp of the same photo from a slanted page
// quadrilateral into an RGB output of about the same size.
void BM_WarpOfThePhoto(benchmark::State& state) {
    common::BasicImage photo(rgb_photo());
    const std::vector<geometric::Geocoordinate<float>> corners = {
        {180.0f, 120.0f}, {3850.0f, 60.0f}, {3950.0f, 2900.0f}, {60.0f, 2820.0f}};
    common::BasicImage output;
    for (auto _ : state) {
        geometric::ProjectiveCorrection correction(&photo, &output);
        correction.set_control_points(corners);
        benchmark::DoNotOptimize(correction.run_correction());
    }
}
BENCHMARK(BM_WarpOfThePhoto)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

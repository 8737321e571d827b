// The projective warp of a 12-megapixel phone photo into an A4 page at
// 300 dots per inch, RGB and gray, beside OpenCV's warpPerspective with
// bilinear sampling on one thread when OpenCV is installed.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "common/basic_image.h"
#include "common/constants.h"
#include "common/image_c_api_transformer.h"
#include "correction/projective_correction.h"
#include "morvane/morvane.h"

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

// A photo: a textured table, and a bright page with lines of dark "text"
// inside the quadrilateral of the given corners.
struct Scene {
    int width, height;
    ControlPointCorners corners;
    std::vector<unsigned char> rgb, gray;
    int output_width, output_height;
};

bool inside_quad(const ControlPointCorners& c, double x, double y) {
    for (int i = 0; i < 4; ++i) {
        const int j = (i + 1) % 4;
        const double cross = (c.x[j] - c.x[i]) * (y - c.y[i]) - (c.y[j] - c.y[i]) * (x - c.x[i]);
        if (cross < 0) return false;
    }
    return true;
}

Scene make_scene(int width, int height, const int (&xs)[4], const int (&ys)[4]) {
    Scene s;
    s.width = width;
    s.height = height;
    for (int i = 0; i < 4; ++i) {
        s.corners.x[i] = xs[i];
        s.corners.y[i] = ys[i];
    }
    s.rgb.resize(static_cast<size_t>(width) * height * 3);
    s.gray.resize(static_cast<size_t>(width) * height);
    unsigned noise = 12345u;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            noise = noise * 1664525u + 1013904223u;
            const int grain = static_cast<int>(noise >> 28);
            int r, g, b;
            if (inside_quad(s.corners, x, y)) {
                const bool ink = (y / 12) % 4 == 0 && (x / 9) % 7 != 0;
                r = ink ? 30 + grain : 225 + grain;
                g = ink ? 30 + grain : 222 + grain;
                b = ink ? 35 + grain : 210 + grain;
            } else {
                r = 90 + (x + y) % 40 + grain;
                g = 60 + (x / 3) % 30 + grain;
                b = 40 + grain;
            }
            const size_t at = static_cast<size_t>(y) * width + x;
            s.rgb[3 * at] = static_cast<unsigned char>(r);
            s.rgb[3 * at + 1] = static_cast<unsigned char>(g);
            s.rgb[3 * at + 2] = static_cast<unsigned char>(b);
            s.gray[at] = static_cast<unsigned char>(constants::luminance(r, g, b));
        }
    std::vector<geometric::Geocoordinate<float>> points;
    for (int i = 0; i < 4; ++i) points.emplace_back(static_cast<float>(xs[i]), static_cast<float>(ys[i]));
    geometric::ProjectiveCorrection::calculate_output_dimension(points, s.output_width, s.output_height);
    return s;
}

// Portrait photo (3000 x 4000) of an upright page, and landscape photo
// (4000 x 3000) of a page lying sideways: the output rows then run down the
// photo's columns.
const Scene& upright() {
    static const Scene scene = make_scene(3000, 4000, {340, 2730, 2815, 240}, {200, 270, 3780, 3700});
    return scene;
}
const Scene& sideways() {
    static const Scene scene = make_scene(4000, 3000, {280, 330, 3810, 3790}, {2740, 320, 230, 2810});
    return scene;
}

// What perform_projective_correction does, on the static core.
void correct(const Scene& s, const std::vector<unsigned char>& pixels, int channels, unsigned char* output) {
    ImageCApi in = {s.width, s.height, 0, 0, channels, 0, const_cast<unsigned char*>(pixels.data())};
    ImageCApi out = {s.output_width, s.output_height, 0, 0, channels, 0, output};
    common::BasicImage input_image, output_image;
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(in, input_image);
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(out, output_image);
    geometric::ProjectiveCorrection correction(&input_image, &output_image);
    std::vector<geometric::Geocoordinate<float>> points;
    for (int i = 0; i < 4; ++i)
        points.emplace_back(static_cast<float>(s.corners.x[i]), static_cast<float>(s.corners.y[i]));
    correction.set_control_points(points);
    correction.run_correction();
}

void set_counters(benchmark::State& state, const Scene& s) {
    state.counters["out_w"] = s.output_width;
    state.counters["out_h"] = s.output_height;
}

void BM_Morvane(benchmark::State& state, const Scene& (*scene)(), int channels) {
    const Scene& s = scene();
    const std::vector<unsigned char>& pixels = channels == 3 ? s.rgb : s.gray;
    std::vector<unsigned char> output(static_cast<size_t>(s.output_width) * s.output_height * channels);
    for (auto _ : state) {
        correct(s, pixels, channels, output.data());
        benchmark::DoNotOptimize(output.data());
        benchmark::ClobberMemory();
    }
    set_counters(state, s);
}

// The floor: reading as many source bytes as the output has and writing them.
void BM_CopyFloor(benchmark::State& state, const Scene& (*scene)(), int channels) {
    const Scene& s = scene();
    const std::vector<unsigned char>& pixels = channels == 3 ? s.rgb : s.gray;
    const size_t bytes = static_cast<size_t>(s.output_width) * s.output_height * channels;
    std::vector<unsigned char> output(bytes);
    for (auto _ : state) {
        std::memcpy(output.data(), pixels.data(), bytes);
        benchmark::DoNotOptimize(output.data());
        benchmark::ClobberMemory();
    }
    set_counters(state, s);
}

#ifdef MORVANE_HAVE_OPENCV
// The same mapping, output to input, handed to OpenCV as the inverse map.
cv::Matx33d inverse_map(const Scene& s) {
    std::vector<geometric::Geocoordinate<float>> points;
    for (int i = 0; i < 4; ++i)
        points.emplace_back(static_cast<float>(s.corners.x[i]), static_cast<float>(s.corners.y[i]));
    const geometric::ProjectiveWarpCoefficients k =
        geometric::ProjectiveCorrection::calculate_warp_coefficients(points);
    const double w = s.output_width, h = s.output_height;
    return cv::Matx33d(k.a / w, k.b / h, k.x0, k.d / w, k.e / h, k.y0, k.g / w, k.h / h, 1.0);
}

void BM_OpenCV(benchmark::State& state, const Scene& (*scene)(), int channels) {
    cv::setNumThreads(1);
    const Scene& s = scene();
    const std::vector<unsigned char>& pixels = channels == 3 ? s.rgb : s.gray;
    const cv::Mat input(s.height, s.width, channels == 3 ? CV_8UC3 : CV_8UC1,
                        const_cast<unsigned char*>(pixels.data()));
    cv::Mat output(s.output_height, s.output_width, input.type());
    const cv::Matx33d map = inverse_map(s);
    for (auto _ : state) {
        cv::warpPerspective(input, output, map, output.size(), cv::INTER_LINEAR | cv::WARP_INVERSE_MAP,
                            cv::BORDER_CONSTANT, cv::Scalar::all(255));
        benchmark::DoNotOptimize(output.data);
        benchmark::ClobberMemory();
    }
    set_counters(state, s);
}
#endif

BENCHMARK_CAPTURE(BM_Morvane, upright_rgb, upright, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Morvane, upright_gray, upright, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Morvane, sideways_rgb, sideways, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Morvane, sideways_gray, sideways, 1)->Unit(benchmark::kMillisecond);
#ifdef MORVANE_HAVE_OPENCV
BENCHMARK_CAPTURE(BM_OpenCV, upright_rgb, upright, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_OpenCV, upright_gray, upright, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_OpenCV, sideways_rgb, sideways, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_OpenCV, sideways_gray, sideways, 1)->Unit(benchmark::kMillisecond);
#endif
BENCHMARK_CAPTURE(BM_CopyFloor, upright_rgb, upright, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_CopyFloor, upright_gray, upright, 1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

// Line segment detection on a 1500x1125 page photo (the working-image size),
// with and without the linking pass, beside OpenCV's detector of the same
// published method when the installed OpenCV provides one. A last entry
// reports how far the two agree: segment counts and the share of our
// segments (linking off) with an OpenCV segment within 2 pixels at both ends.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "linesegments/image_object.h"
#include "linesegments/line_segment_generator.h"

#include "gray_page_photo.h"

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

using bench_photo::kHeight;
using bench_photo::kWidth;
using bench_photo::page;

void BM_LineSegmentGenerator(benchmark::State& state) {
    geometric::LineSegmentGenerator generator;
    generator.link_segments = state.range(0) != 0;
    const geometric::ImageObject<unsigned char> image(page().data(), kWidth, kHeight);
    std::size_t count = 0;
    for (auto _ : state) {
        std::vector<geometric::LineSegmentRect> segments;
        generator.generate_line_segments(image, segments);
        count = segments.size();
        benchmark::DoNotOptimize(segments.data());
    }
    state.counters["segments"] = static_cast<double>(count);
}
BENCHMARK(BM_LineSegmentGenerator)->ArgName("link")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

#ifdef MORVANE_HAVE_OPENCV
std::vector<geometric::LineSegmentRect> ours(bool link) {
    geometric::LineSegmentGenerator generator;
    generator.link_segments = link;
    std::vector<geometric::LineSegmentRect> segments;
    generator.generate_line_segments(geometric::ImageObject<unsigned char>(page().data(), kWidth, kHeight), segments);
    return segments;
}

// Standard refinement (region refinement, no NFA step on the rectangle) or
// advanced (with the NFA improvement steps, as our detector always runs).
bool opencv_detect(cv::Mat& lines, int refine = cv::LSD_REFINE_STD) {
    try {
        cv::Ptr<cv::LineSegmentDetector> detector = cv::createLineSegmentDetector(refine);
        const cv::Mat image(kHeight, kWidth, CV_8UC1, page().data());
        detector->detect(image, lines);
        return true;
    } catch (const cv::Exception&) {
        return false;  // builds without the detector throw "not implemented"
    }
}

void BM_OpenCvLineSegmentDetector(benchmark::State& state) {
    cv::setNumThreads(1);
    const int refine = static_cast<int>(state.range(0));
    cv::Mat lines;
    if (!opencv_detect(lines, refine)) {
        state.SkipWithError("this OpenCV has no line segment detector");
        return;
    }
    for (auto _ : state) {
        opencv_detect(lines, refine);
        benchmark::DoNotOptimize(lines.data);
    }
    state.counters["segments"] = static_cast<double>(lines.rows);
}
BENCHMARK(BM_OpenCvLineSegmentDetector)
    ->ArgName("refine")
    ->Arg(cv::LSD_REFINE_STD)
    ->Arg(cv::LSD_REFINE_ADV)
    ->Unit(benchmark::kMillisecond);

// Not a timing: how far the two detectors agree on the page.
void BM_AgreementWithOpenCv(benchmark::State& state) {
    cv::Mat lines;
    if (!opencv_detect(lines, static_cast<int>(state.range(0)))) {
        state.SkipWithError("this OpenCV has no line segment detector");
        return;
    }
    std::vector<geometric::LineSegmentRect> mine;
    for (auto _ : state) mine = ours(false);
    int matched = 0;
    for (const auto& s : mine) {
        for (int i = 0; i < lines.rows; ++i) {
            const cv::Vec4f l = lines.at<cv::Vec4f>(i);
            const double same = std::max(std::hypot(s.x1 - l[0], s.y1 - l[1]), std::hypot(s.x2 - l[2], s.y2 - l[3]));
            const double swapped = std::max(std::hypot(s.x1 - l[2], s.y1 - l[3]), std::hypot(s.x2 - l[0], s.y2 - l[1]));
            if (std::min(same, swapped) <= 2.0) {
                ++matched;
                break;
            }
        }
    }
    state.counters["ours"] = static_cast<double>(mine.size());
    state.counters["opencv"] = static_cast<double>(lines.rows);
    state.counters["share_matched"] = mine.empty() ? 0.0 : static_cast<double>(matched) / mine.size();
}
BENCHMARK(BM_AgreementWithOpenCv)
    ->ArgName("refine")
    ->Arg(cv::LSD_REFINE_STD)
    ->Arg(cv::LSD_REFINE_ADV)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
#endif

}  // namespace

BENCHMARK_MAIN();

// The page-edge Hough transform on the edge points of the 12-megapixel
// photo's working image (sample_photo.h): the outlines of the large blobs of
// its Canny edges, as corner search method 1 hands them over. The voting
// alone, and the whole search (voting, the four line searches and the check
// of each candidate on its points); beside OpenCV's HoughLines on the same
// points (one thread) when its development package is installed.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "common/basic_image.h"
#include "cornersearch/edge_strategies.h"
#include "cornersearch/large_blob_extractor.h"
#include "edgelines/hough_transform.h"
#include "sample_photo.h"

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

struct EdgePoints {
    int width = 0, height = 0;
    std::vector<int> xs, ys;
};

// What the Hough analyzer votes with, made once.
const EdgePoints& edge_points() {
    static const EdgePoints points = [] {
        EdgePoints p;
        common::BasicImage edges;
        geometric_test::CannyEdgeExtractor().extract_edges(bench_sample::working_image(), edges);
        p.width = edges.get_width();
        p.height = edges.get_height();
        const float area = static_cast<float>(p.width * p.height);
        geometric::LargeBlobExtractorPara para;
        para.minimum_blob_area = 0.1f * area;
        para.minimum_blob_width = 0.05f * static_cast<float>(p.width);
        para.minimum_blob_height = 0.05f * static_cast<float>(p.height);
        para.minimum_total_area = 0.25f * area;
        para.maximum_selected_blobs = 3;
        geometric_test::LargeBlobExtractor(para).obtain_large_blob(edges, p.xs, p.ys);
        return p;
    }();
    return points;
}

void BM_HoughVoting(benchmark::State& state) {
    const EdgePoints& p = edge_points();
    const geometric::HoughTransform transform(p.width, p.height);
    std::vector<unsigned int> accumulator;
    for (auto _ : state) {
        transform.set_up_accumulator_map(accumulator, p.xs, p.ys);
        benchmark::DoNotOptimize(accumulator.data());
    }
    state.counters["points"] = static_cast<double>(p.xs.size());
    state.counters["cells"] = static_cast<double>(accumulator.size());
}
BENCHMARK(BM_HoughVoting)->Unit(benchmark::kMillisecond);

void BM_HoughSearch(benchmark::State& state) {
    const EdgePoints& p = edge_points();
    geometric::HoughTransform transform(p.width, p.height);
    bool found = false;
    for (auto _ : state) {
        std::vector<geometric::BoundingLine> lines, partial;
        bool horizontal = false;
        found = transform.get_bounding_lines(p.xs, p.ys, lines, partial, horizontal);
        benchmark::DoNotOptimize(lines.data());
    }
    state.counters["four_sides"] = found ? 1 : 0;
}
BENCHMARK(BM_HoughSearch)->Unit(benchmark::kMillisecond);

#ifdef MORVANE_HAVE_OPENCV
// One-pixel distance and one-degree angle cells, as ours; the threshold is a
// fifth of the image's shorter side, the least run a side is checked against.
void BM_OpenCVHoughLines(benchmark::State& state) {
    cv::setNumThreads(1);
    const EdgePoints& p = edge_points();
    cv::Mat edges = cv::Mat::zeros(p.height, p.width, CV_8UC1);
    for (std::size_t i = 0; i < p.xs.size(); ++i) edges.at<unsigned char>(p.ys[i], p.xs[i]) = 255;
    const int threshold = std::min(p.width, p.height) / 5;
    std::size_t found = 0;
    for (auto _ : state) {
        std::vector<cv::Vec2f> lines;
        cv::HoughLines(edges, lines, 1.0, CV_PI / 180.0, threshold);
        benchmark::DoNotOptimize(lines.data());
        found = lines.size();
    }
    state.counters["lines"] = static_cast<double>(found);
}
BENCHMARK(BM_OpenCVHoughLines)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

BENCHMARK_MAIN();

// The vanishing-point machinery: the rectifying homography from four point
// pairs beside OpenCV's getPerspectiveTransform, and the consensus search on
// 500 points of which 30% are outliers.
#include <benchmark/benchmark.h>

#include <cmath>
#include <utility>
#include <vector>

#include "textgeometry/geocoordinate.h"
#include "vanishing/general_line_param_estimator.h"
#include "vanishing/projective_matrix_estimator.h"
#include "vanishing/ransac.h"

#ifdef MORVANE_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

using geometric::Geocoordinate;

// A page in perspective on a 1500 x 1125 working image, and the rectangle it becomes.
const std::vector<Geocoordinate<float>> kQuad{{112.5f, 80.0f}, {1390.0f, 130.0f}, {1460.25f, 1050.0f}, {40.0f, 990.0f}};
const std::vector<Geocoordinate<float>> kRectangle{{0.0f, 0.0f}, {1499.0f, 0.0f}, {1499.0f, 1124.0f}, {0.0f, 1124.0f}};

void BM_ProjectiveMatrixEstimator(benchmark::State& state) {
    const geometric::ProjectiveMatrixEstimator estimator(1500, 1125);
    geometric::ProjectiveMatrix matrix;
    for (auto _ : state) {
        benchmark::DoNotOptimize(estimator.estimate_matrix_via_correponding_points(kQuad, kRectangle, matrix));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_ProjectiveMatrixEstimator);

#ifdef MORVANE_HAVE_OPENCV
// The same mapping, rectangle to quadrilateral; the counter is the largest
// difference of the two normalised matrices' entries.
void BM_OpenCVGetPerspectiveTransform(benchmark::State& state) {
    cv::setNumThreads(1);
    cv::Point2f source[4], target[4];
    for (int i = 0; i < 4; ++i) {
        source[i] = cv::Point2f(kRectangle[i].x, kRectangle[i].y);
        target[i] = cv::Point2f(kQuad[i].x, kQuad[i].y);
    }
    cv::Mat h;
    for (auto _ : state) {
        h = cv::getPerspectiveTransform(source, target);
        benchmark::DoNotOptimize(h.data);
        benchmark::ClobberMemory();
    }
    const geometric::ProjectiveMatrixEstimator estimator(1500, 1125);
    geometric::ProjectiveMatrix ours;
    estimator.estimate_matrix_via_correponding_points(kQuad, kRectangle, ours);
    double largest = 0.0;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)  // ours holds the transpose
            largest = std::fmax(largest, std::fabs(h.at<double>(i, j) / h.at<double>(2, 2) - ours.matrix[3 * j + i]));
    state.counters["max_diff"] = largest;
}
BENCHMARK(BM_OpenCVGetPerspectiveTransform);
#endif

// 500 points: 350 within 0.25 pixel of a line, 150 between 3 and 60 pixels off it.
std::vector<Geocoordinate<double>> points_with_outliers() {
    std::vector<Geocoordinate<double>> points;
    unsigned state = 99u;
    for (int i = 0; i < 500; ++i) {
        state = state * 1664525u + 1013904223u;
        const double x = 2.5 * i;
        const double y = 0.3 * x + 40.0;
        double off = (static_cast<int>((state >> 8) % 51) - 25) * 0.01;
        if (i % 10 < 3) off = (3.0 + (state >> 12) % 58) * ((state >> 4) % 2 ? 1.0 : -1.0);
        points.emplace_back(x - 0.3 * off / std::sqrt(1.09), y + off / std::sqrt(1.09));
    }
    return points;
}

void BM_Ransac500PointsThirtyPercentOutliers(benchmark::State& state) {
    std::vector<Geocoordinate<double>> points = points_with_outliers();
    geometric::GeneralLineParamEstimator<double> estimator(1.0);
    std::vector<double> parameters;
    std::vector<int> inliers;
    const std::vector<std::pair<int, int>> no_pairs;
    double share = 0.0;
    for (auto _ : state) {
        share = geometric::RANSAC<Geocoordinate<double>, double>::compute(parameters, &estimator, points, 0.99,
                                                                           inliers, false, no_pairs);
        benchmark::DoNotOptimize(share);
    }
    state.counters["share"] = share;
}
BENCHMARK(BM_Ransac500PointsThirtyPercentOutliers)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();

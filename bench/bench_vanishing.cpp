// The vanishing-point machinery: the rectifying homography from four point
// pairs beside OpenCV's getPerspectiveTransform, the consensus search on 500
// points of which 30% are outliers, and the solver on a page's text lines.
#include <benchmark/benchmark.h>

#include <cmath>
#include <utility>
#include <vector>

#include "edgelines/priority_selector.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"
#include "vanishing/general_line_param_estimator.h"
#include "vanishing/projective_matrix_estimator.h"
#include "vanishing/ransac.h"
#include "vanishing/vpoint_ransac_solver.h"

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

// 60 text lines of a 1500 x 1125 page whose horizontal vanishing point is
// (9000, 500): their ends on the page's left and right edges move by up to
// half a pixel, and every sixth line is a stray at 20 to 50 degrees.
std::vector<geometric::GeolineBase> text_lines() {
    std::vector<geometric::GeolineBase> lines;
    unsigned state = 7u;
    auto jitter = [&state]() {
        state = state * 1664525u + 1013904223u;
        return (static_cast<int>((state >> 8) % 1001) - 500) / 1000.0;
    };
    for (int k = 0; k < 60; ++k) {
        const double y0 = 60.0 + 16.5 * k;
        if (k % 6 == 3) {
            const double slope = std::tan((20.0 + k % 31) * 3.141592653589793 / 180.0);
            lines.emplace_back(slope, -1.0, y0);
            continue;
        }
        const double y1 = y0 + (500.0 - y0) * 1499.0 / 9000.0;
        const double left = y0 + jitter(), right = y1 + jitter();
        const double slope = (right - left) / 1499.0;
        lines.emplace_back(slope, -1.0, left);
    }
    return lines;
}

// The simple form (no priority), and the priority form with the pairs of the
// text route's uniform selection, equal weights and positions at the left edge.
void BM_VpointRansacSolver(benchmark::State& state) {
    const bool with_priority = state.range(0) != 0;
    const std::vector<geometric::GeolineBase> lines = text_lines();
    std::vector<double> weights(lines.size(), 1.0), positions;
    for (const auto& line : lines) positions.push_back(line.c);
    std::vector<std::pair<int, int>> pairs;
    geometric::PrioritySelector().obtain_uniform_priority_array(weights, positions, pairs);
    std::vector<int> inliers;
    int code = 0;
    geometric::Geocoordinate<double> point;
    for (auto _ : state) {
        geometric::VpointRansacSolver solver(geometric::HORIZONTAL_DIRECTION, 1500, 1125,
                                             geometric::RansacVanishingPointConstrains());
        point = geometric::Geocoordinate<double>();
        code = with_priority
                   ? solver.perform_ransac_vpoint_searching(lines, pairs, weights, inliers, point, 0.0f, false)
                   : solver.perform_ransac_vpoint_searching(lines, inliers, point);
        benchmark::DoNotOptimize(point);
    }
    state.counters["code"] = code;
    state.counters["x"] = point.x;
    state.counters["y"] = point.y;
    state.counters["inliers"] = static_cast<double>(inliers.size());
}
BENCHMARK(BM_VpointRansacSolver)->ArgName("priority")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();

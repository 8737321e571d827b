// The line stage of the edge search on the working image of the 12-megapixel
// sample photo (sample_photo.h): the whole stage, the stage once its segments
// are known, and the detector's own time taken apart by its steps, beside a
// single pass over the image for scale.
#include <benchmark/benchmark.h>

#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "common/constants.h"
#include "cornersearch/corner_detector_via_lsd.h"
#include "linesegments/blob_coordinates_wrapper.h"
#include "linesegments/gaussian_sampler.h"
#include "linesegments/line_segment_generator.h"
#include "linesegments/nfa_enhancer.h"
#include "linesegments/nfa_score.h"
#include "linesegments/region_grow.h"
#include "linesegments/region_rectangle.h"
#include "linesegments/segment_linker.h"
#include "sample_photo.h"

namespace {

using bench_sample::working_image;

// Detection, families, vanishing points and anchors, as the staged search
// runs the stage when no earlier stage left boundaries.
void BM_LineStage(benchmark::State& state) {
    const common::BasicImage& work = working_image();
    int result = 0, segments = 0;
    for (auto _ : state) {
        geometric_test::BoundingLineArrayWrapper wrapper(work, true);
        geometric_test::CornerDetectorViaLsd detector(wrapper);
        result = detector.pick_up_boundaries();
        segments = detector.manager.segment_count;
        benchmark::DoNotOptimize(wrapper.vertices.data());
    }
    state.counters["result"] = result;
    state.counters["segments"] = segments;
    state.counters["work_w"] = work.get_width();
    state.counters["work_h"] = work.get_height();
}
BENCHMARK(BM_LineStage)->Unit(benchmark::kMillisecond);

// The same with the segments already detected: what the stage adds to the detector.
void BM_LineStageAfterDetection(benchmark::State& state) {
    const common::BasicImage& work = working_image();
    geometric_test::BoundingLineArrayWrapper wrapper(work, true);
    geometric_test::CornerDetectorViaLsd detector(wrapper);
    int result = 0;
    for (auto _ : state) {
        wrapper = geometric_test::BoundingLineArrayWrapper(work, true);
        result = detector.pick_up_boundaries();
        benchmark::DoNotOptimize(wrapper.vertices.data());
    }
    state.counters["result"] = result;
}
BENCHMARK(BM_LineStageAfterDetection)->Unit(benchmark::kMillisecond);

// Processor time of this thread, so that other work on a shared machine
// does not count: milliseconds since `start`, which moves on to now.
double thread_ms() {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return now.tv_sec * 1e3 + now.tv_nsec * 1e-6;
}

double milliseconds_since(double& start) {
    const double now = thread_ms();
    const double ms = now - start;
    start = now;
    return ms;
}

// The detector's steps as LineSegmentGenerator runs them, each step's time
// summed over the iterations (milliseconds per run in the counters): the
// Gaussian down-scaling, the gradient, the pseudo-sort, the region growing,
// the rectangle and its refinement, the NFA with its improvement, the
// linking pass. The growing is the rest of the loop over the seeds, so that
// the clock is read round the few hundred regions only, not every seed.
void BM_DetectorSteps(benchmark::State& state) {
    const common::BasicImage& work = working_image();
    const geometric::LineSegmentGenerator settings;
    const geometric::ImageObject<unsigned char> image(work.get_data(), work.get_width(), work.get_height());
    const double prec = constants::kPi * settings.ang_th / 180.0;
    const double p = settings.ang_th / 180.0;
    const double rho = settings.quant / std::sin(prec);
    double scale_ms = 0, gradient_ms = 0, sort_ms = 0, grow_ms = 0, rectangle_ms = 0, nfa_ms = 0, link_ms = 0;
    std::size_t regions = 0, segments = 0;
    for (auto _ : state) {
        double t = thread_ms();
        const geometric::ImageObject<double> scaled =
            geometric::GaussianSampler::down_scale(image, settings.scale, settings.sigma_scale);
        scale_ms += milliseconds_since(t);
        geometric::ImageObject<double> angles, norms;
        const double largest = geometric::LineSegmentGenerator::compute_gradient(scaled, rho, angles, norms);
        gradient_ms += milliseconds_since(t);
        std::vector<geometric::Geocoordinate<int>> order;
        geometric::LineSegmentGenerator::pseudo_sort(angles, norms, largest, settings.n_bins, order);
        sort_ms += milliseconds_since(t);

        const int width = angles.get_width(), height = angles.get_height();
        const geometric::ImageObject<unsigned char> used(width, height, 0);
        geometric::BlobCoordinatesWrapper region(width, height);
        const int min_reg_size =
            static_cast<int>(-geometric::nfa_score::log_number_of_tests(width, height) / std::log10(p));
        const geometric::RegionGrow grower(angles, used, prec);
        const geometric::NFAEnhancer enhancer(angles, settings.log_eps);
        std::vector<geometric::LineSegmentRect> found;
        const double loop_start = t;
        double shaping_ms = 0;
        for (const geometric::Geocoordinate<int>& seed : order) {
            double region_angle = 0.0;
            if (grower.perform_region_grow(seed.x, seed.y, region, region_angle) < 0) continue;
            if (region.size < min_reg_size) continue;
            t = thread_ms();
            ++regions;
            geometric::LineSegmentRect rect;
            const bool shaped =
                geometric::RegionRectangle::build(region, norms, region_angle, prec, p, rect) &&
                geometric::RegionRectangle::refine(region, region_angle, prec, p, rect, used, angles, norms,
                                                   settings.density_th);
            const double rectangle = milliseconds_since(t);
            rectangle_ms += rectangle;
            shaping_ms += rectangle;
            if (!shaped) continue;
            double log_nfa = 0.0;
            const bool meaningful = enhancer.enhance_nfa(rect, log_nfa) >= 0;
            const double scoring = milliseconds_since(t);
            nfa_ms += scoring;
            shaping_ms += scoring;
            if (!meaningful) continue;
            // Ends moved to the pixel centres and cut, as the detector does before linking.
            rect.length = std::sqrt((rect.x2 - rect.x1) * (rect.x2 - rect.x1) + (rect.y2 - rect.y1) * (rect.y2 - rect.y1));
            rect.x1 = std::trunc(rect.x1 + 0.5);
            rect.y1 = std::trunc(rect.y1 + 0.5);
            rect.x2 = std::trunc(rect.x2 + 0.5);
            rect.y2 = std::trunc(rect.y2 + 0.5);
            rect.log_nfa = log_nfa;
            found.push_back(rect);
        }
        t = thread_ms();
        grow_ms += t - loop_start - shaping_ms;
        geometric::SegmentLinker(settings.link_angle, settings.link_gap, settings.link_validate, settings.link_log_eps)
            .link(found, angles);
        link_ms += milliseconds_since(t);
        segments = found.size();
        benchmark::DoNotOptimize(found.data());
    }
    const double runs = static_cast<double>(state.iterations());
    state.counters["scale_ms"] = scale_ms / runs;
    state.counters["gradient_ms"] = gradient_ms / runs;
    state.counters["sort_ms"] = sort_ms / runs;
    state.counters["grow_ms"] = grow_ms / runs;
    state.counters["rectangle_ms"] = rectangle_ms / runs;
    state.counters["nfa_ms"] = nfa_ms / runs;
    state.counters["link_ms"] = link_ms / runs;
    state.counters["regions"] = static_cast<double>(regions) / runs;
    state.counters["segments"] = static_cast<double>(segments);
}
BENCHMARK(BM_DetectorSteps)->Unit(benchmark::kMillisecond);

// One pass over the working image for scale: the 2 x 2 gradient of the
// detector in integers, its largest squared norm kept.
void BM_SinglePass(benchmark::State& state) {
    const common::BasicImage& work = working_image();
    const int width = work.get_width(), height = work.get_height();
    std::int32_t largest = 0;
    for (auto _ : state) {
        largest = 0;
        for (int y = 0; y + 1 < height; ++y) {
            const unsigned char* row = work.get_line_pointer(y);
            const unsigned char* next = work.get_line_pointer(y + 1);
            for (int x = 0; x + 1 < width; ++x) {
                const std::int32_t com1 = next[x + 1] - row[x], com2 = row[x + 1] - next[x];
                const std::int32_t gx = com1 + com2, gy = com1 - com2;
                largest = std::max(largest, gx * gx + gy * gy);
            }
        }
        benchmark::DoNotOptimize(largest);
    }
    state.counters["largest"] = largest;
}
BENCHMARK(BM_SinglePass)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

// The large-blob pass of the corner search on the 1500x1125 page photo: the
// contour image (binary objects or edge objects), the large components with
// their outlines, and the page sides along them, into a fresh boundary array.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "common/basic_image.h"
#include "cornersearch/adaptive_contour_generator.h"
#include "cornersearch/analysis_blob_extractor.h"
#include "cornersearch/blob_boundary_estimator.h"

#include "gray_page_photo.h"

namespace {

using bench_photo::kHeight;
using bench_photo::kWidth;
using bench_photo::page;

// Runs the pass and answers whether the four sides were found.
bool large_blob_pass(bool edges) {
    const common::BasicImage photo(page().data(), kHeight, kWidth, common::GRAY);
    common::BasicImage contours;
    geometric_test::AdaptiveContourGenerator generator(photo, contours);
    if (edges) {
        generator.generate_edge_objects();
    } else {
        generator.generate_binary_objects();
    }
    std::vector<std::vector<geometric::Geocoordinate<int>>> outlines;
    std::vector<geometric::Geobox<int>> boxes;
    geometric_test::AnalysisBlobExtractor().extract_analysis_blobs(contours, outlines, boxes);
    auto wrapper = std::make_shared<geometric_test::BoundingLineArrayWrapper>(photo, !edges);
    geometric_test::BlobBoundaryEstimator estimator(kWidth, kHeight, &outlines, &boxes, wrapper);
    return estimator.estimate_blob_lines() == 0;
}

void BM_LargeBlobPass(benchmark::State& state) {
    const bool edges = state.range(0) != 0;
    bool found = false;
    for (auto _ : state) found = large_blob_pass(edges);
    state.counters["found"] = found ? 1 : 0;
}
BENCHMARK(BM_LargeBlobPass)->ArgName("edges")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

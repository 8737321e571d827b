// The text-picture separation and the clustering of eigenpoints, on the
// 1500 x 1125 gray page photo of the working-image benchmarks (page 0) and on
// the working image of a 12-megapixel photo (page 1, sample_photo.h): the
// whole of each, and each stage of the separation alone on the output of the
// one before, so that the share of each stage can be read off the medians.
// Leptonica's page segmentation (pixGetRegionsBinary), which finds the
// picture regions of a binary page by other means, runs beside it when its
// development package is installed.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <list>
#include <vector>

#include "binarization/sauvola_binarization.h"
#include "common/basic_image.h"
#include "components/connected_component_calculator.h"
#include "gray_page_photo.h"
#include "pageanalysis/apriori_pageanalysis.h"
#include "pageanalysis/connected_compnent_classifier.h"
#include "pageanalysis/text_candidate_region_searcher.h"
#include "pageanalysis/text_picture_seperator.h"
#include "pixel/geo_despeckle.h"
#include "pixel/geo_morphological.h"
#include "sample_photo.h"
#include "textlines/eignpoints_cluster.h"
#include "textlines/eignpoints_para_setup.h"

#ifdef MORVANE_HAVE_LEPTONICA
#include "leptonica_pix.h"
#endif

namespace {

using geometric::Geocoordinate;

const common::BasicImage& page(int which) {
    static const common::BasicImage photo_page(bench_photo::page().data(), bench_photo::kHeight,
                                               bench_photo::kWidth, common::GRAY);
    return which == 0 ? photo_page : bench_sample::working_image();
}

// The images between the stages of the separation, made once a page.
struct Stages {
    common::BasicImage binary;
    common::BasicImage thick;
    common::BasicImage dilated;
};

const Stages& stages(int which) {
    static Stages made[2];
    Stages& s = made[which];
    if (s.binary.get_data() == nullptr) {
        geometric::SauvolaBinarization sauvola(&page(which), &s.binary);
        sauvola.run_binarization();
        geometric::GeoDespeckle::removeIsolatedPixel(s.binary, s.binary);
        geometric::TextCandidateRegionSearcher::identify_candiate_text_region(s.binary, s.thick, 8);
        s.dilated.reset(s.binary.get_height(), s.binary.get_width(), common::BINARY);
        geometric::GeoMorphological::dilate_xy(s.binary, s.dilated);
    }
    return s;
}

void page_counters(benchmark::State& state, int which) {
    state.counters["width"] = page(which).get_width();
    state.counters["height"] = page(which).get_height();
}

// The whole separation, as the gray page analysis runs it.
void BM_Separation(benchmark::State& state) {
    const int which = static_cast<int>(state.range(0));
    std::size_t text = 0;
    for (auto _ : state) {
        geometric::TextPictureSeperator seperator;
        std::list<geometric::TextBlob> blobs;
        seperator.perform_text_picture_seperation(page(which), blobs);
        text = blobs.size();
    }
    page_counters(state, which);
    state.counters["text_blobs"] = static_cast<double>(text);
}
BENCHMARK(BM_Separation)->ArgName("page")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Stage 1: quick Sauvola through the binarization frame (gray copy,
// smoothing, thresholds, despeckling).
void BM_Stage1Sauvola(benchmark::State& state) {
    const common::BasicImage& gray = page(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        common::BasicImage binary;
        geometric::SauvolaBinarization sauvola(&gray, &binary);
        benchmark::DoNotOptimize(sauvola.run_binarization());
    }
}
BENCHMARK(BM_Stage1Sauvola)->ArgName("page")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Stage 2: the second despeckling, in place on a copy.
void BM_Stage2Despeckle(benchmark::State& state) {
    const Stages& s = stages(static_cast<int>(state.range(0)));
    common::BasicImage binary(s.binary);
    for (auto _ : state) {
        geometric::GeoDespeckle::removeIsolatedPixel(binary, binary);
        benchmark::DoNotOptimize(binary.get_data());
    }
}
BENCHMARK(BM_Stage2Despeckle)->ArgName("page")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Stage 3: the thick image (a copy eroded by 8 along x and y).
void BM_Stage3Thick(benchmark::State& state) {
    const Stages& s = stages(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        common::BasicImage thick;
        geometric::TextCandidateRegionSearcher::identify_candiate_text_region(s.binary, thick, 8);
        benchmark::DoNotOptimize(thick.get_data());
    }
}
BENCHMARK(BM_Stage3Thick)->ArgName("page")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Stage 4: the dilated ring.
void BM_Stage4Dilate(benchmark::State& state) {
    const Stages& s = stages(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        common::BasicImage dilated(s.binary.get_height(), s.binary.get_width(), common::BINARY);
        geometric::GeoMorphological::dilate_xy(s.binary, dilated);
        benchmark::DoNotOptimize(dilated.get_data());
    }
}
BENCHMARK(BM_Stage4Dilate)->ArgName("page")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Stage 5: the components of the binary page.
void BM_Stage5Components(benchmark::State& state) {
    const Stages& s = stages(static_cast<int>(state.range(0)));
    std::size_t components = 0;
    for (auto _ : state) {
        geometric::ConnectedComponentCalculator calculator;
        calculator.formulate_connected_components(s.binary);
        benchmark::DoNotOptimize(calculator.isemptyblob());
        components = calculator.size();
    }
    state.counters["components"] = static_cast<double>(components);
}
BENCHMARK(BM_Stage5Components)->ArgName("page")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Stage 6: the classification of every component (size, thick stick, ground disparity).
void BM_Stage6Classification(benchmark::State& state) {
    const int which = static_cast<int>(state.range(0));
    const Stages& s = stages(which);
    geometric::ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(s.binary);
    const geometric::ConnectedCompnentClassifier classifier{geometric::TextPictureSeperatorPara()};
    for (auto _ : state) {
        std::list<geometric::TextBlob> blobs;
        classifier.identify_text_connected_components(&calculator, s.thick, s.dilated, s.binary, page(which), blobs);
        benchmark::DoNotOptimize(blobs.size());
    }
}
BENCHMARK(BM_Stage6Classification)->ArgName("page")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The eigenpoints of the page's gray analysis, and the clustering's limits
// from their median spacing, as the text route sets them up.
struct Eigenpoints {
    std::vector<Geocoordinate<float>> points;
    geometric::EignpointsClusteringConstraints constraints;
};

const Eigenpoints& eigenpoints(int which) {
    static Eigenpoints made[2];
    Eigenpoints& e = made[which];
    if (e.points.empty()) {
        geometric::AprioriPageanalysis analysis(&page(which), nullptr);
        analysis.run_page_analysis();
        geometric::HybridProjectivePara para;
        geometric::EignpointsParaSetup::set_up_eignpoints_para(&analysis, e.points, para);
        e.constraints = para.clustering;
    }
    return e;
}

void BM_Clustering(benchmark::State& state) {
    const Eigenpoints& e = eigenpoints(static_cast<int>(state.range(0)));
    std::size_t groups_found = 0;
    for (auto _ : state) {
        std::vector<Geocoordinate<float>> points = e.points;
        std::vector<std::vector<Geocoordinate<float>>> groups;
        geometric::EignpointsCluster cluster(e.constraints);
        cluster.perform_eignpoints_clustering(points, groups);
        groups_found = groups.size();
    }
    state.counters["points"] = static_cast<double>(e.points.size());
    state.counters["groups"] = static_cast<double>(groups_found);
    state.counters["spacing"] = e.constraints.median_spacing;
}
BENCHMARK(BM_Clustering)->ArgName("page")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

#ifdef MORVANE_HAVE_LEPTONICA
// Leptonica's segmentation of the same binary page (stage 1's output) into a
// halftone mask, text lines and text blocks: the picture finding of a peer.
void BM_LeptonicaGetRegionsBinary(benchmark::State& state) {
    PIX* pix = bench_leptonica::to_pix(stages(static_cast<int>(state.range(0))).binary);
    setMsgSeverity(L_SEVERITY_NONE);
    for (auto _ : state) {
        PIX *halftone = nullptr, *lines = nullptr, *blocks = nullptr;
        pixGetRegionsBinary(pix, &halftone, &lines, &blocks, nullptr);
        pixDestroy(&halftone);
        pixDestroy(&lines);
        pixDestroy(&blocks);
    }
    pixDestroy(&pix);
}
BENCHMARK(BM_LeptonicaGetRegionsBinary)->ArgName("page")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

BENCHMARK_MAIN();

// The simple, the combined and the staged corner search.
#include "cornersearch/bounding_edge_registration.h"

#include "cornersearch/adaptive_contour_generator.h"
#include "cornersearch/analysis_blob_extractor.h"
#include "cornersearch/blob_boundary_estimator.h"
#include "cornersearch/corner_detector_via_lsd.h"
#include "pixel/geo_morph_iterative_dilation.h"

namespace geometric_test {

int BoundingEdgeRegistration::implement_registration(const common::Image& image,
                                                     std::vector<geometric::Geocoordinate<float>>& corners) {
    BoundingLines lines;
    common::BasicImage work;
    factory->extractor->extract_edges(image, work);
    if (dynamic_cast<KernelHoughEdgeAnalyzer*>(factory->analyzer.get()) == nullptr) {
        if (factory->analyzer->extract_bounding_lines(work, lines) < 0) return -1;
    }
    return factory->estimator->estimate_corners(lines, corners) < 0 ? -1 : 1;
}

CombinedBoundingEdgeRegistration::CombinedBoundingEdgeRegistration(
    const std::vector<std::shared_ptr<BoundingCornerFactory>>& factories)
    : BoundingEdgeRegistration(factories.empty() ? nullptr : factories[0]), factories(factories) {}

int CombinedBoundingEdgeRegistration::implement_registration(const common::Image& image,
                                                             std::vector<geometric::Geocoordinate<float>>& corners) {
    if (BoundingEdgeRegistration::implement_registration(image, corners) == 1) return 1;
    for (std::size_t i = 1; i < factories.size(); ++i) {
        factory = factories[i];
        if (BoundingEdgeRegistration::implement_registration(image, corners) == 1) return 1;
    }
    return -1;
}

int OperationalBoundingEdgeRegistration::implement_registration(
    const common::Image& image, std::vector<geometric::Geocoordinate<float>>& corners) {
    previous_wrapper.reset();
    typedef int (OperationalBoundingEdgeRegistration::*Stage)(const common::Image&,
                                                              std::vector<geometric::Geocoordinate<float>>&);
    const Stage binary = &OperationalBoundingEdgeRegistration::implement_binary;
    const Stage edge = &OperationalBoundingEdgeRegistration::implement_edge;
    const Stage line = &OperationalBoundingEdgeRegistration::implement_line;
    std::vector<Stage> stages;
    switch (operation_mode) {
        case BINARY_SEARCH: stages = {binary}; break;
        case EDGE_SEARCH: stages = {edge}; break;
        case LINE_SEARCH: stages = {line}; break;
        case BINARY_EDGE_SEARCH: stages = {binary, edge}; break;
        case BINARY_EDGE_LINE_SEARCH: stages = {binary, edge, line}; break;
        default: break;
    }
    for (Stage stage : stages)
        if ((this->*stage)(image, corners) == 1) return 1;
    method_code -= 1;
    return -1;
}

int OperationalBoundingEdgeRegistration::implement_contour_stage(
    const common::Image& image, std::vector<geometric::Geocoordinate<float>>& corners, bool binary) {
    common::BasicImage contours;
    AdaptiveContourGenerator generator(image, contours);
    if (binary) {
        generator.generate_binary_objects();
    } else {
        generator.generate_edge_objects();
    }
    method_code = binary ? 100 : 200;
    auto wrapper = std::make_shared<BoundingLineArrayWrapper>(image, binary);
    // Candidates of the binary stage live on in the edge stage.
    if (!binary) wrapper->previous_wrapper = previous_wrapper;
    const int r = iterative_estimate_boundaries_from_large_blobs(contours, *wrapper);
    if (r == 0) {
        previous_wrapper = wrapper;
        confidence = wrapper->confidences[0];
        corners.assign(wrapper->vertices.begin(), wrapper->vertices.begin() + 4);
        return 1;
    }
    if (wrapper->calculate_valid_boundary_number() >= 1) previous_wrapper = wrapper;
    return -1;
}

int OperationalBoundingEdgeRegistration::implement_binary(const common::Image& image,
                                                          std::vector<geometric::Geocoordinate<float>>& corners) {
    return implement_contour_stage(image, corners, true);
}

int OperationalBoundingEdgeRegistration::implement_edge(const common::Image& image,
                                                        std::vector<geometric::Geocoordinate<float>>& corners) {
    return implement_contour_stage(image, corners, false);
}

int OperationalBoundingEdgeRegistration::implement_line(const common::Image& image,
                                                        std::vector<geometric::Geocoordinate<float>>& corners) {
    method_code = 300;
    auto wrapper = std::make_shared<BoundingLineArrayWrapper>(image, true);
    wrapper->previous_wrapper = previous_wrapper;
    if (CornerDetectorViaLsd(*wrapper).pick_up_boundaries() != 0) return -1;
    previous_wrapper = wrapper;
    corners.assign(wrapper->vertices.begin(), wrapper->vertices.begin() + 4);
    return 1;
}

int OperationalBoundingEdgeRegistration::estimate_boundaries_from_large_blobs(common::Image& contours,
                                                                              BoundingLineArrayWrapper& wrapper) {
    std::vector<std::vector<geometric::Geocoordinate<int>>> outlines;
    std::vector<geometric::Geobox<int>> boxes;
    AnalysisBlobExtractor(0.1f, 0.05f, 0.05f, 5).extract_analysis_blobs(contours, outlines, boxes);
    if (outlines.empty()) return -1;
    // The estimator works on the caller's wrapper, which it does not own.
    const std::shared_ptr<BoundingLineArrayWrapper> target(std::shared_ptr<BoundingLineArrayWrapper>(), &wrapper);
    BlobBoundaryEstimator estimator(wrapper.width, wrapper.height, &outlines, &boxes, target);
    const int result = estimator.estimate_blob_lines();
    method_code += estimator.status;
    return result;
}

int OperationalBoundingEdgeRegistration::iterative_estimate_boundaries_from_large_blobs(
    common::Image& contours, BoundingLineArrayWrapper& wrapper) {
    int r = estimate_boundaries_from_large_blobs(contours, wrapper);
    common::BasicImage* binary = dynamic_cast<common::BasicImage*>(&contours);
    for (int round = 0; round < 2 && r == -5 && binary != nullptr; ++round) {
        geometric::GeoMorphIterativeDilation(1, true).dilate_image_iterative(*binary);
        r = estimate_boundaries_from_large_blobs(contours, wrapper);
    }
    return r;
}

}  // namespace geometric_test

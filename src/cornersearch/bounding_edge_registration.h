// Corner searches for the corner search engine: one chain of strategies, a
// list of chains tried in turn, and the staged search that hands what a
// failed stage found to the next.
#ifndef MORVANE_CORNERSEARCH_BOUNDING_EDGE_REGISTRATION_H
#define MORVANE_CORNERSEARCH_BOUNDING_EDGE_REGISTRATION_H

#include <cstdint>
#include <memory>
#include <vector>

#include "cornersearch/bounding_line_array_wrapper.h"
#include "cornersearch/edge_strategies.h"
#include "cornersearch/projective_registration_base.h"

namespace geometric_test {

class BoundingEdgeRegistration : public ProjectiveRegistration {
public:
    explicit BoundingEdgeRegistration(std::shared_ptr<BoundingCornerFactory> factory) : factory(std::move(factory)) {}

    // Edges, lines (skipped for the kernel analyzer), corners: 1, or -1 when
    // the analyzer or the estimator fails. The strategies must not be null.
    int implement_registration(const common::Image& image,
                               std::vector<geometric::Geocoordinate<float>>& corners) override;

    std::shared_ptr<BoundingCornerFactory> factory;  // the chain in use
};

class CombinedBoundingEdgeRegistration : public BoundingEdgeRegistration {
public:
    // The first chain is the one in use at the start.
    explicit CombinedBoundingEdgeRegistration(const std::vector<std::shared_ptr<BoundingCornerFactory>>& factories);

    // The chain in use, then each further chain of the list in order, until
    // one answers 1; -1 after the last. The last chain tried stays in use.
    int implement_registration(const common::Image& image,
                               std::vector<geometric::Geocoordinate<float>>& corners) override;

    std::vector<std::shared_ptr<BoundingCornerFactory>> factories;
};

class OperationalBoundingEdgeRegistration : public ProjectiveRegistration {
public:
    enum Method : std::int32_t {
        BINARY_SEARCH = 0,
        EDGE_SEARCH = 1,
        LINE_SEARCH = 2,
        BINARY_EDGE_SEARCH = 3,
        BINARY_EDGE_LINE_SEARCH = 4
    };

    OperationalBoundingEdgeRegistration() : operation_mode(BINARY_EDGE_LINE_SEARCH) {}
    explicit OperationalBoundingEdgeRegistration(Method method) : operation_mode(method) {}

    // The stages of the mode in order; the first that answers 1 ends the run
    // with 1. If all fail (or the mode names none) method_code falls by 1 and
    // the answer is -1.
    int implement_registration(const common::Image& image,
                               std::vector<geometric::Geocoordinate<float>>& corners) override;

    // The stages: large blobs of the binary contour image (method_code 100),
    // of the edge contour image (200), each plus the boundary estimator's
    // status, and the line segments (300), which complete what the earlier
    // stages left or find the corners by vanishing points. 1 with the four
    // vertices in corners.
    int implement_binary(const common::Image& image, std::vector<geometric::Geocoordinate<float>>& corners);
    int implement_edge(const common::Image& image, std::vector<geometric::Geocoordinate<float>>& corners);
    int implement_line(const common::Image& image, std::vector<geometric::Geocoordinate<float>>& corners);

    // The large blobs of the contour image into the wrapper: -1 without any,
    // else the boundary estimator's answer (0, -2 or -3).
    int estimate_boundaries_from_large_blobs(common::Image& contours, BoundingLineArrayWrapper& wrapper);
    // Again after up to two dilations while the answer is -5, which the
    // estimator never gives: the retry stands ready, unused.
    int iterative_estimate_boundaries_from_large_blobs(common::Image& contours, BoundingLineArrayWrapper& wrapper);

    int method_code = 0;
    double confidence = 0.0;
    Method operation_mode;
    // What the last stage left; null at the start of each run.
    std::shared_ptr<BoundingLineArrayWrapper> previous_wrapper;

private:
    int implement_contour_stage(const common::Image& image, std::vector<geometric::Geocoordinate<float>>& corners,
                                bool binary);
};

}  // namespace geometric_test

#endif

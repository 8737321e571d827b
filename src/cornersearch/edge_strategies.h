// The three exchangeable steps of a simple corner search: an edge extractor,
// an analyzer that turns edges into page lines, and an estimator that turns
// four lines into corners; and the factory that holds one of each.
#ifndef MORVANE_CORNERSEARCH_EDGE_STRATEGIES_H
#define MORVANE_CORNERSEARCH_EDGE_STRATEGIES_H

#include <memory>
#include <vector>

#include "common/basic_image.h"
#include "common/image.h"
#include "cornersearch/bounding_lines.h"
#include "textgeometry/geocoordinate.h"

namespace geometric_test {

class EdgeExtractor {
public:
    virtual ~EdgeExtractor() = default;
    virtual int extract_edges(const common::Image& image, common::BasicImage& edges) = 0;
};

// Edges with the smoothing the background asks for, dilated by 1. Answers 0.
class CannyEdgeExtractor : public EdgeExtractor {
public:
    int extract_edges(const common::Image& image, common::BasicImage& edges) override;
};

// Adaptive binarization with a 77 x 77 window. Answers 0.
class OTSUEdgeExtractor : public EdgeExtractor {
public:
    int extract_edges(const common::Image& image, common::BasicImage& edges) override;
};

class EdgeAnalyzer {
public:
    virtual ~EdgeAnalyzer() = default;
    virtual int extract_bounding_lines(const common::Image& edges, BoundingLines& lines) = 0;
};

// Page lines from the outlines of the edge image's large blobs, by the
// Hough transform: 1 when it finds four sides, else -1.
class HoughEdgeAnalyzer : public EdgeAnalyzer {
public:
    int extract_bounding_lines(const common::Image& edges, BoundingLines& lines) override;
};

// Looks at the large blobs of the edge image, dilating it between looks.
// The search finds no lines of its own: it ends, with -1, once a dilation
// leaves the image as it was, since every later pass would repeat the same
// work; a library call must not run on for ever.
class LargeBlobCornerAnalyzer : public EdgeAnalyzer {
public:
    int extract_bounding_lines(const common::Image& edges, BoundingLines& lines) override;
    int passes = 0;  // looks taken by the last call
};

// Stands where a kernel-based transform would go; the registration skips it,
// so the estimator runs on an empty list. Answers 0.
class KernelHoughEdgeAnalyzer : public EdgeAnalyzer {
public:
    int extract_bounding_lines(const common::Image& edges, BoundingLines& lines) override;
};

class BoundinglineCornersEstimator {
public:
    virtual ~BoundinglineCornersEstimator() = default;
    virtual int estimate_corners(BoundingLines& lines, std::vector<geometric::Geocoordinate<float>>& corners) = 0;
};

// The quadrangle of the four lines: 0 when every segment end reaches its
// corner, else -1.
class StrictBoundinglineCornerEstimator : public BoundinglineCornersEstimator {
public:
    int estimate_corners(BoundingLines& lines, std::vector<geometric::Geocoordinate<float>>& corners) override;
};

struct BoundingCornerFactory {
    std::shared_ptr<EdgeExtractor> extractor;
    std::shared_ptr<EdgeAnalyzer> analyzer;
    std::shared_ptr<BoundinglineCornersEstimator> estimator;
};

}  // namespace geometric_test

#endif

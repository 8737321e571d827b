// Preparation of the graded image and the page margins from four corners.
#include "quality/quality_evaluator.h"

#include <cmath>

#include "common/constants.h"
#include "common/geometricexception.h"
#include "pixel/image_integer_down_sampling.h"
#include "pixel/image_operator.h"

namespace geometric {

namespace {

// The area share of the central patch.
constexpr double kCentralPatchShare = 0.25;

// The line through p and q: a = (p.y - q.y) / dx, b = -1, c = q.y - a q.x,
// or x = p.x when dx = p.x - q.x is within the single-precision epsilon.
GeolineBase line_through(const Geocoordinate<float>& p, const Geocoordinate<float>& q) {
    const double dx = static_cast<double>(p.x) - q.x;
    if (std::fabs(dx) <= constants::kFloatEpsilon) return GeolineBase(1.0, 0.0, -static_cast<double>(p.x));
    const double a = (static_cast<double>(p.y) - q.y) / dx;
    return GeolineBase(a, -1.0, q.y - a * q.x);
}

}  // namespace

QualityEvaluator::QualityEvaluator(QualityAssessMethod method_, AOIRegion region_, int scale_)
    : method(method_), region(region_), scale(scale_), has_margins(false), margins() {}

double QualityEvaluator::calculate_global_quality(const common::Image& image, const common::Image* binary) {
    const std::shared_ptr<common::BasicImage> prepared = preprocessing_quality_assessment(image);
    return calculate_global_quality_imp(*prepared, binary);
}

void QualityEvaluator::calculate_local_qualities(const common::Image&, const common::Image*, int, int,
                                                 std::vector<double>&) {
    throw Geometricexception("not implemented yet");
}

void QualityEvaluator::calculate_local_qualities_imp(const common::Image&, const common::Image*, int, int,
                                                     std::vector<double>&) {}

void QualityEvaluator::createDocumentMarginsFromCorners(const std::vector<Geocoordinate<float>>& corners) {
    if (corners.size() < 4) throw Geometricexception("the document margins need four corners");
    has_margins = true;
    margins.assign(4, GeolineBase());
    // Left, right, top, bottom: the order in which the page analysis reads them.
    margins[0] = line_through(corners[0], corners[3]);
    margins[1] = line_through(corners[1], corners[2]);
    margins[2] = line_through(corners[0], corners[1]);
    margins[3] = line_through(corners[2], corners[3]);
}

void QualityEvaluator::resetDocumentMargins() {
    has_margins = false;
    margins.clear();
}

std::shared_ptr<common::BasicImage> QualityEvaluator::preprocessing_quality_assessment(
    const common::Image& image) const {
    auto prepared = std::make_shared<common::BasicImage>(image);
    switch (prepared->get_image_type()) {
        case common::RGB:
            prepared->convert_rgb_to_gray(true);
            break;
        case common::BGRA:
            throw "BGRA to grey level conversion nog implemented yet in common";
        case common::BINARY:
            // The grade reads the gray levels around each blob row by row;
            // a 1-bit row is an eighth as long, so ink becomes 0 and paper 255.
            prepared->convert_binary_to_gray();
            break;
        case common::GRAY:
            break;
        default:
            throw Geometricexception("the image to grade has no pixel type");
    }
    if (scale == 2) {
        ImageIntegerDownSampling::DownSampling2(*prepared);
    } else if (scale > 2) {
        auto reduced = std::make_shared<common::BasicImage>();
        ImageIntegerDownSampling::DownSamplingCombined(*prepared, *reduced, scale);
        prepared = reduced;
    }
    if (region == CENTRAL_PATCH) {
        auto patch = std::make_shared<common::BasicImage>();
        ImageOperator::fetch_image_patch_central(*prepared, kCentralPatchShare, *patch);
        prepared = patch;
    }
    return prepared;
}

}  // namespace geometric

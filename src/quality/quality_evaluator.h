// The frame of an image-quality grade: it prepares the image (gray, scaled
// down, optionally the central patch) and hands it to the grading method,
// with the page's margins when the caller knows the page's corners.
#ifndef MORVANE_QUALITY_QUALITY_EVALUATOR_H
#define MORVANE_QUALITY_QUALITY_EVALUATOR_H

#include <cstdint>
#include <memory>
#include <vector>

#include "common/basic_image.h"
#include "common/image.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

// Travels as a 32-bit integer; only 6 and 7 name a grading method.
enum QualityAssessMethod : std::int32_t {
    BLOB_SHARE = 6,               // characters must stand out from their ring by 30 gray levels
    BLOB_SHARE_ANY_CONTRAST = 7,  // any contrast will do
};

// Travels as a 32-bit integer; every value other than 1 is the whole image.
enum AOIRegion : std::int32_t {
    WHOLE_IMAGE = 0,
    CENTRAL_PATCH = 1,  // the centred quarter of the image's area
};

class QualityEvaluator {
public:
    QualityEvaluator(QualityAssessMethod method_, AOIRegion region_, int scale_);
    virtual ~QualityEvaluator() = default;

    // The grade of the prepared image in [0, 1]. `binary`, when given, is
    // the ink of the prepared image and is used as it stands; null lets the
    // method binarize.
    double calculate_global_quality(const common::Image& image, const common::Image* binary);
    virtual double calculate_global_quality_imp(const common::Image& image, const common::Image* binary) = 0;
    // Grades of a grid of tiles: not built, throws geometric::Geometricexception
    // "not implemented yet".
    void calculate_local_qualities(const common::Image& image, const common::Image* binary, int columns, int rows,
                                   std::vector<double>& qualities);
    virtual void calculate_local_qualities_imp(const common::Image& image, const common::Image* binary, int columns,
                                               int rows, std::vector<double>& qualities);
    // Four corners, top-left, top-right, bottom-right, bottom-left, in pixels
    // of the prepared image, become the left, right, top and bottom margins;
    // blobs beyond them are not graded. Fewer than four corners throw
    // geometric::Geometricexception.
    virtual void createDocumentMarginsFromCorners(const std::vector<Geocoordinate<float>>& corners);
    virtual void resetDocumentMargins();

    // A gray copy of the image (RGB by luminance, 1-bit with ink 0 and paper
    // 255), down-sampled by `scale`, or its central patch for region 1.
    // BGRA throws the text "BGRA to grey level conversion nog implemented yet in common".
    std::shared_ptr<common::BasicImage> preprocessing_quality_assessment(const common::Image& image) const;

    QualityAssessMethod method;
    AOIRegion region;
    std::int32_t scale;
    bool has_margins;
    std::vector<GeolineBase> margins;
};

}  // namespace geometric

#endif

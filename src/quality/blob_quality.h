// The blob-share grade: the part of the page's character-like blobs that a
// two-level (ink and paper) model describes well.
#ifndef MORVANE_QUALITY_BLOB_QUALITY_H
#define MORVANE_QUALITY_BLOB_QUALITY_H

#include <cstdint>

#include "binarization/binarization_method.h"
#include "quality/quality_evaluator.h"

namespace geometric {

class BlobQuality : public QualityEvaluator {
public:
    // minimum_disparity starts at 0 for method 7 and at 30 otherwise.
    BlobQuality(QualityAssessMethod method_, AOIRegion region_, BinarizationMethod binarization_method_, int scale_);

    // Least gray difference between a blob and its ring for the blob to be
    // graded at all.
    void set_min_fore_back_disparity(int disparity) { minimum_disparity = disparity; }
    // A blob whose two-level coding costs more than this share of its
    // gradient coding is badly formed.
    void set_compression_threshold(double threshold) { compression_threshold = threshold; }
    void set_binarization_method(BinarizationMethod method_) { binarization_method = method_; }

    // g / (g + b), g the well-formed and b the badly formed character blobs.
    // 0 when g < 4, when the text-like blobs that are characters at all make
    // 10% or less of the text-like blobs, or when the method is neither 6
    // nor 7: 0 is no judgement as well as a bad page. Throws
    // geometric::Geometricexception when `binary` does not fit the image or
    // the binarization method cannot run.
    double calculate_global_quality_imp(const common::Image& image, const common::Image* binary) override;
    // Grades no tiles.
    void calculate_local_qualities_imp(const common::Image& image, const common::Image* binary, int columns, int rows,
                                       std::vector<double>& qualities) override;

    double compression_threshold;
    std::int32_t minimum_disparity;
    BinarizationMethod binarization_method;
};

}  // namespace geometric

#endif

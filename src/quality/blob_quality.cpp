// The blob-share grade on the quality-testing page analysis.
#include "quality/blob_quality.h"

#include <memory>

#include "binarization/binarization_enginee.h"
#include "common/geometricexception.h"
#include "pageanalysis/hqc_pageanalysis.h"

namespace geometric {

namespace {

constexpr std::int32_t kDefaultDisparity = 30;
constexpr double kDefaultCompressionThreshold = 0.55;
// Fewer well-formed blobs than this say nothing about the page.
constexpr std::size_t kLeastRegularBlobs = 4;
// The characters (well or badly formed) must make more than this share of
// the text-like blobs; below it the page is mostly faint marks or clutter.
constexpr double kLeastCharacterShare = 0.1;

}  // namespace

BlobQuality::BlobQuality(QualityAssessMethod method_, AOIRegion region_, BinarizationMethod binarization_method_,
                         int scale_)
    : QualityEvaluator(method_, region_, scale_), compression_threshold(kDefaultCompressionThreshold),
      minimum_disparity(method_ == BLOB_SHARE_ANY_CONTRAST ? 0 : kDefaultDisparity),
      binarization_method(binarization_method_) {}

double BlobQuality::calculate_global_quality_imp(const common::Image& image, const common::Image* binary) {
    if (image.get_width() < 1 || image.get_height() < 1) return 0.0;
    // 1. The ink: the caller's, or the chosen binarization's.
    common::BasicImage own_binary;
    if (binary == nullptr) {
        BinarizationEnginee engine(&image, &own_binary, binarization_method);
        // A gray image always binarizes; the throw guards the engine's failure code.
        if (engine.perfomr_binarization() != 0) throw Geometricexception("the image to grade could not be binarized");
        binary = &own_binary;
    } else if (binary->get_image_type() != common::BINARY || binary->get_width() != image.get_width() ||
               binary->get_height() != image.get_height()) {
        throw Geometricexception("the binary image does not fit the image to grade");
    }

    // 2. to 4. Every component classified, with the compression test, within the margins.
    HqcPageanalysis analysis(&image, binary, nullptr);
    analysis.para.compression_threshold = compression_threshold;
    analysis.para.text_picture.minimum_disparity = minimum_disparity;
    analysis.para.select_text_blobs = false;
    analysis.para.use_compression_cost = true;
    if (has_margins) analysis.setDocumentMargins(margins);
    analysis.run_page_analysis();

    // 5. and 6. The share of well-formed blobs among the characters.
    const std::size_t good = analysis.filter.regular_blobs.size();
    const std::size_t bad = analysis.filter.irregular_blobs.size();
    if (good < kLeastRegularBlobs || (method != BLOB_SHARE && method != BLOB_SHARE_ANY_CONTRAST)) return 0.0;
    if (analysis.obtain_text_percentage_among_textlike_blobs() <= kLeastCharacterShare) return 0.0;
    return static_cast<double>(good) / static_cast<double>(good + bad);
}

void BlobQuality::calculate_local_qualities_imp(const common::Image&, const common::Image*, int, int,
                                                std::vector<double>&) {}

}  // namespace geometric

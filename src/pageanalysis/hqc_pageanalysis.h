// Components of a binarized page told apart by their gray surroundings:
// characters sharply darker than the paper around them, blurred ink that
// is not, and picture fragments, thick or large. The quality evaluation
// reads page quality as the share of characters among text-like blobs.
#ifndef MORVANE_PAGEANALYSIS_HQC_PAGEANALYSIS_H
#define MORVANE_PAGEANALYSIS_HQC_PAGEANALYSIS_H

#include <cstdint>
#include <memory>
#include <vector>

#include "common/basic_image.h"
#include "components/connected_component_calculator.h"
#include "pageanalysis/area_page_analysis.h"
#include "pageanalysis/pageanalysis.h"
#include "pageanalysis/text_picture_seperator.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

struct HqcPageanalysisPara {
    bool select_text_blobs = true;
    bool use_compression_cost = false;
    double compression_threshold = 0.55;
    TextPictureSeperatorPara text_picture;
};

class HqcPageanalysis : public Pageanalysis {
public:
    // Neither image owned; both of one size, `binary` BINARY and `gray` GRAY.
    HqcPageanalysis(const common::Image* gray_, const common::Image* binary, common::Image* output);

    // Thick strokes and large things as the picture image, then every
    // component classified; with select_text_blobs the filter's horizontal
    // selection follows. Always true.
    bool run_page_analysis() override;

    // Left, right, top and bottom, in that order.
    void setDocumentMargins(const std::vector<GeolineBase>& margins_);
    // Whether the centre of the blob's box lies beyond any margin.
    bool blobIsOutsideDocumentMargins(BinaryConnectedComponent* blob) const;
    // Blobs of text size that are no picture are text-like; those sharply
    // darker than their ring are characters (regular, or irregular when a
    // two-level model codes them badly under the compression test).
    void blob_classification(const common::Image& fat_elements, const common::Image& dilated);
    // (regular + irregular) / textlike_blobs; 0 without text-like blobs.
    double obtain_text_percentage_among_textlike_blobs() const;
    // ORs the blobs far above the mean area of a dilated copy of the page
    // into `fat_elements`: large things count as picture even when thin.
    void enhancePotentialPicImg(common::Image& fat_elements);

    HqcPageanalysisPara para;
    const common::Image* gray;
    std::shared_ptr<ConnectedComponentCalculator> calculator;
    std::int32_t textlike_blobs;
    GeolineBase margins[4];
    bool has_margins;
};

}  // namespace geometric

namespace geometric_test {

// The same classification on the newer analysis's frame, with no margins
// and no compression test.
class iHQCPageAnalysis : public AreaPageanalysis {
public:
    explicit iHQCPageAnalysis(std::shared_ptr<PageAnalysisComponentFactory> factory_);

    // The binary page eroded along x and y by erosion_size.
    void fetch_fat_picture_elements(const common::Image& binary, common::BasicImage& fat) const;
    // Binary and gray pages, the picture image and the dilated ring; false
    // when the page cannot be binarized or gives no gray page.
    bool prepare_for_blob_analysis(const common::Image& source);
    // The components that pass the size, thickness and disparity tests, as
    // regular blobs of a new collector.
    std::shared_ptr<TextBlobCollector> fetch_text_blobs() const;
    std::shared_ptr<TextBlobCollector> perform_page_analysis(const common::Image& source) override;

    int erosion_size = 8;
    int minimum_pixels = 5;
    int maximum_height = 128;
    int maximum_width = 128;
    int neighborhood_size = 5;
    bool use_mean_as_foreground = true;
    int minimum_disparity = 30;
    bool classify_by_area = false;

private:
    common::BasicImage binary;
    common::BasicImage gray_copy;
    common::BasicImage fat;
    common::BasicImage dilated;
};

}  // namespace geometric_test

#endif

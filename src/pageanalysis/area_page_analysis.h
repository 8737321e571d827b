// The newer generation's page analysis by dilation and area: any page is
// binarized, dilated, and its blobs sorted by area into regular and
// irregular. The older analysis of the same name is in area_pageanalysis.h.
#ifndef MORVANE_PAGEANALYSIS_AREA_PAGE_ANALYSIS_H
#define MORVANE_PAGEANALYSIS_AREA_PAGE_ANALYSIS_H

#include <memory>

#include "common/basic_image.h"
#include "pageanalysis/page_analysis.h"
#include "pageanalysis/page_analysis_component_factory.h"

namespace geometric_test {

class AreaPageanalysis : public PageAnalysis {
public:
    explicit AreaPageanalysis(std::shared_ptr<PageAnalysisComponentFactory> factory_);

    //   1. fetch_binary_and_gray_image: a BINARY source as it is, any
    //      other binarized by the factory's binarizer;
    //   2. dilation_iterations ring dilations (with clear_row_padding),
    //      when above 0;
    //   3. the components as regular blobs of a new collector;
    //   4. classify_blobs_based_on_area_constrains.
    // The source itself is never changed. A source that cannot be binarized
    // gives an empty collector.
    std::shared_ptr<TextBlobCollector> perform_page_analysis(const common::Image& source) override;

    // binary becomes a copy of a BINARY source and *gray null; any other
    // source is binarized into binary by the factory's binarizer, now
    // pointed at the two, and *gray is the binarizer's gray working copy
    // (smoothed, for Sauvola), which lives until its next run. The
    // binarizer's answer.
    bool fetch_binary_and_gray_image(const common::Image& source, common::BasicImage& binary,
                                     common::BasicImage** gray);
    // m, the mean area above area_floor (not-a-number without one), and
    // filter_by_area_constrains with lower_area_factor m and upper_area_factor m.
    void classify_blobs_based_on_area_constrains(TextBlobCollector& collector) const;
    // Moves the regular blobs of area below low or above high to the
    // irregular list; the bounds stay regular.
    static void filter_by_area_constrains(float low, float high, TextBlobCollector& collector);
    // Drops the regular blobs whose box reaches the first or last column or
    // line of a width by height image. Not part of the analysis itself.
    static void remove_text_pixels_near_image_edges(int width, int height, TextBlobCollector& collector);

    int dilation_iterations;
    unsigned area_floor;
    float lower_area_factor;
    float upper_area_factor;
    std::shared_ptr<PageAnalysisComponentFactory> factory;
};

}  // namespace geometric_test

#endif

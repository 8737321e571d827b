// The page analysis of a binary page by dilation and area alone: characters
// grow into words, and words of ordinary area are the text. The newer
// generation's analysis of the same name is in area_page_analysis.h.
#ifndef MORVANE_PAGEANALYSIS_AREA_PAGEANALYSIS_H
#define MORVANE_PAGEANALYSIS_AREA_PAGEANALYSIS_H

#include <memory>

#include "components/connected_component_calculator.h"
#include "pageanalysis/pageanalysis.h"

namespace geometric {

class AreaPageanalysis : public Pageanalysis {
public:
    // Lowers the filter's eccentricity threshold by 0.025 (0.975 to 0.95):
    // dilated words are rounder than the characters they are made of.
    AreaPageanalysis(const common::Image* image, common::Image* output);

    // On a copy of the BINARY image: dilation_iterations ring dilations
    // (with clear_row_padding) when dilate is set, the components of the
    // result as blobs, and the filter's horizontal selection, whose answer
    // this is. Boxes and areas are therefore those of dilated blobs. False
    // for an image of any other type.
    bool run_page_analysis() override;

    bool dilate;
    int dilation_iterations;
    bool clear_row_padding;
    // Keeps the strokes that the blobs point into.
    std::shared_ptr<ConnectedComponentCalculator> calculator;
};

}  // namespace geometric

#endif

// The newer generation of page analysis: an analyser holds no blobs and
// hands its result over as a collector.
#ifndef MORVANE_PAGEANALYSIS_PAGE_ANALYSIS_H
#define MORVANE_PAGEANALYSIS_PAGE_ANALYSIS_H

#include <list>
#include <memory>

#include "common/image.h"
#include "components/connected_component_calculator.h"
#include "components/text_blob.h"

namespace geometric_test {

// The blobs of one analysis and the calculator whose strokes they point
// into, which the collector keeps alive.
struct TextBlobCollector {
    std::list<geometric::TextBlob> regular_blobs;
    std::list<geometric::TextBlob> irregular_blobs;
    std::shared_ptr<geometric::ConnectedComponentCalculator> calculator;
};

class PageAnalysis {
public:
    virtual ~PageAnalysis() {}
    virtual std::shared_ptr<TextBlobCollector> perform_page_analysis(const common::Image& source) = 0;
};

}  // namespace geometric_test

#endif

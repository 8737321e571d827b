// What the newer page analyses are built with: the binarizer of their pages.
#ifndef MORVANE_PAGEANALYSIS_PAGE_ANALYSIS_COMPONENT_FACTORY_H
#define MORVANE_PAGEANALYSIS_PAGE_ANALYSIS_COMPONENT_FACTORY_H

#include <memory>

#include "binarization/binarization.h"

namespace geometric_test {

class PageAnalysisComponentFactory {
public:
    // binarization must not be null; it is pointed at each page in turn.
    explicit PageAnalysisComponentFactory(std::shared_ptr<geometric::Binarization> binarization_)
        : binarization(std::move(binarization_)) {}

    geometric::Binarization& get_binarization() const { return *binarization; }

private:
    std::shared_ptr<geometric::Binarization> binarization;
};

}  // namespace geometric_test

#endif

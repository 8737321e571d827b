// The page analysis of a gray page by text-picture separation.
#ifndef MORVANE_PAGEANALYSIS_APRIORI_PAGEANALYSIS_H
#define MORVANE_PAGEANALYSIS_APRIORI_PAGEANALYSIS_H

#include "binarization/quick_sauvola.h"
#include "pageanalysis/pageanalysis.h"
#include "pageanalysis/text_blob_filter.h"
#include "pageanalysis/text_picture_seperator.h"

namespace geometric {

class AprioriPageanalysis : public Pageanalysis {
public:
    // Default records: the Sauvola and separation records go to the
    // separator, the filter record to the filter.
    AprioriPageanalysis(const common::Image* image, common::Image* output);

    // The separator's text blobs of the GRAY image become the regular list,
    // then the filter's horizontal selection, whose answer this is. False
    // for an image of any other type.
    bool run_page_analysis() override;

    // Each record goes where the constructor put it, as well as here.
    const SauvolaPara& get_sauvola_para() const { return sauvola_para; }
    void set_sauvola_para(const SauvolaPara& value);
    const TestBlobFilterPara& get_filter_para() const { return filter_para; }
    void set_filter_para(const TestBlobFilterPara& value);
    const TextPictureSeperatorPara& get_seperator_para() const { return seperator_para; }
    void set_seperator_para(const TextPictureSeperatorPara& value);

private:
    SauvolaPara sauvola_para;
    TestBlobFilterPara filter_para;
    TextPictureSeperatorPara seperator_para;
    // Keeps the strokes that the blobs point into.
    TextPictureSeperator seperator;
};

}  // namespace geometric

#endif

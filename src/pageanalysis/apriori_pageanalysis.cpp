// The page analysis of a gray page by text-picture separation.
#include "pageanalysis/apriori_pageanalysis.h"

namespace geometric {

AprioriPageanalysis::AprioriPageanalysis(const common::Image* image_, common::Image* output_)
    : Pageanalysis(image_, output_) {
    seperator.set_sauvola_para(sauvola_para);
    seperator.set_para(seperator_para);
    filter.para = filter_para;
}

bool AprioriPageanalysis::run_page_analysis() {
    clear_blobs();
    if (!seperator.perform_text_picture_seperation(*image, filter.regular_blobs)) return false;
    return filter.select_blob_for_horizontal_vp();
}

void AprioriPageanalysis::set_sauvola_para(const SauvolaPara& value) {
    sauvola_para = value;
    seperator.set_sauvola_para(value);
}

void AprioriPageanalysis::set_filter_para(const TestBlobFilterPara& value) {
    filter_para = value;
    filter.para = value;
}

void AprioriPageanalysis::set_seperator_para(const TextPictureSeperatorPara& value) {
    seperator_para = value;
    seperator.set_para(value);
}

}  // namespace geometric

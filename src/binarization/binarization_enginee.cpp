// The table from method number to binarizer.
#include "binarization/binarization_enginee.h"

#include "binarization/omin_binarization.h"
#include "binarization/otsu_binarization.h"
#include "binarization/sauvola_binarization.h"
#include "binarization/sauvola_binarization_original.h"
#include "binarization/wolf_binarization_original.h"

namespace geometric {

BinarizationEnginee::BinarizationEnginee(const common::Image* input, common::BasicImage* output,
                                         BinarizationMethod method)
    : binarization(nullptr) {
    switch (method) {
        case SAUVOLA_QUICK:
            binarization = new SauvolaBinarization(input, output);
            break;
        case OMIN:
            binarization = new OminBinarization(input, output);
            break;
        case SAUVOLA_ORIGINAL:
            binarization = new SauvolaBinarizationOriginal(input, output);
            break;
        case WOLF_ORIGINAL:
            binarization = new WolfBinarizationOriginal(input, output);
            break;
        case OTSU:
            binarization = new OtsuBinarization(input, output);
            break;
        default:
            break;
    }
}

BinarizationEnginee::~BinarizationEnginee() { delete binarization; }

int BinarizationEnginee::perfomr_binarization() {
    if (binarization == nullptr) return -1;
    return binarization->run_binarization() ? 0 : -1;
}

}  // namespace geometric

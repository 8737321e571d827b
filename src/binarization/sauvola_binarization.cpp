// The fast Sauvola binarizer on the shared frame.
#include "binarization/sauvola_binarization.h"

namespace geometric {

namespace {
const char* const kNotBasicImage = "the gray image of the binarization must be a BasicImage";
}

SauvolaBinarization::SauvolaBinarization(const common::Image* input, common::BasicImage* output)
    : Binarization(input, output) {}

bool SauvolaBinarization::run_binarization_imp(common::Image* gray) {
    perform_quick_sauvola_binarization(gray);
    return true;
}

void SauvolaBinarization::perform_quick_sauvola_binarization(common::Image* gray) {
    common::BasicImage* working = dynamic_cast<common::BasicImage*>(gray);
    if (working == nullptr) throw kNotBasicImage;
    QuickSauvola sauvola(working, output);
    sauvola = para;
    sauvola.perform_quick_sauvola_binarization();
}

}  // namespace geometric

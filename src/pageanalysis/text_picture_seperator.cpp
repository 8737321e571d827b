// The text-picture separation of a gray page.
#include "pageanalysis/text_picture_seperator.h"

#include "binarization/sauvola_binarization.h"
#include "common/basic_image.h"
#include "pageanalysis/connected_compnent_classifier.h"
#include "pageanalysis/text_candidate_region_searcher.h"
#include "pixel/geo_despeckle.h"
#include "pixel/geo_morphological.h"

namespace geometric {

namespace {

// The erosion that leaves only picture-like ink: fixed here, whatever the
// record's erosion_size says.
constexpr int kThickErosion = 8;

}  // namespace

TextPictureSeperator::TextPictureSeperator() : calculator(std::make_shared<ConnectedComponentCalculator>()) {}

bool TextPictureSeperator::perform_text_picture_seperation(const common::Image& gray, std::list<TextBlob>& blobs) {
    // The disparity test reads gray levels byte by byte.
    if (gray.get_image_type() != common::GRAY) return false;

    // 1. Ink and paper, despeckled a second time.
    common::BasicImage binary;
    SauvolaBinarization sauvola(&gray, &binary);
    sauvola.set_para(sauvola_para);
    if (!sauvola.run_binarization()) return false;
    GeoDespeckle::removeIsolatedPixel(binary, binary);

    // 2. What survives heavy erosion.
    common::BasicImage thick;
    TextCandidateRegionSearcher::identify_candiate_text_region(binary, thick, kThickErosion);

    // 3. The ring around the ink: its clear pixels are background.
    common::BasicImage dilated(binary.get_height(), binary.get_width(), common::BINARY);
    GeoMorphological::dilate_xy(binary, dilated);

    // 4. The components, classified. A calculator serves one image.
    if (!calculator->isemptyblob()) calculator = std::make_shared<ConnectedComponentCalculator>();
    calculator->formulate_connected_components(binary);
    const ConnectedCompnentClassifier classifier(para);
    classifier.identify_text_connected_components(calculator.get(), thick, dilated, binary, gray, blobs);
    return true;
}

}  // namespace geometric

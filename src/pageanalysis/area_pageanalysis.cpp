// The page analysis of a binary page by dilation and area.
#include "pageanalysis/area_pageanalysis.h"

#include "common/basic_image.h"
#include "pixel/geo_morph_iterative_dilation.h"

namespace geometric {

namespace {

constexpr double kRounderWords = 0.025;

}  // namespace

AreaPageanalysis::AreaPageanalysis(const common::Image* image_, common::Image* output_)
    : Pageanalysis(image_, output_), dilate(true), dilation_iterations(2), clear_row_padding(true) {
    filter.para.eccentricity_threshold -= kRounderWords;
}

bool AreaPageanalysis::run_page_analysis() {
    clear_blobs();
    if (image->get_image_type() != common::BINARY) return false;
    common::BasicImage copy(*image);
    if (dilate) GeoMorphIterativeDilation(dilation_iterations, clear_row_padding).dilate_image_iterative(copy);
    calculator = std::make_shared<ConnectedComponentCalculator>();
    calculator->calculate_feature_blobs(copy, filter.regular_blobs);
    return filter.select_blob_for_horizontal_vp();
}

}  // namespace geometric

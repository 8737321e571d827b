// The newer generation's page analysis by dilation and area.
#include "pageanalysis/area_page_analysis.h"

#include "pageanalysis/text_blob_filter.h"
#include "pixel/geo_morph_iterative_dilation.h"

namespace geometric_test {

AreaPageanalysis::AreaPageanalysis(std::shared_ptr<PageAnalysisComponentFactory> factory_)
    : dilation_iterations(2), area_floor(3), lower_area_factor(0.3f), upper_area_factor(5.0f),
      factory(std::move(factory_)) {}

std::shared_ptr<TextBlobCollector> AreaPageanalysis::perform_page_analysis(const common::Image& source) {
    std::shared_ptr<TextBlobCollector> collector = std::make_shared<TextBlobCollector>();
    collector->calculator = std::make_shared<geometric::ConnectedComponentCalculator>();
    common::BasicImage binary;
    common::BasicImage* gray = nullptr;
    if (!fetch_binary_and_gray_image(source, binary, &gray)) return collector;
    if (dilation_iterations > 0)
        geometric::GeoMorphIterativeDilation(dilation_iterations, true).dilate_image_iterative(binary);
    collector->calculator->calculate_feature_blobs(binary, collector->regular_blobs);
    classify_blobs_based_on_area_constrains(*collector);
    return collector;
}

bool AreaPageanalysis::fetch_binary_and_gray_image(const common::Image& source, common::BasicImage& binary,
                                                   common::BasicImage** gray) {
    *gray = nullptr;
    if (source.get_image_type() == common::BINARY) {
        binary = source;
        return true;
    }
    geometric::Binarization& binarization = factory->get_binarization();
    binarization.set_images(&source, &binary);
    const bool done = binarization.run_binarization();
    binarization.obtain_grayscale_img(gray);
    return done;
}

void AreaPageanalysis::classify_blobs_based_on_area_constrains(TextBlobCollector& collector) const {
    const float mean = geometric::obtain_mean_blob_area(collector.regular_blobs, area_floor);
    filter_by_area_constrains(lower_area_factor * mean, upper_area_factor * mean, collector);
}

void AreaPageanalysis::filter_by_area_constrains(float low, float high, TextBlobCollector& collector) {
    geometric::move_blobs_outside_area(collector.regular_blobs, collector.irregular_blobs, low, high);
}

void AreaPageanalysis::remove_text_pixels_near_image_edges(int width, int height, TextBlobCollector& collector) {
    collector.regular_blobs.remove_if([width, height](const geometric::TextBlob& blob) {
        return geometric::box_touches_image_border(blob.box, width, height);
    });
}

}  // namespace geometric_test

// The frame of the page analyses: what every analysis measures and draws
// from its lists of blobs.
#include "pageanalysis/pageanalysis.h"

#include <cstdint>

#include "components/binary_connected_component.h"
#include "pixel/geo_morphological.h"

namespace geometric {

namespace {

// The resolution rule: ordinary body text has a box of kBodyTextHeight
// pixels at kBodyTextResolution dots an inch.
constexpr float kBodyTextResolution = 300.0f;
constexpr float kBodyTextHeight = 22.0f;

}  // namespace

Pageanalysis::Pageanalysis(const common::Image* image_, common::Image* output_)
    : image(image_), output(output_), filter(image_->get_width(), image_->get_height()) {}

Pageanalysis::~Pageanalysis() {}

void Pageanalysis::obtain_average_bounding_box(int& width, int& height) const {
    std::int64_t widths = 0, heights = 0, count = 0;
    for (const TextBlob& blob : filter.regular_blobs) {
        widths += blob.box.width();
        heights += blob.box.height();
        ++count;
    }
    width = count > 0 ? static_cast<int>(widths / count) : 0;
    height = count > 0 ? static_cast<int>(heights / count) : 0;
}

int Pageanalysis::obtain_spatial_resolution() const {
    int width = 0, height = 0;
    obtain_average_bounding_box(width, height);
    return static_cast<int>(kBodyTextResolution * (static_cast<float>(height) / kBodyTextHeight));
}

void Pageanalysis::obtain_normal_text_image(common::BasicImage& text) const { draw_blobs(filter.regular_blobs, text); }

void Pageanalysis::obtain_irregular_text_image(common::BasicImage& text) const {
    draw_blobs(filter.irregular_blobs, text);
}

void Pageanalysis::obtain_all_text_image(common::BasicImage& text) const {
    obtain_normal_text_image(text);
    common::BasicImage irregular;
    obtain_irregular_text_image(irregular);
    GeoMorphological::or2(text, irregular);
}

void Pageanalysis::clear_blobs() {
    filter.regular_blobs.clear();
    filter.irregular_blobs.clear();
}

void Pageanalysis::draw_blobs(const std::list<TextBlob>& blobs, common::BasicImage& text) const {
    text.reset(image->get_height(), image->get_width(), common::BINARY);
    for (const TextBlob& blob : blobs)
        if (blob.component != nullptr) blob.component->draw_blob_image(text);
}

}  // namespace geometric

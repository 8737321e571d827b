// The gray test of every component: size, thickness, and how much darker
// than its ring it is.
#include "pageanalysis/hqc_pageanalysis.h"

#include <cmath>

#include "common/constants.h"
#include "pageanalysis/area_pageanalysis.h"
#include "pixel/geo_morphological.h"

namespace geometric {

namespace {

// The large-thing image: a page dilated three times, nothing too small,
// and blobs above the mean area of those over 50 pixels.
constexpr int kPictureDilations = 3;
constexpr unsigned kPictureAreaFloor = 50;
// The model cost's charge per contour pixel that saw a background.
constexpr double kBackgroundCharge = 128.0;

struct BlobTests {
    int minimum_pixels, maximum_height, maximum_width, neighborhood_size, minimum_disparity;
    bool use_mean_as_foreground;
};

// Size and thickness; then the disparity, written to `disparity`, with
// the ring's means in `means`. True when the blob is text-like; `dark`
// tells whether it is darker than its ring by the least disparity.
bool is_textlike(const BlobTests& t, BinaryConnectedComponent& blob, const common::Image& fat,
                 const common::Image& binary, const common::Image& dilated, const common::Image& gray,
                 BinaryConnectedComponent::BlobNeighborForeBack& means, bool& dark) {
    dark = false;
    if (static_cast<long long>(blob.count_pixel()) < t.minimum_pixels) return false;
    const Geobox<int> box = blob.get_bounding_box();
    if (!(box.bottom - box.top < t.maximum_height) || !(box.right - box.left < t.maximum_width)) return false;
    if (blob.is_thick_blob(fat)) return false;
    blob.fore_back_neighbor(binary, dilated, gray, t.neighborhood_size, means);
    const int disparity = means.background - (t.use_mean_as_foreground ? means.all_pixels : means.foreground);
    dark = disparity >= t.minimum_disparity;
    return true;
}

}  // namespace

HqcPageanalysis::HqcPageanalysis(const common::Image* gray_, const common::Image* binary, common::Image* output)
    : Pageanalysis(binary, output), para(), gray(gray_), calculator(), textlike_blobs(0), margins(),
      has_margins(false) {}

bool HqcPageanalysis::run_page_analysis() {
    clear_blobs();
    textlike_blobs = 0;
    common::BasicImage fat(*image);
    GeoMorphological::erode_x(fat, para.text_picture.erosion_size);
    GeoMorphological::erode_y(fat, para.text_picture.erosion_size);
    enhancePotentialPicImg(fat);
    common::BasicImage dilated(image->get_height(), image->get_width(), common::BINARY);
    GeoMorphological::dilate_xy(*image, dilated);
    calculator = std::make_shared<ConnectedComponentCalculator>();
    calculator->formulate_connected_components(common::BasicImage(*image));
    blob_classification(fat, dilated);
    if (para.select_text_blobs) filter.select_blob_for_horizontal_vp();
    return true;
}

void HqcPageanalysis::setDocumentMargins(const std::vector<GeolineBase>& margins_) {
    for (std::size_t k = 0; k < 4 && k < margins_.size(); ++k) margins[k] = margins_[k];
    has_margins = true;
}

bool HqcPageanalysis::blobIsOutsideDocumentMargins(BinaryConnectedComponent* blob) const {
    const Geobox<int> box = blob->get_bounding_box();
    const float x = static_cast<float>(box.left + box.right) * 0.5f;
    const float y = static_cast<float>(box.top + box.bottom) * 0.5f;
    const auto value = [x, y](const GeolineBase& m) { return m.a * x + m.b * y + m.c; };
    // A left or right margin leaning past upright has its sides swapped.
    const auto leans_back = [](const GeolineBase& m) {
        return std::fabs(m.b) > constants::kDoubleEpsilon && m.line_angle() > 90.0;
    };
    const double left = value(margins[0]), right = value(margins[1]);
    if (leans_back(margins[0]) ? left > 0.0 : left < 0.0) return true;
    if (leans_back(margins[1]) ? right < 0.0 : right > 0.0) return true;
    return value(margins[2]) > 0.0 || value(margins[3]) < 0.0;
}

void HqcPageanalysis::blob_classification(const common::Image& fat_elements, const common::Image& dilated) {
    const TextPictureSeperatorPara& p = para.text_picture;
    const BlobTests tests{p.minimum_pixels,    p.maximum_height,   p.maximum_width,
                          p.neighborhood_size, p.minimum_disparity, p.use_mean_as_foreground};
    for (BinaryConnectedComponent& blob : *calculator) {
        if (has_margins && blobIsOutsideDocumentMargins(&blob)) continue;
        BinaryConnectedComponent::BlobNeighborForeBack means{};
        bool dark = false;
        if (!is_textlike(tests, blob, fat_elements, *image, dilated, *gray, means, dark)) continue;
        ++textlike_blobs;
        if (!dark) continue;
        const TextBlob text(blob.get_bounding_box(), blob.count_pixel(), &blob);
        if (!para.use_compression_cost) {
            filter.regular_blobs.push_back(text);
            continue;
        }
        BinaryConnectedComponent::BlobNeighborCost cost{};
        const double seen = blob.compression_cost(*image, dilated, *gray, p.neighborhood_size, means, cost);
        const double model = cost.foreground_cost + cost.background_cost + kBackgroundCharge * seen;
        if (model > cost.gradient_cost * para.compression_threshold)
            filter.irregular_blobs.push_back(text);
        else
            filter.regular_blobs.push_back(text);
    }
}

double HqcPageanalysis::obtain_text_percentage_among_textlike_blobs() const {
    if (textlike_blobs == 0) return 0.0;
    return static_cast<double>(filter.regular_blobs.size() + filter.irregular_blobs.size()) / textlike_blobs;
}

void HqcPageanalysis::enhancePotentialPicImg(common::Image& fat_elements) {
    AreaPageanalysis area(image, nullptr);
    area.dilation_iterations = kPictureDilations;
    area.filter.para.lower_area_factor = 0.0f;
    area.filter.para.area_floor = kPictureAreaFloor;
    area.run_page_analysis();
    common::BasicImage large;
    area.obtain_irregular_text_image(large);
    GeoMorphological::or2(fat_elements, large);
}

}  // namespace geometric

namespace geometric_test {

iHQCPageAnalysis::iHQCPageAnalysis(std::shared_ptr<PageAnalysisComponentFactory> factory_)
    : AreaPageanalysis(std::move(factory_)) {}

void iHQCPageAnalysis::fetch_fat_picture_elements(const common::Image& binary_, common::BasicImage& fat_) const {
    fat_ = binary_;
    geometric::GeoMorphological::erode_x(fat_, erosion_size);
    geometric::GeoMorphological::erode_y(fat_, erosion_size);
}

bool iHQCPageAnalysis::prepare_for_blob_analysis(const common::Image& source) {
    common::BasicImage* working_gray = nullptr;
    if (!fetch_binary_and_gray_image(source, binary, &working_gray)) return false;
    // A binary page has no gray to measure against.
    if (working_gray == nullptr) return false;
    gray_copy = *working_gray;
    fetch_fat_picture_elements(binary, fat);
    dilated = common::BasicImage(binary.get_height(), binary.get_width(), common::BINARY);
    geometric::GeoMorphological::dilate_xy(binary, dilated);
    return true;
}

std::shared_ptr<TextBlobCollector> iHQCPageAnalysis::fetch_text_blobs() const {
    auto collector = std::make_shared<TextBlobCollector>();
    collector->calculator = std::make_shared<geometric::ConnectedComponentCalculator>();
    collector->calculator->formulate_connected_components(binary);
    const geometric::BlobTests tests{minimum_pixels,    maximum_height,   maximum_width,
                                     neighborhood_size, minimum_disparity, use_mean_as_foreground};
    for (geometric::BinaryConnectedComponent& blob : *collector->calculator) {
        geometric::BinaryConnectedComponent::BlobNeighborForeBack means{};
        bool dark = false;
        if (!geometric::is_textlike(tests, blob, fat, binary, dilated, gray_copy, means, dark) || !dark) continue;
        collector->regular_blobs.emplace_back(blob.get_bounding_box(), blob.count_pixel(), &blob);
    }
    return collector;
}

std::shared_ptr<TextBlobCollector> iHQCPageAnalysis::perform_page_analysis(const common::Image& source) {
    if (!prepare_for_blob_analysis(source)) {
        auto empty = std::make_shared<TextBlobCollector>();
        empty->calculator = std::make_shared<geometric::ConnectedComponentCalculator>();
        return empty;
    }
    std::shared_ptr<TextBlobCollector> collector = fetch_text_blobs();
    if (classify_by_area) classify_blobs_based_on_area_constrains(*collector);
    return collector;
}

}  // namespace geometric_test

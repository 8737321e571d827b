// Text or picture, component by component.
#include "pageanalysis/connected_compnent_classifier.h"

namespace geometric {

namespace {

// The ring around a contour pixel reaches two pixels out: a 5 by 5 square.
constexpr int kBackgroundWindow = 5;

}  // namespace

ConnectedCompnentClassifier::ConnectedCompnentClassifier(const TextPictureSeperatorPara& para)
    : minimum_pixels(para.minimum_pixels), maximum_height(para.maximum_height), maximum_width(para.maximum_width),
      minimum_disparity(para.minimum_disparity) {}

void ConnectedCompnentClassifier::identify_text_connected_components(ConnectedComponentCalculator* calculator,
                                                                     const common::Image& thick,
                                                                     const common::Image& dilated,
                                                                     const common::Image& binary,
                                                                     const common::Image& gray,
                                                                     std::list<TextBlob>& blobs) const {
    for (BinaryConnectedComponent& head : *calculator) {
        // The size tests first: they are cheap and settle most pictures.
        const unsigned pixels = head.count_pixel();
        if (static_cast<long long>(pixels) < minimum_pixels) continue;
        const Geobox<int> box = head.get_bounding_box();
        if (!(box.bottom - box.top < maximum_height) || !(box.right - box.left < maximum_width)) continue;
        if (find_picture_blob_via_thick_stick(thick, &head)) continue;
        if (find_picture_blob_via_ground_disparity(binary, dilated, gray, &head)) continue;
        blobs.emplace_back(box, pixels, &head);
    }
}

bool ConnectedCompnentClassifier::find_picture_blob_via_thick_stick(const common::Image& thick,
                                                                    const BinaryConnectedComponent* head) const {
    return head != nullptr && head->is_thick_blob(thick);
}

bool ConnectedCompnentClassifier::find_picture_blob_via_ground_disparity(const common::Image& binary,
                                                                         const common::Image& dilated,
                                                                         const common::Image& gray,
                                                                         const BinaryConnectedComponent* head) const {
    if (head == nullptr) return minimum_disparity > 0;
    BinaryConnectedComponent::BlobNeighborForeBack means{};
    head->fore_back_neighbor(binary, dilated, gray, kBackgroundWindow, means);
    return minimum_disparity > means.background - means.all_pixels;
}

}  // namespace geometric

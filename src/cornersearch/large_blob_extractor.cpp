// Selection of the large components and the hand-out of their outlines.
#include "cornersearch/large_blob_extractor.h"

#include <algorithm>

#include "components/connected_component_calculator.h"

namespace geometric {

void LargeBlobLists::erase(std::size_t at) {
    areas.erase(areas.begin() + static_cast<long>(at));
    widths.erase(widths.begin() + static_cast<long>(at));
    heights.erase(heights.begin() + static_cast<long>(at));
    indices.erase(indices.begin() + static_cast<long>(at));
}

namespace {

// Position of the largest value, the first of equals; lists are not empty.
std::size_t largest(const std::vector<int>& values) {
    return static_cast<std::size_t>(std::max_element(values.begin(), values.end()) - values.begin());
}

// The three selections, which both generations of the extractor share.
bool select_by_area(const LargeBlobExtractorPara& para, LargeBlobLists& lists, std::vector<int>& selected) {
    if (lists.size() == 0) return false;
    const int limit = std::min(para.maximum_selected_blobs, static_cast<int>(lists.size()));
    int count = 0;
    float total = 0.0f;
    do {
        const std::size_t at = largest(lists.areas);
        total += static_cast<float>(lists.areas[at]);
        selected.push_back(lists.indices[at]);
        lists.erase(at);
        ++count;
    } while (total < para.minimum_total_area && count < limit);
    return count < limit;
}

void select_by(const LargeBlobExtractorPara& para, const std::vector<int>& measure, float minimum,
               LargeBlobLists& lists, std::vector<int>& selected) {
    if (lists.size() == 0) return;
    const int allowed = std::min(para.maximum_selected_blobs, static_cast<int>(lists.size()));
    if (allowed <= 1) return;
    std::size_t at = largest(measure);
    if (!(static_cast<float>(measure[at]) > minimum)) return;
    for (int count = 0; count < allowed - 1; ++count) {
        selected.push_back(lists.indices[at]);
        lists.erase(at);
        if (lists.size() == 0) return;
        at = largest(measure);
        if (!(static_cast<float>(measure[at]) > minimum)) return;
    }
}

// Area; width when the area selection kept room and two blobs are left;
// height whenever two blobs are still left, even after the area selection
// used up its count.
template <typename Extractor>
void select_large_blobs(Extractor& extractor, LargeBlobLists& lists) {
    if (extractor.select_large_area(lists) && lists.size() >= 2) extractor.select_large_width(lists);
    if (lists.size() >= 2) extractor.select_large_height(lists);
}

}  // namespace

bool LargeBlobExtractor::select_large_area(LargeBlobLists& lists) { return select_by_area(para, lists, selected); }

void LargeBlobExtractor::select_large_width(LargeBlobLists& lists) {
    select_by(para, lists.widths, para.minimum_blob_width, lists, selected);
}

void LargeBlobExtractor::select_large_height(LargeBlobLists& lists) {
    select_by(para, lists.heights, para.minimum_blob_height, lists, selected);
}

bool LargeBlobExtractor::obtain_large_blob(common::BasicImage& image, std::vector<int>& xs, std::vector<int>& ys,
                                           int /*mode*/, bool boundary_only) {
    selected.clear();
    ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(image);

    // 1. The boxes of all blobs; the small ones stay out of the lists.
    LargeBlobLists lists;
    int index = 0;
    for (auto it = calculator.begin(); it != calculator.end(); ++it, ++index) {
        const Geobox<int> box = it->get_bounding_box();
        const int area = box.width() * box.height();
        if (static_cast<float>(area) < para.minimum_blob_area) continue;
        lists.areas.push_back(area);
        lists.widths.push_back(box.width());
        lists.heights.push_back(box.height());
        lists.indices.push_back(index);
    }
    // 2. The selections.
    select_large_blobs(*this, lists);
    std::sort(selected.begin(), selected.end());

    // 3. The chosen blobs in component order.
    const int width = image.get_width();
    std::vector<int> kept_x, kept_y;
    index = 0;
    for (auto it = calculator.begin(); it != calculator.end(); ++it, ++index) {
        if (!std::binary_search(selected.begin(), selected.end(), index)) continue;
        if (!boundary_only) {
            it->get_element_coordinates(xs, ys);
        } else if (it->get_bounding_box().right == width - 2) {
            // The frame column of an edge image: outline points on it are no page edge.
            kept_x.clear();
            kept_y.clear();
            it->get_boundary(kept_x, kept_y, false);
            for (std::size_t i = 0; i < kept_x.size(); ++i) {
                if (kept_x[i] >= width - 2) continue;
                xs.push_back(kept_x[i]);
                ys.push_back(kept_y[i]);
            }
        } else {
            it->get_boundary(xs, ys, false);
        }
    }
    return true;
}

}  // namespace geometric

namespace geometric_test {

bool LargeBlobExtractor::obtain_large_blob(const common::Image& image, std::vector<int>& xs, std::vector<int>& ys) {
    selected.clear();
    const common::BasicImage binary(image);
    geometric::ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(binary);

    geometric::LargeBlobLists lists;
    int index = 0;
    for (auto it = calculator.begin(); it != calculator.end(); ++it, ++index) {
        const geometric::Geobox<int> box = it->get_bounding_box();
        const int area = box.width() * box.height();
        if (static_cast<float>(area) < para.minimum_blob_area && static_cast<float>(box.width()) < para.minimum_blob_width &&
            static_cast<float>(box.height()) < para.minimum_blob_height) {
            continue;
        }
        lists.areas.push_back(area);
        lists.widths.push_back(box.width());
        lists.heights.push_back(box.height());
        lists.indices.push_back(index);
    }
    geometric::select_large_blobs(*this, lists);
    create_contours_for_selected_blobs(binary, xs, ys);
    return true;
}

bool LargeBlobExtractor::select_large_area(geometric::LargeBlobLists& lists) {
    return geometric::select_by_area(para, lists, selected);
}

void LargeBlobExtractor::select_large_width(geometric::LargeBlobLists& lists) {
    geometric::select_by(para, lists.widths, para.minimum_blob_width, lists, selected);
}

void LargeBlobExtractor::select_large_height(geometric::LargeBlobLists& lists) {
    geometric::select_by(para, lists.heights, para.minimum_blob_height, lists, selected);
}

void LargeBlobExtractor::create_contours_for_selected_blobs(const common::BasicImage& image, std::vector<int>& xs,
                                                            std::vector<int>& ys) {
    std::sort(selected.begin(), selected.end());
    geometric::ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(image);
    int index = 0;
    for (auto it = calculator.begin(); it != calculator.end(); ++it, ++index)
        if (std::binary_search(selected.begin(), selected.end(), index)) it->get_boundary(xs, ys, false);
}

}  // namespace geometric_test

// Large components of a contour image.
#include "cornersearch/analysis_blob_extractor.h"

#include "common/basic_image.h"
#include "components/connected_component_calculator.h"

namespace geometric_test {

int AnalysisBlobExtractor::extract_analysis_blobs(const common::Image& image,
                                                  std::vector<std::vector<geometric::Geocoordinate<int>>>& contours,
                                                  std::vector<geometric::Geobox<int>>& boxes) const {
    const common::BasicImage* binary = dynamic_cast<const common::BasicImage*>(&image);
    common::BasicImage copy;
    if (binary == nullptr) {
        copy = image;
        binary = &copy;
    }
    geometric::ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(*binary);
    const float W = static_cast<float>(image.get_width());
    const float H = static_cast<float>(image.get_height());
    std::vector<int> xs, ys;
    std::vector<signed char> grid;
    std::vector<int> cells;
    for (auto it = calculator.begin(); it != calculator.end(); ++it) {
        const geometric::Geobox<int> box = it->get_bounding_box();
        const int w = box.width();
        const int h = box.height();
        const bool kept = minimum_area_ratio * W * H <= static_cast<float>(w) * static_cast<float>(h) ||
                          minimum_width_ratio * W <= static_cast<float>(w) ||
                          minimum_height_ratio * H <= static_cast<float>(h);
        if (!kept) continue;
        xs.clear();
        ys.clear();
        it->get_boundary(xs, ys, true, grid, cells);
        std::vector<geometric::Geocoordinate<int>> outline;
        outline.reserve(xs.size());
        for (std::size_t i = 0; i < xs.size(); ++i) outline.emplace_back(xs[i], ys[i]);
        contours.push_back(std::move(outline));
        boxes.push_back(box);
    }
    return 0;
}

}  // namespace geometric_test

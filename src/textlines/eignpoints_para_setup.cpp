// The page measure of the text route and the thresholds made from it.
#include "textlines/eignpoints_para_setup.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace geometric {

namespace {

// Stands for the distance of a point to its own duplicate.
constexpr float kDuplicateDistance = 1e10f;

}  // namespace

bool EignpointsParaSetup::set_up_eignpoints_para(Pageanalysis* analysis, std::vector<Geocoordinate<float>>& points,
                                                 HybridProjectivePara& para) {
    analysis->obtain_regular_text_bottom_centers(points);
    if (points.empty()) return false;
    set_up_thresholds(obtain_median_spacing(points), para);
    return true;
}

float EignpointsParaSetup::obtain_median_spacing(const std::vector<Geocoordinate<float>>& points) {
    std::vector<float> nearest(points.size(), kDuplicateDistance);
    for (std::size_t i = 0; i < points.size(); ++i)
        for (std::size_t j = 0; j < points.size(); ++j) {
            if (i == j) continue;
            const float dx = points[i].x - points[j].x;
            const float dy = points[i].y - points[j].y;
            const float d = (dx == 0.0f && dy == 0.0f) ? kDuplicateDistance : std::sqrt(dx * dx + dy * dy);
            nearest[i] = std::min(nearest[i], d);
        }
    const std::vector<float>::iterator middle = nearest.begin() + static_cast<std::ptrdiff_t>(nearest.size() / 2);
    std::nth_element(nearest.begin(), middle, nearest.end());
    return *middle;
}

void EignpointsParaSetup::set_up_thresholds(float median_spacing, HybridProjectivePara& para) {
    const float m = median_spacing;
    para.clustering.median_spacing = m;
    para.clustering.neighbor_distance = para.clustering.neighbor_distance_factor * m;
    para.clustering.line_distance = m;
    para.merger.search_step = m;
    para.merger.end_distance = 2.0f * m;
    para.merger.line_gap = 0.25f * m;
    para.margin.inlier_distance = 0.5f * m;
    para.margin.grouping_distance = 6.0f * m;
    para.margin.frame_margin = m;
    para.margin.merge_distance = m;
}

}  // namespace geometric

// Robust text lines from eigenpoint groups, weighed and paired for the
// vanishing point search.
#include "textlines/text_line_creator.h"

#include <cmath>
#include <cstddef>

#include "edgelines/priority_selector.h"
#include "textgeometry/geoline_adaptive_least_square.h"

namespace geometric {

namespace {

// The ten heaviest lines take part in the pairs.
constexpr int kSelectionCount = 10;
// Mean spread, in pixels, up to which the lines count as clean.
constexpr double kCleanSpread = 1.0;

}  // namespace

bool TextLineCreator::formulate_text_line(const std::vector<std::vector<Geocoordinate<float>>>& groups,
                                          std::vector<GeolineBase>& lines, std::vector<double>& weights,
                                          std::vector<std::pair<int, int>>& pairs) const {
    lines.resize(groups.size());
    std::vector<LineWeightor> records(groups.size());
    double sum = 0.0;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        lines[i] = formulate_one_line(groups[i], records[i]);
        sum += records[i].value;
    }
    const double mean_spread = groups.size() >= 2 ? sum / static_cast<double>(groups.size()) : sum;

    std::vector<double> positions;
    obtain_line_self_weighting(records, weights);
    obtain_line_positon_weighting(records, positions);
    pairs.clear();
    PrioritySelector(kSelectionCount).obtain_natural_priority_array(weights, positions, pairs);
    return mean_spread <= kCleanSpread;
}

GeolineBase TextLineCreator::formulate_one_line(const std::vector<Geocoordinate<float>>& group,
                                                LineWeightor& record) {
    GeolineAdaptiveLeastSquare first;
    first.use_pt_line_dis_iterative<float>(group, false, 0.01);
    std::vector<Geocoordinate<float>> above, below, kept;
    for (const Geocoordinate<float>& p : group) (first.point_value(p) >= 0.0 ? above : below).push_back(p);
    first.remove_outliers(above, below, kept, 1);

    // An empty kept set leaves the first line standing.
    GeolineAdaptiveLeastSquare line(first);
    line.use_pt_line_dis_iterative<float>(kept, false, 0.01);

    record = LineWeightor();
    record.angle = static_cast<float>(line.line_angle());
    record.count = static_cast<std::int32_t>(kept.size());
    if (kept.size() >= 2) {
        double mean = 0.0;
        for (const Geocoordinate<float>& p : kept) mean += line.point_distance(p);
        mean /= static_cast<double>(kept.size());
        double squares = 0.0;
        for (const Geocoordinate<float>& p : kept) {
            const double d = line.point_distance(p) - mean;
            squares += d * d;
        }
        record.value = std::sqrt(squares / static_cast<double>(kept.size() - 1));
    }
    if (!kept.empty()) {
        float sum_y = 0.0f;
        for (const Geocoordinate<float>& p : kept) sum_y += p.y;
        record.position = sum_y / static_cast<float>(kept.size());
    }
    return line;
}

}  // namespace geometric

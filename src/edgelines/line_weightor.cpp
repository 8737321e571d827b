// Weights and positions of candidate lines.
#include "edgelines/line_weightor.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace geometric {

void obtain_line_self_weighting(const std::vector<LineWeightor>& lines, std::vector<double>& weights) {
    std::int32_t largest_count = 0;
    float largest = -1.0f;
    float smallest = std::numeric_limits<float>::infinity();
    for (const LineWeightor& line : lines) {
        largest_count = std::max(largest_count, line.count);
        largest = std::max(largest, static_cast<float>(line.value));
        smallest = std::min(smallest, static_cast<float>(line.value));
    }
    const float sum = smallest + largest;
    weights.resize(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const double count_share =
            largest_count != 0 ? static_cast<double>(lines[i].count) / largest_count : 0.0;
        const double straightness =
            largest != 0.0f ? std::fabs(lines[i].value - static_cast<double>(sum)) / largest : 1.0;
        weights[i] = count_share * straightness;
    }
}

void obtain_line_positon_weighting(const std::vector<LineWeightor>& lines, std::vector<double>& positions) {
    for (const LineWeightor& line : lines) positions.push_back(static_cast<double>(line.position));
}

}  // namespace geometric

// Blob lines for the vertical vanishing point, and the width they cover.
#include "textlines/blob_line_creator.h"

#include <algorithm>

#include "edgelines/priority_selector.h"

namespace geometric {

namespace {

constexpr int kSelectionCount = 10;
constexpr int kBins = 4;

}  // namespace

int BlobLineCreator::perform_blob_line_formulation(std::vector<GeolineBasePoints<float>>& blob_lines,
                                                   std::vector<double>& weights,
                                                   std::vector<std::pair<int, int>>& pairs) {
    if (analysis == nullptr) return NO_BLOB_LINES;
    const int found = analysis->run_slim_blob_searching(blob_lines, weights);
    if (found == NO_BLOB_LINES) return found;

    std::vector<double> positions;
    positions.reserve(blob_lines.size());
    // Every slim blob's line carries its centre as its one support point;
    // a line without one stands where it crosses the top row.
    for (const GeolineBasePoints<float>& line : blob_lines)
        positions.push_back(line.points.empty() ? line.x_at(0.0) : static_cast<double>(line.points.front().x));
    PrioritySelector(kSelectionCount).obtain_uniform_priority_array(weights, positions, pairs);
    return covers_the_width(positions) ? found : BLOB_LINES_NOT_SPREAD;
}

bool BlobLineCreator::covers_the_width(std::vector<double> positions) {
    if (positions.empty()) return false;
    std::sort(positions.begin(), positions.end());
    const double first = positions.front();
    const double span = 1.0 + positions.back() - first;
    int counts[kBins] = {0, 0, 0, 0};
    for (const double p : positions) {
        const int bin = static_cast<int>((p - first) / span * 4.0);
        if (bin >= 0 && bin < kBins) ++counts[bin];
    }
    return std::all_of(counts, counts + kBins, [](int count) { return count > 0; });
}

}  // namespace geometric

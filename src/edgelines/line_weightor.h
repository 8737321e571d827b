// The record that describes one candidate line of the text route, and the
// weights and positions taken from such records to order line pairs.
#ifndef MORVANE_EDGELINES_LINE_WEIGHTOR_H
#define MORVANE_EDGELINES_LINE_WEIGHTOR_H

#include <cstdint>
#include <vector>

namespace geometric {

struct LineWeightor {
    double value = 0.0;       // spread of the line's support, smaller is straighter
    std::int32_t count = 0;   // number of supporting items
    float angle = 0.0f;       // degrees, not read when weighting
    float position = 0.0f;    // where the line lies across the page
};

// weights[i] = (count_i / c) (|value_i - (L + M)| / M), with c the largest
// count, M and L the largest and smallest value, both in single precision
// (L + M too): the straightest line with the most support weighs 1, the
// least straight L / M of its share of the support. `weights` is resized to
// the records. Where the formula has no value: all counts 0 give weight 0
// (no support), all values 0 give the factor 1 (every line is the straightest).
void obtain_line_self_weighting(const std::vector<LineWeightor>& lines, std::vector<double>& weights);

// Appends each record's position, widened, to `positions` (not cleared first).
void obtain_line_positon_weighting(const std::vector<LineWeightor>& lines, std::vector<double>& positions);

}  // namespace geometric

#endif

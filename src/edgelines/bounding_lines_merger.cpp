// Merging of two lists of page-edge lines by side.
#include "edgelines/bounding_lines_merger.h"

namespace geometric {

void BoundingLinesMerger::merge_bounding_lines(std::vector<BoundingLine>& lines,
                                               const std::vector<BoundingLine>& others) {
    // New sides wait until the pass ends, so that a side repeated in `others`
    // is never merged into a record that came from `others` itself.
    std::vector<BoundingLine> unmatched;
    for (const BoundingLine& other : others) {
        bool found = false;
        for (BoundingLine& held : lines) {
            if (held.position != other.position) continue;
            found = true;
            if (held.segment_length < other.segment_length) {
                const BoundingLinePosition side = held.position;
                held = other;
                held.position = side;
            }
        }
        if (!found) unmatched.push_back(other);
    }
    lines.insert(lines.end(), unmatched.begin(), unmatched.end());
}

}  // namespace geometric

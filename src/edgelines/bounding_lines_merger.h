// Joins two lists of page-edge lines, keeping for each side the line with the
// longest support.
#ifndef MORVANE_EDGELINES_BOUNDING_LINES_MERGER_H
#define MORVANE_EDGELINES_BOUNDING_LINES_MERGER_H

#include <vector>

#include "edgelines/bounding_line.h"

namespace geometric {

class BoundingLinesMerger {
public:
    // For each record of `others`, in order: every held record of the same
    // side whose segment_length is smaller takes over its line, support count,
    // length, ends and dominant-segment flag, keeping its position (equal
    // lengths keep the held line). Records whose side occurs nowhere in
    // `lines` are appended after the pass, in order, so a side repeated in
    // `others` can add several records.
    static void merge_bounding_lines(std::vector<BoundingLine>& lines, const std::vector<BoundingLine>& others);
};

}  // namespace geometric

#endif

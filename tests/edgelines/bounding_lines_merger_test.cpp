// Merging two lists of page-edge lines by side and support length.
#include <gtest/gtest.h>

#include <vector>

#include "edgelines/bounding_lines_merger.h"

using namespace geometric;

namespace {

// A record whose fields all differ with its id, so that a copied record shows.
BoundingLine record(BoundingLinePosition position, int length, int id) {
    BoundingLine line;
    line.position = position;
    line.line = GeolineBase(0.0, -1.0, id);
    line.segment_length = length;
    line.support_count = id;
    line.x1 = line.y2 = static_cast<float>(id);
    line.has_dominant_segment = id % 2 == 0;
    return line;
}

std::vector<int> ids(const std::vector<BoundingLine>& lines) {
    std::vector<int> out;
    for (const BoundingLine& l : lines) {
        EXPECT_TRUE(l.line.c == l.support_count && l.x1 == l.support_count && l.y2 == l.support_count &&
                    l.has_dominant_segment == (l.support_count % 2 == 0));
        out.push_back(l.support_count);
    }
    return out;
}

}  // namespace

TEST(BoundingLinesMerger, LongerLinesReplaceHeldOnesAndNewSidesAreAppendedAfterThePass) {
    struct Case {
        std::vector<BoundingLine> lines, others;
        std::vector<int> expected;
    };
    const Case cases[] = {
        // One longer replaces, equal or shorter leave the held line, a new side is appended.
        {{record(TOP_BOUNDARY, 100, 10), record(LEFT_BOUNDARY, 80, 20), record(BOTTOM_BOUNDARY, 90, 30)},
         {record(TOP_BOUNDARY, 101, 11), record(LEFT_BOUNDARY, 80, 21), record(BOTTOM_BOUNDARY, 89, 31),
          record(RIGHT_BOUNDARY, 50, 41)},
         {11, 20, 30, 41}},
        // Every held record of the side is judged by itself.
        {{record(TOP_BOUNDARY, 40, 1), record(TOP_BOUNDARY, 70, 2)}, {record(TOP_BOUNDARY, 60, 3)}, {3, 2}},
        // New sides arrive after the pass; none is merged into one of the same call.
        {{record(TOP_BOUNDARY, 40, 1)},
         {record(RIGHT_BOUNDARY, 10, 2), record(RIGHT_BOUNDARY, 90, 3), record(TOP_BOUNDARY, 50, 4)},
         {4, 2, 3}},
        {{record(LEFT_BOUNDARY, 5, 1)}, {}, {1}},
        {{}, {record(LEFT_BOUNDARY, 5, 1), record(LEFT_BOUNDARY, 9, 2)}, {1, 2}},
    };
    for (const Case& c : cases) {
        std::vector<BoundingLine> lines = c.lines;
        BoundingLinesMerger::merge_bounding_lines(lines, c.others);
        EXPECT_EQ(ids(lines), c.expected);
    }
}

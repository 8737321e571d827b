// Merging two lists of page-edge lines by side and support length.
#include <gtest/gtest.h>

#include <vector>

#include "edgelines/bounding_lines_merger.h"

using namespace geometric;

namespace {

BoundingLine record(BoundingLinePosition position, int length, double c) {
    BoundingLine line;
    line.position = position;
    line.line = GeolineBase(0.0, -1.0, c);
    line.segment_length = length;
    line.support_count = length;  // distinct values show which record was taken
    line.x1 = static_cast<float>(c);
    line.y1 = 1.0f;
    line.x2 = 2.0f;
    line.y2 = static_cast<float>(length);
    line.has_dominant_segment = length % 2 == 0;
    return line;
}

void expect_record(const BoundingLine& actual, const BoundingLine& expected, int index) {
    EXPECT_EQ(actual.position, expected.position) << index;
    EXPECT_EQ(actual.line.c, expected.line.c) << index;
    EXPECT_EQ(actual.segment_length, expected.segment_length) << index;
    EXPECT_EQ(actual.support_count, expected.support_count) << index;
    EXPECT_EQ(actual.x1, expected.x1) << index;
    EXPECT_EQ(actual.y2, expected.y2) << index;
    EXPECT_EQ(actual.has_dominant_segment, expected.has_dominant_segment) << index;
}

void expect_records(const std::vector<BoundingLine>& actual, const std::vector<BoundingLine>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) expect_record(actual[i], expected[i], static_cast<int>(i));
}

}  // namespace

TEST(BoundingLinesMerger, MergeTable) {
    struct Case {
        const char* what;
        std::vector<BoundingLine> lines, others, expected;
    };
    const Case cases[] = {
        // One longer replaces, equal or shorter leave the held line, a new side is appended.
        {"by support length",
         {record(TOP_BOUNDARY, 100, 10), record(LEFT_BOUNDARY, 80, 20), record(BOTTOM_BOUNDARY, 90, 30)},
         {record(TOP_BOUNDARY, 101, 11), record(LEFT_BOUNDARY, 80, 21), record(BOTTOM_BOUNDARY, 89, 31),
          record(RIGHT_BOUNDARY, 50, 41)},
         {record(TOP_BOUNDARY, 101, 11), record(LEFT_BOUNDARY, 80, 20), record(BOTTOM_BOUNDARY, 90, 30),
          record(RIGHT_BOUNDARY, 50, 41)}},
        {"every held record of the side is judged by itself",
         {record(TOP_BOUNDARY, 40, 1), record(TOP_BOUNDARY, 70, 2)},
         {record(TOP_BOUNDARY, 60, 3)},
         {record(TOP_BOUNDARY, 60, 3), record(TOP_BOUNDARY, 70, 2)}},
        {"new sides arrive after the pass, none merged into one of the same call",
         {record(TOP_BOUNDARY, 40, 1)},
         {record(RIGHT_BOUNDARY, 10, 2), record(RIGHT_BOUNDARY, 90, 3), record(TOP_BOUNDARY, 50, 4)},
         {record(TOP_BOUNDARY, 50, 4), record(RIGHT_BOUNDARY, 10, 2), record(RIGHT_BOUNDARY, 90, 3)}},
        {"nothing to merge", {record(LEFT_BOUNDARY, 5, 1), record(TOP_BOUNDARY, 6, 2)}, {},
         {record(LEFT_BOUNDARY, 5, 1), record(TOP_BOUNDARY, 6, 2)}},
        {"nothing held", {},
         {record(LEFT_BOUNDARY, 5, 1), record(LEFT_BOUNDARY, 9, 2), record(BOTTOM_BOUNDARY, 3, 3)},
         {record(LEFT_BOUNDARY, 5, 1), record(LEFT_BOUNDARY, 9, 2), record(BOTTOM_BOUNDARY, 3, 3)}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        std::vector<BoundingLine> lines = c.lines;
        BoundingLinesMerger::merge_bounding_lines(lines, c.others);
        expect_records(lines, c.expected);
    }
}

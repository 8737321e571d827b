// The bitonal and gray line scanners, and the runs of a whole image.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "components/runs_in_image.h"
#include "components/runs_in_line.h"

using namespace geometric;

namespace {

std::vector<BinaryRun> runs_of(const RunsInLine& line) { return std::vector<BinaryRun>(line.begin(), line.end()); }

bool operator_equal(const std::vector<BinaryRun>& a, const std::vector<BinaryRun>& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i].start != b[i].start || a[i].end != b[i].end) return false;
    return true;
}

// Runs of a bit row, pixel by pixel.
std::vector<BinaryRun> plain_bit_runs(const std::vector<unsigned char>& bytes, int start_column, int width) {
    std::vector<BinaryRun> runs;
    int x = start_column;
    while (x < width) {
        while (x < width && !(bytes[x >> 3] & (0x80 >> (x & 7)))) ++x;
        if (x == width) break;
        const int start = x;
        while (x < width && (bytes[x >> 3] & (0x80 >> (x & 7)))) ++x;
        runs.push_back(BinaryRun{start, x - 1});
    }
    return runs;
}

std::vector<unsigned char> bits_of(const std::vector<int>& columns, int row_size) {
    std::vector<unsigned char> bytes(row_size, 0);
    for (int x : columns) bytes[x >> 3] |= static_cast<unsigned char>(0x80 >> (x & 7));
    return bytes;
}

std::string describe(const std::vector<BinaryRun>& runs) {
    std::string text;
    for (const BinaryRun& run : runs) text += "(" + std::to_string(run.start) + "," + std::to_string(run.end) + ")";
    return text;
}

}  // namespace

TEST(RunsInLine, BitonalScanMatchesAPixelScanOnRandomLines) {
    std::mt19937 random(20261123u);
    RunsInLine line;
    for (int trial = 0; trial < 3000; ++trial) {
        const int width = 1 + static_cast<int>(random() % 300);
        const int row_size = (width + 31) / 32 * 4;
        std::vector<unsigned char> bytes(row_size, 0);
        // Densities from empty to full, with long blank stretches for the word skip.
        const int density = static_cast<int>(random() % 6);
        for (int x = 0; x < width; ++x) {
            const bool blank_stretch = density == 1 && (x / 40) % 2 == 0;
            bool set = false;
            switch (density) {
                case 0: set = false; break;
                case 5: set = true; break;
                default: set = !blank_stretch && static_cast<int>(random() % 8) < density * 2 - 1; break;
            }
            if (set) bytes[x >> 3] |= static_cast<unsigned char>(0x80 >> (x & 7));
        }
        const int start_column = (trial % 3 == 0) ? 0 : static_cast<int>(random() % width);
        line.formulate_runs(bytes.data(), start_column, width);
        const std::vector<BinaryRun> expected = plain_bit_runs(bytes, start_column, width);
        ASSERT_TRUE(operator_equal(runs_of(line), expected))
            << "width " << width << " start " << start_column << ": " << describe(runs_of(line)) << " vs "
            << describe(expected);
    }
}

TEST(RunsInLine, BitonalScanCases) {
    struct Case {
        const char* name;
        std::vector<int> columns;
        int start_column;
        int width;
        std::vector<BinaryRun> expected;
    };
    const std::vector<Case> cases = {
        {"empty line", {}, 0, 64, {}},
        {"run reaching the last column of width 13", {9, 10, 11, 12}, 0, 13, {{9, 12}}},
        {"run through a whole byte up to width 16", {6, 7, 8, 9, 10, 11, 12, 13, 14, 15}, 0, 16, {{6, 15}}},
        {"run ending exactly on a byte boundary", {3, 4, 5, 6, 7}, 0, 20, {{3, 7}}},
        {"one pixel at column 0 and at the last column", {0, 99}, 0, 100, {{0, 0}, {99, 99}}},
        {"start column inside a run cuts it", {10, 11, 12, 13}, 12, 40, {{12, 13}}},
        {"start column past byte 1 keeps its bit offset", {17, 21, 22}, 19, 40, {{21, 22}}},
        {"pixels after a long blank stretch", {200, 201, 250}, 0, 256, {{200, 201}, {250, 250}}},
        {"alternating pixels", {0, 2, 4, 6, 8}, 0, 9, {{0, 0}, {2, 2}, {4, 4}, {6, 6}, {8, 8}}},
    };
    RunsInLine line;
    for (const Case& c : cases) {
        const std::vector<unsigned char> bytes = bits_of(c.columns, (c.width + 31) / 32 * 4);
        line.formulate_runs(bytes.data(), c.start_column, c.width);
        EXPECT_TRUE(operator_equal(runs_of(line), c.expected)) << c.name << ": " << describe(runs_of(line));
    }
}

TEST(RunsInLine, SetPaddingBitGivesARunStartingBeyondItsEnd) {
    // Width 12: bits 12 to 31 of the row are padding and must be zero. A set
    // one is still reported as (start, width - 1), and the scan stops there.
    const std::vector<unsigned char> bytes = bits_of({2, 14, 30}, 4);
    RunsInLine line;
    line.formulate_runs(bytes.data(), 0, 12);
    ASSERT_EQ(line.size(), 2u);
    EXPECT_EQ(line[0].start, 2);
    EXPECT_EQ(line[0].end, 2);
    EXPECT_EQ(line[1].start, 14);
    EXPECT_EQ(line[1].end, 11);
}

TEST(RunsInLine, SetPaddingBitJoinedToTheLastColumnExtendsTheRun) {
    // The run starting at column 10 continues into the padding; its end is
    // the first clear bit minus one, past the width.
    const std::vector<unsigned char> bytes = bits_of({10, 11, 12, 13}, 4);
    RunsInLine line;
    line.formulate_runs(bytes.data(), 0, 12);
    ASSERT_EQ(line.size(), 1u);
    EXPECT_EQ(line[0].start, 10);
    EXPECT_EQ(line[0].end, 13);
}

TEST(RunsInLine, RescanEmptiesTheRunsFirstAndNullOrEmptyRangesGiveNothing) {
    const std::vector<unsigned char> bytes = bits_of({1, 5}, 4);
    RunsInLine line;
    line.formulate_runs(bytes.data(), 0, 8);
    EXPECT_EQ(line.size(), 2u);
    line.formulate_runs(bytes.data(), 3, 8);
    EXPECT_EQ(line.size(), 1u);
    line.formulate_runs(bytes.data(), 8, 8);
    EXPECT_TRUE(line.empty());
    line.formulate_runs(nullptr, 0, 8);
    EXPECT_TRUE(line.empty());
    line.formulate_gray_runs(nullptr, 0, 8);
    EXPECT_TRUE(line.empty());
}

TEST(RunsInLine, GrayScanTreatsOnly255AsBackground) {
    const unsigned char pixels[] = {255, 254, 0, 255, 255, 128, 255, 1};
    RunsInLine line;
    line.formulate_gray_runs(pixels, 0, 8);
    ASSERT_EQ(line.size(), 3u);
    EXPECT_EQ(line[0].start, 1);
    EXPECT_EQ(line[0].end, 2);
    EXPECT_EQ(line[1].start, 5);
    EXPECT_EQ(line[1].end, 5);
    // A run still open at the line's end closes at width - 1.
    EXPECT_EQ(line[2].start, 7);
    EXPECT_EQ(line[2].end, 7);

    line.formulate_gray_runs(pixels, 2, 7);
    ASSERT_EQ(line.size(), 2u);
    EXPECT_EQ(line[0].start, 2);
    EXPECT_EQ(line[1].start, 5);

    const unsigned char paper[] = {255, 255, 255};
    line.formulate_gray_runs(paper, 0, 3);
    EXPECT_TRUE(line.empty());
}

TEST(RunsInImage, ScansBinaryImagesByBitAndEveryOtherTypeByByte) {
    common::BasicImage binary(2, 10, common::BINARY);
    binary.set_pixel(9, 1, 1);
    binary.set_pixel(0, 1, 1);
    const RunsInImage binary_runs(binary);
    ASSERT_EQ(binary_runs.size(), 2u);
    EXPECT_TRUE(binary_runs[0].empty());
    ASSERT_EQ(binary_runs[1].size(), 2u);
    EXPECT_EQ(binary_runs[1][1].start, 9);
    EXPECT_EQ(binary_runs[1][1].end, 9);

    common::BasicImage gray(1, 4, common::GRAY);  // all 0: all foreground
    gray.set_pixel(2, 0, 255);
    const RunsInImage gray_runs(gray);
    ASSERT_EQ(gray_runs[0].size(), 2u);
    EXPECT_EQ(gray_runs[0][0].end, 1);
    EXPECT_EQ(gray_runs[0][1].start, 3);

    // A BGRA image has no line addresses: no runs, no crash.
    common::BasicImage bgra(2, 3, common::BGRA);
    const RunsInImage bgra_runs(bgra);
    ASSERT_EQ(bgra_runs.size(), 2u);
    EXPECT_TRUE(bgra_runs[0].empty());
}

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
        ASSERT_EQ(describe(runs_of(line)), describe(expected)) << "width " << width << " start " << start_column;
    }
}

// Width 12: bits 12 to 31 of the row are padding and should be zero. A set
// one alone is still reported as (start, width - 1); one joined to the last
// column extends that run to the first clear bit minus one.
TEST(RunsInLine, SetPaddingBits) {
    RunsInLine line;
    const std::vector<unsigned char> lone = bits_of({2, 14, 30}, 4);
    line.formulate_runs(lone.data(), 0, 12);
    EXPECT_EQ(describe(runs_of(line)), "(2,2)(14,11)");
    const std::vector<unsigned char> joined = bits_of({10, 11, 12, 13}, 4);
    line.formulate_runs(joined.data(), 0, 12);
    EXPECT_EQ(describe(runs_of(line)), "(10,13)");
}

TEST(RunsInLine, GrayScanTreatsOnly255AsBackground) {
    const unsigned char pixels[] = {255, 254, 0, 255, 255, 128, 255, 1};
    RunsInLine line;
    line.formulate_gray_runs(pixels, 0, 8);
    EXPECT_EQ(describe(runs_of(line)), "(1,2)(5,5)(7,7)");  // a run open at the end closes at width - 1
    line.formulate_gray_runs(pixels, 2, 7);
    EXPECT_EQ(describe(runs_of(line)), "(2,2)(5,5)");
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
    EXPECT_EQ(describe(runs_of(binary_runs[1])), "(0,0)(9,9)");
    common::BasicImage gray(1, 4, common::GRAY);  // all 0: all foreground
    gray.set_pixel(2, 0, 255);
    EXPECT_EQ(describe(runs_of(RunsInImage(gray)[0])), "(0,1)(3,3)");
    // A BGRA image has no line addresses: no runs, no crash.
    const RunsInImage bgra_runs(common::BasicImage(2, 3, common::BGRA));
    ASSERT_EQ(bgra_runs.size(), 2u);
    EXPECT_TRUE(bgra_runs[0].empty());
}

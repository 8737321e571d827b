// Runs and queries of components: the line scanner against a pixel scan and
// at its quirks, contours, scale maps, and a component's own features
// (contour trace, thick-blob test, gradient cost).
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "common/basic_image.h"
#include "components/binary_connected_component.h"
#include "components/connected_component_calculator.h"
#include "pixel/runs_in_image.h"
#include "pixel/runs_in_line.h"
#include "support/images.h"
#include "support/references.h"

using namespace geometric;
using support::binary_from_text;

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

namespace {

// Level 1 over base 0: a one-pixel blob (under the minimum), a flat bar of
// 4 x 1 and a block of 3 x 2 (over the maximum).
const std::vector<std::string> kScaleBinary = {"#.......", "........", "..####..",
                                               "........", ".....###", ".....###"};

struct ScaleRun {
    int result;
    common::BasicImage binary;
    common::BasicImage scale;
};

ScaleRun run_scale(bool only, bool use_height) {
    ScaleRun run{0, binary_from_text(kScaleBinary), common::BasicImage(12, 16, common::GRAY)};
    ConnectedComponentCalculator calculator;
    run.result = only ? calculator.create_scale_img_only(1, run.scale, run.binary, 0, 4, use_height, 5.0, 2.0)
                      : calculator.create_scale_img(1, run.scale, run.binary, 0, 4, use_height, 5.0, 2.0);
    return run;
}

}  // namespace

TEST(ConnectedComponentQueries, ScaleImagesEraseOrKeepTheComponentsOutOfRange) {
    for (bool only : {false, true}) {
        const ScaleRun by_width = run_scale(only, false);
        EXPECT_EQ(by_width.result, 1);
        // The bar is 4 wide, at least 4 / 2: drawn as 2 x 2 blocks of level + 1.
        for (int y = 0; y < 12; ++y)
            for (int x = 0; x < 16; ++x)
                EXPECT_EQ(by_width.scale.get_pixel(x, y), (y >= 4 && y < 6 && x >= 4 && x < 12) ? 2u : 0u);
        // Only create_scale_img erases the dot and the block from the binary image.
        std::vector<std::string> kept = kScaleBinary;
        if (!only) kept = {"........", "........", "..####..", "........", "........", "........"};
        EXPECT_TRUE(support::same_bytes(by_width.binary, binary_from_text(kept))) << only;

        // By height the bar (1 < 2) is erased by both and nothing is drawn.
        const ScaleRun by_height = run_scale(only, true);
        EXPECT_EQ(by_height.result, 1);
        EXPECT_TRUE(support::bytes_of(by_height.scale) == std::vector<unsigned char>(by_height.scale.get_data_size(), 0));
        EXPECT_EQ(by_height.binary.get_pixel(3, 2), 0u);
        EXPECT_EQ(by_height.binary.get_pixel(0, 0), only ? 1u : 0u);
    }
}

namespace {

typedef BinaryConnectedComponent Stroke;
typedef std::vector<std::pair<int, int>> Points;

std::vector<Stroke*> heads_of(ConnectedComponentCalculator& calculator) {
    std::vector<Stroke*> heads;
    for (Stroke& head : calculator) heads.push_back(&head);
    return heads;
}

Points boundary_of(const Stroke& head, bool keep_all) {
    std::vector<int> xs, ys;
    head.get_boundary(xs, ys, keep_all);
    Points points;
    for (size_t i = 0; i < xs.size(); ++i) points.emplace_back(xs[i], ys[i]);
    return points;
}

// The contour of the only component of a drawn image.
Points single_contour(const std::vector<std::string>& text, bool keep_all) {
    const common::BasicImage image = binary_from_text(text);
    ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(image);
    const std::vector<Stroke*> heads = heads_of(calculator);
    EXPECT_EQ(heads.size(), 1u);
    return boundary_of(*heads[0], keep_all);
}

}  // namespace

// The trace closes on its start only when the start is passed twice; without
// keep_all, points at x == 1 or y == 1 go and those at 0 stay (the rule is
// about the frame one pixel in, in image coordinates).
TEST(BinaryComponentFeatures, ContourTraceItsClosingRuleAndTheFrameRule) {
    struct Case { std::vector<std::string> text; bool keep_all; Points expected; };
    const std::vector<Case> cases = {
        {{"....", "..#.", "...."}, true, {{2, 1}}},
        {{".....", ".###.", "....."}, true, {{1, 1}, {2, 1}, {3, 1}, {2, 1}}},  // forward and back
        {{".....", ".###.", ".###.", ".###.", "....."}, true,
         {{1, 1}, {2, 1}, {3, 1}, {3, 2}, {3, 3}, {2, 3}, {1, 3}, {1, 2}}},  // clockwise
        {{".#.", "#.#"}, true, {{1, 0}, {2, 1}, {0, 1}, {1, 0}}},            // the start joins two lobes
        {{".....", ".###.", ".###.", ".###.", "....."}, false, {{3, 2}, {3, 3}, {2, 3}}},
        {{"##..", "##..", "...."}, false, {{0, 0}}},
    };
    for (const Case& c : cases) EXPECT_EQ(single_contour(c.text, c.keep_all), c.expected) << c.text[1];
}

TEST(BinaryComponentFeatures, ThickBlobTestsEveryRunAtItsLimits) {
    const common::BasicImage image = binary_from_text({"..#####...", ".........."});
    ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(image);
    const Stroke& head = *heads_of(calculator).at(0);
    const std::vector<std::pair<int, bool>> probes = {{1, false}, {2, true}, {6, true}, {7, false}};
    for (const auto& probe : probes) {
        common::BasicImage other(2, 10, common::BINARY);
        other.set_pixel(probe.first, 0, 1);
        other.set_pixel(probe.first, 1, 1);  // another line does not count
        EXPECT_EQ(head.is_thick_blob(other), probe.second) << probe.first;
    }
}

TEST(BinaryComponentFeatures, GradientCostPredictionsAtTheImageCorners) {
    // 2 x 2 gray values; each case marks one pixel as the blob.
    //   10 20
    //   30 41
    struct Case { int x, y; double expected; };
    const std::vector<Case> cases = {
        // (0,0): nothing from the left; from the right the mean of three.
        {0, 0, (91.0 / 3 - 10) * (91.0 / 3 - 10)},
        // (1,0): left only; last column, so the pixel below.
        {1, 0, (10.0 - 20) * (10.0 - 20) + (41.0 - 20) * (41.0 - 20)},
        // (0,1): the pixel above; last line, so the pixel to the right.
        {0, 1, (10.0 - 30) * (10.0 - 30) + (41.0 - 30) * (41.0 - 30)},
        // (1,1): the mean of three from the left; nothing from the right.
        {1, 1, (60.0 / 3 - 41) * (60.0 / 3 - 41)},
    };
    unsigned char values[4] = {10, 20, 30, 41};
    const common::BasicImage gray(values, 2, 2, common::GRAY);
    for (const Case& c : cases) {
        common::BasicImage binary(2, 2, common::BINARY);
        binary.set_pixel(c.x, c.y, 1);
        ConnectedComponentCalculator calculator;
        calculator.formulate_connected_components(binary);
        Stroke::BlobNeighborCost cost{1.5, 0.0, 0.0, 0.0};  // the operation only adds
        heads_of(calculator).at(0)->compression_cost(binary, binary, gray, 3, {0, 0, 0}, cost);
        EXPECT_DOUBLE_EQ(cost.gradient_cost, 1.5 + c.expected) << c.x << "," << c.y;
    }
}

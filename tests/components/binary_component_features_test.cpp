// Features of one component: the contour trace with its closing and frame
// rules, drawing, the thick-blob test and the gray measures.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "common/basic_image.h"
#include "components/binary_connected_component.h"
#include "components/connected_component_calculator.h"
#include "support/images.h"
#include "support/references.h"

using support::binary_from_text;

using namespace geometric;

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

TEST(BinaryComponentFeatures, DrawUndrawAndScaledDraw) {
    const std::vector<std::string> text = {"##....###", "........#", "#########"};
    const common::BasicImage image = binary_from_text(text);
    ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(image);
    common::BasicImage drawn(image.get_height(), image.get_width(), common::BINARY);
    for (Stroke& head : calculator) head.draw_blob_image(drawn);
    common::BasicImage erased(image);
    for (Stroke& head : calculator) head.undraw_blob_image(erased);
    for (int y = 0; y < image.get_height(); ++y) {
        for (int x = 0; x < image.get_width(); ++x) {
            EXPECT_EQ(drawn.get_pixel(x, y), image.get_pixel(x, y)) << x << "," << y;
            EXPECT_EQ(erased.get_pixel(x, y), 0u) << x << "," << y;
        }
    }
    // Factor 2 into a gray image one column short of twice the width: the
    // last block is clipped.
    common::BasicImage gray(2 * image.get_height(), 2 * image.get_width() - 1, common::GRAY);
    const std::vector<Stroke*> heads = heads_of(calculator);
    ASSERT_EQ(heads.size(), 2u);
    heads[0]->draw_blob_image(gray, 7, 2);
    heads[1]->draw_blob_image(gray, 9, 2);
    for (int y = 0; y < gray.get_height(); ++y) {
        for (int x = 0; x < gray.get_width(); ++x) {
            const bool first = y / 2 == 0 && x / 2 <= 1;
            const unsigned expected = first ? 7u : (image.get_pixel(x / 2, y / 2) != 0 ? 9u : 0u);
            EXPECT_EQ(gray.get_pixel(x, y), expected) << x << "," << y;
        }
    }
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

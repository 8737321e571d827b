// Formation of components: the required shapes of the split and merge rules,
// the stroke pool, and a cross-check against a plain flood fill.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
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

// The strokes of the pool in creation order.
std::vector<Stroke*> strokes_of(const ConnectedComponentCalculator& calculator) {
    std::vector<Stroke*> strokes;
    for (const StrokeArray& array : calculator.get_pool())
        for (Stroke* stroke = array.begin(); stroke != array.end(); ++stroke) strokes.push_back(stroke);
    return strokes;
}

std::vector<Stroke*> heads_of(ConnectedComponentCalculator& calculator) {
    std::vector<Stroke*> heads;
    for (Stroke& head : calculator) heads.push_back(&head);
    return heads;
}

unsigned chain_pixels(const Stroke* head) {
    unsigned pixels = 0;
    for (const Stroke* stroke = head; stroke != nullptr; stroke = stroke->next) pixels += stroke->pixels;
    return pixels;
}

Geobox<int> chain_box(const Stroke* head) {
    Geobox<int> box = head->box;
    for (const Stroke* stroke = head->next; stroke != nullptr; stroke = stroke->next) {
        if (stroke->box.right > box.right) box.right = stroke->box.right;
        if (stroke->box.bottom > box.bottom) box.bottom = stroke->box.bottom;
        if (stroke->box.left < box.left) box.left = stroke->box.left;
        if (stroke->box.top < box.top) box.top = stroke->box.top;
    }
    return box;
}

void expect_box(const Geobox<int>& box, int right, int bottom, int left, int top) {
    EXPECT_EQ(box.right, right);
    EXPECT_EQ(box.bottom, bottom);
    EXPECT_EQ(box.left, left);
    EXPECT_EQ(box.top, top);
}

// Forms and returns the heads; the calculator is kept by the caller.
std::vector<Stroke*> form(ConnectedComponentCalculator& calculator, const common::BasicImage& image) {
    calculator.formulate_connected_components(image);
    return heads_of(calculator);
}

typedef std::array<int, 5> ChainSummary;  // right, bottom, left, top, pixels

std::vector<ChainSummary> summary(ConnectedComponentCalculator& calculator) {
    std::vector<ChainSummary> formed;
    for (Stroke& head : calculator) {
        const Geobox<int> box = chain_box(&head);
        formed.push_back({box.right, box.bottom, box.left, box.top, static_cast<int>(chain_pixels(&head))});
    }
    return formed;
}

// Gray 255 is the only background: 254 and 0 are ink.
common::BasicImage gray_with_two_dots() {
    common::BasicImage image(3, 4, common::GRAY);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) image.set_pixel(x, y, 255);
    image.set_pixel(1, 1, 254);
    image.set_pixel(3, 2, 0);
    return image;
}

}  // namespace

TEST(ConnectedComponentCalculator, UShapeMergesAtTheBottomWithTheLeftChainInFront) {
    const common::BasicImage image = binary_from_text({
        "#..#",
        "#..#",
        "####",
    });
    ConnectedComponentCalculator calculator;
    const std::vector<Stroke*> heads = form(calculator, image);
    const std::vector<Stroke*> strokes = strokes_of(calculator);
    ASSERT_EQ(strokes.size(), 2u);
    ASSERT_EQ(heads.size(), 1u);
    EXPECT_EQ(heads[0], strokes[0]);
    EXPECT_EQ(strokes[0]->next, strokes[1]);
    EXPECT_EQ(strokes[1]->previous, strokes[0]);
    // The bottom run went to the left stroke, which took it first.
    expect_box(strokes[0]->box, 3, 2, 0, 0);
    EXPECT_EQ(strokes[0]->pixels, 6u);
    expect_box(strokes[1]->box, 3, 1, 3, 0);
    EXPECT_EQ(chain_pixels(heads[0]), 8u);
}

TEST(ConnectedComponentCalculator, YShapeSplitMakesTheNewStrokeTheHead) {
    const common::BasicImage image = binary_from_text({
        "###",
        "#.#",
        "#.#",
    });
    ConnectedComponentCalculator calculator;
    const std::vector<Stroke*> heads = form(calculator, image);
    const std::vector<Stroke*> strokes = strokes_of(calculator);
    ASSERT_EQ(strokes.size(), 2u);
    ASSERT_EQ(heads.size(), 1u);
    EXPECT_EQ(heads[0], strokes[1]);
    EXPECT_EQ(strokes[1]->next, strokes[0]);
    EXPECT_EQ(strokes[0]->previous, strokes[1]);
    expect_box(strokes[1]->box, 2, 2, 2, 1);
    expect_box(chain_box(heads[0]), 2, 2, 0, 0);
}

TEST(ConnectedComponentCalculator, ThreeRunsUnderOneWideRunExtendTheFirstStrokeTwice) {
    const common::BasicImage image = binary_from_text({
        "#####",
        "#.#.#",
    });
    ConnectedComponentCalculator calculator;
    const std::vector<Stroke*> heads = form(calculator, image);
    const std::vector<Stroke*> strokes = strokes_of(calculator);
    ASSERT_EQ(strokes.size(), 2u);
    ASSERT_EQ(heads.size(), 1u);
    Stroke* wide = strokes[0];
    Stroke* middle = strokes[1];
    EXPECT_EQ(heads[0], middle);
    // The first and third runs below both went to the wide stroke.
    ASSERT_EQ(wide->runs.size(), 3u);
    EXPECT_EQ(wide->runs[1].second, 1);
    EXPECT_EQ(wide->runs[2].second, 1);
    EXPECT_EQ(wide->runs[1].first->start, 0);
    EXPECT_EQ(wide->runs[2].first->start, 4);
    EXPECT_EQ(wide->pixels, 7u);
    expect_box(wide->box, 4, 1, 0, 0);
    EXPECT_EQ(middle->pixels, 1u);
    EXPECT_EQ(chain_pixels(heads[0]), 8u);
}

TEST(ConnectedComponentCalculator, CornerContactDependsOnTheNeighbourhood) {
    struct Case {
        std::vector<std::string> picture;
        int neighborhood;
        size_t components;
    };
    const std::vector<std::string> diagonal = {"#.", ".#"};
    const std::vector<std::string> anti_diagonal = {".#", "#."};
    const std::vector<std::string> gap = {"#..", "..#"};
    const std::vector<Case> cases = {
        {diagonal, 8, 1},      {diagonal, 4, 2},      {diagonal, 0, 1},      {diagonal, 6, 1},
        {anti_diagonal, 8, 1}, {anti_diagonal, 4, 2}, {gap, 8, 2},           {gap, 4, 2},
        {{"##", "##"}, 4, 1},
    };
    for (const Case& c : cases) {
        ConnectedComponentCalculator calculator;
        calculator.set_neighborhood(c.neighborhood);
        EXPECT_EQ(form(calculator, binary_from_text(c.picture)).size(), c.components)
            << c.picture[0] << "/" << c.picture[1] << " neighbourhood " << c.neighborhood;
        EXPECT_EQ(calculator.get_neighbor_reach(), c.neighborhood == 4 ? 0 : 1);
    }
}

TEST(ConnectedComponentCalculator, EmptyOneLineAndLastColumnShapes) {
    struct Case {
        const char* what;
        common::BasicImage image;
        std::vector<ChainSummary> heads;
    };
    const std::vector<Case> cases = {
        {"all background", common::BasicImage(6, 45, common::BINARY), {}},
        {"no lines", common::BasicImage(), {}},
        {"one line: one stroke a run",
         binary_from_text({"##..#.####..........###"}),
         {{1, 0, 0, 0, 2}, {4, 0, 4, 0, 1}, {9, 0, 6, 0, 4}, {22, 0, 20, 0, 3}}},
        {"run to the last column of width 13",
         binary_from_text({"........#####", ".........####"}),
         {{12, 1, 8, 0, 9}}},
        {"gray image", gray_with_two_dots(), {{1, 1, 1, 1, 1}, {3, 2, 3, 2, 1}}},
    };
    for (const Case& c : cases) {
        ConnectedComponentCalculator calculator;
        for (int pass = 0; pass < (c.heads.empty() ? 2 : 1); ++pass) {  // an empty calculator may form again
            form(calculator, c.image);
            const std::vector<ChainSummary> got = summary(calculator);
            EXPECT_EQ(got, c.heads) << c.what;
            EXPECT_EQ(calculator.isemptyblob(), c.heads.empty()) << c.what;
        }
    }
}

TEST(ConnectedComponentCalculator, PoolArraysDoubleAndStrokesNeverMove) {
    // 40 isolated pixels fill arrays of 10 and 20 and a quarter of one of 40.
    std::vector<std::string> picture(15, std::string(10, '.'));
    for (int y = 0; y < 15; y += 2)
        for (int x = 0; x < 10; x += 2) picture[y][x] = '#';
    ConnectedComponentCalculator calculator;
    calculator.set_neighborhood(4);
    const std::vector<Stroke*> heads = form(calculator, binary_from_text(picture));
    ASSERT_EQ(heads.size(), 40u);
    std::vector<size_t> capacities;
    for (const StrokeArray& array : calculator.get_pool()) capacities.push_back(array.get_capacity());
    EXPECT_EQ(capacities, (std::vector<size_t>{10, 20, 40}));
    EXPECT_EQ(calculator.get_pool().back().size(), 10u);
    // Heads run in raster order here, each one run of line 2 k.
    for (size_t i = 0; i < heads.size(); ++i) {
        EXPECT_EQ(heads[i]->box.top, static_cast<int>(i / 5) * 2);
        EXPECT_EQ(heads[i]->box.left, static_cast<int>(i % 5) * 2);
    }
}

namespace {

common::BasicImage random_image(std::mt19937& random) {
    const int height = 1 + static_cast<int>(random() % 40);
    const int width = 1 + static_cast<int>(random() % 75);
    const int percent = 20 + static_cast<int>(random() % 50);
    common::BasicImage image(height, width, common::BINARY);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (static_cast<int>(random() % 100) < percent) image.set_pixel(x, y, 1);
    return image;
}

}  // namespace

TEST(ConnectedComponentCalculator, AgreesWithAFloodFillOnRandomImages) {
    std::mt19937 random(5150u);
    for (int trial = 0; trial < 400; ++trial) {
        const common::BasicImage image = random_image(random);
        for (int neighborhood : {4, 8}) {
            int expected_count = 0;
            const std::vector<int> expected =
                support::flood_fill_labels(image, neighborhood == 8, expected_count);
            ConnectedComponentCalculator calculator;
            calculator.set_neighborhood(neighborhood);
            const std::vector<Stroke*> heads = form(calculator, image);
            ASSERT_EQ(static_cast<int>(heads.size()), expected_count) << "trial " << trial;

            // Label every pixel by its chain; each chain must be exactly one
            // flood-fill component, and every stroke must lie on one chain.
            const int width = image.get_width();
            std::vector<int> labels(expected.size(), 0);
            std::map<int, int> chain_to_fill;
            size_t strokes_on_chains = 0;
            for (size_t k = 0; k < heads.size(); ++k) {
                unsigned run_pixels = 0;
                for (Stroke* stroke = heads[k]; stroke != nullptr; stroke = stroke->next) {
                    ++strokes_on_chains;
                    ASSERT_TRUE(stroke->next == nullptr || stroke->next->previous == stroke);
                    unsigned stroke_pixels = 0;
                    for (const Stroke::RunOnLine& run : stroke->runs) {
                        ASSERT_GE(run.first->start, stroke->box.left);
                        ASSERT_LE(run.first->end, stroke->box.right);
                        ASSERT_GE(run.second, stroke->box.top);
                        ASSERT_LE(run.second, stroke->box.bottom);
                        for (int x = run.first->start; x <= run.first->end; ++x) {
                            const size_t index = static_cast<size_t>(run.second) * width + x;
                            ASSERT_EQ(labels[index], 0);
                            labels[index] = static_cast<int>(k) + 1;
                            ++stroke_pixels;
                        }
                    }
                    ASSERT_EQ(stroke_pixels, stroke->pixels);
                    run_pixels += stroke_pixels;
                }
                EXPECT_EQ(run_pixels, chain_pixels(heads[k]));
            }
            EXPECT_EQ(strokes_on_chains, strokes_of(calculator).size());
            std::map<int, int> fill_to_chain;
            for (size_t i = 0; i < labels.size(); ++i) {
                ASSERT_EQ(labels[i] == 0, expected[i] == 0) << "trial " << trial << " pixel " << i;
                if (labels[i] == 0) continue;
                // A bijection between chain labels and flood-fill labels.
                auto forward = chain_to_fill.emplace(labels[i], expected[i]).first;
                auto backward = fill_to_chain.emplace(expected[i], labels[i]).first;
                ASSERT_EQ(forward->second, expected[i]) << "trial " << trial;
                ASSERT_EQ(backward->second, labels[i]) << "trial " << trial;
            }

            // The pass without stored runs finds the same components in the same order.
            ConnectedComponentCalculator plain;
            plain.set_neighborhood(neighborhood);
            plain.set_store_runs(false);
            plain.formulate_connected_components(image);
            ASSERT_EQ(summary(calculator), summary(plain)) << "trial " << trial;
            for (const Stroke* stroke : strokes_of(plain)) EXPECT_TRUE(stroke->runs.empty());
        }
    }
}

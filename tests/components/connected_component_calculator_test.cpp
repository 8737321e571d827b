// Formation of components: the required shapes of the split and merge rules,
// a cross-check of chains and labels against a plain flood fill, and the chain
// walks on a chain deep enough that a recursion would overflow.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <vector>

#include "components/binary_connected_component.h"
#include "components/connected_component_calculator.h"
#include "support/images.h"
#include "support/references.h"

using namespace geometric;
using support::binary_from_text;

namespace {

typedef BinaryConnectedComponent Stroke;

std::vector<Stroke*> heads_of(ConnectedComponentCalculator& calculator) {
    std::vector<Stroke*> heads;
    for (Stroke& head : calculator) heads.push_back(&head);
    return heads;
}

// Right, bottom, left, top and pixels of each chain, in the order of the heads.
std::vector<std::array<int, 5>> summary(ConnectedComponentCalculator& calculator) {
    std::vector<std::array<int, 5>> chains;
    for (Stroke* head : heads_of(calculator)) {
        std::array<int, 5> c = {head->box.right, head->box.bottom, head->box.left, head->box.top, 0};
        for (const Stroke* s = head; s != nullptr; s = s->next) {
            c = {std::max(c[0], s->box.right), std::max(c[1], s->box.bottom), std::min(c[2], s->box.left),
                 std::min(c[3], s->box.top), c[4] + static_cast<int>(s->pixels)};
        }
        chains.push_back(c);
    }
    return chains;
}

std::vector<Stroke*> strokes_of(ConnectedComponentCalculator& calculator) {
    std::vector<Stroke*> strokes;
    for (const StrokeArray& array : calculator.get_pool())
        for (Stroke* stroke = array.begin(); stroke != array.end(); ++stroke) strokes.push_back(stroke);
    return strokes;
}

// Links strokes[0] -> strokes[1] -> ... by next and previous.
void chain(std::vector<Stroke>& strokes) {
    for (size_t i = 0; i + 1 < strokes.size(); ++i) {
        strokes[i].next = &strokes[i + 1];
        strokes[i + 1].previous = &strokes[i];
    }
}

}  // namespace

// A U merges at the bottom with the left chain in front; a Y's split makes
// the new stroke the head; three runs under one wide run extend the first
// stroke twice. Strokes are listed in creation order.
TEST(ConnectedComponentCalculator, SplitAndMergeShapes) {
    struct Case {
        std::vector<std::string> picture;
        int head;                             // index of the head among the strokes
        std::vector<std::array<int, 5>> boxes;  // right, bottom, left, top, pixels of each stroke
    };
    const Case cases[] = {
        {{"#..#", "#..#", "####"}, 0, {{3, 2, 0, 0, 6}, {3, 1, 3, 0, 2}}},
        {{"###", "#.#", "#.#"}, 1, {{2, 2, 0, 0, 5}, {2, 2, 2, 1, 2}}},
        {{"#####", "#.#.#"}, 1, {{4, 1, 0, 0, 7}, {2, 1, 2, 1, 1}}},
    };
    for (const Case& c : cases) {
        ConnectedComponentCalculator calculator;
        calculator.formulate_connected_components(binary_from_text(c.picture));
        const std::vector<Stroke*> strokes = strokes_of(calculator), heads = heads_of(calculator);
        ASSERT_EQ(strokes.size(), c.boxes.size()) << c.picture[0];
        ASSERT_EQ(heads.size(), 1u);
        EXPECT_EQ(heads[0], strokes[c.head]) << c.picture[0];
        EXPECT_EQ(heads[0]->next, strokes[1 - c.head]);
        EXPECT_EQ(strokes[1 - c.head]->previous, heads[0]);
        for (size_t i = 0; i < strokes.size(); ++i) {
            const Stroke& s = *strokes[i];
            EXPECT_EQ((std::array<int, 5>{s.box.right, s.box.bottom, s.box.left, s.box.top, int(s.pixels)}), c.boxes[i])
                << c.picture[0] << " stroke " << i;
        }
    }
}

TEST(ConnectedComponentCalculator, NeighbourhoodsAndEdgeShapes) {
    // 4 and 8 are checked against the flood fill; any other value is 8.
    ConnectedComponentCalculator other;
    other.set_neighborhood(0);
    other.formulate_connected_components(binary_from_text({"#.", ".#"}));
    EXPECT_EQ(heads_of(other).size(), 1u);
    EXPECT_EQ(other.get_neighbor_reach(), 1);
    common::BasicImage gray = support::flat_image(3, 4, 255);  // only 255 is background
    gray.set_pixel(1, 1, 254);
    gray.set_pixel(3, 2, 0);
    struct Shape { common::BasicImage image; std::vector<std::array<int, 5>> chains; };
    const Shape shapes[] = {
        {common::BasicImage(6, 45, common::BINARY), {}},
        {common::BasicImage(), {}},
        {binary_from_text({"##..#.####..........###"}), {{{1, 0, 0, 0, 2}, {4, 0, 4, 0, 1}, {9, 0, 6, 0, 4}, {22, 0, 20, 0, 3}}}},
        {binary_from_text({"........#####", ".........####"}), {{{12, 1, 8, 0, 9}}}},  // to the last column
        {gray, {{{1, 1, 1, 1, 1}, {3, 2, 3, 2, 1}}}},
    };
    ConnectedComponentCalculator reused;
    for (const Shape& s : shapes) {
        ConnectedComponentCalculator calculator;
        calculator.formulate_connected_components(s.image);
        EXPECT_EQ(summary(calculator), s.chains);
        EXPECT_EQ(calculator.isemptyblob(), s.chains.empty());
        if (s.chains.empty()) reused.formulate_connected_components(s.image);  // an empty calculator may form again
    }
    EXPECT_TRUE(reused.isemptyblob());
}

// Every chain is exactly one flood-fill component, every stroke lies on one
// chain, the pass without stored runs finds the same chains, and the label
// image (framed or in the caller's array) is the same partition.
TEST(ConnectedComponentCalculator, AgreesWithAFloodFillOnRandomImages) {
    std::mt19937 random(5150u);
    for (int trial = 0; trial < 300; ++trial) {
        const int height = 1 + static_cast<int>(random() % 40), width = 1 + static_cast<int>(random() % 75);
        const int percent = 20 + static_cast<int>(random() % 50);
        common::BasicImage image(height, width, common::BINARY);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                if (static_cast<int>(random() % 100) < percent) image.set_pixel(x, y, 1);
        for (int neighborhood : {4, 8}) {
            int count = 0;
            const std::vector<int> expected = support::flood_fill_labels(image, neighborhood == 8, count);
            ConnectedComponentCalculator calculator;
            calculator.set_neighborhood(neighborhood);
            calculator.formulate_connected_components(image);
            const std::vector<Stroke*> heads = heads_of(calculator);
            ASSERT_EQ(static_cast<int>(heads.size()), count) << "trial " << trial;

            std::vector<int> chains(expected.size(), 0);
            size_t strokes_on_chains = 0;
            for (size_t k = 0; k < heads.size(); ++k)
                for (Stroke* stroke = heads[k]; stroke != nullptr; stroke = stroke->next) {
                    ++strokes_on_chains;
                    ASSERT_TRUE(stroke->next == nullptr || stroke->next->previous == stroke);
                    unsigned pixels = 0;
                    for (const Stroke::RunOnLine& run : stroke->runs) {
                        ASSERT_TRUE(run.first->start >= stroke->box.left && run.first->end <= stroke->box.right &&
                                    run.second >= stroke->box.top && run.second <= stroke->box.bottom);
                        for (int x = run.first->start; x <= run.first->end; ++x, ++pixels) {
                            int& label = chains[static_cast<size_t>(run.second) * width + x];
                            ASSERT_EQ(label, 0);
                            label = static_cast<int>(k) + 1;
                        }
                    }
                    ASSERT_EQ(pixels, stroke->pixels);
                }
            EXPECT_EQ(strokes_on_chains, strokes_of(calculator).size());

            std::vector<int> labels, framed, into;
            calculator.calculate_label_image(image, labels, 0);
            calculator.calculate_label_image(image, framed, 3);
            into.assign(framed.size(), -7);
            calculator.calculate_label_image(image, into.data(), 3);
            EXPECT_EQ(into, framed);
            // A fresh calculator labels from the runs alone: the same bytes,
            // and the strokes it forms afterwards are those formed before.
            ConnectedComponentCalculator fresh;
            fresh.set_neighborhood(neighborhood);
            std::vector<int> fresh_into(framed.size(), -7), unframed(labels.size(), -7);
            fresh.calculate_label_image(image, fresh_into.data(), 3);
            ASSERT_EQ(fresh_into, framed) << "trial " << trial;
            fresh.set_neighborhood(12 - neighborhood);
            fresh.set_store_runs(false);
            EXPECT_EQ(fresh.isemptyblob(), count == 0);
            ASSERT_EQ(summary(fresh), summary(calculator)) << "trial " << trial;
            EXPECT_EQ(strokes_of(fresh).size(), strokes_of(calculator).size());
            ConnectedComponentCalculator unbordered;
            unbordered.calculate_label_image(image, unframed.data(), 0);
            if (neighborhood == 8) {
                EXPECT_EQ(unframed, labels) << "trial " << trial;
                common::BasicImage gray = image;  // ink 0, paper 255: the gray scan finds the same runs
                gray.convert_binary_to_gray();
                ConnectedComponentCalculator from_gray;
                std::fill(unframed.begin(), unframed.end(), -7);
                from_gray.calculate_label_image(gray, unframed.data(), 0);
                EXPECT_EQ(unframed, labels) << "trial " << trial;
            }
            // A bijection between flood-fill labels and both chains and labels.
            std::map<int, int> to_chain, from_chain, to_label, from_label;
            for (size_t i = 0; i < expected.size(); ++i) {
                ASSERT_EQ(chains[i] == 0, expected[i] == 0) << "trial " << trial << " pixel " << i;
                ASSERT_EQ(labels[i] == 0, expected[i] == 0) << "trial " << trial << " pixel " << i;
                const int x = static_cast<int>(i) % width, y = static_cast<int>(i) / width;
                ASSERT_EQ(framed[static_cast<size_t>(y + 3) * (width + 6) + x + 3], labels[i]);
                if (expected[i] == 0) continue;
                ASSERT_EQ(to_chain.emplace(expected[i], chains[i]).first->second, chains[i]);
                ASSERT_EQ(from_chain.emplace(chains[i], expected[i]).first->second, expected[i]);
                ASSERT_EQ(to_label.emplace(expected[i], labels[i]).first->second, labels[i]);
                ASSERT_EQ(from_label.emplace(labels[i], expected[i]).first->second, expected[i]);
            }
            int frame = 0;
            for (int v : framed) frame += v != 0;
            int inside = 0;
            for (int v : labels) inside += v != 0;
            EXPECT_EQ(frame, inside);  // the frame itself is background

            ConnectedComponentCalculator plain;
            plain.set_neighborhood(neighborhood);
            plain.set_store_runs(false);
            plain.formulate_connected_components(image);
            ASSERT_EQ(summary(calculator), summary(plain)) << "trial " << trial;
            for (const Stroke* stroke : strokes_of(plain)) EXPECT_TRUE(stroke->runs.empty());
        }
    }
}

// Deep enough that an unbounded recursion would be a risk; every stroke
// passed stores the end found, the ends themselves store nothing.
TEST(BinaryConnectedComponent, FindsStoreTheEndsInEveryStrokePassedWithoutRecursion) {
    std::vector<Stroke> strokes(400000);
    chain(strokes);
    EXPECT_EQ(strokes.back().get_first_element(), &strokes.front());
    EXPECT_EQ(strokes.front().get_last_element(), &strokes.back());
    EXPECT_EQ(strokes.front().cached_first, nullptr);
    EXPECT_EQ(strokes.back().cached_last, nullptr);
    for (size_t i = 1; i < strokes.size(); ++i) {
        ASSERT_EQ(strokes[i].cached_first, &strokes.front()) << i;
        ASSERT_EQ(strokes[i - 1].cached_last, &strokes.back()) << i;
    }
}

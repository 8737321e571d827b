// The order of line pairs: strong lines far apart first, an evenly spread
// selection, the weights of line records and the joining of point groups.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "edgelines/balanced_point_distributor.h"
#include "edgelines/line_weightor.h"
#include "edgelines/merge_point_groups.h"
#include "edgelines/priority_selector.h"

using namespace geometric;
using Pairs = std::vector<std::pair<int, int>>;

TEST(PrioritySelector, HandCheckedOrders) {
    // Nine lines; the two heaviest (2 and 5) lie just beside lines 1 and 4.
    const std::vector<double> weights{0.5, 0.6, 1.0, 0.7, 0.4, 0.9, 0.3, 0.2, 0.8};
    const std::vector<double> positions{0, 100, 110, 200, 300, 305, 400, 500, 600};
    struct Case {
        bool uniform;
        std::vector<double> weights, positions;
        Pairs expected;
    };
    const Case cases[] = {
        // Heaviest 2, 5, 8: scores 1.0 0.8 490 = 392, 0.9 0.8 295 = 212.4, 1.0 0.9 195 = 175.5.
        {false, weights, positions, {{2, 8}, {5, 8}, {2, 5}}},
        // The path at 100-pixel steps drops 2 and 5; heaviest left 8, 3, 1:
        // 0.8 0.6 500 = 240, 0.8 0.7 400 = 224, 0.7 0.6 100 = 42.
        {true, weights, positions, {{8, 1}, {8, 3}, {3, 1}}},
        // Equal weights keep their order: lines 0 to 2 are selected, not 3.
        {false, {1, 1, 1, 1}, {0, 10, 20, 30}, {{0, 2}, {0, 1}, {1, 2}}},
        // Lines at one position score 0 and come last; equal scores keep the
        // order in which the pairs were formed.
        {false, {1, 0.5, 1}, {5, 50, 5}, {{0, 1}, {2, 1}, {0, 2}}},
        // Lines without a position take no part.
        {false, {1, 2, 3, 4}, {0, 10}, {{1, 0}}},
    };
    for (const Case& c : cases) {
        Pairs pairs{{9, 9}};  // appended to, not cleared
        if (c.uniform)
            PrioritySelector(3).obtain_uniform_priority_array(c.weights, c.positions, pairs);
        else
            PrioritySelector(3).obtain_natural_priority_array(c.weights, c.positions, pairs);
        Pairs expected{{9, 9}};
        expected.insert(expected.end(), c.expected.begin(), c.expected.end());
        EXPECT_EQ(pairs, expected) << c.uniform << " " << c.weights.size();
    }
}

TEST(PrioritySelector, UniformFormNeedsMoreThanTwoLinesBeyondTheSelection) {
    // Thirteen lines: eleven 60 pixels apart and the two heaviest, 5 and 11,
    // 0.6 pixel apart. An evenly spaced path cannot hold both.
    const std::vector<double> positions{0, 60, 120, 180, 240, 300, 360, 420, 480, 540, 600, 300.6, 450};
    const std::vector<double> weights{1, 2, 3, 4, 5, 20, 6, 7, 8, 9, 10, 19, 0.5};
    const std::pair<int, int> heaviest{5, 11};
    for (int count : {10, 11}) {
        Pairs natural, uniform;
        PrioritySelector(count).obtain_natural_priority_array(weights, positions, natural);
        PrioritySelector(count).obtain_uniform_priority_array(weights, positions, uniform);
        EXPECT_NE(std::find(natural.begin(), natural.end(), heaviest), natural.end());
        // 11 + 2 lines or fewer: the natural form itself.
        EXPECT_EQ(uniform == natural, count == 11) << count;
        EXPECT_EQ(std::find(uniform.begin(), uniform.end(), heaviest) == uniform.end(), count == 10) << count;
    }
}

TEST(PrioritySelector, UniformPathShrinksItsSpacingUntilLongEnough) {
    // Two clusters. Twelve points of spacing 1/12 need a path of three; the
    // direct step from the first to the last is cheapest until the spacing
    // is 1/300, when the steps of 4 pixels pay: lines at 0, 4, 996 and 1000.
    std::vector<double> sorted{0, 1, 2, 3, 4, 996, 997, 998, 1000};
    BalancedPointDistributor distributor(12);
    std::vector<int> path;
    EXPECT_FALSE(distributor.perform_path_searching(sorted, path));
    EXPECT_EQ(path, (std::vector<int>{0, 8}));
    EXPECT_DOUBLE_EQ(sorted[4], 0.004);  // mapped in place onto 0..1
    distributor.spacing = 1.0 / 300.0;
    EXPECT_TRUE(distributor.perform_path_searching(sorted, path));
    EXPECT_EQ(path, (std::vector<int>{0, 4, 5, 8}));

    // The same positions unsorted: the selection keeps lines 1, 5, 4 and 2.
    const std::vector<double> positions{998, 0, 1000, 2, 996, 4, 1, 997, 3};
    Pairs pairs;
    PrioritySelector(6).obtain_uniform_priority_array({1, 2, 3, 4, 5, 6, 7, 8, 9}, positions, pairs);
    std::set<int> lines;
    for (const auto& p : pairs) lines.insert({p.first, p.second});
    EXPECT_EQ(lines, (std::set<int>{1, 2, 4, 5}));
    EXPECT_EQ(pairs.size(), 6u);
}

TEST(LineWeightor, SelfWeightingFavoursStraightWellSupportedLines) {
    const std::pair<std::vector<LineWeightor>, std::vector<double>> cases[] = {
        // c = 20, L = 0.5, M = 2: (10 / 20) (2 / 2), (20 / 20) (1.5 / 2), (5 / 20) (0.5 / 2).
        {{{0.5, 10, 0, 0}, {1.0, 20, 0, 0}, {2.0, 5, 0, 0}}, {0.5, 0.75, 0.0625}},
        {{{0.0, 4, 0, 0}, {0.0, 8, 0, 0}}, {0.5, 1.0}},  // all straight
        {{{1.0, 0, 0, 0}, {2.0, 0, 0, 0}}, {0.0, 0.0}},  // no support
    };
    for (const auto& c : cases) {
        std::vector<double> weights{3.0, 3.0, 3.0, 3.0};
        obtain_line_self_weighting(c.first, weights);
        EXPECT_EQ(weights, c.second);
    }
    std::vector<double> positions{7.0};
    obtain_line_positon_weighting({{0.0, 1, 0, 2.5f}, {0.0, 1, 0, -4.0f}}, positions);
    EXPECT_EQ(positions, (std::vector<double>{7.0, 2.5, -4.0}));
}

TEST(MergePointGroups, JoinsTheListsOfEachGroupInAscendingOrder) {
    std::vector<std::vector<Geocoordinate<float>>> lists, merged{{{9, 9}}};
    for (int i = 0; i < 5; ++i) lists.push_back({{static_cast<float>(i), 0.0f}});
    // 0 takes its own group, 1 the first group that holds it (7 is not a
    // list), 2 stands alone, 3 is used, and 4 joins all of its group again.
    merge_point_groups({{3, 1, 7}, {0}, {1, 4}}, lists, merged);
    std::vector<std::vector<float>> xs;
    for (const auto& list : merged) {
        xs.emplace_back();
        for (const auto& p : list) xs.back().push_back(p.x);
    }
    EXPECT_EQ(xs, (std::vector<std::vector<float>>{{0}, {1, 3}, {2}, {1, 4}}));
}

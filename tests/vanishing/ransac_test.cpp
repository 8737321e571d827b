// Random-sample consensus on points along lines: the line among outliers,
// the samples tried, priority pairs first, repeatable runs that no other run
// disturbs.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "vanishing/general_line_param_estimator.h"
#include "vanishing/ransac.h"

using namespace geometric;
using Point = Geocoordinate<double>;
using Points = std::vector<Point>;
using Pairs = std::vector<std::pair<int, int>>;

namespace {

struct Result {
    double share = 0.0;
    std::vector<double> parameters;
    std::vector<int> inliers;
    bool operator==(const Result& o) const {  // to the byte
        return std::memcmp(&share, &o.share, sizeof share) == 0 && inliers == o.inliers &&
               parameters.size() == o.parameters.size() &&
               std::memcmp(parameters.data(), o.parameters.data(), parameters.size() * sizeof(double)) == 0;
    }
};

Result run(Points& data, double squared_threshold, bool use_priority = false, const Pairs& pairs = {},
           ParameterEstimator<Point, double>* estimator = nullptr, double probability = 0.99) {
    GeneralLineParamEstimator<double> line(squared_threshold);
    Result r;
    r.share = RANSAC<Point, double>::compute(r.parameters, estimator ? estimator : &line, data, probability,
                                             r.inliers, use_priority, pairs);
    return r;
}

// 100 points along y = 0.4 x + 12: 70 within 0.05 of it, and at the indices
// 3, 6 and 8 mod 10 an outlier 5 to 44 pixels off along the normal.
Points line_with_outliers(std::vector<int>& on_line) {
    Points points;
    unsigned state = 17u;
    for (int i = 0; i < 100; ++i) {
        state = state * 1664525u + 1013904223u;
        const int slot = i % 10;
        double off = (static_cast<int>((state >> 8) % 41) - 20) * 0.0025;
        if (slot == 3 || slot == 6 || slot == 8)
            off = (5.0 + static_cast<int>((state >> 8) % 40)) * ((state >> 4) % 2 ? 1.0 : -1.0);
        else
            on_line.push_back(i);
        points.emplace_back(3.0 * i - 0.4 * off / 1.077, 1.2 * i + 12.0 + off / 1.077);
    }
    return points;
}

// Six points on each of two lines that cross far from them: indices 0 to 5
// on y = x / 2, 6 to 11 on y = 100 - x / 2.
Points two_equal_lines() {
    Points points;
    for (int i = 0; i < 6; ++i) points.emplace_back(10.0 * i, 5.0 * i);
    for (int i = 0; i < 6; ++i) points.emplace_back(150.0 + 10.0 * i, 25.0 - 5.0 * i);
    return points;
}

// Records each sample, as indices of the data; its first estimate runs a
// whole search on `nested_data` when one is given.
class RecordingEstimator : public GeneralLineParamEstimator<double> {
public:
    RecordingEstimator(const Points& data, Points* nested_data_ = nullptr)
        : GeneralLineParamEstimator<double>(1.0), base(data.data()), nested_data(nested_data_) {}
    void estimate(std::vector<Point*>& items, std::vector<double>& parameters) override {
        if (samples.empty() && nested_data) nested = run(*nested_data, 1.0);
        samples.emplace_back();
        for (const Point* item : items) samples.back().push_back(static_cast<int>(item - base));
        GeneralLineParamEstimator<double>::estimate(items, parameters);
    }
    const Point* base;
    Points* nested_data;
    Result nested;
    std::vector<std::vector<int>> samples;
};

}  // namespace

TEST(Ransac, FindsTheLineAmongThirtyPercentOutliers) {
    std::vector<int> on_line;
    Points points = line_with_outliers(on_line);
    const Result r = run(points, 1.0);
    EXPECT_DOUBLE_EQ(r.share, 0.7);
    EXPECT_EQ(r.inliers, on_line);
    ASSERT_EQ(r.parameters.size(), 3u);
    EXPECT_NEAR(r.parameters[0], 0.4, 1e-3);
    EXPECT_EQ(r.parameters[1], -1.0);
    EXPECT_NEAR(r.parameters[2], 12.0, 0.1);
}

TEST(Ransac, PriorityPairsFirstNoSampleRepeatedAndTriesCountedAgainstAllCombinations) {
    const Points square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};  // two votes for every sample
    struct Case {
        Points data;
        Pairs pairs;
        double probability;
        std::vector<std::vector<int>> samples;
        std::vector<int> inliers;
    };
    const Case cases[] = {
        {{{0, 0}, {1, 1}, {2, 2}, {3, 3}}, {{3, 0}, {1, 2}}, 0.99, {{3, 0}}, {0, 1, 2, 3}},  // all agree at once
        // Six combinations, six tries: the repeat (1, 0) costs one, so (2, 3) is never reached.
        {square, {{0, 1}, {1, 0}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}}, 0.99,
         {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}}, {0, 1}},
        {square, {}, 1.0, {}, {}},  // certainty asked
        {square, {}, 0.0, {}, {}},
    };
    for (const Case& c : cases) {
        Points data = c.data;
        RecordingEstimator estimator(data);
        const Result r = run(data, 1.0, true, c.pairs, &estimator, c.probability);
        EXPECT_EQ(estimator.samples, c.samples);
        EXPECT_EQ(r.inliers, c.inliers);
    }
    // Two lines of six: a pair outside the data is a lost try, the pair on
    // the second line comes next and wins the tie with the first.
    Points lines = two_equal_lines();
    RecordingEstimator estimator(lines);
    EXPECT_EQ(run(lines, 1.0, true, {{0, 12}, {10, 7}}, &estimator).inliers, (std::vector<int>{6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(estimator.samples.front(), (std::vector<int>{10, 7}));
    // Without pairs, or without the flag, the draws alone.
    const Result drawn = run(lines, 1.0);
    EXPECT_TRUE(run(lines, 1.0, true) == drawn);
    EXPECT_TRUE(run(lines, 1.0, false, {{10, 7}}) == drawn);
}

TEST(Ransac, RepeatableAndUndisturbedByOtherSearches) {
    std::vector<int> on_line;
    Points points = line_with_outliers(on_line);
    Points other = two_equal_lines();
    // At most eight of these 24 agree, so that many samples are drawn.
    Points sparse(points.begin() + 88, points.end());
    sparse.insert(sparse.end(), other.begin(), other.end());
    const Result alone = run(sparse, 1.0);
    EXPECT_TRUE(run(sparse, 1.0) == alone);
    // A whole search inside the first estimate of another disturbs neither.
    RecordingEstimator nesting(sparse, &other);
    EXPECT_TRUE(run(sparse, 1.0, false, {}, &nesting) == alone);
    EXPECT_TRUE(nesting.nested == run(other, 1.0));

    // The C library's generator belongs to the caller: a search leaves its sequence alone.
    std::srand(7);
    std::rand();
    const int expected = std::rand();
    std::srand(7);
    std::rand();
    run(sparse, 1.0);
    EXPECT_EQ(std::rand(), expected);
}

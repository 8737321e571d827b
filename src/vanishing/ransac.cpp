// The consensus search, its sample bookkeeping and its private random source.
#include "vanishing/ransac.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>

#include "textgeometry/geocoordinate.h"

namespace geometric {

namespace {

constexpr std::uint64_t kMostTries = 4294967295u;
constexpr double kLargestDouble = 1.7976931348623157e308;

// Draws integers in [low, high]; each call starts its own at state 0, so
// that two searches never disturb each other and equal input gives equal output.
class RandomSource {
public:
    RandomSource(int low_, int high) : state(0), low(low_), range(high - low_ + 1) {}

    int draw() {
        state = state * 1103515245u + 12345u;
        return low + static_cast<int>((state >> 16) & 0x7fff) % range;
    }

private:
    std::uint64_t state;
    int low;
    int range;  // high - low + 1
};

// All combinations of n items taken m at a time, capped: the product of the
// integers above max(m, n - m) up to n over the product of 1 to min(m, n - m).
std::uint64_t count_all_tries(int n, int m) {
    double top = 1.0, bottom = 1.0;
    for (int i = std::max(m, n - m) + 1; i <= n; ++i) top *= i;
    for (int i = 1; i <= std::min(m, n - m); ++i) bottom *= i;
    const double ratio = top / bottom;
    if (top > kLargestDouble || bottom > kLargestDouble || ratio > static_cast<double>(kMostTries)) return kMostTries;
    return static_cast<std::uint64_t>(ratio);
}

// The truncation of 0.5 + log(1 - p) / log(1 - (v / n)^m). A share so small
// that 1 - share^m rounds to 1 divides by zero: that many tries are beyond
// the cap, as is any value the cap cannot hold.
std::uint64_t count_tries_for_share(double numerator, int votes, int n, int m) {
    const double share = static_cast<double>(votes) / n;
    const double value = 0.5 + numerator / std::log(1.0 - std::pow(share, m));
    if (!(value >= 0.0 && value < static_cast<double>(kMostTries))) return kMostTries;
    return static_cast<std::uint64_t>(value);
}

// The item that draw s names: the s-th not yet chosen (counting from 0),
// else the last index.
int walk_to_item(const std::vector<char>& chosen, int s) {
    const int n = static_cast<int>(chosen.size());
    int count = -1;
    int i = 0;
    for (; i < n; ++i) {
        if (!chosen[i]) ++count;
        if (count == s || i == n - 1) break;
    }
    return i;
}

}  // namespace

template <typename T, typename S>
bool RANSAC<T, S>::SubSetIndexComparator::operator()(const std::vector<int>& first,
                                                     const std::vector<int>& second) const {
    return std::lexicographical_compare(first.begin(), first.begin() + length, second.begin(),
                                        second.begin() + length);
}

template <typename T, typename S>
double RANSAC<T, S>::compute(std::vector<S>& parameters, ParameterEstimator<T, S>* estimator, std::vector<T>& data,
                             double desired_probability, std::vector<int>& inliers, bool use_priority,
                             const std::vector<std::pair<int, int>>& priority_pairs) {
    parameters.clear();
    inliers.clear();
    if (estimator == nullptr) return 0.0;
    const int n = static_cast<int>(data.size());
    const int m = estimator->minimum_for_estimate;
    if (n < m || m < 0 || desired_probability >= 1.0 || desired_probability <= 0.0) return 0.0;

    const double numerator = std::log(1.0 - desired_probability);
    const std::uint64_t all_tries = count_all_tries(n, m);
    const std::uint64_t priority_count = priority_pairs.size();
    std::uint64_t tries = all_tries;

    RandomSource random(0, n - 1);
    int best = 0;
    bool exhausted = false;
    std::vector<char> chosen(n), marks(n), best_marks(n);
    std::vector<int> sample(m);
    std::vector<T*> sample_items(m);
    std::vector<S> sample_parameters;
    std::set<std::vector<int>, SubSetIndexComparator> tried{SubSetIndexComparator(m)};

    for (std::uint64_t k = 0; k < tries; ++k) {
        // Sampling: the priority pair k, or draws.
        std::fill(chosen.begin(), chosen.end(), 0);
        bool in_range = true;
        for (int r = 0; r < m; ++r) {
            int index;
            if (use_priority && k < priority_count) {
                index = r == 0 ? priority_pairs[k].first : priority_pairs[k].second;
                if (index < 0 || index >= n) {
                    in_range = false;
                    break;
                }
            } else {
                exhausted = exhausted || use_priority;
                index = walk_to_item(chosen, random.draw());
            }
            sample[r] = index;
            chosen[index] = 1;
        }
        if (!in_range) continue;

        // A sample is known by its ascending indices; a repeat costs its try.
        std::vector<int> key(sample);
        std::sort(key.begin(), key.end());
        if (!tried.insert(std::move(key)).second) continue;

        for (int r = 0; r < m; ++r) sample_items[r] = &data[sample[r]];
        estimator->estimate(sample_items, sample_parameters);
        if (sample_parameters.empty()) continue;

        // Voting, stopped once the items left cannot beat the best.
        std::fill(marks.begin(), marks.end(), 0);
        int votes = 0;
        for (int i = 0; i < n; ++i) {
            if (estimator->agree(sample_parameters, data[i])) {
                marks[i] = 1;
                ++votes;
            }
            if (n - i - 1 < best - votes) break;
        }

        if (votes > best) {
            std::swap(marks, best_marks);
            best = votes;
            if (votes == n) break;
            tries = count_tries_for_share(numerator, votes, n, m);
            if (exhausted) tries += priority_count;
            tries = std::min(tries, all_tries);
        }
    }

    if (best == 0) return 0.0;
    std::vector<T*> agreeing;
    for (int i = 0; i < n; ++i)
        if (best_marks[i]) {
            inliers.push_back(i);
            agreeing.push_back(&data[i]);
        }
    estimator->leastSquaresEstimate(agreeing, parameters);
    return static_cast<double>(best) / n;
}

template class RANSAC<Geocoordinate<double>, double>;

}  // namespace geometric

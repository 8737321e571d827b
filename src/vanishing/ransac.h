// Random-sample consensus that is repeatable: samples may come first from a
// caller's list of index pairs, no sample is tried twice, and the random
// source is private to each call and always starts from the same state.
#ifndef MORVANE_VANISHING_RANSAC_H
#define MORVANE_VANISHING_RANSAC_H

#include <utility>
#include <vector>

#include "vanishing/parameter_estimator.h"

namespace geometric {

// Instantiated as RANSAC<Geocoordinate<double>, double>.
template <typename T, typename S>
class RANSAC {
public:
    // Orders two samples of `length` indices lexicographically.
    class SubSetIndexComparator {
    public:
        explicit SubSetIndexComparator(int length_) : length(length_) {}
        bool operator()(const std::vector<int>& first, const std::vector<int>& second) const;

    private:
        int length;
    };

    // Finds the model that most items of `data` agree with and answers the
    // share of agreeing items, 0.0 when there is none. `parameters` and
    // `inliers` are cleared first; on success `inliers` holds the agreeing
    // indices in ascending order and `parameters` the least-squares estimate
    // over them.
    //
    // With n items and m = minimum_for_estimate, at most all n-choose-m
    // samples (capped at 4294967295) are tried; after each new best with v
    // votes the number of tries becomes
    //   0.5 + log(1 - desired_probability) / log(1 - (v / n)^m),
    // plus the number of priority pairs once they are used up, never above
    // the cap. With `use_priority` sample k is priority_pairs[k] while k is
    // below their number (a pair with an index outside the data is a lost
    // try). Other samples are drawn from a linear congruential source
    // (state = state 1103515245 + 12345 in 64 bits, value
    // ((state >> 16) & 0x7fff) mod n) that starts at state 0 in every call:
    // draw s names the s-th item not yet in the sample, and a value past the
    // last such item falls on the last index, even one already chosen.
    // A sample already tried, or without an estimate, costs its try. All n
    // agreeing ends the search; equal votes keep the earlier sample.
    // n < m, or a probability outside (0, 1), gives 0.0 at once.
    static double compute(std::vector<S>& parameters, ParameterEstimator<T, S>* estimator, std::vector<T>& data,
                          double desired_probability, std::vector<int>& inliers, bool use_priority,
                          const std::vector<std::pair<int, int>>& priority_pairs);
};

}  // namespace geometric

#endif

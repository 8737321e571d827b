// What random-sample consensus needs of a model: an exact estimate from a
// minimal sample, a least-squares estimate from many items, and a vote.
#ifndef MORVANE_VANISHING_PARAMETER_ESTIMATOR_H
#define MORVANE_VANISHING_PARAMETER_ESTIMATOR_H

#include <vector>

namespace geometric {

// Items of type T, model parameters of type S.
template <typename T, typename S>
class ParameterEstimator {
public:
    explicit ParameterEstimator(int minimum) : minimum_for_estimate(minimum) {}

    // The model through exactly the given items; `parameters` is left empty
    // when they do not determine one.
    virtual void estimate(std::vector<T*>& data, std::vector<S>& parameters) = 0;
    // The model that fits all given items best.
    virtual void leastSquaresEstimate(std::vector<T*>& data, std::vector<S>& parameters) = 0;
    // Whether `item` agrees with the model.
    virtual bool agree(std::vector<S>& parameters, T& item) = 0;
    virtual ~ParameterEstimator() {}

    int minimum_for_estimate;  // items needed for an exact estimate
};

}  // namespace geometric

#endif

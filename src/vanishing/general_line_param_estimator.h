// The line model of random-sample consensus: points, and the three
// coefficients a, b, c of a x + b y + c = 0.
#ifndef MORVANE_VANISHING_GENERAL_LINE_PARAM_ESTIMATOR_H
#define MORVANE_VANISHING_GENERAL_LINE_PARAM_ESTIMATOR_H

#include <vector>

#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_least_square.h"
#include "vanishing/parameter_estimator.h"

namespace geometric {

// Instantiated for double.
template <typename T>
class GeneralLineParamEstimator : public ParameterEstimator<Geocoordinate<T>, T> {
public:
    // An item agrees when its squared distance to the line is below `squared_threshold_`.
    explicit GeneralLineParamEstimator(double squared_threshold_)
        : ParameterEstimator<Geocoordinate<T>, T>(2), squared_threshold(squared_threshold_) {}

    // `parameters` is cleared; from two items or more it receives (a, b, c)
    // of the plain least-squares fit (single-precision limit on the variance).
    void estimate(std::vector<Geocoordinate<T>*>& data, std::vector<T>& parameters) override;
    // The same fit over all given items; empty for no items.
    void leastSquaresEstimate(std::vector<Geocoordinate<T>*>& data, std::vector<T>& parameters) override;
    // s = (a u + b v + c) / sqrt(a^2 + b^2) for the item (u, v); true when
    // squared_threshold > s^2. Parameters other than three values agree with nothing.
    bool agree(std::vector<T>& parameters, Geocoordinate<T>& item) override;

    double squared_threshold;

private:
    void fit(const std::vector<Geocoordinate<T>*>& data, std::vector<T>& parameters);

    GeolineLeastSquare work_line;                 // scratch of the fits
    std::vector<Geocoordinate<T>> work_points;    // the items copied for the fit, reused
};

}  // namespace geometric

#endif

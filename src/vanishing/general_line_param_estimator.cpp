// Line estimates for random-sample consensus.
#include "vanishing/general_line_param_estimator.h"

#include <cmath>

namespace geometric {

template <typename T>
void GeneralLineParamEstimator<T>::fit(const std::vector<Geocoordinate<T>*>& data, std::vector<T>& parameters) {
    work_points.clear();
    for (const Geocoordinate<T>* item : data) work_points.push_back(*item);
    if (!work_line.fit(work_points)) return;
    parameters.push_back(work_line.a);
    parameters.push_back(work_line.b);
    parameters.push_back(work_line.c);
}

template <typename T>
void GeneralLineParamEstimator<T>::estimate(std::vector<Geocoordinate<T>*>& data, std::vector<T>& parameters) {
    parameters.clear();
    if (static_cast<long long>(data.size()) < this->minimum_for_estimate) return;
    fit(data, parameters);
}

template <typename T>
void GeneralLineParamEstimator<T>::leastSquaresEstimate(std::vector<Geocoordinate<T>*>& data,
                                                        std::vector<T>& parameters) {
    parameters.clear();
    fit(data, parameters);
}

template <typename T>
bool GeneralLineParamEstimator<T>::agree(std::vector<T>& parameters, Geocoordinate<T>& item) {
    if (parameters.size() != 3) return false;
    const T a = parameters[0], b = parameters[1], c = parameters[2];
    const T s = (a * item.x + b * item.y + c) / std::sqrt(a * a + b * b);
    return squared_threshold > s * s;
}

template class GeneralLineParamEstimator<double>;

}  // namespace geometric

// Fits in the dual plane shared by the consensus and the margin solvers.
#include "vanishing/dual_plane_fit.h"

#include <cmath>

#include "common/constants.h"
#include "textgeometry/geoline_least_square.h"

namespace geometric {

Geocoordinate<double> dual_meeting_point(const GeolineBase& dual_line) {
    return Geocoordinate<double>(dual_line.a / dual_line.c, dual_line.b / dual_line.c);
}

Geocoordinate<double> plain_dual_fit_point(const std::vector<Geocoordinate<double>>& duals) {
    GeolineLeastSquare line;
    line.fit(duals);
    return dual_meeting_point(line);
}

Geocoordinate<double> weighted_dual_fit_point(const std::vector<Geocoordinate<double>>& duals,
                                              const std::vector<double>& weights) {
    double total = 0.0;
    for (std::size_t k = 0; k < duals.size(); ++k) total += weights[k];
    double mx = 0.0, my = 0.0, muu = 0.0;
    float muv = 0.0f;
    for (std::size_t k = 0; k < duals.size(); ++k) {
        const double w = weights[k] / total;
        const double u = duals[k].x, v = duals[k].y;
        mx += w * u;
        my += w * v;
        muu += w * u * u;
        muv = static_cast<float>(muv + (w * u) * v);
    }
    const double var = muu - mx * mx;
    if (std::fabs(var) <= constants::kDoubleEpsilon) return dual_meeting_point(GeolineBase(1.0, 0.0, -mx));
    const double a = (muv - mx * my) / var;
    return dual_meeting_point(GeolineBase(a, -1.0, my - mx * a));
}

}  // namespace geometric

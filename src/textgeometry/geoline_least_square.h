// The plain least-squares fit of y on x, on which the weighted fit and every
// later line of the text route start.
#ifndef MORVANE_TEXTGEOMETRY_GEOLINE_LEAST_SQUARE_H
#define MORVANE_TEXTGEOMETRY_GEOLINE_LEAST_SQUARE_H

#include <cmath>
#include <vector>

#include "common/constants.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

class GeolineLeastSquare : public GeolineBase {
public:
    GeolineLeastSquare() {}
    explicit GeolineLeastSquare(const GeolineBase& line) : GeolineBase(line) {}

    // Means of x, y, x^2 and x y in double; var = mean(x^2) - mean(x)^2.
    // |var| below the single-precision epsilon (this fit's limit, unlike the
    // weighted fit's double one) gives the vertical form (1, 0, -mean(x));
    // otherwise a = (mean(xy) - mean(x) mean(y)) / var, b = -1,
    // c = mean(y) - a mean(x). An empty set leaves the line as it was and
    // answers false.
    template <typename T>
    bool fit(const std::vector<Geocoordinate<T>>& points) {
        if (points.empty()) return false;
        double sum_x = 0.0, sum_y = 0.0, sum_xx = 0.0, sum_xy = 0.0;
        for (const auto& p : points) {
            const double x = static_cast<double>(p.x);
            const double y = static_cast<double>(p.y);
            sum_x += x;
            sum_y += y;
            sum_xx += x * x;
            sum_xy += x * y;
        }
        const double n = static_cast<double>(points.size());
        const double mean_x = sum_x / n;
        const double mean_y = sum_y / n;
        const double var = sum_xx / n - mean_x * mean_x;
        if (std::fabs(var) < constants::kFloatEpsilon) {
            a = 1.0;
            b = 0.0;
            c = -mean_x;
        } else {
            a = (sum_xy / n - mean_x * mean_y) / var;
            b = -1.0;
            c = mean_y - a * mean_x;
        }
        return true;
    }
};

}  // namespace geometric

#endif

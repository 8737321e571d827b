// The weighted line fit: points are reweighted by their distance to the
// current line until the line's angle settles.
#ifndef MORVANE_TEXTGEOMETRY_GEOLINE_ADAPTIVE_LEAST_SQUARE_H
#define MORVANE_TEXTGEOMETRY_GEOLINE_ADAPTIVE_LEAST_SQUARE_H

#include <vector>

#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

// Weighted first and second moments; Mxx and Mxy hold what the float form
// accumulated in single precision, widened.
struct WeightedMoments {
    double mx = 0.0;
    double my = 0.0;
    double mxx = 0.0;
    double mxy = 0.0;
};

class GeolineAdaptiveLeastSquare : public GeolineBase {
public:
    GeolineAdaptiveLeastSquare() {}
    explicit GeolineAdaptiveLeastSquare(const GeolineBase& line) : GeolineBase(line) {}

    // Starts from the plain fit, then up to 10 passes of weights
    // w = fastexp(-d s) (0 below t = -100), normalised to sum 1, and a fit on
    // the weighted moments; stops when the angle moves by less than
    // `angle_tolerance` degrees. `normalize` false: s = 1; true: with D the
    // largest distance to the plain fit, s = 1 / D above one pixel, else the
    // whole part of 1 / D + 1, saturated at the largest int; a set lying
    // exactly on its line (D = 0) takes s = 1. When every weight is 0 the
    // line becomes not-a-number and the passes run out. Instantiated for
    // float and double; an empty set leaves the line as it was.
    template <typename T>
    GeolineAdaptiveLeastSquare& use_pt_line_dis_iterative(const std::vector<Geocoordinate<T>>& points,
                                                          bool normalize, double angle_tolerance);

    // e^t built from bits, without a table or the library exponential: the
    // whole part of t * 1512775 + 1072632447 becomes the upper 32 bits of a
    // double whose lower 32 bits are zero. Its ripple of a few percent is part
    // of the fit's results.
    static double fast_exponential(double t);

    // Mx = sum w x, My = sum w y (double), Mxx = sum w x^2, Mxy = sum (w x) y.
    // Float points: Mxx wholly in single precision, Mxy rounded to single
    // precision after each addition. Double points: all in double.
    static WeightedMoments weighted_moments(const std::vector<Geocoordinate<float>>& points,
                                            const std::vector<double>& weights);
    static WeightedMoments weighted_moments(const std::vector<Geocoordinate<double>>& points,
                                            const std::vector<double>& weights);
};

}  // namespace geometric

#endif

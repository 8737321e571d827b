// The distance-weighted line fit and its bit-built exponential.
#include "textgeometry/geoline_adaptive_least_square.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "common/constants.h"
#include "common/int_truncation.h"
#include "textgeometry/geoline_least_square.h"

namespace geometric {

namespace {

constexpr int kMaximumPasses = 10;
constexpr double kWeightCutoff = -100.0;
constexpr double kExponentScale = 1512775.0;    // 2^20 / ln 2
constexpr double kExponentOffset = 1072632447.0;  // 1023 * 2^20 - 60801: evens out the error

using common::truncate_to_int32;

template <typename T>
void distances_to(const GeolineBase& line, const std::vector<Geocoordinate<T>>& points,
                  std::vector<double>& d) {
    for (std::size_t i = 0; i < points.size(); ++i) d[i] = line.point_distance(points[i]);
}

// s = 1 / D above one pixel of spread; below it a whole number at least one
// above the reciprocal, saturated at the largest int where the reciprocal
// overflows the truncation. D = 0 (every point on the line) has no
// reciprocal: the first weights are equal whatever s is, and a neutral s = 1
// keeps a later pass from throwing every point away for a rounding-sized
// distance.
double weight_scale(const std::vector<double>& d) {
    double largest = 0.0;
    for (double v : d)
        if (v > largest) largest = v;
    if (largest > 1.0) return 1.0 / largest;
    if (!(largest > 0.0)) return 1.0;
    const double reciprocal_plus_one = 1.0 / largest + 1.0;
    if (!(reciprocal_plus_one < 2147483648.0)) return 2147483647.0;
    return static_cast<double>(static_cast<std::int32_t>(reciprocal_plus_one));
}

}  // namespace

double GeolineAdaptiveLeastSquare::fast_exponential(double t) {
    const std::uint32_t upper = static_cast<std::uint32_t>(truncate_to_int32(t * kExponentScale + kExponentOffset));
    const std::uint64_t bits = static_cast<std::uint64_t>(upper) << 32;
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

WeightedMoments GeolineAdaptiveLeastSquare::weighted_moments(const std::vector<Geocoordinate<float>>& points,
                                                             const std::vector<double>& weights) {
    double mx = 0.0, my = 0.0;
    float mxx = 0.0f, mxy = 0.0f;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double w = weights[i];
        const float x = points[i].x;
        const float y = points[i].y;
        mx += w * x;
        my += w * y;
        const float wf = static_cast<float>(w);
        mxx += wf * x * x;
        mxy = static_cast<float>(mxy + (w * x) * y);
    }
    WeightedMoments m;
    m.mx = mx;
    m.my = my;
    m.mxx = mxx;
    m.mxy = mxy;
    return m;
}

WeightedMoments GeolineAdaptiveLeastSquare::weighted_moments(const std::vector<Geocoordinate<double>>& points,
                                                             const std::vector<double>& weights) {
    WeightedMoments m;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double w = weights[i];
        const double x = points[i].x;
        const double y = points[i].y;
        m.mx += w * x;
        m.my += w * y;
        m.mxx += w * x * x;
        m.mxy += (w * x) * y;
    }
    return m;
}

template <typename T>
GeolineAdaptiveLeastSquare& GeolineAdaptiveLeastSquare::use_pt_line_dis_iterative(
    const std::vector<Geocoordinate<T>>& points, bool normalize, double angle_tolerance) {
    if (points.empty()) return *this;

    // The plain fit and its angle.
    GeolineLeastSquare plain;
    plain.fit(points);
    a = plain.a;
    b = plain.b;
    c = plain.c;
    double angle = 90.0;
    if (b != 0.0) {
        angle = std::atan(a) * 180.0 / constants::kPi;
        if (angle < 0.0) angle += 180.0;
    }

    // The points' distances to it, and the scale of their weights.
    std::vector<double> d(points.size());
    distances_to(*this, points, d);
    const double s = normalize ? weight_scale(d) : 1.0;

    std::vector<double> w(points.size());
    for (int pass = 0; pass < kMaximumPasses; ++pass) {
        // Weights, normalised to sum 1 (all zero: not-a-number).
        double sum = 0.0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const double t = -d[i] * s;
            w[i] = t < kWeightCutoff ? 0.0 : fast_exponential(t);
            sum += w[i];
        }
        for (double& v : w) v /= sum;

        // The weighted fit; the double epsilon here, unlike the plain fit.
        const WeightedMoments m = weighted_moments(points, w);
        const double var = m.mxx - m.mx * m.mx;
        if (std::fabs(var) <= constants::kDoubleEpsilon) {
            a = 1.0;
            b = 0.0;
            c = -m.mx;
        } else {
            a = (m.mxy - m.mx * m.my) / var;
            b = -1.0;
            c = m.my - m.mx * a;
        }

        // Settled once the angle holds still; else the next pass, with the same scale.
        const double new_angle = line_angle();
        if (std::fabs(angle - new_angle) < angle_tolerance) break;
        distances_to(*this, points, d);
        angle = new_angle;
    }
    return *this;
}

template GeolineAdaptiveLeastSquare& GeolineAdaptiveLeastSquare::use_pt_line_dis_iterative<float>(
    const std::vector<Geocoordinate<float>>&, bool, double);
template GeolineAdaptiveLeastSquare& GeolineAdaptiveLeastSquare::use_pt_line_dis_iterative<double>(
    const std::vector<Geocoordinate<double>>&, bool, double);

}  // namespace geometric

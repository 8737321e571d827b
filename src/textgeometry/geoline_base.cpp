// Intersection and outlier rejection of the implicit line.
#include "textgeometry/geoline_base.h"

namespace geometric {

namespace {

struct SingleStatistics {
    float mean;
    float deviation;
};

// Mean and standard deviation (divisor n - 1) in single precision. A set of
// fewer than two values has no spread: its deviation is 0, and an empty set
// has mean 0, so that the limits stay numbers.
SingleStatistics single_statistics(const std::vector<float>& values) {
    SingleStatistics s{0.0f, 0.0f};
    const std::size_t n = values.size();
    if (n == 0) return s;
    float sum = 0.0f;
    for (float v : values) sum += v;
    s.mean = sum / static_cast<float>(n);
    if (n < 2) return s;
    float squares = 0.0f;
    for (float v : values) {
        const float d = v - s.mean;
        squares += d * d;
    }
    s.deviation = std::sqrt(squares / static_cast<float>(n - 1));
    return s;
}

template <typename T>
std::vector<float> distances_to(const GeolineBase& line, const std::vector<Geocoordinate<T>>& points) {
    std::vector<float> d;
    d.reserve(points.size());
    for (const auto& p : points) d.push_back(static_cast<float>(line.point_distance(p)));
    return d;
}

}  // namespace

bool intersect_lines(const GeolineBase& first, const GeolineBase& second,
                     Geocoordinate<double>& point) {
    const double det = first.a * second.b - second.a * first.b;
    if (std::fabs(det) <= constants::kDoubleEpsilon) return false;
    point.x = (first.b * second.c - second.b * first.c) / det;
    point.y = (first.c * second.a - second.c * first.a) / det;
    return true;
}

template <typename T>
void GeolineBase::remove_outliers(const std::vector<Geocoordinate<T>>& first,
                                  const std::vector<Geocoordinate<T>>& second,
                                  std::vector<Geocoordinate<T>>& kept, int multiple) const {
    const std::vector<float> d1 = distances_to(*this, first);
    const std::vector<float> d2 = distances_to(*this, second);
    const float k = static_cast<float>(multiple);

    const SingleStatistics s1 = single_statistics(d1);
    const SingleStatistics s2 = single_statistics(d2);
    const SingleStatistics& judged = first.size() >= 2 ? s1 : s2;
    const float mean = judged.mean;
    const float sigma = judged.deviation;

    const float epsilon = static_cast<float>(constants::kFloatEpsilon);
    const float e = sigma <= epsilon ? epsilon : 0.0f;
    const float mean2 = second.size() >= 2 ? s2.mean : mean;

    const float limit_first = 3.0f * (sigma * k) + mean + e;
    const float limit_second = mean2 + sigma * k + e;

    for (std::size_t i = 0; i < first.size(); ++i)
        if (d1[i] < limit_first) kept.push_back(first[i]);
    for (std::size_t i = 0; i < second.size(); ++i)
        if (d2[i] < limit_second) kept.push_back(second[i]);
}

template void GeolineBase::remove_outliers<float>(const std::vector<Geocoordinate<float>>&,
                                                  const std::vector<Geocoordinate<float>>&,
                                                  std::vector<Geocoordinate<float>>&, int) const;

}  // namespace geometric

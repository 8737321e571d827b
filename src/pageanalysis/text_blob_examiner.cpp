// Second moments of a blob's pixels and what they say about its shape.
#include "pageanalysis/text_blob_examiner.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "common/constants.h"
#include "components/binary_connected_component.h"

namespace geometric {

namespace {

// Degrees in a radian, as the angle of the main axis is written.
constexpr double kDegreesPerRadian = 57.29577951308232;
// 2 sqrt(2): the axes of the ellipse with the moments of the blob are
// 2 sqrt(2) times the square roots of the sums below.
constexpr double kAxisFactor = 2.8284271247461903;
// Variance of a unit pixel about its centre.
constexpr double kPixelVariance = 1.0 / 12.0;

// Sum of k and of k^2 for k from 0 to n, exact in 64 bits for image sizes.
std::int64_t sum_to(std::int64_t n) { return n * (n + 1) / 2; }
std::int64_t sum_of_squares_to(std::int64_t n) { return n * (n + 1) * (2 * n + 1) / 6; }

void derive_moments(TextBlobExaminer::TextBlobFeature& feature) {
    const double count = static_cast<double>(feature.count);
    const double mean_x = feature.sum_x / count;
    const double mean_y = feature.sum_y / count;
    feature.variance_x = feature.sum_xx / count - mean_x * mean_x + kPixelVariance;
    feature.variance_y = feature.sum_yy / count - mean_y * mean_y + kPixelVariance;
    feature.covariance = -(feature.sum_xy / count - mean_x * mean_y);
}

}  // namespace

TextBlobExaminer::TextBlobExaminer(double minimum_eccentricity_, float tolerance_)
    : minimum_eccentricity(minimum_eccentricity_), tolerance(0.0f), minimum_angle(90.0f), maximum_angle(90.0f) {
    set_tolerance(tolerance_);
}

void TextBlobExaminer::set_tolerance(float value) {
    tolerance = value;
    minimum_angle = 90.0f - value;
    maximum_angle = 90.0f + value;
}

void TextBlobExaminer::get_features_from_blob(const std::vector<Geocoordinate<int>>& points,
                                              TextBlobFeature& feature) {
    feature = TextBlobFeature();
    for (const Geocoordinate<int>& p : points) {
        const double x = p.x;
        const double y = p.y;
        ++feature.count;
        feature.sum_x += x;
        feature.sum_y += y;
        feature.sum_xy += x * y;
        feature.sum_xx += x * x;
        feature.sum_yy += y * y;
    }
    derive_moments(feature);
}

// Whole runs at a time: every partial sum is an integer far below 2^53, so
// the doubles come out exactly as if the pixels were added one by one.
void TextBlobExaminer::get_features_from_blob(const TextBlob& blob, TextBlobFeature& feature) {
    feature = TextBlobFeature();
    for (const BinaryConnectedComponent* s = blob.component; s != nullptr; s = s->next) {
        for (const BinaryConnectedComponent::RunOnLine& r : s->runs) {
            const std::int64_t start = r.first->start;
            const std::int64_t end = r.first->end;
            const std::int64_t y = r.second;
            const std::int64_t n = end - start + 1;
            const std::int64_t xs = sum_to(end) - sum_to(start - 1);
            const std::int64_t xxs = sum_of_squares_to(end) - sum_of_squares_to(start - 1);
            feature.count += static_cast<int>(n);
            feature.sum_x += static_cast<double>(xs);
            feature.sum_y += static_cast<double>(n * y);
            feature.sum_xy += static_cast<double>(xs * y);
            feature.sum_xx += static_cast<double>(xxs);
            feature.sum_yy += static_cast<double>(n * y * y);
        }
    }
    derive_moments(feature);
}

float TextBlobExaminer::get_blob_angle(const TextBlobFeature& feature) {
    const double a = feature.variance_x;
    const double b = feature.variance_y;
    const double c = feature.covariance;
    const double r = std::sqrt(4.0 * c * c + (b - a) * (b - a));
    double p;
    double q;
    if (b > a) {
        p = r + (b - a);
        q = 2.0 * c;
    } else {
        p = 2.0 * c;
        q = a - b + r;
    }
    if (std::fabs(p) <= constants::kDoubleEpsilon && std::fabs(q) <= constants::kDoubleEpsilon) return 0.0f;
    const float t = static_cast<float>(kDegreesPerRadian * std::atan(p / q));
    return t < 0.0f ? -t : 180.0f - t;
}

double TextBlobExaminer::get_blob_eccentricity(const TextBlobFeature& feature) {
    const double a = feature.variance_x;
    const double b = feature.variance_y;
    const double c = feature.covariance;
    const double s = std::sqrt((a - b) * (a - b) + 4.0 * c * c);
    const double major = kAxisFactor * std::sqrt(a + b + s);
    const double half_minor = 0.5 * kAxisFactor * std::sqrt(a + b - s);
    const double half_major = major / 2.0;
    return 2.0 * std::sqrt(half_major * half_major - half_minor * half_minor) / major;
}

bool TextBlobExaminer::extract_line_from_blob(const TextBlob& blob, GeolineBasePoints<float>& line,
                                              double& eccentricity) const {
    TextBlobFeature feature;
    get_features_from_blob(blob, feature);
    // Without pixels every moment is not-a-number, which no bound rejects.
    if (feature.count <= 0) return false;
    const float angle = get_blob_angle(feature);
    if (angle < minimum_angle || angle > maximum_angle) return false;
    const double value = get_blob_eccentricity(feature);
    if (value < minimum_eccentricity) return false;
    eccentricity = value;

    const Geocoordinate<float> centre(static_cast<float>(feature.sum_x / feature.count),
                                      static_cast<float>(feature.sum_y / feature.count));
    const double slope = std::tan(angle * constants::kPi / 180.0);
    line.a = slope;
    line.b = -1.0;
    line.c = centre.y - slope * centre.x;
    line.points.clear();
    line.points.push_back(centre);
    return true;
}

}  // namespace geometric

// Convexity and angle tests of a quadrilateral.
#include "cornersearch/corner_examiner.h"

#include <algorithm>
#include <cmath>

#include "correction/projective_correction.h"

#include "common/constants.h"

namespace geometric {

namespace {

// z of (b - a) x (c - b): the sense of the turn a-b-c.
double turn(const Geocoordinate<float>& a, const Geocoordinate<float>& b, const Geocoordinate<float>& c) {
    const double ux = static_cast<double>(b.x) - a.x;
    const double uy = static_cast<double>(b.y) - a.y;
    const double vx = static_cast<double>(c.x) - b.x;
    const double vy = static_cast<double>(c.y) - b.y;
    return ux * vy - uy * vx;
}

}  // namespace

bool CornerExaminer::is_convex(const std::vector<Geocoordinate<float>>& corners) {
    if (corners.size() != 4) return false;
    bool positive = false;
    bool negative = false;
    for (int i = 0; i < 4; ++i) {
        const double z = turn(corners[i], corners[(i + 1) % 4], corners[(i + 2) % 4]);
        if (z > 0.0) positive = true;
        if (z < 0.0) negative = true;
        if (positive && negative) return false;
    }
    return positive || negative;
}

bool CornerExaminer::check_angles(const std::vector<Geocoordinate<float>>& corners, double minimum_angle) {
    if (corners.size() != 4) return false;
    const double limit = std::cos(constants::kPi * minimum_angle / 180.0);
    for (int i = 1; i < 4; ++i) {
        const Geocoordinate<float>& corner = corners[i];
        const Geocoordinate<float>& previous = corners[i - 1];
        const Geocoordinate<float>& next = corners[(i + 1) % 4];
        const double ux = static_cast<double>(previous.x) - corner.x;
        const double uy = static_cast<double>(previous.y) - corner.y;
        const double vx = static_cast<double>(next.x) - corner.x;
        const double vy = static_cast<double>(next.y) - corner.y;
        const double dot = ux * vx + uy * vy;
        const double lengths = (ux * ux + uy * uy) * (vx * vx + vy * vy);
        if (std::fabs(dot) / std::sqrt(lengths + 1e-10) > limit) return false;
    }
    return true;
}

bool CornerExaminer::check_constrains(const std::vector<Geocoordinate<float>>& corners, double minimum_angle) {
    return is_convex(corners) && check_angles(corners, minimum_angle);
}

int CornerExaminer::examine_page_output(const std::vector<Geocoordinate<float>>& corners, int width, int height,
                                        bool within_image, double minimum_angle, double minimum_area,
                                        double minimum_share) {
    // Registrations leave four corners or none; anything else is no quadrilateral.
    if (corners.size() != 4) return -5;
    if (within_image) {
        if (corners[0].x < 0 || corners[3].x < 0 || corners[1].x > width - 1 || corners[2].x > width - 1 ||
            corners[0].y < 0 || corners[1].y < 0 || corners[2].y > height - 1 || corners[3].y > height - 1)
            return -3;
    }
    if (!check_constrains(corners, minimum_angle)) return -5;

    int output_width = 0;
    int output_height = 0;
    ProjectiveCorrection::calculate_output_dimension(corners, output_width, output_height);
    const float ratio = static_cast<float>(std::max(output_width, output_height)) /
                        static_cast<float>(std::min(output_width, output_height));
    // A page of ordinary proportions must meet the higher limit; with the
    // default every other shape passes any test of area.
    const double limit = (ratio > 1.2 && ratio < 1.4) ? minimum_area : minimum_area - 0.1;

    // Shoelace formula in single precision.
    float sum = 0.0f;
    for (size_t i = 0; i < 4; ++i) {
        const Geocoordinate<float>& p = corners[i];
        const Geocoordinate<float>& q = corners[(i + 1) % 4];
        sum += p.x * q.y - q.x * p.y;
    }
    const float area = std::fabs(0.5f * sum) / (static_cast<float>(height) * static_cast<float>(width));
    if (!(area > limit)) return -4;

    const double width_share = static_cast<double>(output_width) / width;
    const double height_share = static_cast<double>(output_height) / height;
    return std::max(width_share, height_share) > minimum_share ? 1 : -6;
}

}  // namespace geometric

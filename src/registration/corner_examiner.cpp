// Convexity and angle tests of a quadrilateral.
#include "registration/corner_examiner.h"

#include <cmath>

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

}  // namespace geometric

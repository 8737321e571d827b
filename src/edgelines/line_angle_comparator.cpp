// Comparisons of undirected line angles, with the wrap at 180 degrees.
#include "edgelines/line_angle_comparator.h"

#include <algorithm>
#include <cmath>

#include "common/constants.h"

namespace geometric {

double LineAngleComparator::calculate_line_angle(const GeolineBase& line) {
    if (is_vertical_line(line)) return 90.0;
    double angle = std::atan(-line.a / line.b) / constants::kPi * 180.0;
    if (angle < 0.0) angle += 180.0;
    return angle;
}

bool LineAngleComparator::is_vertical_line(const GeolineBase& line) {
    return std::fabs(line.b) <= constants::kDoubleEpsilon;
}

double LineAngleComparator::fold(double difference) {
    double d = std::fabs(difference);
    if (d > 90.0) d = 180.0 - d;
    return d;
}

double LineAngleComparator::calculate_disparity(double first, double second) { return fold(first - second); }

double LineAngleComparator::calculate_disparity(const GeolineBase& first, const GeolineBase& second) {
    if (is_vertical_line(first) && is_vertical_line(second)) return 0.0;
    return calculate_disparity(calculate_line_angle(first), calculate_line_angle(second));
}

bool LineAngleComparator::is_near_coordinate_axes(const GeolineBase& line, double tolerance, Direction direction) {
    const bool vertical = is_vertical_line(line);
    double d;
    if (direction == HORIZONTAL_DIRECTION) {
        if (vertical) {
            d = 90.0;
        } else {
            const double t = calculate_line_angle(line);
            d = std::min(std::fabs(t), std::fabs(180.0 - t));
        }
    } else {
        d = vertical ? 0.0 : std::fabs(calculate_line_angle(line) - 90.0);
    }
    return tolerance > d;
}

bool LineAngleComparator::is_near_coordinate_axes(double first, double second, double angle, Direction direction) {
    if (direction == VERTICAL_DIRECTION) {
        return std::min(first, second) <= angle && angle <= std::max(first, second);
    }
    if (first > 90.0 && second <= 90.0) {
        return (first <= angle && angle <= 180.0) || (0.0 <= angle && angle <= second);
    }
    return second <= angle && angle <= first;
}

bool LineAngleComparator::is_large_disparity(const GeolineBase& first, const GeolineBase& second, double limit) {
    return calculate_disparity(first, second) > limit;
}

bool LineAngleComparator::is_large_disparity(double first, double second, double limit) {
    return calculate_disparity(first, second) > limit;
}

bool LineAngleComparator::is_small_disparity(double first, double second, double limit) {
    return !is_large_disparity(first, second, limit);
}

double LineAngleComparator::calculate_angle_standard_derivation(const std::vector<GeolineBase>& lines) {
    if (lines.size() < 2) return 0.0;
    std::vector<double> angles;
    angles.reserve(lines.size());
    double sum = 0.0;
    for (const GeolineBase& line : lines) {
        angles.push_back(calculate_line_angle(line));
        sum += angles.back();
    }
    const double n = static_cast<double>(angles.size());
    const double mean = sum / n;
    double squares = 0.0;
    for (double angle : angles) squares += (angle - mean) * (angle - mean);
    return std::sqrt(squares / (n - 1.0));
}

double LineAngleComparator::calculate_vertical_disparity_difference(double first, double second, bool& same_side) {
    const double u = first - 90.0;
    const double v = second - 90.0;
    if (u * v < 0.0) {
        same_side = false;
        return std::fabs(static_cast<float>(u + v));
    }
    same_side = true;
    return std::fabs(static_cast<float>(u - v));
}

}  // namespace geometric

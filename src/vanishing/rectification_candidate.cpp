// The rectification judge shared by the vanishing-point solvers.
#include "vanishing/rectification_candidate.h"

#include <cmath>
#include <limits>

#include "edgelines/line_angle_comparator.h"
#include "vanishing/projective_matrix_estimator.h"
#include "vanishing/vanishing_point_codes.h"

namespace geometric {

namespace {

// Lines whose angles deviate less than this (degrees) are all tested; a more
// scattered family is judged by its last line, the one the caller forced.
constexpr double kScatteredAngles = 1.0;

// How far a rectified angle is from the direction's axis.
double axis_error(double angle, Direction direction) {
    return direction == VERTICAL_DIRECTION ? std::fabs(90.0 - angle) : std::fmin(angle, 180.0 - angle);
}

// How far an image line's angle is from the reference. Horizontal angles
// wrap at 180: with r above 90 a line at or below 90 counts t + 180 - r, with
// r at most 90 a line above 90 counts 180 - t + r.
double reference_error(double angle, double reference, Direction direction) {
    if (direction == VERTICAL_DIRECTION) return std::fabs(reference - angle);
    if (reference > 90.0) return angle > 90.0 ? std::fabs(angle - reference) : angle + 180.0 - reference;
    return angle <= 90.0 ? std::fabs(angle - reference) : 180.0 - angle + reference;
}

}  // namespace

int choose_rectification_candidate(int image_width, int image_height, Direction direction,
                                   const std::vector<Geocoordinate<double>>& candidates,
                                   const std::vector<GeolineBase>& lines, Geocoordinate<double>& point,
                                   int previous_index, bool flag, float maximum_error, float reference_angle) {
    // 1. The test lines.
    std::vector<GeolineBase> tested = lines;
    if (previous_index == kNoPreviousCandidate && flag && !lines.empty() &&
        !(LineAngleComparator::calculate_angle_standard_derivation(lines) < kScatteredAngles))
        tested.assign(1, lines.back());
    if (tested.empty()) return VPOINT_NO_RESULT;
    const double count = static_cast<double>(tested.size());

    // 2. The candidate that straightens them best.
    const ProjectiveMatrixEstimator estimator(image_width, image_height);
    double best = std::numeric_limits<double>::infinity();
    int best_index = -1;
    std::vector<double> angles;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        // A point at infinity is no candidate: it would be stored as found.
        if (!std::isfinite(candidates[i].x) || !std::isfinite(candidates[i].y)) continue;
        ProjectiveMatrix matrix;
        if (!estimator.estimate_projective_matrix(candidates[i], direction, matrix)) continue;
        angles.clear();
        calculate_rectified_line_angles(matrix, tested, angles);
        double sum = 0.0;
        for (double angle : angles) sum += axis_error(angle, direction);
        const double error = sum / count;
        if (error < best) {
            best = error;
            best_index = static_cast<int>(i);
        }
    }

    // 3. The previous point stands.
    if (best_index == previous_index) return VPOINT_PREVIOUS_STANDS;

    // 4. The lines as they are.
    if (!flag) {
        double sum = 0.0;
        for (const GeolineBase& line : tested) sum += reference_error(line.line_angle(), reference_angle, direction);
        const double unrectified = sum / count;
        if (best > unrectified) return unrectified <= maximum_error ? VPOINT_TREAT_AS_PARALLEL : VPOINT_NO_RESULT;
    }

    // 5.
    if (best <= maximum_error) {
        point = candidates[best_index];
        return VPOINT_FOUND;
    }
    return VPOINT_NO_RESULT;
}

}  // namespace geometric

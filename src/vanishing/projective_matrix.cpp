// Point and line mappings of the rectifying homography.
#include "vanishing/projective_matrix.h"

#include <cmath>

#include "common/constants.h"

namespace geometric {

namespace {

// (x, y) of t (X, Y, 1), with t the transpose of the row-major `m`.
Geocoordinate<double> map_by_transpose(const double (&m)[9], const Geocoordinate<double>& p) {
    const double w = m[2] * p.x + m[5] * p.y + m[8];
    return Geocoordinate<double>((m[0] * p.x + m[3] * p.y + m[6]) / w, (m[1] * p.x + m[4] * p.y + m[7]) / w);
}

}  // namespace

void ProjectiveMatrix::set_unit_matrix() {
    for (int i = 0; i < 9; ++i) {
        matrix[i] = i % 4 == 0 ? 1.0 : 0.0;
        inverse_matrix[i] = matrix[i];
    }
}

Geocoordinate<double> ProjectiveMatrix::map_rectified_to_image(const Geocoordinate<double>& point) const {
    return map_by_transpose(matrix, point);
}

// The transpose of the inverse is the inverse of the transpose: H^-1.
Geocoordinate<double> ProjectiveMatrix::map_image_to_rectified(const Geocoordinate<double>& point) const {
    return map_by_transpose(inverse_matrix, point);
}

double calculate_rectified_line_angle(const ProjectiveMatrix& matrix, const GeolineBase& line) {
    const double* m = matrix.matrix;
    const double l0 = m[0] * line.a + m[1] * line.b + m[2] * line.c;
    const double l1 = m[3] * line.a + m[4] * line.b + m[5] * line.c;
    if (std::fabs(l1) <= constants::kDoubleEpsilon) return 90.0;
    double angle = std::atan(-l0 / l1) * (180.0 / constants::kPi);
    if (angle < 0.0) angle += 180.0;
    return angle;
}

void calculate_rectified_line_angles(const ProjectiveMatrix& matrix, const std::vector<GeolineBase>& lines,
                                     std::vector<double>& angles) {
    for (const GeolineBase& line : lines) angles.push_back(calculate_rectified_line_angle(matrix, line));
}

}  // namespace geometric

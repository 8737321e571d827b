// The homography between the image and the rectified plane that a candidate
// vanishing point implies, and the angles of image lines once rectified.
#ifndef MORVANE_VANISHING_PROJECTIVE_MATRIX_H
#define MORVANE_VANISHING_PROJECTIVE_MATRIX_H

#include <vector>

#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

// Two 3 x 3 matrices stored by rows. With H the homography that maps
// rectified coordinates (X, Y, 1) to image coordinates (x w, y w, w),
// `matrix` is the transpose of H: applied to the coefficient column
// (a, b, c) of an image line it gives the same line in the rectified plane.
struct ProjectiveMatrix {
    double inverse_matrix[9];  // inverse of `matrix`
    double matrix[9];

    ProjectiveMatrix() { set_unit_matrix(); }

    // Both matrices become the identity.
    void set_unit_matrix();

    // (x, y) = H (X, Y, 1) after the division by its third component.
    // A point on the horizon of the other plane gives infinities.
    Geocoordinate<double> map_rectified_to_image(const Geocoordinate<double>& point) const;
    // (X, Y) = H^-1 (x, y, 1), read from `inverse_matrix`.
    Geocoordinate<double> map_image_to_rectified(const Geocoordinate<double>& point) const;
};

// The angle in the rectified plane of an image line (a, b, c): with
// l = matrix (a, b, c), 90 when |l1| is at most the double epsilon, else
// atan(-l0 / l1) in degrees, plus 180 when negative, so in [0, 180).
double calculate_rectified_line_angle(const ProjectiveMatrix& matrix, const GeolineBase& line);

// Appends one rectified angle a line to `angles`, in the order of `lines`.
void calculate_rectified_line_angles(const ProjectiveMatrix& matrix, const std::vector<GeolineBase>& lines,
                                     std::vector<double>& angles);

}  // namespace geometric

#endif

// Computes the rectifying homography from four point pairs, and from a
// vanishing point through the virtual corners it implies.
#ifndef MORVANE_VANISHING_PROJECTIVE_MATRIX_ESTIMATOR_H
#define MORVANE_VANISHING_PROJECTIVE_MATRIX_ESTIMATOR_H

#include <vector>

#include "textgeometry/direction.h"
#include "textgeometry/geocoordinate.h"
#include "vanishing/projective_matrix.h"

namespace geometric {

class ProjectiveMatrixEstimator {
public:
    ProjectiveMatrixEstimator(int width_, int height_) : width(width_), height(height_) {}

    // The homography that sends the image rectangle (0, 0), (w', 0), (w', h'),
    // (0, h') (w' = width - 1, h' = height - 1) to the one-direction virtual
    // corners of `vanishing_point`. A point across the image is of no use:
    // for the vertical direction a y within 0 to height, for the horizontal
    // an x within 0 to width, ends included, gives false with `matrix`
    // untouched. When the corners cannot be formed `matrix` becomes the
    // identity and the result is false; otherwise the result is that of
    // estimate_matrix_via_correponding_points.
    bool estimate_projective_matrix(const Geocoordinate<double>& vanishing_point, Direction direction,
                                    ProjectiveMatrix& matrix) const;

    // H with H (X, Y, 1) ~ (x, y, 1) for the four pairs of image points
    // (x, y) and rectified points (X, Y), from the 8 x 8 system
    //   row i:     X, Y, 1, 0, 0, 0, -x X, -x Y  = x
    //   row 4 + i: 0, 0, 0, X, Y, 1, -y X, -y Y  = y
    // with each product formed in single precision, solved by elimination
    // with partial pivoting (a pivot of exactly 0 fails). `matrix` receives
    // the transpose of H and `inverse_matrix` its inverse, found by the same
    // elimination. False, with `matrix` untouched, when the system or the
    // inversion fails, when either result is not finite, or when the lists
    // do not hold exactly four points each.
    bool estimate_matrix_via_correponding_points(const std::vector<Geocoordinate<float>>& image_points,
                                                 const std::vector<Geocoordinate<float>>& rectified_points,
                                                 ProjectiveMatrix& matrix) const;

    int width;  // of the image
    int height;
};

}  // namespace geometric

#endif

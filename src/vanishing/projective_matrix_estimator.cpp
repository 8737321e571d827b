// The homography of four point pairs by an 8 x 8 linear system.
#include "vanishing/projective_matrix_estimator.h"

#include <cmath>
#include <utility>

#include "vanishing/corner_calculator_projective.h"

namespace geometric {

namespace {

constexpr int kPairs = 4;
constexpr int kUnknowns = 2 * kPairs;

// Solves a x = b for K right-hand sides in place (x replaces b) by Gaussian
// elimination with partial pivoting: in each column the pivot is the first
// entry of largest magnitude at or below the diagonal, and a pivot of
// exactly 0 means the matrix is singular.
template <int N, int K>
bool solve_in_place(double (&a)[N][N], double (&b)[N][K]) {
    for (int k = 0; k < N; ++k) {
        int pivot = k;
        for (int i = k + 1; i < N; ++i)
            if (std::fabs(a[i][k]) > std::fabs(a[pivot][k])) pivot = i;
        if (a[pivot][k] == 0.0) return false;
        if (pivot != k) {
            std::swap(a[pivot], a[k]);
            std::swap(b[pivot], b[k]);
        }
        for (int i = k + 1; i < N; ++i) {
            const double factor = a[i][k] / a[k][k];
            for (int j = k + 1; j < N; ++j) a[i][j] -= factor * a[k][j];
            for (int j = 0; j < K; ++j) b[i][j] -= factor * b[k][j];
        }
    }
    for (int k = N - 1; k >= 0; --k)
        for (int c = 0; c < K; ++c) {
            double x = b[k][c];
            for (int j = k + 1; j < N; ++j) x -= a[k][j] * b[j][c];
            b[k][c] = x / a[k][k];
        }
    return true;
}

bool all_finite(const double (&m)[3][3]) {
    for (const auto& row : m)
        for (double v : row)
            if (!std::isfinite(v)) return false;
    return true;
}

}  // namespace

bool ProjectiveMatrixEstimator::estimate_projective_matrix(const Geocoordinate<double>& vanishing_point,
                                                           Direction direction, ProjectiveMatrix& matrix) const {
    // 1. A point across the image on the direction's own axis.
    if (direction == VERTICAL_DIRECTION) {
        if (vanishing_point.y >= 0.0 && vanishing_point.y <= static_cast<double>(height)) return false;
    } else if (vanishing_point.x >= 0.0 && vanishing_point.x <= static_cast<double>(width)) {
        return false;
    }
    // 2. The image rectangle and the virtual corners of the point.
    std::vector<Geocoordinate<float>> image_points, rectified_points;
    const CornerCalculatorProjective calculator(width, height);
    if (!calculator.estimate_cp_pairs(vanishing_point, direction, image_points, rectified_points)) {
        // 3. No corners.
        matrix.set_unit_matrix();
        return false;
    }
    // 4.
    return estimate_matrix_via_correponding_points(image_points, rectified_points, matrix);
}

bool ProjectiveMatrixEstimator::estimate_matrix_via_correponding_points(
    const std::vector<Geocoordinate<float>>& image_points, const std::vector<Geocoordinate<float>>& rectified_points,
    ProjectiveMatrix& matrix) const {
    // Eight unknowns need four pairs exactly; other counts have no solution.
    if (image_points.size() != kPairs || rectified_points.size() != kPairs) return false;

    // 1-2. The system, products in single precision.
    double a[kUnknowns][kUnknowns];
    double h[kUnknowns][1];
    for (int i = 0; i < kPairs; ++i) {
        const float x = image_points[i].x, y = image_points[i].y;
        const float X = rectified_points[i].x, Y = rectified_points[i].y;
        const double upper[kUnknowns] = {X, Y, 1.0, 0.0, 0.0, 0.0, -x * X, -x * Y};
        const double lower[kUnknowns] = {0.0, 0.0, 0.0, X, Y, 1.0, -y * X, -y * Y};
        for (int j = 0; j < kUnknowns; ++j) {
            a[i][j] = upper[j];
            a[kPairs + i][j] = lower[j];
        }
        h[i][0] = x;
        h[kPairs + i][0] = y;
    }
    // 3.
    if (!solve_in_place(a, h)) return false;

    // 4. The transpose of the usual homography, and 5. its inverse.
    double m[3][3] = {{h[0][0], h[3][0], h[6][0]}, {h[1][0], h[4][0], h[7][0]}, {h[2][0], h[5][0], 1.0}};
    double inverse[3][3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
    double lu[3][3];
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) lu[i][j] = m[i][j];
    if (!solve_in_place(lu, inverse)) return false;
    // Overflow in either result would carry not-a-number into every angle.
    if (!all_finite(m) || !all_finite(inverse)) return false;

    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            matrix.matrix[3 * i + j] = m[i][j];
            matrix.inverse_matrix[3 * i + j] = inverse[i][j];
        }
    return true;
}

}  // namespace geometric

// The rectifying homography: four pairs mapped back and against the warp's
// own closed form, the refusals, and lines through a vanishing point that
// come out parallel to the axis.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "correction/projective_correction.h"
#include "registration/corner_lines.h"
#include "vanishing/projective_matrix.h"
#include "vanishing/projective_matrix_estimator.h"

using namespace geometric;
using Points = std::vector<Geocoordinate<float>>;
using Point = Geocoordinate<double>;

namespace {

// Distance of a rectified angle from 0 (horizontal) or from 90 (vertical).
double axis_error(double angle, Direction direction) {
    return direction == VERTICAL_DIRECTION ? std::fabs(angle - 90.0) : std::fmin(angle, 180.0 - angle);
}

Point widen(const Geocoordinate<float>& p) { return Point(p.x, p.y); }

ProjectiveMatrix sentinel_matrix() {
    ProjectiveMatrix m;
    for (int i = 0; i < 9; ++i) m.matrix[i] = m.inverse_matrix[i] = 7.0 + i;
    return m;
}

bool equal_matrices(const ProjectiveMatrix& a, const ProjectiveMatrix& b) {
    for (int i = 0; i < 9; ++i)
        if (a.matrix[i] != b.matrix[i] || a.inverse_matrix[i] != b.inverse_matrix[i]) return false;
    return true;
}

}  // namespace

TEST(ProjectiveMatrix, FourPairsMapBackAndAgreeWithTheWarpClosedForm) {
    struct Case {
        const char* name;
        float width, height;
        Points quad;  // top-left, top-right, bottom-right, bottom-left
    };
    const Case cases[] = {
        {"perspective", 800, 1100, {{112.5f, 80}, {690, 130}, {760.25f, 1050}, {40, 990}}},
        {"parallelogram", 640, 480, {{50, 40}, {600, 60}, {650, 460}, {100, 440}}},
        {"far side shrunk", 1000, 700, {{300, 20}, {700, 20}, {990, 690}, {10, 690}}},
    };
    const ProjectiveMatrixEstimator estimator(1, 1);
    for (const Case& c : cases) {
        const Points rectangle{{0, 0}, {c.width, 0}, {c.width, c.height}, {0, c.height}};
        ProjectiveMatrix m;
        ASSERT_TRUE(estimator.estimate_matrix_via_correponding_points(c.quad, rectangle, m)) << c.name;

        // The pairs map onto each other both ways, within float precision.
        for (int i = 0; i < 4; ++i) {
            const Point image = m.map_rectified_to_image(widen(rectangle[i]));
            const Point rectified = m.map_image_to_rectified(widen(c.quad[i]));
            EXPECT_NEAR(image.x, c.quad[i].x, 1e-3) << c.name << " corner " << i;
            EXPECT_NEAR(image.y, c.quad[i].y, 1e-3) << c.name << " corner " << i;
            EXPECT_NEAR(rectified.x, rectangle[i].x, 1e-3) << c.name << " corner " << i;
            EXPECT_NEAR(rectified.y, rectangle[i].y, 1e-3) << c.name << " corner " << i;
        }
        // Inside, the same mapping as the output warp's closed form.
        const ProjectiveWarpCoefficients k = ProjectiveCorrection::calculate_warp_coefficients(c.quad);
        for (double u = 0.125; u < 1.0; u += 0.25)
            for (double v = 0.125; v < 1.0; v += 0.25) {
                const double w = 1.0 + k.g * u + k.h * v;
                const Point image = m.map_rectified_to_image(Point(u * c.width, v * c.height));
                EXPECT_NEAR(image.x, (k.x0 + k.a * u + k.b * v) / w, 1e-3) << c.name << " at " << u << ", " << v;
                EXPECT_NEAR(image.y, (k.y0 + k.d * u + k.e * v) / w, 1e-3) << c.name << " at " << u << ", " << v;
            }
        // The quadrilateral's sides become the rectangle's.
        for (int side = 0; side < 4; ++side) {
            const GeolineBase line = corner_line_through(c.quad[side], c.quad[(side + 1) % 4]);
            const Direction axis = side % 2 == 0 ? HORIZONTAL_DIRECTION : VERTICAL_DIRECTION;
            EXPECT_LT(axis_error(calculate_rectified_line_angle(m, line), axis), 1e-4) << c.name << " side " << side;
        }
    }
}

TEST(ProjectiveMatrix, DegenerateInputIsRefusedAndLeavesTheMatrixAlone) {
    const Points quad{{10, 20}, {300, 40}, {320, 260}, {0, 240}};
    const Points rectangle{{0, 0}, {4, 0}, {4, 3}, {0, 3}};
    struct Case {
        const char* name;
        Points image, rectified;
    };
    const Case cases[] = {
        {"three collinear rectified points", quad, {{0, 0}, {1, 0}, {2, 0}, {0, 1}}},
        {"three collinear image points", {{0, 0}, {10, 0}, {20, 0}, {0, 10}}, rectangle},
        {"all four image points equal", {{5, 5}, {5, 5}, {5, 5}, {5, 5}}, rectangle},
        {"products beyond single precision", {{1e20f, 2e20f}, {3e20f, 1e19f}, {3.5e20f, 3e20f}, {0, 2.5e20f}},
         {{0, 0}, {4e20f, 0}, {4e20f, 3e20f}, {0, 3e20f}}},
        {"three pairs", {quad[0], quad[1], quad[2]}, {rectangle[0], rectangle[1], rectangle[2]}},
        {"five pairs", {quad[0], quad[1], quad[2], quad[3], quad[0]},
         {rectangle[0], rectangle[1], rectangle[2], rectangle[3], rectangle[0]}},
    };
    const ProjectiveMatrixEstimator estimator(1, 1);
    for (const Case& c : cases) {
        ProjectiveMatrix m = sentinel_matrix();
        EXPECT_FALSE(estimator.estimate_matrix_via_correponding_points(c.image, c.rectified, m)) << c.name;
        EXPECT_TRUE(equal_matrices(m, sentinel_matrix())) << c.name;
    }
}

TEST(ProjectiveMatrix, VanishingPointsAcrossTheImageAreRefusedOthersStraightenTheirLines) {
    constexpr int kWidth = 640, kHeight = 480;
    struct Case {
        Direction direction;
        Point point;
        bool accepted;
    };
    const Case cases[] = {
        {VERTICAL_DIRECTION, {320, kHeight}, false},      {VERTICAL_DIRECTION, {-900, 0}, false},
        {VERTICAL_DIRECTION, {320, kHeight + 1}, true},   {VERTICAL_DIRECTION, {250, -3000}, true},
        {VERTICAL_DIRECTION, {5000, 9000}, true},         {HORIZONTAL_DIRECTION, {kWidth, 100}, false},
        {HORIZONTAL_DIRECTION, {0, -50}, false},          {HORIZONTAL_DIRECTION, {-4000, 200}, true},
        {HORIZONTAL_DIRECTION, {kWidth + 1, -700}, true},
    };
    const ProjectiveMatrixEstimator estimator(kWidth, kHeight);
    for (const Case& c : cases) {
        ProjectiveMatrix m = sentinel_matrix();
        ASSERT_EQ(estimator.estimate_projective_matrix(c.point, c.direction, m), c.accepted)
            << c.direction << ": " << c.point.x << ", " << c.point.y;
        if (!c.accepted) {
            EXPECT_TRUE(equal_matrices(m, sentinel_matrix()));
            continue;
        }
        // Lines of the family, through the point and across the image.
        for (int t = 0; t <= 4; ++t) {
            const Point through = c.direction == VERTICAL_DIRECTION ? Point(160.0 * t, 240.0) : Point(320.0, 120.0 * t);
            EXPECT_LT(axis_error(calculate_rectified_line_angle(m, corner_line_through(c.point, through)), c.direction),
                      1e-3)
                << c.point.x << ", " << c.point.y << " line " << t;
        }
    }

    // Corners that cannot be formed (a coordinate that is not a number) give the identity.
    ProjectiveMatrix m = sentinel_matrix();
    EXPECT_FALSE(estimator.estimate_projective_matrix(Point(320, NAN), VERTICAL_DIRECTION, m));
    EXPECT_TRUE(equal_matrices(m, ProjectiveMatrix()));
    // Under the identity a line keeps its angle; b = 0 is vertical.
    std::vector<double> angles{-1.0};
    calculate_rectified_line_angles(m, {GeolineBase(0.0, -2.0, 5.0), GeolineBase(3.0, 0.0, 1.0), GeolineBase(1.0, -1.0, 0.0),
                                        GeolineBase(-1.0, -1.0, 0.0)},
                                    angles);
    ASSERT_EQ(angles.size(), 5u);
    EXPECT_EQ(angles[1], 0.0);
    EXPECT_EQ(angles[2], 90.0);
    EXPECT_NEAR(angles[3], 45.0, 1e-12);
    EXPECT_NEAR(angles[4], 135.0, 1e-12);
}

// The rectifying homography: four pairs mapped back and against the warp's
// own closed form, the refusals, and lines through a vanishing point that
// come out parallel to the axis.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "correction/projective_correction.h"
#include "vanishing/corner_lines.h"
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

ProjectiveMatrix sentinel_matrix() {
    ProjectiveMatrix m;
    for (int i = 0; i < 9; ++i) m.matrix[i] = m.inverse_matrix[i] = 7.0 + i;
    return m;
}

bool same_bytes(const ProjectiveMatrix& a, const ProjectiveMatrix& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

}  // namespace

TEST(ProjectiveMatrix, FourPairsMapBackAndAgreeWithTheWarpClosedForm) {
    const Points quads[] = {{{112.5f, 80}, {690, 130}, {760.25f, 1050}, {40, 990}},  // in perspective
                            {{50, 40}, {600, 60}, {650, 460}, {100, 440}}};          // a parallelogram
    const float width = 800, height = 1100;
    const Points rectangle{{0, 0}, {width, 0}, {width, height}, {0, height}};
    for (const Points& quad : quads) {
        ProjectiveMatrix m;
        ASSERT_TRUE(ProjectiveMatrixEstimator(1, 1).estimate_matrix_via_correponding_points(quad, rectangle, m));
        for (int i = 0; i < 4; ++i) {
            // The pairs map onto each other both ways, within float precision, ...
            const Point image = m.map_rectified_to_image(Point(rectangle[i].x, rectangle[i].y));
            const Point rectified = m.map_image_to_rectified(Point(quad[i].x, quad[i].y));
            EXPECT_NEAR(image.x, quad[i].x, 1e-3);
            EXPECT_NEAR(image.y, quad[i].y, 1e-3);
            EXPECT_NEAR(rectified.x, rectangle[i].x, 1e-3);
            EXPECT_NEAR(rectified.y, rectangle[i].y, 1e-3);
            // ... and the quadrilateral's sides become the rectangle's.
            const GeolineBase side = corner_line_through(quad[i], quad[(i + 1) % 4]);
            EXPECT_LT(axis_error(calculate_rectified_line_angle(m, side), Direction(i % 2)), 1e-4) << i;
        }
        // Inside, the same mapping as the output warp's closed form.
        const ProjectiveWarpCoefficients k = ProjectiveCorrection::calculate_warp_coefficients(quad);
        for (double u = 0.125; u < 1.0; u += 0.25)
            for (double v = 0.125; v < 1.0; v += 0.25) {
                const double w = 1.0 + k.g * u + k.h * v;
                const Point image = m.map_rectified_to_image(Point(u * width, v * height));
                EXPECT_NEAR(image.x, (k.x0 + k.a * u + k.b * v) / w, 1e-3) << u << ", " << v;
                EXPECT_NEAR(image.y, (k.y0 + k.d * u + k.e * v) / w, 1e-3) << u << ", " << v;
            }
    }
}

TEST(ProjectiveMatrix, DegenerateInputIsRefusedAndLeavesTheMatrixAlone) {
    const Points quad{{10, 20}, {300, 40}, {320, 260}, {0, 240}};
    const Points rectangle{{0, 0}, {4, 0}, {4, 3}, {0, 3}};
    const Points huge{{1e20f, 2e20f}, {3e20f, 1e19f}, {3.5e20f, 3e20f}, {0, 2.5e20f}};
    const std::pair<Points, Points> cases[] = {
        {quad, {{0, 0}, {1, 0}, {2, 0}, {0, 1}}},       // three collinear rectified points: no solution
        {{{0, 0}, {10, 0}, {20, 0}, {0, 10}}, rectangle},  // three collinear image points: no inverse
        {huge, huge},                                      // products beyond single precision
        {{quad[0], quad[1], quad[2]}, {rectangle[0], rectangle[1], rectangle[2]}},  // three pairs
    };
    for (const auto& c : cases) {
        ProjectiveMatrix m = sentinel_matrix();
        EXPECT_FALSE(ProjectiveMatrixEstimator(1, 1).estimate_matrix_via_correponding_points(c.first, c.second, m));
        EXPECT_TRUE(same_bytes(m, sentinel_matrix()));
    }
}

TEST(ProjectiveMatrix, VanishingPointsAcrossTheImageAreRefusedOthersStraightenTheirLines) {
    struct Case {
        Direction direction;
        Point point;
        bool accepted;
    };
    const Case cases[] = {
        {VERTICAL_DIRECTION, {320, 480}, false},  {VERTICAL_DIRECTION, {-900, 0}, false},
        {VERTICAL_DIRECTION, {320, 481}, true},   {VERTICAL_DIRECTION, {250, -3000}, true},
        {HORIZONTAL_DIRECTION, {640, 100}, false}, {HORIZONTAL_DIRECTION, {641, -700}, true},
    };
    const ProjectiveMatrixEstimator estimator(640, 480);
    for (const Case& c : cases) {
        ProjectiveMatrix m = sentinel_matrix();
        ASSERT_EQ(estimator.estimate_projective_matrix(c.point, c.direction, m), c.accepted) << c.point.x << ", " << c.point.y;
        EXPECT_EQ(same_bytes(m, sentinel_matrix()), !c.accepted);
        // Lines of the family, through the point and across the image.
        for (int t = 0; c.accepted && t <= 4; ++t) {
            const Point through = c.direction == VERTICAL_DIRECTION ? Point(160.0 * t, 240.0) : Point(320.0, 120.0 * t);
            const GeolineBase line = corner_line_through(c.point, through);
            EXPECT_LT(axis_error(calculate_rectified_line_angle(m, line), c.direction), 1e-3) << c.point.x << " " << t;
        }
    }
    // Corners that cannot be formed (a coordinate that is not a number) give
    // the identity, under which a line keeps its angle and b = 0 is vertical.
    ProjectiveMatrix m = sentinel_matrix();
    EXPECT_FALSE(estimator.estimate_projective_matrix(Point(320, NAN), VERTICAL_DIRECTION, m));
    EXPECT_TRUE(same_bytes(m, ProjectiveMatrix()));
    std::vector<double> angles{-1.0};
    calculate_rectified_line_angles(m, {GeolineBase(3.0, 0.0, 1.0), GeolineBase(-1.0, -1.0, 0.0)}, angles);
    ASSERT_EQ(angles.size(), 3u);
    EXPECT_EQ(angles[1], 90.0);
    EXPECT_NEAR(angles[2], 135.0, 1e-9);
}

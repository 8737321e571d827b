// The vanishing point of generated line families: converging families give
// their point, parallel families a parallel answer, a point inside the image
// nothing, and a caller's exact point stands.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "edgelines/priority_selector.h"
#include "vanishing/corner_lines.h"
#include "vanishing/rectification_candidate.h"
#include "vanishing/vanishing_point_codes.h"
#include "vanishing/vpoint_ransac_solver.h"

using namespace geometric;
using Point = Geocoordinate<double>;
using Lines = std::vector<GeolineBase>;

namespace {

constexpr int kWidth = 1000, kHeight = 800;

// (s, q) with s along the family's axis and q across it.
Point at(Direction direction, double s, double q) { return direction ? Point(q, s) : Point(s, q); }

// `count` lines through `point`, meeting the image's near edge (x = 0 for a
// horizontal family, y = 0 for a vertical one) at q = 40 to 760 and the far
// edge where the line through `point` does.
Lines family(Direction direction, const Point& point, int count) {
    const double far = direction ? kHeight - 1 : kWidth - 1;
    const Point p = at(direction, point.x, point.y);  // the point as (s, q)
    Lines lines;
    for (int k = 0; k < count; ++k) {
        const double q = 40.0 + 720.0 * k / (count - 1);
        lines.push_back(corner_line_through(at(direction, 0, q), at(direction, far, q + (p.y - q) * far / p.x)));
    }
    return lines;
}

// Exactly parallel lines at `degrees` through (0, q), or vertical ones x = q.
Lines parallel(double degrees, int count) {
    Lines lines;
    for (int k = 0; k < count; ++k) {
        const float q = 40.0f + 720.0f * k / (count - 1);
        lines.push_back(degrees == 90 ? corner_vertical_line({q, 0}) : corner_line_at_angle({0, q}, degrees));
    }
    return lines;
}

struct Outcome {
    int code;
    Point point;
    std::vector<int> inliers;
};

// The simple form, or the priority form with equal weights and the text
// route's own order of pairs by where the lines cross the near edge.
Outcome solve(Direction direction, const Lines& lines, bool with_priority, Point point = Point(),
              float reference_angle = 0.0f, bool keep_last_line = false) {
    VpointRansacSolver solver(direction, kWidth, kHeight, RansacVanishingPointConstrains());
    Outcome o{0, point, {}};
    if (!with_priority) {
        o.code = solver.perform_ransac_vpoint_searching(lines, o.inliers, o.point);
        return o;
    }
    std::vector<double> weights(lines.size(), 1.0), positions;
    for (const GeolineBase& line : lines) positions.push_back(direction ? line.x_at(0.0) : line.y_at(0.0));
    std::vector<std::pair<int, int>> pairs;
    PrioritySelector().obtain_uniform_priority_array(weights, positions, pairs);
    o.code = solver.perform_ransac_vpoint_searching(lines, pairs, weights, o.inliers, o.point, reference_angle,
                                                    keep_last_line);
    return o;
}

}  // namespace

TEST(VpointRansacSolver, OutcomesOfTheGeneratedFamilies) {
    const Point none, vp(6000, 350), unchecked(NAN, NAN);
    const Lines exact = family(HORIZONTAL_DIRECTION, vp, 30);
    // One line of the family 2 pixels off at its far end: the fits move, the exact point does not.
    Lines one_off = exact;
    one_off[7] = corner_line_through(Point(0, exact[7].y_at(0)), Point(kWidth - 1, exact[7].y_at(kWidth - 1) + 2));
    Lines star;
    for (double degrees : {10, 170, 25, 155, 40}) star.push_back(corner_line_at_angle({500, 400}, degrees));
    struct Case {
        const char* name;
        Direction direction;
        Lines lines;
        bool with_priority;
        Point point;
        float reference_angle;
        int code;
        Point expected;
    };
    const Case cases[] = {
        {"two lines", HORIZONTAL_DIRECTION, {exact[0], exact[9]}, false, none, 0, VPOINT_FOUND, vp},
        // The first pair tried, the farthest apart, is the only one that agrees: its crossing.
        {"two of three meet", HORIZONTAL_DIRECTION, {exact[0], exact[9], corner_line_at_angle({0, 150}, 40)}, true, none, 0,
         VPOINT_FOUND, vp},
        {"two parallel lines", HORIZONTAL_DIRECTION, parallel(3, 2), true, none, 0, VPOINT_EXACTLY_PARALLEL, none},
        {"straight rows", HORIZONTAL_DIRECTION, parallel(0, 20), false, none, 0, VPOINT_TREAT_AS_PARALLEL, none},
        {"straight columns", VERTICAL_DIRECTION, parallel(90, 20), false, none, 0, VPOINT_EXACTLY_PARALLEL, none},
        {"columns, reference 90", VERTICAL_DIRECTION, parallel(90, 20), true, none, 90, VPOINT_TREAT_AS_PARALLEL, none},
        // `point` keeps the last candidate, some 10^10 pixels away along the lines.
        {"3 degrees, reference 3", HORIZONTAL_DIRECTION, parallel(3, 20), true, none, 3, VPOINT_TREAT_AS_PARALLEL, unchecked},
        // Against 0 degrees the lines are slanted, and a far point straightens them.
        {"3 degrees, reference 0", HORIZONTAL_DIRECTION, parallel(3, 20), true, none, 0, VPOINT_FOUND, unchecked},
        // Every candidate lies in the image and is refused; the last one stays in `point`.
        {"star inside the image", HORIZONTAL_DIRECTION, star, false, none, 0, VPOINT_NO_RESULT, {500, 400}},
        {"exact previous point", HORIZONTAL_DIRECTION, one_off, true, vp, 0, VPOINT_PREVIOUS_STANDS, vp},
    };
    for (const Case& c : cases) {
        const Outcome o = solve(c.direction, c.lines, c.with_priority, c.point, c.reference_angle);
        EXPECT_EQ(o.code, c.code) << c.name;
        if (c.lines.size() <= 3 && c.code != VPOINT_NO_RESULT) {
            EXPECT_EQ(o.inliers, (std::vector<int>{0, 1})) << c.name;
        }
        if (std::isnan(c.expected.x)) continue;
        EXPECT_NEAR(o.point.x, c.expected.x, 1e-6 * std::fabs(c.expected.x)) << c.name;
        EXPECT_NEAR(o.point.y, c.expected.y, 1e-6 * std::fabs(c.expected.x)) << c.name;
    }
    // Assignment copies what the solver reads, deliberately not the sample size and the spare limit.
    RansacVanishingPointConstrains source, target;
    source.distance_threshold = 0.5f;
    source.sample_size = 7;
    source.spare_limit = 9.0f;
    target = source;
    EXPECT_TRUE(target.distance_threshold == 0.5f && target.sample_size == 2 && target.spare_limit == 2.0f);
}

TEST(VpointRansacSolver, AForcedLastLineJoinsTheInliersAndIsJudgedAlone) {
    const Point vp(6000, 350);
    for (bool through_the_point : {true, false}) {
        Lines lines = family(HORIZONTAL_DIRECTION, vp, 30);
        lines.push_back(corner_line_through(through_the_point ? vp : Point(-600, 300), Point(0, 400)));
        const Outcome o = solve(HORIZONTAL_DIRECTION, lines, true, Point(), 0.0f, true);
        EXPECT_EQ(o.inliers.size(), 31u);  // once, even when it agrees
        EXPECT_EQ(o.inliers.back(), 30);
        // The family's lines fan out over more than a degree: only the forced line is measured.
        EXPECT_EQ(o.code, through_the_point ? VPOINT_FOUND : VPOINT_NO_RESULT);
    }
}

TEST(VpointRansacSolver, WithoutCandidatesTheLinesAsTheyAreDecide) {
    struct Case {
        Direction direction;
        double angle;
        float reference;
        int code;  // the mean error against the reference, at most 3.5 degrees: parallel
    };
    const Case cases[] = {
        {HORIZONTAL_DIRECTION, 177, 2, VPOINT_NO_RESULT},  // 180 - 177 + 2 = 5
        {HORIZONTAL_DIRECTION, 179, 1.5f, VPOINT_TREAT_AS_PARALLEL},  // 2.5
        {HORIZONTAL_DIRECTION, 3, 178, VPOINT_NO_RESULT},  // 3 + 180 - 178 = 5
        {HORIZONTAL_DIRECTION, 179, 178, VPOINT_TREAT_AS_PARALLEL},
        {VERTICAL_DIRECTION, 93, 90, VPOINT_TREAT_AS_PARALLEL},
    };
    for (const Case& c : cases) {
        Point point;
        const Lines lines{corner_line_at_angle({0, 100}, c.angle), corner_line_at_angle({0, 300}, c.angle)};
        EXPECT_EQ(choose_rectification_candidate(kWidth, kHeight, c.direction, {}, lines, point, kNoPreviousCandidate,
                                                 false, 3.5f, c.reference),
                  c.code)
            << c.angle << " against " << c.reference;
    }
}

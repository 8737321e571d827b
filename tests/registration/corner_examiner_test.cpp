// Convexity and angle examination of four corners, and the corners a
// registration keeps after its examinations.
#include <gtest/gtest.h>

#include <vector>

#include "common/basic_image.h"
#include "cornersearch/corner_examiner.h"
#include "registration/line_registration.h"
#include "registration/projective_registration.h"

using geometric::CornerExaminer;
using Corners = std::vector<geometric::Geocoordinate<float>>;

namespace {

// Rotates the corner list so that corner k becomes corner 0.
Corners rotated(const Corners& c, int k) {
    Corners r;
    for (int i = 0; i < 4; ++i) r.push_back(c[(i + k) % 4]);
    return r;
}

const Corners kSquare{{0, 0}, {100, 0}, {100, 100}, {0, 100}};
// Angles about 34.7 at corner 0, 108.4 at 1, 90 at 2, 126.9 at 3.
const Corners kSharpAtZero{{0, 0}, {300, 100}, {300, 200}, {150, 200}};

}  // namespace

TEST(CornerExaminer, ConvexityTable) {
    struct Case {
        const char* what;
        Corners corners;
        bool convex;
    };
    const Case cases[] = {
        {"square, clockwise on screen", kSquare, true},
        {"square, the other way round", {{0, 0}, {0, 100}, {100, 100}, {100, 0}}, true},
        {"three points", {{0, 0}, {100, 0}, {100, 100}}, false},
        {"five points", {{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 50}}, false},
        {"dent at corner 2", {{0, 0}, {100, 0}, {40, 40}, {0, 100}}, false},
        {"crossed sides", {{0, 0}, {100, 100}, {100, 0}, {0, 100}}, false},
        {"one straight corner is ignored", {{0, 0}, {50, 0}, {100, 0}, {50, 80}}, true},
        {"all four at one place", {{5, 5}, {5, 5}, {5, 5}, {5, 5}}, false},
    };
    for (const Case& c : cases) EXPECT_EQ(CornerExaminer::is_convex(c.corners), c.convex) << c.what;
}

TEST(CornerExaminer, ConstraintsNeedConvexityAndAngles) {
    EXPECT_TRUE(CornerExaminer::check_constrains(kSquare, 45.0));
    EXPECT_FALSE(CornerExaminer::check_constrains({{5, 5}, {5, 5}, {5, 5}, {5, 5}}, 45.0));  // angles pass, not convex
    EXPECT_FALSE(CornerExaminer::check_constrains(rotated(kSharpAtZero, 1), 45.0));        // convex, angle fails
    EXPECT_TRUE(CornerExaminer::is_convex(rotated(kSharpAtZero, 1)));
}

namespace {

// A registration whose edge search hands out fixed corners.
class FixedCorners : public geometric::ProjectiveRegistration {
public:
    using ProjectiveRegistration::ProjectiveRegistration;
    geometric::RegistrationOutputType run_registration() override { return geometric::REGISTRATION_NO_GEOMETRY; }
    bool perform_edge_corner_searching() override {
        corners = found;
        return answer;
    }
    Corners found;
    bool answer = true;
};

}  // namespace

// Corners whose output is out of proportion to the image, or an edge search
// that fails, leave no corners at all.
TEST(ProjectiveRegistration, ObtainCornersEmptiesTheCornersOnFailure) {
    common::BasicImage image(100, 100, common::GRAY);
    FixedCorners r(&image);
    for (int attempt = 0; attempt < 3; ++attempt) {
        const float side = attempt == 0 ? 300.0f : 100.0f;  // 300 of 100: out of proportion
        r.found = {{0, 0}, {side - 1, 0}, {side - 1, side - 1}, {0, side - 1}};
        r.answer = attempt != 1;
        r.vanishing_points.horizontal.has_vanishing_point = r.vanishing_points.vertical.has_vanishing_point = true;
        r.vanishing_points.horizontal.is_parallel = r.vanishing_points.vertical.is_parallel = true;
        EXPECT_EQ(r.obtain_corners(), attempt == 2) << attempt;
        EXPECT_EQ(r.corners.size(), attempt == 2 ? 4u : 0u) << attempt;
    }
}

// A search that finds nothing leaves the caller's corners as they were.
TEST(LineRegistration, AFailedSearchLeavesTheCornersAsTheyWere) {
    common::BasicImage dark(300, 400, common::GRAY);  // all zero: no contour at all
    geometric_test::LineRegistration registration(&dark);
    registration.corners = {{1, 2}, {3, 4}};
    EXPECT_EQ(registration.run_registration(), geometric::REGISTRATION_NO_GEOMETRY);
    ASSERT_EQ(registration.corners.size(), 2u);
    EXPECT_EQ(registration.corners[1].x, 3.0f);
}

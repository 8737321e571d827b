// The registration base: the corner examinations, the choice of corner
// calculator, and the border lines of the edge corner search.
#include <gtest/gtest.h>

#include <vector>

#include "common/basic_image.h"
#include "registration/corner_calculator_parallel.h"
#include "registration/corner_calculator_parallel_mixed_projective.h"
#include "registration/corner_calculator_projective.h"
#include "registration/projective_registration.h"

using namespace geometric;
using Corners = std::vector<Geocoordinate<float>>;

namespace {

class TestRegistration : public ProjectiveRegistration {
public:
    using ProjectiveRegistration::ProjectiveRegistration;
    using ProjectiveRegistration::examine_virtual_corners;
    RegistrationOutputType run_registration() override { return REGISTRATION_NO_GEOMETRY; }
};

// Hands out fixed corners as if the bounding lines had given them.
class FixedCornerRegistration : public TestRegistration {
public:
    using TestRegistration::TestRegistration;
    bool perform_edge_corner_searching() override {
        corners = found;
        return answer;
    }
    Corners found;
    bool answer = true;
};

struct Flags {
    bool hor_vp, hor_parallel, ver_vp, ver_parallel;
};

void set_flags(VanishingPointHorVerInfo& info, Flags f) {
    info.horizontal.has_vanishing_point = f.hor_vp;
    info.horizontal.is_parallel = f.hor_parallel;
    info.vertical.has_vanishing_point = f.ver_vp;
    info.vertical.is_parallel = f.ver_parallel;
}

Flags flags_of(const VanishingPointHorVerInfo& info) {
    return {info.horizontal.has_vanishing_point, info.horizontal.is_parallel, info.vertical.has_vanishing_point,
            info.vertical.is_parallel};
}

bool operator==(Flags a, Flags b) {
    return a.hor_vp == b.hor_vp && a.hor_parallel == b.hor_parallel && a.ver_vp == b.ver_vp &&
           a.ver_parallel == b.ver_parallel;
}

// An axis-parallel rectangle of corners whose output is width x height.
Corners rectangle(float width, float height) {
    return {{0, 0}, {width - 1, 0}, {width - 1, height - 1}, {0, height - 1}};
}

constexpr Flags kNone{false, false, false, false};
constexpr Flags kAll{true, true, true, true};
constexpr Flags kBothVp{true, false, true, false};
const Corners kSharpAtOne{{0, 0}, {200, 0}, {30, 40}, {0, 40}};

void expect_corners(const Corners& actual, const Corners& expected, float tolerance, const char* what) {
    ASSERT_EQ(actual.size(), expected.size()) << what;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(actual[i].x, expected[i].x, tolerance) << what << " corner " << i;
        EXPECT_NEAR(actual[i].y, expected[i].y, tolerance) << what << " corner " << i;
    }
}

}  // namespace

TEST(ProjectiveRegistration, EdgeCornersTable) {
    struct Case { const char* what; int image_width, image_height; Corners corners; Flags flags_in; bool expected; Flags flags_out; };
    const Case cases[] = {
        {"output 2.5 times the image width passes", 100, 100, rectangle(250, 100), kBothVp, true, kBothVp},
        {"one more column drops the vertical direction", 100, 100, rectangle(251, 100), kBothVp, true,
         {true, false, false, false}},
        {"image 3.76 times the output width drops the vertical direction", 376, 100, rectangle(100, 100), kAll, true,
         {true, true, false, false}},
        {"height out of proportion drops the horizontal direction", 100, 100, rectangle(100, 251), kAll, true,
         {false, false, true, true}},
        {"with only horizontal flags nothing is left", 100, 100, rectangle(100, 251), {true, true, false, false},
         false, kNone},
        {"both out of proportion", 100, 100, rectangle(300, 300), kAll, false, kNone},
        // Top 62 and bottom 310: their ratio is exactly 2 x 2.5 and passes.
        {"top and bottom ratio at twice the limit", 200, 300, {{124, 0}, {186, 0}, {310, 300}, {0, 300}}, kBothVp,
         true, kBothVp},
        {"top and bottom ratio past twice the limit", 200, 300, {{125, 0}, {185, 0}, {310, 300}, {0, 300}}, kBothVp,
         true, {true, false, false, false}},
        // Left 62 and right 310 high: drops the horizontal direction.
        {"left and right ratio past twice the limit", 300, 200, {{0, 125}, {300, 0}, {300, 310}, {0, 185}}, kBothVp,
         true, {false, false, true, false}},
        {"convex, 13 degrees at corner 1", 100, 100, kSharpAtOne, kBothVp, false, kBothVp},
    };
    for (const Case& c : cases) {
        common::BasicImage image(c.image_height, c.image_width, common::GRAY);
        FixedCornerRegistration r(&image);
        r.found = c.corners;
        set_flags(r.vanishing_points, c.flags_in);
        EXPECT_EQ(r.otain_edge_corners(), c.expected) << c.what;
        EXPECT_TRUE(flags_of(r.vanishing_points) == c.flags_out) << c.what;
    }
}

TEST(ProjectiveRegistration, ObtainCornersEmptiesTheCornersOnFailure) {
    common::BasicImage image(100, 100, common::GRAY);
    FixedCornerRegistration r(&image);
    r.found = rectangle(300, 300);
    set_flags(r.vanishing_points, kAll);
    EXPECT_FALSE(r.obtain_corners());
    EXPECT_TRUE(r.corners.empty());

    r.found = rectangle(100, 100);
    r.answer = false;
    set_flags(r.vanishing_points, kAll);
    EXPECT_FALSE(r.obtain_corners());
    EXPECT_TRUE(r.corners.empty());

    r.answer = true;
    EXPECT_TRUE(r.obtain_corners());
    EXPECT_EQ(r.corners.size(), 4u);
}

TEST(ProjectiveRegistration, VirtualCornerExaminationTable) {
    struct Case { const char* what; Corners corners; Flags flags_in; bool expected; int output; Flags flags_out; };
    const int kUnchanged = 99;
    const Case cases[] = {
        {"in proportion", rectangle(250, 100), kBothVp, true, 1, kBothVp},
        {"in proportion, one parallel direction", rectangle(100, 100), {false, true, false, false}, true, 1,
         {false, true, false, false}},
        {"convex, 13 degrees at corner 1", kSharpAtOne, kBothVp, false, -7, kBothVp},
        // One direction dropped, one left: the corners are made again from it;
        // the point left at (0, 0) lies inside the image, so the remake fails.
        {"width out of proportion, horizontal remains", rectangle(251, 100), kBothVp, false, kUnchanged,
         {true, false, false, false}},
        {"both out of proportion", rectangle(300, 300), kBothVp, false, -7, kNone},
        // A single horizontal flag and a dropped width: one flag, one count, rejected.
        {"count equals the flags though a direction remains", rectangle(251, 100), {true, false, false, false},
         false, -7, {true, false, false, false}},
    };
    common::BasicImage image(100, 100, common::GRAY);
    for (const Case& c : cases) {
        TestRegistration r(&image);
        r.registration_output = REGISTRATION_ONE_VANISHING_POINT;
        r.corners = c.corners;
        set_flags(r.vanishing_points, c.flags_in);
        EXPECT_EQ(r.examine_virtual_corners(), c.expected) << c.what;
        const int expected_output = c.output == kUnchanged ? REGISTRATION_ONE_VANISHING_POINT : c.output;
        EXPECT_EQ(r.registration_output, expected_output) << c.what;
        EXPECT_TRUE(flags_of(r.vanishing_points) == c.flags_out) << c.what;
    }
}

TEST(ProjectiveRegistration, EdgeCornersFromFourFoundLines) {
    // A frame slightly smaller than the 120 x 80 image, its top tilted.
    common::BasicImage image(80, 120, common::GRAY);
    TestRegistration r(&image);
    const GeolineBase sides[4] = {GeolineBase(1, 0, -4), GeolineBase(0.05, -1, 3), GeolineBase(1, 0, -115),
                                  GeolineBase(0, -1, 76)};
    const BoundingLinePosition positions[4] = {LEFT_BOUNDARY, TOP_BOUNDARY, RIGHT_BOUNDARY, BOTTOM_BOUNDARY};
    for (int i = 0; i < 4; ++i) {
        BoundingLine line;
        line.position = positions[i];
        line.line = sides[i];
        r.bounding_lines.push_back(line);
    }
    BoundingLineProperty& p = r.bounding_line_property;
    p.left_index = 0, p.top_index = 1, p.right_index = 2, p.bottom_index = 3;
    set_flags(r.vanishing_points, kBothVp);
    ASSERT_TRUE(r.obtain_corners());
    expect_corners(r.corners, {{4, 3.2f}, {115, 8.75f}, {115, 76}, {4, 76}}, 1e-4f, "four lines");
    EXPECT_EQ(r.output_width, 112);  // (111.14 + 111) / 2 + 1.5, truncated
    EXPECT_EQ(r.bounding_lines.size(), 4u);
}

TEST(ProjectiveRegistration, VirtualCornersRemadeFromTheDirectionThatRemains) {
    // 100 wide, 400 high. The vertical point sits just above the image, so the
    // left and right sides fan out to a bottom far wider than the image while
    // keeping angles above 23 degrees; the horizontal point is far to the left.
    common::BasicImage image(400, 100, common::GRAY);
    TestRegistration r(&image);
    set_flags(r.vanishing_points, kBothVp);
    r.vanishing_points.horizontal_point = Geocoordinate<double>(-1e6, 200.0);
    r.vanishing_points.vertical_point = Geocoordinate<double>(49.5, -25.0);
    r.registration_output = REGISTRATION_TWO_VANISHING_POINTS;
    r.para.use_edge_corners = false;

    ASSERT_TRUE(r.obtain_corners());
    EXPECT_TRUE(flags_of(r.vanishing_points) == (Flags{true, false, false, false}));
    // The second transform is not examined again, and does not set the output.
    EXPECT_EQ(r.registration_output, REGISTRATION_TWO_VANISHING_POINTS);
    Corners expected;
    CornerCalculatorProjective(100, 400).estimate_horizontal_virtual_corners(r.vanishing_points.horizontal_point,
                                                                             expected);
    expect_corners(r.corners, expected, 0.0f, "horizontal point only");
    EXPECT_EQ(r.corners[0].x, 0.0f);
    EXPECT_EQ(r.corners[1].x, 99.0f);

    // The size measured before the remake belongs to the fanned-out corners.
    EXPECT_GT(ProjectiveRegistration::calculate_size_ratio(r.output_width, 100), r.para.maximum_size_ratio);
}

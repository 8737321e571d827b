// The page-edge Hough transform on point sets whose sides are known, and its
// small rules.
#include <gtest/gtest.h>

#include <cmath>

#include "common/basic_image.h"
#include "edgelines/hough_transform.h"
#include "support/images.h"

namespace geometric {
namespace {

struct Points {
    std::vector<int> xs, ys;
    // Every pixel of the segment from (x0, y0) for the share [from, to) of its length.
    void side(double x0, double y0, double x1, double y1, double from = 0.0, double to = 1.0) {
        const int steps = static_cast<int>(std::hypot(x1 - x0, y1 - y0));
        for (int k = static_cast<int>(from * steps); k < static_cast<int>(to * steps); ++k) {
            xs.push_back(static_cast<int>(std::lround(x0 + (x1 - x0) * k / steps)));
            ys.push_back(static_cast<int>(std::lround(y0 + (y1 - y0) * k / steps)));
        }
    }
};

// A 300 x 180 rectangle turned by 6 degrees about (200, 150), in a 400 x 300 image.
const double kTurn = 6.0 * 3.14159265358979 / 180.0;
Geocoordinate<double> corner(double u, double v) {
    return {200 + u * std::cos(kTurn) - v * std::sin(kTurn), 150 + u * std::sin(kTurn) + v * std::cos(kTurn)};
}
const Geocoordinate<double> kCorners[4] = {corner(-150, -90), corner(150, -90), corner(150, 90), corner(-150, 90)};

// The sides top, right, bottom, left; the bottom kept only in the pieces given.
Points rectangle(const std::vector<std::pair<double, double>>& bottom_pieces) {
    Points p;
    for (int k = 0; k < 4; ++k) {
        const Geocoordinate<double>&a = kCorners[k], &b = kCorners[(k + 1) % 4];
        if (k != 2) p.side(a.x, a.y, b.x, b.y);
        for (const auto& piece : bottom_pieces)
            if (k == 2) p.side(a.x, a.y, b.x, b.y, piece.first, piece.second);
    }
    return p;
}

TEST(HoughTransform, TurnedRectangleAmongNoiseGivesItsFourSides) {
    Points p = rectangle({{0.0, 1.0}});
    support::Lcg random(7u);
    for (int k = 0; k < 300; ++k) {
        p.xs.push_back(static_cast<int>(random.next() % 400));
        p.ys.push_back(static_cast<int>(random.next() % 300));
    }
    HoughTransform transform(400, 300);
    std::vector<BoundingLine> lines, partial;
    bool horizontal = false;
    ASSERT_TRUE(transform.get_bounding_lines(p.xs, p.ys, lines, partial, horizontal));
    EXPECT_TRUE(horizontal);  // the long sides are the strongest
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_TRUE(partial.empty());
    // Each side passes within a pixel and a half of its two true corners (the
    // fit is on the side's run of points, not on the gaps beside it).
    const int ends[4][2] = {{3, 0}, {0, 1}, {1, 2}, {2, 3}};  // left, top, right, bottom
    for (const BoundingLine& line : lines) {
        for (int k : ends[line.position]) {
            EXPECT_LT(line.line.point_distance(kCorners[k]), 1.5) << "side " << line.position << " corner " << k;
        }
        EXPECT_TRUE(line.has_dominant_segment);
    }
    // Runs repeat bit for bit.
    std::vector<BoundingLine> again, again_partial;
    transform.get_bounding_lines(p.xs, p.ys, again, again_partial, horizontal);
    for (std::size_t k = 0; k < 4; ++k) {
        const BoundingLine &a = again[k], &b = lines[k];
        EXPECT_TRUE(a.line.a == b.line.a && a.line.b == b.line.b && a.line.c == b.line.c && a.x1 == b.x1 &&
                    a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2 && a.segment_length == b.segment_length);
    }
}

// The longest connected run of the broken side must reach a fifth of the top's length.
TEST(HoughTransform, BrokenSideStandsOnlyWhenItsLongestRunIsLongEnough) {
    struct Case {
        std::vector<std::pair<double, double>> pieces;
        bool found;
        std::size_t lines;
    };
    const Case cases[] = {{{{0.3, 0.75}}, true, 4},                                     // one run of 45%
                          {{{0.25, 0.35}, {0.45, 0.55}, {0.65, 0.75}}, false, 1}};  // three of 10%
    for (const Case& c : cases) {
        const Points p = rectangle(c.pieces);
        HoughTransform transform(400, 300);
        std::vector<BoundingLine> lines, partial;
        bool horizontal = false;
        EXPECT_EQ(transform.get_bounding_lines(p.xs, p.ys, lines, partial, horizontal), c.found);
        EXPECT_EQ(lines.size(), c.lines);
    }
}

TEST(HoughTransform, NinePointsTouchNothingAndTenSearch) {
    Points p;
    p.side(10, 10, 19, 10);
    HoughTransform transform(40, 30);
    std::vector<BoundingLine> lines(1), partial(2);
    bool horizontal = false;
    EXPECT_FALSE(transform.get_bounding_lines(p.xs, p.ys, lines, partial, horizontal));
    EXPECT_EQ(lines.size(), 1u);
    EXPECT_EQ(partial.size(), 2u);
    EXPECT_FALSE(horizontal);
    p.side(20, 10, 21, 10);
    transform.get_bounding_lines(p.xs, p.ys, lines, partial, horizontal);
    EXPECT_TRUE(horizontal);  // set by the first line, before any check
}

TEST(HoughTransform, AngleRangesWrapAt180) {
    struct Case {
        int centre, half;
        std::vector<int> starts, ends;
    };
    const Case cases[] = {{90, 37, {53}, {127}}, {170, 17, {153, 0}, {179, 7}}, {10, 17, {0, 173}, {27, 179}},
                          {17, 17, {0}, {34}},   {162, 17, {145}, {179}}, {163, 17, {146, 0}, {179, 0}}};
    for (const Case& c : cases) {
        std::vector<int> starts, ends;
        HoughTransform::obtain_angle_search_range(c.centre, c.half, starts, ends);
        EXPECT_EQ(starts, c.starts) << c.centre;
        EXPECT_EQ(ends, c.ends) << c.centre;
    }
}

// Each row reads the row above already smoothed and the row below raw.
TEST(HoughTransform, SmoothingRecursesDownTheDistances) {
    HoughTransform transform(40, 30);
    transform.angle_cells = 1;
    transform.distance_cells = 4;
    std::vector<unsigned int> accumulator = {0, 9, 0, 9};
    transform.smooth_accumulator_map(accumulator);
    EXPECT_EQ(accumulator, (std::vector<unsigned int>{0, 3, 4, 9}));
    transform.distance_cells = 2;
    accumulator = {5, 1};
    transform.smooth_accumulator_map(accumulator);
    EXPECT_EQ(accumulator, (std::vector<unsigned int>{5, 1}));
}

TEST(HoughTransform, PartnerMustLieAQuarterAcrossAndBeScoredByVotesAndDistance) {
    const HoughLineEnds first{{0, 100}, {400, 100}};
    double distance = 0.0;
    bool side = false;
    // 74 pixels away is too near for a quarter of 300; 75 is far enough.
    EXPECT_FALSE(HoughTransform::is_parallel_line_qualified(first, {{0, 174}, {400, 174}}, distance, side, 17, 75));
    EXPECT_TRUE(HoughTransform::is_parallel_line_qualified(first, {{0, 175}, {400, 175}}, distance, side, 17, 75));
    EXPECT_DOUBLE_EQ(distance, 75.0);
    // Upright lines take the form x = constant.
    EXPECT_TRUE(HoughTransform::is_parallel_line_qualified({{20, 0}, {20, 300}}, {{100, 0}, {100, 300}}, distance,
                                                           side, 37, 75));
    EXPECT_DOUBLE_EQ(distance, 80.0);
    // Turned by 18 degrees: beyond the horizontal window of 17.
    EXPECT_FALSE(HoughTransform::is_parallel_line_qualified(first, {{0, 300}, {400, 170}}, distance, side, 17, 75));

    const HoughTransform transform(400, 300);
    std::vector<double> votes = {10, 30}, distances = {100, 50};
    EXPECT_EQ(transform.obtain_best_parallel_line_index(votes, distances, {4, 7}), 7);  // votes weigh 0.7
    votes = {10, 11}, distances = {100, 50};
    EXPECT_EQ(transform.obtain_best_parallel_line_index(votes, distances, {4, 7}), 7);  // both normalised alike
    votes = {5}, distances = {9};
    EXPECT_EQ(transform.obtain_best_parallel_line_index(votes, distances, {3}), 3);
    votes = {10, 10, 10}, distances = {100, 100, 100};
    EXPECT_EQ(transform.obtain_best_parallel_line_index(votes, distances, {1, 2, 3}), 1);  // the first of equals
}

// A cell's line runs between two picture edges, and is checked on the
// points near it: none near gives no run and fails (the box nothing filled
// is no segment); an exactly vertical side comes back as the vertical line
// itself, also on the left border, where the fit of x on y that wins the tie
// is exactly level.
TEST(HoughTransform, CandidateIsCheckedOnThePointsNearIt) {
    struct Case {
        int x0, y0, x1, y1;  // the only side
        int angle;           // of the cell checked
        double offset;       // of the cell from the image's centre
        HoughLineEnds ends;
        bool found;
    };
    const Case cases[] = {{50, 100, 350, 100, 90, -50, {{0, 100}, {400, 99}}, true},
                          {50, 100, 350, 100, 90, 100, {{0, 250}, {400, 250}}, false},
                          {100, 50, 100, 250, 0, -100, {{100, 0}, {100, 300}}, true},
                          {0, 50, 0, 250, 0, -200, {{0, 0}, {0, 300}}, true}};
    for (const Case& c : cases) {
        Points p;
        p.side(c.x0, c.y0, c.x1, c.y1);
        HoughTransform transform(400, 300);
        const int d = static_cast<int>(c.offset + transform.maximum_distance + 0.5);
        HoughLineEnds line;
        const bool horizontal = transform.estimate_double_end_line(d, c.angle, line);
        EXPECT_EQ(line, c.ends);
        EXPECT_EQ(horizontal, c.angle == 90);
        BoundingLine result;
        EXPECT_EQ(transform.evalute_selected_hough_line(p.xs, p.ys, {}, line, d, c.angle, horizontal, result, nullptr),
                  c.found);
        if (c.found) {
            EXPECT_LT(result.line.point_distance(Geocoordinate<int>{(c.x0 + c.x1) / 2, (c.y0 + c.y1) / 2}), 0.5);
        }
    }
}

// Voting the pixels of an image that are 1 is voting their points.
TEST(HoughTransform, ImageVotingMatchesPointVoting) {
    common::BasicImage image(300, 400, common::BINARY);
    Points p;
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 400; ++x)
            if ((7 * x + 13 * y) % 29 == 0) {
                image.set_pixel(x, y, 1);
                p.xs.push_back(x);
                p.ys.push_back(y);
            }
    std::vector<unsigned int> from_image, from_points;
    HoughTransform(&image).set_up_accumulator_map(from_image);
    HoughTransform(400, 300).set_up_accumulator_map(from_points, p.xs, p.ys);
    EXPECT_EQ(from_image, from_points);
}

}  // namespace
}  // namespace geometric

// The a-contrario score: log-gamma and the binomial tail against direct
// computation, the closed forms, the rectangle sweep against a plain
// point-in-rectangle count, and the validation steps.
#include "linesegments/nfa_score.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "linesegments/angle_tools.h"
#include "linesegments/nfa_enhancer.h"
#include "linesegments/rectangle_iterator.h"

using geometric::ImageObject;
using geometric::LineSegmentRect;
namespace nfa = geometric::nfa_score;

namespace {

// -log10 of the binomial tail summed term by term in long double.
double direct_score(int n, int k, double p, double log_nt) {
    long double tail = 0.0L;
    for (int i = k; i <= n; ++i)
        tail += std::exp(std::lgamma(n + 1.0L) - std::lgamma(i + 1.0L) - std::lgamma(n - i + 1.0L) +
                         i * std::log(static_cast<long double>(p)) + (n - i) * std::log1p(-static_cast<long double>(p)));
    return static_cast<double>(-std::log10(tail)) - log_nt;
}

LineSegmentRect rectangle(double x1, double y1, double x2, double y2, double width, double p) {
    return LineSegmentRect{x1, y1, x2, y2, width, (x1 + x2) / 2, (y1 + y2) / 2, std::atan2(y2 - y1, x2 - x1),
                           p * constants::kPi, p};
}

}  // namespace

TEST(LogGamma, BothFormsFollowTheExactFunctionOnTheirSide) {
    for (double x : {0.5, 1.0, 2.0, 3.5, 7.0, 10.0, 14.9, 15.0})
        EXPECT_NEAR(nfa::log_gamma_lanczos(x), std::lgamma(x), 1e-8 * std::max(1.0, std::fabs(std::lgamma(x)))) << x;
    for (double x : {15.5, 20.0, 101.0, 1000.0, 123456.0})
        EXPECT_NEAR(nfa::log_gamma_windschitl(x), std::lgamma(x), 1e-9 * std::lgamma(x)) << x;
    // 15 itself is still Lanczos; just past it is Windschitl.
    EXPECT_EQ(nfa::log_gamma(15.0), nfa::log_gamma_lanczos(15.0));
    EXPECT_EQ(nfa::log_gamma(15.000001), nfa::log_gamma_windschitl(15.000001));
}

TEST(Nfa, ClosedFormsForNothingAndEverythingAligned) {
    const double log_nt = nfa::log_number_of_tests(100, 100);
    EXPECT_EQ(log_nt, 5.0 * (2.0 + 2.0) * 0.5 + std::log10(11.0));
    EXPECT_EQ(std::log10(11.0), 1.0413926851582251);
    EXPECT_EQ(nfa::nfa(0, 0, 0.125, log_nt), -log_nt);
    EXPECT_EQ(nfa::nfa(50, 0, 0.125, log_nt), -log_nt);
    EXPECT_EQ(nfa::nfa(30, 30, 0.125, log_nt), -log_nt - 30 * std::log10(0.125));
}

TEST(Nfa, BinomialTailMatchesTheDirectSum) {
    const double log_nt = nfa::log_number_of_tests(640, 480);
    const struct { int n, k; double p; } cases[] = {
        {10, 1, 0.125}, {10, 5, 0.125}, {20, 19, 0.125}, {50, 20, 0.125}, {100, 40, 0.0625},
        {200, 30, 0.125}, {300, 299, 0.039}, {64, 8, 0.125}, {1000, 500, 0.125}, {17, 17, 0.125}};
    for (const auto& c : cases) {
        const double expected = direct_score(c.n, c.k, c.p, log_nt);
        // The tail stops once the rest is a tenth of the result's size: a few per cent at most.
        EXPECT_NEAR(nfa::nfa(c.n, c.k, c.p, log_nt), expected, 0.05 * std::fabs(expected) + 1e-9)
            << c.n << " " << c.k << " " << c.p;
    }
}

TEST(Nfa, AFirstTermBelowWhatADoubleHoldsFallsBackToItsLogarithm) {
    const double log_nt = 16.0;
    // Far past the mean: the first term alone bounds the tail.
    const int n = 20000, k = 12000;
    const double p = 0.125;
    const double log1term = std::lgamma(n + 1.0) - std::lgamma(k + 1.0) - std::lgamma(n - k + 1.0) +
                            k * std::log(p) + (n - k) * std::log(1 - p);
    ASSERT_LT(log1term, -746.0);
    EXPECT_NEAR(nfa::nfa(n, k, p, log_nt), -log1term / 2.302585092994046 - log_nt, 1e-6 * -log1term);
    // Before the mean the tail is nearly 1.
    EXPECT_EQ(nfa::nfa(200000, 1, 0.5, log_nt), -log_nt);
}

TEST(Nfa, ReciprocalsAreExactAndTheSameFromTwoThreads) {
    for (int i : {1, 2, 3, 7, 99999, 100000, 250000}) EXPECT_EQ(nfa::reciprocal(i), 1.0 / i) << i;
    double results[2][4];
    auto work = [&](int t) {
        for (int r = 0; r < 4; ++r) results[t][r] = nfa::nfa(5000 + 1000 * r, 800 + 150 * r, 0.125, 15.0);
    };
    std::thread a(work, 0), b(work, 1);
    a.join();
    b.join();
    for (int r = 0; r < 4; ++r) EXPECT_EQ(results[0][r], results[1][r]);
}

TEST(RectangleIterator, SweepCountsThePixelsOfThePlainPointInRectangleTest) {
    // Off-grid rectangles, so that no pixel centre sits on a border.
    const LineSegmentRect cases[] = {rectangle(2.13, 5.27, 10.61, 5.27, 3.1, 0.1),
                                     rectangle(3.3, 4.1, 17.9, 12.7, 2.3, 0.1),
                                     rectangle(18.2, 2.9, 4.4, 15.3, 4.7, 0.1),
                                     rectangle(9.7, 19.1, 11.3, 1.2, 1.7, 0.1),
                                     rectangle(15.1, 14.2, 2.2, 9.9, 5.3, 0.1)};
    for (const auto& r : cases) {
        const geometric::RectangleIterator sweep(r);
        int swept = 0;
        for (double x = sweep.first_column(); x <= sweep.last_column(); x += 1.0)
            for (double y = std::ceil(sweep.lower_border(x)); y <= sweep.upper_border(x); y += 1.0) ++swept;
        const double dx = std::cos(r.theta), dy = std::sin(r.theta);
        const double half_length = std::hypot(r.x2 - r.x1, r.y2 - r.y1) / 2;
        int plain = 0;
        for (int y = -5; y < 40; ++y)
            for (int x = -5; x < 40; ++x) {
                const double u = (x - r.x) * dx + (y - r.y) * dy;
                const double v = -(x - r.x) * dy + (y - r.y) * dx;
                if (std::fabs(u) <= half_length && std::fabs(v) <= r.width / 2) ++plain;
            }
        EXPECT_EQ(swept, plain) << r.x1 << "," << r.y1;
        EXPECT_GT(plain, 0);
    }
}

TEST(RectNfa, CountsOnlyPixelsInsideTheImage) {
    const ImageObject<double> angles(40, 30, 0.0);
    const double log_nt = nfa::log_number_of_tests(40, 30);
    // Wholly outside: n = 0, so -logNT, which fails a threshold of 0.
    EXPECT_EQ(nfa::rect_nfa(rectangle(-50, -20, -10, -20, 3, 0.125), angles), -log_nt);
    EXPECT_EQ(nfa::rect_nfa(rectangle(100, 10, 200, 10, 3, 0.125), angles), -log_nt);
    // Row 10, x 0..39 of a 60-pixel span: 40 pixels, all aligned with theta 0.
    EXPECT_EQ(nfa::rect_nfa(rectangle(-10, 10, 49, 10, 1, 0.125), angles), -log_nt - 40 * std::log10(0.125));
    // The other way round none is aligned.
    EXPECT_EQ(nfa::rect_nfa(rectangle(49, 10, -10, 10, 1, 0.125), angles), -log_nt);
}

TEST(NFAEnhancer, ReportsTheStepThatReachedTheThreshold) {
    ImageObject<double> angles(60, 40, geometric::lsd_angle::kNotDefined);
    for (int x = 0; x < 60; ++x) angles.at(x, 20) = 0.0;
    const geometric::NFAEnhancer enhancer(angles, 0.0);
    double log_nfa = 0.0;

    LineSegmentRect aligned = rectangle(5, 20, 54, 20, 1, 0.125);
    EXPECT_EQ(enhancer.enhance_nfa(aligned, log_nfa), 1);
    EXPECT_GT(log_nfa, 0.0);

    // Four rows of nothing around the aligned row dilute it below the
    // threshold; a finer tolerance makes it rarer and lifts it above.
    LineSegmentRect wide = rectangle(5, 20, 54, 20, 9, 0.125);
    const double before = nfa::rect_nfa(wide, angles);
    ASSERT_LE(before, 0.0);
    const int step = enhancer.enhance_nfa(wide, log_nfa);
    EXPECT_EQ(step, 2);
    EXPECT_GT(log_nfa, before);
    EXPECT_LT(wide.p, 0.125);
    EXPECT_DOUBLE_EQ(wide.prec, wide.p * constants::kPi);

    // A rectangle off the image never validates.
    LineSegmentRect outside = rectangle(-50, -30, -10, -30, 2, 0.125);
    EXPECT_LT(enhancer.enhance_nfa(outside, log_nfa), 0);
    EXPECT_EQ(log_nfa, -nfa::log_number_of_tests(60, 40));
}

TEST(NFAEnhancer, WidthReductionStopsAtHalfAPixel) {
    // Only row 20 aligned; a rectangle of width 1 centred between rows 19
    // and 20 covers both; the reductions may narrow it once, to 0.5.
    ImageObject<double> angles(60, 40, 1.5);
    for (int x = 0; x < 60; ++x) angles.at(x, 20) = 0.0;
    const geometric::NFAEnhancer enhancer(angles, 1000.0);
    LineSegmentRect r = rectangle(5, 19.5, 54, 19.5, 1.0, 0.125);
    double log_nfa = nfa::rect_nfa(r, angles);
    enhancer.enhance_via_reduced_width(r, log_nfa);
    EXPECT_EQ(r.width, 1.0);  // 0.5 covers no row at all: no better, not kept
    enhancer.enhance_via_reduced_rectangle_side1(r, log_nfa);
    // Shifted by a quarter pixel towards row 20 and narrowed to 0.5: row 20 alone.
    EXPECT_EQ(r.width, 0.5);
    EXPECT_DOUBLE_EQ(r.y1, 19.75);
    const double best = log_nfa;
    EXPECT_EQ(enhancer.enhance_via_reduced_rectangle_side1(r, log_nfa), -1);  // under the threshold of 1000
    EXPECT_EQ(r.width, 0.5);
    EXPECT_EQ(log_nfa, best);
}

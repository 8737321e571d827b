// The a-contrario score: log-gamma and the binomial tail against direct
// computation, and the rectangle sweep against a plain point-in-rectangle count.
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

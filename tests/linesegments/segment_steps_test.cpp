// The detector's steps against direct computation: the Gaussian down-scaling
// against a per-pixel sum, log-gamma and the binomial tail, the rectangle sweep
// against a point-in-rectangle count, the rectangle of a region, and the
// validation of linked groups.
#include <gtest/gtest.h>

#include <cmath>
#include <thread>
#include <vector>

#include "linesegments/angle_tools.h"
#include "linesegments/gaussian_sampler.h"
#include "linesegments/line_segment_generator.h"
#include "linesegments/nfa_enhancer.h"
#include "linesegments/nfa_score.h"
#include "linesegments/rectangle_iterator.h"
#include "linesegments/region_grow.h"
#include "linesegments/region_rectangle.h"
#include "linesegments/segment_linker.h"

using geometric::BlobCoordinatesWrapper;
using geometric::GaussianSampler;
using geometric::ImageObject;
using geometric::LineSegmentGenerator;
using geometric::LineSegmentRect;
using geometric::RegionGrow;
using geometric::SegmentLinker;

TEST(GaussianSampler, SizeIsRoundedUpAndFlatStaysFlat) {
    const ImageObject<unsigned char> flat(101, 37, 77);
    const ImageObject<double> out = GaussianSampler::down_scale(flat, 0.8, 0.6);
    EXPECT_EQ(out.get_width(), 81);   // ceil(80.8)
    EXPECT_EQ(out.get_height(), 30);  // ceil(29.6)
    for (int y = 0; y < out.get_height(); ++y)
        for (int x = 0; x < out.get_width(); ++x) ASSERT_NEAR(out.at(x, y), 77.0, 1e-12);
    EXPECT_EQ(static_cast<int>(std::ceil(0.75 * GaussianSampler::kHalfSizeFactor)), 3);
}

TEST(GaussianSampler, MatchesAPlainPerPixelSum) {
    ImageObject<unsigned char> image(23, 17);
    for (int y = 0; y < 17; ++y)
        for (int x = 0; x < 23; ++x) image.at(x, y) = static_cast<unsigned char>((x * 37 + y * 91 + x * y) % 251);
    const double scale = 0.6, sigma = 0.6 / 0.6;
    const int half = static_cast<int>(std::ceil(sigma * GaussianSampler::kHalfSizeFactor));
    const ImageObject<double> fast = GaussianSampler::down_scale(image, scale, 0.6);
    // x pass then y pass, written the plain way, one pixel at a time.
    std::vector<double> kernel(2 * half + 1);
    const int w = fast.get_width(), h = fast.get_height();
    std::vector<double> partial(static_cast<std::size_t>(w) * 17);
    for (int x = 0; x < w; ++x) {
        const double position = x / scale;
        const int centre = static_cast<int>(std::floor(position + 0.5));
        GaussianSampler::fill_kernel(kernel.data(), 2 * half + 1, sigma, half + position - centre);
        for (int y = 0; y < 17; ++y) {
            double sum = 0.0;
            for (int i = 0; i <= 2 * half; ++i) sum += image.at(GaussianSampler::mirror(centre - half + i, 23), y) * kernel[i];
            partial[y * w + x] = sum;
        }
    }
    for (int y = 0; y < h; ++y) {
        const double position = y / scale;
        const int centre = static_cast<int>(std::floor(position + 0.5));
        GaussianSampler::fill_kernel(kernel.data(), 2 * half + 1, sigma, half + position - centre);
        for (int x = 0; x < w; ++x) {
            double sum = 0.0;
            for (int i = 0; i <= 2 * half; ++i) sum += partial[GaussianSampler::mirror(centre - half + i, 17) * w + x] * kernel[i];
            EXPECT_EQ(fast.at(x, y), sum) << x << "," << y;  // bit for bit
        }
    }
}

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

TEST(RegionRectangle, ARowOfPixelsGivesARectangleAlongIt) {
    const int n = 10;
    ImageObject<double> norms(20, 5, 1.0);
    BlobCoordinatesWrapper region(20, 5);
    for (int x = 3; x < 3 + n; ++x) region.append(x, 2);
    geometric::LineSegmentRect rect;
    ASSERT_TRUE(geometric::RegionRectangle::build(region, norms, 0.0, 0.39, 0.125, rect));
    EXPECT_DOUBLE_EQ(rect.x, 7.5);
    EXPECT_DOUBLE_EQ(rect.y, 2.0);
    EXPECT_NEAR(rect.x1, 3.0, 1e-12);
    EXPECT_NEAR(rect.x2, 12.0, 1e-12);
    EXPECT_EQ(rect.width, 1.0);  // no spread across: at least one pixel
    // The region's own angle decides which way it runs.
    ASSERT_TRUE(geometric::RegionRectangle::build(region, norms, 3.1, 0.39, 0.125, rect));
    EXPECT_NEAR(rect.x1, 12.0, 1e-12);
    EXPECT_NEAR(rect.x2, 3.0, 1e-12);
    // One pixel has no inertia: no rectangle.
    region.size = 1;
    EXPECT_FALSE(geometric::RegionRectangle::build(region, norms, 0.0, 0.39, 0.125, rect));
    // A diagonal runs at 45 degrees, through its centre.
    BlobCoordinatesWrapper diagonal(20, 20);
    for (int k = 4; k < 12; ++k) diagonal.append(k, k);
    ASSERT_TRUE(geometric::RegionRectangle::build(diagonal, ImageObject<double>(20, 20, 1.0), 0.8, 0.39, 0.125, rect));
    EXPECT_NEAR(rect.theta, constants::kPi / 4, 1e-9);
    EXPECT_DOUBLE_EQ(rect.x, 7.5);
    EXPECT_NEAR(rect.x2 - rect.x1, 7.0, 1e-9);
}

namespace {

// Width 2, tolerance 0.39 (p 1/8) and score 3.
LineSegmentRect segment(double x1, double y1, double x2, double y2) {
    return LineSegmentRect{x1, y1, x2, y2, 2.0, (x1 + x2) / 2, (y1 + y2) / 2, std::atan2(y2 - y1, x2 - x1),
                           0.39, 0.125, std::hypot(x2 - x1, y2 - y1), 3.0};
}

}  // namespace

TEST(SegmentLinker, ValidationScoresGroupsOnTheAngleImageAndDropsTheUnsupported) {
    ImageObject<double> angles(200, 100, 1.5);
    for (int x = 0; x < 200; ++x) angles.at(x, 50) = 0.0;
    std::vector<LineSegmentRect> segments = {segment(10, 50, 60, 50), segment(63, 50, 100, 50),
                                             segment(10, 80, 100, 80)};
    SegmentLinker(7.0, 5.0, true, 0.0).link(segments, angles);
    ASSERT_EQ(segments.size(), 1u);  // the segment on row 80 has no aligned pixel beneath
    EXPECT_GT(segments[0].log_nfa, 0.0);
    EXPECT_NE(segments[0].log_nfa, 3.0);
}

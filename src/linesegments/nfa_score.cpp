// The a-contrario score of the line segment detector: log-gamma, the
// binomial tail and the count of aligned pixels in a rectangle.
#include "linesegments/nfa_score.h"

#include <algorithm>
#include <atomic>
#include <cmath>

#include "linesegments/angle_tools.h"
#include "linesegments/rectangle_iterator.h"

namespace geometric {
namespace nfa_score {

namespace {

constexpr double kRelativeTolerance = 2.220446049250313e-14;  // 100 double epsilons
constexpr double kSmallestNormal = 2.2250738585072014e-308;
constexpr double kLn10 = 2.302585092994046;

// The one mutable process-wide table of the library. Static storage starts
// at zero; an entry only ever goes from 0.0 to 1.0 / i, the same bits in
// every thread, and relaxed atomic loads and stores of a double are plain
// moves on the targets we build for. No lock, no data race, no order that
// could reach a result.
std::atomic<double> reciprocal_cache[kReciprocalCacheSize];

}  // namespace

bool nearly_equal(double a, double b) {
    if (a == b) return true;
    const double difference = std::fabs(a - b);
    double magnitude = std::max(std::fabs(a), std::fabs(b));
    if (magnitude < kSmallestNormal) magnitude = kSmallestNormal;
    return difference / magnitude <= kRelativeTolerance;
}

// log Gamma(x) = (x + 0.5) log(x + 5.5) - (x + 5.5) + log(sum q_n x^n) - sum log(x + n).
double log_gamma_lanczos(double x) {
    static const double q[7] = {75122.6331530, 80916.6278952, 36308.2951477, 8687.24529705,
                                1168.92649479, 83.8676043424, 2.50662827511};
    double a = (x + 0.5) * std::log(x + 5.5) - (x + 5.5);
    double b = 0.0;
    for (int n = 0; n < 7; ++n) {
        a -= std::log(x + n);
        b += q[n] * std::pow(x, static_cast<double>(n));
    }
    return a + std::log(b);
}

// log Gamma(x) = 0.5 log(2 pi) + (x - 0.5) log x - x + x/2 log(x sinh(1/x) + 1 / (810 x^6)).
double log_gamma_windschitl(double x) {
    return 0.918938533204673 + (x - 0.5) * std::log(x) - x +
           0.5 * x * std::log(x * std::sinh(1.0 / x) + 1.0 / (810.0 * std::pow(x, 6.0)));
}

double log_gamma(double x) { return x > 15.0 ? log_gamma_windschitl(x) : log_gamma_lanczos(x); }

double reciprocal(int i) {
    if (i <= 0 || i >= kReciprocalCacheSize) return 1.0 / i;
    double value = reciprocal_cache[i].load(std::memory_order_relaxed);
    if (value == 0.0) {
        value = 1.0 / i;
        reciprocal_cache[i].store(value, std::memory_order_relaxed);
    }
    return value;
}

double log_number_of_tests(int width, int height) {
    return 5.0 * (std::log10(static_cast<double>(width)) + std::log10(static_cast<double>(height))) * 0.5 +
           std::log10(11.0);
}

double nfa(int n, int k, double p, double log_nt) {
    if (n <= 0 || k <= 0 || k > n || !(p > 0.0 && p < 1.0)) return -log_nt;
    if (n == k) return -log_nt - n * std::log10(p);

    const double p_term = p / (1.0 - p);
    // First term of the tail: C(n, k) p^k (1 - p)^(n - k).
    const double log1term = log_gamma(n + 1.0) - log_gamma(k + 1.0) - log_gamma(static_cast<double>(n - k) + 1.0) +
                            k * std::log(p) + (n - k) * std::log(1.0 - p);
    double term = std::exp(log1term);
    if (nearly_equal(term, 0.0)) {
        // Below what a double holds: past the mean the first term alone is a
        // good bound, before it the tail is close to 1.
        if (k > n * p) return -log1term / kLn10 - log_nt;
        return -log_nt;
    }

    const double tolerance = 0.1;
    double tail = term;
    for (int i = k + 1; i <= n; ++i) {
        const double bin_term = (n - i + 1) * reciprocal(i);
        const double mult_term = bin_term * p_term;
        term *= mult_term;
        tail += term;
        if (bin_term < 1.0) {
            // The remaining terms shrink at least geometrically by mult_term.
            const double error = term * ((1.0 - std::pow(mult_term, static_cast<double>(n - i + 1))) /
                                             (1.0 - mult_term) - 1.0);
            if (error < tolerance * std::fabs(-std::log10(tail) - log_nt) * tail) break;
        }
    }
    return -std::log10(tail) - log_nt;
}

double rect_nfa(const LineSegmentRect& rect, const ImageObject<double>& angles) {
    const int width = angles.get_width();
    const int height = angles.get_height();
    const double log_nt = log_number_of_tests(width, height);

    int n = 0;
    int k = 0;
    const RectangleIterator sweep(rect);
    // Only pixels inside the image are counted: clamp the sweep to it.
    const double first = std::max(sweep.first_column(), 0.0);
    const double last = std::min(sweep.last_column(), width - 1.0);
    if (std::isfinite(first) && std::isfinite(last)) {
        for (double column = first; column <= last; column += 1.0) {
            const double low = std::max(std::ceil(sweep.lower_border(column)), 0.0);
            const double high = std::min(std::floor(sweep.upper_border(column)), height - 1.0);
            if (!(low <= high)) continue;
            const int x = static_cast<int>(column);
            const int y_end = static_cast<int>(high);
            n += y_end - static_cast<int>(low) + 1;
            for (int y = static_cast<int>(low); y <= y_end; ++y)
                if (lsd_angle::is_aligned(angles.at(x, y), rect.theta, rect.prec)) ++k;
        }
    }
    return nfa(n, k, rect.p, log_nt);
}

}  // namespace nfa_score
}  // namespace geometric

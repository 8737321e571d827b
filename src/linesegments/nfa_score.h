// The a-contrario score of a rectangle: how many false alarms a rectangle
// with this many aligned pixels would give in noise, on a log10 scale.
#ifndef MORVANE_LINESEGMENTS_NFA_SCORE_H
#define MORVANE_LINESEGMENTS_NFA_SCORE_H

#include "linesegments/image_object.h"
#include "linesegments/line_segment_rect.h"

namespace geometric {
namespace nfa_score {

// Entries of the process-wide reciprocal cache used by the binomial tail.
constexpr int kReciprocalCacheSize = 100000;

// a and b agree to a relative 100 double epsilons (2.220446049250313e-14),
// magnitudes below the smallest normal double counting as that.
bool nearly_equal(double a, double b);

// log of Gamma(x), x > 0: Lanczos' series with x + 5.5 and seven coefficients.
double log_gamma_lanczos(double x);
// log of Gamma(x): Windschitl's form, accurate for large x.
double log_gamma_windschitl(double x);
// Windschitl above 15, Lanczos below.
double log_gamma(double x);

// 1 / i for 0 < i < kReciprocalCacheSize through the shared cache, plain
// division beyond. The cache starts at zero and each entry is written with
// its one possible value on first use, as an atomic double: two detectors in
// two threads may fill the same entry at once and both read the same bits.
double reciprocal(int i);

// Number of tests, log10: 5 (log10 width + log10 height) / 2 + log10 11,
// rectangles of all positions, orientations and widths, and 11 precisions.
double log_number_of_tests(int width, int height);

// -log10(NFA) of n pixels of which k are aligned, each with chance p:
// NFA = number of tests * binomial tail P[X >= k], X ~ B(n, p). The tail is
// summed from its first term by term(i+1) = term(i) (n - i) / (i + 1) p / (1 - p),
// and stops once the rest is bounded by a tenth of the result's own size.
// n = 0 or k = 0 gives -logNT, k = n the closed form -logNT - n log10 p.
double nfa(int n, int k, double p, double log_nt);

// The score of a rectangle on the angle image: n pixels of the rectangle
// inside the image, k of them aligned with theta within prec.
double rect_nfa(const LineSegmentRect& rect, const ImageObject<double>& angles);

}  // namespace nfa_score
}  // namespace geometric

#endif

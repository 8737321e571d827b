// Lines fitted to dual points, and the vanishing point such a line stands
// for: a line a x + b y + c = 0 has the dual point (a / c, b / c), and the
// lines through one point (x0, y0) have their dual points on the line
// x0 u + y0 v + 1 = 0. The two solvers share these fits.
#ifndef MORVANE_VANISHING_DUAL_PLANE_FIT_H
#define MORVANE_VANISHING_DUAL_PLANE_FIT_H

#include <vector>

#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

// The point (A / D, B / D) that all lines of the dual line A u + B v + D = 0
// pass through; not finite when D is 0 (the lines are parallel).
Geocoordinate<double> dual_meeting_point(const GeolineBase& dual_line);

// The plain fit of the dual points (single-precision limit on the variance).
Geocoordinate<double> plain_dual_fit_point(const std::vector<Geocoordinate<double>>& duals);

// The weighted fit of the dual points (u, v), `weights[k]` belonging to
// `duals[k]`, normalised to sum 1: Mx = sum w u, My = sum w v,
// Muu = sum w u^2 in double, Muv = sum (w u) v rounded to single precision
// after each addition; var = Muu - Mx^2, the vertical form (1, 0, -Mx) when
// |var| is at most the double epsilon, else a = (Muv - Mx My) / var, b = -1,
// c = My - Mx a.
Geocoordinate<double> weighted_dual_fit_point(const std::vector<Geocoordinate<double>>& duals,
                                              const std::vector<double>& weights);

}  // namespace geometric

#endif

// The three line constructions that every corner calculator shares: a line
// through two points, a line at an angle through a point, and the crossing of
// two lines kept in single precision.
#ifndef MORVANE_VANISHING_CORNER_LINES_H
#define MORVANE_VANISHING_CORNER_LINES_H

#include <cmath>
#include <vector>

#include "common/constants.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

// Through p and q, in double: vertical (1, 0, -p.x) when the two x differ by
// at most the double epsilon, else slope m = (p.y - q.y) / (p.x - q.x) and
// (m, -1, q.y - m q.x).
template <typename P, typename Q>
inline GeolineBase corner_line_through(const Geocoordinate<P>& p, const Geocoordinate<Q>& q) {
    const double px = static_cast<double>(p.x);
    const double py = static_cast<double>(p.y);
    const double qx = static_cast<double>(q.x);
    const double qy = static_cast<double>(q.y);
    if (std::fabs(px - qx) <= constants::kDoubleEpsilon) return GeolineBase(1.0, 0.0, -px);
    const double m = (py - qy) / (px - qx);
    return GeolineBase(m, -1.0, qy - m * qx);
}

// At `degrees` through p: (tan t, -1, y - x tan t).
inline GeolineBase corner_line_at_angle(const Geocoordinate<float>& p, double degrees) {
    const double t = std::tan(degrees * constants::kPi / 180.0);
    return GeolineBase(t, -1.0, static_cast<double>(p.y) - static_cast<double>(p.x) * t);
}

// x = p.x and y = p.y, for directions taken as exactly axis-parallel.
inline GeolineBase corner_vertical_line(const Geocoordinate<float>& p) {
    return GeolineBase(1.0, 0.0, -static_cast<double>(p.x));
}
inline GeolineBase corner_horizontal_line(const Geocoordinate<float>& p) {
    return GeolineBase(0.0, -1.0, static_cast<double>(p.y));
}

// The crossing by the rule of intersect_lines, stored as two floats; false
// for parallel lines, with `point` untouched.
inline bool corner_crossing(const GeolineBase& first, const GeolineBase& second, Geocoordinate<float>& point) {
    Geocoordinate<double> crossing;
    if (!intersect_lines(first, second, crossing)) return false;
    point.x = static_cast<float>(crossing.x);
    point.y = static_cast<float>(crossing.y);
    return true;
}

// `corners` is emptied, then receives top with left, top with right, bottom
// with right, bottom with left. False, with `corners` left empty, when a pair
// of neighbouring sides is parallel: no quadrilateral exists.
inline bool corners_from_sides(const GeolineBase& left, const GeolineBase& right, const GeolineBase& top,
                               const GeolineBase& bottom, std::vector<Geocoordinate<float>>& corners) {
    corners.clear();
    Geocoordinate<float> found[4];
    if (!corner_crossing(top, left, found[0]) || !corner_crossing(top, right, found[1]) ||
        !corner_crossing(bottom, right, found[2]) || !corner_crossing(bottom, left, found[3]))
        return false;
    corners.assign(found, found + 4);
    return true;
}

}  // namespace geometric

#endif

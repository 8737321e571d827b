// Angle arithmetic of the line segment detector: the undefined-angle marker,
// the alignment test and the differences between angles.
#ifndef MORVANE_LINESEGMENTS_ANGLE_TOOLS_H
#define MORVANE_LINESEGMENTS_ANGLE_TOOLS_H

#include <cmath>

#include "common/constants.h"

namespace geometric {
namespace lsd_angle {

// Angle of a pixel whose gradient is too weak to have a direction.
constexpr double kNotDefined = -1024.0;
// The detector's own values of 2 pi and 3 pi / 2, used as written and not
// as more exact ones, so that borderline alignments stay where they are.
constexpr double kTwoPi = 6.28318530718;
constexpr double kThreeHalvesPi = 4.71238898038;

// True when `pixel_angle` is defined and within `tolerance` of `angle`; a
// difference past 3 pi / 2 is taken the other way round the circle.
inline bool is_aligned(double pixel_angle, double angle, double tolerance) {
    if (pixel_angle == kNotDefined) return false;
    double d = std::fabs(pixel_angle - angle);
    if (d > kThreeHalvesPi) d = std::fabs(d - kTwoPi);
    return tolerance >= d;
}

// a - b brought into (-pi, pi].
inline double signed_difference(double a, double b) {
    double d = a - b;
    while (d <= -constants::kPi) d += kTwoPi;
    while (d > constants::kPi) d -= kTwoPi;
    return d;
}

// |a - b| the short way round, in [0, pi].
inline double difference(double a, double b) { return std::fabs(signed_difference(a, b)); }

}  // namespace lsd_angle
}  // namespace geometric

#endif

// What a search found for each of the page's two directions: a vanishing
// point, or a parallel direction given by its angle.
#ifndef MORVANE_VANISHING_VANISHING_POINT_OUTPUT_H
#define MORVANE_VANISHING_VANISHING_POINT_OUTPUT_H

#include "textgeometry/geocoordinate.h"

namespace geometric {

struct VanishingPointOutput {
    // Solver code: 0 nothing found, 1 a vanishing point, 2 exactly parallel,
    // 3 the previous point stands, 4 treat as parallel.
    int status = 0;
    bool has_vanishing_point = false;
    bool is_parallel = false;
    float angle = 0.0f;  // degrees in [0, 180), 90 vertical
};

// A point at infinity is never stored: a parallel direction is `is_parallel`
// with the point left as it was and `angle` giving the direction.
struct VanishingPointHorVerInfo {
    Geocoordinate<double> horizontal_point;
    VanishingPointOutput horizontal;
    Geocoordinate<double> vertical_point;
    VanishingPointOutput vertical{0, false, false, 90.0f};
};

}  // namespace geometric

#endif

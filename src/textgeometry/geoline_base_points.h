// A line together with the points that support it.
#ifndef MORVANE_TEXTGEOMETRY_GEOLINE_BASE_POINTS_H
#define MORVANE_TEXTGEOMETRY_GEOLINE_BASE_POINTS_H

#include <vector>

#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

// Used with float and int points.
template <typename T>
class GeolineBasePoints : public GeolineBase {
public:
    std::vector<Geocoordinate<T>> points;

    GeolineBasePoints() {}
    explicit GeolineBasePoints(const GeolineBase& line) : GeolineBase(line) {}
    GeolineBasePoints(const GeolineBase& line, const std::vector<Geocoordinate<T>>& support)
        : GeolineBase(line), points(support) {}
};

}  // namespace geometric

#endif

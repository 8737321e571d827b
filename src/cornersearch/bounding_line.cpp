// The boundary record of the corner search.
#include "cornersearch/bounding_line.h"

#include <cmath>
#include <utility>

namespace geometric_test {

BoundingLine::BoundingLine(geometric::BoundingLinePosition position_,
                           const geometric::GeolineBasePoints<int>& source, geometric::BoundingLineType type_)
    : position(position_), line(source.a, source.b, source.c), points(source.points), type(type_) {
    if (points.size() < 2) return;
    const bool horizontal = position == geometric::TOP_BOUNDARY || position == geometric::BOTTOM_BOUNDARY;
    const bool vertical = position == geometric::LEFT_BOUNDARY || position == geometric::RIGHT_BOUNDARY;
    if ((horizontal && points[0].x > points[1].x) || (vertical && points[0].y > points[1].y)) {
        std::swap(points[0], points[1]);
    }
}

void BoundingLine::clear() {
    position = geometric::INVALID_BOUNDARY;
    line = geometric::GeolineBase();
    points.clear();
}

double BoundingLine::polyline_length() const {
    double length = 0.0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const double dx = static_cast<double>(points[i].x) - points[i - 1].x;
        const double dy = static_cast<double>(points[i].y) - points[i - 1].y;
        length += std::sqrt(dx * dx + dy * dy);
    }
    return length;
}

geometric::Geocoordinate<int> BoundingLine::end_point(std::size_t i) const {
    if (points.empty()) return geometric::Geocoordinate<int>();
    return points[i < points.size() ? i : points.size() - 1];
}

}  // namespace geometric_test

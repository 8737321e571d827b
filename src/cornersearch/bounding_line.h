// A boundary of the corner search: a side of the page, its implicit line and
// the polyline that supports it.
#ifndef MORVANE_CORNERSEARCH_BOUNDING_LINE_H
#define MORVANE_CORNERSEARCH_BOUNDING_LINE_H

#include <vector>

#include "edgelines/bounding_line.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"
#include "textgeometry/geoline_base_points.h"

namespace geometric_test {

struct BoundingLine {
    geometric::BoundingLinePosition position = geometric::INVALID_BOUNDARY;  // -1 in an empty slot
    geometric::GeolineBase line;                                              // a x + b y + c = 0
    std::vector<geometric::Geocoordinate<int>> points;  // supporting polyline, two points as a rule
    geometric::BoundingLineType type = geometric::REGULAR_BOUNDING_LINE;

    BoundingLine() = default;

    // Copies the line and its points, then puts the first two points in
    // reading order: left to right for a top or bottom side, top to bottom
    // for a left or right side. An invalid position is neither, so nothing is
    // swapped.
    BoundingLine(geometric::BoundingLinePosition position, const geometric::GeolineBasePoints<int>& source,
                 geometric::BoundingLineType type);

    bool is_valid() const { return position != geometric::INVALID_BOUNDARY; }

    // An empty slot: position -1, a = b = c = 0, no points; the type stays.
    void clear();

    // Sum of the distances between consecutive points; 0 below two points.
    double polyline_length() const;

    // Point i of the polyline, the last one when there are fewer, (0, 0) when
    // there is none: the segment ends that the tests read are points 0 and 1.
    geometric::Geocoordinate<int> end_point(std::size_t i) const;
};

}  // namespace geometric_test

#endif

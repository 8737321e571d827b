// Boundaries and arrays with answers known by construction, and a bitwise
// comparison of two boundaries.
#ifndef MORVANE_TESTS_SUPPORT_BOUNDARY_SCENES_H
#define MORVANE_TESTS_SUPPORT_BOUNDARY_SCENES_H

#include <cstring>
#include <string>

#include "common/basic_image.h"
#include "cornersearch/bounding_line.h"
#include "cornersearch/bounding_line_array_wrapper.h"

namespace support {

using geometric::BoundingLinePosition;
using geometric_test::BoundingLine;
using geometric_test::BoundingLineArrayWrapper;

// The line through two points in one of the two normal forms, with the two
// points as its polyline.
inline BoundingLine make_boundary(BoundingLinePosition position, int x1, int y1, int x2, int y2,
                                  geometric::BoundingLineType type = geometric::REGULAR_BOUNDING_LINE) {
    geometric::GeolineBasePoints<int> source;
    if (x1 == x2) {
        source.a = 1.0;
        source.b = 0.0;
        source.c = -x1;
    } else {
        source.a = static_cast<double>(y1 - y2) / (x1 - x2);
        source.b = -1.0;
        source.c = y2 - source.a * x2;
    }
    source.points = {geometric::Geocoordinate<int>(x1, y1), geometric::Geocoordinate<int>(x2, y2)};
    return BoundingLine(position, source, type);
}

// An upright rectangle whose sides run exactly from corner to corner.
struct Rectangle {
    int left, top, right, bottom;
};

inline void place_rectangle(BoundingLineArrayWrapper& wrapper, const Rectangle& r) {
    wrapper.boundaries[geometric::LEFT_BOUNDARY] = make_boundary(geometric::LEFT_BOUNDARY, r.left, r.top, r.left, r.bottom);
    wrapper.boundaries[geometric::TOP_BOUNDARY] = make_boundary(geometric::TOP_BOUNDARY, r.left, r.top, r.right, r.top);
    wrapper.boundaries[geometric::RIGHT_BOUNDARY] =
        make_boundary(geometric::RIGHT_BOUNDARY, r.right, r.top, r.right, r.bottom);
    wrapper.boundaries[geometric::BOTTOM_BOUNDARY] =
        make_boundary(geometric::BOTTOM_BOUNDARY, r.left, r.bottom, r.right, r.bottom);
}

// A gray image of `width` x `height`: a bright page (200) over the rectangle,
// both edges included, on a dark background (30).
inline common::BasicImage page_image(int width, int height, const Rectangle& page) {
    common::BasicImage image(height, width, common::GRAY);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const bool inside = x >= page.left && x <= page.right && y >= page.top && y <= page.bottom;
            image.set_pixel(x, y, inside ? 200u : 30u);
        }
    return image;
}

template <typename T>
bool same_bits(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

inline bool same_boundary(const BoundingLine& a, const BoundingLine& b) {
    if (a.position != b.position || a.type != b.type || a.points.size() != b.points.size()) return false;
    if (!same_bits(a.line.a, b.line.a) || !same_bits(a.line.b, b.line.b) || !same_bits(a.line.c, b.line.c)) return false;
    for (std::size_t i = 0; i < a.points.size(); ++i) {
        if (a.points[i].x != b.points[i].x || a.points[i].y != b.points[i].y) return false;
    }
    return true;
}

// Which of slots 0 to 3 are valid, as four characters: "LTRB" with '-' for empty.
inline std::string valid_slots(const BoundingLineArrayWrapper& wrapper) {
    const char names[] = "LTRB";
    std::string result;
    for (int k = 0; k < 4; ++k) result += wrapper.boundaries[k].is_valid() ? names[k] : '-';
    return result;
}

}  // namespace support

#endif

// A two-dimensional point in image coordinates: x to the right, y down,
// origin at the top-left pixel.
#ifndef MORVANE_TEXTGEOMETRY_GEOCOORDINATE_H
#define MORVANE_TEXTGEOMETRY_GEOCOORDINATE_H

namespace geometric {

template <typename T>
struct Geocoordinate {
    T x;
    T y;

    Geocoordinate() : x(0), y(0) {}
    Geocoordinate(T x_, T y_) : x(x_), y(y_) {}
};

}  // namespace geometric

#endif

// An axis-parallel box of pixel-inclusive bounds, as the page analysis and the
// text route measure blobs and regions.
#ifndef MORVANE_TEXTGEOMETRY_GEOBOX_H
#define MORVANE_TEXTGEOMETRY_GEOBOX_H

namespace geometric {

// Field order right, bottom, left, top is part of the record: brace
// initialisation and every copy of a box follow it.
template <typename T>
struct Geobox {
    T right = 0;
    T bottom = 0;
    T left = 0;
    T top = 0;

    // Both bounds belong to the box: a box of one pixel has width 1.
    T width() const { return right - left + 1; }
    T height() const { return bottom - top + 1; }
    T area() const { return width() * height(); }
};

}  // namespace geometric

#endif

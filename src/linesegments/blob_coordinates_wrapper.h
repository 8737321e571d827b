// The pixels of one growing region: a coordinate buffer sized once for the
// whole image, and the count in use.
#ifndef MORVANE_LINESEGMENTS_BLOB_COORDINATES_WRAPPER_H
#define MORVANE_LINESEGMENTS_BLOB_COORDINATES_WRAPPER_H

#include <vector>

#include "textgeometry/geocoordinate.h"

namespace geometric {

class BlobCoordinatesWrapper {
public:
    // Room for every pixel of a width x height image, so that growing never allocates.
    BlobCoordinatesWrapper(int width, int height);

    // The first entry is the seed.
    std::vector<Geocoordinate<int>> coordinates;
    int size;

    int capacity() const { return static_cast<int>(coordinates.size()); }
    void append(int x, int y) {
        coordinates[size].x = x;
        coordinates[size].y = y;
        ++size;
    }
};

}  // namespace geometric

#endif

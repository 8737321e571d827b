// The pixels of one growing region: a coordinate buffer sized once for the
// whole image, and the count in use.
#ifndef MORVANE_LINESEGMENTS_BLOB_COORDINATES_WRAPPER_H
#define MORVANE_LINESEGMENTS_BLOB_COORDINATES_WRAPPER_H

#include <memory>

namespace geometric {

// One pixel of a region; plain, so that the buffer is not cleared on creation.
struct BlobCoordinate {
    int x;
    int y;
};

class BlobCoordinatesWrapper {
public:
    // Room for every pixel of a width x height image, so that growing never
    // allocates. Entries past `size` are undefined.
    BlobCoordinatesWrapper(int width, int height);

    // The first entry is the seed.
    std::unique_ptr<BlobCoordinate[]> coordinates;
    int size;
    int capacity;

    void append(int x, int y) {
        coordinates[size].x = x;
        coordinates[size].y = y;
        ++size;
    }
};

}  // namespace geometric

#endif

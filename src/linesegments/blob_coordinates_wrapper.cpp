// The coordinate buffer of a growing region.
#include "linesegments/blob_coordinates_wrapper.h"

#include <cstddef>

namespace geometric {

namespace {

std::size_t pixels_of(int width, int height) {
    return width > 0 && height > 0 ? static_cast<std::size_t>(width) * static_cast<std::size_t>(height) : 0;
}

}  // namespace

BlobCoordinatesWrapper::BlobCoordinatesWrapper(int width, int height)
    : coordinates(new BlobCoordinate[pixels_of(width, height)]),
      size(0),
      capacity(static_cast<int>(pixels_of(width, height))) {}

}  // namespace geometric

// The coordinate buffer of a growing region.
#include "linesegments/blob_coordinates_wrapper.h"

#include <cstddef>

namespace geometric {

BlobCoordinatesWrapper::BlobCoordinatesWrapper(int width, int height)
    : coordinates(width > 0 && height > 0 ? static_cast<std::size_t>(width) * static_cast<std::size_t>(height) : 0),
      size(0) {}

}  // namespace geometric

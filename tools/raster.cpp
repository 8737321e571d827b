// Allocation of rasters, with the size limits of the library's buffers.
#include "raster.h"

#include <climits>
#include <string>

#if defined(__linux__)
#include <sys/mman.h>
#endif

#include "scan_error.h"

namespace scan {

std::size_t raster_row_bytes(int width, int channels, bool binary) {
    if (width <= 0) return 0;
    const std::size_t w = static_cast<std::size_t>(width);
    if (binary) return (w + 31) / 32 * 4;
    if (channels != 1 && channels != 3) return 0;
    return w * static_cast<std::size_t>(channels);
}

std::size_t Raster::row_bytes() const { return raster_row_bytes(width, channels, binary); }

bool raster_size_is_supported(int width, int height, int channels, bool binary) {
    if (width <= 0 || height <= 0) return false;
    const std::size_t row = raster_row_bytes(width, channels, binary);
    if (row == 0 || row > static_cast<std::size_t>(INT_MAX)) return false;
    return static_cast<std::size_t>(height) <= static_cast<std::size_t>(INT_MAX) / row;
}

unsigned char* allocate_pixels(std::size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr std::size_t kLargePage = std::size_t(2) << 20;
    if (bytes >= 4 * kLargePage) {
        void* buffer = nullptr;
        if (posix_memalign(&buffer, kLargePage, bytes) != 0) return nullptr;
        // Only advice: where large pages are not to be had, small ones serve.
        madvise(buffer, bytes / kLargePage * kLargePage, MADV_HUGEPAGE);
        return static_cast<unsigned char*>(buffer);
    }
#endif
    return static_cast<unsigned char*>(std::malloc(bytes));
}

Raster make_raster(int width, int height, int channels, bool binary) {
    if (!raster_size_is_supported(width, height, channels, binary)) {
        throw ImageProblem("image too large for memory (" + std::to_string(width) + " x " +
                           std::to_string(height) + " pixels; at most 2 GiB a picture)");
    }
    Raster raster;
    raster.width = width;
    raster.height = height;
    raster.channels = binary ? 1 : channels;
    raster.binary = binary;
    raster.data.reset(allocate_pixels(raster.byte_count()));
    if (!raster.data) {
        throw ImageProblem("not enough memory for a " + std::to_string(width) + " x " +
                           std::to_string(height) + " image");
    }
    return raster;
}

ImageCApi Raster::c_api() const {
    ImageCApi record{};
    record.width = width;
    record.height = height;
    record.x_resolution = 300;
    record.y_resolution = 300;
    record.channels = channels;
    record.is_binary = binary ? 1 : 0;
    record.data = data.get();
    return record;
}

}  // namespace scan

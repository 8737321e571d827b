// An image in memory as the tool passes it between the codecs and the
// library: 8-bit gray or RGB (red first), rows without a gap; or 1 bit a
// pixel with rows padded to 32-bit words, a set bit being ink.
#ifndef MORVANE_TOOLS_RASTER_H
#define MORVANE_TOOLS_RASTER_H

#include <cstddef>
#include <cstdlib>
#include <memory>

#include "morvane/morvane.h"

namespace scan {

struct FreeDeleter {
    void operator()(unsigned char* p) const { std::free(p); }
};

// Densities above this are taken for damage rather than for a scan.
constexpr int kMaximumDpi = 1000000;

struct Raster {
    int width = 0;
    int height = 0;
    int channels = 0;     // 1 gray, 3 RGB
    bool binary = false;  // 1 bit a pixel; channels is then 1
    std::unique_ptr<unsigned char, FreeDeleter> data;
    // Dots per inch across and down, as a file gave them or as they are to be
    // written; 0 when unknown (the library's records always say 300).
    int x_dpi = 0;
    int y_dpi = 0;
    // Both densities known and within what the file formats can hold.
    bool has_density() const { return x_dpi > 0 && y_dpi > 0 && x_dpi <= kMaximumDpi && y_dpi <= kMaximumDpi; }

    std::size_t row_bytes() const;
    std::size_t byte_count() const { return row_bytes() * static_cast<std::size_t>(height); }
    unsigned char* row(int y) const { return data.get() + row_bytes() * static_cast<std::size_t>(y); }
    // A record for the library that reads and writes this raster's buffer in place.
    ImageCApi c_api() const;
};

// Bytes in a row of the given kind, or 0 when it cannot be represented.
std::size_t raster_row_bytes(int width, int channels, bool binary);

// True when an image of this size fits the library's buffers, whose byte
// counts are 32-bit signed integers.
bool raster_size_is_supported(int width, int height, int channels, bool binary);

// An uninitialised pixel buffer of `bytes` bytes, released with std::free,
// or null when memory runs out. A buffer of several megabytes is aligned to
// and backed by the kernel's large pages where it offers them on request, so
// that its first writing faults once every 2 MiB instead of every 4 KiB.
unsigned char* allocate_pixels(std::size_t bytes);

// Allocates an uninitialised raster. Throws ImageProblem when the size is
// not supported ("too large") or memory runs out.
Raster make_raster(int width, int height, int channels, bool binary = false);

}  // namespace scan

#endif

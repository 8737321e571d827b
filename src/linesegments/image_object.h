// A plain pixel grid for line segment detection: a shared owner of the pixel
// array (or none, when it wraps a caller's buffer), the first pixel, the size.
#ifndef MORVANE_LINESEGMENTS_IMAGE_OBJECT_H
#define MORVANE_LINESEGMENTS_IMAGE_OBJECT_H

#include <boost/checked_delete.hpp>

#include <cstddef>
#include <memory>

namespace geometric {

// Row-major, `width` pixels a row, no padding. Copies share the pixels.
template <typename T>
class ImageObject {
public:
    ImageObject() : data(), pixels(nullptr), width(0), height(0) {}

    // Allocates width * height pixels, left uninitialised as the detector
    // writes every one of them before reading.
    ImageObject(int width_, int height_)
        : data(new T[pixel_count(width_, height_)], boost::checked_array_deleter<T>()),
          pixels(data.get()),
          width(width_),
          height(height_) {}

    // Allocates and fills every pixel with `value`.
    ImageObject(int width_, int height_, T value) : ImageObject(width_, height_) {
        std::size_t n = pixel_count(width_, height_);
        for (std::size_t i = 0; i < n; ++i) pixels[i] = value;
    }

    // Wraps a caller's buffer without owning it: the buffer must outlive every copy.
    ImageObject(T* buffer, int width_, int height_)
        : data(), pixels(buffer), width(width_), height(height_) {}

    T* get_pixels() const { return pixels; }
    int get_width() const { return width; }
    int get_height() const { return height; }
    bool owns_pixels() const { return data != nullptr; }

    T& at(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
    T* row(int y) const { return pixels + static_cast<std::size_t>(y) * width; }

private:
    static std::size_t pixel_count(int w, int h) {
        return (w > 0 && h > 0) ? static_cast<std::size_t>(w) * static_cast<std::size_t>(h) : 0;
    }

    std::shared_ptr<T> data;
    T* pixels;
    int width;
    int height;
};

}  // namespace geometric

#endif

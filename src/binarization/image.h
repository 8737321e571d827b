// geometric::Image<T>: a plain two-dimensional array of numbers (mean,
// deviation or threshold maps) with the window sizes that made it.
#ifndef MORVANE_BINARIZATION_IMAGE_H
#define MORVANE_BINARIZATION_IMAGE_H

#include <cstdlib>

#include "common/geometricexception.h"

namespace geometric {

template <typename T>
class Image {
public:
    Image() : owns_data(true), data(nullptr), width(0), height(0), window_x(0), window_y(0) {}
    // Allocates width * height values, zero-filled; throws Geometricexception
    // when the memory cannot be had.
    Image(int width, int height) : Image() { allocate(width, height); }
    // A view on a caller's array, which is never freed here.
    Image(T* data, int width, int height)
        : owns_data(false), data(data), width(width), height(height), window_x(0), window_y(0) {}
    ~Image() {
        if (owns_data) std::free(data);
    }
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    void allocate(int new_width, int new_height) {
        const size_t count = static_cast<size_t>(new_width > 0 ? new_width : 0) *
                             static_cast<size_t>(new_height > 0 ? new_height : 0);
        T* fresh = nullptr;
        if (count > 0) {
            fresh = static_cast<T*>(std::calloc(count, sizeof(T)));
            if (fresh == nullptr) throw Geometricexception("Allocating memory failed!");
        }
        if (owns_data) std::free(data);
        owns_data = true;
        data = fresh;
        width = count > 0 ? new_width : 0;
        height = count > 0 ? new_height : 0;
    }

    T* get_line(int y) const { return data + static_cast<size_t>(y) * width; }
    T& at(int x, int y) const { return data[static_cast<size_t>(y) * width + x]; }
    T* get_data() const { return data; }
    int get_width() const { return width; }
    int get_height() const { return height; }
    int get_window_x() const { return window_x; }
    int get_window_y() const { return window_y; }
    void set_window(int x, int y) {
        window_x = x;
        window_y = y;
    }

private:
    bool owns_data;
    T* data;
    int width;  // row length
    int height;
    int window_x;
    int window_y;
};

}  // namespace geometric

#endif

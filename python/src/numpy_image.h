// Images between numpy arrays and the library's records. uint8 arrays, HxW
// gray or HxWx3 RGB (red first), are read in place; bool HxW arrays (True is
// ink) are packed into the library's 1-bit rows, padded to 32-bit words, and
// unpacked on the way back. Images the library writes are allocated as
// rasters and handed to numpy without a copy.
#ifndef MORVANE_PYTHON_NUMPY_IMAGE_H
#define MORVANE_PYTHON_NUMPY_IMAGE_H

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include "morvane/morvane.h"
#include "raster.h"

namespace pymorvane {

enum class Kind { Gray, Rgb, Bitonal };

// An image record over a caller's array. Throws TypeError or ValueError,
// with a message naming the problem, for anything but the three kinds above,
// an empty or too large image, and a uint8 array whose rows are not laid out
// one after the other (which cannot be read in place).
class InputImage {
public:
    explicit InputImage(const pybind11::object& image);
    ~InputImage();
    InputImage(const InputImage&) = delete;
    InputImage& operator=(const InputImage&) = delete;

    Kind kind() const { return kind_; }
    // The pixels as the codecs and the library take them.
    const scan::Raster& raster() const { return raster_; }
    ImageCApi record() const { return raster_.c_api(); }

private:
    pybind11::array array_;
    Kind kind_;
    scan::Raster raster_;  // owns the packed copy of a bitonal array, else borrows the array's buffer
};

// A raster of the given kind for the library to write. Throws ValueError
// when the size cannot be allocated as one image (what, e.g. "the page",
// names it in the message), MemoryError when memory runs out.
scan::Raster make_output(Kind kind, int width, int height, const char* what);

// The raster as an array of its kind; uint8 arrays take over its buffer.
pybind11::array to_array(scan::Raster raster);

}  // namespace pymorvane

#endif

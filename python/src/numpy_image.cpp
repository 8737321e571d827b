// numpy arrays as the library's image records, and rasters back as arrays.
#include "numpy_image.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "scan_error.h"

namespace py = pybind11;

namespace pymorvane {
namespace {

std::string shape_of(const py::array& array) { return py::str(array.attr("shape")); }

std::string size_text(long long width, long long height) {
    return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

Kind kind_of(const py::array& array) {
    const py::dtype dtype = array.dtype();
    const bool is_bool = dtype.kind() == 'b';
    if (!is_bool && !(dtype.kind() == 'u' && dtype.itemsize() == 1)) {
        throw py::type_error("image must be a uint8 array (HxW gray or HxWx3 RGB) or a bool array (HxW bitonal), not " +
                             std::string(py::str(static_cast<const py::handle&>(dtype))));
    }
    if (is_bool) {
        if (array.ndim() != 2) throw py::value_error("a bool image must be HxW, not of shape " + shape_of(array));
        return Kind::Bitonal;
    }
    if (array.ndim() == 2) return Kind::Gray;
    if (array.ndim() == 3 && array.shape(2) == 3) return Kind::Rgb;
    throw py::value_error("a uint8 image must be HxW (gray) or HxWx3 (RGB), not of shape " + shape_of(array));
}

}  // namespace

InputImage::InputImage(const py::object& image) {
    if (!py::isinstance<py::array>(image)) {
        throw py::type_error(std::string("image must be a numpy array, not ") + Py_TYPE(image.ptr())->tp_name);
    }
    array_ = py::reinterpret_borrow<py::array>(image);
    kind_ = kind_of(array_);
    const py::ssize_t height = array_.shape(0);
    const py::ssize_t width = array_.shape(1);
    if (height == 0 || width == 0) throw py::value_error("image is empty: shape " + shape_of(array_));
    const bool binary = kind_ == Kind::Bitonal;
    const int channels = kind_ == Kind::Rgb ? 3 : 1;
    if (height > INT_MAX || width > INT_MAX ||
        !scan::raster_size_is_supported(static_cast<int>(width), static_cast<int>(height), channels, binary)) {
        throw py::value_error("image too large: " + size_text(width, height) + ", at most 2 GiB a picture");
    }
    if (binary) {
        raster_ = make_output(kind_, static_cast<int>(width), static_cast<int>(height), "the image");
        const auto pixels = array_.unchecked<bool, 2>();
        for (py::ssize_t y = 0; y < height; ++y) {
            unsigned char* row = raster_.row(static_cast<int>(y));
            std::memset(row, 0, raster_.row_bytes());
            for (py::ssize_t x = 0; x < width; ++x) {
                if (pixels(y, x)) row[x >> 3] |= static_cast<unsigned char>(0x80u >> (x & 7));
            }
        }
        return;
    }
    // The library's rows follow each other without a gap: only such an array is read in place.
    if (!(array_.flags() & py::array::c_style)) {
        throw py::value_error(
            "image must be C-contiguous to be read in place (numpy.ascontiguousarray(image) makes such a copy)");
    }
    raster_.width = static_cast<int>(width);
    raster_.height = static_cast<int>(height);
    raster_.channels = channels;
    // The library only reads its inputs, so a read-only array serves as well.
    raster_.data.reset(static_cast<unsigned char*>(const_cast<void*>(array_.data())));
}

InputImage::~InputImage() {
    if (kind_ != Kind::Bitonal) raster_.data.release();
}

scan::Raster make_output(Kind kind, int width, int height, const char* what) {
    const bool binary = kind == Kind::Bitonal;
    const int channels = kind == Kind::Rgb ? 3 : 1;
    if (!scan::raster_size_is_supported(width, height, channels, binary)) {
        throw py::value_error(std::string(what) + " would be too large: " + size_text(width, height) +
                              ", at most 2 GiB a picture");
    }
    try {
        return scan::make_raster(width, height, channels, binary);
    } catch (const scan::ImageProblem&) {
        throw std::bad_alloc();
    }
}

py::array to_array(scan::Raster raster) {
    if (raster.binary) {
        py::array_t<bool> bitonal({raster.height, raster.width});
        auto pixels = bitonal.mutable_unchecked<2>();
        for (int y = 0; y < raster.height; ++y) {
            const unsigned char* row = raster.row(y);
            for (int x = 0; x < raster.width; ++x) pixels(y, x) = (row[x >> 3] & (0x80u >> (x & 7))) != 0;
        }
        return std::move(bitonal);
    }
    std::vector<py::ssize_t> shape{raster.height, raster.width};
    if (raster.channels == 3) shape.push_back(3);
    py::capsule owner(raster.data.get(), [](void* data) { std::free(data); });
    unsigned char* data = raster.data.release();
    return py::array_t<unsigned char>(shape, data, owner);
}

}  // namespace pymorvane

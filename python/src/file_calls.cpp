// Image files through morvane-scan's codecs (libjpeg-turbo, libpng), so that
// a photo gives the same pixels, and so the same corners, as in the tool.
// Failures leave as scan::ScanError, which Python sees as morvane.ImageFileError.
#include <string>

#include "calls.h"
#include "image_file.h"
#include "numpy_image.h"

namespace py = pybind11;

namespace pymorvane {
namespace {

py::array read_image(const std::string& path, bool orientation) {
    scan::Raster raster;
    {
        py::gil_scoped_release release;
        raster = scan::read_image_file(path, orientation).raster;
    }
    return to_array(std::move(raster));
}

// Written through a temporary file in the target's folder that is renamed
// into place, so that no half-written file is ever seen under the name.
void write_image(const std::string& path, const py::object& image, int png_level, int jpeg_quality) {
    const InputImage input(image);
    if (input.kind() == Kind::Bitonal && scan::format_of_name(path) == scan::ImageFormat::Jpeg) {
        throw py::value_error("cannot write '" + path + "': bitonal images are written as PNG, not JPEG");
    }
    scan::WriteSettings settings;
    settings.png_level = png_level;
    settings.jpeg_quality = jpeg_quality;
    py::gil_scoped_release release;
    scan::write_image_file(path, input.raster(), settings);
}

}  // namespace

void add_file_calls(py::module_& module) {
    module.def("read_image", &read_image, py::arg("path"), py::arg("orientation"));
    module.def("write_image", &write_image, py::arg("path"), py::arg("image"), py::arg("png_level"),
               py::arg("jpeg_quality"));
}

}  // namespace pymorvane

// The two inner engines offered by themselves: the line segment detector and
// the blob calculator.
#include <string>
#include <vector>

#include <pybind11/numpy.h>

#include "calls.h"
#include "library_call.h"
#include "numpy_image.h"

namespace py = pybind11;

namespace pymorvane {
namespace {

const char* kind_name(Kind kind) {
    switch (kind) {
        case Kind::Gray: return "gray";
        case Kind::Rgb: return "RGB";
        case Kind::Bitonal: return "bitonal";
    }
    return "";
}

// An Nx7 array over the detector's own result, freed by clean_lines.
py::array line_segments(const py::object& image) {
    const InputImage input(image);
    if (input.kind() != Kind::Gray) {
        throw py::value_error(std::string("line segments are found in gray images (HxW uint8), not in ") +
                              kind_name(input.kind()) + " ones");
    }
    int count = 0;
    double* lines = call_library([&] {
        Handle<destroy_lsd> detector(lsd_create());
        const ImageCApi record = input.record();
        return search_for_line_segments(detector.get(), &record, &count);
    });
    if (!lines) return py::array_t<double>(std::vector<py::ssize_t>{0, 7});
    py::capsule owner(lines, [](void* data) { clean_lines(static_cast<double*>(data)); });
    return py::array_t<double>({count, 7}, lines, owner);
}

py::tuple label_blobs(const py::object& image, int neighborhood) {
    const InputImage input(image);
    if (input.kind() == Kind::Rgb) {
        throw py::value_error("blobs are formed in bitonal (HxW bool) or gray (HxW uint8) images, not in RGB ones");
    }
    py::array_t<int> labels({input.raster().height, input.raster().width});
    int* label_data = labels.mutable_data();
    const int count = call_library([&] {
        Handle<delete_blob_calculator> calculator(create_blob_calculator());
        set_neighborhood(calculator.get(), neighborhood);
        const ImageCApi record = input.record();
        const int formed = perform_blob_formulation(calculator.get(), &record);
        calculate_label_image(calculator.get(), &record, label_data, 0);
        return formed;
    });
    return py::make_tuple(labels, count);
}

}  // namespace

void add_engine_calls(py::module_& module) {
    module.def("line_segments", &line_segments, py::arg("image"));
    module.def("label_blobs", &label_blobs, py::arg("image"), py::arg("neighborhood"));
}

}  // namespace pymorvane

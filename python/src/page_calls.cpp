// Finding the page, straightening, binarization, the resolution estimate and
// the quality grade, through the corrector, corner search and evaluator
// families and the free functions, as morvane-scan calls them.
#include <array>
#include <cstring>
#include <memory>
#include <optional>

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include "calls.h"
#include "library_call.h"
#include "numpy_image.h"

namespace py = pybind11;

namespace pymorvane {
namespace {

using Corrector = Handle<destroy_corrector>;
using Engine = Handle<destroy_corner_search_enginee>;

// Eight coordinates x0, y0, ..., x3, y3: top-left, top-right, bottom-right, bottom-left.
using CornerValues = std::array<int, 8>;

ControlPointCorners to_record(const CornerValues& values) {
    ControlPointCorners corners{};
    for (int i = 0; i < 4; ++i) {
        corners.x[i] = values[2 * i];
        corners.y[i] = values[2 * i + 1];
    }
    return corners;
}

// A 4x2 array: one row a corner, x then y.
py::object corners_array(const ControlPointCorners& corners) {
    py::array_t<int> array({4, 2});
    auto values = array.mutable_unchecked<2>();
    for (int i = 0; i < 4; ++i) {
        values(i, 0) = corners.x[i];
        values(i, 1) = corners.y[i];
    }
    return std::move(array);
}

// The method travels as the header's own argument type, an enumeration or int.
template <typename Method>
void* create_engine(void* (*create)(Method), int method) {
    return create(static_cast<Method>(method));
}

py::tuple find_with_corrector(const py::object& image, bool edges_only) {
    const InputImage input(image);
    ControlPointCorners corners{};
    bool found = false;
    const int code = call_library([&] {
        Corrector corrector(corrector_create());
        if (edges_only) set_registration_method(corrector.get(), 0);
        const ImageCApi record = input.record();
        const int answer = run_projective_correction(corrector.get(), &record);
        // 1: found and accepted; 2: already straight, the corners still hold.
        found = answer == 1 || answer == 2;
        if (found) obtain_four_corners(corrector.get(), &corners);
        return answer;
    });
    return py::make_tuple(code, found ? corners_array(corners) : py::none());
}

py::tuple find_with_engine(const py::object& image, int method) {
    // Methods from 8 on assemble a search of null strategies, which would end the process.
    if (method < 0 || method > 7) {
        throw py::value_error("engine must be a corner search method from 0 to 7, not " + std::to_string(method));
    }
    const InputImage input(image);
    ControlPointCorners corners{};
    const int code = call_library([&] {
        Engine engine(create_engine(&create_corner_search_enginee, method));
        const ImageCApi record = input.record();
        return perform_corner_searching(engine.get(), &record, &corners);
    });
    return py::make_tuple(code, code > 0 ? corners_array(corners) : py::none());
}

// With a fill colour (one byte a channel of the image) through a corrector,
// which keeps a pointer to it; otherwise through the free functions, which
// take the paper colour from the page's border.
py::array straighten(const py::object& image, const CornerValues& values,
                     const std::optional<std::array<int, 3>>& fill) {
    const InputImage input(image);
    const ControlPointCorners corners = to_record(values);
    std::array<unsigned char, 3> colour{};
    if (fill) {
        for (int i = 0; i < 3; ++i) colour[i] = static_cast<unsigned char>((*fill)[i]);
    }
    const std::unique_ptr<Corrector> corrector =
        fill ? std::make_unique<Corrector>(call_library([] { return corrector_create(); })) : nullptr;
    int width = 0;
    int height = 0;
    call_library([&] {
        if (fill) return obtain_corrected_img_dimension_given_corners(corrector->get(), &corners, &width, &height);
        obtain_output_image_dimension(&corners, &width, &height);
    });
    scan::Raster page = make_output(input.kind(), width, height, "the straightened page");
    call_library([&] {
        const ImageCApi source = input.record();
        ImageCApi output = page.c_api();
        if (!fill) {
            perform_projective_correction(&corners, &source, &output);
            return;
        }
        set_filling_color(corrector->get(), colour.data());
        obtain_corrected_image_given_corners(corrector->get(), &source, &corners, &output);
    });
    return to_array(std::move(page));
}

py::array binarize(const py::object& image, int method, int window, float k) {
    const InputImage input(image);
    scan::Raster bitonal = make_output(Kind::Bitonal, input.raster().width, input.raster().height, "the bitonal image");
    std::memset(bitonal.data.get(), 0, bitonal.byte_count());
    call_library([&] {
        Corrector corrector(corrector_create());
        set_binarization_method(corrector.get(), method);
        set_binarization_window(corrector.get(), window);
        set_binarization_k(corrector.get(), k);
        const ImageCApi source = input.record();
        ImageCApi output = bitonal.c_api();
        obtain_binarized_corrected_image(corrector.get(), &source, &output);
    });
    return to_array(std::move(bitonal));
}

// A fresh corrector has no bound input, so the image is analysed alone.
int resolution(const py::object& image) {
    const InputImage input(image);
    return call_library([&] {
        Corrector corrector(corrector_create());
        const ImageCApi record = input.record();
        int dots_per_inch = 0;
        estimate_spatial_resolution(corrector.get(), &record, &dots_per_inch);
        return dots_per_inch;
    });
}

// Without corners (None) the whole image is graded.
double quality(const py::object& image, const std::optional<CornerValues>& values) {
    const InputImage input(image);
    const std::optional<ControlPointCorners> corners =
        values ? std::optional<ControlPointCorners>(to_record(*values)) : std::nullopt;
    return call_library([&] {
        Handle<destroy_image_quality_evaluator> evaluator(create_image_quality_evaluator());
        const ImageCApi record = input.record();
        return evaluate_image_quality_given_corners(evaluator.get(), &record, corners ? &*corners : nullptr);
    });
}

}  // namespace

void add_page_calls(py::module_& module) {
    module.def("find_with_corrector", &find_with_corrector, py::arg("image"), py::arg("edges_only"));
    module.def("find_with_engine", &find_with_engine, py::arg("image"), py::arg("method"));
    module.def("straighten", &straighten, py::arg("image"), py::arg("corners"), py::arg("fill"));
    module.def("binarize", &binarize, py::arg("image"), py::arg("method"), py::arg("window"), py::arg("k"));
    module.def("resolution", &resolution, py::arg("image"));
    module.def("quality", &quality, py::arg("image"), py::arg("corners"));
}

}  // namespace pymorvane

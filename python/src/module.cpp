// The extension module _morvane: the library's flat interface on numpy arrays.
#include <pybind11/pybind11.h>

#include "calls.h"
#include "library_call.h"
#include "morvane/morvane.h"
#include "scan_error.h"

namespace py = pybind11;

PYBIND11_MODULE(_morvane, module) {
    module.doc() = "The morvane library on numpy arrays; use the package morvane.";
    py::register_exception<pymorvane::LibraryError>(module, "MorvaneError", PyExc_RuntimeError);
    py::register_exception<scan::ScanError>(module, "ImageFileError", PyExc_OSError);
    pymorvane::add_page_calls(module);
    pymorvane::add_engine_calls(module);
    pymorvane::add_file_calls(module);
    module.def("library_version", [] { return std::string(morvane_get_version_number()); });
}

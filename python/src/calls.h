// The functions of the module _morvane, added family by family. The public
// functions, with their keyword arguments and documentation, are the Python
// package's (morvane/__init__.py); these take its checked arguments.
#ifndef MORVANE_PYTHON_CALLS_H
#define MORVANE_PYTHON_CALLS_H

#include <pybind11/pybind11.h>

namespace pymorvane {

void add_page_calls(pybind11::module_& module);
void add_engine_calls(pybind11::module_& module);
void add_file_calls(pybind11::module_& module);

}  // namespace pymorvane

#endif

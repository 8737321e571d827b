// Stands in for corrector_route.cpp when the library's header does not yet
// declare the corrector family: the tool says so instead of calling.
#include "page_finder.h"

namespace scan {

bool corrector_available() { return false; }

FindOutcome find_with_corrector(const Raster&, bool) {
    throw ImageProblem("page finding is not available in this build");
}

Raster rectify_with_fill(const Raster&, const ControlPointCorners&, const unsigned char*) {
    throw ImageProblem("--fill is not available in this build");
}

Raster binarize_page(const Raster&, int, int, float) {
    throw ImageProblem("--binarize is not available in this build");
}

}  // namespace scan

// Stands in for engine_route.cpp when the library's header does not yet
// declare the corner search family.
#include "page_finder.h"

namespace scan {

bool corner_search_available() { return false; }

FindOutcome find_with_engine(int, const Raster&) {
    throw ImageProblem("--engine is not available in this build");
}

}  // namespace scan

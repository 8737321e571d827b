// Methods the library gains later: binarization of the page and the
// resolution estimate read results that the searches do not produce yet, so
// this build offers neither rather than report made-up values.
#include "page_finder.h"

namespace scan {

bool binarization_available(const std::string&) { return false; }

bool resolution_estimate_available() { return false; }

}  // namespace scan

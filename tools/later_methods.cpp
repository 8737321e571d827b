// Methods the library gains one by one: of the binarizations the Sauvola
// method is here, the multi-scale one not yet; the resolution estimate reads
// a page analysis that the searches do not produce yet. This build offers
// what it has rather than report made-up values.
#include "page_finder.h"

namespace scan {

bool binarization_available(const std::string& method) { return method == "sauvola"; }

bool resolution_estimate_available() { return false; }

}  // namespace scan

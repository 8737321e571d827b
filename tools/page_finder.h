// The library calls of morvane-scan: finding the page's corners,
// rectifying, binarizing and estimating the resolution.
#ifndef MORVANE_TOOLS_PAGE_FINDER_H
#define MORVANE_TOOLS_PAGE_FINDER_H

#include <string>

#include "library_call.h"
#include "morvane/morvane.h"
#include "raster.h"

namespace scan {

struct FindOutcome {
    int code = 0;        // the library's return code
    bool found = false;  // the corners below are a page to rectify
    ControlPointCorners corners{};
};

// The corrector family: hybrid search, or the page edges alone; by the
// classic edge search instead of the staged one when `classic_edges`.
FindOutcome find_with_corrector(const Raster& image, bool edges_only, bool classic_edges = false);
// Rectifies with the caller's corners and fill colour (one byte a channel).
Raster rectify_with_fill(const Raster& image, const ControlPointCorners& corners, const unsigned char* fill);

// The corner search family, method 0 to 7.
FindOutcome find_with_engine(int method, const Raster& image);

// The black-and-white form of a straightened page (1 bit a pixel, a set bit
// is ink) by the library's method 0 (Sauvola) or 1 (multi-scale). window
// and k take the library's defaults when window is 0 and k negative.
Raster binarize_page(const Raster& page, int method, int window, float k);

// Rectifies with the free functions; the fill colour comes from the page's
// border. Throws ImageProblem when the page would be too large.
Raster rectify(const Raster& image, const ControlPointCorners& corners);

// The resolution of the image's text in dots per inch, the image analysed
// alone; the library answers 300 when its analysis finds no text.
int estimate_resolution(const Raster& image);

// The quality grade in [0, 1] of the page inside `page`, or of the whole
// image when `page` is null.
double grade_quality(const Raster& image, const ControlPointCorners* page);

// The image's own corners: rectifying with them gives the whole image.
ControlPointCorners whole_image_corners(const Raster& image);

// The corrector's return code in words ("corners found and accepted"). Code
// 3 names the searches that ran: the edges alone, or the text too.
std::string meaning_of_corrector_code(int code, bool text_searched);

}  // namespace scan

#endif

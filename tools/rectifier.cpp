// Rectification through the library's free functions, and the words for the
// corrector's return codes.
#include <string>

#include "page_finder.h"
#include "scan_error.h"

namespace scan {

Raster rectify(const Raster& image, const ControlPointCorners& corners) {
    int width = 0;
    int height = 0;
    call_library([&] { return obtain_output_image_dimension(&corners, &width, &height); });
    if (!raster_size_is_supported(width, height, image.channels, false)) {
        throw ImageProblem("the corners give a page too large for memory (" + std::to_string(width) + " x " +
                           std::to_string(height) + " pixels)");
    }
    Raster page = make_raster(width, height, image.channels);
    const ImageCApi input = image.c_api();
    ImageCApi output = page.c_api();
    call_library([&] { return perform_projective_correction(&corners, &input, &output); });
    return page;
}

ControlPointCorners whole_image_corners(const Raster& image) {
    const int right = image.width - 1;
    const int bottom = image.height - 1;
    return ControlPointCorners{{0, right, right, 0}, {0, 0, bottom, bottom}};
}

std::string meaning_of_corrector_code(int code) {
    switch (code) {
        case 1: return "corners found and accepted";
        case 2: return "the page is already straight";
        case 3: return "no usable result: neither edges nor text gave a page";
        case 0: return "the search failed or the image was refused";
        case -3: return "a corner lies outside the image";
        case -4: return "the quadrilateral is too small";
        case -5: return "the quadrilateral is not convex or a corner angle is too small";
        case -6: return "the output would be too small compared with the input";
        case -7: return "the corners from the vanishing points failed their examination";
        default: return "unknown return code";
    }
}

}  // namespace scan

// Page finding, filled rectification and binarization through the
// corrector family.
#include "page_finder.h"

#include <cstring>

namespace scan {
namespace {

// One handle for one image, destroyed on every path.
class Corrector {
public:
    Corrector() : handle_(corrector_create()) {
        if (!handle_) throw ImageProblem("not enough memory");
    }
    ~Corrector() { destroy_corrector(handle_); }
    Corrector(const Corrector&) = delete;
    Corrector& operator=(const Corrector&) = delete;
    void* handle() const { return handle_; }

private:
    void* handle_;
};

}  // namespace

bool corrector_available() { return true; }

FindOutcome find_with_corrector(const Raster& image, bool edges_only) {
    return call_library([&] {
        Corrector corrector;
        if (edges_only) set_registration_method(corrector.handle(), 0);
        const ImageCApi input = image.c_api();
        FindOutcome outcome;
        outcome.code = run_projective_correction(corrector.handle(), &input);
        // 1: found and accepted; 2: already straight, the corners still hold.
        outcome.found = outcome.code == 1 || outcome.code == 2;
        if (outcome.found) obtain_four_corners(corrector.handle(), &outcome.corners);
        return outcome;
    });
}

Raster rectify_with_fill(const Raster& image, const ControlPointCorners& corners, const unsigned char* fill) {
    return call_library([&] {
        Corrector corrector;
        // The handle keeps the pointer, not the bytes: they live until the end.
        unsigned char colour[3] = {fill[0], fill[1], fill[2]};
        set_filling_color(corrector.handle(), colour);
        int width = 0;
        int height = 0;
        obtain_corrected_img_dimension_given_corners(corrector.handle(), &corners, &width, &height);
        if (!raster_size_is_supported(width, height, image.channels, false)) {
            throw ImageProblem("the corners give a page too large for memory (" + std::to_string(width) + " x " +
                               std::to_string(height) + " pixels)");
        }
        Raster page = make_raster(width, height, image.channels);
        const ImageCApi input = image.c_api();
        ImageCApi output = page.c_api();
        obtain_corrected_image_given_corners(corrector.handle(), &input, &corners, &output);
        return page;
    });
}

Raster binarize_page(const Raster& page, int method, int window, float k) {
    return call_library([&] {
        Corrector corrector;
        set_binarization_method(corrector.handle(), method);
        if (window > 0) set_binarization_window(corrector.handle(), window);
        if (k >= 0.0f) set_binarization_k(corrector.handle(), k);
        Raster bitonal = make_raster(page.width, page.height, 1, true);
        std::memset(bitonal.data.get(), 0, bitonal.byte_count());
        const ImageCApi input = page.c_api();
        ImageCApi output = bitonal.c_api();
        obtain_binarized_corrected_image(corrector.handle(), &input, &output);
        return bitonal;
    });
}

}  // namespace scan

// The library calls of morvane-scan: finding the page through the corrector
// or the corner search family, rectifying, binarizing, estimating.
#include "page_finder.h"

#include <cstring>
#include <string>

#include "scan_error.h"

namespace scan {
namespace {

// One library handle for one call, destroyed on every path; no handle means
// no memory.
class Handle {
public:
    Handle(void* handle, void (*destroy)(void*)) : handle_(handle), destroy_(destroy) {
        if (!handle_) throw ImageProblem("not enough memory");
    }
    ~Handle() { destroy_(handle_); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    void* get() const { return handle_; }

private:
    void* handle_;
    void (*destroy_)(void*);
};

Handle corrector() { return Handle(corrector_create(), &destroy_corrector); }

// The method travels as the header's own argument type, an enumeration or int.
template <typename Method>
void* create_engine(void* (*create)(Method), int method) {
    return create(static_cast<Method>(method));
}

Handle engine(int method) {
    return Handle(create_engine(&create_corner_search_enginee, method), &destroy_corner_search_enginee);
}

void check_page_size(int width, int height, int channels) {
    if (!raster_size_is_supported(width, height, channels, false)) {
        throw ImageProblem("the corners give a page too large for memory (" + std::to_string(width) + " x " +
                           std::to_string(height) + " pixels)");
    }
}

}  // namespace

FindOutcome find_with_corrector(const Raster& image, bool edges_only, bool classic_edges) {
    return call_library([&] {
        const ImageCApi input = image.c_api();
        FindOutcome outcome;
        {
            const Handle handle = corrector();
            if (edges_only) set_registration_method(handle.get(), 0);
            if (classic_edges) set_line_registration(handle.get(), 0);
            outcome.code = run_projective_correction(handle.get(), &input);
            // 1: found and accepted; 2: already straight, the corners still hold.
            outcome.found = outcome.code == 1 || outcome.code == 2;
            if (outcome.found) obtain_four_corners(handle.get(), &outcome.corners);
        }
        if (outcome.code == 0) {
            // 0 is a refused image, or a failure that the run caught and
            // hid, most likely memory running out. The same searches by the
            // functions that let failures through tell which: a refused
            // image ends them with 3 and no exception.
            const Handle probe = corrector();
            if (edges_only) set_registration_method(probe.get(), 0);
            if (classic_edges) set_line_registration(probe.get(), 0);
            run_edge_searching(probe.get(), &input);
            if (!edges_only) run_feature_searching(probe.get());
        }
        return outcome;
    });
}

FindOutcome find_with_engine(int method, const Raster& image) {
    return call_library([&] {
        const Handle handle = engine(method);
        const ImageCApi input = image.c_api();
        FindOutcome outcome;
        outcome.code = perform_corner_searching(handle.get(), &input, &outcome.corners);
        outcome.found = outcome.code > 0;
        return outcome;
    });
}

Raster rectify(const Raster& image, const ControlPointCorners& corners) {
    int width = 0;
    int height = 0;
    call_library([&] { return obtain_output_image_dimension(&corners, &width, &height); });
    check_page_size(width, height, image.channels);
    Raster page = make_raster(width, height, image.channels);
    const ImageCApi input = image.c_api();
    ImageCApi output = page.c_api();
    call_library([&] { return perform_projective_correction(&corners, &input, &output); });
    return page;
}

Raster rectify_with_fill(const Raster& image, const ControlPointCorners& corners, const unsigned char* fill) {
    return call_library([&] {
        const Handle handle = corrector();
        // The handle keeps the pointer, not the bytes: they live until the end.
        unsigned char colour[3] = {fill[0], fill[1], fill[2]};
        set_filling_color(handle.get(), colour);
        int width = 0;
        int height = 0;
        obtain_corrected_img_dimension_given_corners(handle.get(), &corners, &width, &height);
        check_page_size(width, height, image.channels);
        Raster page = make_raster(width, height, image.channels);
        const ImageCApi input = image.c_api();
        ImageCApi output = page.c_api();
        obtain_corrected_image_given_corners(handle.get(), &input, &corners, &output);
        return page;
    });
}

Raster binarize_page(const Raster& page, int method, int window, float k) {
    return call_library([&] {
        const Handle handle = corrector();
        set_binarization_method(handle.get(), method);
        if (window > 0) set_binarization_window(handle.get(), window);
        if (k >= 0.0f) set_binarization_k(handle.get(), k);
        Raster bitonal = make_raster(page.width, page.height, 1, true);
        std::memset(bitonal.data.get(), 0, bitonal.byte_count());
        const ImageCApi input = page.c_api();
        ImageCApi output = bitonal.c_api();
        obtain_binarized_corrected_image(handle.get(), &input, &output);
        return bitonal;
    });
}

int estimate_resolution(const Raster& image) {
    return call_library([&] {
        const Handle handle = corrector();
        const ImageCApi input = image.c_api();
        int dots_per_inch = 0;
        estimate_spatial_resolution(handle.get(), &input, &dots_per_inch);
        return dots_per_inch;
    });
}

double grade_quality(const Raster& image, const ControlPointCorners* page) {
    return call_library([&] {
        const Handle handle(create_image_quality_evaluator(), &destroy_image_quality_evaluator);
        const ImageCApi input = image.c_api();
        return evaluate_image_quality_given_corners(handle.get(), &input, page);
    });
}

ControlPointCorners whole_image_corners(const Raster& image) {
    const int right = image.width - 1;
    const int bottom = image.height - 1;
    return ControlPointCorners{{0, right, right, 0}, {0, 0, bottom, bottom}};
}

std::string meaning_of_corrector_code(int code, bool text_searched) {
    switch (code) {
        case 1: return "corners found and accepted";
        case 2: return "the page is already straight";
        case 3:
            return text_searched ? "no usable result: neither edges nor text gave a page"
                                 : "no usable result: the page's edges gave no page";
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

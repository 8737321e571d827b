// Fuzz target of the corrector family: setters with values at, inside and
// beyond their limits, a run by either route (or none), the corners, the
// vanishing points, the sizes, and corrected images into buffers of the
// stated sizes, with found corners and with the caller's own.
#include "fuzz_input.h"

namespace {

// An output of the stated size and kind for the corrector's current corners;
// false when it would be larger than a caller would allocate for a page.
bool allocate(int width, int height, const ImageCApi& like, std::vector<unsigned char>& buffer, ImageCApi& output) {
    fuzz::require(width >= 1 && height >= 1, "a corrected size is at least one pixel");
    const size_t bytes = fuzz::buffer_size(width, height, like.channels, like.is_binary);
    if (bytes > fuzz::kMaxOutputBytes) return false;
    buffer.assign(bytes, 0);
    output = like;
    output.width = width;
    output.height = height;
    output.data = buffer.data();
    return true;
}

void check_code(int code) {
    fuzz::require(code == 0 || code == 1 || code == 2 || code == 3 || (code <= -3 && code >= -7),
                  "a run answers a code of the table");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Reader in(data, size);
    fuzz::Page page = fuzz::read_page(in);

    const uint8_t setters = in.u8();
    const int method = static_cast<int8_t>(in.u8());
    const int corner_type = static_cast<int8_t>(in.u8()) % 3;
    const float horizontal = in.unit(-1.0f, 10.0f), vertical = in.unit(-1.0f, 10.0f);
    const float min_angle = in.unit(-10.0f, 100.0f);
    const float dimension_fraction = in.unit(-0.5f, 1.5f);
    const float area_fraction = in.unit(-0.5f, 1.5f);
    const int binarization_method = static_cast<int8_t>(in.u8());
    const float k = in.unit(-0.5f, 1.5f);
    const int window = static_cast<int16_t>(in.u16());
    unsigned char fill[3] = {in.u8(), in.u8(), in.u8()};
    const uint8_t route = in.u8();
    const uint8_t after = in.u8();
    const ControlPointCorners reset = fuzz::read_corners(in, page.width, page.height);
    const ControlPointCorners given = fuzz::read_corners(in, page.width, page.height);
    fuzz::finish_page(in, page);

    ImageCApi input = page.record();
    const std::vector<unsigned char> before = page.pixels;
    void* corrector = corrector_create();
    fuzz::require(corrector != nullptr, "corrector_create gives a handle");

    if (setters & 1) set_registration_method(corrector, method);
    if (setters & 2) set_corner_type(corrector, corner_type);
    if (setters & 4) set_angle_disparity(corrector, horizontal, vertical);
    if (setters & 8) set_minimum_quadrilateral_angle(corrector, min_angle);
    if (setters & 16) set_minimum_largest_dimension_percentage_threshold(corrector, dimension_fraction);
    if (setters & 32) set_minimum_aoi_area(corrector, area_fraction);
    if (setters & 64) set_within_the_image(corrector);
    if (setters & 128) {
        set_binarization_method(corrector, binarization_method);
        set_binarization_k(corrector, k);
        set_binarization_window(corrector, window);
        set_filling_color(corrector, fill);
    }
    if (after & 64) set_filling_color(corrector, nullptr);
    // The classic edge search instead of the staged one.
    if (route & 4) set_line_registration(corrector, 0);

    // Route 0: one run; 1: edges, then text; 2: edges only; 3: no run, the
    // caller's corners alone.
    bool searched = false;
    int code = 0;
    switch (route % 4) {
        case 0:
            code = run_projective_correction(corrector, &input);
            check_code(code);
            searched = true;
            break;
        case 1:
        case 2: {
            bool edge_ran = false;
            MORVANE_FUZZ_CALL((code = run_edge_searching(corrector, &input), edge_ran = true));
            if (edge_ran) {
                check_code(code);
                searched = true;
                if (route % 4 == 1) {
                    MORVANE_FUZZ_CALL(code = run_feature_searching(corrector));
                    check_code(code);
                }
            }
            break;
        }
        default: break;
    }

    std::vector<unsigned char> buffer;
    ImageCApi output;
    int width = 0, height = 0;
    if (searched) {
        ControlPointCorners found;
        obtain_four_corners(corrector, &found);
        VanishingPointsCApi points;
        obtain_vanishing_point(corrector, &points);
        obtain_corrected_img_dimension(corrector, &width, &height);
        if (allocate(width, height, input, buffer, output)) {
            MORVANE_FUZZ_CALL(obtain_corrected_image(corrector, &output));
            fuzz::require(output.data == buffer.data(), "the output keeps the caller's buffer");
        }
        obtain_downsampled_corrected_img_dimension(corrector, &width, &height);
        ImageCApi gray = input;
        gray.channels = 1;
        gray.is_binary = 0;
        if (allocate(width, height, gray, buffer, output)) obtain_downsampled_corrected_image(corrector, &output);
        int resolution = 0;
        MORVANE_FUZZ_CALL(estimate_spatial_resolution(corrector, &input, &resolution));
        if (after & 1) {
            // The caller's corners replace the found ones.
            reset_four_corners(corrector, &reset);
            obtain_corrected_img_dimension(corrector, &width, &height);
            if (allocate(width, height, input, buffer, output)) MORVANE_FUZZ_CALL(obtain_corrected_image(corrector, &output));
        }
        if (after & 2) {
            std::vector<unsigned char> binary;
            ImageCApi bits = output;
            bits.is_binary = 1;
            bits.channels = 1;
            binary.assign(fuzz::buffer_size(bits.width, bits.height, 1, 1), 0);
            bits.data = binary.data();
            if (!buffer.empty()) MORVANE_FUZZ_CALL(obtain_binarized_corrected_image(corrector, &output, &bits));
        }
    }
    // The _given_corners variants, after a run or on a fresh handle.
    if (!searched || (after & 4)) {
        obtain_corrected_img_dimension_given_corners(corrector, &given, &width, &height);
        int again_w = 0, again_h = 0;
        obtain_output_image_dimension(&given, &again_w, &again_h);
        fuzz::require(width == again_w && height == again_h, "the corrector's size rule is the free function's");
        if (allocate(width, height, input, buffer, output))
            MORVANE_FUZZ_CALL(obtain_corrected_image_given_corners(corrector, &input, &given, &output));
    }
    destroy_corrector(corrector);
    fuzz::require(page.pixels == before, "the input is never written");
    return 0;
}

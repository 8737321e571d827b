// Fuzz target of the corner search family: an engine of one of the methods a
// caller may pass (never 8 or above), the setters on engines that have a
// search object (never on method 0), one or two searches, and the corners.
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Reader in(data, size);
    fuzz::Page page = fuzz::read_page(in);
    static const int kMethods[] = {0, 1, 2, 3, 4, 5, 6, 7};
    const int method = kMethods[in.u8() % 8];
    const uint8_t setters = in.u8();
    const float area = in.unit(-0.5f, 1.5f);
    const float angle = in.unit(0.0f, 120.0f);
    const float share = in.unit(-0.5f, 1.5f);
    const uint8_t runs = in.u8();
    fuzz::finish_page(in, page);

    void* engine = create_corner_search_enginee(method);
    fuzz::require(engine != nullptr, "create_corner_search_enginee gives a handle");
    if (method != 0) {
        if (setters & 1) set_corner_detection_minimum_quadrilateral_area(engine, area);
        if (setters & 2) set_corner_detection_minimum_quadrilateral_angle(engine, angle);
        if (setters & 4) set_corner_detection_minimum_largest_dimension_percentage_threshold(engine, share);
        if (setters & 8) set_corner_detection_within_image(engine);
    }
    const ImageCApi image = page.record();
    const std::vector<unsigned char> before = page.pixels;
    ControlPointCorners first{}, second{};
    int code = 0, again = 0;
    bool thrown = true;
    MORVANE_FUZZ_CALL((code = perform_corner_searching(engine, &image, &first), thrown = false));
    if (!thrown) {
        fuzz::require(code == 1 || code == -1 || code == -3 || code == -4 || code == -5 || code == -6,
                      "the answer is 1 or a documented failure code");
        // The combined chain keeps the last chain tried, so its second run may differ.
        if ((runs & 1) && method != 3) {
            again = perform_corner_searching(engine, &image, &second);
            fuzz::require(again == code, "a second search on the same engine answers alike");
            fuzz::require(std::memcmp(&first, &second, sizeof first) == 0, "and gives the same corners");
        }
    }
    destroy_corner_search_enginee(engine);
    destroy_corner_search_enginee(nullptr);
    fuzz::require(page.pixels == before, "the input is never written");
    return 0;
}

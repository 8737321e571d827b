// Fuzz target of the evaluator family: the grade of a page, of the page
// inside corners of every kind, or of a four-channel record (refused), and
// the same grade again from the same evaluator.
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Reader in(data, size);
    fuzz::Page page = fuzz::read_page(in);
    const uint8_t choice = in.u8();
    const ControlPointCorners corners = fuzz::read_corners(in, page.width, page.height);
    fuzz::finish_page(in, page);

    void* evaluator = create_image_quality_evaluator();
    fuzz::require(evaluator != nullptr, "create_image_quality_evaluator gives a handle");
    ImageCApi image = page.record();
    // A four-channel record over the first quarter of a gray page's bytes.
    const bool four_channels = (choice & 4) && page.kind == fuzz::kGray && page.width >= 4;
    if (four_channels) image.width /= 4, image.channels = 4;
    const ControlPointCorners* given = (choice & 1) ? &corners : nullptr;
    const std::vector<unsigned char> before = page.pixels;
    double first = -1.0;
    bool thrown = true;
    MORVANE_FUZZ_CALL((first = evaluate_image_quality_given_corners(evaluator, &image, given), thrown = false));
    fuzz::require(thrown == four_channels, "only a four-channel record is refused");
    if (!thrown) {
        fuzz::require(first >= 0.0 && first <= 1.0, "the grade lies in [0, 1]");
        const double again = given != nullptr ? evaluate_image_quality_given_corners(evaluator, &image, given)
                                              : evaluate_image_quality(evaluator, &image);
        fuzz::require(again == first, "the same evaluator grades the same image alike");
    }
    destroy_image_quality_evaluator(evaluator);
    destroy_image_quality_evaluator(nullptr);
    fuzz::require(page.pixels == before, "the input is never written");
    return 0;
}

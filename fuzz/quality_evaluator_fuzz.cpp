// Fuzz target of the evaluator family: the grade of a gray, colour or 1-bit
// page, whole or inside corners of every kind.
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Reader in(data, size);
    fuzz::Page page = fuzz::read_page(in);
    const bool given = (in.u8() & 1) != 0;
    const ControlPointCorners corners = fuzz::read_corners(in, page.width, page.height);
    fuzz::finish_page(in, page);
    const ImageCApi image = page.record();
    void* evaluator = create_image_quality_evaluator();
    double grade = -1.0;
    MORVANE_FUZZ_CALL(grade = evaluate_image_quality_given_corners(evaluator, &image, given ? &corners : nullptr));
    fuzz::require(grade >= 0.0 && grade <= 1.0, "every page gets a grade in [0, 1]");
    destroy_image_quality_evaluator(evaluator);
    destroy_image_quality_evaluator(nullptr);
    return 0;
}

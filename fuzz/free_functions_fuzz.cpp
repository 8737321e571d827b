// Fuzz target of the free functions: the output size for any four corners
// (inside, near, far outside the image, or collapsed onto a few points), and
// the warp of gray, RGB and 1-bit pages into an output of that size.
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Reader in(data, size);
    fuzz::Page page = fuzz::read_page(in);
    const ControlPointCorners corners = fuzz::read_corners(in, page.width, page.height);
    // Any int at all for the size rule, which promises to throw nothing.
    ControlPointCorners wild;
    for (int i = 0; i < 4; ++i) {
        wild.x[i] = in.i32();
        wild.y[i] = in.i32();
    }
    const uint8_t choice = in.u8();
    fuzz::finish_page(in, page);

    int width = 0, height = 0;
    fuzz::require(obtain_output_image_dimension(&wild, &width, &height) == 0, "size rule answers 0");
    fuzz::require(width >= 1 && height >= 1, "size rule gives at least one pixel for any corners");

    fuzz::require(obtain_output_image_dimension(&corners, &width, &height) == 0, "size rule answers 0");
    fuzz::require(width >= 1 && height >= 1, "size rule gives at least one pixel");
    ImageCApi input = page.record();
    const std::vector<unsigned char> before = page.pixels;
    const size_t bytes = fuzz::buffer_size(width, height, input.channels, input.is_binary);
    if (bytes > fuzz::kMaxOutputBytes) return 0;

    // Mostly an output of the right kind; sometimes a wrong one, which must be
    // refused with an exception rather than written past its end.
    ImageCApi output = input;
    output.width = width;
    output.height = height;
    if ((choice & 7) == 7) output.channels = input.channels == 3 ? 1 : 3;
    if ((choice & 7) == 6 && height > 1) output.height = height - 1;
    std::vector<unsigned char> buffer(fuzz::buffer_size(output.width, output.height, output.channels, output.is_binary));
    output.data = buffer.data();
    int answer = -1;
    MORVANE_FUZZ_CALL(answer = perform_projective_correction(&corners, &input, &output));
    fuzz::require(answer == 0 || answer == -1, "the warp answers 0 when it returns");
    fuzz::require(output.data == buffer.data(), "the output keeps the caller's buffer");
    fuzz::require(page.pixels == before, "the input is never written");
    return 0;
}

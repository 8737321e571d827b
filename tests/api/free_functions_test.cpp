// The handle-free functions through the shared library: the refusal of an
// output of another size, with its text. The C consumer and the fuzz target
// run the warp itself; the reference tests check its pixels.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "morvane/morvane.h"
#include "support/errors.h"

namespace {

ControlPointCorners own_corners(int width, int height) {
    return ControlPointCorners{{0, width - 1, width - 1, 0}, {0, 0, height - 1, height - 1}};
}

ImageCApi record(int width, int height, int channels, int is_binary, unsigned char* data) {
    return ImageCApi{width, height, 0, 0, channels, is_binary, data};
}

TEST(FreeFunctions, OutputOfAnotherSizeIsRefusedWithAText) {
    std::vector<unsigned char> input(20 * 20, 128), output(20 * 20, 0);
    const ImageCApi in = record(20, 20, 1, 0, input.data());
    ImageCApi out = record(19, 20, 1, 0, output.data());
    const ControlPointCorners corners = own_corners(20, 20);
    EXPECT_EQ(support::thrown_text<const char*>([&] { perform_projective_correction(&corners, &in, &out); }),
              "output image does not match the corrected image dimensions or the input type");
}

}  // namespace

// The handle-free functions through the shared library: size rule, own
// corners, binary images and the refusal of a wrong output.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "morvane/morvane.h"

namespace {

ControlPointCorners own_corners(int width, int height) {
    return ControlPointCorners{{0, width - 1, width - 1, 0}, {0, 0, height - 1, height - 1}};
}

ImageCApi record(int width, int height, int channels, int is_binary, unsigned char* data) {
    return ImageCApi{width, height, 0, 0, channels, is_binary, data};
}

// Own corners: output (u, v) reads near ((W - 1) u / W, (H - 1) v / H); the
// first column and row and the last column are copies at the floor.
TEST(FreeFunctions, OwnCornersWriteAnOutputOfTheInputSize) {
    for (int channels : {1, 3}) {
        const int w = 33, h = 21;
        std::vector<unsigned char> input(static_cast<size_t>(w * h * channels));
        for (size_t i = 0; i < input.size(); ++i) input[i] = static_cast<unsigned char>(i * 31 + 7);
        const std::vector<unsigned char> before = input;
        std::vector<unsigned char> output(input.size(), 0);
        const ImageCApi in = record(w, h, channels, 0, input.data());
        ImageCApi out = record(w, h, channels, 0, output.data());
        const ControlPointCorners corners = own_corners(w, h);
        EXPECT_EQ(perform_projective_correction(&corners, &in, &out), 0);
        EXPECT_EQ(out.data, output.data());
        EXPECT_EQ(out.x_resolution, 300);
        EXPECT_EQ(out.y_resolution, 300);
        EXPECT_EQ(input, before);
        for (int v = 0; v < h; ++v) {
            const int yi = (h - 1) * v / h;
            for (int c = 0; c < channels; ++c) {
                EXPECT_EQ(output[(v * w) * channels + c], input[(yi * w) * channels + c]);
                EXPECT_EQ(output[(v * w + w - 1) * channels + c], input[(yi * w + w - 2) * channels + c]);
            }
        }
    }
}

// A 1-bit image travels as 1-bit both ways; the caller's input bits are not
// touched although the library warps a gray copy.
TEST(FreeFunctions, BinaryImageStaysBinary) {
    const int w = 40, h = 10;
    const int row = 8;  // 40 bits padded to two 32-bit words
    std::vector<unsigned char> input(static_cast<size_t>(row * h), 0);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            if ((x / 3 + y) % 2 == 0) input[static_cast<size_t>(y * row + x / 8)] |= static_cast<unsigned char>(0x80 >> (x % 8));
    const std::vector<unsigned char> before = input;
    std::vector<unsigned char> output(input.size(), 0);
    const ImageCApi in = record(w, h, 1, 1, input.data());
    ImageCApi out = record(w, h, 1, 1, output.data());
    const ControlPointCorners corners = own_corners(w, h);
    perform_projective_correction(&corners, &in, &out);
    EXPECT_EQ(input, before);
    EXPECT_EQ(out.is_binary, 1);
    auto bit = [row](const std::vector<unsigned char>& image, int x, int y) {
        return (image[static_cast<size_t>(y * row + x / 8)] >> (7 - x % 8)) & 1;
    };
    for (int v = 0; v < h; ++v)
        for (int u = 0; u < w; ++u) ASSERT_EQ(bit(output, u, v), bit(input, (w - 1) * u / w, (h - 1) * v / h));
}

TEST(FreeFunctions, OutputOfAnotherSizeIsRefusedWithAText) {
    std::vector<unsigned char> input(20 * 20, 128), output(20 * 20, 0);
    const ImageCApi in = record(20, 20, 1, 0, input.data());
    ImageCApi out = record(19, 20, 1, 0, output.data());
    const ControlPointCorners corners = own_corners(20, 20);
    try {
        perform_projective_correction(&corners, &in, &out);
        FAIL() << "a smaller output must be refused";
    } catch (const char* text) {
        EXPECT_EQ(std::string(text), "output image does not match the corrected image dimensions or the input type");
    }
}

// Corners past the image: the outside gets the paper colour of the strips
// inside the page's edges, here the uniform page value.
TEST(FreeFunctions, OutsideGetsThePaperColour) {
    std::vector<unsigned char> input(50 * 40, 180);
    const ImageCApi in = record(50, 40, 1, 0, input.data());
    const ControlPointCorners corners = {{-10, 49, 49, -10}, {0, 0, 39, 39}};
    int width = 0, height = 0;
    obtain_output_image_dimension(&corners, &width, &height);
    std::vector<unsigned char> output(static_cast<size_t>(width * height), 0);
    ImageCApi out = record(width, height, 1, 0, output.data());
    perform_projective_correction(&corners, &in, &out);
    for (unsigned char p : output) ASSERT_EQ(p, 180);
}

}  // namespace

// Inputs that the fuzz targets found, rebuilt in code: each case once went
// wrong and must keep working.
#include <gtest/gtest.h>

#include <vector>

#include "morvane/morvane.h"

// A 1-bit page 150 pixels wide (20 bytes a row, padding bits 150 to 159)
// whose ink runs to the last column: labels stay inside the caller's array,
// whose guard entries after the last row must keep their value, whether the
// padding bits are clear or all set. With set padding bits the run went past
// the width and the label of the last row was written past the array's end.
TEST(FuzzFindings, InkToTheLastColumnOfA1BitPageLabelsInsideTheArray) {
    const int width = 150, height = 4, row = 20, guard = 16;
    for (int border : {0, 2})
    for (bool dirty_padding : {false, true}) {
        std::vector<unsigned char> bits(static_cast<size_t>(row) * height, 0);
        for (int y = 0; y < height; ++y) {
            for (int x = 140; x < width; ++x) bits[static_cast<size_t>(y) * row + x / 8] |= 0x80 >> (x % 8);
            if (dirty_padding) {
                bits[static_cast<size_t>(y) * row + width / 8] |= 0xFF >> (width % 8);
                for (int i = width / 8 + 1; i < row; ++i) bits[static_cast<size_t>(y) * row + i] = 0xFF;
            }
        }
        const std::vector<unsigned char> before = bits;
        const ImageCApi image = {width, height, 0, 0, 1, 1, bits.data()};
        const int framed_width = width + 2 * border;
        const size_t framed = static_cast<size_t>(framed_width) * (height + 2 * border);
        std::vector<int> labels(framed + guard, -7);
        void* calculator = create_blob_calculator();
        EXPECT_EQ(perform_blob_formulation(calculator, &image), 1);
        calculate_label_image(calculator, &image, labels.data(), border);
        int heights[1] = {0}, widths[1] = {0};
        obtain_blob_dimension_histogram(calculator, &image, heights, widths);
        delete_blob_calculator(calculator);
        EXPECT_EQ(widths[0], 10);
        EXPECT_EQ(heights[0], height);
        for (int y = 0; y < height; ++y) {
            const int* line = &labels[static_cast<size_t>(y + border) * framed_width + border];
            EXPECT_EQ(line[139], 0) << y;
            EXPECT_EQ(line[140], 1) << y;
            EXPECT_EQ(line[width - 1], 1) << y;
        }
        for (int g = 0; g < guard; ++g) EXPECT_EQ(labels[framed + g], -7) << "border " << border;
        EXPECT_EQ(bits, before);  // the caller's buffer is only read
    }
}

// Inputs that the fuzz targets found, rebuilt in code: each case once went
// wrong and must keep working.
#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "../../fuzz/fuzz_input.h"
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

// A small noisy page of strokes on which corner search method 3 (edges, then
// the binarization, Hough lines and the strict corner check) drew two nearly
// parallel sides: their crossing lies beyond the int range, and its conversion
// to an int corner was undefined. The input is the fuzz target's own, read by
// its own reader.
TEST(FuzzFindings, CornersBeyondTheIntRangeAreDefined) {
    const unsigned char input[] = {
        0x02, 0x27, 0x00, 0x1d, 0x00, 0x5a, 0x1e, 0x33, 0x29, 0xe1, 0x9d, 0x01, 0x1b, 0x00, 0xc8, 0x00, 0x38, 0x00,
        0x11, 0x00, 0x36, 0x00, 0x28, 0x00, 0x19, 0x00, 0x2a, 0x00, 0xe6, 0xe1, 0xd2, 0x09, 0x0a, 0x00, 0x07, 0x00,
        0x1a, 0x00, 0xc3, 0x07, 0x00, 0x1e, 0x00, 0x0a, 0x00, 0x09, 0x00, 0x15, 0x00, 0x09, 0x00, 0x00, 0x01, 0x0a,
        0x00, 0x0a, 0x00, 0x1a, 0x00, 0x0a, 0x00, 0x1e, 0x01, 0x0a, 0x00, 0x0c, 0x00, 0x1a, 0x00, 0x0c, 0x00, 0x00,
        0x01, 0x0a, 0x00, 0x0e, 0x00, 0x16, 0x00, 0x0e, 0x00, 0x1e, 0x00, 0x0a, 0x00, 0x0f, 0x00, 0x17, 0x00, 0x0f,
        0x00, 0x1e, 0x02, 0x0a, 0x00, 0x11, 0x00, 0x17, 0x00, 0x11, 0x00, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43,
        0x43, 0x43, 0x43, 0x2e, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43,
        0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43, 0x43,
        0x43, 0x43, 0x00, 0x14, 0x00, 0x1b, 0x00, 0x14, 0x00, 0x1e, 0x01, 0x01, 0x00, 0xbc, 0xff, 0x9a, 0x01, 0x00,
        0x00, 0x00, 0x00};
    fuzz::Reader in(input, sizeof input);
    fuzz::Page page = fuzz::read_page(in);
    const int method = in.u8() % 8;
    const uint8_t setters = in.u8();
    const float area = in.unit(-0.5f, 1.5f), angle = in.unit(0.0f, 120.0f), share = in.unit(-0.5f, 1.5f);
    in.u8();  // the target's choice of a second run
    fuzz::finish_page(in, page);
    ASSERT_EQ(method, 3);
    const ImageCApi image = page.record();
    void* engine = create_corner_search_enginee(method);
    if (setters & 1) set_corner_detection_minimum_quadrilateral_area(engine, area);
    if (setters & 2) set_corner_detection_minimum_quadrilateral_angle(engine, angle);
    if (setters & 4) set_corner_detection_minimum_largest_dimension_percentage_threshold(engine, share);
    if (setters & 8) set_corner_detection_within_image(engine);
    ControlPointCorners first{};
    const int code = perform_corner_searching(engine, &image, &first);
    destroy_corner_search_enginee(engine);
    // The answer on such a page rests on nearly parallel lines; what must
    // hold is a documented code and corners that are either coordinates or
    // the smallest int.
    EXPECT_TRUE(code == 1 || code == -1 || (code <= -3 && code >= -6)) << code;
    for (int k = 0; k < 4; ++k)
        for (int v : {first.x[k], first.y[k]}) EXPECT_TRUE(v == INT_MIN || (v > -100000 && v < 100000)) << v;
}

// Bit tests on binary rows: contour, ink in a span, ring background.
#include <gtest/gtest.h>

#include <vector>

#include "common/basic_image.h"
#include "pixel/binary_image_operator.h"

using common::BasicImage;
using geometric::BinaryImageOperator;

TEST(BinaryImageOperator, BlackRunFindsInkAcrossByteBoundaries) {
    // Row of 64 bits with ink at bits 5 and 30 only.
    std::vector<unsigned char> row(8, 0);
    row[0] = 0x80 >> 5;
    row[3] = 0x80 >> 6;
    struct Case { int start, length; bool expected; };
    const Case cases[] = {
        {0, 5, false}, {0, 6, true},  {5, 1, true},  {6, 24, false}, {6, 25, true},
        {30, 1, true}, {31, 33, false}, {2, 0, false}, {3, 40, true}, {8, 16, false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(BinaryImageOperator::check_black_run(row.data(), c.start, c.length), c.expected)
            << "start " << c.start << " length " << c.length;
}

TEST(BinaryImageOperator, BackgroundAverageWalksTheClippedRingOnce) {
    // 7 by 7 gray image, value 10 * y + x; binary all clear.
    const int size = 7;
    BasicImage gray(size, size, common::GRAY);
    BasicImage binary(size, size, common::BINARY);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) gray.set_pixel(x, y, static_cast<unsigned>(10 * y + x));
    const int row_size = binary.get_row_size();
    auto average = [&](int x, int y, int radius) {
        return BinaryImageOperator::calculate_background_average(binary.get_line_pointer(y), gray.get_line_pointer(y), x,
                                                                 y, size, size, row_size, radius);
    };
    // Ring of radius 1 around (3, 3): 8 pixels whose mean is the centre, 33.
    EXPECT_EQ(average(3, 3, 1), 33);
    // Radius 0: top and bottom line coincide, the one pixel counts once.
    EXPECT_EQ(average(3, 3, 0), 33);
    // Clipped at the top-left: ring rows 0 and 1, columns 0 and 1 of the box
    // 0..1 by 0..1: pixels 0, 1, 10, 11, mean 5.
    EXPECT_EQ(average(0, 0, 1), 5);
    // Ink under the ring is skipped.
    binary.set_pixel(2, 2, 1);  // value 22
    EXPECT_EQ(average(3, 3, 1), (23 + 24 + 32 + 34 + 42 + 43 + 44) / 7);
    // No clear pixel on the ring: -1.
    for (int y = 2; y <= 4; ++y)
        for (int x = 2; x <= 4; ++x) binary.set_pixel(x, y, 1);
    EXPECT_EQ(average(3, 3, 1), -1);
}

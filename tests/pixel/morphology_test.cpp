// Binary morphology and whole-image services: the word-wide ring dilation, the
// run-based twins, despeckling and the iterative dilation against per-pixel
// versions; bit tests on rows; binary tests and the background deviation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "pixel/binary_image_operator.h"
#include "pixel/geo_despeckle.h"
#include "pixel/geo_morphological.h"
#include "pixel/image_operator.h"
#include "support/images.h"
#include "support/references.h"

using common::BasicImage;
using geometric::BinaryImageOperator;
using geometric::GeoDespeckle;
using geometric::GeoMorphological;
using geometric::ImageOperator;
using support::BitBuffer;

namespace {

// The ring of each source pixel ORed into the target, over all row_size * 8 columns.
void plain_dilate_xy(const BitBuffer& source, BitBuffer& target) {
    const int columns = source.row_size * 8;
    const BitBuffer before = target;
    for (int y = 0; y < source.height; ++y) {
        for (int x = 0; x < columns; ++x) {
            bool on = before.get(x, y);
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) {
                    const int sx = x + dx;
                    const int sy = y + dy;
                    if ((dx == 0 && dy == 0) || sx < 0 || sy < 0 || sx >= columns || sy >= source.height) continue;
                    on = on || source.get(sx, sy);
                }
            target.put(x, y, on);
        }
    }
}

enum Operation { OPEN, DILATE, ERODE };

// One line's (or column's) worth of a run operation: pixels[i] for i in
// [0, n), where the runs are those of original.
std::vector<bool> plain_1d(const std::vector<bool>& original, Operation operation, int size) {
    const int n = static_cast<int>(original.size());
    std::vector<bool> result = original;
    int i = 0;
    while (i < n) {
        if (!original[i]) {
            ++i;
            continue;
        }
        const int start = i;
        while (i < n && original[i]) ++i;
        const int e = i;  // one past the run
        switch (operation) {
            case OPEN:
                if (e - start < size) std::fill(result.begin() + start, result.begin() + e, false);
                break;
            case DILATE:
                std::fill(result.begin() + std::max(0, start - size), result.begin() + std::min(n, e + size), true);
                break;
            case ERODE:
                if (start + size >= e - size) {
                    std::fill(result.begin() + start, result.begin() + e, false);
                } else {
                    std::fill(result.begin() + start, result.begin() + start + size, false);
                    std::fill(result.begin() + (e - size), result.begin() + e, false);
                }
                break;
        }
    }
    return result;
}

void plain_window(BitBuffer& image, Operation operation, bool along_x, int size, int x0, int x1, int y0, int y1) {
    const BitBuffer original = image;
    if (along_x) {
        for (int y = y0; y < y1; ++y) {
            std::vector<bool> line;
            for (int x = x0; x < x1; ++x) line.push_back(original.get(x, y));
            const std::vector<bool> out = plain_1d(line, operation, size);
            for (int x = x0; x < x1; ++x) image.put(x, y, out[x - x0]);
        }
    } else {
        for (int x = x0; x < x1; ++x) {
            std::vector<bool> column;
            for (int y = y0; y < y1; ++y) column.push_back(original.get(x, y));
            const std::vector<bool> out = plain_1d(column, operation, size);
            for (int y = y0; y < y1; ++y) image.put(x, y, out[y - y0]);
        }
    }
}

typedef void (*RunOperation)(int, unsigned char*, int, int, int, int, int);

}  // namespace

TEST(GeoMorphological, DilateXYMatchesAPerPixelRingDilation) {
    std::mt19937 random(77u);
    for (int trial = 0; trial < 200; ++trial) {
        const int height = 1 + static_cast<int>(random() % 10);
        const int row_size = 1 + static_cast<int>(random() % 30);
        BitBuffer source(height, row_size);
        source.randomize(random, static_cast<int>(random() % 40));
        BitBuffer target(height, row_size);
        target.randomize(random, trial % 2 == 0 ? 0 : 10);
        BitBuffer expected = target;
        plain_dilate_xy(source, expected);
        GeoMorphological::dilate_xy(source.bytes.data(), target.bytes.data(), height, row_size);
        ASSERT_EQ(target.bytes, expected.bytes) << "trial " << trial;
    }
}

TEST(GeoMorphological, RunTwinsMatchPerPixelVersionsInRandomWindows) {
    struct Named { const char* name; RunOperation run; Operation operation; bool along_x; };
    const std::vector<Named> operations = {
        {"open_x", &GeoMorphological::open_x, OPEN, true},
        {"dilate_x", &GeoMorphological::dilate_x, DILATE, true},
        {"erode_x", &GeoMorphological::erode_x, ERODE, true},
        {"open_y", &GeoMorphological::open_y, OPEN, false},
        {"dilate_y", &GeoMorphological::dilate_y, DILATE, false},
        {"erode_y", &GeoMorphological::erode_y, ERODE, false},
    };
    std::mt19937 random(31337u);
    for (int trial = 0; trial < 150; ++trial) {
        const int height = 1 + static_cast<int>(random() % 24);
        const int width = 1 + static_cast<int>(random() % 90);
        const int row_size = (width + 31) / 32 * 4;
        BitBuffer image(height, row_size);
        image.randomize(random, 20 + static_cast<int>(random() % 60));
        for (int y = 0; y < height; ++y)  // padding clear
            for (int x = width; x < row_size * 8; ++x) image.put(x, y, false);
        const bool whole = trial % 3 == 0;
        const int x0 = whole ? 0 : static_cast<int>(random() % width);
        const int x1 = whole ? width : x0 + 1 + static_cast<int>(random() % (width - x0));
        const int y0 = whole ? 0 : static_cast<int>(random() % height);
        const int y1 = whole ? height : y0 + 1 + static_cast<int>(random() % (height - y0));
        const int size = static_cast<int>(random() % 5);
        for (const Named& op : operations) {
            BitBuffer expected = image;
            plain_window(expected, op.operation, op.along_x, size, x0, x1, y0, y1);
            BitBuffer actual = image;
            op.run(size, actual.bytes.data(), row_size, x0, x1, y0, y1);
            ASSERT_EQ(actual.bytes, expected.bytes) << op.name << " trial " << trial << " size " << size << " window ["
                                                    << x0 << "," << x1 << ")x[" << y0 << "," << y1 << ")";
        }
    }
}

namespace {

// Per pixel: inside the inner bytes of the inner lines a set pixel stays only
// with a set neighbour among the eight; everything else is copied.
BitBuffer plain_despeckle(const BitBuffer& source, int width_in_bytes) {
    BitBuffer target = source;
    for (int y = 1; y + 1 < source.height; ++y) {
        for (int x = 8; x < (width_in_bytes - 1) * 8; ++x) {
            if (!source.get(x, y)) continue;
            bool neighbour = false;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx)
                    if ((dx != 0 || dy != 0) && source.get(x + dx, y + dy)) neighbour = true;
            target.put(x, y, neighbour);
        }
    }
    return target;
}

}  // namespace

TEST(GeoDespeckle, MatchesAPerPixelVersionInPlaceAndIntoAnotherBuffer) {
    std::mt19937 random(4242u);
    for (int trial = 0; trial < 300; ++trial) {
        const int height = 1 + static_cast<int>(random() % 12);
        const int row_size = 4 * (1 + static_cast<int>(random() % 8));
        const int width_in_bytes = 1 + static_cast<int>(random() % row_size);
        BitBuffer source(height, row_size);
        source.randomize(random, static_cast<int>(random() % 30));
        const BitBuffer expected = plain_despeckle(source, width_in_bytes);

        BitBuffer target(height, row_size);
        target.randomize(random, 50);  // every byte is written
        GeoDespeckle::removeIsolatedPixel(source.bytes.data(), height, width_in_bytes, row_size, target.bytes.data());
        ASSERT_EQ(target.bytes, expected.bytes) << "trial " << trial;

        BitBuffer in_place = source;
        GeoDespeckle::removeIsolatedPixel(in_place.bytes.data(), height, width_in_bytes, row_size,
                                          in_place.bytes.data());
        ASSERT_EQ(in_place.bytes, expected.bytes) << "trial " << trial;
    }
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

// 700 by 700: patches of 7 in the corners and the middle of the sides, each a
// checkerboard of +-2 p around 100 for patch p; the answer is the third
// smallest deviation, that of amplitude 4 (49 pixels: 25 and 24 of each sign).
TEST(ImageOperator, BackgroundStdAnswersTheThirdOfSixPatches) {
    const int size = 700, s = 7;
    BasicImage image = support::flat_image(size, size, 100);
    const int origins[6][2] = {{0, 0}, {size - s, 0}, {0, size - s}, {size - s, size - s},
                               {0, size / 2 - s / 2}, {size - s, size / 2 - s / 2}};
    for (int p = 0; p < 6; ++p)
        for (int i = 0; i < s * s; ++i)
            image.set_pixel(origins[p][0] + i % s, origins[p][1] + i / s, static_cast<unsigned>(100 + (i % 2 ? -2 : 2) * p));
    const double mean = (25.0 * 104 + 24.0 * 96) / 49, square = (25.0 * 104 * 104 + 24.0 * 96 * 96) / 49;
    float lowest = -1.0f;
    const float third = ImageOperator::calculate_background_std(image, &lowest);
    EXPECT_EQ(lowest, 0.0f);
    EXPECT_NEAR(third, std::sqrt(square - mean * mean), 1e-2);
    EXPECT_EQ(ImageOperator::calculate_background_std(image, nullptr), third);
}

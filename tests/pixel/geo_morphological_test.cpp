// Binary morphology: the word-wide ring dilation and the run-based x and y
// twins against plain per-pixel versions, and the forms on whole images.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "pixel/geo_morphological.h"
#include "support/references.h"

using geometric::GeoMorphological;
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

TEST(GeoMorphological, ImageFormsCoverTheWholeImageAndOnlyBinaryImages) {
    common::BasicImage image(6, 10, common::BINARY);
    for (int y = 1; y < 5; ++y) image.set_pixel(4, y, 1);
    GeoMorphological::dilate_y(image, 1);
    EXPECT_EQ(image.get_pixel(4, 0), 1u);
    EXPECT_EQ(image.get_pixel(4, 5), 1u);
    GeoMorphological::erode_y(image, 2);
    EXPECT_EQ(image.get_pixel(4, 1), 0u);
    EXPECT_EQ(image.get_pixel(4, 2), 1u);
    EXPECT_EQ(image.get_pixel(4, 3), 1u);
    GeoMorphological::open_y(image, 3);
    EXPECT_EQ(image.get_pixel(4, 2), 0u);

    common::BasicImage gray(2, 2, common::GRAY);
    gray.set_pixel(0, 0, 1);
    GeoMorphological::dilate_x(gray, 1);
    EXPECT_EQ(gray.get_pixel(1, 0), 0u);
}

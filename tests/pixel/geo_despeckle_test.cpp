// Despeckling: whole bytes, the frame and the outer bytes of a line kept.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "common/basic_image.h"
#include "pixel/geo_despeckle.h"
#include "support/references.h"

using geometric::GeoDespeckle;
using support::BitBuffer;

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

TEST(GeoDespeckle, IsolatedPixelGoesUnlessOnTheFrameOrInAnOuterByte) {
    struct Case {
        int x;
        int y;
        bool survives;
    };
    const std::vector<Case> cases = {
        {20, 5, false},  // inner byte, inner line
        {8, 5, false},   // first bit of the second byte: reads across into byte 0
        {23, 5, false},  // last bit of an inner byte
        {0, 5, true},    // first byte of the line
        {7, 5, true},    // still the first byte
        {63, 5, true},   // last byte of a 64-column line
        {20, 0, true},   // first line
        {20, 9, true},   // last line
    };
    for (const Case& c : cases) {
        common::BasicImage image(10, 64, common::BINARY);
        image.set_pixel(c.x, c.y, 1);
        common::BasicImage target;
        GeoDespeckle::removeIsolatedPixel(image, target);
        ASSERT_EQ(target.get_image_type(), common::BINARY);
        EXPECT_EQ(target.get_x_resolution(), 300);
        EXPECT_EQ(target.get_pixel(c.x, c.y) == 1, c.survives) << c.x << "," << c.y;
    }
}


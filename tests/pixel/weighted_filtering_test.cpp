// Weighted 3 by 3 smoothing: copied frame, truncating weighted mean read from
// the source only, against a per-pixel reference.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "common/basic_image.h"
#include "pixel/weighted_filtering.h"

using common::BasicImage;
using geometric::WeightedFiltering;

namespace {

BasicImage noise_image(int height, int width, uint32_t seed) {
    BasicImage image(height, width, common::GRAY);
    for (int i = 0; i < image.get_data_size(); ++i) {
        seed = seed * 1664525u + 1013904223u;
        image.get_data()[i] = static_cast<unsigned char>(seed >> 24);
    }
    return image;
}

}  // namespace

TEST(WeightedFiltering, MatchesTheWeightedMeanAndCopiesTheFrame) {
    const int weights[] = {0, 1, 4, 100, 2000000000};
    for (int weight : weights) {
        const BasicImage image = noise_image(17, 23, static_cast<uint32_t>(weight) + 1);
        BasicImage output;
        WeightedFiltering::perform_filtering_3_by_3(image, output, weight);
        ASSERT_EQ(output.get_data_size(), 17 * 23);
        for (int y = 0; y < 17; ++y)
            for (int x = 0; x < 23; ++x) {
                uint64_t expected = image.get_pixel(x, y);
                if (y > 0 && y < 16 && x > 0 && x < 22) {
                    uint64_t ring = 0;
                    for (int i = -1; i <= 1; ++i)
                        for (int j = -1; j <= 1; ++j)
                            if (i != 0 || j != 0) ring += image.get_pixel(x + j, y + i);
                    expected = (static_cast<uint64_t>(weight) * expected + ring) / (static_cast<uint64_t>(weight) + 8);
                }
                ASSERT_EQ(output.get_pixel(x, y), expected) << x << "," << y << " weight " << weight;
            }
    }
}

// One bright pixel: its neighbours get (0 * 4 + 90) / 12 = 7 from the source,
// not from the already smoothed pixel; the bright one gets 4 * 90 / 12 = 30.
TEST(WeightedFiltering, ReadsTheSourceNotFilteredPixels) {
    BasicImage image(5, 5, common::GRAY);
    image.set_pixel(2, 2, 90);
    BasicImage output;
    WeightedFiltering::perform_filtering_3_by_3(image, output, 4);
    EXPECT_EQ(output.get_pixel(2, 2), 30u);
    for (int y = 1; y <= 3; ++y)
        for (int x = 1; x <= 3; ++x)
            if (x != 2 || y != 2) {
                EXPECT_EQ(output.get_pixel(x, y), 7u);
            }
    EXPECT_EQ(output.get_pixel(0, 2), 0u);
}

TEST(WeightedFiltering, FlatAndTinyImagesAndFailures) {
    BasicImage flat(9, 9, common::GRAY);
    std::memset(flat.get_data(), 201, 81);
    WeightedFiltering::perform_filtering_3_by_3(flat, flat, 4);  // in place
    for (int i = 0; i < 81; ++i) ASSERT_EQ(flat.get_data()[i], 201);

    const BasicImage tiny = noise_image(2, 7, 11);
    BasicImage output;
    WeightedFiltering::perform_filtering_3_by_3(tiny, output, 4);
    EXPECT_EQ(0, std::memcmp(output.get_data(), tiny.get_data(), 14));

    BasicImage rgb(3, 3, common::RGB);
    EXPECT_THROW(WeightedFiltering::perform_filtering_3_by_3(rgb, output, 4), const char*);
    EXPECT_THROW(WeightedFiltering::perform_filtering_3_by_3(tiny, output, -1), const char*);
}

// Weighted 3 by 3 smoothing against a per-pixel reference: the frame copied,
// the truncating weighted mean read from the source only.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "pixel/weighted_filtering.h"
#include "support/images.h"

using common::BasicImage;
using geometric::WeightedFiltering;

TEST(WeightedFiltering, MatchesTheWeightedMeanAndCopiesTheFrame) {
    const int sizes[][2] = {{17, 23}, {2, 7}, {3, 3}};
    for (const auto& size : sizes)
        for (int weight : {0, 1, 4, 100, 2000000000}) {
            const int h = size[0], w = size[1];
            const BasicImage image = support::noise_image(h, w, static_cast<uint32_t>(weight) + 1);
            BasicImage output, in_place(image);
            WeightedFiltering::perform_filtering_3_by_3(image, output, weight);
            WeightedFiltering::perform_filtering_3_by_3(in_place, in_place, weight);
            EXPECT_TRUE(support::same_bytes(output, in_place));
            ASSERT_EQ(output.get_data_size(), h * w);
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    uint64_t expected = image.get_pixel(x, y);
                    if (y > 0 && y < h - 1 && x > 0 && x < w - 1) {
                        uint64_t ring = 0;
                        for (int i = -1; i <= 1; ++i)
                            for (int j = -1; j <= 1; ++j)
                                if (i != 0 || j != 0) ring += image.get_pixel(x + j, y + i);
                        expected = (static_cast<uint64_t>(weight) * expected + ring) / (static_cast<uint64_t>(weight) + 8);
                    }
                    ASSERT_EQ(output.get_pixel(x, y), expected) << x << "," << y << " weight " << weight;
                }
        }
    BasicImage rgb(3, 3, common::RGB), output;
    EXPECT_THROW(WeightedFiltering::perform_filtering_3_by_3(rgb, output, 4), const char*);
    EXPECT_THROW(WeightedFiltering::perform_filtering_3_by_3(support::noise_image(3, 3, 1), output, -1), const char*);
}

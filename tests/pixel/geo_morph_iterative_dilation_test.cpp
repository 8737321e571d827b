// Iterative ring dilation: the accumulating temporary and the padding mask.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "common/basic_image.h"
#include "pixel/geo_morph_iterative_dilation.h"
#include "pixel/geo_morphological.h"

using geometric::GeoMorphIterativeDilation;
using geometric::GeoMorphological;

namespace {

// The rounds written out with the plain operations: a temporary never cleared.
std::vector<unsigned char> rounds_by_hand(const common::BasicImage& source, int iterations, bool clear_padding) {
    common::BasicImage image(source);
    common::BasicImage temporary(image.get_height(), image.get_width(), common::BINARY);
    const int width = image.get_width();
    for (int round = 0; round < iterations; ++round) {
        GeoMorphological::dilate_xy(image, temporary);
        std::memcpy(image.get_data(), temporary.get_data(), static_cast<size_t>(image.get_data_size()));
        if (!clear_padding) continue;
        for (int y = 0; y < image.get_height(); ++y)
            for (int x = width; x < std::min(image.get_row_size() * 8, (width + 1) / 8 * 8 + 8); ++x)
                image.set_pixel(x, y, 0);
    }
    return std::vector<unsigned char>(image.get_data(), image.get_data() + image.get_data_size());
}

}  // namespace

TEST(GeoMorphIterativeDilation, AccumulatesAndMasksLikeTheRoundsWrittenOut) {
    std::mt19937 random(2026u);
    for (int width : {13, 15, 16, 31, 32, 47}) {
        common::BasicImage image(9, width, common::BINARY);
        for (int y = 0; y < 9; ++y)
            for (int x = 0; x < width; ++x)
                if (random() % 9 == 0) image.set_pixel(x, y, 1);
        for (bool clear_padding : {false, true}) {
            for (int iterations : {0, 1, 2, 3}) {
                common::BasicImage work(image);
                GeoMorphIterativeDilation dilation(iterations, clear_padding);
                dilation.dilate_image_iterative(work);
                const std::vector<unsigned char> expected = rounds_by_hand(image, iterations, clear_padding);
                ASSERT_EQ(std::vector<unsigned char>(work.get_data(), work.get_data() + work.get_data_size()),
                          expected)
                    << "width " << width << " iterations " << iterations << " clear " << clear_padding;
            }
        }
    }
}


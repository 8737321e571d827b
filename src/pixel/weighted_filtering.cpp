// Weighted 3 by 3 smoothing with a copied frame.
#include "pixel/weighted_filtering.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace geometric {

namespace {

const char* const kNotGray = "weighted filtering is defined for GRAY images only";
const char* const kNegativeWeight = "weighted filtering needs a centre weight of at least 0";

// Weights up to this keep weight * 255 + 8 * 255 inside 32 bits.
const int kLargestNarrowWeight = 16000000;

template <typename Sum>
void filter_inner_lines(const common::Image& input, unsigned char* out, int width, int height, Sum weight) {
    const Sum divisor = weight + 8;
    for (int y = 1; y + 1 < height; ++y) {
        const unsigned char* above = input.get_line_pointer(y - 1);
        const unsigned char* centre = input.get_line_pointer(y);
        const unsigned char* below = input.get_line_pointer(y + 1);
        unsigned char* line = out + static_cast<ptrdiff_t>(y) * width;
        line[0] = centre[0];
        for (int x = 1; x + 1 < width; ++x) {
            const Sum ring = static_cast<Sum>(above[x - 1]) + above[x] + above[x + 1] + centre[x - 1] + centre[x + 1] +
                             below[x - 1] + below[x] + below[x + 1];
            line[x] = static_cast<unsigned char>((weight * centre[x] + ring) / divisor);
        }
        if (width > 1) line[width - 1] = centre[width - 1];
    }
}

}  // namespace

void WeightedFiltering::perform_filtering_3_by_3(const common::Image& input, common::BasicImage& output, int weight) {
    if (input.get_image_type() != common::GRAY) throw kNotGray;
    if (weight < 0) throw kNegativeWeight;
    const int width = input.get_width();
    const int height = input.get_height();
    common::BasicImage result;
    try {
        common::BasicImage fresh(height, width, common::GRAY);
        result.swap(fresh);
    } catch (const std::string&) {
        common::BasicImage empty;
        output.swap(empty);
        return;
    }
    unsigned char* out = result.get_data();
    if (width > 0 && height > 0) {
        std::memcpy(out, input.get_line_pointer(0), static_cast<size_t>(width));
        std::memcpy(out + static_cast<ptrdiff_t>(height - 1) * width, input.get_line_pointer(height - 1),
                    static_cast<size_t>(width));
        if (weight <= kLargestNarrowWeight)
            filter_inner_lines<uint32_t>(input, out, width, height, static_cast<uint32_t>(weight));
        else
            filter_inner_lines<uint64_t>(input, out, width, height, static_cast<uint64_t>(weight));
    }
    output.swap(result);
}

void WeightedFiltering::perform_filtering_5_by_5(const common::Image&, common::BasicImage&, int) {}

}  // namespace geometric

// Despeckling by whole bytes, 64 columns at a time where a line allows.
#include "pixel/geo_despeckle.h"

#include <cstring>
#include <utility>
#include <vector>

#include "pixel/bit_row_spread.h"

namespace geometric {

namespace {

// Inner bytes 1 to width_in_bytes - 2 of one line: b AND the OR of its eight
// neighbour shifts (above and below with their centre, the line itself without).
void despeckle_line(const unsigned char* above, const unsigned char* here, const unsigned char* below,
                    int width_in_bytes, unsigned char* out) {
    const int last_inner = width_in_bytes - 2;
    int k = 1;
    for (; k + 7 <= last_inner; k += 8) {
        const uint64_t around = bit_row::spread_word(above, k, width_in_bytes, true) |
                                bit_row::spread_word(below, k, width_in_bytes, true) |
                                bit_row::spread_word(here, k, width_in_bytes, false);
        bit_row::store_word(out + k, bit_row::load_word(here + k) & around);
    }
    for (; k <= last_inner; ++k) {
        const unsigned around = bit_row::spread_byte(above, k, width_in_bytes, true) |
                                bit_row::spread_byte(below, k, width_in_bytes, true) |
                                bit_row::spread_byte(here, k, width_in_bytes, false);
        out[k] = static_cast<unsigned char>(here[k] & around);
    }
}

}  // namespace

void GeoDespeckle::removeIsolatedPixel(const unsigned char* source, int height, int width_in_bytes, int row_size,
                                       unsigned char* target) {
    if (height <= 0 || row_size <= 0) return;
    const size_t row = static_cast<size_t>(row_size);
    const bool in_place = source == target;
    if (!in_place) std::memcpy(target, source, row * static_cast<size_t>(height));
    if (height < 3 || width_in_bytes < 3) return;

    // The original lines above and in hand are kept aside, so that working in
    // place reads the same neighbours as working into another buffer.
    std::vector<unsigned char> saved(2 * row);
    unsigned char* above = saved.data();
    unsigned char* here = saved.data() + row;
    std::memcpy(above, source, row);
    for (int y = 1; y < height - 1; ++y) {
        std::memcpy(here, source + y * row, row);
        despeckle_line(above, here, source + (y + 1) * row, width_in_bytes, target + y * row);
        std::swap(above, here);
    }
}

void GeoDespeckle::removeIsolatedPixel(const common::BasicImage& source, common::BasicImage& target) {
    if (source.get_image_type() != common::BINARY || source.get_data() == nullptr) return;
    const int height = source.get_height();
    const int width = source.get_width();
    if (target.get_data() == nullptr || target.get_height() != height || target.get_width() != width ||
        target.get_row_size() != source.get_row_size()) {
        common::BasicImage fresh(height, width, common::BINARY, 300, 300);
        target.swap(fresh);
    }
    removeIsolatedPixel(source.get_data(), height, (width + 7) / 8, source.get_row_size(), target.get_data());
}

}  // namespace geometric

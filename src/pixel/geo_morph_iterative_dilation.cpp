// Iterative ring dilation with an optional padding mask.
#include "pixel/geo_morph_iterative_dilation.h"

#include <cstring>
#include <initializer_list>

#include "pixel/geo_morphological.h"

namespace geometric {

void GeoMorphIterativeDilation::dilate_image_iterative(const common::BasicImage& image) const {
    if (image.get_image_type() != common::BINARY || image.get_data() == nullptr) return;
    const int height = image.get_height();
    const int width = image.get_width();
    const int row_size = image.get_row_size();
    common::BasicImage temporary(height, width, common::BINARY, 300, 300);

    // The bytes holding columns width and width + 1, with the bits to keep:
    // only those of columns below the width.
    int mask_bytes[2];
    unsigned char keep[2];
    int masks = 0;
    for (int column : {width, width + 1}) {
        const int byte = column / 8;
        if (byte >= row_size || (masks > 0 && mask_bytes[0] == byte)) continue;
        const int inside = width - byte * 8;  // columns of this byte below the width
        mask_bytes[masks] = byte;
        keep[masks] = static_cast<unsigned char>(inside <= 0 ? 0 : (0xFF00u >> inside) & 0xFFu);
        ++masks;
    }

    unsigned char* pixels = image.get_data();
    for (int round = 0; round < iterations; ++round) {
        GeoMorphological::dilate_xy(pixels, temporary.get_data(), height, row_size);
        std::memcpy(pixels, temporary.get_data(), static_cast<size_t>(image.get_data_size()));
        if (!clear_row_padding) continue;
        for (int y = 0; y < height; ++y) {
            unsigned char* line = pixels + static_cast<size_t>(y) * row_size;
            for (int m = 0; m < masks; ++m) line[mask_bytes[m]] &= keep[m];
        }
    }
}

}  // namespace geometric

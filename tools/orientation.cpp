// The eight EXIF orientations as one affine map of pixel positions, copied
// in square tiles so that a quarter turn reads its source a few rows at a time.
#include "orientation.h"

#include <algorithm>
#include <cstddef>

namespace scan {
namespace {

// Shown pixel (x, y) comes from stored pixel
//   sx = x0 + xx * x + xy * y,   sy = y0 + yx * x + yy * y.
struct PixelMap {
    int x0, y0;
    int xx, xy, yx, yy;
};

PixelMap map_for(int orientation, int width, int height) {
    const int right = width - 1, bottom = height - 1;
    switch (orientation) {
        case 2: return {right, 0, -1, 0, 0, 1};
        case 3: return {right, bottom, -1, 0, 0, -1};
        case 4: return {0, bottom, 1, 0, 0, -1};
        case 5: return {0, 0, 0, 1, 1, 0};
        case 6: return {0, bottom, 0, 1, -1, 0};
        case 7: return {right, bottom, 0, -1, -1, 0};
        case 8: return {right, 0, 0, -1, 1, 0};
        default: return {0, 0, 1, 0, 0, 1};
    }
}

constexpr int kTile = 64;

// One tile of the shown picture, `Channels` bytes a pixel.
template <int Channels>
void copy_tile(const unsigned char* source, std::ptrdiff_t step_x, unsigned char* target, int count) {
    for (int i = 0; i < count; ++i, source += step_x, target += Channels) {
        for (int c = 0; c < Channels; ++c) target[c] = source[c];
    }
}

}  // namespace

bool orientation_exchanges_sides(int orientation) { return orientation >= 5 && orientation <= 8; }

Raster turn_upright(const Raster& stored, int orientation) {
    const bool exchange = orientation_exchanges_sides(orientation);
    Raster shown = make_raster(exchange ? stored.height : stored.width, exchange ? stored.width : stored.height,
                               stored.channels);
    shown.x_dpi = exchange ? stored.y_dpi : stored.x_dpi;
    shown.y_dpi = exchange ? stored.x_dpi : stored.y_dpi;

    const PixelMap map = map_for(orientation, stored.width, stored.height);
    const std::ptrdiff_t channels = stored.channels;
    const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(stored.row_bytes());
    // Byte steps in the stored picture for one step right and one step down in the shown one.
    const std::ptrdiff_t step_x = map.xx * channels + map.yx * row;
    const std::ptrdiff_t step_y = map.xy * channels + map.yy * row;
    const unsigned char* origin = stored.data.get() + map.y0 * row + map.x0 * channels;
    for (int top = 0; top < shown.height; top += kTile) {
        const int bottom = std::min(shown.height, top + kTile);
        for (int left = 0; left < shown.width; left += kTile) {
            const int right = std::min(shown.width, left + kTile);
            for (int y = top; y < bottom; ++y) {
                const unsigned char* source = origin + y * step_y + left * step_x;
                unsigned char* target = shown.row(y) + left * channels;
                if (channels == 1) {
                    copy_tile<1>(source, step_x, target, right - left);
                } else {
                    copy_tile<3>(source, step_x, target, right - left);
                }
            }
        }
    }
    return shown;
}

}  // namespace scan

// Small bitonal pages of bars, blocks, discs and staircases, and their blobs
// as the calculator forms them.
#ifndef MORVANE_TESTS_SUPPORT_BLOB_SCENES_H
#define MORVANE_TESTS_SUPPORT_BLOB_SCENES_H

#include <list>
#include <utility>
#include <vector>

#include "common/basic_image.h"
#include "components/connected_component_calculator.h"
#include "components/text_blob.h"

namespace support {

inline void fill_rect(common::BasicImage& image, int left, int top, int width, int height) {
    for (int y = top; y < top + height; ++y)
        for (int x = left; x < left + width; ++x) image.set_pixel(x, y, 1);
}

// A blob of exactly `area` pixels: full rows of `width`, then the rest as a
// partial row from the left.
inline void draw_area(common::BasicImage& image, int left, int top, int width, int area) {
    for (int i = 0; i < area; ++i) image.set_pixel(left + i % width, top + i / width, 1);
}

inline void draw_pixels(common::BasicImage& image, const std::vector<std::pair<int, int>>& pixels) {
    for (const std::pair<int, int>& p : pixels) image.set_pixel(p.first, p.second, 1);
}

// Pixels of a staircase of `steps` runs of `run` pixels, each run one line
// above the one before (rising to the right in the image) or below it.
inline std::vector<std::pair<int, int>> staircase(int left, int top, int steps, int run, bool rising) {
    std::vector<std::pair<int, int>> pixels;
    for (int j = 0; j < steps; ++j) {
        const int y = rising ? top + steps - 1 - j : top + j;
        for (int u = 0; u < run; ++u) pixels.emplace_back(left + j * run + u, y);
    }
    return pixels;
}

// A steep staircase: one pixel a line, moving one column right every `rise`
// lines going up.
inline std::vector<std::pair<int, int>> steep_staircase(int left, int top, int height, int rise) {
    std::vector<std::pair<int, int>> pixels;
    for (int row = 0; row < height; ++row) pixels.emplace_back(left + row / rise, top + height - 1 - row);
    return pixels;
}

inline std::vector<std::pair<int, int>> disc(int cx, int cy, int radius) {
    std::vector<std::pair<int, int>> pixels;
    for (int y = cy - radius; y <= cy + radius; ++y)
        for (int x = cx - radius; x <= cx + radius; ++x)
            if ((x - cx) * (x - cx) + (y - cy) * (y - cy) <= radius * radius) pixels.emplace_back(x, y);
    return pixels;
}

inline std::list<geometric::TextBlob> form_blobs(geometric::ConnectedComponentCalculator& calculator,
                                                 const common::BasicImage& image) {
    std::list<geometric::TextBlob> blobs;
    calculator.calculate_feature_blobs(image, blobs);
    return blobs;
}

}  // namespace support

#endif

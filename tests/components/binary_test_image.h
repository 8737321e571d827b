// Helpers of the component and morphology tests: bitonal images drawn as
// text, and a plain flood fill to compare formation against.
#ifndef MORVANE_TESTS_COMPONENTS_BINARY_TEST_IMAGE_H
#define MORVANE_TESTS_COMPONENTS_BINARY_TEST_IMAGE_H

#include <string>
#include <vector>

#include "common/basic_image.h"

namespace test_support {

// One string a line, '#' foreground and anything else background.
inline common::BasicImage binary_from_text(const std::vector<std::string>& lines) {
    const int height = static_cast<int>(lines.size());
    const int width = height > 0 ? static_cast<int>(lines[0].size()) : 0;
    common::BasicImage image(height, width, common::BINARY);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (lines[y][x] == '#') image.set_pixel(x, y, 1);
    return image;
}

// Component label of every pixel (0 background, from 1 in raster order of the
// components' first pixels), by a plain stack-based flood fill.
inline std::vector<int> flood_fill_labels(const common::Image& image, bool eight, int& count) {
    const int height = image.get_height();
    const int width = image.get_width();
    std::vector<int> labels(static_cast<size_t>(height) * width, 0);
    std::vector<int> stack;
    count = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (image.get_pixel(x, y) == 0 || labels[y * width + x] != 0) continue;
            ++count;
            labels[y * width + x] = count;
            stack.push_back(y * width + x);
            while (!stack.empty()) {
                const int index = stack.back();
                stack.pop_back();
                const int cx = index % width;
                const int cy = index / width;
                for (int dy = -1; dy <= 1; ++dy) {
                    for (int dx = -1; dx <= 1; ++dx) {
                        if ((dx == 0 && dy == 0) || (!eight && dx != 0 && dy != 0)) continue;
                        const int nx = cx + dx;
                        const int ny = cy + dy;
                        if (nx < 0 || ny < 0 || nx >= width || ny >= height) continue;
                        if (image.get_pixel(nx, ny) == 0 || labels[ny * width + nx] != 0) continue;
                        labels[ny * width + nx] = count;
                        stack.push_back(ny * width + nx);
                    }
                }
            }
        }
    }
    return labels;
}

}  // namespace test_support

#endif

// Runs of a whole image, line by line.
#include "pixel/runs_in_image.h"

namespace geometric {

RunsInImage::RunsInImage(const common::Image& image) {
    const int height = image.get_height();
    const int width = image.get_width();
    lines.resize(height > 0 ? static_cast<std::size_t>(height) : 0);
    const bool bitonal = image.get_image_type() == common::BINARY;
    // Each line is scanned into one reused buffer and copied at its exact
    // size: one allocation a line instead of a growing array.
    RunsInLine scratch;
    scratch.reserve(static_cast<std::size_t>(width > 0 ? width / 2 + 1 : 1));
    for (int y = 0; y < height; ++y) {
        const unsigned char* line = image.get_line_pointer(y);
        if (bitonal)
            scratch.formulate_runs(line, 0, width);
        else
            scratch.formulate_gray_runs(line, 0, width);
        lines[y].assign(scratch);
    }
}

}  // namespace geometric

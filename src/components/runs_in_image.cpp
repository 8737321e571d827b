// Runs of a whole image, line by line.
#include "components/runs_in_image.h"

namespace geometric {

RunsInImage::RunsInImage(const common::Image& image) {
    const int height = image.get_height();
    const int width = image.get_width();
    lines.resize(height > 0 ? static_cast<std::size_t>(height) : 0);
    const bool bitonal = image.get_image_type() == common::BINARY;
    for (int y = 0; y < height; ++y) {
        const unsigned char* line = image.get_line_pointer(y);
        if (bitonal)
            lines[y].formulate_runs(line, 0, width);
        else
            lines[y].formulate_gray_runs(line, 0, width);
    }
}

}  // namespace geometric

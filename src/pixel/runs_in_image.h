// The runs of every line of an image, top to bottom. Strokes point into it,
// so it is shared by the calculator that formed them and its callers.
#ifndef MORVANE_PIXEL_RUNS_IN_IMAGE_H
#define MORVANE_PIXEL_RUNS_IN_IMAGE_H

#include <cstddef>
#include <vector>

#include "common/image.h"
#include "pixel/runs_in_line.h"

namespace geometric {

class RunsInImage {
public:
    typedef std::vector<RunsInLine>::const_iterator const_iterator;

    // One RunsInLine for each line: the bitonal scanner for a BINARY image,
    // the gray scanner (only 255 is background) for every other type, both
    // over columns 0 to width - 1. A line without an address has no runs.
    explicit RunsInImage(const common::Image& image);

    std::size_t size() const { return lines.size(); }
    const RunsInLine& operator[](std::size_t line) const { return lines[line]; }
    const_iterator begin() const { return lines.begin(); }
    const_iterator end() const { return lines.end(); }

private:
    std::vector<RunsInLine> lines;
};

}  // namespace geometric

#endif

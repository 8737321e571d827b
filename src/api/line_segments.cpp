// The line segment family: a detector handle, the search that hands out
// seven doubles a segment, and the release of both.
#include <cstdlib>
#include <cstring>
#include <vector>

#include "linesegments/line_segment_generator.h"
#include "morvane/morvane.h"

namespace {

constexpr int kValuesPerSegment = 7;

}  // namespace

void* lsd_create(void) { return new geometric::LineSegmentGenerator(); }

double* search_for_line_segments(void* handle, const ImageCApi* image, int* count) {
    *count = 0;
    if (image->is_binary != 0 || image->channels == 3 || image->channels == 4)
        throw "line segment detection needs an 8-bit gray image";

    const geometric::LineSegmentGenerator& generator = *static_cast<geometric::LineSegmentGenerator*>(handle);
    std::vector<geometric::LineSegmentRect> segments;
    generator.generate_line_segments(image->data, image->width, image->height, segments);
    if (segments.empty()) return nullptr;

    double* lines = static_cast<double*>(std::malloc(segments.size() * kValuesPerSegment * sizeof(double)));
    if (lines == nullptr) throw "error while allocating line segments, could not allocate enough memory";
    double* out = lines;
    for (const geometric::LineSegmentRect& s : segments) {
        const double values[kValuesPerSegment] = {s.x1, s.y1, s.x2, s.y2, s.width, s.p, s.log_nfa};
        std::memcpy(out, values, sizeof(values));
        out += kValuesPerSegment;
    }
    *count = static_cast<int>(segments.size());
    return lines;
}

void clean_lines(double* lines) { std::free(lines); }

void destroy_lsd(void* handle) { delete static_cast<geometric::LineSegmentGenerator*>(handle); }

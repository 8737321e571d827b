// Run labels in the calculator's numbering, and the label image written from them.
#include "components/run_labels.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace geometric {

namespace {

// Label rows are mostly gaps of some ten entries and runs of two or three,
// for which a call of the library's fill costs more than the stores.

// Stores value from first on, four entries a store, up to last and perhaps
// as many as three entries past it: the span written next, which starts at
// last, overwrites them.
inline void fill_over(int* first, int* last, int value) {
#if defined(__SSE2__)
    const __m128i values = _mm_set1_epi32(value);
    for (; first < last; first += 4) _mm_storeu_si128(reinterpret_cast<__m128i*>(first), values);
#else
    for (; first < last; ++first) *first = value;
#endif
}

// Stores value in [first, last) and nowhere else.
inline void fill_exact(int* first, int* last, int value) {
    for (; first < last; ++first) *first = value;
}

}  // namespace

RunLabels::RunLabels(const RunsInImage& lines_, int reach) : lines(lines_), strokes(0), components(0) {
    const std::size_t height = lines.size();
    line_start.resize(height + 1);
    std::size_t total = 0;
    for (std::size_t y = 0; y < height; ++y) {
        line_start[y] = total;
        total += lines[y].size();
    }
    line_start[height] = total;
    // Every entry is written before it is read: no clearing. A run makes at
    // most one stroke.
    run_label.reset(new int[total]);
    parent.reset(new int[total]);
    head.reset(new int[total]);

    if (height > 0)
        for (std::size_t i = 0; i < lines[0].size(); ++i) run_label[i] = new_stroke();
    for (std::size_t y = 1; y < height; ++y) label_line(y, reach);

    // Components in the order of their heads' creation, numbered from 1; the
    // label of a component is kept at its root.
    const std::unique_ptr<int[]> label_of_root(new int[static_cast<std::size_t>(strokes)]);
    for (int s = 0; s < strokes; ++s) {
        const int root = find(parent.get(), s);
        if (head[root] == s) label_of_root[root] = ++components;
    }
    // Each stroke's label once, then each run's through its stroke.
    for (int s = 0; s < strokes; ++s) head[s] = label_of_root[find(parent.get(), s)];
    for (std::size_t i = 0; i < total; ++i) run_label[i] = head[run_label[i]];
}

int RunLabels::find(int* parent, int stroke) {
    while (parent[stroke] != stroke) {
        parent[stroke] = parent[parent[stroke]];
        stroke = parent[stroke];
    }
    return stroke;
}

// The contact loop of process_line, line for line: the same runs above are
// compared in the same order, strokes are made where it makes them, and a
// split's new stroke becomes its component's head, while a merge keeps the
// head of the run in hand.
void RunLabels::label_line(std::size_t line, int reach) {
    const RunsInLine& runs = lines[line];
    const RunsInLine& above_runs = lines[line - 1];
    const std::size_t count = runs.size();
    const std::size_t above_count = above_runs.size();
    if (count == 0) return;
    const BinaryRun* const here = &runs[0];
    const BinaryRun* const above = above_count > 0 ? &above_runs[0] : nullptr;
    const int* const above_stroke = run_label.get() + line_start[line - 1];
    int* const stroke_here = run_label.get() + line_start[line];
    int* const parents = parent.get();
    int* const heads = head.get();
    std::size_t p = 0;
    int last_stroke = -1;
    for (std::size_t i = 0; i < count; ++i) {
        const int run_start = here[i].start;
        const int run_end = here[i].end;
        int taken = -1;
        while (p < above_count && above[p].end + reach < run_start) ++p;
        while (p < above_count) {
            if (above[p].start <= run_end + reach) {
                const int stroke = above_stroke[p];
                if (taken < 0) {
                    if (stroke != last_stroke) {
                        taken = stroke;
                    } else {
                        taken = new_stroke();
                        const int root = find(parents, stroke);
                        parents[taken] = root;
                        heads[root] = taken;
                    }
                } else {
                    const int root_taken = find(parents, taken);
                    const int root_other = find(parents, stroke);
                    if (root_taken != root_other) parents[root_other] = root_taken;
                }
            }
            if (above[p].end > run_end) break;
            ++p;
        }
        if (taken < 0) taken = new_stroke();
        last_stroke = taken;
        stroke_here[i] = taken;
    }
}

// Each row is written once, left to right: the frame, the gaps between runs
// as zeros, the runs as their labels. Every span but those of the last line
// and of the bottom frame may spill up to three entries into the span after
// it, which is written later; those stop exactly at the end of the array. An
// array too narrow to take a spill after its second-to-last line is written
// exactly throughout.
void RunLabels::write(int* labels, int width, int border) const {
    const std::size_t framed_width = static_cast<std::size_t>(width) + 2 * static_cast<std::size_t>(border);
    const std::size_t height = lines.size();
    const std::size_t frame_rows = static_cast<std::size_t>(border) * framed_width;
    // Without that room border is 0, and so the top frame is empty.
    const bool room_to_spill = framed_width * (static_cast<std::size_t>(border) + 1) >= 3;
    fill_over(labels, labels + frame_rows, 0);
    const auto over = [](int* first, int* last, int value) { fill_over(first, last, value); };
    const auto exact = [](int* first, int* last, int value) { fill_exact(first, last, value); };
    int* row = labels + frame_rows;
    for (std::size_t y = 0; y < height; ++y, row += framed_width) {
        if (room_to_spill && y + 1 < height)
            write_line(row, y, border, framed_width, over);
        else
            write_line(row, y, border, framed_width, exact);
    }
    fill_exact(row, row + frame_rows, 0);
}

bool RunLabels::runs_within(const RunsInImage& lines, int width) {
    // Runs of a line are in order and do not touch, so the last one decides.
    for (const RunsInLine& runs : lines) {
        if (runs.empty()) continue;
        const BinaryRun& last = runs[runs.size() - 1];
        if (last.start > last.end || last.end >= width) return false;
    }
    return true;
}

}  // namespace geometric

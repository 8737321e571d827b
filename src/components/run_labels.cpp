// Run labels in the calculator's numbering, and the label image written from them.
#include "components/run_labels.h"

#include <algorithm>

namespace geometric {

RunLabels::RunLabels(const RunsInImage& lines_, int reach) : lines(lines_), components(0) {
    const std::size_t height = lines.size();
    line_start.resize(height + 1);
    std::size_t total = 0;
    for (std::size_t y = 0; y < height; ++y) {
        line_start[y] = total;
        total += lines[y].size();
    }
    line_start[height] = total;
    run_label.resize(total);
    // A run makes at most one stroke.
    parent.reserve(total);
    head.reserve(total);

    if (height > 0)
        for (std::size_t i = 0; i < lines[0].size(); ++i) run_label[i] = new_stroke();
    for (std::size_t y = 1; y < height; ++y) label_line(y, reach);

    // Components in the order of their heads' creation, numbered from 1.
    const int strokes = static_cast<int>(parent.size());
    std::vector<int> label_of_root(parent.size(), 0);
    for (int s = 0; s < strokes; ++s) {
        const int root = find(s);
        if (head[root] == s) label_of_root[root] = ++components;
    }
    for (int& entry : run_label) entry = label_of_root[find(entry)];
}

int RunLabels::find(int stroke) {
    while (parent[stroke] != stroke) {
        parent[stroke] = parent[parent[stroke]];
        stroke = parent[stroke];
    }
    return stroke;
}

int RunLabels::new_stroke() {
    const int stroke = static_cast<int>(parent.size());
    parent.push_back(stroke);
    head.push_back(stroke);
    return stroke;
}

// Step for step the contact loop of process_line: the same runs above are
// compared in the same order, strokes are made where it makes them, and a
// split's new stroke becomes its component's head, while a merge keeps the
// head of the run in hand.
void RunLabels::label_line(std::size_t line, int reach) {
    const RunsInLine& runs = lines[line];
    const RunsInLine& above_runs = lines[line - 1];
    const std::size_t above_count = above_runs.size();
    const int* above_stroke = run_label.data() + line_start[line - 1];
    int* stroke_here = run_label.data() + line_start[line];
    std::size_t p = 0;
    int last_stroke = -1;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const BinaryRun& run = runs[i];
        int taken = -1;
        while (p < above_count && above_runs[p].end + reach < run.start) ++p;
        while (p < above_count) {
            const BinaryRun& above = above_runs[p];
            if (above.start <= run.end + reach) {
                const int stroke = above_stroke[p];
                if (taken < 0) {
                    if (stroke != last_stroke) {
                        taken = stroke;
                    } else {
                        taken = new_stroke();
                        const int root = find(stroke);
                        parent[taken] = root;
                        head[root] = taken;
                    }
                } else {
                    const int root_taken = find(taken);
                    const int root_other = find(stroke);
                    if (root_taken != root_other) parent[root_other] = root_taken;
                }
            }
            if (above.end > run.end) break;
            ++p;
        }
        if (taken < 0) taken = new_stroke();
        last_stroke = taken;
        stroke_here[i] = taken;
    }
}

// Each row is written once, left to right: the frame, the gaps between runs
// as zeros, the runs as their labels. A run that starts past its end (a set
// padding bit) covers nothing.
void RunLabels::write(int* labels, int width, int border) const {
    const std::size_t framed_width = static_cast<std::size_t>(width) + 2 * static_cast<std::size_t>(border);
    const std::size_t height = lines.size();
    const std::size_t frame_rows = static_cast<std::size_t>(border) * framed_width;
    std::fill(labels, labels + frame_rows, 0);
    int* row = labels + frame_rows;
    for (std::size_t y = 0; y < height; ++y, row += framed_width) {
        const RunsInLine& runs = lines[y];
        const int* label = run_label.data() + line_start[y];
        int* cursor = row;
        int* const inside = row + border;
        for (std::size_t i = 0; i < runs.size(); ++i) {
            const BinaryRun& run = runs[i];
            if (run.start > run.end) continue;
            int* const first = inside + run.start;
            int* const last = inside + run.end + 1;
            std::fill(cursor, first, 0);
            std::fill(first, last, label[i]);
            cursor = last;
        }
        std::fill(cursor, row + framed_width, 0);
    }
    std::fill(row, row + frame_rows, 0);
}

}  // namespace geometric

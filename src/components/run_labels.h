// The label of every run of an image, numbered exactly as the calculator
// numbers its components, found without strokes, run arrays or boxes: the
// fast route of the label image for a calculator that has formed nothing.
#ifndef MORVANE_COMPONENTS_RUN_LABELS_H
#define MORVANE_COMPONENTS_RUN_LABELS_H

#include <cstddef>
#include <memory>
#include <vector>

#include "pixel/runs_in_image.h"

namespace geometric {

// The same top-down pass as ConnectedComponentCalculator::process_line, with
// a stroke reduced to its number (creation order) and a component to a
// union-find set that remembers its head, the stroke the calculator would
// leave with no previous. The calculator numbers components by their heads
// in creation order, and so does this.
class RunLabels {
public:
    // Labels of the runs of lines, reach 1 for the eight-neighbourhood and 0
    // for the four-neighbourhood.
    RunLabels(const RunsInImage& lines, int reach);

    // Number of components.
    int count() const { return components; }
    // True when every run lies within columns 0 to width - 1 with its start
    // not after its end: false only where set padding bits made runs.
    static bool runs_within(const RunsInImage& lines, int width);
    // Writes the label image that calculate_label_image writes: every
    // one of (width + 2 border) x (lines + 2 border) entries, row by row;
    // border must not be negative, and every run must lie within the width
    // (start <= end < width), which a line with clear padding bits ensures.
    void write(int* labels, int width, int border) const;

private:
    // Root of the set of stroke, halving the path on the way.
    static int find(int* parent, int stroke);
    // A stroke of its own component, its own head.
    int new_stroke() {
        parent[strokes] = strokes;
        head[strokes] = strokes;
        return strokes++;
    }
    void label_line(std::size_t line, int reach);
    // One framed row: zeros, then each run's label over the columns of the
    // run, zeros between and after, each span stored by fill(first, last, value).
    template <typename Fill>
    void write_line(int* row, std::size_t line, int border, std::size_t framed_width, Fill fill) const {
        const RunsInLine& runs = lines[line];
        const int* label = run_label.get() + line_start[line];
        int* cursor = row;
        int* const inside = row + border;
        for (std::size_t i = 0; i < runs.size(); ++i) {
            int* const first = inside + runs[i].start;
            int* const last = inside + runs[i].end + 1;
            fill(cursor, first, 0);
            fill(first, last, label[i]);
            cursor = last;
        }
        fill(cursor, row + framed_width, 0);
    }

    const RunsInImage& lines;
    // First entry of each line in run_label, one more entry for the end.
    std::vector<std::size_t> line_start;
    // The stroke of each run during the pass; its label after it.
    std::unique_ptr<int[]> run_label;
    // Union-find parent of each stroke; head of each set, read at its root
    // during the pass, and each stroke's label after it. Room for one stroke
    // a run, of which the first strokes are taken.
    std::unique_ptr<int[]> parent;
    std::unique_ptr<int[]> head;
    int strokes;
    int components;
};

}  // namespace geometric

#endif

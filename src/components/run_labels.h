// The label of every run of an image, numbered exactly as the calculator
// numbers its components, found without strokes, run arrays or boxes: the
// fast route of the label image for a calculator that has formed nothing.
#ifndef MORVANE_COMPONENTS_RUN_LABELS_H
#define MORVANE_COMPONENTS_RUN_LABELS_H

#include <cstddef>
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
    // Writes the framed label image that calculate_label_image writes: every
    // one of (width + 2 border) x (lines + 2 border) entries, row by row,
    // each entry once; border must not be negative.
    void write(int* labels, int width, int border) const;

private:
    // Root of the set of stroke, halving the path on the way.
    int find(int stroke);
    // A stroke of its own component, its own head.
    int new_stroke();
    void label_line(std::size_t line, int reach);

    const RunsInImage& lines;
    // First entry of each line in run_stroke (then run_label), one more
    // entry for the end.
    std::vector<std::size_t> line_start;
    // The stroke of each run during the pass; its label after it.
    std::vector<int> run_label;
    // Union-find parent of each stroke; head of each set, read at its root.
    std::vector<int> parent;
    std::vector<int> head;
    int components;
};

}  // namespace geometric

#endif

// The runs of one image line, left to right, and the two scanners that find them.
#ifndef MORVANE_PIXEL_RUNS_IN_LINE_H
#define MORVANE_PIXEL_RUNS_IN_LINE_H

#include <cstddef>
#include <vector>

#include "pixel/binary_run.h"

namespace geometric {

class RunsInLine {
public:
    typedef std::vector<BinaryRun>::const_iterator const_iterator;

    // Scans a bitonal line (1 bit a pixel, most significant bit leftmost, set
    // bit = foreground) from start_column up to, not including, width; run
    // columns are those of the line. Sixty-four columns at a time through
    // big-endian words. The padding bits of the line must be zero:
    // a set bit found at or beyond width still gives the run
    // (start, width - 1), with start > end, and ends the scan. A null line or
    // an empty column range gives no runs.
    void formulate_runs(const unsigned char* line, int start_column, int width);
    // Scans a line of one byte a pixel: every value but 255 is foreground.
    void formulate_gray_runs(const unsigned char* line, int start_column, int width);

    std::size_t size() const { return runs.size(); }
    bool empty() const { return runs.empty(); }
    const BinaryRun& operator[](std::size_t index) const { return runs[index]; }
    const_iterator begin() const { return runs.begin(); }
    const_iterator end() const { return runs.end(); }
    void clear() { runs.clear(); }
    void reserve(std::size_t count) { runs.reserve(count); }
    void push_back(const BinaryRun& run) { runs.push_back(run); }
    void swap(RunsInLine& other) { runs.swap(other.runs); }
    // Copies the runs of other into exactly as much room as they need.
    void assign(const RunsInLine& other) { runs.assign(other.runs.begin(), other.runs.end()); }

private:
    std::vector<BinaryRun> runs;
};

}  // namespace geometric

#endif

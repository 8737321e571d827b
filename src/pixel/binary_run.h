// One horizontal run of foreground pixels on one image line.
#ifndef MORVANE_PIXEL_BINARY_RUN_H
#define MORVANE_PIXEL_BINARY_RUN_H

namespace geometric {

// Both bounds are columns of the run: a one-pixel run has start == end.
// A set padding bit of a bitonal line yields start > end (see RunsInLine).
struct BinaryRun {
    int start;
    int end;
};

}  // namespace geometric

#endif

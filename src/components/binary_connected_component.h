// A stroke: the runs of a component that formation attached to each other
// line by line, and at the same time one link of its component's chain.
#ifndef MORVANE_COMPONENTS_BINARY_CONNECTED_COMPONENT_H
#define MORVANE_COMPONENTS_BINARY_CONNECTED_COMPONENT_H

#include <memory_resource>
#include <utility>
#include <vector>

#include "components/binary_run.h"
#include "textgeometry/geobox.h"

namespace geometric {

// A component is the chain of strokes reachable by next from its head, the
// one stroke whose previous is null. Merging two components splices two
// chains; the cached pointers are union-find shortcuts that always point
// toward the head (cached_first) or the tail (cached_last), perhaps not all
// the way after later splices, so they are only ever shortened.
class BinaryConnectedComponent {
public:
    // A run of the stroke and the line on which it lies.
    typedef std::pair<const BinaryRun*, int> RunOnLine;
    // A growable array of runs; the calculator gives it memory from its own
    // arena, so that thousands of small arrays cost no heap calls.
    typedef std::pmr::vector<RunOnLine> StrokeRuns;

    BinaryConnectedComponent();
    explicit BinaryConnectedComponent(std::pmr::memory_resource* run_memory);
    BinaryConnectedComponent(const BinaryConnectedComponent&) = delete;
    BinaryConnectedComponent& operator=(const BinaryConnectedComponent&) = delete;

    // Head of the chain. Every stroke passed on the way remembers the head.
    BinaryConnectedComponent* get_first_element();
    // Tail of the chain, the mirror image of get_first_element.
    BinaryConnectedComponent* get_last_element();

    BinaryConnectedComponent* previous;
    BinaryConnectedComponent* next;
    BinaryConnectedComponent* cached_last;
    BinaryConnectedComponent* cached_first;
    // Pixels of this stroke's runs alone.
    unsigned pixels;
    // Filled only when the calculator stores runs; the runs live in the
    // calculator's RunsInImage.
    StrokeRuns runs;
    // Box of this stroke's runs alone; a stroke may hold two runs of one line.
    Geobox<int> box;
};

}  // namespace geometric

#endif

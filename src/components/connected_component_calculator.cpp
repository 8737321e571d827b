// Formation of components: strokes from runs, chains from strokes.
#include "components/connected_component_calculator.h"

#include <utility>

namespace geometric {

namespace {

// Room of the first pool array and of the local arrays of the pass.
constexpr std::size_t kInitialRoom = 10;
// Room of a new stroke's run array: most strokes of a page hold a few runs,
// and growing through 1, 2, 4 and 8 costs more than the slack: on a text
// page each regrowth is a pool allocation and a copy, a tenth of the pass.
constexpr std::size_t kFirstRunRoom = 8;

}  // namespace

void ConnectedComponentCalculator::iterator::settle() {
    for (;;) {
        while (stroke != array_end) {
            if (stroke->previous == nullptr) return;
            ++stroke;
        }
        ++node;
        if (node == sentinel) {
            stroke = nullptr;
            array_end = nullptr;
            return;
        }
        stroke = node->begin();
        array_end = node->end();
    }
}

ConnectedComponentCalculator::iterator& ConnectedComponentCalculator::iterator::operator++() {
    ++stroke;
    settle();
    return *this;
}

ConnectedComponentCalculator::ConnectedComponentCalculator()
    : store_runs(true), eight_neighborhood(true), strokes_pending(false), neighbor_reach(1) {
    pool.emplace_back(kInitialRoom);
}

ConnectedComponentCalculator::iterator ConnectedComponentCalculator::begin() {
    settle_strokes();
    iterator first(pool.front().begin(), pool.front().end(), pool.begin(), pool.end());
    first.settle();
    return first;
}

ConnectedComponentCalculator::iterator ConnectedComponentCalculator::end() {
    return iterator(nullptr, nullptr, pool.end(), pool.end());
}

std::size_t ConnectedComponentCalculator::size() {
    std::size_t count = 0;
    for (iterator it = begin(); it != end(); ++it) ++count;
    return count;
}

BinaryConnectedComponent* ConnectedComponentCalculator::take_new_stroke(const BinaryRun& run, int line) {
    if (pool.back().full()) pool.emplace_back(2 * pool.back().get_capacity());
    BinaryConnectedComponent* stroke = pool.back().take(&run_memory);
    stroke->box.right = run.end;
    stroke->box.bottom = line;
    stroke->box.left = run.start;
    stroke->box.top = line;
    stroke->pixels = static_cast<unsigned>(run.end - run.start + 1);
    if (store_runs) {
        stroke->runs.reserve(kFirstRunRoom);
        stroke->runs.emplace_back(&run, line);
    }
    return stroke;
}

void ConnectedComponentCalculator::extend_stroke(BinaryConnectedComponent* stroke, const BinaryRun& run, int line) {
    stroke->box.bottom = line;
    if (run.end > stroke->box.right) stroke->box.right = run.end;
    if (run.start < stroke->box.left) stroke->box.left = run.start;
    stroke->pixels += static_cast<unsigned>(run.end - run.start + 1);
    if (store_runs) stroke->runs.emplace_back(&run, line);
}

void ConnectedComponentCalculator::init_strokes_of_first_line(const RunsInLine& runs,
                                                              std::vector<BeingProcessedStroke>& current) {
    for (const BinaryRun& run : runs) current.push_back(BeingProcessedStroke{take_new_stroke(run, 0), &run});
}

// The cursor p walks the line above once, never back: a run above that
// reaches past the run in hand stays under the cursor for the next run.
void ConnectedComponentCalculator::process_line(const RunsInLine& runs, int line,
                                                const std::vector<BeingProcessedStroke>& previous,
                                                std::vector<BeingProcessedStroke>& current) {
    const int reach = neighbor_reach;
    const std::size_t above_count = previous.size();
    std::size_t p = 0;
    BinaryConnectedComponent* last_stroke = nullptr;
    // One entry for each run, filled in place.
    const std::size_t first_entry = current.size();
    current.resize(first_entry + runs.size());
    BeingProcessedStroke* entry = current.data() + first_entry;
    for (const BinaryRun& run : runs) {
        BinaryConnectedComponent* taken = nullptr;
        // Skip the runs above that end before this one can touch them.
        while (p < above_count && previous[p].run->end + reach < run.start) ++p;
        // Contact loop over the runs above that may touch this one.
        while (p < above_count) {
            const BinaryRun* above = previous[p].run;
            if (above->start <= run.end + reach) {
                BinaryConnectedComponent* stroke = previous[p].stroke;
                if (taken == nullptr) {
                    if (stroke != last_stroke) {
                        extend_stroke(stroke, run, line);
                        taken = stroke;
                    } else {
                        // The run before this one continued the same stroke: the
                        // line splits there. The new stroke goes in front of the
                        // chain and becomes the component's head.
                        taken = take_new_stroke(run, line);
                        BinaryConnectedComponent* head = stroke->get_first_element();
                        BinaryConnectedComponent* tail = taken->get_last_element();
                        tail->next = head;
                        head->previous = tail;
                    }
                } else {
                    // A further contact: merge, the chain of the run in hand in front.
                    BinaryConnectedComponent* first_taken = taken->get_first_element();
                    BinaryConnectedComponent* first_other = stroke->get_first_element();
                    if (first_taken != first_other) {
                        BinaryConnectedComponent* tail = taken->get_last_element();
                        tail->next = first_other;
                        first_other->previous = tail;
                    }
                }
            }
            if (above->end > run.end) break;
            ++p;
        }
        if (taken == nullptr) taken = take_new_stroke(run, line);
        last_stroke = taken;
        entry->stroke = taken;
        entry->run = &run;
        ++entry;
    }
}

void ConnectedComponentCalculator::form_strokes(const RunsInImage& lines) {
    const int height = static_cast<int>(lines.size());
    std::vector<BeingProcessedStroke> previous;
    std::vector<BeingProcessedStroke> current;
    previous.reserve(kInitialRoom);
    current.reserve(kInitialRoom);
    init_strokes_of_first_line(lines[0], previous);
    for (int y = 1; y < height; ++y) {
        current.clear();
        process_line(lines[y], y, previous, current);
        previous.swap(current);
    }
}

// The strokes that a label image alone left unformed are formed with the
// reach and the stored runs of that label image, as its formation would have
// formed them, whatever the flags say now.
void ConnectedComponentCalculator::settle_strokes() {
    if (!strokes_pending) return;
    strokes_pending = false;
    // The caller's choice comes back even when the formation throws.
    struct Restore {
        bool& flag;
        const bool value;
        ~Restore() { flag = value; }
    } restore{store_runs, store_runs};
    store_runs = true;
    form_strokes(*runs_in_image);
}

void ConnectedComponentCalculator::formulate_connected_components(const common::BasicImage& image) {
    settle_strokes();  // a second formation appends to the strokes of the first
    const int height = image.get_height();
    const int width = image.get_width();
    neighbor_reach = eight_neighborhood ? 1 : 0;
    if (height <= 0) return;

    if (store_runs) {
        runs_in_image = std::make_shared<RunsInImage>(image);
        form_strokes(*runs_in_image);
        return;
    }

    std::vector<BeingProcessedStroke> previous;
    std::vector<BeingProcessedStroke> current;
    previous.reserve(kInitialRoom);
    current.reserve(kInitialRoom);

    // Without stored runs two line buffers take turns; every line is read as bitonal.
    RunsInLine above;
    RunsInLine here;
    above.reserve(kInitialRoom);
    here.reserve(kInitialRoom);
    above.formulate_runs(image.get_line_pointer(0), 0, width);
    init_strokes_of_first_line(above, previous);
    for (int y = 1; y < height; ++y) {
        here.formulate_runs(image.get_line_pointer(y), 0, width);
        current.clear();
        process_line(here, y, previous, current);
        previous.swap(current);
        above.swap(here);
    }
}

}  // namespace geometric

// One node of the calculator's stroke pool: an array of strokes that never
// reallocates, so that stroke addresses hold for the calculator's life.
#ifndef MORVANE_COMPONENTS_STROKE_ARRAY_H
#define MORVANE_COMPONENTS_STROKE_ARRAY_H

#include <cstddef>
#include <memory_resource>
#include <new>

#include "components/binary_connected_component.h"

namespace geometric {

class StrokeArray {
public:
    // Room for capacity strokes; none is constructed until taken.
    explicit StrokeArray(std::size_t capacity_)
        : strokes(static_cast<BinaryConnectedComponent*>(::operator new(capacity_ * sizeof(BinaryConnectedComponent)))),
          capacity(capacity_), count(0) {}
    ~StrokeArray() {
        for (std::size_t i = 0; i < count; ++i) strokes[i].~BinaryConnectedComponent();
        ::operator delete(strokes);
    }
    StrokeArray(const StrokeArray&) = delete;
    StrokeArray& operator=(const StrokeArray&) = delete;

    bool full() const { return count == capacity; }
    std::size_t get_capacity() const { return capacity; }
    std::size_t size() const { return count; }
    BinaryConnectedComponent* begin() const { return strokes; }
    BinaryConnectedComponent* end() const { return strokes + count; }

    // A fresh stroke in the next free place, its runs in run_memory; the
    // array must not be full.
    BinaryConnectedComponent* take(std::pmr::memory_resource* run_memory) {
        BinaryConnectedComponent* stroke = new (strokes + count) BinaryConnectedComponent(run_memory);
        ++count;
        return stroke;
    }

private:
    BinaryConnectedComponent* strokes;
    std::size_t capacity;
    std::size_t count;
};

}  // namespace geometric

#endif

// The chain walks of a stroke, with path compression.
#include "components/binary_connected_component.h"

namespace geometric {

BinaryConnectedComponent::BinaryConnectedComponent()
    : BinaryConnectedComponent(std::pmr::get_default_resource()) {}

BinaryConnectedComponent::BinaryConnectedComponent(std::pmr::memory_resource* run_memory)
    : previous(nullptr), next(nullptr), cached_last(nullptr), cached_first(nullptr), pixels(0), runs(run_memory) {
    // A box that any run overwrites; formation then sets all four fields.
    box.right = -1000;
    box.bottom = -1000;
    box.left = 100000;
    box.top = 100000;
}

// Written as two loops instead of recursion, so that a long chain cannot
// exhaust the stack; the pointers stored are those the recursive find would
// store: each stroke that had to go on remembers the head.
BinaryConnectedComponent* BinaryConnectedComponent::get_first_element() {
    BinaryConnectedComponent* stroke = this;
    BinaryConnectedComponent* head;
    for (;;) {
        BinaryConnectedComponent* ahead = stroke->cached_first;
        if (ahead == nullptr) {
            if (stroke->previous == nullptr) {
                head = stroke;
                break;
            }
            ahead = stroke->previous;
        } else if (ahead->previous == nullptr) {
            head = ahead;
            break;
        }
        stroke = ahead;
    }
    for (stroke = this; stroke != head;) {
        BinaryConnectedComponent* ahead = stroke->cached_first != nullptr ? stroke->cached_first : stroke->previous;
        stroke->cached_first = head;
        stroke = ahead;
    }
    return head;
}

BinaryConnectedComponent* BinaryConnectedComponent::get_last_element() {
    BinaryConnectedComponent* stroke = this;
    BinaryConnectedComponent* tail;
    for (;;) {
        BinaryConnectedComponent* ahead = stroke->cached_last;
        if (ahead == nullptr) {
            if (stroke->next == nullptr) {
                tail = stroke;
                break;
            }
            ahead = stroke->next;
        } else if (ahead->next == nullptr) {
            tail = ahead;
            break;
        }
        stroke = ahead;
    }
    for (stroke = this; stroke != tail;) {
        BinaryConnectedComponent* ahead = stroke->cached_last != nullptr ? stroke->cached_last : stroke->next;
        stroke->cached_last = tail;
        stroke = ahead;
    }
    return tail;
}

}  // namespace geometric

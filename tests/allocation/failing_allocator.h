// Allocation failures on request, for a test program: its malloc, calloc,
// realloc and operator new count the allocations made while armed and fail
// the Nth (malloc answers null, operator new throws std::bad_alloc).
#ifndef MORVANE_TESTS_ALLOCATION_FAILING_ALLOCATOR_H
#define MORVANE_TESTS_ALLOCATION_FAILING_ALLOCATOR_H

namespace failing_allocator {

// Counts from 1 on; allocation number fail_at fails (0: none), and with
// from_then_on every later one as well, as when memory has run out.
void arm(long fail_at, bool from_then_on = false);
// Stops counting and failing; returns the number of allocations counted.
long disarm();
// Whether an allocation has failed since the last arm.
bool failed();

}  // namespace failing_allocator

#endif

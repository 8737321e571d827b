// Truncation of a floating value to a 32-bit int as the processor does it,
// shared by the sums that the definition keeps in ints.
#ifndef MORVANE_COMMON_INT_TRUNCATION_H
#define MORVANE_COMMON_INT_TRUNCATION_H

#include <cstdint>
#include <limits>

namespace common {

// Toward zero; a value outside the 32-bit range, or not a number, gives the
// smallest int (the processor's "integer indefinite") rather than undefined
// behaviour. A float argument widens exactly, so floats truncate alike.
inline std::int32_t truncate_to_int32(double v) {
    if (v > -2147483649.0 && v < 2147483648.0) return static_cast<std::int32_t>(v);
    return std::numeric_limits<std::int32_t>::min();
}

}  // namespace common

#endif

// Named constants shared across subsystems. Precision is behaviour: each
// epsilon is tested where the algorithm that owns it says, never swapped.
#ifndef MORVANE_COMMON_CONSTANTS_H
#define MORVANE_COMMON_CONSTANTS_H

namespace constants {

// Smallest float step at 1 (FLT_EPSILON), written out so that it is the same everywhere.
constexpr double kFloatEpsilon = 1.1920928955078125e-07;
// Smallest double step at 1 (DBL_EPSILON).
constexpr double kDoubleEpsilon = 2.220446049250313e-16;

constexpr double kPi = 3.14159265358979323846;
constexpr float kPiFloat = 3.14159265358979323846f;

// Dots per inch that every image entering the library counts as.
constexpr int kBoundaryResolution = 300;

// Scale factor of each scale level: 1, 2, 4, ..., 64.
constexpr int kScaleFactors[7] = {1, 2, 4, 8, 16, 32, 64};

}  // namespace constants

#endif

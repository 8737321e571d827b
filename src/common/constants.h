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

// Weights of red, green and blue in the luminance of a pixel, in thousandths
// (they sum to 1000): those of broadcast television.
constexpr int kLuminanceWeights[3] = {299, 587, 114};

// The gray value of an RGB pixel: (299 R + 587 G + 114 B) / 1000, truncated.
constexpr int luminance(int r, int g, int b) {
    return (kLuminanceWeights[0] * r + kLuminanceWeights[1] * g + kLuminanceWeights[2] * b) / 1000;
}

}  // namespace constants

#endif

// Exact integer division of block sums by the block area through one
// multiplication, for the fast down-sampling route.
#ifndef MORVANE_PIXEL_BLOCK_MEAN_DIVISOR_H
#define MORVANE_PIXEL_BLOCK_MEAN_DIVISOR_H

#include <cstdint>

namespace geometric {

// floor(sum / area) for every sum of an n by n block of bytes (sum <= 255 * area).
// With m = floor(2^32 / area) + 1, sum * m / 2^32 exceeds sum / area by less
// than sum / 2^32 <= 255 * area / 2^32, which stays below 1 / area, the least
// distance from sum / area up to the next integer, while area^2 <= 2^32 / 255,
// that is for n up to 64. Larger blocks divide.
class BlockMeanDivisor {
public:
    explicit BlockMeanDivisor(int n)
        : area(static_cast<uint64_t>(n) * static_cast<uint64_t>(n)),
          multiplier(n <= kLargestReciprocalRate ? (uint64_t(1) << 32) / area + 1 : 0) {}

    uint64_t divide(uint64_t sum) const { return multiplier != 0 ? (sum * multiplier) >> 32 : sum / area; }

    static constexpr int kLargestReciprocalRate = 64;

private:
    uint64_t area;
    uint64_t multiplier;
};

}  // namespace geometric

#endif

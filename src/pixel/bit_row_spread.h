// Word-wide neighbourhood of a bit-packed row (most significant bit leftmost),
// shared by the despeckling and the 3x3 dilation: eight columns a byte, 64
// at a time through big-endian words.
#ifndef MORVANE_PIXEL_BIT_ROW_SPREAD_H
#define MORVANE_PIXEL_BIT_ROW_SPREAD_H

#include <cstdint>
#include <cstring>

namespace geometric {
namespace bit_row {

inline uint64_t load_word(const unsigned char* bytes) {
    uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return __builtin_bswap64(word);
}

inline void store_word(unsigned char* bytes, uint64_t word) {
    word = __builtin_bswap64(word);
    std::memcpy(bytes, &word, sizeof word);
}

// Bytes k to k + 7 of a row of length bytes, each bit ORed with its left and
// right neighbours (and itself with centre); outside the row counts as 0.
inline uint64_t spread_word(const unsigned char* row, int k, int length, bool centre) {
    const uint64_t v = load_word(row + k);
    const uint64_t left = k > 0 ? (row[k - 1] & 1u) : 0u;
    const uint64_t right = k + 8 < length ? (row[k + 8] >> 7) : 0u;
    const uint64_t sides = (v << 1) | right | (v >> 1) | (left << 63);
    return centre ? sides | v : sides;
}

// The same for byte k alone.
inline unsigned spread_byte(const unsigned char* row, int k, int length, bool centre) {
    const unsigned v = row[k];
    const unsigned left = k > 0 ? row[k - 1] : 0u;
    const unsigned right = k + 1 < length ? row[k + 1] : 0u;
    const unsigned sides = ((v << 1) | (right >> 7) | (v >> 1) | (left << 7)) & 0xFFu;
    return centre ? sides | v : sides;
}

}  // namespace bit_row
}  // namespace geometric

#endif

// The bitonal and the gray line scanners.
#include "pixel/runs_in_line.h"

#include <cstdint>

#include "pixel/bit_row_spread.h"

namespace geometric {

namespace {

// Appends in place: a run built aside and copied in costs a stalled
// store-to-load forwarding on every run.
inline void append(std::vector<BinaryRun>& runs, int start, int end) {
    runs.emplace_back();
    BinaryRun& run = runs.back();
    run.start = start;
    run.end = end;
}

// Bits 64 word to 64 word + 63 of a line of bytes bytes, the first in the
// most significant place; bits past the last byte read as clear.
inline uint64_t line_word(const unsigned char* line, int word, int bytes) {
    const int first = word * 8;
    if (first + 8 <= bytes) return bit_row::load_word(line + first);
    uint64_t bits = 0;
    for (int k = first; k < bytes; ++k) bits |= static_cast<uint64_t>(line[k]) << (56 - 8 * (k - first));
    return bits;
}

// All bits from the given position in the word on, counted from the most
// significant bit.
inline uint64_t bits_from(int position) { return ~uint64_t{0} >> position; }

}  // namespace

// The line is read as the bits of its bytes up to the one holding column
// width - 1, 64 at a time: a run starts at a set bit and ends before the next
// clear one. A run that starts at or beyond width, or that reaches the last
// byte's end, ends at width - 1 and ends the scan, which is what the padding
// rule above says; a run ending inside set padding bits keeps its end.
void RunsInLine::formulate_runs(const unsigned char* line, int start_column, int width) {
    runs.clear();
    if (line == nullptr) return;
    if (start_column < 0) start_column = 0;
    if (start_column >= width) return;

    const int bytes = (width + 7) / 8;
    const int bits_end = bytes * 8;
    const int words = (bytes + 7) / 8;
    int word = start_column / 64;
    uint64_t bits = line_word(line, word, bytes) & bits_from(start_column % 64);
    for (;;) {
        while (bits == 0) {
            if (++word == words) return;
            bits = line_word(line, word, bytes);
        }
        const int start = word * 64 + __builtin_clzll(bits);
        if (start >= width) {
            // Kept as is: a set padding bit gives a run that starts beyond its end.
            append(runs, start, width - 1);
            return;
        }
        uint64_t clear = ~bits & bits_from(start % 64);
        while (clear == 0) {
            if (++word == words) {
                append(runs, start, width - 1);
                return;
            }
            bits = line_word(line, word, bytes);
            clear = ~bits;
        }
        const int end = word * 64 + __builtin_clzll(clear);
        if (end >= bits_end) {
            append(runs, start, width - 1);
            return;
        }
        append(runs, start, end - 1);
        bits &= bits_from(end % 64);
    }
}

void RunsInLine::formulate_gray_runs(const unsigned char* line, int start_column, int width) {
    runs.clear();
    if (line == nullptr) return;
    if (start_column < 0) start_column = 0;
    int x = start_column;
    while (x < width) {
        while (x < width && line[x] == 255) ++x;
        if (x == width) return;
        const int start = x;
        while (x < width && line[x] != 255) ++x;
        append(runs, start, x - 1);
    }
}

}  // namespace geometric

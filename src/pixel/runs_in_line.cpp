// The bitonal and the gray line scanners.
#include "pixel/runs_in_line.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace geometric {

namespace {

// Position of the first set bit of a byte, counted from the most significant
// bit; -1 for 0.
constexpr std::array<signed char, 256> make_first_set_table() {
    std::array<signed char, 256> table{};
    for (int byte = 0; byte < 256; ++byte) {
        table[byte] = -1;
        for (int bit = 0; bit < 8; ++bit) {
            if (byte & (0x80 >> bit)) {
                table[byte] = static_cast<signed char>(bit);
                break;
            }
        }
    }
    return table;
}

// Position of the first clear bit, counted from the most significant bit; -1 for 255.
constexpr std::array<signed char, 256> make_first_clear_table() {
    std::array<signed char, 256> table{};
    for (int byte = 0; byte < 256; ++byte) {
        table[byte] = -1;
        for (int bit = 0; bit < 8; ++bit) {
            if (!(byte & (0x80 >> bit))) {
                table[byte] = static_cast<signed char>(bit);
                break;
            }
        }
    }
    return table;
}

constexpr std::array<signed char, 256> kFirstSetBit = make_first_set_table();
constexpr std::array<signed char, 256> kFirstClearBit = make_first_clear_table();

// All bits from the given offset on (the offset counted from the most significant bit).
constexpr unsigned char kBitsFrom[8] = {0xFF, 0x7F, 0x3F, 0x1F, 0x0F, 0x07, 0x03, 0x01};
// All bits before the given offset.
constexpr unsigned char kBitsBefore[8] = {0x00, 0x80, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC, 0xFE};

// Appends in place: a run built aside and copied in costs a stalled
// store-to-load forwarding on every run.
inline void append(std::vector<BinaryRun>& runs, int start, int end) {
    runs.emplace_back();
    BinaryRun& run = runs.back();
    run.start = start;
    run.end = end;
}

inline bool is_zero_word(const unsigned char* bytes) {
    uint32_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word == 0;
}

}  // namespace

void RunsInLine::formulate_runs(const unsigned char* line, int start_column, int width) {
    runs.clear();
    if (line == nullptr) return;
    if (start_column < 0) start_column = 0;
    if (start_column >= width) return;

    const unsigned char* byte = line + (start_column >> 3);
    int column = start_column & ~7;  // column of the current byte's leftmost bit
    int offset = start_column & 7;   // first bit of the current byte still to scan
    while (column < width) {
        const int first = kFirstSetBit[*byte & kBitsFrom[offset]];
        if (first < 0) {
            ++byte;
            column += 8;
            offset = 0;
            if (width - column >= 32) {
                while (width - column >= 32 && is_zero_word(byte)) {
                    byte += 4;
                    column += 32;
                }
                while (column < width && *byte == 0) {
                    ++byte;
                    column += 8;
                }
            }
            continue;
        }
        const int start = column + first;
        if (start >= width) {
            // Kept as is: a set padding bit gives a run that starts beyond its end.
            append(runs, start, width - 1);
            return;
        }
        int clear = kFirstClearBit[*byte | kBitsBefore[first]];
        while (clear < 0) {
            ++byte;
            column += 8;
            if (column >= width) {
                append(runs, start, width - 1);
                return;
            }
            clear = kFirstClearBit[*byte];
        }
        append(runs, start, column + clear - 1);
        offset = clear;
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

// Ring dilation on words, one-dimensional morphology on runs.
#include "pixel/geo_morphological.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "pixel/bit_row_spread.h"
#include "pixel/runs_in_line.h"

namespace geometric {

namespace {

inline unsigned char* line_of(unsigned char* data, int row_size, int y) {
    return data + static_cast<size_t>(y) * static_cast<size_t>(row_size);
}

// Columns [from, to) of one line set or cleared, whole bytes in the middle.
void set_columns(unsigned char* line, int from, int to) {
    if (from >= to) return;
    const int first = from >> 3;
    const int last = (to - 1) >> 3;
    const unsigned head = 0xFFu >> (from & 7);
    const unsigned tail = (0xFF00u >> (((to - 1) & 7) + 1)) & 0xFFu;
    if (first == last) {
        line[first] = static_cast<unsigned char>(line[first] | (head & tail));
        return;
    }
    line[first] = static_cast<unsigned char>(line[first] | head);
    if (last > first + 1) std::memset(line + first + 1, 0xFF, static_cast<size_t>(last - first - 1));
    line[last] = static_cast<unsigned char>(line[last] | tail);
}

void clear_columns(unsigned char* line, int from, int to) {
    if (from >= to) return;
    const int first = from >> 3;
    const int last = (to - 1) >> 3;
    const unsigned head = 0xFFu >> (from & 7);
    const unsigned tail = (0xFF00u >> (((to - 1) & 7) + 1)) & 0xFFu;
    if (first == last) {
        line[first] = static_cast<unsigned char>(line[first] & ~(head & tail));
        return;
    }
    line[first] = static_cast<unsigned char>(line[first] & ~head);
    if (last > first + 1) std::memset(line + first + 1, 0, static_cast<size_t>(last - first - 1));
    line[last] = static_cast<unsigned char>(line[last] & ~tail);
}

inline void set_pixel(unsigned char* data, int row_size, int x, int y) {
    line_of(data, row_size, y)[x >> 3] |= static_cast<unsigned char>(0x80u >> (x & 7));
}

inline void clear_pixel(unsigned char* data, int row_size, int x, int y) {
    line_of(data, row_size, y)[x >> 3] &= static_cast<unsigned char>(~(0x80u >> (x & 7)));
}

// Calls act(start, end) for each run of the window's columns, inclusive
// bounds. A set bit at or past x1 in the last byte of the window lies outside
// it: the scanner's run reaching there is cut at x1 - 1, one starting there is
// passed over.
template <typename Act>
void for_each_window_run(const RunsInLine& runs, int x1, Act act) {
    for (const BinaryRun& run : runs) {
        if (run.start > run.end || run.start >= x1) continue;
        act(run.start, std::min(run.end, x1 - 1));
    }
}

// The shared step of the y twins. Each column remembers the line where its
// current vertical run began (-1: none); a column that a run of the line no
// longer covers ends its vertical run [start, y) and calls act(x, start, y).
// Runs still open at y1 end there. Lines are read from scan, which is data
// itself unless the operation writes ahead of the line in hand.
template <typename Act>
void walk_vertical_runs(const unsigned char* scan, int scan_y0, int row_size, int x0, int x1, int y0, int y1,
                        Act act) {
    if (x1 <= x0 || y1 <= y0) return;
    std::vector<int> column_start(static_cast<size_t>(x1 - x0), -1);
    int* state = column_start.data() - x0;
    RunsInLine runs;
    for (int y = y0; y < y1; ++y) {
        runs.formulate_runs(scan + static_cast<size_t>(y - scan_y0) * static_cast<size_t>(row_size), x0, x1);
        int x = x0;
        auto close_until = [&](int stop_column) {
            for (; x < stop_column; ++x) {
                if (state[x] != -1) {
                    act(x, state[x], y);
                    state[x] = -1;
                }
            }
        };
        for_each_window_run(runs, x1, [&](int start, int end) {
            close_until(start);
            for (; x <= end; ++x)
                if (state[x] == -1) state[x] = y;
        });
        close_until(x1);
    }
    for (int x = x0; x < x1; ++x)
        if (state[x] != -1) act(x, state[x], y1);
}

// Image forms: a BINARY image with a buffer, whole image as the window.
template <typename Operation>
void on_whole_image(common::Image& image, int size, Operation operation) {
    if (image.get_image_type() != common::BINARY || image.get_height() <= 0) return;
    unsigned char* data = image.get_line_pointer(0);
    if (data == nullptr) return;
    operation(size, data, image.get_row_size(), 0, image.get_width(), 0, image.get_height());
}

// a op= b byte by byte over the shorter of the two buffers, eight bytes at a time.
template <typename Op>
void combine(common::Image& a, const common::Image& b, Op op) {
    if (a.get_height() <= 0 || b.get_height() <= 0) return;
    unsigned char* target = a.get_line_pointer(0);
    const unsigned char* source = b.get_line_pointer(0);
    if (target == nullptr || source == nullptr) return;
    const size_t a_bytes = static_cast<size_t>(a.get_height()) * static_cast<size_t>(a.get_row_size());
    const size_t b_bytes = static_cast<size_t>(b.get_height()) * static_cast<size_t>(b.get_row_size());
    const size_t bytes = std::min(a_bytes, b_bytes);
    size_t i = 0;
    for (; i + 8 <= bytes; i += 8) {
        uint64_t x, y;
        std::memcpy(&x, target + i, 8);
        std::memcpy(&y, source + i, 8);
        x = op(x, y);
        std::memcpy(target + i, &x, 8);
    }
    for (; i < bytes; ++i) target[i] = static_cast<unsigned char>(op(target[i], source[i]));
}

}  // namespace

void GeoMorphological::dilate_xy(const unsigned char* source, unsigned char* target, int height, int row_size) {
    for (int y = 0; y < height; ++y) {
        const unsigned char* here = source + static_cast<size_t>(y) * row_size;
        const unsigned char* above = y > 0 ? here - row_size : nullptr;
        const unsigned char* below = y + 1 < height ? here + row_size : nullptr;
        unsigned char* out = target + static_cast<size_t>(y) * row_size;
        int k = 0;
        for (; k + 8 <= row_size; k += 8) {
            uint64_t around = bit_row::spread_word(here, k, row_size, false);
            if (above != nullptr) around |= bit_row::spread_word(above, k, row_size, true);
            if (below != nullptr) around |= bit_row::spread_word(below, k, row_size, true);
            bit_row::store_word(out + k, bit_row::load_word(out + k) | around);
        }
        for (; k < row_size; ++k) {
            unsigned around = bit_row::spread_byte(here, k, row_size, false);
            if (above != nullptr) around |= bit_row::spread_byte(above, k, row_size, true);
            if (below != nullptr) around |= bit_row::spread_byte(below, k, row_size, true);
            out[k] = static_cast<unsigned char>(out[k] | around);
        }
    }
}

void GeoMorphological::dilate_xy(const common::Image& source, common::Image& target) {
    if (source.get_image_type() != common::BINARY || source.get_height() <= 0) return;
    if (target.get_height() != source.get_height() || target.get_row_size() != source.get_row_size()) return;
    const unsigned char* from = source.get_line_pointer(0);
    unsigned char* to = target.get_line_pointer(0);
    if (from == nullptr || to == nullptr) return;
    dilate_xy(from, to, source.get_height(), source.get_row_size());
}

void GeoMorphological::open_x(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1) {
    RunsInLine runs;
    for (int y = y0; y < y1; ++y) {
        unsigned char* line = line_of(data, row_size, y);
        runs.formulate_runs(line, x0, x1);
        for_each_window_run(runs, x1, [&](int start, int end) {
            if (end - start + 1 < size) clear_columns(line, start, end + 1);
        });
    }
}

void GeoMorphological::dilate_x(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1) {
    RunsInLine runs;
    for (int y = y0; y < y1; ++y) {
        unsigned char* line = line_of(data, row_size, y);
        runs.formulate_runs(line, x0, x1);
        for_each_window_run(runs, x1, [&](int start, int end) {
            set_columns(line, std::max(x0, start - size), std::min(x1, end + 1 + size));
        });
    }
}

void GeoMorphological::erode_x(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1) {
    RunsInLine runs;
    for (int y = y0; y < y1; ++y) {
        unsigned char* line = line_of(data, row_size, y);
        runs.formulate_runs(line, x0, x1);
        for_each_window_run(runs, x1, [&](int start, int end) {
            const int e = end + 1;
            if (start + size >= e - size) {
                clear_columns(line, start, e);
            } else {
                clear_columns(line, start, start + size);
                clear_columns(line, e - size, e);
            }
        });
    }
}

void GeoMorphological::set_pixel_based_on_runs_for_open(int size, unsigned char* data, int row_size, int x,
                                                        int start, int stop) {
    if (stop - start >= size) return;
    for (int y = start; y < stop; ++y) clear_pixel(data, row_size, x, y);
}

void GeoMorphological::set_pixel_based_on_runs_for_dilate(int size, unsigned char* data, int row_size, int x,
                                                          int start, int stop, int y0, int y1) {
    for (int y = std::max(y0, start - size); y < start; ++y) set_pixel(data, row_size, x, y);
    const int below_end = std::min(y1, stop + size);
    for (int y = stop; y < below_end; ++y) set_pixel(data, row_size, x, y);
}

void GeoMorphological::set_pixel_based_on_runs_for_erode(int size, unsigned char* data, int row_size, int x,
                                                         int start, int stop) {
    const int e = stop;
    if (start + size >= e - size) {
        for (int y = start; y < e; ++y) clear_pixel(data, row_size, x, y);
        return;
    }
    for (int y = start; y < start + size; ++y) clear_pixel(data, row_size, x, y);
    for (int y = e - size; y < e; ++y) clear_pixel(data, row_size, x, y);
}

// Opening and erosion only clear lines above the line in hand, so they read
// the lines as they go.
void GeoMorphological::open_y(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1) {
    walk_vertical_runs(data, 0, row_size, x0, x1, y0, y1, [&](int x, int start, int stop) {
        set_pixel_based_on_runs_for_open(size, data, row_size, x, start, stop);
    });
}

void GeoMorphological::erode_y(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1) {
    walk_vertical_runs(data, 0, row_size, x0, x1, y0, y1, [&](int x, int start, int stop) {
        set_pixel_based_on_runs_for_erode(size, data, row_size, x, start, stop);
    });
}

// Dilation sets pixels below the line in hand, where the walk has yet to read:
// it reads a copy of the window's lines, so that it does not grow from its
// own output.
void GeoMorphological::dilate_y(int size, unsigned char* data, int row_size, int x0, int x1, int y0, int y1) {
    if (x1 <= x0 || y1 <= y0) return;
    const size_t row = static_cast<size_t>(row_size);
    std::vector<unsigned char> original(static_cast<size_t>(y1 - y0) * row);
    std::memcpy(original.data(), line_of(data, row_size, y0), original.size());
    walk_vertical_runs(original.data(), y0, row_size, x0, x1, y0, y1, [&](int x, int start, int stop) {
        set_pixel_based_on_runs_for_dilate(size, data, row_size, x, start, stop, y0, y1);
    });
}

void GeoMorphological::open_x(common::Image& image, int size) {
    on_whole_image(image, size, [](int s, unsigned char* d, int r, int x0, int x1, int y0, int y1) {
        open_x(s, d, r, x0, x1, y0, y1);
    });
}

void GeoMorphological::dilate_x(common::Image& image, int size) {
    on_whole_image(image, size, [](int s, unsigned char* d, int r, int x0, int x1, int y0, int y1) {
        dilate_x(s, d, r, x0, x1, y0, y1);
    });
}

void GeoMorphological::erode_x(common::Image& image, int size) {
    on_whole_image(image, size, [](int s, unsigned char* d, int r, int x0, int x1, int y0, int y1) {
        erode_x(s, d, r, x0, x1, y0, y1);
    });
}

void GeoMorphological::open_y(common::Image& image, int size) {
    on_whole_image(image, size, [](int s, unsigned char* d, int r, int x0, int x1, int y0, int y1) {
        open_y(s, d, r, x0, x1, y0, y1);
    });
}

void GeoMorphological::dilate_y(common::Image& image, int size) {
    on_whole_image(image, size, [](int s, unsigned char* d, int r, int x0, int x1, int y0, int y1) {
        dilate_y(s, d, r, x0, x1, y0, y1);
    });
}

void GeoMorphological::erode_y(common::Image& image, int size) {
    on_whole_image(image, size, [](int s, unsigned char* d, int r, int x0, int x1, int y0, int y1) {
        erode_y(s, d, r, x0, x1, y0, y1);
    });
}

void GeoMorphological::or2(common::Image& a, const common::Image& b) {
    combine(a, b, [](auto x, auto y) { return x | y; });
}

void GeoMorphological::xor2(common::Image& a, const common::Image& b) {
    combine(a, b, [](auto x, auto y) { return x ^ y; });
}

void GeoMorphological::remove_denotation(common::Image& a, const common::Image& b) {
    combine(a, b, [](auto x, auto y) { return x & ~y; });
}

}  // namespace geometric

// What a component tells about itself: box, size, top point, drawing, its
// contour, and the gray-level measures that the quality work rests on.
#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>

#include "components/binary_connected_component.h"
#include "pixel/binary_image_operator.h"

namespace geometric {

namespace {

// Sets or clears the bits start..end (inclusive) of one bitonal row.
void set_bit_span(unsigned char* row, int start, int end, bool set) {
    int first_byte = start >> 3;
    const int last_byte = end >> 3;
    const unsigned char head_mask = static_cast<unsigned char>(0xFFu >> (start & 7));
    const unsigned char tail_mask = static_cast<unsigned char>(0xFFu << (7 - (end & 7)));
    if (first_byte == last_byte) {
        const unsigned char mask = head_mask & tail_mask;
        row[first_byte] = set ? (row[first_byte] | mask) : (row[first_byte] & ~mask);
        return;
    }
    row[first_byte] = set ? (row[first_byte] | head_mask) : (row[first_byte] & ~head_mask);
    for (++first_byte; first_byte < last_byte; ++first_byte) row[first_byte] = set ? 0xFF : 0x00;
    row[last_byte] = set ? (row[last_byte] | tail_mask) : (row[last_byte] & ~tail_mask);
}

void draw_runs(const BinaryConnectedComponent* head, common::BasicImage& image, bool set) {
    const int width = image.get_width();
    const int height = image.get_height();
    for (const BinaryConnectedComponent* s = head; s != nullptr; s = s->next) {
        for (const BinaryConnectedComponent::RunOnLine& r : s->runs) {
            if (r.second < 0 || r.second >= height) continue;
            const int start = std::max(r.first->start, 0);
            const int end = std::min(r.first->end, width - 1);
            if (start > end) continue;
            set_bit_span(image.get_line_pointer(r.second), start, end, set);
        }
    }
}

// Moore-neighbour steps, clockwise from up, y growing downward.
constexpr int kStepX[8] = {0, 1, 1, 1, 0, -1, -1, -1};
constexpr int kStepY[8] = {-1, -1, 0, 1, 1, 1, 0, -1};
// Where the search starts after a step in direction d: back beside the
// cell just left, so that the trace hugs the outside of the blob.
constexpr int kNextSearch[8] = {7, 7, 1, 1, 3, 3, 5, 5};

}  // namespace

void BinaryConnectedComponent::get_top_point(Geocoordinate<int>& point) const {
    int best_line = INT_MAX;
    for (const BinaryConnectedComponent* s = this; s != nullptr; s = s->next) {
        if (s->runs.empty()) continue;
        const RunOnLine& first = s->runs.front();
        if (first.second < best_line) {
            best_line = first.second;
            point.x = first.first->start;
            point.y = first.second;
        }
    }
}

Geobox<int> BinaryConnectedComponent::get_bounding_box() const {
    Geobox<int> whole = box;
    const auto unite = [&whole](const Geobox<int>& b) {
        whole.right = std::max(whole.right, b.right);
        whole.bottom = std::max(whole.bottom, b.bottom);
        whole.left = std::min(whole.left, b.left);
        whole.top = std::min(whole.top, b.top);
    };
    for (const BinaryConnectedComponent* s = next; s != nullptr; s = s->next) unite(s->box);
    for (const BinaryConnectedComponent* s = previous; s != nullptr; s = s->previous) unite(s->box);
    return whole;
}

unsigned BinaryConnectedComponent::count_pixel() const {
    unsigned total = pixels;
    for (const BinaryConnectedComponent* s = next; s != nullptr; s = s->next) total += s->pixels;
    for (const BinaryConnectedComponent* s = previous; s != nullptr; s = s->previous) total += s->pixels;
    return total;
}

int BinaryConnectedComponent::count_stroke() const {
    int count = 1;
    for (const BinaryConnectedComponent* s = next; s != nullptr; s = s->next) ++count;
    return count;
}

void BinaryConnectedComponent::draw_blob_image(common::BasicImage& image) const { draw_runs(this, image, true); }

void BinaryConnectedComponent::undraw_blob_image(common::BasicImage& image) const { draw_runs(this, image, false); }

void BinaryConnectedComponent::draw_blob_image(common::BasicImage& image, int value, int factor) const {
    const int width = image.get_width();
    const int height = image.get_height();
    const unsigned char byte = static_cast<unsigned char>(value);
    for (const BinaryConnectedComponent* s = this; s != nullptr; s = s->next) {
        for (const RunOnLine& r : s->runs) {
            const int start = std::max(r.first->start * factor, 0);
            const int end = std::min(r.first->end * factor + factor - 1, width - 1);
            if (start > end) continue;
            const int first_line = std::max(r.second * factor, 0);
            const int last_line = std::min(r.second * factor + factor - 1, height - 1);
            for (int y = first_line; y <= last_line; ++y)
                std::fill(image.get_line_pointer(y) + start, image.get_line_pointer(y) + end + 1, byte);
        }
    }
}

bool BinaryConnectedComponent::is_thick_blob(const common::Image& image) const {
    for (const BinaryConnectedComponent* s = this; s != nullptr; s = s->next)
        for (const RunOnLine& r : s->runs)
            if (BinaryImageOperator::check_black_run(image.get_line_pointer(r.second), r.first->start,
                                                     r.first->end - r.first->start + 1))
                return true;
    return false;
}

void BinaryConnectedComponent::get_element_coordinates(std::vector<int>& xs, std::vector<int>& ys) const {
    for (const BinaryConnectedComponent* s = this; s != nullptr; s = s->next) {
        for (const RunOnLine& r : s->runs) {
            for (int x = r.first->start; x <= r.first->end; ++x) {
                xs.push_back(x);
                ys.push_back(r.second);
            }
        }
    }
}

void BinaryConnectedComponent::get_boundary(std::vector<int>& xs, std::vector<int>& ys, bool keep_all) const {
    std::vector<signed char> grid;
    std::vector<int> cells;
    get_boundary(xs, ys, keep_all, grid, cells);
}

void BinaryConnectedComponent::get_boundary(std::vector<int>& xs, std::vector<int>& ys, bool keep_all,
                                            std::vector<signed char>& grid, std::vector<int>& cells) const {
    const Geobox<int> whole = get_bounding_box();
    const int grid_width = whole.width() + 2;
    const int grid_height = whole.height() + 2;
    // One-cell frame of zeros around the box, so that no look leaves the
    // grid. Cells: 0 outside, 1 blob, -1 the start, -2 passed.
    grid.assign(static_cast<std::size_t>(grid_width) * grid_height, 0);
    for (const BinaryConnectedComponent* s = this; s != nullptr; s = s->next) {
        for (const RunOnLine& r : s->runs) {
            signed char* line = grid.data() + static_cast<std::size_t>(r.second - whole.top + 1) * grid_width;
            std::fill(line + (r.first->start - whole.left + 1), line + (r.first->end - whole.left + 2), 1);
        }
    }
    Geocoordinate<int> top(whole.left, whole.top);
    get_top_point(top);
    const int start = (top.y - whole.top + 1) * grid_width + (top.x - whole.left + 1);
    int step[8];
    for (int d = 0; d < 8; ++d) step[d] = kStepY[d] * grid_width + kStepX[d];

    cells.clear();
    cells.reserve(10000);
    grid[start] = -1;
    cells.push_back(start);
    int current = start;
    int first_direction = -1;
    int returns = 0;
    int search = 1;
    // Each (cell, search direction) state can come only once in a trace that
    // has not ended, which bounds the loop even for an odd shape.
    const std::size_t limit = 8 * grid.size() + 8;
    for (std::size_t guard = 0; guard < limit; ++guard) {
        int found = -1;
        for (int look = 0; look < 8; ++look) {
            const int d = (search + look) & 7;
            if (grid[current + step[d]] != 0) {
                found = d;
                break;
            }
        }
        if (found < 0) break;  // a blob of one pixel
        if (current == start) {
            if (first_direction < 0)
                first_direction = found;
            else if (found == first_direction)
                break;
        }
        const int target = current + step[found];
        if (target != start) {
            grid[target] = -2;
            current = target;
            cells.push_back(target);
        } else {
            ++returns;
            current = start;
        }
        search = kNextSearch[found];
    }
    if (returns > 1) cells.push_back(start);

    for (int cell : cells) {
        const int x = cell % grid_width - 1 + whole.left;
        const int y = cell / grid_width - 1 + whole.top;
        if (!keep_all && (x == 1 || y == 1)) continue;
        xs.push_back(x);
        ys.push_back(y);
    }
}

void BinaryConnectedComponent::fore_back_neighbor(const common::Image& binary, const common::Image& dilated,
                                                  const common::Image& gray, int window,
                                                  BlobNeighborForeBack& result) const {
    const int radius = window / 2;
    const int height = binary.get_height();
    const int width = binary.get_width();
    const int binary_row_size = binary.get_row_size();
    const int dilated_row_size = dilated.get_row_size();
    std::int64_t all_sum = 0, interior_sum = 0, background_sum = 0;
    std::int64_t interior_count = 0, background_count = 0, total = 0;
    for (const BinaryConnectedComponent* s = this; s != nullptr; s = s->next) {
        for (const RunOnLine& r : s->runs) {
            const int y = r.second;
            unsigned char* binary_row = binary.get_line_pointer(y);
            unsigned char* dilated_row = dilated.get_line_pointer(y);
            unsigned char* gray_row = gray.get_line_pointer(y);
            total += r.first->end - r.first->start + 1;
            for (int x = r.first->start; x <= r.first->end; ++x) {
                const int g = gray_row[x];
                all_sum += g;
                if (BinaryImageOperator::in_the_blob_contour(binary_row, x, y, height, width, binary_row_size)) {
                    const int a = BinaryImageOperator::calculate_background_average(dilated_row, gray_row, x, y, height,
                                                                                    width, dilated_row_size, radius);
                    if (a != -1) {
                        background_sum += a;
                        ++background_count;
                    }
                } else {
                    interior_sum += g;
                    ++interior_count;
                }
            }
        }
    }
    result.foreground = static_cast<int>(interior_count > 0 ? interior_sum / interior_count : interior_sum);
    result.all_pixels = static_cast<int>(total > 0 ? all_sum / total : all_sum);
    result.background = static_cast<int>(background_count > 0 ? background_sum / background_count : background_sum);
}

double BinaryConnectedComponent::compression_cost(const common::Image& binary, const common::Image& dilated,
                                                  const common::Image& gray, int window,
                                                  const BlobNeighborForeBack& means, BlobNeighborCost& cost) const {
    const int radius = window / 2;
    const int height = binary.get_height();
    const int width = binary.get_width();
    const int binary_row_size = binary.get_row_size();
    const int dilated_row_size = dilated.get_row_size();
    double s_all = 0.0, s_fore = 0.0, s_back = 0.0, gradient = 0.0;
    std::int64_t nf = 0, nb = 0, n = 0;
    for (const BinaryConnectedComponent* s = this; s != nullptr; s = s->next) {
        for (const RunOnLine& r : s->runs) {
            const int y = r.second;
            unsigned char* binary_row = binary.get_line_pointer(y);
            unsigned char* dilated_row = dilated.get_line_pointer(y);
            unsigned char* gray_row = gray.get_line_pointer(y);
            const unsigned char* up = y > 0 ? gray.get_line_pointer(y - 1) : nullptr;
            const unsigned char* down = y < height - 1 ? gray.get_line_pointer(y + 1) : nullptr;
            n += r.first->end - r.first->start + 1;
            for (int x = r.first->start; x <= r.first->end; ++x) {
                const double g = gray_row[x];
                s_all += (g - means.all_pixels) * (g - means.all_pixels);
                if (BinaryImageOperator::in_the_blob_contour(binary_row, x, y, height, width, binary_row_size)) {
                    const int a = BinaryImageOperator::calculate_background_average(dilated_row, gray_row, x, y, height,
                                                                                    width, dilated_row_size, radius);
                    if (a != -1) {
                        s_back += static_cast<double>(a - means.background) * (a - means.background);
                        ++nb;
                    }
                } else {
                    s_fore += (g - means.foreground) * (g - means.foreground);
                    ++nf;
                }
                // Prediction from the left and above; nothing at the first pixel.
                if (x >= 1 || up != nullptr) {
                    double e;
                    if (x >= 1 && up != nullptr)
                        e = (gray_row[x - 1] + up[x] + up[x - 1]) / 3.0;
                    else if (x >= 1)
                        e = gray_row[x - 1];
                    else
                        e = up[x];
                    gradient += (e - g) * (e - g);
                }
                // Prediction from the right and below.
                if (x < width - 1) {
                    const double e =
                        down != nullptr ? (gray_row[x + 1] + down[x] + down[x + 1]) / 3.0 : gray_row[x + 1];
                    gradient += (e - g) * (e - g);
                } else if (down != nullptr) {
                    gradient += (down[x] - g) * (down[x] - g);
                }
            }
        }
    }
    cost.gradient_cost += gradient;
    if (nf >= 5)
        cost.foreground_cost = static_cast<double>(n) * s_fore / static_cast<double>(nf);
    else if (nf >= 1)
        cost.foreground_cost = 0.5 * s_fore;
    else
        cost.foreground_cost = 0.25 * s_all;
    if (nb > 0) cost.background_cost = static_cast<double>(n) * s_back / static_cast<double>(nb);
    cost.background_count = static_cast<double>(nb);
    return cost.background_count;
}

}  // namespace geometric

// Mean and deviation maps through inclusive integral images of doubles.
#include "binarization/mean_and_deviation_maps.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace geometric {

void calculate_mean_and_deviation_maps(const common::Image& gray, Image<double>& mean, Image<double>& deviation) {
    const int height = gray.get_height();
    const int width = gray.get_width();
    if (height <= 0 || width <= 0 || mean.get_data() == nullptr || deviation.get_data() == nullptr) return;
    const int window_x = mean.get_window_x();
    const int window_y = mean.get_window_y();
    const int hx = window_x / 2;
    const int hy = window_y / 2;

    // One leading row and column of zeros: entry (y + 1, x + 1) holds the
    // inclusive sum up to pixel (x, y).
    const size_t stride = static_cast<size_t>(width) + 1;
    std::vector<double> sums(stride * (static_cast<size_t>(height) + 1), 0.0);
    std::vector<double> squares(sums.size(), 0.0);
    for (int y = 0; y < height; ++y) {
        const unsigned char* line = gray.get_line_pointer(y);
        double row_sum = 0.0;
        double row_square = 0.0;
        const double* sum_above = &sums[static_cast<size_t>(y) * stride];
        const double* square_above = &squares[static_cast<size_t>(y) * stride];
        double* sum_here = &sums[static_cast<size_t>(y + 1) * stride];
        double* square_here = &squares[static_cast<size_t>(y + 1) * stride];
        for (int x = 0; x < width; ++x) {
            const double p = line[x];
            row_sum += p;
            row_square += p * p;
            sum_here[x + 1] = sum_above[x + 1] + row_sum;
            square_here[x + 1] = square_above[x + 1] + row_square;
        }
    }

    for (int y = 0; y < height; ++y) {
        const int top = std::max(y - hy, 0);
        const int bottom = std::min(y - hy + window_y - 1, height - 1);
        double* mean_line = mean.get_line(y);
        double* deviation_line = deviation.get_line(y);
        for (int x = 0; x < width; ++x) {
            const int left = std::max(x - hx, 0);
            const int right = std::min(x - hx + window_x - 1, width - 1);
            const double area = static_cast<double>(right - left + 1) * static_cast<double>(bottom - top + 1);
            const size_t a = static_cast<size_t>(top) * stride + left;
            const size_t b = static_cast<size_t>(top) * stride + right + 1;
            const size_t c = static_cast<size_t>(bottom + 1) * stride + left;
            const size_t d = static_cast<size_t>(bottom + 1) * stride + right + 1;
            const double m = (sums[d] - sums[b] - sums[c] + sums[a]) / area;
            const double square = (squares[d] - squares[b] - squares[c] + squares[a]) / area;
            mean_line[x] = m;
            deviation_line[x] = std::sqrt(square - m * m);
        }
    }
}

}  // namespace geometric

// Whole-image measures and tests used by the edge search and the quality score.
#include "pixel/image_operator.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pixel/binary_image_operator.h"

namespace geometric {

namespace {

const char* const kPixelPointerFailed = "UNKNOWN and BGRA types are not handled in fct get_pixel_pointer";
const char* const kSizesDiffer = "images to subtract differ in size";
const char* const kDeviationNeedsGray = "background deviation is defined for GRAY images only";

inline bool bit_is_set(const unsigned char* row, int x) { return (row[x >> 3] & (0x80 >> (x & 7))) != 0; }

// Deviation of the gray values in the box [x0, x0 + size) by [y0, y0 + size),
// clipped to the image; 0 for an empty box.
float patch_deviation(const common::BasicImage& image, int x0, int y0, int size) {
    const int x1 = std::min(x0 + size, image.get_width());
    const int y1 = std::min(y0 + size, image.get_height());
    x0 = std::max(x0, 0);
    y0 = std::max(y0, 0);
    if (x1 <= x0 || y1 <= y0) return 0.0f;
    uint64_t sum = 0;
    uint64_t square_sum = 0;
    for (int y = y0; y < y1; ++y) {
        const unsigned char* row = image.get_line_pointer(y);
        for (int x = x0; x < x1; ++x) {
            sum += row[x];
            square_sum += static_cast<uint64_t>(row[x]) * row[x];
        }
    }
    const float count = static_cast<float>((x1 - x0) * (y1 - y0));
    const float mean = static_cast<float>(sum) / count;
    const float mean_square = static_cast<float>(square_sum) / count;
    const float variance = mean_square - mean * mean;
    // Rounding may leave a tiny negative variance on a flat patch.
    return variance > 0.0f ? std::sqrt(variance) : 0.0f;
}

}  // namespace

void ImageOperator::fetch_image_patch_central(const common::BasicImage& image, double share,
                                              common::BasicImage& patch) {
    const common::ImageType type = image.get_image_type();
    if (type != common::GRAY && type != common::RGB) throw kPixelPointerFailed;
    const double side = share > 0.0 ? std::sqrt(share) : 0.0;
    const int width = std::min(static_cast<int>(image.get_width() * side), image.get_width());
    const int height = std::min(static_cast<int>(image.get_height() * side), image.get_height());
    const int left = (image.get_width() - width) / 2;
    const int top = (image.get_height() - height) / 2;
    common::BasicImage result(height, width, type, image.get_x_resolution(), image.get_y_resolution());
    const int bytes = common::row_size_of(type, width);
    for (int y = 0; y < height; ++y)
        std::memcpy(result.get_line_pointer(y), image.get_pixel_pointer(left, top + y), static_cast<size_t>(bytes));
    patch.swap(result);
}

void ImageOperator::substract(const common::BasicImage& first, common::BasicImage& second) {
    if (first.get_data_size() != second.get_data_size()) throw kSizesDiffer;
    const unsigned char* a = first.get_data();
    unsigned char* b = second.get_data();
    const int size = second.get_data_size();
    for (int i = 0; i < size; ++i) b[i] = a[i] > b[i] ? static_cast<unsigned char>(a[i] - b[i]) : 0;
}

float ImageOperator::mean(const common::BasicImage& image) {
    const int size = image.get_data_size();
    if (size <= 0 || image.get_data() == nullptr) return 0.0f;
    const unsigned char* bytes = image.get_data();
    float sum = 0.0f;
    for (int i = 0; i < size; ++i) sum += bytes[i];
    return sum / static_cast<float>(size);
}

bool ImageOperator::is_complete_background(const common::BasicImage& image) {
    const int64_t size = static_cast<int64_t>(image.get_height()) * image.get_row_size();
    const unsigned char* bytes = image.get_data();
    if (bytes == nullptr) return true;
    for (int64_t i = 0; i < size; ++i)
        if (bytes[i] != 0) return false;
    return true;
}

bool ImageOperator::image_border_contains_text(const common::BasicImage& image) {
    const int height = image.get_height();
    const int width = image.get_width();
    if (height <= 0 || width <= 0 || image.get_data() == nullptr) return false;
    if (BinaryImageOperator::check_black_run(image.get_line_pointer(0), 0, width)) return true;
    if (BinaryImageOperator::check_black_run(image.get_line_pointer(height - 1), 0, width)) return true;
    for (int y = 1; y < height - 1; ++y) {
        const unsigned char* row = image.get_line_pointer(y);
        if (bit_is_set(row, 0) || bit_is_set(row, width - 1)) return true;
    }
    return false;
}

float ImageOperator::calculate_background_std(const common::BasicImage& image, float* lowest) {
    if (image.get_image_type() != common::GRAY) throw kDeviationNeedsGray;
    const int width = image.get_width();
    const int height = image.get_height();
    const int size = std::max(std::min(width, height) / 100, 7);
    const int middle = height / 2 - size / 2;
    float deviations[6] = {
        patch_deviation(image, 0, 0, size),          patch_deviation(image, width - size, 0, size),
        patch_deviation(image, 0, height - size, size), patch_deviation(image, width - size, height - size, size),
        patch_deviation(image, 0, middle, size),     patch_deviation(image, width - size, middle, size),
    };
    std::sort(deviations, deviations + 6);
    if (lowest != nullptr) *lowest = deviations[0];
    return deviations[2];
}

void ImageOperator::obtain_object_coordinates(const common::BasicImage& image, std::vector<int>& xs,
                                              std::vector<int>& ys) {
    const int width = image.get_width();
    const int height = image.get_height();
    const size_t reserve = static_cast<size_t>(static_cast<int64_t>(width) * height / 100);
    xs.reserve(xs.size() + reserve);
    ys.reserve(ys.size() + reserve);
    if (image.get_data() == nullptr) return;
    for (int y = 0; y < height; ++y) {
        const unsigned char* row = image.get_line_pointer(y);
        for (int x = 0; x < width; ++x) {
            if (!bit_is_set(row, x)) continue;
            xs.push_back(x);
            ys.push_back(y);
        }
    }
}

}  // namespace geometric

// The blob calculator family: a calculator handle, its queries copied into
// the caller's arrays, and its release.
#include <algorithm>
#include <cstddef>
#include <new>
#include <vector>

#include "common/basic_image.h"
#include "common/image_c_api_transformer.h"
#include "components/connected_component_calculator.h"
#include "morvane/morvane.h"

namespace {

geometric::ConnectedComponentCalculator& calculator_of(void* handle) {
    return *static_cast<geometric::ConnectedComponentCalculator*>(handle);
}

// Visits the padding of each row of a 1-bit image: the bits after the last
// column in its byte (mask) and the whole bytes after that.
template <typename Visit>
void for_each_padding_byte(const common::BasicImage& image, Visit visit) {
    const int width = image.get_width();
    const int whole = width / 8;
    const unsigned char tail_mask = static_cast<unsigned char>(width % 8 != 0 ? 0xFFu >> (width % 8) : 0u);
    const int first_free = whole + (width % 8 != 0 ? 1 : 0);
    for (int y = 0; y < image.get_height(); ++y) {
        unsigned char* line = image.get_line_pointer(y);
        if (tail_mask != 0) visit(line[whole], tail_mask);
        for (int i = first_free; i < image.get_row_size(); ++i) visit(line[i], static_cast<unsigned char>(0xFF));
    }
}

// A view on the caller's buffer; nothing is copied, with one exception. Runs
// are read a byte at a time, so set padding bits after the last column would
// make runs that reach past the width, and every query would then write past
// the arrays that the caller sized by the width. Such a record is copied once
// with its padding cleared; the caller's buffer is never written.
class View : public common::BasicImage {
public:
    explicit View(const ImageCApi* image) {
        morvane::ImageCApiTransformer::transform_c_api_image_to_image(*image, *this);
        if (get_image_type() != common::BINARY || get_data() == nullptr) return;
        bool padding_is_clear = true;
        for_each_padding_byte(*this, [&](unsigned char& byte, unsigned char mask) {
            if ((byte & mask) != 0) padding_is_clear = false;
        });
        if (padding_is_clear) return;
        common::BasicImage cleared(static_cast<const common::BasicImage&>(*this));
        for_each_padding_byte(cleared, [](unsigned char& byte, unsigned char mask) {
            byte = static_cast<unsigned char>(byte & ~mask);
        });
        swap(cleared);  // the view goes to cleared, whose destructor leaves it alone
    }
};

}  // namespace

void* create_blob_calculator(void) { return new geometric::ConnectedComponentCalculator(); }

void set_neighborhood(void* handle, int neighborhood) { calculator_of(handle).set_neighborhood(neighborhood); }

int perform_blob_formulation(void* handle, const ImageCApi* image) {
    geometric::ConnectedComponentCalculator& calculator = calculator_of(handle);
    const View view(image);
    if (calculator.isemptyblob()) calculator.formulate_connected_components(view);
    return static_cast<int>(calculator.size());
}

void* obtain_runs_image(void* handle, const ImageCApi* image) {
    return calculator_of(handle).obtain_runs_in_image(View(image)).get();
}

void calculate_label_image(void* handle, const ImageCApi* image, int* labels, int border) {
    calculator_of(handle).calculate_label_image(View(image), labels, border);
}

void obtain_blob_dimension_histogram(void* handle, const ImageCApi* image, int* heights, int* widths) {
    std::vector<int> local_heights;
    std::vector<int> local_widths;
    calculator_of(handle).calculate_blob_dimensions(View(image), local_heights, local_widths);
    std::copy(local_heights.begin(), local_heights.end(), heights);
    std::copy(local_widths.begin(), local_widths.end(), widths);
}

void obtain_blob_top_points(void* handle, const ImageCApi* image, int* xs, int* ys) {
    std::vector<geometric::Geocoordinate<int>> points;
    calculator_of(handle).obtain_blob_top_points(View(image), points);
    for (std::size_t i = 0; i < points.size(); ++i) {
        xs[i] = points[i].x;
        ys[i] = points[i].y;
    }
}

int obtain_blob_contours_one_by_one(void* handle, const ImageCApi* image, int** xs, int** ys,
                                    void* (*allocate)(size_t)) {
    std::vector<geometric::Geocoordinate<int>> points;
    calculator_of(handle).obtain_blob_contours_one_by_one(View(image), points);
    const std::size_t bytes = points.size() * sizeof(int);
    // A caller's allocator that answers NULL has run out of memory: that is
    // std::bad_alloc, not a write through NULL. Whatever it did hand out stays
    // in *xs (or *ys) for the caller to free with its own allocator.
    *xs = nullptr;
    *ys = nullptr;
    *xs = static_cast<int*>(allocate(bytes));
    if (*xs == nullptr && bytes > 0) throw std::bad_alloc();
    *ys = static_cast<int*>(allocate(bytes));
    if (*ys == nullptr && bytes > 0) throw std::bad_alloc();
    for (std::size_t i = 0; i < points.size(); ++i) {
        (*xs)[i] = points[i].x;
        (*ys)[i] = points[i].y;
    }
    return static_cast<int>(points.size());
}

int create_scale_img(void* handle, int level, const ImageCApi* scale_image, const ImageCApi* binary_image,
                     int base_level, int minimum_size, bool use_height, double maximum_pixels,
                     double minimum_pixels) {
    View scale(scale_image);
    View binary(binary_image);
    return calculator_of(handle).create_scale_img(level, scale, binary, base_level, minimum_size, use_height,
                                                  maximum_pixels, minimum_pixels);
}

int create_scale_img_only(void* handle, int level, const ImageCApi* scale_image, const ImageCApi* binary_image,
                          int base_level, int minimum_size, bool use_height, double maximum_pixels,
                          double minimum_pixels) {
    View scale(scale_image);
    View binary(binary_image);
    return calculator_of(handle).create_scale_img_only(level, scale, binary, base_level, minimum_size, use_height,
                                                       maximum_pixels, minimum_pixels);
}

void delete_blob_calculator(void* handle) { delete static_cast<geometric::ConnectedComponentCalculator*>(handle); }

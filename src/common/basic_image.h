// The one implementation of common::Image: a buffer that the image owns
// (malloc/free) or a view onto a buffer that a caller owns.
#ifndef MORVANE_COMMON_BASIC_IMAGE_H
#define MORVANE_COMMON_BASIC_IMAGE_H

#include "common/image.h"

namespace common {

class BasicImage : public Image {
public:
    // Empty: no buffer, 0 by 0, 300 by 300 dots per inch, UNKNOWN, owning.
    BasicImage();
    // Allocates a zero-filled buffer; throws std::string when it cannot.
    BasicImage(int height, int width, ImageType type, int x_resolution = 300, int y_resolution = 300);
    // A view: the buffer stays the caller's and is never freed here.
    BasicImage(unsigned char* data, int height, int width, ImageType type, int x_resolution = 300,
               int y_resolution = 300);
    // Deep copy; a source without a buffer gives an empty image of the same dimensions.
    BasicImage(const BasicImage& other);
    // Deep copy through the virtual interface.
    explicit BasicImage(const Image& other);
    ~BasicImage() override;

    // Reallocates only when the byte counts differ; otherwise copies over the
    // existing buffer. Either way the image owns its buffer afterwards.
    BasicImage& operator=(const BasicImage& other);
    BasicImage& operator=(const Image& other);

    int get_height() const override { return height; }
    int get_width() const override { return width; }
    int get_row_size() const override { return row_size; }
    int get_x_resolution() const override { return x_resolution; }
    int get_y_resolution() const override { return y_resolution; }
    ImageType get_image_type() const override { return image_type; }
    unsigned char* get_line_pointer(int row) const override;
    int get_bit_offset() const override { return 0; }
    bool get_channels(int& channels) const override;
    unsigned get_pixel(int x, int y) const override;
    void set_pixel(int x, int y, unsigned value) override;
    // Exchanges every field, owns_data and both pointers included; throws
    // when the other image is not a BasicImage.
    void swap(Image& other) override;

    // Zero-filled buffer of the new size. When the byte count differs the old
    // buffer is freed whatever owns_data says; afterwards the image owns its
    // buffer. So a view reset to its own size keeps the foreign buffer, clears
    // it and will free it: only images that own their buffer are reset.
    void reset(int height, int width, ImageType type, int x_resolution = 300, int y_resolution = 300);
    // Frees an owned buffer and becomes a view on data.
    void attach(unsigned char* data, int height, int width, ImageType type, int x_resolution = 300,
                int y_resolution = 300);
    // Frees an owned buffer (data null, data_size 0); a view is left alone.
    void release();
    // Complements every byte of the buffer, padding included.
    void invert();
    // GRAY and RGB only; throws for every other type.
    unsigned char* get_pixel_pointer(int x, int y) const;
    // RGB: the first pixel in row order of the highest (598 R + 587 G) / 1000,
    // as red | green << 8 | blue << 16. Blue plays no part and red counts
    // double, unlike the gray conversions; the scan stops at the first pixel
    // reaching 255. Other types answer 0.
    unsigned obtain_brightest_color() const;

    // Conversions: each builds a fresh image and swaps it in, so source may be
    // this object. A source of the wrong type leaves this object unchanged.
    void create_gray_from_binary(const BasicImage& source);         // ink 0, paper 255
    void create_gray_from_rgb_mean(const BasicImage& source);       // (R + G + B) / 3
    void create_gray_from_rgb_luminance(const BasicImage& source);  // (299 R + 587 G + 114 B) / 1000
    void convert_rgb_to_gray(bool luminance);
    void convert_binary_to_gray();
    void convert_gray_to_binary();               // non-zero pixel becomes ink
    void convert_gray_to_binary(int threshold);  // pixel <= threshold becomes ink

    unsigned char* get_data() const { return data; }
    int get_data_size() const { return data_size; }
    unsigned char* get_gray_data() const { return gray_data; }
    bool get_owns_data() const { return owns_data; }
    void set_image_type(ImageType type) { image_type = type; }
    void set_resolution(int x, int y) { x_resolution = x; y_resolution = y; }
    // Lays a gray image of the given size over the buffer as it is: width, row
    // size = width, height and byte count are rewritten, nothing is allocated.
    // The caller makes sure the buffer holds width * height bytes.
    void change_dimension(int new_width, int new_height) {
        width = new_width;
        row_size = new_width;
        height = new_height;
        data_size = new_width * new_height;
    }

private:
    void copy_rows_from(const Image& other);
    // Dimensions, row size, resolutions and type; the buffer is the caller's business.
    void set_geometry(int height, int width, ImageType type, int x_resolution, int y_resolution);
    // Becomes the owner of a fresh zero-filled buffer; throws failure when it cannot.
    void allocate_owned(int height, int width, ImageType type, int x_resolution, int y_resolution,
                        const char* failure);
    template <typename Rule>
    void create_gray_from_rgb(const BasicImage& source, Rule rule);
    template <typename Rule>
    void create_binary_from_gray(Rule is_ink);

    unsigned char* data;
    int data_size;
    unsigned char* gray_data;  // equals data after an RGB-to-gray conversion; read by nothing
    int height;
    int width;
    int row_size;
    int x_resolution;
    int y_resolution;
    ImageType image_type;
    bool owns_data;
};

}  // namespace common

#endif

// The abstract raster image that every algorithm of the library reads and writes.
#ifndef MORVANE_COMMON_IMAGE_H
#define MORVANE_COMMON_IMAGE_H

namespace common {

// Pixel layouts; the values are fixed because the boundary records and the type
// tests rest on them. Rows follow each other without a gap, row 0 at the top.
enum ImageType : int {  // fixed type: values outside the list reach row_size_of and must stay defined
    UNKNOWN = 0,  // no pixels, rows of 0 bytes
    BINARY = 1,   // 1 bit, most significant bit leftmost, set bit = ink; rows padded to 32-bit words
    GRAY = 2,     // 8 bits
    RGB = 3,      // 3 bytes, red first; travels as one unsigned: red in bits 16-23, blue in 0-7
    BGRA = 4      // 4 bytes
};

class Image {
public:
    virtual ~Image() {}
    virtual int get_height() const = 0;
    virtual int get_width() const = 0;
    virtual int get_row_size() const = 0;
    virtual int get_x_resolution() const = 0;
    virtual int get_y_resolution() const = 0;
    virtual ImageType get_image_type() const = 0;
    // Address of a row; null for BGRA and UNKNOWN.
    virtual unsigned char* get_line_pointer(int row) const = 0;
    // Bit position of the first pixel inside a row's first byte.
    virtual int get_bit_offset() const = 0;
    // False, argument untouched, for BINARY and UNKNOWN; else 1, 3 or 4.
    virtual bool get_channels(int& channels) const = 0;
    // GRAY: the byte; RGB: packed 0xRRGGBB; BINARY: 0 or 1; other types: 0.
    virtual unsigned get_pixel(int x, int y) const = 0;
    // The reverse of get_pixel; BINARY sets the bit for any non-zero value.
    virtual void set_pixel(int x, int y, unsigned value) = 0;
    virtual void swap(Image& other) = 0;
};

// Bytes in a row of the given type and width; 0 for UNKNOWN and unknown values.
int row_size_of(ImageType type, int width);

}  // namespace common

#endif

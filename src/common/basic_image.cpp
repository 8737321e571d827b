// The raster image: allocation, copies, views, pixel access and the type conversions.
#include "common/basic_image.h"

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include <boost/lexical_cast.hpp>

#include "common/constants.h"

namespace common {

namespace {

const char* const kCopyFailed = "error while copying image, could not allocate enough memory";
const char* const kCopyConstructFailed = "error while copy-constructing image, could not allocate enough memory";
const char* const kResetFailed = "error while reseting image, could not allocate enough memory";
const char* const kAllocateFailed = "error while allocating image, could not allocate enough memory";
const char* const kSwapFailed = "The images you want to swap must be both of type BasicImage.";
const char* const kPixelPointerFailed = "UNKNOWN and BGRA types are not handled in fct get_pixel_pointer";

// Bytes of an image, or -1 when the dimensions are negative or the count
// does not fit the int that records it.
int buffer_size_of(int height, int width, ImageType type) {
    if (height < 0 || width < 0) return -1;
    const int64_t bytes = static_cast<int64_t>(height) * row_size_of(type, width);
    return bytes > INT_MAX ? -1 : static_cast<int>(bytes);
}

// A zero-filled buffer of size bytes (null for 0 bytes); throws message on failure.
template <typename Message>
unsigned char* allocate_zeroed(int size, Message message) {
    if (size < 0) throw message;
    if (size == 0) return nullptr;
    unsigned char* buffer = static_cast<unsigned char*>(std::malloc(static_cast<size_t>(size)));
    if (buffer == nullptr) throw message;
    std::memset(buffer, 0, static_cast<size_t>(size));
    return buffer;
}

// Eight gray bytes for each binary byte, most significant bit first: ink 0, paper 255.
struct BinaryToGrayTable {
    unsigned char rows[256][8];
    BinaryToGrayTable() {
        for (int byte = 0; byte < 256; ++byte)
            for (int bit = 0; bit < 8; ++bit) rows[byte][bit] = (byte & (0x80 >> bit)) ? 0 : 255;
    }
};
const BinaryToGrayTable kBinaryToGray;

}  // namespace

int row_size_of(ImageType type, int width) {
    switch (type) {
        case BINARY: return width / 32 * 4 + (width % 32 != 0 ? 4 : 0);
        case GRAY: return width;
        case RGB: return 3 * width;
        case BGRA: return 4 * width;
        default: return 0;
    }
}

BasicImage::BasicImage()
    : data(nullptr), data_size(0), gray_data(nullptr), height(0), width(0), row_size(0), x_resolution(300),
      y_resolution(300), image_type(UNKNOWN), owns_data(true) {}

BasicImage::BasicImage(int height_, int width_, ImageType type, int x_res, int y_res)
    : data(nullptr), data_size(0), gray_data(nullptr), height(height_), width(width_),
      row_size(row_size_of(type, width_)), x_resolution(x_res), y_resolution(y_res), image_type(type),
      owns_data(true) {
    const int size = buffer_size_of(height_, width_, type);
    const std::string message = "error while constructing BasicImage " + boost::lexical_cast<std::string>(height_) +
                                " x " + boost::lexical_cast<std::string>(width_) +
                                " no data, could not allocate enough memory";
    data = allocate_zeroed(size, message);
    data_size = size;
}

BasicImage::BasicImage(unsigned char* data_, int height_, int width_, ImageType type, int x_res, int y_res)
    : data(data_), data_size(0), gray_data(nullptr), height(height_), width(width_),
      row_size(row_size_of(type, width_)), x_resolution(x_res), y_resolution(y_res), image_type(type),
      owns_data(false) {
    data_size = height_ * row_size;
}

BasicImage::BasicImage(const BasicImage& other)
    : data(nullptr), data_size(0), gray_data(nullptr), height(other.height), width(other.width),
      row_size(other.row_size), x_resolution(other.x_resolution), y_resolution(other.y_resolution),
      image_type(other.image_type), owns_data(true) {
    if (other.data == nullptr) return;
    data = allocate_zeroed(other.data_size, kCopyFailed);
    if (data != nullptr) std::memcpy(data, other.data, static_cast<size_t>(other.data_size));
    data_size = other.data_size;
    // The second pointer follows the buffer it referred to.
    if (other.gray_data == other.data) gray_data = data;
}

BasicImage::BasicImage(const Image& other)
    : data(nullptr), data_size(0), gray_data(nullptr), height(other.get_height()), width(other.get_width()),
      row_size(row_size_of(other.get_image_type(), other.get_width())), x_resolution(other.get_x_resolution()),
      y_resolution(other.get_y_resolution()), image_type(other.get_image_type()), owns_data(true) {
    const int size = buffer_size_of(height, width, image_type);
    data = allocate_zeroed(size, kCopyConstructFailed);
    data_size = size;
    copy_rows_from(other);
}

BasicImage::~BasicImage() {
    if (owns_data) std::free(data);
}

// Row by row: one block copy where the source rows start on a byte, else
// pixel by pixel after clearing the first and last words of the target row.
void BasicImage::copy_rows_from(const Image& other) {
    if (data == nullptr) return;
    const int copy_size = row_size < other.get_row_size() ? row_size : other.get_row_size();
    for (int y = 0; y < height; ++y) {
        unsigned char* target = data + static_cast<size_t>(y) * row_size;
        if (other.get_bit_offset() == 0) {
            const unsigned char* source = other.get_line_pointer(y);
            if (source != nullptr && copy_size > 0) std::memcpy(target, source, static_cast<size_t>(copy_size));
        } else {
            if (row_size >= 4) {
                std::memset(target, 0, 4);
                std::memset(target + row_size - 4, 0, 4);
            }
            for (int x = 0; x < width; ++x) set_pixel(x, y, other.get_pixel(x, y));
        }
    }
}

BasicImage& BasicImage::operator=(const BasicImage& other) {
    if (this == &other) return *this;
    if (data_size != other.data_size) {
        unsigned char* fresh = nullptr;
        if (other.data != nullptr) fresh = allocate_zeroed(other.data_size, kCopyFailed);
        if (owns_data) std::free(data);
        data = fresh;
        data_size = fresh != nullptr ? other.data_size : 0;
    }
    if (data != nullptr && other.data != nullptr) std::memcpy(data, other.data, static_cast<size_t>(data_size));
    gray_data = (other.gray_data == other.data && other.data != nullptr) ? data : nullptr;
    height = other.height;
    width = other.width;
    row_size = other.row_size;
    x_resolution = other.x_resolution;
    y_resolution = other.y_resolution;
    image_type = other.image_type;
    owns_data = true;
    return *this;
}

BasicImage& BasicImage::operator=(const Image& other) {
    if (this == &other) return *this;
    const int size = buffer_size_of(other.get_height(), other.get_width(), other.get_image_type());
    if (size != data_size) {
        unsigned char* fresh = allocate_zeroed(size, kResetFailed);
        if (owns_data) std::free(data);
        data = fresh;
        data_size = size;
    }
    gray_data = nullptr;
    height = other.get_height();
    width = other.get_width();
    row_size = row_size_of(other.get_image_type(), other.get_width());
    x_resolution = other.get_x_resolution();
    y_resolution = other.get_y_resolution();
    image_type = other.get_image_type();
    owns_data = true;
    copy_rows_from(other);
    return *this;
}

unsigned char* BasicImage::get_line_pointer(int row) const {
    if (image_type == BGRA || image_type == UNKNOWN) return nullptr;
    return data + static_cast<ptrdiff_t>(row) * row_size;
}

bool BasicImage::get_channels(int& channels) const {
    switch (image_type) {
        case GRAY: channels = 1; return true;
        case RGB: channels = 3; return true;
        case BGRA: channels = 4; return true;
        default: return false;
    }
}

unsigned BasicImage::get_pixel(int x, int y) const {
    const unsigned char* row = data + static_cast<ptrdiff_t>(y) * row_size;
    switch (image_type) {
        case GRAY: return row[x];
        case RGB: {
            const unsigned char* p = row + 3 * x;
            return (static_cast<unsigned>(p[0]) << 16) | (static_cast<unsigned>(p[1]) << 8) | p[2];
        }
        case BINARY: return (row[x >> 3] >> (7 - (x & 7))) & 1u;
        default: return 0;
    }
}

void BasicImage::set_pixel(int x, int y, unsigned value) {
    unsigned char* row = data + static_cast<ptrdiff_t>(y) * row_size;
    switch (image_type) {
        case GRAY: row[x] = static_cast<unsigned char>(value); break;
        case RGB: {
            unsigned char* p = row + 3 * x;
            p[0] = static_cast<unsigned char>(value >> 16);
            p[1] = static_cast<unsigned char>(value >> 8);
            p[2] = static_cast<unsigned char>(value);
            break;
        }
        case BINARY: {
            const unsigned char mask = static_cast<unsigned char>(0x80u >> (x & 7));
            if (value != 0)
                row[x >> 3] |= mask;
            else
                row[x >> 3] &= static_cast<unsigned char>(~mask);
            break;
        }
        default: break;
    }
}

void BasicImage::swap(Image& other) {
    BasicImage* peer = dynamic_cast<BasicImage*>(&other);
    if (peer == nullptr) throw kSwapFailed;
    std::swap(data, peer->data);
    std::swap(data_size, peer->data_size);
    std::swap(gray_data, peer->gray_data);
    std::swap(height, peer->height);
    std::swap(width, peer->width);
    std::swap(row_size, peer->row_size);
    std::swap(x_resolution, peer->x_resolution);
    std::swap(y_resolution, peer->y_resolution);
    std::swap(image_type, peer->image_type);
    std::swap(owns_data, peer->owns_data);
}

void BasicImage::reset(int height_, int width_, ImageType type, int x_res, int y_res) {
    const int size = buffer_size_of(height_, width_, type);
    if (size < 0) throw kResetFailed;
    if (size != data_size) {
        // Freed whatever owns_data says: see the declaration.
        std::free(data);
        data = nullptr;
        data_size = 0;
        gray_data = nullptr;
        data = allocate_zeroed(size, kResetFailed);
        data_size = size;
    } else if (data != nullptr) {
        std::memset(data, 0, static_cast<size_t>(size));
    }
    set_geometry(height_, width_, type, x_res, y_res);
    owns_data = true;
}

void BasicImage::attach(unsigned char* data_, int height_, int width_, ImageType type, int x_res, int y_res) {
    if (owns_data) std::free(data);
    data = data_;
    gray_data = nullptr;
    set_geometry(height_, width_, type, x_res, y_res);
    data_size = height_ * row_size;
    owns_data = false;
}

void BasicImage::release() {
    if (!owns_data) return;
    std::free(data);
    data = nullptr;
    gray_data = nullptr;
    data_size = 0;
}

void BasicImage::invert() {
    // Eight bytes a step: the complement of a word is the complement of each of its bytes.
    int i = 0;
    for (; i + 8 <= data_size; i += 8) {
        uint64_t word;
        std::memcpy(&word, data + i, sizeof word);
        word = ~word;
        std::memcpy(data + i, &word, sizeof word);
    }
    for (; i < data_size; ++i) data[i] = static_cast<unsigned char>(~data[i]);
}

unsigned char* BasicImage::get_pixel_pointer(int x, int y) const {
    switch (image_type) {
        case GRAY: return data + static_cast<ptrdiff_t>(y) * width + x;
        case RGB: return data + static_cast<ptrdiff_t>(y) * row_size + 3 * x;
        default: throw kPixelPointerFailed;
    }
}

unsigned BasicImage::obtain_brightest_color() const {
    if (image_type != RGB) return 0;
    int brightest = 0;
    unsigned red = 0, green = 0, blue = 0;
    for (int y = 0; y < height; ++y) {
        const unsigned char* p = data + static_cast<ptrdiff_t>(y) * row_size;
        for (int x = 0; x < width; ++x, p += 3) {
            const int brightness = (598 * p[0] + 587 * p[1]) / 1000;
            if (brightness > brightest) {
                brightest = brightness;
                red = p[0];
                green = p[1];
                blue = p[2];
                if (brightest >= 255) return red | (green << 8) | (blue << 16);
            }
        }
    }
    return red | (green << 8) | (blue << 16);
}

void BasicImage::set_geometry(int height_, int width_, ImageType type, int x_res, int y_res) {
    height = height_;
    width = width_;
    row_size = row_size_of(type, width_);
    x_resolution = x_res;
    y_resolution = y_res;
    image_type = type;
}

void BasicImage::allocate_owned(int height_, int width_, ImageType type, int x_res, int y_res,
                                const char* failure) {
    unsigned char* fresh = allocate_zeroed(buffer_size_of(height_, width_, type), failure);
    if (owns_data) std::free(data);
    data = fresh;
    data_size = height_ * row_size_of(type, width_);
    gray_data = nullptr;
    set_geometry(height_, width_, type, x_res, y_res);
    owns_data = true;
}

void BasicImage::create_gray_from_binary(const BasicImage& source) {
    if (source.image_type != BINARY) return;
    BasicImage gray;
    gray.allocate_owned(source.height, source.width, GRAY, source.x_resolution, source.y_resolution,
                        kCopyConstructFailed);
    const int whole_bytes = source.width / 8;
    const int rest = source.width % 8;
    for (int y = 0; y < source.height; ++y) {
        const unsigned char* in = source.data + static_cast<size_t>(y) * source.row_size;
        unsigned char* out = gray.data + static_cast<size_t>(y) * gray.row_size;
        for (int i = 0; i < whole_bytes; ++i, out += 8) std::memcpy(out, kBinaryToGray.rows[in[i]], 8);
        if (rest != 0) std::memcpy(out, kBinaryToGray.rows[in[whole_bytes]], static_cast<size_t>(rest));
    }
    swap(gray);
}

template <typename Rule>
void BasicImage::create_gray_from_rgb(const BasicImage& source, Rule rule) {
    if (source.image_type != RGB) return;
    BasicImage gray;
    gray.allocate_owned(source.height, source.width, GRAY, source.x_resolution, source.y_resolution,
                        kAllocateFailed);
    for (int y = 0; y < source.height; ++y) {
        const unsigned char* in = source.data + static_cast<size_t>(y) * source.row_size;
        unsigned char* out = gray.data + static_cast<size_t>(y) * gray.row_size;
        for (int x = 0; x < source.width; ++x, in += 3) out[x] = static_cast<unsigned char>(rule(in[0], in[1], in[2]));
    }
    swap(gray);
    gray_data = data;
}

void BasicImage::create_gray_from_rgb_mean(const BasicImage& source) {
    create_gray_from_rgb(source, [](int r, int g, int b) { return (r + g + b) / 3; });
}

void BasicImage::create_gray_from_rgb_luminance(const BasicImage& source) {
    create_gray_from_rgb(source, [](int r, int g, int b) { return constants::luminance(r, g, b); });
}

void BasicImage::convert_rgb_to_gray(bool luminance) {
    if (luminance)
        create_gray_from_rgb_luminance(*this);
    else
        create_gray_from_rgb_mean(*this);
}

void BasicImage::convert_binary_to_gray() { create_gray_from_binary(*this); }

template <typename Rule>
void BasicImage::create_binary_from_gray(Rule is_ink) {
    if (image_type != GRAY) return;
    BasicImage binary(height, width, BINARY, x_resolution, y_resolution);
    for (int y = 0; y < height; ++y) {
        const unsigned char* in = data + static_cast<size_t>(y) * row_size;
        unsigned char* out = binary.data + static_cast<size_t>(y) * binary.row_size;
        for (int x = 0; x < width; ++x)
            if (is_ink(in[x])) out[x >> 3] |= static_cast<unsigned char>(0x80u >> (x & 7));
    }
    swap(binary);
}

void BasicImage::convert_gray_to_binary() {
    create_binary_from_gray([](unsigned char value) { return value != 0; });
}

void BasicImage::convert_gray_to_binary(int threshold) {
    create_binary_from_gray([threshold](unsigned char value) { return value <= threshold; });
}

}  // namespace common

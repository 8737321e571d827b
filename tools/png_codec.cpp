// PNG reading and writing through libpng. The library reports errors by a
// long jump; each function that calls it keeps only plain locals, so the jump
// skips no destructor, and buffers live in a state record the caller frees.
#include "png_codec.h"

#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <string>

#include <png.h>

#include "scan_error.h"

namespace scan {
namespace {

constexpr std::size_t kMessageLength = 200;

// A pHYs density is given in dots per metre.
constexpr double kMetresPerInch = 0.0254;

// The PNG bytes in memory and how far libpng has read them.
struct MemorySource {
    const unsigned char* data;
    std::size_t size;
    std::size_t read;
};

struct PngState {
    png_structp png;
    png_infop info;
    MemorySource source;
    char message[kMessageLength];
    int width, height, channels;  // channels after the transforms: 1 to 4
    bool too_large;
    png_uint_32 x_per_metre, y_per_metre;  // 0 unless pHYs gives them per metre
    unsigned char* exif;                   // malloc, freed by the caller
    png_uint_32 exif_size;
    unsigned char* pixels;  // malloc, handed to the caller
    png_bytep* rows;        // malloc, freed by the caller
};

void on_png_error(png_structp png, png_const_charp message) {
    PngState* state = static_cast<PngState*>(png_get_error_ptr(png));
    std::strncpy(state->message, message, kMessageLength - 1);
    state->message[kMessageLength - 1] = '\0';
    png_longjmp(png, 1);
}

// Warnings (a bad checksum in an ancillary chunk, an unknown profile) do not
// stop the reading and are not printed.
void on_png_warning(png_structp, png_const_charp) {}

// Data that ends early is an error, with the words libpng's own file
// reader uses.
void read_from_memory(png_structp png, png_bytep target, png_size_t length) {
    MemorySource& source = static_cast<PngState*>(png_get_io_ptr(png))->source;
    if (length > source.size - source.read) png_error(png, "Read Error");
    std::memcpy(target, source.data + source.read, length);
    source.read += length;
}

// The density and the EXIF block, read before the pixels. An EXIF block is
// stored behind the header a JPEG gives it; one that cannot be allocated is
// done without.
void keep_metadata(PngState& s) {
    png_uint_32 x = 0, y = 0;
    int unit = 0;
    if (png_get_pHYs(s.png, s.info, &x, &y, &unit) != 0 && unit == PNG_RESOLUTION_METER) {
        s.x_per_metre = x;
        s.y_per_metre = y;
    }
    png_uint_32 size = 0;
    png_bytep block = nullptr;
    if (png_get_eXIf_1(s.png, s.info, &size, &block) == 0 || block == nullptr || size > 0xffff) return;
    static const char kExifHeader[6] = {'E', 'x', 'i', 'f', '\0', '\0'};
    s.exif = static_cast<unsigned char*>(std::malloc(sizeof kExifHeader + size));
    if (s.exif == nullptr) return;
    std::memcpy(s.exif, kExifHeader, sizeof kExifHeader);
    std::memcpy(s.exif + sizeof kExifHeader, block, size);
    s.exif_size = static_cast<png_uint_32>(sizeof kExifHeader + size);
}

bool decode(PngState& s) {
    s.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &s, on_png_error, on_png_warning);
    if (!s.png) {
        std::strcpy(s.message, "not enough memory");
        return false;
    }
    s.info = png_create_info_struct(s.png);
    if (!s.info) {
        std::strcpy(s.message, "not enough memory");
        png_destroy_read_struct(&s.png, nullptr, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(s.png))) {
        png_destroy_read_struct(&s.png, &s.info, nullptr);
        return false;
    }
    png_set_read_fn(s.png, &s, read_from_memory);
    // The size is checked below against the library's own limit.
    png_set_user_limits(s.png, 0x7fffffff, 0x7fffffff);
    png_read_info(s.png, s.info);
    keep_metadata(s);
    const png_uint_32 width = png_get_image_width(s.png, s.info);
    const png_uint_32 height = png_get_image_height(s.png, s.info);
    s.width = static_cast<int>(width);
    s.height = static_cast<int>(height);
    // Room for the widest form the pixels take here, gray or colour with alpha.
    if (!raster_size_is_supported(s.width, s.height, 3, false) ||
        static_cast<std::size_t>(s.width) * 4 > static_cast<std::size_t>(0x7fffffff) / static_cast<std::size_t>(s.height)) {
        s.too_large = true;
        png_destroy_read_struct(&s.png, &s.info, nullptr);
        return false;
    }
    png_set_scale_16(s.png);
    png_set_palette_to_rgb(s.png);
    png_set_expand_gray_1_2_4_to_8(s.png);
    png_set_tRNS_to_alpha(s.png);
    png_set_interlace_handling(s.png);
    png_read_update_info(s.png, s.info);
    s.channels = png_get_channels(s.png, s.info);
    const std::size_t row = png_get_rowbytes(s.png, s.info);
    s.pixels = allocate_pixels(row * static_cast<std::size_t>(s.height));
    s.rows = static_cast<png_bytep*>(std::malloc(sizeof(png_bytep) * static_cast<std::size_t>(s.height)));
    if (!s.pixels || !s.rows) {
        std::strcpy(s.message, "not enough memory for the decoded image");
        png_destroy_read_struct(&s.png, &s.info, nullptr);
        return false;
    }
    for (int y = 0; y < s.height; ++y) s.rows[y] = s.pixels + row * static_cast<std::size_t>(y);
    png_read_image(s.png, s.rows);
    png_read_end(s.png, nullptr);
    png_destroy_read_struct(&s.png, &s.info, nullptr);
    return true;
}

// Gray-alpha or RGBA becomes gray or RGB in place, each pixel laid over white
// paper: value = (value * alpha + 255 * (255 - alpha)) / 255, rounded.
void lay_over_white(unsigned char* pixels, std::size_t count, int colour_channels) {
    const int stride = colour_channels + 1;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned char* in = pixels + static_cast<std::size_t>(stride) * i;
        unsigned char* out = pixels + static_cast<std::size_t>(colour_channels) * i;
        const unsigned alpha = in[colour_channels];
        unsigned value[3] = {0, 0, 0};
        for (int c = 0; c < colour_channels; ++c) value[c] = (in[c] * alpha + 255 * (255 - alpha) + 127) / 255;
        for (int c = 0; c < colour_channels; ++c) out[c] = static_cast<unsigned char>(value[c]);
    }
}

struct PngWriteState {
    png_structp png;
    png_infop info;
    char message[kMessageLength];
    unsigned char* bit_row;  // malloc: one 1-bit row with ink turned black
};

bool encode(std::FILE* file, const Raster& image, int level, PngWriteState& s) {
    s.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &s, on_png_error, on_png_warning);
    if (!s.png) {
        std::strcpy(s.message, "not enough memory");
        return false;
    }
    s.info = png_create_info_struct(s.png);
    if (!s.info) {
        std::strcpy(s.message, "not enough memory");
        png_destroy_write_struct(&s.png, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(s.png))) {
        png_destroy_write_struct(&s.png, &s.info);
        return false;
    }
    png_init_io(s.png, file);
    png_set_compression_level(s.png, level);
    // At the fast levels the adaptive filter choice costs more time than it
    // saves bytes; the "sub" filter alone keeps photos compact enough.
    if (level <= 3) png_set_filter(s.png, PNG_FILTER_TYPE_BASE, level == 0 ? PNG_FILTER_NONE : PNG_FILTER_SUB);
    const int colour_type = image.channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY;
    png_set_IHDR(s.png, s.info, static_cast<png_uint_32>(image.width), static_cast<png_uint_32>(image.height),
                 image.binary ? 1 : 8, colour_type, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE,
                 PNG_FILTER_TYPE_BASE);
    if (image.has_density()) {
        png_set_pHYs(s.png, s.info, static_cast<png_uint_32>(image.x_dpi / kMetresPerInch + 0.5),
                     static_cast<png_uint_32>(image.y_dpi / kMetresPerInch + 0.5), PNG_RESOLUTION_METER);
    }
    png_write_info(s.png, s.info);
    const std::size_t row = image.row_bytes();
    for (int y = 0; y < image.height; ++y) {
        if (image.binary) {
            // A set bit is ink; in a 1-bit gray PNG a set bit is white.
            const unsigned char* source = image.row(y);
            for (std::size_t i = 0; i < row; ++i) s.bit_row[i] = static_cast<unsigned char>(~source[i]);
            png_write_row(s.png, s.bit_row);
        } else {
            png_write_row(s.png, image.row(y));
        }
    }
    png_write_end(s.png, nullptr);
    png_destroy_write_struct(&s.png, &s.info);
    return true;
}

// The size from the header chunk, which comes first in every PNG: a picture
// too large is refused before libpng reads on.
bool header_size(const unsigned char* head, std::size_t size, int& width, int& height) {
    if (size < 24 || std::memcmp(head + 12, "IHDR", 4) != 0) return false;
    const auto u32 = [](const unsigned char* b) {
        return (static_cast<unsigned long>(b[0]) << 24) | (static_cast<unsigned long>(b[1]) << 16) |
               (static_cast<unsigned long>(b[2]) << 8) | b[3];
    };
    const unsigned long w = u32(head + 16), h = u32(head + 20);
    if (w > 0x7fffffff || h > 0x7fffffff) return false;
    width = static_cast<int>(w);
    height = static_cast<int>(h);
    return true;
}

}  // namespace

Raster read_png(const unsigned char* data, std::size_t size, std::string& exif) {
    int width = 0, height = 0;
    if (header_size(data, size, width, height) && width > 0 && height > 0 &&
        !raster_size_is_supported(width, height, 3, false)) {
        throw ImageProblem("image too large for memory (" + std::to_string(width) + " x " + std::to_string(height) +
                           " pixels; at most 2 GiB a picture)");
    }
    PngState state{};
    state.source = MemorySource{data, size, 0};
    const bool ok = decode(state);
    std::unique_ptr<unsigned char, FreeDeleter> pixels(state.pixels);
    std::free(state.rows);
    const std::unique_ptr<unsigned char, FreeDeleter> exif_block(state.exif);
    exif.clear();
    if (exif_block) exif.assign(reinterpret_cast<const char*>(exif_block.get()), state.exif_size);
    if (state.too_large) {
        throw ImageProblem("image too large for memory (" + std::to_string(state.width) + " x " +
                           std::to_string(state.height) + " pixels; at most 2 GiB a picture)");
    }
    if (!ok && names_memory(state.message)) throw ImageProblem("not enough memory");
    if (!ok) throw ImageProblem(std::string("broken PNG data: ") + state.message);

    Raster raster;
    raster.width = state.width;
    raster.height = state.height;
    raster.channels = state.channels >= 3 ? 3 : 1;
    raster.x_dpi = static_cast<int>(state.x_per_metre * kMetresPerInch + 0.5);
    raster.y_dpi = static_cast<int>(state.y_per_metre * kMetresPerInch + 0.5);
    if (state.channels == 2 || state.channels == 4) {
        lay_over_white(pixels.get(), static_cast<std::size_t>(state.width) * static_cast<std::size_t>(state.height),
                       raster.channels);
    }
    raster.data = std::move(pixels);
    return raster;
}

void write_png(std::FILE* file, const Raster& image, int level) {
    if (!image.binary && image.channels != 1 && image.channels != 3) {
        throw ImageProblem("PNG output takes gray, colour or 1-bit pictures");
    }
    PngWriteState state{};
    std::unique_ptr<unsigned char, FreeDeleter> bit_row;
    if (image.binary) {
        bit_row.reset(static_cast<unsigned char*>(std::malloc(image.row_bytes())));
        if (!bit_row) throw ImageProblem("not enough memory");
        state.bit_row = bit_row.get();
    }
    if (!encode(file, image, level, state)) {
        if (names_memory(state.message)) throw ImageProblem("not enough memory");
        throw ImageProblem(std::string("PNG encoding failed: ") + state.message);
    }
}

}  // namespace scan

// JPEG reading and writing through libjpeg-turbo. The library reports errors
// by a long jump; each function that calls it keeps only plain locals, so the
// jump skips no destructor, and the pixel buffer is owned by the caller.
#include "jpeg_codec.h"

#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <string>

#include <jerror.h>
#include <jpeglib.h>

#include "scan_error.h"

namespace scan {
namespace {

struct JpegErrorState {
    jpeg_error_mgr manager;  // first, so that the library's pointer is also ours
    std::jmp_buf jump;
    char message[JMSG_LENGTH_MAX];
    bool premature_end;
};

void on_jpeg_error(j_common_ptr info) {
    JpegErrorState* state = reinterpret_cast<JpegErrorState*>(info->err);
    (*info->err->format_message)(info, state->message);
    std::longjmp(state->jump, 1);
}

// Warnings are not printed. The one that matters is the end of the file
// arriving early: the decoder would fill the rest of the picture with gray.
void on_jpeg_message(j_common_ptr info, int level) {
    JpegErrorState* state = reinterpret_cast<JpegErrorState*>(info->err);
    if (level < 0) {
        info->err->num_warnings++;
        if (info->err->msg_code == JWRN_JPEG_EOF) state->premature_end = true;
    }
}

void init_errors(JpegErrorState& state) {
    jpeg_std_error(&state.manager);
    state.manager.error_exit = on_jpeg_error;
    state.manager.emit_message = on_jpeg_message;
    state.message[0] = '\0';
    state.premature_end = false;
}

struct DecodeState {
    JpegErrorState errors;
    jpeg_decompress_struct info;
    int width, height, components;
    bool cmyk, inverted_cmyk;
    int density_unit, x_density, y_density;  // as the JFIF marker says
    unsigned char* exif;  // malloc, freed by the caller
    unsigned exif_size;
    unsigned char* pixels;  // malloc, handed to the caller
    bool too_large;
};

// The first APP1 marker that holds an EXIF block, copied out of the
// decoder's memory; a copy that cannot be allocated is done without.
void keep_exif(DecodeState& s) {
    static const char kExifHeader[6] = {'E', 'x', 'i', 'f', '\0', '\0'};
    for (jpeg_saved_marker_ptr marker = s.info.marker_list; marker != nullptr; marker = marker->next) {
        if (marker->marker != JPEG_APP0 + 1 || marker->data_length < sizeof kExifHeader ||
            std::memcmp(marker->data, kExifHeader, sizeof kExifHeader) != 0) {
            continue;
        }
        s.exif = static_cast<unsigned char*>(std::malloc(marker->data_length));
        if (s.exif == nullptr) return;
        std::memcpy(s.exif, marker->data, marker->data_length);
        s.exif_size = marker->data_length;
        return;
    }
}

// Plain locals only between setjmp and the end.
bool decode(const unsigned char* data, std::size_t size, DecodeState& s) {
    s.info.err = &s.errors.manager;
    if (setjmp(s.errors.jump)) {
        jpeg_destroy_decompress(&s.info);
        return false;
    }
    jpeg_create_decompress(&s.info);
    jpeg_mem_src(&s.info, data, static_cast<unsigned long>(size));
    jpeg_save_markers(&s.info, JPEG_APP0 + 1, 0xffff);   // EXIF: orientation, resolution
    jpeg_save_markers(&s.info, JPEG_APP0 + 14, 0xffff);  // Adobe marker: CMYK polarity
    jpeg_read_header(&s.info, TRUE);
    keep_exif(s);
    if (s.info.saw_JFIF_marker) {
        s.density_unit = s.info.density_unit;
        s.x_density = s.info.X_density;
        s.y_density = s.info.Y_density;
    }
    s.cmyk = s.info.jpeg_color_space == JCS_CMYK || s.info.jpeg_color_space == JCS_YCCK;
    s.inverted_cmyk = s.cmyk && s.info.saw_Adobe_marker;
    if (s.cmyk) {
        s.info.out_color_space = JCS_CMYK;
    } else if (s.info.jpeg_color_space == JCS_GRAYSCALE) {
        s.info.out_color_space = JCS_GRAYSCALE;
    } else {
        s.info.out_color_space = JCS_RGB;
    }
    jpeg_calc_output_dimensions(&s.info);
    s.width = static_cast<int>(s.info.output_width);
    s.height = static_cast<int>(s.info.output_height);
    s.components = s.info.output_components;
    if (!raster_size_is_supported(s.width, s.height, 3, false) ||
        !raster_size_is_supported(s.width, s.height, s.components == 4 ? 3 : s.components, false)) {
        s.too_large = true;
        jpeg_destroy_decompress(&s.info);
        return false;
    }
    const std::size_t row = static_cast<std::size_t>(s.width) * static_cast<std::size_t>(s.components);
    s.pixels = allocate_pixels(row * static_cast<std::size_t>(s.height));
    if (!s.pixels) {
        std::strcpy(s.errors.message, "not enough memory for the decoded image");
        jpeg_destroy_decompress(&s.info);
        return false;
    }
    jpeg_start_decompress(&s.info);
    while (s.info.output_scanline < s.info.output_height) {
        JSAMPROW target = s.pixels + row * s.info.output_scanline;
        jpeg_read_scanlines(&s.info, &target, 1);
    }
    jpeg_finish_decompress(&s.info);
    jpeg_destroy_decompress(&s.info);
    return true;
}

// CMYK from the decoder becomes RGB in place: each of red, green and blue is
// the paper left after its ink and the black ink, (255 - c)(255 - k) / 255;
// Adobe files store the inks inverted.
void cmyk_to_rgb(unsigned char* pixels, std::size_t count, bool inverted) {
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned char* in = pixels + 4 * i;
        unsigned char* out = pixels + 3 * i;
        unsigned c = in[0], m = in[1], y = in[2], k = in[3];
        if (!inverted) {
            c = 255 - c; m = 255 - m; y = 255 - y; k = 255 - k;
        }
        out[0] = static_cast<unsigned char>((c * k + 127) / 255);
        out[1] = static_cast<unsigned char>((m * k + 127) / 255);
        out[2] = static_cast<unsigned char>((y * k + 127) / 255);
    }
}

struct EncodeState {
    JpegErrorState errors;
    jpeg_compress_struct info;
};

bool encode(std::FILE* file, const Raster& image, int quality, EncodeState& s) {
    s.info.err = &s.errors.manager;
    if (setjmp(s.errors.jump)) {
        jpeg_destroy_compress(&s.info);
        return false;
    }
    jpeg_create_compress(&s.info);
    jpeg_stdio_dest(&s.info, file);
    s.info.image_width = static_cast<JDIMENSION>(image.width);
    s.info.image_height = static_cast<JDIMENSION>(image.height);
    s.info.input_components = image.channels;
    s.info.in_color_space = image.channels == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&s.info);
    jpeg_set_quality(&s.info, quality, TRUE);
    // JFIF holds a density of 1 to 65535; beyond that the default, an aspect of 1:1 without a unit, stands.
    if (image.has_density() && image.x_dpi <= 65535 && image.y_dpi <= 65535) {
        s.info.density_unit = 1;
        s.info.X_density = static_cast<UINT16>(image.x_dpi);
        s.info.Y_density = static_cast<UINT16>(image.y_dpi);
    }
    jpeg_start_compress(&s.info, TRUE);
    while (s.info.next_scanline < s.info.image_height) {
        JSAMPROW source = image.row(static_cast<int>(s.info.next_scanline));
        jpeg_write_scanlines(&s.info, &source, 1);
    }
    jpeg_finish_compress(&s.info);
    jpeg_destroy_compress(&s.info);
    return true;
}

}  // namespace

Raster read_jpeg(const unsigned char* data, std::size_t size, std::string& exif) {
    DecodeState state{};
    init_errors(state.errors);
    const bool ok = decode(data, size, state);
    std::unique_ptr<unsigned char, FreeDeleter> pixels(state.pixels);
    const std::unique_ptr<unsigned char, FreeDeleter> exif_block(state.exif);
    exif.clear();
    if (exif_block) exif.assign(reinterpret_cast<const char*>(exif_block.get()), state.exif_size);
    if (state.too_large) {
        throw ImageProblem("image too large for memory (" + std::to_string(state.width) + " x " +
                           std::to_string(state.height) + " pixels; at most 2 GiB a picture)");
    }
    // A stream cut short often fails later for want of its frame; the cut is the cause.
    if (state.errors.premature_end) throw ImageProblem("truncated JPEG file (the data ends early)");
    if (!ok && names_memory(state.errors.message)) throw ImageProblem("not enough memory");
    if (!ok) throw ImageProblem(std::string("broken JPEG data: ") + state.errors.message);

    Raster raster;
    raster.width = state.width;
    raster.height = state.height;
    raster.channels = state.components == 1 ? 1 : 3;
    // Unit 1 is the inch, 2 the centimetre; 0 gives only the pixels' aspect.
    if (state.density_unit == 1 || state.density_unit == 2) {
        const double per_inch = state.density_unit == 1 ? 1.0 : 2.54;
        raster.x_dpi = static_cast<int>(state.x_density * per_inch + 0.5);
        raster.y_dpi = static_cast<int>(state.y_density * per_inch + 0.5);
    }
    if (state.components == 4) {
        cmyk_to_rgb(pixels.get(), static_cast<std::size_t>(state.width) * static_cast<std::size_t>(state.height),
                    state.inverted_cmyk);
    }
    raster.data = std::move(pixels);
    return raster;
}

void write_jpeg(std::FILE* file, const Raster& image, int quality) {
    if (image.binary || (image.channels != 1 && image.channels != 3)) {
        throw ImageProblem("JPEG takes only gray or colour pictures");
    }
    EncodeState state{};
    init_errors(state.errors);
    if (!encode(file, image, quality, state)) {
        if (names_memory(state.errors.message)) throw ImageProblem("not enough memory");
        throw ImageProblem(std::string("JPEG encoding failed: ") + state.errors.message);
    }
}

}  // namespace scan

// Image files: reading JPEG or PNG by their content, whole and once, so that
// pipes serve as well as files; and writing PNG or JPEG through a temporary
// file that is renamed, so that no half-written picture is ever left behind.
#ifndef MORVANE_TOOLS_IMAGE_FILE_H
#define MORVANE_TOOLS_IMAGE_FILE_H

#include <string>

#include "raster.h"

namespace scan {

enum class ImageFormat { Unknown, Png, Jpeg };

// The format that a file name's extension asks for (.png, .jpg, .jpeg, in
// any case).
ImageFormat format_of_name(const std::string& path);

// The usual extension of a format, ".png" or ".jpg".
const char* extension_of(ImageFormat format);

struct WriteSettings {
    int png_level = 1;      // zlib level 0 to 9
    int jpeg_quality = 92;  // 1 to 100
    ImageFormat format = ImageFormat::Unknown;  // Unknown: by the name's extension
};

// A picture as read, and what its EXIF block said about turning it.
struct DecodedImage {
    Raster raster;                     // shown upright unless the orientation was ignored
    int orientation = 0;               // the EXIF orientation, 1 to 8; 0 when the file has none
    bool orientation_applied = false;  // the pixels were turned as it says
};

// Reads the whole file, then decodes it by its first bytes. The density
// comes from the JFIF or pHYs header, else from the EXIF block. Throws
// ScanError "cannot read 'PATH': PROBLEM".
DecodedImage read_image_file(const std::string& path, bool apply_orientation = true);

// The same from standard input, read to its end ("cannot read standard
// input: PROBLEM").
DecodedImage read_standard_input(bool apply_orientation);

// Throws ScanError "cannot write 'PATH': PROBLEM"; on failure neither the
// target nor a temporary file is left, and an existing target is untouched.
void write_image_file(const std::string& path, const Raster& image, const WriteSettings& settings);

// Encodes in memory first, so that a failure writes nothing; settings.format
// must be given. Throws ScanError "cannot write standard output: PROBLEM".
void write_standard_output(const Raster& image, const WriteSettings& settings);

// The folder part of a path ("." when there is none).
std::string folder_of(const std::string& path);

// Empty when the folder exists and is a folder, else the problem in words.
std::string folder_problem(const std::string& folder);

// Removes the temporary file being written, if any. Safe inside a signal
// handler; used when the process is interrupted.
void remove_pending_output();

}  // namespace scan

#endif

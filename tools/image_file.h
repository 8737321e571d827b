// Image files: reading JPEG or PNG by their content, and writing PNG or JPEG
// by the name's extension through a temporary file that is renamed, so that
// no half-written picture is ever left behind.
#ifndef MORVANE_TOOLS_IMAGE_FILE_H
#define MORVANE_TOOLS_IMAGE_FILE_H

#include <string>

#include "raster.h"

namespace scan {

enum class ImageFormat { Unknown, Png, Jpeg };

// The format that a file name's extension asks for (.png, .jpg, .jpeg, in
// any case).
ImageFormat format_of_name(const std::string& path);

struct WriteSettings {
    int png_level = 1;      // zlib level 0 to 9
    int jpeg_quality = 92;  // 1 to 100
};

// Throws ScanError "cannot read 'PATH': PROBLEM".
Raster read_image_file(const std::string& path);

// Throws ScanError "cannot write 'PATH': PROBLEM"; on failure neither the
// target nor a temporary file is left, and an existing target is untouched.
void write_image_file(const std::string& path, const Raster& image, const WriteSettings& settings);

// The folder part of a path ("." when there is none).
std::string folder_of(const std::string& path);

// Empty when the folder exists and is a folder, else the problem in words.
std::string folder_problem(const std::string& folder);

// Removes the temporary file being written, if any. Safe inside a signal
// handler; used when the process is interrupted.
void remove_pending_output();

}  // namespace scan

#endif

// JPEG reading and writing through libjpeg-turbo.
#ifndef MORVANE_TOOLS_JPEG_CODEC_H
#define MORVANE_TOOLS_JPEG_CODEC_H

#include <cstddef>
#include <cstdio>
#include <string>

#include "raster.h"

namespace scan {

// Decodes a whole JPEG stream held in memory into gray (grayscale files) or
// RGB (all other colour spaces, CMYK included), with the JFIF density when
// it has a unit. A stream that ends early is refused rather than padded with
// gray. `exif` receives the EXIF block of the first APP1 marker that holds
// one, from its "Exif\0\0" header on, or is emptied. Throws ImageProblem.
Raster read_jpeg(const unsigned char* data, std::size_t size, std::string& exif);

// Encodes a gray or RGB raster at the given quality (1 to 100), with its
// density in dots per inch when it has one. Throws ImageProblem; the file
// may then hold a partial stream.
void write_jpeg(std::FILE* file, const Raster& image, int quality);

}  // namespace scan

#endif

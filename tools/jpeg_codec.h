// JPEG reading and writing through libjpeg-turbo.
#ifndef MORVANE_TOOLS_JPEG_CODEC_H
#define MORVANE_TOOLS_JPEG_CODEC_H

#include <cstdio>

#include "raster.h"

namespace scan {

// Decodes a whole JPEG stream into gray (grayscale files) or RGB (all other
// colour spaces, CMYK included). A stream that ends early is refused rather
// than padded with gray. Throws ImageProblem.
Raster read_jpeg(std::FILE* file);

// Encodes a gray or RGB raster at the given quality (1 to 100). Throws
// ImageProblem; the file may then hold a partial stream.
void write_jpeg(std::FILE* file, const Raster& image, int quality);

}  // namespace scan

#endif

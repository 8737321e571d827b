// PNG reading and writing through libpng.
#ifndef MORVANE_TOOLS_PNG_CODEC_H
#define MORVANE_TOOLS_PNG_CODEC_H

#include <cstdio>

#include "raster.h"

namespace scan {

// Decodes a whole PNG into 8-bit gray or RGB. Every kind of PNG is converted
// rather than refused: 16-bit samples are scaled to 8 bits, palettes and low
// bit depths expanded, and transparency laid over white paper. Throws
// ImageProblem.
Raster read_png(std::FILE* file);

// Encodes gray, RGB or 1-bit rasters (ink written black) at a zlib level of
// 0 to 9. Throws ImageProblem; the file may then hold a partial stream.
void write_png(std::FILE* file, const Raster& image, int level);

}  // namespace scan

#endif

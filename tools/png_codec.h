// PNG reading and writing through libpng.
#ifndef MORVANE_TOOLS_PNG_CODEC_H
#define MORVANE_TOOLS_PNG_CODEC_H

#include <cstddef>
#include <cstdio>
#include <string>

#include "raster.h"

namespace scan {

// Decodes a whole PNG held in memory into 8-bit gray or RGB, with the
// density of its pHYs chunk when that is given per metre. Every kind of PNG
// is converted rather than refused: 16-bit samples are scaled to 8 bits,
// palettes and low bit depths expanded, and transparency laid over white
// paper. `exif` receives the eXIf chunk before the pixels behind an
// "Exif\0\0" header, as a JPEG holds it, or is emptied. Throws ImageProblem.
Raster read_png(const unsigned char* data, std::size_t size, std::string& exif);

// Encodes gray, RGB or 1-bit rasters (ink written black) at a zlib level of
// 0 to 9, with a pHYs chunk when the raster has a density. Throws
// ImageProblem; the file may then hold a partial stream.
void write_png(std::FILE* file, const Raster& image, int level);

}  // namespace scan

#endif

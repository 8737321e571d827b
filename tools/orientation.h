// EXIF orientation: how stored pixels are turned or mirrored to show a photo
// upright. Phones store the sensor's rows as they came and say in the tag how
// the camera was held.
#ifndef MORVANE_TOOLS_ORIENTATION_H
#define MORVANE_TOOLS_ORIENTATION_H

#include "raster.h"

namespace scan {

// The eight EXIF values, with what is done to the stored picture to show it:
// 1 nothing, 2 mirror left to right, 3 turn half round, 4 mirror top to
// bottom, 5 mirror along the main diagonal (transpose), 6 turn a quarter
// clockwise, 7 mirror along the other diagonal, 8 turn a quarter
// anticlockwise. 5 to 8 exchange width and height.
bool orientation_exchanges_sides(int orientation);

// A new raster of gray or RGB pixels shown as `orientation` says, densities
// exchanged with the sides. Any value outside 1 to 8 counts as 1.
Raster turn_upright(const Raster& stored, int orientation);

}  // namespace scan

#endif

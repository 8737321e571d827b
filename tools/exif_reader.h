// What a photo's EXIF block says about its pixels: how to turn them upright
// and how densely they were taken. Read with libexif.
#ifndef MORVANE_TOOLS_EXIF_READER_H
#define MORVANE_TOOLS_EXIF_READER_H

#include <string>

namespace scan {

struct ExifFacts {
    int orientation = 0;  // 1 to 8 as EXIF numbers them; 0 when absent or not one of those
    int x_dpi = 0;        // dots per inch from XResolution and ResolutionUnit; 0 when absent
    int y_dpi = 0;
};

// `block` starts with the "Exif\0\0" header of a JPEG's APP1 marker. Damaged
// or unknown content gives what could be read, never an error.
ExifFacts read_exif(const std::string& block);

}  // namespace scan

#endif

// The command line of morvane-scan: what the user asked for, checked once.
#ifndef MORVANE_TOOLS_SCAN_OPTIONS_H
#define MORVANE_TOOLS_SCAN_OPTIONS_H

#include <string>
#include <vector>

#include "image_file.h"
#include "morvane/morvane.h"

namespace scan {

// "-" as an input or as -o names standard input or output.
constexpr const char* kStandardStream = "-";

struct ScanOptions {
    std::vector<std::string> inputs;
    bool ignore_orientation = false;  // take the pixels as stored, not as EXIF says to show them
    std::string output;         // -o: the one output file
    std::string output_folder;  // -d: one output per input, named like the input
    ImageFormat format = ImageFormat::Unknown;  // --format; Unknown: by the output's name

    bool has_corners = false;
    ControlPointCorners corners{};  // top-left, top-right, bottom-right, bottom-left

    int fill_count = 0;  // 0: computed from the page; 1 gray value or 3 for R, G, B
    int fill[3] = {0, 0, 0};

    bool edges_only = false;
    bool classic_edges = false;  // the corrector's classic edge search instead of the staged one
    int engine = -1;  // corner search method 0 to 7, -1 for the corrector

    std::string binarize;  // "", "sauvola" or "multiscale"
    bool has_window = false;
    int window = MORVANE_DEFAULT_BINARIZATION_WINDOW;
    bool has_k = false;
    float k = MORVANE_DEFAULT_BINARIZATION_K;
    bool dpi = false;
    bool quality = false;  // --quality: grade the page, or the whole image without one

    std::string overlay;  // file, or folder with several inputs
    bool json = false;
    bool corners_only = false;
    bool always_write = false;
    int png_level = 1;
    int jpeg_quality = 92;

    bool help = false;
    bool version = false;
};

// Largest magnitude accepted for a corner coordinate: far beyond any photo,
// small enough that every size computed from corners stays an integer.
constexpr int kCornerLimit = 1000000;

// Throws ScanError with exit code 2 on anything malformed or contradictory.
ScanOptions parse_options(int argc, const char* const* argv);

// Parses "x0,y0,x1,y1,x2,y2,x3,y3"; false when it is not eight integers
// within the limit.
bool parse_corners(const std::string& text, ControlPointCorners& corners);

// Empty when the corners outline a page: four distinct points, no three on
// one line, sides that do not cross, every corner pointing outwards, in the
// order top-left, top-right, bottom-right, bottom-left (clockwise as the
// picture is shown). Otherwise what is wrong, in words.
std::string corners_problem(const ControlPointCorners& corners);

// The --help text.
std::string help_text();

}  // namespace scan

#endif

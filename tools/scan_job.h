// One input through the four phases: decode, find, rectify, encode; and
// everything a report says about it.
#ifndef MORVANE_TOOLS_SCAN_JOB_H
#define MORVANE_TOOLS_SCAN_JOB_H

#include <string>

#include "morvane/morvane.h"
#include "scan_error.h"
#include "scan_options.h"

namespace scan {

struct JobPaths {
    std::string input;
    std::string output;   // empty: nothing written
    std::string overlay;  // empty: no overlay
    std::string bitonal;  // empty: no black-and-white page
};

enum class CornerSource { None, Given, Corrector, Engine };

struct JobReport {
    JobPaths paths;
    int exit_code = kExitUsageOrFile;
    std::string error;  // the one-line message when exit_code is 2

    int input_width = 0;   // as shown: after the EXIF orientation, unless ignored
    int input_height = 0;
    int input_channels = 0;
    int orientation = 0;   // the file's EXIF orientation, 1 to 8; 0 when it has none
    bool orientation_applied = false;
    int input_x_dpi = 0;   // the input's density; 0 when it has none
    int input_y_dpi = 0;

    CornerSource source = CornerSource::None;
    bool searched = false;  // a library search ran and `code` holds its answer
    int code = 0;
    std::string meaning;
    bool page_found = false;
    bool has_corners = false;
    ControlPointCorners corners{};

    bool written = false;       // the page (or, with --always-write, the whole image)
    bool overlay_written = false;
    bool bitonal_written = false;
    int output_width = 0;
    int output_height = 0;
    int estimated_dpi = 0;        // with --dpi: the library's estimate; else 0
    int output_x_dpi = 0;         // the density written into the page; 0 when none
    int output_y_dpi = 0;
    std::string density_source;   // "input" or "estimate" when the page carries a density
    bool graded = false;          // with --quality: `quality` holds the grade of
    bool graded_page = false;     // the page found (true) or of the whole image
    double quality = 0.0;
    double quality_ms = 0;


    double decode_ms = 0, find_ms = 0, rectify_ms = 0, encode_ms = 0, binarize_ms = 0, dpi_ms = 0, overlay_ms = 0,
           total_ms = 0;
};

JobReport run_job(const JobPaths& paths, const ScanOptions& options);

}  // namespace scan

#endif

// One input through decode, find, rectify and encode, timed phase by phase.
#include "scan_job.h"

#include <chrono>
#include <cstdio>
#include <utility>

#include "common/constants.h"
#include "image_file.h"
#include "overlay.h"
#include "page_finder.h"
#include "scan_error.h"

namespace scan {
namespace {

using Clock = std::chrono::steady_clock;

double milliseconds_since(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The fill colour as the library wants it: one byte a channel of the image.
void fill_bytes(const ScanOptions& options, int channels, unsigned char bytes[3]) {
    int r = options.fill[0], g = options.fill[0], b = options.fill[0];
    if (options.fill_count == 3) {
        r = options.fill[0];
        g = options.fill[1];
        b = options.fill[2];
    }
    if (channels == 1) {
        // A colour given for a gray image becomes its luminance.
        bytes[0] = bytes[1] = bytes[2] = static_cast<unsigned char>(constants::luminance(r, g, b));
    } else {
        bytes[0] = static_cast<unsigned char>(r);
        bytes[1] = static_cast<unsigned char>(g);
        bytes[2] = static_cast<unsigned char>(b);
    }
}

void find(const Raster& image, const ScanOptions& options, JobReport& report) {
    if (options.has_corners) {
        report.source = CornerSource::Given;
        report.meaning = "corners given";
        report.page_found = true;
        report.has_corners = true;
        report.corners = options.corners;
        return;
    }
    if (options.engine >= 0) {
        report.source = CornerSource::Engine;
        const FindOutcome outcome = find_with_engine(options.engine, image);
        report.searched = true;
        report.code = outcome.code;
        report.meaning = outcome.found ? "corners found" : "no corners found";
        report.page_found = outcome.found;
        report.has_corners = outcome.found;
        report.corners = outcome.corners;
        return;
    }
    report.source = CornerSource::Corrector;
    const FindOutcome outcome = find_with_corrector(image, options.edges_only, options.classic_edges);
    report.searched = true;
    report.code = outcome.code;
    // Only a miss says which searches ran; the text search is asked about then.
    const bool missed = outcome.code == 3;
    report.meaning = meaning_of_corrector_code(outcome.code, missed && !options.edges_only);
    report.page_found = outcome.found;
    report.has_corners = outcome.found;
    report.corners = outcome.corners;
}

// `format` applies to the page; the overlay and the black-and-white page
// are named for theirs.
WriteSettings write_settings(const ScanOptions& options, ImageFormat format = ImageFormat::Unknown) {
    WriteSettings settings;
    settings.png_level = options.png_level;
    settings.jpeg_quality = options.jpeg_quality;
    settings.format = format;
    return settings;
}

// The page's density: the estimate when asked for, else the input's own.
void set_density(const Raster& image, const JobReport& report, Raster& page) {
    if (report.estimated_dpi > 0) {
        page.x_dpi = page.y_dpi = report.estimated_dpi;
    } else {
        page.x_dpi = image.x_dpi;
        page.y_dpi = image.y_dpi;
    }
}

// The page (or with --always-write the whole image) rectified and encoded,
// and its black-and-white form beside it when asked for.
void write_page(const Raster& image, const ScanOptions& options, JobReport& report) {
    Clock::time_point start = Clock::now();
    const ControlPointCorners corners = report.page_found ? report.corners : whole_image_corners(image);
    Raster page;
    if (options.fill_count > 0) {
        unsigned char fill[3];
        fill_bytes(options, image.channels, fill);
        page = rectify_with_fill(image, corners, fill);
    } else {
        page = rectify(image, corners);
    }
    report.rectify_ms = milliseconds_since(start);
    report.output_width = page.width;
    report.output_height = page.height;
    set_density(image, report, page);
    if (page.has_density()) {
        report.output_x_dpi = page.x_dpi;
        report.output_y_dpi = page.y_dpi;
        report.density_source = report.estimated_dpi > 0 ? "estimate" : "input";
    }

    start = Clock::now();
    if (report.paths.output == kStandardStream) {
        write_standard_output(page, write_settings(options, options.format));
    } else {
        write_image_file(report.paths.output, page, write_settings(options, options.format));
    }
    report.written = true;
    report.encode_ms = milliseconds_since(start);

    if (report.paths.bitonal.empty()) return;
    start = Clock::now();
    const Raster bitonal = binarize_page(page, options.binarize == "multiscale" ? 1 : 0,
                                         options.has_window ? options.window : 0, options.has_k ? options.k : -1.0f);
    write_image_file(report.paths.bitonal, bitonal, write_settings(options));
    report.bitonal_written = true;
    report.binarize_ms = milliseconds_since(start);
}

void write_overlay(const Raster& image, const ScanOptions& options, JobReport& report) {
    const Clock::time_point start = Clock::now();
    const Raster picture = make_overlay(image, report.has_corners ? &report.corners : nullptr);
    write_image_file(report.paths.overlay, picture, write_settings(options));
    report.overlay_written = true;
    report.overlay_ms = milliseconds_since(start);
}

// Decode, find, estimate the resolution when asked, then write what was
// asked for. Problems of the image or of the library leave as ImageProblem;
// those of files as ScanError.
void process(const ScanOptions& options, JobReport& report) {
    Clock::time_point start = Clock::now();
    const bool upright = !options.ignore_orientation;
    const DecodedImage decoded = report.paths.input == kStandardStream ? read_standard_input(upright)
                                                                       : read_image_file(report.paths.input, upright);
    const Raster& image = decoded.raster;
    report.input_width = image.width;
    report.input_height = image.height;
    report.input_channels = image.channels;
    report.orientation = decoded.orientation;
    report.orientation_applied = decoded.orientation_applied;
    if (image.has_density()) {
        report.input_x_dpi = image.x_dpi;
        report.input_y_dpi = image.y_dpi;
    }
    report.decode_ms = milliseconds_since(start);

    start = Clock::now();
    find(image, options, report);
    report.find_ms = milliseconds_since(start);

    if (options.dpi) {
        start = Clock::now();
        report.estimated_dpi = estimate_resolution(image);
        report.dpi_ms = milliseconds_since(start);
    }
    if (options.quality) {
        start = Clock::now();
        report.graded_page = report.page_found;
        report.quality = grade_quality(image, report.page_found ? &report.corners : nullptr);
        report.graded = true;
        report.quality_ms = milliseconds_since(start);
    }
    if (!report.paths.output.empty() && (report.page_found || options.always_write)) write_page(image, options, report);
    if (!report.paths.overlay.empty()) write_overlay(image, options, report);
    report.exit_code = report.page_found ? kExitPageWritten : kExitNoPage;
}

// How messages name an input: 'x.jpg', or standard input.
std::string source_name(const std::string& input) {
    return input == kStandardStream ? std::string("standard input") : "'" + input + "'";
}

// A job that fails leaves none of its files behind: a page without the
// black-and-white page or the overlay asked for beside it is no result.
void remove_written(JobReport& report) {
    const std::pair<bool*, const std::string*> files[] = {{&report.written, &report.paths.output},
                                                          {&report.bitonal_written, &report.paths.bitonal},
                                                          {&report.overlay_written, &report.paths.overlay}};
    for (const auto& file : files) {
        if (*file.first) std::remove(file.second->c_str());
        *file.first = false;
    }
}

}  // namespace

JobReport run_job(const JobPaths& paths, const ScanOptions& options) {
    JobReport report;
    report.paths = paths;
    const Clock::time_point start = Clock::now();
    try {
        process(options, report);
    } catch (const ScanError& error) {
        report.exit_code = error.exit_code();
        report.error = error.what();
    } catch (const ImageProblem& problem) {
        // The problem is the image's: the message names the file.
        report.exit_code = kExitUsageOrFile;
        report.error = source_name(paths.input) + ": " + problem.what();
    } catch (const std::bad_alloc&) {
        report.exit_code = kExitUsageOrFile;
        report.error = source_name(paths.input) + ": not enough memory";
    }
    if (report.exit_code == kExitUsageOrFile) remove_written(report);
    report.total_ms = milliseconds_since(start);
    return report;
}

}  // namespace scan

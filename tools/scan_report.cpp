// What morvane-scan prints about one input.
#include "scan_report.h"

#include <cstdio>

#include "json_writer.h"

namespace scan {
namespace {

std::string seconds(double ms) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f s", ms / 1000.0);
    return text;
}

std::string corner_list(const ControlPointCorners& corners) {
    std::string text;
    for (int i = 0; i < 4; ++i) {
        if (i > 0) text += " ";
        text += "(" + std::to_string(corners.x[i]) + "," + std::to_string(corners.y[i]) + ")";
    }
    return text;
}

std::string source_name(const JobReport& report) {
    switch (report.source) {
        case CornerSource::Given: return "given";
        case CornerSource::Corrector: return "corrector";
        case CornerSource::Engine: return "engine";
        case CornerSource::None: break;
    }
    return "none";
}

// "page found (code 1: corners found and accepted)"
std::string outcome_words(const JobReport& report) {
    if (report.source == CornerSource::Given) return "corners given";
    std::string words = report.page_found ? "page found" : "no page found";
    if (report.searched) return words + " (code " + std::to_string(report.code) + ": " + report.meaning + ")";
    return words + " (" + report.meaning + ")";
}

// ", binarize 0.12" when the black-and-white page was made, ", resolution
// 0.05" when the resolution was estimated, ", quality 0.20" when graded.
std::string optional_times(const JobReport& report) {
    char text[80] = "";
    std::size_t used = 0;
    if (report.bitonal_written)
        used += std::snprintf(text, sizeof text, ", binarize %.2f", report.binarize_ms / 1000.0);
    if (report.estimated_dpi > 0) {
        used += std::snprintf(text + used, sizeof text - used, ", resolution %.2f", report.dpi_ms / 1000.0);
    }
    if (report.graded) std::snprintf(text + used, sizeof text - used, ", quality %.2f", report.quality_ms / 1000.0);
    return text;
}

// [300,300], or null for a density that is not known.
std::string json_density(int x_dpi, int y_dpi) {
    if (x_dpi <= 0 || y_dpi <= 0) return "null";
    return "[" + std::to_string(x_dpi) + "," + std::to_string(y_dpi) + "]";
}

// "300 dpi" or "300 x 600 dpi".
std::string density_words(int x_dpi, int y_dpi) {
    return (x_dpi == y_dpi ? std::to_string(x_dpi) : std::to_string(x_dpi) + " x " + std::to_string(y_dpi)) + " dpi";
}

// "0.947 (the page)" or "0.000 (the whole image)".
std::string quality_words(const JobReport& report) {
    char grade[16];
    std::snprintf(grade, sizeof grade, "%.3f", report.quality);
    return grade + std::string(report.graded_page ? " (the page)" : " (the whole image)");
}

std::string output_name(const std::string& output) {
    return output == kStandardStream ? std::string("standard output") : output;
}

// A line on the EXIF orientation when the file has one that turns it.
std::string orientation_line(const JobReport& report) {
    if (report.orientation <= 1) return std::string();
    const std::string tag = "EXIF orientation " + std::to_string(report.orientation);
    if (report.orientation_applied) return "  turned upright as its " + tag + " says\n";
    return "  " + tag + " ignored: the pixels as stored\n";
}

}  // namespace

std::string summary_text(const JobReport& report) {
    const JobPaths& paths = report.paths;
    std::string text = paths.input + ": " + std::to_string(report.input_width) + " x " +
                       std::to_string(report.input_height) + (report.input_channels == 3 ? " colour" : " gray") +
                       (report.input_x_dpi > 0 ? ", " + density_words(report.input_x_dpi, report.input_y_dpi) : "") +
                       "\n" + orientation_line(report);
    if (report.source == CornerSource::Given) {
        text += "  corners given: " + corner_list(report.corners) + "\n";
    } else {
        text += "  " + outcome_words(report) + "\n";
        if (report.has_corners) text += "  corners: " + corner_list(report.corners) + "\n";
    }
    if (report.written) {
        text += std::string(report.page_found ? "  page written to " : "  whole image written to ") +
                output_name(paths.output) + ": " + std::to_string(report.output_width) + " x " +
                std::to_string(report.output_height);
        if (!report.density_source.empty()) {
            text += ", " + density_words(report.output_x_dpi, report.output_y_dpi) +
                    (report.density_source == "estimate" ? " (estimated)" : " (the input's)");
        }
        text += "\n";
    } else if (!paths.output.empty()) {
        text += "  nothing written to " + output_name(paths.output) + " (--always-write writes the whole image)\n";
    }
    if (report.bitonal_written) text += "  black-and-white page written to " + paths.bitonal + "\n";
    if (report.overlay_written) text += "  overlay written to " + paths.overlay + "\n";
    if (report.estimated_dpi > 0) text += "  resolution: " + std::to_string(report.estimated_dpi) + " dpi\n";
    if (report.graded) text += "  quality: " + quality_words(report) + "\n";
    char times[240];
    std::snprintf(times, sizeof times, "  time: %s (decode %.2f, find %.2f, rectify %.2f, encode %.2f%s)\n",
                  seconds(report.total_ms).c_str(), report.decode_ms / 1000.0, report.find_ms / 1000.0,
                  report.rectify_ms / 1000.0, report.encode_ms / 1000.0, optional_times(report).c_str());
    return text + times;
}

std::string progress_line(const JobReport& report, std::size_t index, std::size_t count) {
    std::string line = "[" + std::to_string(index) + "/" + std::to_string(count) + "] " + report.paths.input;
    if (report.written) line += " -> " + report.paths.output;
    if (report.exit_code == kExitUsageOrFile) return line + ": failed";
    line += ": " + outcome_words(report);
    if (report.written) line += ", " + std::to_string(report.output_width) + " x " + std::to_string(report.output_height);
    if (report.estimated_dpi > 0) line += ", " + std::to_string(report.estimated_dpi) + " dpi";
    if (report.graded) line += ", quality " + quality_words(report);
    return line + ", " + seconds(report.total_ms);
}

std::string json_report(const JobReport& report) {
    JsonObject json;
    json.text("input", report.paths.input);
    if (report.exit_code == kExitUsageOrFile) {
        json.text("error", report.error).number("exit", static_cast<long long>(report.exit_code));
        return json.str();
    }
    json.number("input_width", static_cast<long long>(report.input_width))
        .number("input_height", static_cast<long long>(report.input_height))
        .text("source", source_name(report))
        .number_or_null("code", report.code, report.searched)
        .text("meaning", report.meaning)
        .boolean("page_found", report.page_found)
        .raw("corners", json_corners(report.has_corners ? &report.corners : nullptr))
        .text_or_null("output", report.written ? report.paths.output : std::string())
        .number_or_null("output_width", report.output_width, report.written)
        .number_or_null("output_height", report.output_height, report.written)
        .text_or_null("bitonal", report.bitonal_written ? report.paths.bitonal : std::string())
        .text_or_null("overlay", report.overlay_written ? report.paths.overlay : std::string())
        .number_or_null("orientation", report.orientation, report.orientation > 0)
        .boolean("orientation_applied", report.orientation_applied)
        .raw("input_dpi", json_density(report.input_x_dpi, report.input_y_dpi))
        .raw("output_dpi", json_density(report.output_x_dpi, report.output_y_dpi))
        .text_or_null("output_dpi_from", report.density_source)
        // Null unless asked for with --dpi.
        .number_or_null("dpi", report.estimated_dpi, report.estimated_dpi > 0);
    // Both null unless asked for with --quality.
    if (report.graded) {
        json.number("quality", report.quality, 4).text("quality_of", report.graded_page ? "page" : "image");
    } else {
        json.null("quality").null("quality_of");
    }
    JsonObject times;
    times.number("decode", report.decode_ms, 1)
        .number("find", report.find_ms, 1)
        .number("rectify", report.rectify_ms, 1)
        .number("encode", report.encode_ms, 1)
        .number("binarize", report.binarize_ms, 1)
        .number("resolution", report.dpi_ms, 1)
        .number("quality", report.quality_ms, 1)
        .number("overlay", report.overlay_ms, 1)
        .number("total", report.total_ms, 1);
    json.raw("times_ms", times.str()).number("exit", static_cast<long long>(report.exit_code));
    return json.str();
}

std::string corners_line(const JobReport& report) {
    return "{\"corners\": " + json_corners(report.has_corners ? &report.corners : nullptr) + "}";
}

}  // namespace scan

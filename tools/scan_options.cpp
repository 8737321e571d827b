// The command line of morvane-scan: parsing, checking and the help text.
#include "scan_options.h"

#include <cerrno>
#include <cstdlib>
#include <sstream>

#include "page_finder.h"
#include "scan_error.h"

namespace scan {
namespace {

ScanError usage(const std::string& problem) {
    return ScanError(problem + " (see morvane-scan --help)");
}

bool parse_int(const std::string& text, long low, long high, int& value) {
    if (text.empty()) return false;
    errno = 0;
    char* end = nullptr;
    const long parsed = std::strtol(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || parsed < low || parsed > high) return false;
    // strtol skips leading blanks; a number here is digits and a sign only.
    if (text[0] == ' ' || text[0] == '\t') return false;
    value = static_cast<int>(parsed);
    return true;
}

bool parse_float(const std::string& text, float low, float high, float& value) {
    if (text.empty() || text[0] == ' ') return false;
    errno = 0;
    char* end = nullptr;
    const float parsed = std::strtof(text.c_str(), &end);
    if (errno != 0 || *end != '\0' || !(parsed >= low && parsed <= high)) return false;
    value = parsed;
    return true;
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream stream(text);
    while (std::getline(stream, part, separator)) parts.push_back(part);
    if (!text.empty() && text.back() == separator) parts.push_back(std::string());
    return parts;
}

}  // namespace

bool parse_corners(const std::string& text, ControlPointCorners& corners) {
    const std::vector<std::string> parts = split(text, ',');
    if (parts.size() != 8) return false;
    int values[8];
    for (int i = 0; i < 8; ++i) {
        if (!parse_int(parts[static_cast<std::size_t>(i)], -kCornerLimit, kCornerLimit, values[i])) return false;
    }
    for (int i = 0; i < 4; ++i) {
        corners.x[i] = values[2 * i];
        corners.y[i] = values[2 * i + 1];
    }
    return true;
}

ScanOptions parse_options(int argc, const char* const* argv) {
    ScanOptions options;
    bool options_ended = false;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (options_ended || arg.empty() || arg[0] != '-' || arg == "-") {
            options.inputs.push_back(arg);
            continue;
        }
        if (arg == "--") {
            options_ended = true;
            continue;
        }
        // Both "--name value" and "--name=value".
        std::string name = arg;
        std::string inline_value;
        bool has_inline = false;
        const std::size_t equals = arg.find('=');
        if (arg.compare(0, 2, "--") == 0 && equals != std::string::npos) {
            name = arg.substr(0, equals);
            inline_value = arg.substr(equals + 1);
            has_inline = true;
        }
        const auto value = [&]() -> std::string {
            if (has_inline) return inline_value;
            if (i + 1 >= argc) throw usage(name + " needs a value");
            return argv[++i];
        };
        const auto flag = [&]() {
            if (has_inline) throw usage(name + " takes no value");
        };

        if (name == "-h" || name == "--help") {
            flag();
            options.help = true;
        } else if (name == "--version") {
            flag();
            options.version = true;
        } else if (name == "-o" || name == "--output") {
            options.output = value();
        } else if (name == "-d" || name == "--output-dir") {
            options.output_folder = value();
        } else if (name == "--corners") {
            const std::string text = value();
            if (!parse_corners(text, options.corners)) {
                throw usage("--corners needs eight integers x0,y0,x1,y1,x2,y2,x3,y3 (top-left, top-right, "
                            "bottom-right, bottom-left, each within +-" + std::to_string(kCornerLimit) +
                            "), not '" + text + "'");
            }
            options.has_corners = true;
        } else if (name == "--fill") {
            const std::string text = value();
            const std::vector<std::string> parts = split(text, ',');
            bool ok = parts.size() == 1 || parts.size() == 3;
            for (std::size_t p = 0; ok && p < parts.size(); ++p) ok = parse_int(parts[p], 0, 255, options.fill[p]);
            if (!ok) throw usage("--fill needs R,G,B or one gray value, each from 0 to 255, not '" + text + "'");
            options.fill_count = static_cast<int>(parts.size());
        } else if (name == "--edges-only") {
            flag();
            options.edges_only = true;
        } else if (name == "--engine") {
            const std::string text = value();
            if (!parse_int(text, 0, 7, options.engine)) throw usage("--engine needs a method from 0 to 7, not '" + text + "'");
        } else if (name == "--binarize") {
            options.binarize = value();
            if (options.binarize != "sauvola" && options.binarize != "multiscale") {
                throw usage("--binarize needs 'sauvola' or 'multiscale', not '" + options.binarize + "'");
            }
        } else if (name == "--window") {
            const std::string text = value();
            if (!parse_int(text, 1, 100000, options.window)) throw usage("--window needs a positive integer, not '" + text + "'");
            options.has_window = true;
        } else if (name == "--k") {
            const std::string text = value();
            if (!parse_float(text, 0.0f, 1.0f, options.k)) throw usage("--k needs a number from 0 to 1, not '" + text + "'");
            options.has_k = true;
        } else if (name == "--dpi") {
            flag();
            options.dpi = true;
        } else if (name == "--overlay") {
            options.overlay = value();
        } else if (name == "--json") {
            flag();
            options.json = true;
        } else if (name == "--corners-only") {
            flag();
            options.corners_only = true;
        } else if (name == "--always-write") {
            flag();
            options.always_write = true;
        } else if (name == "--png-level") {
            const std::string text = value();
            if (!parse_int(text, 0, 9, options.png_level)) throw usage("--png-level needs a level from 0 to 9, not '" + text + "'");
        } else if (name == "--jpeg-quality") {
            const std::string text = value();
            if (!parse_int(text, 1, 100, options.jpeg_quality)) {
                throw usage("--jpeg-quality needs a quality from 1 to 100, not '" + text + "'");
            }
        } else {
            throw usage("unknown option '" + arg + "'");
        }
    }
    if (options.help || options.version) return options;

    if (options.inputs.empty()) throw usage("no input picture given");
    if (!options.output.empty() && !options.output_folder.empty()) throw usage("-o and -d exclude each other");
    if (options.inputs.size() > 1 && !options.output.empty()) {
        throw usage("-o names one output; with several inputs give a folder with -d");
    }
    if (options.has_corners && (options.engine >= 0 || options.edges_only)) {
        throw usage("--corners replaces the search; it goes with neither --engine nor --edges-only");
    }
    if (options.engine >= 0 && options.edges_only) throw usage("--engine and --edges-only exclude each other");
    if (options.json && options.corners_only) throw usage("--json and --corners-only exclude each other");
    const bool writes = !options.output.empty() || !options.output_folder.empty();
    if (options.always_write && !writes) throw usage("--always-write needs an output (-o or -d)");
    if (!options.binarize.empty() && !writes) throw usage("--binarize needs an output (-o or -d)");
    if ((options.has_window || options.has_k) && options.binarize.empty()) throw usage("--window and --k go with --binarize");
    return options;
}

std::string help_text() {
    std::ostringstream text;
    text << "Usage: morvane-scan [OPTIONS] INPUT [-o OUTPUT]\n"
            "       morvane-scan [OPTIONS] INPUT... -d OUTDIR\n"
            "\n"
            "Finds the page in a photo (JPEG or PNG), straightens it and writes it as PNG\n"
            "or JPEG, chosen by the output's extension (.png, .jpg, .jpeg). Without -o or -d\n"
            "nothing is written: the tool only reports what it found.\n"
            "\n"
            "Output:\n"
            "  -o, --output FILE      write the straightened page to FILE\n"
            "  -d, --output-dir DIR   several inputs: write each page to DIR under the\n"
            "                         input's file name, with a progress line each\n"
            "  --overlay PATH         write a reduced copy of the input with the page's\n"
            "                         outline drawn on it (top-left corner in green); with\n"
            "                         several inputs PATH is a folder and each overlay is\n"
            "                         NAME-overlay.png\n"
            "  --always-write         when no page is found, write the whole image\n"
            "  --png-level N          zlib level 0-9 for PNG output (default 1, fast)\n"
            "  --jpeg-quality N       quality 1-100 for JPEG output (default 92)\n"
            "\n"
            "Finding the page:\n"
            "  (default)              hybrid search: page edges, then the text\n"
            "  --edges-only           search the page edges only\n"
            "  --engine N             corner search method N (0-7) instead of the corrector\n"
            "  --corners X0,Y0,X1,Y1,X2,Y2,X3,Y3\n"
            "                         use these corners (integers, pixels of the input;\n"
            "                         top-left, top-right, bottom-right, bottom-left)\n"
            "  --fill R,G,B | --fill V\n"
            "                         colour of the output outside the photo (default:\n"
            "                         the paper's colour, taken from the page's border)\n"
            "\n"
            "More results:\n"
            "  --binarize sauvola|multiscale\n"
            "                         also write the black-and-white page beside the\n"
            "                         output as NAME-bw.png (1 bit a pixel)\n"
            "  --window N, --k K      window (default 35) and k (default 0.1) of the method\n"
            "  --dpi                  estimate the page's resolution in dots per inch\n"
            "\n"
            "Reports:\n"
            "  (default)              a short summary: what was found, the corners, the\n"
            "                         output size and the time taken\n"
            "  --json                 one JSON object a line per input: the return code and\n"
            "                         its meaning, the corners, the output size, the\n"
            "                         resolution and the time of each phase in ms\n"
            "  --corners-only         one line per input and nothing else:\n"
            "                         {\"corners\": [[x,y],[x,y],[x,y],[x,y]]} or {\"corners\": null};\n"
            "                         the line is the answer, so no page found exits with 0\n"
            "  -h, --help             this text\n"
            "  --version              the tool's and the library's version\n"
            "\n"
            "Exit codes (with several inputs, the highest of them):\n"
            "  0  page found (or corners given) and written\n"
            "  1  no page found; nothing is written unless --always-write\n"
            "     (with --corners-only: 0, the line says null)\n"
            "  2  usage error, or a file that cannot be read or written\n"
            "\n"
            "Errors are one line naming the file and the problem. Outputs are written to a\n"
            "temporary file and renamed, so no half-written file is ever left.\n"
            "\n"
            "In this build:\n";
    const auto state = [](bool available) { return available ? "available" : "not available yet"; };
    text << "  page finding (default, --edges-only)  " << state(true) << "\n"
         << "  --engine                              " << state(true) << "\n"
         << "  --fill                                " << state(true) << "\n"
         << "  --binarize sauvola                    " << state(binarization_available("sauvola")) << "\n"
         << "  --binarize multiscale                 " << state(binarization_available("multiscale")) << "\n"
         << "  --dpi                                 " << state(resolution_estimate_available()) << "\n"
         << "  --corners, --overlay, reports         available\n";
    return text.str();
}

}  // namespace scan

// The command line of morvane-scan: parsing, checking and the help text.
#include "scan_options.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sstream>

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

// What an option does with its value; flags get an empty one.
typedef void (*Apply)(ScanOptions& options, const std::string& value);

// One line of the option table: the names an option is typed by (none for a
// line that only explains a default), whether a value follows, what it does,
// and how --help shows it: `usage` left, `help` right, one entry of `help`
// a line. An option without usage is explained on the line before.
struct Option {
    std::vector<std::string> names;
    bool takes_value;
    Apply apply;
    std::string usage;
    std::vector<std::string> help;
};

struct Section {
    std::string heading;
    std::vector<Option> options;
};

std::string number(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

// Every option, in the order --help lists them.
std::vector<Section> option_table() {
    return {
        {"Input",
         {{{}, false, nullptr, "INPUT", {"a JPEG or PNG file, or - for standard input"}},
          {{"--ignore-orientation"}, false, [](ScanOptions& o, const std::string&) { o.ignore_orientation = true; },
           "--ignore-orientation",
           {"take the pixels as stored; by default a photo is", "turned upright as its EXIF orientation says, and",
            "corners are pixels of the upright picture"}}}},
        {"Output",
         {{{"-o", "--output"}, true, [](ScanOptions& o, const std::string& v) { o.output = v; },
           "-o, --output FILE",
           {"write the straightened page to FILE; -o - writes it", "to standard output (with --format), and the report",
            "then goes to standard error"}},
          {{"-d", "--output-dir"}, true, [](ScanOptions& o, const std::string& v) { o.output_folder = v; },
           "-d, --output-dir DIR",
           {"several inputs: write each page to DIR (made when", "missing) under the input's file name, with a",
            "progress line each"}},
          {{"--format"}, true,
           [](ScanOptions& o, const std::string& v) {
               if (v == "png") {
                   o.format = ImageFormat::Png;
               } else if (v == "jpeg" || v == "jpg") {
                   o.format = ImageFormat::Jpeg;
               } else {
                   throw usage("--format needs 'png' or 'jpeg', not '" + v + "'");
               }
           },
           "--format png|jpeg",
           {"the pages' format, whatever their names say; needed", "with -o -, and with -d each page is named NAME.png",
            "or NAME.jpg (default: by the output's extension,", "and with -d the input's)"}},
          {{"--overlay"}, true, [](ScanOptions& o, const std::string& v) { o.overlay = v; }, "--overlay PATH",
           {"write a reduced copy of the input with the page's",
            "outline drawn on it (top-left corner in green); with",
            "several inputs PATH is a folder and each overlay is", "NAME-overlay.png"}},
          {{"--always-write"}, false, [](ScanOptions& o, const std::string&) { o.always_write = true; },
           "--always-write", {"when no page is found, write the whole image"}},
          {{"--png-level"}, true,
           [](ScanOptions& o, const std::string& v) {
               if (!parse_int(v, 0, 9, o.png_level)) throw usage("--png-level needs a level from 0 to 9, not '" + v + "'");
           },
           "--png-level N", {"zlib level 0-9 for PNG output (default 1, fast)"}},
          {{"--jpeg-quality"}, true,
           [](ScanOptions& o, const std::string& v) {
               if (!parse_int(v, 1, 100, o.jpeg_quality)) {
                   throw usage("--jpeg-quality needs a quality from 1 to 100, not '" + v + "'");
               }
           },
           "--jpeg-quality N", {"quality 1-100 for JPEG output (default 92)"}}}},
        {"Finding the page",
         {{{}, false, nullptr, "(default)",
           {"hybrid search: the page's edges, then its text"}},
          {{"--edges-only"}, false, [](ScanOptions& o, const std::string&) { o.edges_only = true; }, "--edges-only",
           {"search the page edges only"}},
          {{"--classic-edges"}, false, [](ScanOptions& o, const std::string&) { o.classic_edges = true; },
           "--classic-edges", {"find the edges by the classic Hough line search", "instead of the staged contour search"}},
          {{"--engine"}, true,
           [](ScanOptions& o, const std::string& v) {
               if (!parse_int(v, 0, 7, o.engine)) throw usage("--engine needs a method from 0 to 7, not '" + v + "'");
           },
           "--engine N",
           {"corner search method N (0-7) instead of the",
            "corrector: 0 its edge search, 1-3 Hough lines,",
            "6 the staged search, 7 its line segment stage;",
            "4 and 5 never find a page: their blob corner",
            "analysis dilates the edge image until nothing",
            "changes and then gives no corners"}},
          {{"--corners"}, true,
           [](ScanOptions& o, const std::string& v) {
               if (!parse_corners(v, o.corners)) {
                   throw usage("--corners needs eight integers x0,y0,x1,y1,x2,y2,x3,y3 (top-left, top-right, "
                               "bottom-right, bottom-left, each within +-" + std::to_string(kCornerLimit) +
                               "), not '" + v + "'");
               }
               const std::string problem = corners_problem(o.corners);
               if (!problem.empty()) throw usage("--corners must outline a page: " + problem);
               o.has_corners = true;
           },
           "--corners X0,Y0,X1,Y1,X2,Y2,X3,Y3",
           {"use these corners (integers, pixels of the input;", "top-left, top-right, bottom-right, bottom-left)"}},
          {{"--fill"}, true,
           [](ScanOptions& o, const std::string& v) {
               const std::vector<std::string> parts = split(v, ',');
               bool ok = parts.size() == 1 || parts.size() == 3;
               for (std::size_t p = 0; ok && p < parts.size(); ++p) ok = parse_int(parts[p], 0, 255, o.fill[p]);
               if (!ok) throw usage("--fill needs R,G,B or one gray value, each from 0 to 255, not '" + v + "'");
               o.fill_count = static_cast<int>(parts.size());
           },
           "--fill R,G,B | --fill V",
           {"colour of the output outside the photo (default:", "the paper's colour, taken from the page's border)"}}}},
        {"More results",
         {{{"--binarize"}, true,
           [](ScanOptions& o, const std::string& v) {
               if (v != "sauvola" && v != "multiscale") {
                   throw usage("--binarize needs 'sauvola' or 'multiscale', not '" + v + "'");
               }
               o.binarize = v;
           },
           "--binarize sauvola|multiscale",
           {"also write the black-and-white page beside the", "output as NAME-bw.png (1 bit a pixel)"}},
          {{"--window"}, true,
           [](ScanOptions& o, const std::string& v) {
               if (!parse_int(v, 1, 100000, o.window)) throw usage("--window needs a positive integer, not '" + v + "'");
               o.has_window = true;
           },
           "--window N, --k K",
           {"window (default " + number(MORVANE_DEFAULT_BINARIZATION_WINDOW) + ") and k (default " +
            number(MORVANE_DEFAULT_BINARIZATION_K) + ") of the method;", "multiscale takes k and chooses its own window"}},
          {{"--k"}, true,
           [](ScanOptions& o, const std::string& v) {
               if (!parse_float(v, 0.0f, 1.0f, o.k)) throw usage("--k needs a number from 0 to 1, not '" + v + "'");
               o.has_k = true;
           },
           "", {}},
          {{"--dpi"}, false, [](ScanOptions& o, const std::string&) { o.dpi = true; }, "--dpi",
           {"estimate the page's resolution in dots per inch and", "write it into the page (by default the page keeps",
            "the input's own density, when it has one)"}},
          {{"--quality"}, false, [](ScanOptions& o, const std::string&) { o.quality = true; }, "--quality",
           {"grade how well the text can be read, from 0 to 1:", "the share of sharp, well-formed characters of the",
            "page found (of the whole image when none is); 0 also", "when there is too little text to judge"}}}},
        {"Reports",
         {{{}, false, nullptr, "(default)",
           {"a short summary: what was found, the corners, the", "output size and the time taken"}},
          {{"--json"}, false, [](ScanOptions& o, const std::string&) { o.json = true; }, "--json",
           {"one JSON object a line per input: the return code and",
            "its meaning, the corners, the output size, the",
            "resolution and the time of each phase in ms"}},
          {{"--corners-only"}, false, [](ScanOptions& o, const std::string&) { o.corners_only = true; },
           "--corners-only",
           {"one line per input and nothing else:",
            "{\"corners\": [[x,y],[x,y],[x,y],[x,y]]} or {\"corners\": null};",
            "the line is the answer, so no page found exits with 0"}},
          {{"-h", "--help"}, false, [](ScanOptions& o, const std::string&) { o.help = true; }, "-h, --help",
           {"this text"}},
          {{"--version"}, false, [](ScanOptions& o, const std::string&) { o.version = true; }, "--version",
           {"the tool's and the library's version"}}}},
    };
}

const Option* find_option(const std::vector<Section>& table, const std::string& name) {
    for (const Section& section : table)
        for (const Option& option : section.options)
            for (const std::string& typed : option.names)
                if (typed == name) return &option;
    return nullptr;
}

// The standard streams: read once, written only as a picture of a named format.
void check_standard_streams(const ScanOptions& options) {
    std::size_t from_input = 0;
    for (const std::string& input : options.inputs) from_input += input == kStandardStream ? 1 : 0;
    if (from_input > 1) throw usage("standard input (-) can be read only once");
    if (options.output == kStandardStream) {
        if (options.format == ImageFormat::Unknown) {
            throw usage("-o - writes to standard output and needs --format png or --format jpeg");
        }
        if (!options.binarize.empty()) throw usage("--binarize writes beside an output file, not beside -o -");
    }
    if (options.overlay == kStandardStream) throw usage("--overlay writes a file, not standard output");
}

// Options that contradict each other, or lack what they go with.
void check_combinations(const ScanOptions& options) {
    if (options.inputs.empty()) throw usage("no input picture given");
    if (!options.output.empty() && !options.output_folder.empty()) throw usage("-o and -d exclude each other");
    check_standard_streams(options);
    if (options.inputs.size() > 1 && !options.output.empty()) {
        throw usage("-o names one output; with several inputs give a folder with -d");
    }
    if (options.has_corners && (options.engine >= 0 || options.edges_only)) {
        throw usage("--corners replaces the search; it goes with neither --engine nor --edges-only");
    }
    if (options.engine >= 0 && options.edges_only) throw usage("--engine and --edges-only exclude each other");
    if (options.classic_edges && (options.has_corners || options.engine >= 0)) {
        throw usage("--classic-edges chooses the corrector's edge search; it goes with neither --corners nor --engine");
    }
    if (options.json && options.corners_only) throw usage("--json and --corners-only exclude each other");
    const bool writes = !options.output.empty() || !options.output_folder.empty();
    if (options.always_write && !writes) throw usage("--always-write needs an output (-o or -d)");
    if (!options.binarize.empty() && !writes) throw usage("--binarize needs an output (-o or -d)");
    if (options.format != ImageFormat::Unknown) {
        if (!writes) throw usage("--format needs an output (-o or -d)");
        const ImageFormat named = format_of_name(options.output);
        if (named != ImageFormat::Unknown && named != options.format) {
            throw usage("--format " + std::string(options.format == ImageFormat::Png ? "png" : "jpeg") +
                        " does not match the output's name '" + options.output + "'");
        }
    }
    if ((options.has_window || options.has_k) && options.binarize.empty()) throw usage("--window and --k go with --binarize");
    if (options.has_window && options.binarize == "multiscale") {
        throw usage("--window goes with --binarize sauvola: the multi-scale method chooses its own window");
    }
}

// The help's two columns: options start two places in, what they do at 25.
constexpr std::size_t kHelpColumn = 25;

void write_option_help(std::ostringstream& text, const Option& option) {
    if (option.usage.empty()) return;
    std::string line = "  " + option.usage;
    if (line.size() + 2 > kHelpColumn) {
        text << line << "\n";
        line.clear();
    }
    for (const std::string& words : option.help) {
        line.resize(kHelpColumn, ' ');
        text << line << words << "\n";
        line.clear();
    }
}

const char* const kCornerNames[4] = {"top-left", "top-right", "bottom-right", "bottom-left"};

}  // namespace

std::string corners_problem(const ControlPointCorners& corners) {
    const auto name = [](int i) { return std::string(kCornerNames[i]); };
    for (int i = 0; i < 4; ++i) {
        for (int j = i + 1; j < 4; ++j) {
            if (corners.x[i] == corners.x[j] && corners.y[i] == corners.y[j]) {
                return "the " + name(i) + " and " + name(j) + " corners are the same point";
            }
        }
    }
    // The turn at each corner, the cross product of the sides that meet
    // there; with y down, a positive turn is clockwise as the picture is shown.
    long long turn[4];
    int clockwise = 0;
    for (int i = 0; i < 4; ++i) {
        const int before = (i + 3) % 4, after = (i + 1) % 4;
        const long long ax = corners.x[i] - corners.x[before], ay = corners.y[i] - corners.y[before];
        const long long bx = corners.x[after] - corners.x[i], by = corners.y[after] - corners.y[i];
        turn[i] = ax * by - ay * bx;
        if (turn[i] == 0) return "the " + name(before) + ", " + name(i) + " and " + name(after) + " corners lie on one line";
        if (turn[i] > 0) ++clockwise;
    }
    if (clockwise == 4) return std::string();
    const std::string order = "top-left, top-right, bottom-right, bottom-left";
    if (clockwise == 0) return "they run anticlockwise, which would mirror the page; give them " + order;
    if (clockwise == 2) return "two of its sides cross; give the corners in the order " + order;
    // One corner turns against the other three: it points into the outline.
    for (int i = 0; i < 4; ++i) {
        if ((turn[i] > 0) != (clockwise == 3)) return "the " + name(i) + " corner points inwards";
    }
    return std::string();
}

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
    const std::vector<Section> table = option_table();
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
        const Option* option = find_option(table, name);
        if (option == nullptr) throw usage("unknown option '" + arg + "'");
        if (!option->takes_value) {
            if (has_inline) throw usage(name + " takes no value");
            option->apply(options, std::string());
        } else if (has_inline) {
            option->apply(options, inline_value);
        } else {
            if (i + 1 >= argc) throw usage(name + " needs a value");
            option->apply(options, argv[++i]);
        }
    }
    if (!options.help && !options.version) check_combinations(options);
    return options;
}

std::string help_text() {
    std::ostringstream text;
    text << "Usage: morvane-scan [OPTIONS] INPUT [-o OUTPUT]\n"
            "       morvane-scan [OPTIONS] INPUT... -d OUTDIR\n"
            "\n"
            "Finds the page in a photo (JPEG or PNG), straightens it and writes it as PNG\n"
            "or JPEG, chosen by the output's extension (.png, .jpg, .jpeg) or by --format.\n"
            "Without -o or -d nothing is written: the tool only reports what it found.\n";
    for (const Section& section : option_table()) {
        text << "\n" << section.heading << ":\n";
        for (const Option& option : section.options) write_option_help(text, option);
    }
    text << "\n"
            "Exit codes (with several inputs, the highest of them):\n"
            "  0  page found (or corners given) and written\n"
            "  1  no page found; nothing is written unless --always-write\n"
            "     (with --corners-only: 0, the line says null)\n"
            "  2  usage error, or a file that cannot be read or written\n"
            "\n"
            "Errors are one line naming the file and the problem. Outputs are written to a\n"
            "temporary file and renamed, so no half-written file is ever left.\n";
    return text.str();
}

}  // namespace scan

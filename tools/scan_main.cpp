// morvane-scan: finds the page in photos and writes it straightened. The
// library's first caller; it reaches the library through the flat functions
// of morvane/morvane.h only.
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "image_file.h"
#include "morvane/morvane.h"
#include "scan_error.h"
#include "scan_job.h"
#include "scan_options.h"
#include "scan_report.h"

namespace {

using namespace scan;

// An interrupted run removes the file it was writing, then ends as the
// signal would have ended it.
extern "C" void on_signal(int signal_number) {
    remove_pending_output();
    std::signal(signal_number, SIG_DFL);
    std::raise(signal_number);
}

// The name an input's results are called by; standard input has none of its own.
std::string base_name(const std::string& path) {
    if (path == kStandardStream) return "stdin";
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string in_folder(const std::string& folder, const std::string& name) {
    return folder.back() == '/' ? folder + name : folder + "/" + name;
}

std::string stem(const std::string& name) {
    const std::size_t dot = name.find_last_of('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

// The black-and-white page beside the output: page.jpg gives page-bw.png.
std::string bitonal_name(const std::string& output) {
    const std::size_t slash = output.find_last_of('/');
    const std::size_t start = slash == std::string::npos ? 0 : slash + 1;
    return output.substr(0, start) + stem(output.substr(start)) + "-bw.png";
}

bool same_file(const std::string& a, const std::string& b) {
    struct stat sa {}, sb {};
    return stat(a.c_str(), &sa) == 0 && stat(b.c_str(), &sb) == 0 && sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

// A file name the picture's format can be told from, in a folder that exists.
void check_output_file(const std::string& path, ImageFormat format) {
    if (format == ImageFormat::Unknown && format_of_name(path) == ImageFormat::Unknown) {
        throw ScanError("cannot write '" + path + "': unknown picture format (use .png, .jpg or .jpeg)");
    }
    const std::string problem = folder_problem(folder_of(path));
    if (!problem.empty()) throw ScanError("cannot write '" + path + "': " + problem);
}

// An output folder that exists must be a folder; one that does not is made
// (with any folders above it), as for any tool that writes into a folder.
void make_output_folder(const std::string& folder, bool make) {
    std::error_code error;
    if (!std::filesystem::exists(folder, error) && !error) {
        if (!make) return;
        std::filesystem::create_directories(folder, error);
        if (!error) return;
        throw ScanError("cannot write into '" + folder + "': cannot make the folder: " + error.message());
    }
    const std::string problem = folder_problem(folder);
    if (!problem.empty()) throw ScanError("cannot write into '" + folder + "': " + problem);
}

// A page's name under -d: the input's, or with --format its stem and the
// format's extension. A name without a picture's extension gains one.
std::string page_name(const std::string& name, ImageFormat format) {
    const ImageFormat named = format_of_name(name);
    if (format == ImageFormat::Unknown) return named == ImageFormat::Unknown ? name + ".png" : name;
    if (named == format) return name;
    return (named == ImageFormat::Unknown ? name : stem(name)) + extension_of(format);
}

// Where each input's results go; refuses collisions before any work, and
// makes the output folders once the plan holds.
std::vector<JobPaths> plan(const ScanOptions& options) {
    const bool batch = options.inputs.size() > 1;
    if (!options.output.empty() && options.output != kStandardStream) check_output_file(options.output, options.format);
    if (!options.overlay.empty() && !batch) check_output_file(options.overlay, ImageFormat::Unknown);
    std::vector<std::string> folders;
    if (!options.output_folder.empty()) folders.push_back(options.output_folder);
    if (!options.overlay.empty() && batch) folders.push_back(options.overlay);
    for (const std::string& folder : folders) make_output_folder(folder, false);

    std::vector<JobPaths> jobs;
    std::set<std::string> targets;
    for (const std::string& input : options.inputs) {
        JobPaths paths;
        paths.input = input;
        const std::string name = base_name(input);
        if (!options.output.empty()) paths.output = options.output;
        if (!options.output_folder.empty()) paths.output = in_folder(options.output_folder, page_name(name, options.format));
        if (!options.binarize.empty()) paths.bitonal = bitonal_name(paths.output);
        if (!options.overlay.empty()) {
            paths.overlay = batch ? in_folder(options.overlay, stem(name) + "-overlay.png") : options.overlay;
        }
        for (const std::string* target : {&paths.output, &paths.overlay, &paths.bitonal}) {
            if (target->empty() || *target == kStandardStream) continue;
            if (!targets.insert(*target).second) throw ScanError("two results would both be written to '" + *target + "'");
            if (same_file(*target, input)) throw ScanError("cannot write '" + *target + "': it is the input");
        }
        jobs.push_back(paths);
    }
    if (options.output == kStandardStream && isatty(STDOUT_FILENO)) {
        throw ScanError("will not write a picture to the terminal: redirect standard output, or give -o FILE");
    }
    for (const std::string& folder : folders) make_output_folder(folder, true);
    return jobs;
}

// The tool carries the library's version: "version of library: 16.1.8.9"
// makes it morvane-scan 16.1.8, the build number dropped.
std::string tool_version() {
    const std::string text = morvane_get_version_number();
    const std::size_t start = text.find_last_of(' ') + 1;
    const std::size_t build = text.find_last_of('.');
    return text.substr(start, build == std::string::npos || build < start ? std::string::npos : build - start);
}

void print_version() {
    std::cout << "morvane-scan " << tool_version() << "\n"
              << morvane_get_version_number() << "\n"
              << morvane_get_branch_name() << "\n"
              << morvane_get_sha() << "\n";
}

int run(int argc, char** argv) {
    const ScanOptions options = parse_options(argc, argv);
    if (options.help) {
        std::cout << help_text();
        return kExitPageWritten;
    }
    if (options.version) {
        print_version();
        return kExitPageWritten;
    }
    const std::vector<JobPaths> jobs = plan(options);

    const bool batch = jobs.size() > 1;
    // Standard output may carry the page itself; the report then goes beside it.
    std::ostream& out = options.output == kStandardStream ? std::cerr : std::cout;
    int exit_code = kExitPageWritten;
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        const JobReport report = run_job(jobs[i], options);
        // With --corners-only the line is the answer, a page or null: the
        // scripts that read it take any other exit code than 0 for a failure.
        const bool answered = options.corners_only && report.exit_code == kExitNoPage;
        if (!answered && report.exit_code > exit_code) exit_code = report.exit_code;
        if (report.exit_code == kExitUsageOrFile) {
            out.flush();
            std::cerr << "morvane-scan: " << report.error << "\n";
        }
        if (options.corners_only) {
            out << corners_line(report) << "\n";
        } else if (options.json) {
            out << json_report(report) << "\n";
        } else if (batch) {
            out << progress_line(report, i + 1, jobs.size()) << "\n";
        } else if (report.exit_code != kExitUsageOrFile) {
            out << summary_text(report);
        }
        out.flush();
    }
    return exit_code;
}

}  // namespace

int main(int argc, char** argv) {
    for (const int signal_number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) std::signal(signal_number, on_signal);
    try {
        return run(argc, argv);
    } catch (const ScanError& error) {
        std::cerr << "morvane-scan: " << error.what() << "\n";
        return error.exit_code();
    } catch (const std::bad_alloc&) {
        std::cerr << "morvane-scan: not enough memory\n";
    } catch (const std::exception& error) {
        std::cerr << "morvane-scan: " << error.what() << "\n";
    } catch (...) {
        std::cerr << "morvane-scan: unexpected failure\n";
    }
    return kExitUsageOrFile;
}

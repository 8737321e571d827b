// The failures of morvane-scan: each carries the one line that is printed
// and the exit code the process ends with.
#ifndef MORVANE_TOOLS_SCAN_ERROR_H
#define MORVANE_TOOLS_SCAN_ERROR_H

#include <cctype>
#include <stdexcept>
#include <string>

namespace scan {

// Exit codes, documented in --help.
constexpr int kExitPageWritten = 0;
constexpr int kExitNoPage = 1;
constexpr int kExitUsageOrFile = 2;

// A problem with one image or file, without the file name: the caller knows
// the name and says "cannot read 'x.jpg': <problem>".
class ImageProblem : public std::runtime_error {
public:
    explicit ImageProblem(const std::string& problem) : std::runtime_error(problem) {}
};

// The failures of an allocation, whoever reports them: the library ("could
// not allocate enough memory", "Allocating memory failed!"), libjpeg
// ("Insufficient memory") and libpng ("Out of memory") all name memory, and
// to the user they are one problem, "not enough memory".
inline bool names_memory(const std::string& text) {
    std::string lower = text;
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower.find("memory") != std::string::npos;
}

// A complete one-line message and the exit code it leads to.
class ScanError : public std::runtime_error {
public:
    ScanError(const std::string& message, int exit_code = kExitUsageOrFile)
        : std::runtime_error(message), exit_code_(exit_code) {}
    int exit_code() const { return exit_code_; }

private:
    int exit_code_;
};

}  // namespace scan

#endif

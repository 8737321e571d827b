// Runs morvane-scan as a process in a temporary folder, and writes the
// pictures it is run on.
#ifndef MORVANE_TESTS_TOOLS_SCAN_HARNESS_H
#define MORVANE_TESTS_TOOLS_SCAN_HARNESS_H

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "raster.h"

namespace scan_test {

struct RunResult {
    int exit_code = -1;
    std::string out;
    std::string err;
    std::vector<std::string> out_lines() const;
    std::vector<std::string> err_lines() const;
};

// A fresh folder for one test, removed with everything in it afterwards.
// The tool runs with it as the working folder; its output and error streams
// are kept outside it, so that the folder holds only the test's files and
// what the tool wrote.
class ScanFolder {
public:
    ScanFolder();
    ~ScanFolder();
    ScanFolder(const ScanFolder&) = delete;
    ScanFolder& operator=(const ScanFolder&) = delete;

    std::string path(const std::string& name) const { return work_ + "/" + name; }
    // address_space: bytes of address space the process may map, 0 for no limit.
    RunResult run(const std::vector<std::string>& args, std::size_t address_space = 0) const;
    // The same with `piped` written into the tool's standard input through a pipe.
    RunResult run_piped(const std::vector<std::string>& args, const std::string& piped,
                        std::size_t address_space = 0) const;
    // Every file name under the folder, sub-folders included ("out/a.png").
    std::set<std::string> files() const;

    void write_bytes(const std::string& name, const std::string& bytes) const;
    std::string read_bytes(const std::string& name) const;

private:
    std::string root_;
    std::string work_;
};

// A page on a dark table: a light rectangle with dark text bars, corners at
// (left, top) and (right, bottom) inclusive.
scan::Raster synthetic_page(int width, int height, int channels, int left, int top, int right, int bottom);
// One flat gray: nothing in it looks like a page.
scan::Raster flat_image(int width, int height, unsigned char value);

// Written with the raster's density, if it has one.
void save_png(const std::string& path, const scan::Raster& image);
void save_jpeg(const std::string& path, const scan::Raster& image);
// A JPEG whose EXIF block holds the orientation tag alone, as a phone writes
// it beside pixels stored as the sensor gave them.
void save_jpeg_with_orientation(const std::string& path, const scan::Raster& stored, int orientation);
scan::Raster load(const std::string& path);
bool same_pixels(const scan::Raster& a, const scan::Raster& b);

// A PNG written from raw rows of a kind without a palette (bit depth and
// colour type given by the caller).
struct RawPng {
    int width = 0, height = 0, bit_depth = 8, colour_type = 0;
    std::vector<std::vector<unsigned char>> rows;  // bytes as stored in the file
};
void save_raw_png(const std::string& path, const RawPng& png);

}  // namespace scan_test

#endif

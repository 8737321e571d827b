// Runs morvane-scan as a process, and writes the pictures it is run on.
#include "scan_harness.h"

#include <csetjmp>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <png.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "image_file.h"
#include "jpeg_codec.h"
#include "png_codec.h"

namespace scan_test {
namespace {

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    std::string line;
    while (std::getline(stream, line)) lines.push_back(line);
    return lines;
}

std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

struct FileCloser {
    void operator()(std::FILE* f) const {
        if (f) std::fclose(f);
    }
};

}  // namespace

std::vector<std::string> RunResult::out_lines() const { return lines_of(out); }
std::vector<std::string> RunResult::err_lines() const { return lines_of(err); }

ScanFolder::ScanFolder() {
    char pattern[] = "/tmp/morvane-scan-test.XXXXXX";
    if (!mkdtemp(pattern)) throw std::runtime_error("cannot make a temporary folder");
    root_ = pattern;
    work_ = root_ + "/work";
    std::filesystem::create_directory(work_);
}

ScanFolder::~ScanFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

RunResult ScanFolder::run(const std::vector<std::string>& args, std::size_t address_space) const {
    return run_piped(args, std::string(), address_space);
}

RunResult ScanFolder::run_piped(const std::vector<std::string>& args, const std::string& piped,
                                std::size_t address_space) const {
    const std::string out_path = root_ + "/stdout";
    const std::string err_path = root_ + "/stderr";
    std::vector<std::string> argv_text = {MORVANE_SCAN_PROGRAM};
    argv_text.insert(argv_text.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& arg : argv_text) argv.push_back(arg.data());
    argv.push_back(nullptr);

    int pipe_ends[2];
    if (pipe(pipe_ends) != 0) return RunResult();
    const pid_t child = fork();
    if (child == 0) {
        const int out = open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const int err = open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (out < 0 || err < 0 || dup2(pipe_ends[0], 0) < 0 || dup2(out, 1) < 0 || dup2(err, 2) < 0 ||
            chdir(work_.c_str()) != 0) {
            _exit(127);
        }
        close(pipe_ends[1]);
        const rlimit limit = {address_space, address_space};
        if (address_space > 0 && setrlimit(RLIMIT_AS, &limit) != 0) _exit(127);
        execv(argv[0], argv.data());
        _exit(127);
    }
    close(pipe_ends[0]);
    // The tool may stop reading early (a picture it refuses): the rest is dropped.
    const auto old_handler = std::signal(SIGPIPE, SIG_IGN);
    for (std::size_t sent = 0; sent < piped.size();) {
        const ssize_t done = write(pipe_ends[1], piped.data() + sent, piped.size() - sent);
        if (done <= 0) break;
        sent += static_cast<std::size_t>(done);
    }
    close(pipe_ends[1]);
    std::signal(SIGPIPE, old_handler);
    RunResult result;
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) return result;
    result.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = slurp(out_path);
    result.err = slurp(err_path);
    return result;
}

std::set<std::string> ScanFolder::files() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(work_)) {
        names.insert(std::filesystem::relative(entry.path(), work_).string());
    }
    return names;
}

void ScanFolder::write_bytes(const std::string& name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
}

std::string ScanFolder::read_bytes(const std::string& name) const { return slurp(path(name)); }

scan::Raster synthetic_page(int width, int height, int channels, int left, int top, int right, int bottom) {
    scan::Raster image = scan::make_raster(width, height, channels);
    for (int y = 0; y < height; ++y) {
        unsigned char* row = image.row(y);
        for (int x = 0; x < width; ++x) {
            const bool page = x >= left && x <= right && y >= top && y <= bottom;
            // Text: bars of 3 rows every 8 rows, inset from the page's border.
            const bool text = page && x > left + 8 && x < right - 8 && y > top + 8 && y < bottom - 8 && (y - top) % 8 < 3;
            const unsigned char rgb[3] = {static_cast<unsigned char>(page ? (text ? 30 : 235) : 40),
                                          static_cast<unsigned char>(page ? (text ? 30 : 230) : 70),
                                          static_cast<unsigned char>(page ? (text ? 40 : 220) : 55)};
            for (int c = 0; c < channels; ++c) row[x * channels + c] = channels == 3 ? rgb[c] : rgb[1];
        }
    }
    return image;
}

scan::Raster flat_image(int width, int height, unsigned char value) {
    scan::Raster image = scan::make_raster(width, height, 1);
    std::memset(image.data.get(), value, image.byte_count());
    return image;
}

void save_png(const std::string& path, const scan::Raster& image) {
    std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "wb"));
    scan::write_png(file.get(), image, 6);
}

void save_jpeg(const std::string& path, const scan::Raster& image) {
    std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "wb"));
    scan::write_jpeg(file.get(), image, 95);
}

void save_jpeg_with_orientation(const std::string& path, const scan::Raster& stored, int orientation) {
    save_jpeg(path, stored);
    std::string bytes = slurp(path);
    // APP1 after the JFIF marker: "Exif\0\0", a big-endian TIFF header, and
    // one directory of one entry, Orientation (0x0112), a SHORT.
    const std::string exif = std::string("Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01", 24) +
                             static_cast<char>(0) + static_cast<char>(orientation) + std::string(6, '\0');
    const std::size_t length = exif.size() + 2;
    const std::string marker = std::string("\xff\xe1") + static_cast<char>(length >> 8) + static_cast<char>(length & 0xff);
    const std::size_t after_jfif = 4 + (static_cast<unsigned char>(bytes[4]) << 8 | static_cast<unsigned char>(bytes[5]));
    bytes.insert(after_jfif, marker + exif);
    std::ofstream(path, std::ios::binary) << bytes;
}

scan::Raster load(const std::string& path) { return scan::read_image_file(path).raster; }

bool same_pixels(const scan::Raster& a, const scan::Raster& b) {
    return a.width == b.width && a.height == b.height && a.channels == b.channels &&
           std::memcmp(a.data.get(), b.data.get(), a.byte_count()) == 0;
}

namespace {

// Only plain locals between setjmp and the end: the jump skips no destructor.
bool write_raw(std::FILE* file, const RawPng& raw) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(raw.width), static_cast<png_uint_32>(raw.height), raw.bit_depth,
                 raw.colour_type, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE);
    png_write_info(png, info);
    for (const std::vector<unsigned char>& row : raw.rows) png_write_row(png, row.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

}  // namespace

void save_raw_png(const std::string& path, const RawPng& png) {
    std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "wb"));
    if (!file || !write_raw(file.get(), png)) throw std::runtime_error("cannot write " + path);
}

}  // namespace scan_test

// Image files: reading whole, detection by content, EXIF orientation and
// density, and writing through a temporary file in the target's folder that
// is renamed into place, or to standard output from memory.
#include "image_file.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "exif_reader.h"
#include "jpeg_codec.h"
#include "orientation.h"
#include "png_codec.h"
#include "scan_error.h"

namespace scan {
namespace {

// The temporary file being written, for the signal handler: a fixed buffer,
// because a handler may not allocate.
char pending_path[4096];
volatile std::sig_atomic_t pending = 0;

std::string lower(std::string text) {
    for (char& c : text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return text;
}

bool ends_with(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

struct FileCloser {
    void operator()(std::FILE* f) const {
        if (f) std::fclose(f);
    }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// A temporary file beside the target; removed unless committed.
class PendingFile {
public:
    explicit PendingFile(const std::string& target) : target_(target) {
        const std::size_t slash = target.find_last_of('/');
        const std::size_t name_start = slash == std::string::npos ? 0 : slash + 1;
        path_ = target.substr(0, name_start) + "." + target.substr(name_start) + ".XXXXXX";
        if (path_.size() >= sizeof(pending_path)) throw ImageProblem("the path is too long");
        std::vector<char> buffer(path_.begin(), path_.end());
        buffer.push_back('\0');
        const int fd = mkstemp(buffer.data());
        if (fd < 0) throw ImageProblem(std::strerror(errno));
        path_.assign(buffer.data());
        std::memcpy(pending_path, path_.c_str(), path_.size() + 1);
        pending = 1;
        file_ = fdopen(fd, "wb");
        if (!file_) {
            const int error = errno;
            close(fd);
            discard();
            throw ImageProblem(std::strerror(error));
        }
    }
    ~PendingFile() {
        if (!committed_) discard();
    }
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    std::FILE* file() { return file_; }

    void commit() {
        // mkstemp makes the file private; the picture gets the usual rights.
        const mode_t mask = umask(0);
        umask(mask);
        fchmod(fileno(file_), 0666 & ~mask);
        const bool flushed = std::fflush(file_) == 0 && !std::ferror(file_);
        const int error = errno;
        const bool closed = std::fclose(file_) == 0;
        file_ = nullptr;
        if (!flushed || !closed) throw ImageProblem(std::strerror(flushed ? errno : error));
        if (std::rename(path_.c_str(), target_.c_str()) != 0) throw ImageProblem(std::strerror(errno));
        pending = 0;
        committed_ = true;
    }

private:
    void discard() {
        pending = 0;
        if (file_) std::fclose(file_);
        file_ = nullptr;
        unlink(path_.c_str());
    }

    std::string target_;
    std::string path_;
    std::FILE* file_ = nullptr;
    bool committed_ = false;
};

// Compressed pictures beyond this are refused unread: no picture the
// library can take in is that large, and a stream without end stops here.
constexpr std::size_t kLargestFile = std::size_t{1} << 31;

enum class Signature { None, Png, Jpeg };

Signature signature_of(const std::string& bytes) {
    static const unsigned char png[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    if (bytes.size() >= 8 && std::memcmp(bytes.data(), png, 8) == 0) return Signature::Png;
    if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xff && static_cast<unsigned char>(bytes[1]) == 0xd8) {
        return Signature::Jpeg;
    }
    return Signature::None;
}

// Everything from `fd` to its end, or a problem in words. Reading stops
// after the first bytes when they are no picture's.
std::string read_all(int fd, std::string& bytes) {
    bytes.clear();
    struct stat info {};
    if (fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && static_cast<std::size_t>(info.st_size) < kLargestFile) {
        bytes.reserve(static_cast<std::size_t>(info.st_size));
    }
    std::vector<char> chunk(1 << 16);
    bool checked = false;
    for (;;) {
        const ssize_t got = read(fd, chunk.data(), chunk.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::strerror(errno);
        if (got == 0) break;
        if (bytes.size() + static_cast<std::size_t>(got) > kLargestFile) return "file too large (more than 2 GiB)";
        bytes.append(chunk.data(), static_cast<std::size_t>(got));
        if (!checked && bytes.size() >= 8) {
            if (signature_of(bytes) == Signature::None) return "not a JPEG or PNG file";
            checked = true;
        }
    }
    if (bytes.empty()) return "empty file";
    if (signature_of(bytes) == Signature::None) return "not a JPEG or PNG file";
    return std::string();
}

// Pixels by the format, density from the format's header or else from
// EXIF, and the orientation applied when asked.
DecodedImage decode(const std::string& bytes, bool apply_orientation) {
    const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes.data());
    std::string exif;
    DecodedImage image;
    image.raster = signature_of(bytes) == Signature::Png ? read_png(data, bytes.size(), exif)
                                                         : read_jpeg(data, bytes.size(), exif);
    if (exif.empty()) return image;
    const ExifFacts facts = read_exif(exif);
    if (!image.raster.has_density()) {
        image.raster.x_dpi = facts.x_dpi;
        image.raster.y_dpi = facts.y_dpi;
    }
    image.orientation = facts.orientation;
    image.orientation_applied = apply_orientation && facts.orientation != 0;
    if (image.orientation_applied && facts.orientation != 1) {
        image.raster = turn_upright(image.raster, facts.orientation);
    }
    return image;
}

// `fd` read and decoded; `name` is how messages call the source.
DecodedImage read_and_decode(int fd, const std::string& name, bool apply_orientation) {
    const auto fail = [&](const std::string& problem) { return ScanError("cannot read " + name + ": " + problem); };
    try {
        std::string bytes;
        const std::string problem = read_all(fd, bytes);
        if (!problem.empty()) throw fail(problem);
        return decode(bytes, apply_orientation);
    } catch (const ImageProblem& problem) {
        throw fail(problem.what());
    } catch (const std::bad_alloc&) {
        throw fail("not enough memory");
    }
}

void encode(std::FILE* file, ImageFormat format, const Raster& image, const WriteSettings& settings) {
    if (format == ImageFormat::Png) {
        write_png(file, image, settings.png_level);
    } else {
        write_jpeg(file, image, settings.jpeg_quality);
    }
}

// All of `size` bytes to `fd`, or the problem in words.
std::string write_all(int fd, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t done = write(fd, data, size);
        if (done < 0 && errno == EINTR) continue;
        if (done < 0) return std::strerror(errno);
        data += done;
        size -= static_cast<std::size_t>(done);
    }
    return std::string();
}

}  // namespace

ImageFormat format_of_name(const std::string& path) {
    const std::string name = lower(path);
    if (ends_with(name, ".png")) return ImageFormat::Png;
    if (ends_with(name, ".jpg") || ends_with(name, ".jpeg")) return ImageFormat::Jpeg;
    return ImageFormat::Unknown;
}

const char* extension_of(ImageFormat format) { return format == ImageFormat::Jpeg ? ".jpg" : ".png"; }

std::string folder_of(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}

std::string folder_problem(const std::string& folder) {
    struct stat info {};
    if (stat(folder.c_str(), &info) != 0) {
        return errno == ENOENT ? "folder '" + folder + "' does not exist" : "folder '" + folder + "': " + std::strerror(errno);
    }
    if (!S_ISDIR(info.st_mode)) return "'" + folder + "' is not a folder";
    return std::string();
}

DecodedImage read_image_file(const std::string& path, bool apply_orientation) {
    const std::string name = "'" + path + "'";
    const auto fail = [&](const std::string& problem) { return ScanError("cannot read " + name + ": " + problem); };
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) {
        throw fail(errno == ENOENT ? "no such file" : std::strerror(errno));
    }
    if (S_ISDIR(info.st_mode)) throw fail("is a folder, not an image file");
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) throw fail(std::strerror(errno));
    struct Closer {
        int fd;
        ~Closer() { close(fd); }
    } closer{fd};
    return read_and_decode(fd, name, apply_orientation);
}

DecodedImage read_standard_input(bool apply_orientation) {
    if (isatty(STDIN_FILENO)) {
        throw ScanError("cannot read standard input: it is a terminal (pipe a picture in, or name a file)");
    }
    return read_and_decode(STDIN_FILENO, "standard input", apply_orientation);
}

void write_image_file(const std::string& path, const Raster& image, const WriteSettings& settings) {
    const auto fail = [&](const std::string& problem) { return ScanError("cannot write '" + path + "': " + problem); };
    const ImageFormat format = settings.format != ImageFormat::Unknown ? settings.format : format_of_name(path);
    if (format == ImageFormat::Unknown) throw fail("unknown picture format (use .png, .jpg or .jpeg)");
    const std::string problem = folder_problem(folder_of(path));
    if (!problem.empty()) throw fail(problem);
    try {
        PendingFile pending_file(path);
        encode(pending_file.file(), format, image, settings);
        pending_file.commit();
    } catch (const ImageProblem& problem_text) {
        throw fail(problem_text.what());
    } catch (const std::bad_alloc&) {
        throw fail("not enough memory");
    }
}

void write_standard_output(const Raster& image, const WriteSettings& settings) {
    const auto fail = [](const std::string& problem) { return ScanError("cannot write standard output: " + problem); };
    char* buffer = nullptr;
    std::size_t size = 0;
    std::FILE* memory = open_memstream(&buffer, &size);
    if (memory == nullptr) throw fail("not enough memory");
    std::string problem;
    try {
        encode(memory, settings.format, image, settings);
    } catch (const ImageProblem& error) {
        problem = error.what();
    } catch (const std::bad_alloc&) {
        problem = "not enough memory";
    }
    const bool closed = std::fclose(memory) == 0;
    const std::unique_ptr<char, void (*)(void*)> encoded(buffer, std::free);
    if (problem.empty() && !closed) problem = "not enough memory";
    if (problem.empty()) problem = write_all(STDOUT_FILENO, buffer, size);
    if (!problem.empty()) throw fail(problem);
}

void remove_pending_output() {
    if (pending) unlink(pending_path);
}

}  // namespace scan

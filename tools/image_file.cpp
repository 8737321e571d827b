// Image files: detection by content, reading, and writing through a
// temporary file in the target's folder that is renamed into place.
#include "image_file.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "jpeg_codec.h"
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

}  // namespace

ImageFormat format_of_name(const std::string& path) {
    const std::string name = lower(path);
    if (ends_with(name, ".png")) return ImageFormat::Png;
    if (ends_with(name, ".jpg") || ends_with(name, ".jpeg")) return ImageFormat::Jpeg;
    return ImageFormat::Unknown;
}

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

Raster read_image_file(const std::string& path) {
    const auto fail = [&](const std::string& problem) { return ScanError("cannot read '" + path + "': " + problem); };
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) {
        throw fail(errno == ENOENT ? "no such file" : std::strerror(errno));
    }
    if (S_ISDIR(info.st_mode)) throw fail("is a folder, not an image file");
    File file(std::fopen(path.c_str(), "rb"));
    if (!file) throw fail(std::strerror(errno));
    unsigned char head[8] = {0};
    const std::size_t got = std::fread(head, 1, sizeof head, file.get());
    if (got == 0) throw fail(std::ferror(file.get()) ? std::strerror(errno) : "empty file");
    std::rewind(file.get());
    static const unsigned char png_signature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    try {
        if (got == 8 && std::memcmp(head, png_signature, 8) == 0) return read_png(file.get());
        if (got >= 2 && head[0] == 0xff && head[1] == 0xd8) return read_jpeg(file.get());
    } catch (const ImageProblem& problem) {
        throw fail(problem.what());
    } catch (const std::bad_alloc&) {
        throw fail("not enough memory");
    }
    throw fail("not a JPEG or PNG file");
}

void write_image_file(const std::string& path, const Raster& image, const WriteSettings& settings) {
    const auto fail = [&](const std::string& problem) { return ScanError("cannot write '" + path + "': " + problem); };
    const ImageFormat format = format_of_name(path);
    if (format == ImageFormat::Unknown) throw fail("unknown picture format (use .png, .jpg or .jpeg)");
    const std::string problem = folder_problem(folder_of(path));
    if (!problem.empty()) throw fail(problem);
    try {
        PendingFile pending_file(path);
        if (format == ImageFormat::Png) {
            write_png(pending_file.file(), image, settings.png_level);
        } else {
            write_jpeg(pending_file.file(), image, settings.jpeg_quality);
        }
        pending_file.commit();
    } catch (const ImageProblem& problem_text) {
        throw fail(problem_text.what());
    } catch (const std::bad_alloc&) {
        throw fail("not enough memory");
    }
}

void remove_pending_output() {
    if (pending) unlink(pending_path);
}

}  // namespace scan

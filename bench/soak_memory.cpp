// A memory soak, not a timed benchmark: every exported family runs again and
// again on a rotation of page photos, as a document pipeline runs it for days,
// and the resident set size is printed every so many runs. After the warm-up
// it must stay flat; a leak or a cache without bound shows as a rising curve.
//
//   soak_memory [--runs N] [--every N] [--warm-up N] [--limit-mb X] [PHOTO...]
//
// Each family gets N runs (default 2000), a line every --every runs (100);
// growth is measured from the end of the warm-up (200 runs) and must stay
// within --limit-mb (2), else the exit code is 1. PHOTO: JPEG or PNG files;
// without them the rotation is four page photos made in code, from 12
// megapixels down, gray and colour.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "api/exported_families.h"
#include "image_file.h"

namespace {

struct Settings {
    int runs = 2000;
    int every = 100;
    int warm_up = 200;
    double limit_mb = 2.0;
    std::vector<std::string> photos;
};

Settings parse(int argc, char** argv) {
    Settings settings;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const bool has_value = i + 1 < argc;
        if (arg == "--runs" && has_value) {
            settings.runs = std::atoi(argv[++i]);
        } else if (arg == "--every" && has_value) {
            settings.every = std::max(1, std::atoi(argv[++i]));
        } else if (arg == "--warm-up" && has_value) {
            settings.warm_up = std::atoi(argv[++i]);
        } else if (arg == "--limit-mb" && has_value) {
            settings.limit_mb = std::atof(argv[++i]);
        } else if (!arg.empty() && arg[0] == '-') {
            throw std::runtime_error("unknown option '" + arg + "'");
        } else {
            settings.photos.push_back(arg);
        }
    }
    return settings;
}

double resident_mb() {
    long pages = 0, resident = 0;
    std::FILE* statm = std::fopen("/proc/self/statm", "r");
    if (statm == nullptr) return 0.0;
    if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(statm);
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

std::vector<families::PhotographedPage> load_photos(const Settings& settings) {
    std::vector<families::PhotographedPage> photos;
    if (settings.photos.empty()) {
        photos.emplace_back(4000, 3000, 3);
        photos.emplace_back(2250, 3000, 1);
        photos.emplace_back(3000, 2250, 3);
        photos.emplace_back(1500, 1125, 1);
    }
    for (const std::string& path : settings.photos) {
        const scan::Raster raster = scan::read_image_file(path).raster;
        const unsigned char* data = raster.data.get();
        photos.emplace_back(raster.width, raster.height, raster.channels,
                            std::vector<unsigned char>(data, data + raster.byte_count()));
    }
    return photos;
}

// Runs one family settings.runs times over the photos in turn; true when
// the resident set stayed within the limit after the warm-up.
bool soak(const families::Family& family, const std::vector<families::PhotographedPage>& photos,
          const Settings& settings) {
    double after_warm_up = -1.0, highest = 0.0;
    for (int run = 1; run <= settings.runs; ++run) {
        families::answer_of(family, photos[static_cast<size_t>(run - 1) % photos.size()]);
        if (run % settings.every != 0 && run != settings.warm_up) continue;
        const double resident = resident_mb();
        if (run == settings.warm_up) after_warm_up = resident;
        if (run > settings.warm_up) highest = std::max(highest, resident);
        if (run % settings.every == 0) std::printf("%-16s %6d %9.1f\n", family.name, run, resident);
        std::fflush(stdout);
    }
    if (after_warm_up < 0.0 || highest == 0.0) return true;
    const double growth = highest - after_warm_up;
    const bool flat = growth <= settings.limit_mb;
    std::printf("%-16s %.1f MB after %d runs, at most %.1f MB after that: %+.1f MB, %s\n", family.name,
                after_warm_up, settings.warm_up, highest, growth, flat ? "flat" : "GROWS");
    return flat;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const Settings settings = parse(argc, argv);
        const std::vector<families::PhotographedPage> photos = load_photos(settings);
        std::printf("%zu photos; %d runs a family; resident set before any run %.1f MB\n", photos.size(),
                    settings.runs, resident_mb());
        std::printf("%-16s %6s %9s\n", "family", "runs", "RSS MB");
        bool flat = true;
        for (const families::Family& family : families::all()) flat = soak(family, photos, settings) && flat;
        return flat ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "soak_memory: %s\n", error.what());
    } catch (const char* text) {
        std::fprintf(stderr, "soak_memory: the library failed: %s\n", text);
    } catch (const std::string& text) {
        std::fprintf(stderr, "soak_memory: the library failed: %s\n", text.c_str());
    }
    return 2;
}

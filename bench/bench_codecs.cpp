// The tool's codecs on the 12-megapixel photo of sample_photo.h: JPEG and PNG
// read from memory and written to a temporary file, with the tool's default
// settings (JPEG quality 92, PNG zlib level 1). `--save=DIR` writes the photo
// as DIR/photo.ppm, photo.jpg and photo.png and stops, so that the codec
// libraries' own command-line tools can be timed on the same pixels.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "jpeg_codec.h"
#include "png_codec.h"
#include "sample_photo.h"

namespace {

scan::Raster photo_raster() {
    scan::Raster raster = scan::make_raster(bench_sample::kWidth, bench_sample::kHeight, 3, false);
    std::memcpy(raster.data.get(), bench_sample::photo().rgb.data(), raster.byte_count());
    return raster;
}

const scan::Raster& raster() {
    static const scan::Raster photo = photo_raster();
    return photo;
}

template <typename Write>
std::vector<unsigned char> encoded(Write write) {
    std::FILE* file = std::tmpfile();
    write(file);
    std::vector<unsigned char> bytes(static_cast<size_t>(std::ftell(file)));
    std::rewind(file);
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) bytes.clear();
    std::fclose(file);
    return bytes;
}

const std::vector<unsigned char>& jpeg() {
    static const std::vector<unsigned char> bytes = encoded([](std::FILE* f) { scan::write_jpeg(f, raster(), 92); });
    return bytes;
}
const std::vector<unsigned char>& png() {
    static const std::vector<unsigned char> bytes = encoded([](std::FILE* f) { scan::write_png(f, raster(), 1); });
    return bytes;
}

void BM_ReadJpeg(benchmark::State& state) {
    std::string exif;
    for (auto _ : state) benchmark::DoNotOptimize(scan::read_jpeg(jpeg().data(), jpeg().size(), exif).data);
    state.counters["MB"] = static_cast<double>(jpeg().size()) / 1e6;
}
void BM_ReadPng(benchmark::State& state) {
    std::string exif;
    for (auto _ : state) benchmark::DoNotOptimize(scan::read_png(png().data(), png().size(), exif).data);
    state.counters["MB"] = static_cast<double>(png().size()) / 1e6;
}
void BM_WriteJpeg(benchmark::State& state) {
    std::FILE* file = std::tmpfile();
    for (auto _ : state) {
        std::rewind(file);
        scan::write_jpeg(file, raster(), 92);
    }
    std::fclose(file);
}
void BM_WritePng(benchmark::State& state) {
    std::FILE* file = std::tmpfile();
    for (auto _ : state) {
        std::rewind(file);
        scan::write_png(file, raster(), 1);
    }
    std::fclose(file);
}
BENCHMARK(BM_ReadJpeg)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadPng)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteJpeg)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WritePng)->Unit(benchmark::kMillisecond);

bool save(const std::string& folder) {
    const auto write = [&folder](const char* name, const std::vector<unsigned char>& bytes) {
        std::FILE* file = std::fopen((folder + "/" + name).c_str(), "wb");
        if (file == nullptr) return false;
        const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
        return std::fclose(file) == 0 && written;
    };
    const std::string header = "P6\n" + std::to_string(bench_sample::kWidth) + " " +
                               std::to_string(bench_sample::kHeight) + "\n255\n";
    std::vector<unsigned char> ppm(header.begin(), header.end());
    ppm.insert(ppm.end(), bench_sample::photo().rgb.begin(), bench_sample::photo().rgb.end());
    return write("photo.ppm", ppm) && write("photo.jpg", jpeg()) && write("photo.png", png());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::strncmp(argv[1], "--save=", 7) == 0) return save(argv[1] + 7) ? 0 : 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

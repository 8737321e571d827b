// morvane-scan on every kind of input picture: the ones it converts and
// rectifies, and the ones it refuses with one line and exit code 2.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <png.h>
#include <zlib.h>

#include "scan_harness.h"

namespace scan_test {
namespace {

// The synthetic page and the corners of its light rectangle: the output is
// the mean side lengths plus one, 200 x 130.
constexpr int kWidth = 240, kHeight = 180;
const char* const kCorners = "20,30,219,30,219,159,20,159";
constexpr int kPageWidth = 200, kPageHeight = 130;

// The density of the input goes to the page in either format (JFIF in dots
// per inch, pHYs in dots per metre); without one nothing is made up.
TEST(ScanInputs, RectifiesPngAndJpegWithGivenCornersInBothOutputFormatsKeepingTheDensity) {
    ScanFolder folder;
    scan::Raster photo = synthetic_page(kWidth, kHeight, 3, 20, 30, 219, 159);
    photo.x_dpi = photo.y_dpi = 300;
    save_png(folder.path("page.png"), photo);
    save_jpeg(folder.path("page.jpg"), photo);
    save_png(folder.path("gray.png"), synthetic_page(kWidth, kHeight, 1, 20, 30, 219, 159));
    for (const char* input : {"page.png", "page.jpg", "gray.png"}) {
        for (const char* output : {"out.png", "out.jpg", "OUT.JPEG"}) {
            SCOPED_TRACE(std::string(input) + " -> " + output);
            const bool gray = std::string(input) == "gray.png";
            const RunResult run = folder.run({input, "--corners", kCorners, "-o", output});
            EXPECT_EQ(run.exit_code, 0) << run.err;
            EXPECT_EQ(run.err, "");
            EXPECT_NE(run.out.find(gray ? "200 x 130" : "200 x 130, 300 dpi (the input's)"), std::string::npos) << run.out;
            const scan::Raster page = load(folder.path(output));
            EXPECT_EQ(page.width, kPageWidth);
            EXPECT_EQ(page.height, kPageHeight);
            EXPECT_EQ(page.channels, gray ? 1 : 3);
            EXPECT_EQ(page.x_dpi, gray ? 0 : 300);
            EXPECT_EQ(page.y_dpi, gray ? 0 : 300);
        }
    }
    EXPECT_EQ(folder.read_bytes("out.png").find("pHYs"), std::string::npos);
}

// Gray-alpha and RGBA pictures are laid over white paper, each sample
// rounded to v a / 255 + (255 - a): the page rectified from one equals, byte
// for byte, the page rectified from the plain PNG of those pixels. The
// 16-bit samples are v * 257, which scale back to v exactly.
TEST(ScanInputs, PngsWithAlphaAreLaidOverWhitePaper) {
    constexpr int w = 40, h = 30;
    for (const auto& [bit_depth, colours] : {std::pair{8, 3}, std::pair{16, 1}}) {
        SCOPED_TRACE(bit_depth);
        ScanFolder folder;
        RawPng raw;
        raw.width = w, raw.height = h, raw.bit_depth = bit_depth;
        raw.colour_type = colours == 3 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_GRAY_ALPHA;
        scan::Raster expected = scan::make_raster(w, h, colours);
        for (int y = 0; y < h; ++y) {
            std::vector<unsigned char> row;
            for (int x = 0; x < w; ++x) {
                const unsigned alpha = x == 0 ? 0 : x == 1 ? 255 : (37 * x + 11 * y) % 256;
                for (int s = 0; s <= colours; ++s) {
                    const unsigned v = s == colours ? alpha : (7 * x + 3 * y + 50 * s) % 256;
                    row.insert(row.end(), static_cast<std::size_t>(bit_depth / 8), static_cast<unsigned char>(v));
                    if (s < colours)
                        expected.row(y)[x * colours + s] =
                            static_cast<unsigned char>((v * alpha + 255 * (255 - alpha) + 127) / 255);
                }
            }
            raw.rows.push_back(row);
        }
        save_raw_png(folder.path("in.png"), raw);
        save_png(folder.path("expected.png"), expected);
        for (const char* name : {"in", "expected"}) {
            const RunResult run = folder.run({std::string(name) + ".png", "--corners", "2,1,37,3,38,28,1,27", "-o",
                                              std::string(name) + "-page.png"});
            ASSERT_EQ(run.exit_code, 0) << run.err;
        }
        EXPECT_TRUE(same_pixels(load(folder.path("in-page.png")), load(folder.path("expected-page.png"))));
    }
}

// A PNG whose header asks for more pixels than a library buffer can hold.
std::string huge_png_header() {
    std::string bytes("\x89PNG\r\n\x1a\n", 8);
    const auto u32 = [](unsigned v) {
        return std::string{static_cast<char>(v >> 24), static_cast<char>(v >> 16), static_cast<char>(v >> 8),
                           static_cast<char>(v)};
    };
    std::string chunk = "IHDR" + u32(70000) + u32(70000) + std::string("\x08\x02\x00\x00\x00", 5);
    const unsigned crc = static_cast<unsigned>(
        crc32(0, reinterpret_cast<const Bytef*>(chunk.data()), static_cast<uInt>(chunk.size())));
    bytes += u32(13) + chunk + u32(crc);
    return bytes;
}

// A small JPEG whose frame header is changed to say 60000 x 60000.
std::string huge_jpeg(const ScanFolder& folder) {
    save_jpeg(folder.path("small.jpg"), synthetic_page(16, 16, 3, 2, 2, 13, 13));
    std::string bytes = folder.read_bytes("small.jpg");
    const std::size_t frame = bytes.find("\xff\xc0");
    bytes[frame + 5] = bytes[frame + 7] = static_cast<char>(0xea);
    bytes[frame + 6] = bytes[frame + 8] = static_cast<char>(0x60);
    return bytes;
}

TEST(ScanInputs, BadInputsAndOversizedPagesGiveOneLineNamingTheFileAndExitTwo) {
    ScanFolder folder;
    save_png(folder.path("page.png"), synthetic_page(kWidth, kHeight, 3, 20, 30, 219, 159));
    save_jpeg(folder.path("page.jpg"), synthetic_page(kWidth, kHeight, 3, 20, 30, 219, 159));
    const std::string png = folder.read_bytes("page.png");
    const std::string jpeg = folder.read_bytes("page.jpg");
    folder.write_bytes("empty.jpg", "");
    folder.write_bytes("notes.png", "these are not pixels\n");
    folder.write_bytes("cut.jpg", jpeg.substr(0, jpeg.size() / 2));
    folder.write_bytes("cut.png", png.substr(0, png.size() / 2));
    folder.write_bytes("header_only.jpg", jpeg.substr(0, 2));
    folder.write_bytes("huge.png", huge_png_header());
    folder.write_bytes("huge.jpg", huge_jpeg(folder));
    std::filesystem::create_directory(folder.path("photos.jpg"));
    folder.write_bytes("keep.png", "an earlier result");

    struct Case {
        const char* input;
        const char* problem;
        const char* corners;
    };
    const Case cases[] = {
        {"missing.jpg", "cannot read 'missing.jpg': no such file", kCorners},
        {"photos.jpg", "cannot read 'photos.jpg': is a folder, not an image file", kCorners},
        {"empty.jpg", "cannot read 'empty.jpg': empty file", kCorners},
        {"notes.png", "cannot read 'notes.png': not a JPEG or PNG file", kCorners},
        {"cut.jpg", "cannot read 'cut.jpg': truncated JPEG file", kCorners},
        {"header_only.jpg", "cannot read 'header_only.jpg': truncated JPEG file", kCorners},
        {"cut.png", "cannot read 'cut.png': broken PNG data", kCorners},
        {"huge.png", "cannot read 'huge.png': image too large for memory (70000 x 70000 pixels", kCorners},
        {"huge.jpg", "cannot read 'huge.jpg': image too large for memory (60000 x 60000 pixels", kCorners},
        {"page.png", "'page.png': the corners give a page too large for memory (100001 x 100001 pixels)",
         "0,0,100000,0,100000,100000,0,100000"},
    };
    const std::set<std::string> before = folder.files();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.input);
        const RunResult run = folder.run({c.input, "--corners", c.corners, "-o", "keep.png", "--overlay", "o.png"});
        EXPECT_EQ(run.exit_code, 2);
        ASSERT_EQ(run.err_lines().size(), 1u) << run.err;
        EXPECT_EQ(run.err_lines()[0].rfind(std::string("morvane-scan: ") + c.problem, 0), 0u) << run.err;
        EXPECT_EQ(run.out, "");
        // Nothing new, and the earlier result is untouched.
        EXPECT_EQ(folder.files(), before);
        EXPECT_EQ(folder.read_bytes("keep.png"), "an earlier result");
    }
}

// A stored picture of four coloured quarters, written with each EXIF
// orientation: the tool shows it as the tag says, corners and sizes are
// those of the upright picture, and the density turns with the sides.
TEST(ScanInputs, PhotosAreTurnedUprightByTheirExifOrientation) {
    constexpr int w = 64, h = 48;
    enum Colour { R, G, B, W };
    const unsigned char rgb[4][3] = {{220, 30, 30}, {30, 200, 40}, {30, 40, 220}, {240, 240, 240}};
    scan::Raster stored = scan::make_raster(w, h, 3);
    stored.x_dpi = 300;
    stored.y_dpi = 150;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) std::memcpy(stored.row(y) + 3 * x, rgb[(y >= h / 2) * 2 + (x >= w / 2)], 3);
    struct Case {
        int orientation;
        bool ignore;
        Colour quarters[4];  // top-left, top-right, bottom-left, bottom-right as shown
    };
    const Case cases[] = {
        {1, false, {R, G, B, W}}, {2, false, {G, R, W, B}}, {3, false, {W, B, G, R}}, {4, false, {B, W, R, G}},
        {5, false, {R, B, G, W}}, {6, false, {B, R, W, G}}, {7, false, {W, G, B, R}}, {8, false, {G, W, R, B}},
        {6, true, {R, G, B, W}},
    };
    ScanFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE("orientation " + std::to_string(c.orientation) + (c.ignore ? ", ignored" : ""));
        save_jpeg_with_orientation(folder.path("photo.jpg"), stored, c.orientation);
        const bool turned = c.orientation >= 5 && !c.ignore;
        const int sw = turned ? h : w, sh = turned ? w : h;
        const std::string right = std::to_string(sw - 1), bottom = std::to_string(sh - 1);
        std::vector<std::string> args = {"photo.jpg", "--corners", "0,0," + right + ",0," + right + "," + bottom + ",0," + bottom,
                                         "-o", "page.png", "--json"};
        if (c.ignore) args.push_back("--ignore-orientation");
        const RunResult run = folder.run(args);
        ASSERT_EQ(run.exit_code, 0) << run.err;
        const std::string dpi = turned ? "[150,300]" : "[300,150]";
        for (const std::string& field :
             {"\"input_width\": " + std::to_string(sw) + ", \"input_height\": " + std::to_string(sh),
              "\"orientation\": " + std::to_string(c.orientation) + ", \"orientation_applied\": " + (c.ignore ? "false" : "true"),
              "\"input_dpi\": " + dpi + ", \"output_dpi\": " + dpi + ", \"output_dpi_from\": \"input\""}) {
            EXPECT_NE(run.out.find(field), std::string::npos) << field << "\n" << run.out;
        }
        const scan::Raster page = load(folder.path("page.png"));
        ASSERT_EQ(page.width, sw);
        ASSERT_EQ(page.height, sh);
        EXPECT_EQ(page.x_dpi, turned ? 150 : 300);
        for (int q = 0; q < 4; ++q) {
            const unsigned char* pixel = page.row((q / 2 * 2 + 1) * sh / 4) + 3 * ((q % 2 * 2 + 1) * sw / 4);
            for (int k = 0; k < 3; ++k) EXPECT_NEAR(pixel[k], rgb[c.quarters[q]][k], 12) << "quarter " << q;
        }
    }
    // A tag alone brings no density of its own: libexif must not make one up.
    stored.x_dpi = stored.y_dpi = 0;
    save_jpeg_with_orientation(folder.path("photo.jpg"), stored, 6);
    const RunResult bare = folder.run({"photo.jpg", "--corners", "0,0,47,0,47,63,0,63", "-o", "page.png", "--json"});
    ASSERT_EQ(bare.exit_code, 0) << bare.err;
    EXPECT_NE(bare.out.find("\"input_dpi\": null, \"output_dpi\": null, \"output_dpi_from\": null"), std::string::npos) << bare.out;
    EXPECT_EQ(load(folder.path("page.png")).x_dpi, 0);
}

// The input read once through a pipe, by "-" or by the pipe's own name, and
// the page written to standard output: the same bytes as from and to files.
TEST(ScanInputs, PicturesComeThroughPipesBothWays) {
    ScanFolder folder;
    save_jpeg(folder.path("page.jpg"), synthetic_page(kWidth, kHeight, 3, 20, 30, 219, 159));
    const std::string photo = folder.read_bytes("page.jpg");
    ASSERT_EQ(folder.run({"page.jpg", "--corners", kCorners, "-o", "file.png"}).exit_code, 0);
    ASSERT_EQ(folder.run({"page.jpg", "--corners", kCorners, "-o", "file.jpg"}).exit_code, 0);
    struct Case {
        const char* input;
        std::vector<std::string> output;
        const char* same_as;
    };
    const Case cases[] = {
        {"-", {"-o", "piped.png"}, "file.png"},
        {"/dev/stdin", {"-o", "piped.png"}, "file.png"},
        {"page.jpg", {"-o", "-", "--format", "jpeg"}, "file.jpg"},
        {"-", {"-o", "-", "--format", "png"}, "file.png"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.input) + " -> " + c.output[1]);
        std::vector<std::string> args = {c.input, "--corners", kCorners};
        args.insert(args.end(), c.output.begin(), c.output.end());
        const RunResult run = folder.run_piped(args, photo);
        ASSERT_EQ(run.exit_code, 0) << run.err;
        if (c.output[1] == "-") {
            EXPECT_EQ(run.out, folder.read_bytes(c.same_as));
            EXPECT_NE(run.err.find("page written to standard output: 200 x 130"), std::string::npos) << run.err;
        } else {
            EXPECT_EQ(folder.read_bytes("piped.png"), folder.read_bytes(c.same_as));
        }
    }
    const RunResult refused = folder.run_piped({"-", "--corners", kCorners, "-o", "-", "--format", "png"}, "GIF89a...");
    EXPECT_EQ(refused.exit_code, 2);
    EXPECT_EQ(refused.err, "morvane-scan: cannot read standard input: not a JPEG or PNG file\n");
    EXPECT_EQ(refused.out, "");
}

// From an address-space limit that barely lets the program start up to one
// that is enough, a 12-megapixel photo ends either in its page and
// black-and-white page, or in "not enough memory" with exit 2 and no file:
// never in "no page", a crash or half of the files.
TEST(ScanInputs, UnderAMemoryLimitAPhotoGivesItsPageOrNotEnoughMemory) {
#ifdef MORVANE_SCAN_SANITIZED
    GTEST_SKIP() << "the sanitizers' shadow memory does not fit under an address-space limit";
#endif
    constexpr std::size_t kStep = 8u << 20;
    ScanFolder folder;
    save_jpeg(folder.path("photo.jpg"), synthetic_page(4000, 3000, 3, 300, 200, 3699, 2799));
    const std::set<std::string> before = folder.files();
    std::size_t limit = kStep;
    while (folder.run({"--version"}, limit).exit_code != 0 && limit < (256u << 20)) limit += kStep;
    int refused = 0;
    for (;; limit += kStep) {
        SCOPED_TRACE(std::to_string(limit >> 20) + " MB");
        const RunResult run = folder.run({"photo.jpg", "-o", "page.jpg", "--binarize", "sauvola"}, limit);
        if (run.exit_code == 0) break;
        ++refused;
        EXPECT_EQ(run.exit_code, 2);
        ASSERT_EQ(run.err_lines().size(), 1u) << run.err;
        EXPECT_NE(run.err.find("'photo.jpg': not enough memory"), std::string::npos) << run.err;
        EXPECT_EQ(folder.files(), before);
        ASSERT_LT(limit, 1024u << 20) << "no page even with this much memory";
    }
    EXPECT_GT(refused, 3);
    EXPECT_TRUE(folder.files().count("page.jpg") && folder.files().count("page-bw.png"));
}

TEST(ScanInputs, TheBundledSampleRectifiesWithItsKnownCorners) {
    const std::string sample = std::string(MORVANE_SOURCE_DIR) + "/samples/page.jpg";
    std::ifstream corners_file(std::string(MORVANE_SOURCE_DIR) + "/samples/page.corners");
    std::string corners;
    while (std::getline(corners_file, corners) && (corners.empty() || corners[0] == '#')) {
    }
    ScanFolder folder;
    const RunResult run = folder.run({sample, "--corners", corners, "-o", "page.png", "--json"});
    ASSERT_EQ(run.exit_code, 0) << run.err;
    const scan::Raster page = load(folder.path("page.png"));
    // An A4 page: the sides keep roughly its proportions of 1 to 1.414.
    EXPECT_NEAR(static_cast<double>(page.height) / page.width, 1.414, 0.03);
    EXPECT_NE(run.out.find("\"output_width\": " + std::to_string(page.width)), std::string::npos) << run.out;
}

}  // namespace
}  // namespace scan_test

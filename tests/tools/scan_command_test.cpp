// morvane-scan's command line: options, reports, batches, the overlay and
// the exit codes.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "scan_harness.h"

namespace scan_test {
namespace {

constexpr int kWidth = 240, kHeight = 180;
const char* const kCorners = "20,30,219,30,219,159,20,159";

class ScanCommand : public ::testing::Test {
protected:
    void SetUp() override {
        save_png(folder.path("page.png"), synthetic_page(kWidth, kHeight, 3, 20, 30, 219, 159));
        save_png(folder.path("flat.png"), flat_image(160, 120, 128));
    }
    ScanFolder folder;
};

TEST_F(ScanCommand, BadCommandLinesExitTwoWithOneLineAndWriteNothing) {
    struct Case {
        std::vector<std::string> args;
        const char* message;  // start of the line after "morvane-scan: "
    };
    const Case cases[] = {
        {{"page.png", "--corners", "1,2,3", "-o", "out.png"}, "--corners needs eight integers"},
        {{"page.png", "--corners", "1,2,3,4,5,6,7,8,9", "-o", "out.png"}, "--corners needs eight integers"},
        {{"page.png", "--corners", "1.5,2,3,4,5,6,7,8", "-o", "out.png"}, "--corners needs eight integers"},
        {{"page.png", "--corners", "0,0,1000001,0,9,9,0,9", "-o", "out.png"}, "--corners needs eight integers"},
        {{"page.png", "--corners", kCorners, "-o", "missing/out.png"},
         "cannot write 'missing/out.png': folder 'missing' does not exist"},
        {{"page.png", "-d", "page.png/out"}, "cannot write into 'page.png/out': cannot make the folder: "},
        {{"page.png", "page.png", "-d", "made"}, "two results would both be written to 'made/page.png'"},
        {{"page.png", "--corners", kCorners, "-o", "out.tif"}, "cannot write 'out.tif': unknown picture format"},
        {{"page.png", "--corners", kCorners, "-o", "page.png"}, "cannot write 'page.png': it is the input"},
        {{"page.png", "--frobnicate"}, "unknown option '--frobnicate'"},
        {{"page.png", "--engine", "8"}, "--engine needs a method from 0 to 7, not '8'"},
        {{"page.png", "--corners", "0,0,0,0,0,0,0,0"}, "--corners must outline a page: the top-left and top-right corners are the same point"},
        {{"page.png", "--corners", "0,0,100,0,200,0,0,100"}, "--corners must outline a page: the top-left, top-right and bottom-right corners lie on one line"},
        {{"page.png", "--corners", "0,0,100,0,0,100,100,100"}, "--corners must outline a page: two of its sides cross"},
        {{"page.png", "--corners", "0,0,0,100,100,100,100,0"}, "--corners must outline a page: they run anticlockwise"},
        {{"page.png", "--corners", "0,0,100,0,30,30,0,100"}, "--corners must outline a page: the bottom-right corner points inwards"},
        {{"page.png", "--corners", kCorners, "-o", "-"}, "-o - writes to standard output and needs --format png or --format jpeg"},
        {{"-", "-", "--json"}, "standard input (-) can be read only once"},
        {{"page.png", "--corners", kCorners, "-o", "out.png", "--format", "jpeg"}, "--format jpeg does not match the output's name 'out.png'"},
        {{"page.png", "--format", "tiff", "-o", "out"}, "--format needs 'png' or 'jpeg', not 'tiff'"},
        {{"page.png", "--format", "png"}, "--format needs an output (-o or -d)"},
        {{"page.png", "--png-level", "10", "-o", "out.png"}, "--png-level needs a level from 0 to 9"},
        {{"page.png", "--fill", "1,2", "--corners", kCorners, "-o", "out.png"}, "--fill needs R,G,B"},
        {{"page.png", "--fill", "256,0,0", "--corners", kCorners, "-o", "out.png"}, "--fill needs R,G,B"},
        {{"page.png", "--k", "1.5", "--binarize", "sauvola", "-o", "out.png"}, "--k needs a number from 0 to 1"},
        {{"page.png", "--binarize", "otsu", "-o", "out.png"}, "--binarize needs 'sauvola' or 'multiscale'"},
        {{"page.png", "--binarize", "multiscale", "--window", "9", "-o", "o.png"}, "--window goes with --binarize sauvola"},
        {{"page.png", "page.png", "-o", "out.png"}, "-o names one output"},
        {{"page.png", "--corners", kCorners, "--engine", "1"}, "--corners replaces the search"},
        {{"page.png", "--json", "--corners-only"}, "--json and --corners-only exclude each other"},
        {{"page.png", "--always-write"}, "--always-write needs an output"},
        {{"page.png", "-o"}, "-o needs a value"},
        {{"--json"}, "no input picture given"},
    };
    const std::set<std::string> before = folder.files();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        const RunResult run = folder.run(c.args);
        EXPECT_EQ(run.exit_code, 2);
        ASSERT_EQ(run.err_lines().size(), 1u) << run.err;
        EXPECT_EQ(run.err_lines()[0].rfind(std::string("morvane-scan: ") + c.message, 0), 0u) << run.err;
        EXPECT_EQ(folder.files(), before);
    }
}

// The miss names the searches that ran.
TEST_F(ScanCommand, NoPageFoundWritesNothingUnlessAskedAndExitsOne) {
    const RunResult nothing = folder.run({"flat.png", "-o", "out.png"});
    EXPECT_EQ(nothing.exit_code, 1);
    EXPECT_NE(nothing.out.find("no page found (code 3: no usable result: neither edges nor text gave a page)"),
              std::string::npos)
        << nothing.out;
    EXPECT_FALSE(folder.files().count("out.png"));
    const RunResult edges = folder.run({"flat.png", "--edges-only"});
    EXPECT_NE(edges.out.find("(code 3: no usable result: the page's edges gave no page)"), std::string::npos) << edges.out;

    const RunResult whole = folder.run({"flat.png", "-o", "out.png", "--always-write"});
    EXPECT_EQ(whole.exit_code, 1);
    EXPECT_NE(whole.out.find("whole image written to out.png: 160 x 120"), std::string::npos) << whole.out;
    const scan::Raster written = load(folder.path("out.png"));
    EXPECT_TRUE(same_pixels(written, flat_image(160, 120, 128)));
}

TEST_F(ScanCommand, CornersOnlyPrintsExactlyTheCornersLine) {
    const RunResult given = folder.run({"page.png", "--corners", kCorners, "--corners-only"});
    EXPECT_EQ(given.exit_code, 0);
    EXPECT_EQ(given.out, "{\"corners\": [[20,30],[219,30],[219,159],[20,159]]}\n");

    // No page is an answer too: the evaluation scripts count any exit code
    // but 0 as a failure of the finder.
    const RunResult none = folder.run({"flat.png", "--corners-only"});
    EXPECT_EQ(none.exit_code, 0);
    EXPECT_EQ(none.out, "{\"corners\": null}\n");

    // A file that cannot be read still answers with a line the scripts can parse.
    const RunResult broken = folder.run({"missing.png", "--corners-only"});
    EXPECT_EQ(broken.exit_code, 2);
    EXPECT_EQ(broken.out, "{\"corners\": null}\n");
}

TEST_F(ScanCommand, JsonReportsEveryFieldOnOneLine) {
    const RunResult run = folder.run({"page.png", "--corners", kCorners, "-o", "out.jpg", "--overlay", "o.png", "--json"});
    ASSERT_EQ(run.exit_code, 0) << run.err;
    ASSERT_EQ(run.out_lines().size(), 1u);
    const std::string json = run.out_lines()[0];
    for (const char* field :
         {"{\"input\": \"page.png\", \"input_width\": 240, \"input_height\": 180, \"source\": \"given\", \"code\": null",
          "\"page_found\": true", "\"corners\": [[20,30],[219,30],[219,159],[20,159]]", "\"output\": \"out.jpg\"",
          "\"output_width\": 200, \"output_height\": 130", "\"overlay\": \"o.png\"",
          "\"dpi\": null, \"quality\": null, \"quality_of\": null",
          "\"times_ms\": {\"decode\": ", "\"rectify\": ", "\"encode\": ", "\"exit\": 0}"}) {
        EXPECT_NE(json.find(field), std::string::npos) << field << "\n" << json;
    }
    const RunResult broken = folder.run({"missing.png", "--json"});
    EXPECT_EQ(broken.out, "{\"input\": \"missing.png\", \"error\": \"cannot read 'missing.png': no such file\", \"exit\": 2}\n");
}

// The folder is made when it is missing, as the README's batch example has it.
TEST_F(ScanCommand, SeveralInputsGoToTheFolderWithAProgressLineEach) {
    std::filesystem::create_directory(folder.path("shots"));
    save_jpeg(folder.path("shots/second.jpg"), synthetic_page(kWidth, kHeight, 3, 20, 30, 219, 159));
    folder.write_bytes("notes.png", "not a picture");
    const RunResult run = folder.run({"page.png", "shots/second.jpg", "notes.png", "--corners", kCorners, "-d", "out/",
                                      "--overlay", "out"});
    EXPECT_EQ(run.exit_code, 2);  // the highest code of the three
    const std::vector<std::string> lines = run.out_lines();
    ASSERT_EQ(lines.size(), 3u) << run.out;
    EXPECT_EQ(lines[0].rfind("[1/3] page.png -> out/page.png: corners given, 200 x 130, ", 0), 0u) << lines[0];
    EXPECT_EQ(lines[1].rfind("[2/3] shots/second.jpg -> out/second.jpg: corners given, 200 x 130, ", 0), 0u) << lines[1];
    EXPECT_EQ(lines[2], "[3/3] notes.png: failed");
    EXPECT_EQ(run.err, "morvane-scan: cannot read 'notes.png': not a JPEG or PNG file\n");
    std::set<std::string> in_out;
    for (const std::string& name : folder.files()) {
        if (name.rfind("out/", 0) == 0) in_out.insert(name);
    }
    EXPECT_EQ(in_out, (std::set<std::string>{"out/page.png", "out/second.jpg", "out/page-overlay.png",
                                             "out/second-overlay.png"}));
    EXPECT_EQ(load(folder.path("out/second.jpg")).width, 200);

    // --format names every page for its format, in folders made on the way.
    const RunResult png = folder.run({"page.png", "shots/second.jpg", "--corners", kCorners, "-d", "new/pages", "--format", "png"});
    EXPECT_EQ(png.exit_code, 0) << png.err;
    EXPECT_EQ(folder.read_bytes("new/pages/page.png"), folder.read_bytes("out/page.png"));
    EXPECT_EQ(folder.read_bytes("new/pages/second.png").substr(1, 3), "PNG");
}

TEST_F(ScanCommand, OverlayIsAReducedCopyWithTheOutlineDrawn) {
    save_png(folder.path("wide.png"), synthetic_page(2500, 1000, 3, 300, 200, 2199, 799));
    const RunResult run = folder.run({"wide.png", "--corners", "300,200,2199,200,2199,799,300,799", "--overlay", "o.png"});
    ASSERT_EQ(run.exit_code, 0) << run.err;
    // Nothing but the overlay: without -o the page is not written.
    EXPECT_EQ(folder.files(), (std::set<std::string>{"page.png", "flat.png", "wide.png", "o.png"}));
    const scan::Raster overlay = load(folder.path("o.png"));
    EXPECT_EQ(overlay.width, 833);  // reduced by 3, the first whole factor that fits 1200
    EXPECT_EQ(overlay.height, 333);
    ASSERT_EQ(overlay.channels, 3);
    const auto pixel = [&](int x, int y) {
        const unsigned char* p = overlay.row(y) + 3 * x;
        return std::vector<int>{p[0], p[1], p[2]};
    };
    EXPECT_EQ(pixel(100, 66), (std::vector<int>{20, 200, 40}));   // the top-left corner, marked green
    EXPECT_EQ(pixel(400, 66), (std::vector<int>{230, 20, 20}));   // on the top side, red
    EXPECT_EQ(pixel(733, 200), (std::vector<int>{230, 20, 20}));  // on the right side
    EXPECT_EQ(pixel(10, 10), (std::vector<int>{40, 70, 55}));     // the table, untouched
}

// The estimate reaches the summary, the JSON report and the progress line;
// the quality grade, of the page found or of the whole image, the report.
// Rows of upright marks 12 pixels high (a little more once binarized) read
// as about 300 * 12 / 22 dots per inch; a flat image shows no text: 300.
TEST_F(ScanCommand, DpiReportsTheEstimateFromTheCharacterSize) {
    scan::Raster marks = flat_image(200, 160, 225);
    for (int y = 20; y < 140; y += 24)
        for (int x = 20; x < 180; x += 9)
            for (int dy = 0; dy < 12; ++dy)
                for (int dx = 0; dx < 3; ++dx) marks.row(y + dy)[x + dx] = 30;
    save_png(folder.path("marks.png"), marks);

    const RunResult run = folder.run({"marks.png", "--dpi"});
    const std::size_t at = run.out.find("  resolution: ");
    ASSERT_NE(at, std::string::npos) << run.out;
    const int dpi = std::stoi(run.out.substr(at + 14));
    EXPECT_GE(dpi, 163);
    EXPECT_LE(dpi, 204);
    EXPECT_NE(run.out.find(std::to_string(dpi) + " dpi\n"), std::string::npos) << run.out;
    const RunResult json = folder.run({"marks.png", "flat.png", "--dpi", "--quality", "--json"});
    ASSERT_EQ(json.out_lines().size(), 2u) << json.out;
    EXPECT_NE(json.out_lines()[0].find("\"dpi\": " + std::to_string(dpi) + ","), std::string::npos) << json.out;
    EXPECT_NE(json.out_lines()[1].find("\"dpi\": 300, \"quality\": 0.0000, \"quality_of\": \"image\""), std::string::npos)
        << json.out;
    const RunResult batch = folder.run({"marks.png", "flat.png", "--dpi"});
    EXPECT_NE(batch.out.find(", 300 dpi, "), std::string::npos) << batch.out;
}

TEST_F(ScanCommand, FillColoursTheOutside) {
    // Corners reaching left of the image: the first output columns lie outside.
    const RunResult run = folder.run({"page.png", "--corners", "-40,30,219,30,219,159,-40,159", "--fill", "255,0,0",
                                      "-o", "out.png"});
    ASSERT_EQ(run.exit_code, 0) << run.err;
    const scan::Raster page = load(folder.path("out.png"));
    const unsigned char* first = page.row(page.height / 2);
    EXPECT_EQ((std::vector<int>{first[0], first[1], first[2]}), (std::vector<int>{255, 0, 0}));
}

TEST_F(ScanCommand, HelpListsTheExitCodesAndTheSearchMethods) {
    const RunResult help = folder.run({"--help"});
    EXPECT_EQ(help.exit_code, 0);
    for (const char* text : {"Usage: morvane-scan", "  0  page found", "  1  no page found", "  2  usage error",
                             "--corners-only", "--png-level N", "4 and 5 never find a page"}) {
        EXPECT_NE(help.out.find(text), std::string::npos) << text;
    }
    const RunResult version = folder.run({"--version"});
    EXPECT_EQ(version.exit_code, 0);
    EXPECT_NE(version.out.find("version of library: 16.1.8.9"), std::string::npos) << version.out;
}

}  // namespace
}  // namespace scan_test

// morvane-scan --quality: the grade of the page found, or of the whole image,
// in the summary and the JSON report.
#include <gtest/gtest.h>

#include "scan_harness.h"

namespace scan_test {

TEST(ScanQuality, GradesThePageFoundOrTheWholeImage) {
    ScanFolder folder;
    scan::Raster marks = flat_image(200, 160, 225);  // rows of sharp upright marks
    for (int y = 20; y < 140; y += 24)
        for (int x = 20; x < 180; x += 9)
            for (int dy = 0; dy < 12; ++dy)
                for (int dx = 0; dx < 3; ++dx) marks.row(y + dy)[x + dx] = 30;
    save_png(folder.path("marks.png"), marks);
    save_png(folder.path("flat.png"), flat_image(160, 120, 128));
    const RunResult whole = folder.run({"marks.png", "--quality"});
    EXPECT_NE(whole.out.find("  quality: 1.000 (the page)\n"), std::string::npos) << whole.out;
    const RunResult json = folder.run({"marks.png", "--corners", "0,0,99,0,99,159,0,159", "--quality", "--json"});
    EXPECT_NE(json.out.find("\"quality\": 1.0000, \"quality_of\": \"page\""), std::string::npos) << json.out;
    EXPECT_NE(folder.run({"flat.png", "--quality", "--json"}).out.find("\"quality\": 0.0000, \"quality_of\": \"image\""),
              std::string::npos);
    EXPECT_NE(folder.run({"flat.png", "--json"}).out.find("\"quality\": null, \"quality_of\": null"), std::string::npos);
}

}  // namespace scan_test

// The blob-share grade: sharp print above blur and grain, 0 when there is
// nothing to judge, a supplied binary used as it stands, corners that bound
// the page; and the preparation of the image. One test, as every case reads
// the same two text pages.
#include <gtest/gtest.h>

#include <algorithm>

#include "common/geometricexception.h"
#include "pixel/average_filtering.h"
#include "quality/blob_quality.h"
#include "support/errors.h"
#include "support/images.h"
#include "support/text_pages.h"

namespace {

geometric::BlobQuality evaluator(int method = 7, int binarization = geometric::OMIN, int region = 0, int scale = 1) {
    return {geometric::QualityAssessMethod(method), geometric::AOIRegion(region),
            geometric::BinarizationMethod(binarization), scale};
}

common::BasicImage blurred(const common::BasicImage& image, int window) {
    common::BasicImage out;
    geometric::AverageFiltering::use_summed_area_table(image, out, window, window);
    return out;
}

}  // namespace

TEST(BlobQuality, GradesSharpPrintAboveBlurAndGrainAndZeroWhenNothingCanBeJudged) {
    support::TextPageSpec spec;  // 10 lines of glyphs 22 high, the first line's tops at y = 80, 44 apart
    const support::TextPage page = support::make_text_page(spec);
    spec.ink = 200;  // 20 below the paper
    const support::TextPage faint = support::make_text_page(spec);
    common::BasicImage grainy = blurred(support::noise_image(800, 1000, 7u), 3);  // +-30 levels, as a camera's
    for (int i = 0; i < grainy.get_data_size(); ++i)
        grainy.get_data()[i] = std::clamp(page.gray.get_data()[i] + grainy.get_data()[i] - 128, 0, 255);
    const double sharp = evaluator().calculate_global_quality(page.gray, nullptr);
    EXPECT_GT(std::min(sharp, evaluator().calculate_global_quality(page.ink, nullptr)), 0.99);  // 1-bit: ink black
    EXPECT_LT(evaluator().calculate_global_quality(blurred(page.gray, 7), nullptr), sharp - 0.5);
    EXPECT_LT(evaluator().calculate_global_quality(grainy, nullptr), sharp - 0.05);
    EXPECT_EQ(evaluator().calculate_global_quality(support::flat_image(800, 1000, 220), nullptr), 0.0);
    EXPECT_EQ(evaluator(5).calculate_global_quality(page.gray, nullptr), 0.0);
    // Corners around the first 3 or 4 glyphs (20 apart from x = 80; upright left side, the others
    // a little slanted); a supplied binary stands, as no binarizer exists for method 5.
    geometric::BlobQuality quality = evaluator(7, 5);
    for (const int n : {3, 4}) {
        quality.createDocumentMarginsFromCorners({{70, 70}, {75.0f + 20 * n, 71}, {76.0f + 20 * n, 110}, {70, 110}});
        EXPECT_EQ(quality.calculate_global_quality(page.gray, &page.ink), n == 4 ? 1.0 : 0.0) << n;
    }
    // Faint print with its first one or two lines sharp: method 6 asks a contrast of 30 and
    // grades the sharp lines when they are over 10% of the text-like blobs; method 7 grades all.
    for (const int lines : {1, 2}) {
        common::BasicImage mixed(faint.gray);
        std::copy(page.gray.get_data(), page.gray.get_data() + 1000 * (70 + 44 * lines), mixed.get_data());
        EXPECT_EQ(evaluator(6).calculate_global_quality(mixed, &faint.ink), lines == 2 ? 1.0 : 0.0) << lines;
        EXPECT_LT(evaluator(7).calculate_global_quality(mixed, &faint.ink), 0.5) << lines;
    }
    // The preparation: gray, scaled down, the central patch; what it cannot do.
    const common::BasicImage rgb(48, 64, common::RGB), bgra(4, 4, common::BGRA);
    std::vector<double> grades;
    EXPECT_EQ(evaluator(7, 1, 0, 2).preprocessing_quality_assessment(rgb)->get_width(), 32);  // halved
    EXPECT_EQ(evaluator(7, 1, 1, 3).preprocessing_quality_assessment(rgb)->get_width(), 10);  // 21, its central half
    EXPECT_EQ(support::thrown_text<const char*>([&] { quality.calculate_global_quality(bgra, nullptr); }),
              "BGRA to grey level conversion nog implemented yet in common");
    EXPECT_EQ(support::thrown_text<geometric::Geometricexception>(
                  [&] { quality.calculate_local_qualities(rgb, nullptr, 2, 2, grades); }),
              "not implemented yet");
}

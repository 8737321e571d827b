// The blob-share grade: sharp print above blur and grain, nothing to judge
// gives 0, the page's corners bound what is graded; and the preparation.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/geometricexception.h"
#include "pixel/average_filtering.h"
#include "quality/blob_quality.h"
#include "support/errors.h"
#include "support/images.h"
#include "support/text_pages.h"

namespace {

using geometric::BlobQuality;
typedef geometric::Geometricexception Failure;

support::TextPage text_page(unsigned char ink = 40) {
    support::TextPageSpec spec;
    spec.width = 640, spec.height = 400, spec.left = 40, spec.right = 600, spec.top = 40, spec.lines = 6;
    spec.ink = ink;
    return support::make_text_page(spec);
}

BlobQuality evaluator(int method = 7) {
    return BlobQuality(geometric::QualityAssessMethod(method), geometric::WHOLE_IMAGE, geometric::OMIN, 1);
}

common::BasicImage blurred(const common::BasicImage& page, int window) {
    common::BasicImage out;
    geometric::AverageFiltering::use_summed_area_table(page, out, window, window);
    return out;
}

// A camera's grain: noise smoothed over 3 by 3 pixels, about +-30 gray levels.
common::BasicImage grainy(const common::BasicImage& page) {
    common::BasicImage out(page);
    const common::BasicImage grain = blurred(support::noise_image(page.get_height(), page.get_width(), 7u), 3);
    for (int i = 0; i < out.get_data_size(); ++i)
        out.get_data()[i] = static_cast<unsigned char>(
            std::min(255, std::max(0, out.get_data()[i] + grain.get_data()[i] - 128)));
    return out;
}

}  // namespace

TEST(BlobQuality, SharpPrintScoresAboveBlurAndGrain) {
    const support::TextPage page = text_page();
    BlobQuality quality = evaluator();
    const double sharp = quality.calculate_global_quality(page.gray, nullptr);
    EXPECT_GT(sharp, 0.99);
    EXPECT_LT(quality.calculate_global_quality(blurred(page.gray, 7), nullptr), sharp - 0.5);
    EXPECT_LT(quality.calculate_global_quality(grainy(page.gray), nullptr), sharp - 0.05);
}

TEST(BlobQuality, ScoresZeroWhenThereIsNothingToJudge) {
    const support::TextPage page = text_page(), faint = text_page(200);
    common::BasicImage three_glyphs(page.ink.get_height(), page.ink.get_width(), common::BINARY);
    for (int y = 40; y < 62; ++y)
        for (int x = 40; x < 100; ++x) three_glyphs.set_pixel(x, y, page.ink.get_pixel(x, y));
    EXPECT_EQ(evaluator().calculate_global_quality(support::flat_image(400, 640, 220), nullptr), 0.0);
    EXPECT_EQ(evaluator().calculate_global_quality(page.gray, &three_glyphs), 0.0);
    EXPECT_EQ(evaluator(5).calculate_global_quality(page.gray, nullptr), 0.0);
    // Faint print (20 below the paper) and a few sharp glyphs: method 6 grades only the
    // sharp ones, when they are more than 10% of the text-like blobs; method 7 grades all.
    for (const double share : {0.08, 0.12}) {
        common::BasicImage mixed(faint.gray);
        const size_t sharp = static_cast<size_t>(share * faint.glyph_boxes.size());
        for (size_t k = 0; k < sharp; ++k)
            for (int y = faint.glyph_boxes[k].top; y <= faint.glyph_boxes[k].bottom; ++y)
                for (int x = faint.glyph_boxes[k].left; x <= faint.glyph_boxes[k].right; ++x)
                    if (faint.ink.get_pixel(x, y)) mixed.set_pixel(x, y, 40);
        EXPECT_EQ(evaluator(6).calculate_global_quality(mixed, &faint.ink) > 0.9, share > 0.1) << share;
        EXPECT_LT(evaluator(7).calculate_global_quality(mixed, &faint.ink), 0.2) << share;
    }
}

TEST(BlobQuality, UsesASuppliedBinaryAsItStands) {
    const support::TextPage page = text_page();
    BlobQuality quality = evaluator();
    quality.set_binarization_method(geometric::BinarizationMethod(5));
    EXPECT_GT(quality.calculate_global_quality(page.gray, &page.ink), 0.99);
    const common::BasicImage no_ink(400, 640, common::BINARY);
    EXPECT_EQ(quality.calculate_global_quality(page.gray, &no_ink), 0.0);
    EXPECT_EQ(support::thrown_text<Failure>([&] { quality.calculate_global_quality(page.gray, nullptr); }),
              "the binarization method is not available");
    EXPECT_EQ(support::thrown_text<Failure>([&] { quality.calculate_global_quality(page.gray, &page.gray); }),
              "the binary image does not fit the image to grade");
}

TEST(BlobQuality, GivenCornersGradeOnlyThePage) {
    const support::TextPage page = text_page();
    common::BasicImage half_blurred = blurred(page.gray, 7);  // sharp left of x = 320
    for (int y = 0; y < 400; ++y)
        for (int x = 0; x < 320; ++x) half_blurred.set_pixel(x, y, page.gray.get_pixel(x, y));
    BlobQuality quality = evaluator();
    const double whole = quality.calculate_global_quality(half_blurred, nullptr);
    quality.createDocumentMarginsFromCorners({{0, 0}, {319, 5}, {318, 399}, {0, 399}});
    EXPECT_GT(quality.calculate_global_quality(half_blurred, nullptr), whole + 0.1);
    quality.createDocumentMarginsFromCorners({{320, 0}, {639, 0}, {639, 399}, {321, 399}});
    EXPECT_LT(quality.calculate_global_quality(half_blurred, nullptr), whole - 0.1);
    // Left, right, top, bottom; a side within the float epsilon of upright is vertical.
    quality.createDocumentMarginsFromCorners({{0, 20}, {100, 30}, {90, 90}, {1e-7f, 80}});
    const double expected[4][3] = {{1, 0, 0}, {-6, -1, 630}, {0.1, -1, 20}, {1 / 9.0, -1, 80}};
    for (int k = 0; k < 4; ++k) {
        EXPECT_NEAR(quality.margins[k].a, expected[k][0], 1e-6) << k;
        EXPECT_EQ(quality.margins[k].b, expected[k][1]) << k;
        EXPECT_NEAR(quality.margins[k].c, expected[k][2], 1e-6) << k;
    }
    quality.resetDocumentMargins();
    EXPECT_EQ(quality.calculate_global_quality(half_blurred, nullptr), whole);
    EXPECT_EQ(support::thrown_text<Failure>([&] { quality.createDocumentMarginsFromCorners({{0, 0}, {1, 0}, {1, 1}}); }),
              "the document margins need four corners");
}

TEST(QualityEvaluator, PreparesAGrayImageOfTheScaleAndRegion) {
    common::BasicImage rgb(48, 64, common::RGB);
    rgb.set_pixel(32, 24, 0x64c828);  // luminance (299 * 100 + 587 * 200 + 114 * 40) / 1000 = 151
    const int cases[][4] = {{1, 0, 64, 48}, {2, 0, 32, 24}, {3, 0, 21, 16}, {1, 1, 32, 24}, {4, 1, 8, 6}};
    for (const auto& c : cases) {
        const BlobQuality quality(geometric::BLOB_SHARE, geometric::AOIRegion(c[1]), geometric::OMIN, c[0]);
        const auto prepared = quality.preprocessing_quality_assessment(rgb);
        EXPECT_EQ(prepared->get_image_type(), common::GRAY);
        EXPECT_EQ(prepared->get_width() * 100 + prepared->get_height(), c[2] * 100 + c[3]) << c[0] << " " << c[1];
        if (c[0] == 1) {
            EXPECT_EQ(prepared->get_pixel(prepared->get_width() / 2, prepared->get_height() / 2), 151u);
        }
    }
    const common::BasicImage bgra(4, 4, common::BGRA);
    BlobQuality quality = evaluator();
    std::vector<double> grades;
    EXPECT_EQ(support::thrown_text<const char*>([&] { quality.calculate_global_quality(bgra, nullptr); }),
              "BGRA to grey level conversion nog implemented yet in common");
    EXPECT_EQ(support::thrown_text<Failure>([&] { quality.calculate_local_qualities(rgb, nullptr, 2, 2, grades); }),
              "not implemented yet");
}

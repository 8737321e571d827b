// The corner search chains and the staged search on page photos built in code.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "cornersearch/bounding_edge_registration.h"
#include "cornersearch/corner_preprocessing.h"
#include "support/images.h"

namespace geometric_test {
namespace {

using support::Corners;
using support::worst_corner_error;

// Upright, tilted by a projective distortion, and touching the bottom or the
// left border of the image: the staged search finds the page to within a
// few pixels, and again identically.
TEST(OperationalBoundingEdgeRegistration, FindsPagesWithVisibleEdges) {
    struct Case {
        const char* name;
        support::Quad page;
        int method_code;  // which stage found it, and how
    };
    const Case cases[] = {
        {"upright", support::quad(120, 80, 680, 80, 680, 520, 120, 520), 100},
        {"tilted", support::quad(160, 100, 660, 60, 720, 540, 100, 500), 100},
        // The bottom side lies on the image's border: the binary stage combines its candidates.
        {"on the bottom border", support::quad(120, 80, 680, 80, 680, 597, 120, 597), 102},
        {"on the left border", support::quad(2, 80, 680, 80, 680, 520, 2, 520), 200},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const support::Quad& page = c.page;
        const common::BasicImage photo = support::photo(800, 600, page);
        OperationalBoundingEdgeRegistration search;
        Corners corners;
        ASSERT_EQ(search.run_projective_registration(photo, corners), 1);
        ASSERT_EQ(corners.size(), 4u);
        EXPECT_EQ(search.method_code, c.method_code);
        EXPECT_GT(search.confidence, 0.0);
        EXPECT_LE(worst_corner_error(corners, page), 5.0);
        Corners again;
        OperationalBoundingEdgeRegistration second;
        ASSERT_EQ(second.run_projective_registration(photo, again), 1);
        for (std::size_t k = 0; k < 4; ++k) {
            EXPECT_EQ(again[k].x, corners[k].x);
            EXPECT_EQ(again[k].y, corners[k].y);
        }
    }
}

TEST(OperationalBoundingEdgeRegistration, BlankImagesAndTextureGiveNoPage) {
    // A flat image, and a desk texture of blotches with no page.
    common::BasicImage flat = support::photo(400, 300, support::quad(0, 0, 0, 0, 0, 0, 0, 0), support::Paper{0, 128, 40, false});
    common::BasicImage texture = flat;
    std::uint32_t state = 7u;
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 400; ++x) {
            state = state * 1664525u + 1013904223u;
            // Cells of 12 x 12 pixels at one of four levels, chosen by a hash of the cell.
            const std::uint32_t cell = static_cast<std::uint32_t>(x / 12) * 73856093u ^ static_cast<std::uint32_t>(y / 12) * 19349663u;
            texture.get_line_pointer(y)[x] = static_cast<unsigned char>(90 + ((cell >> 7) % 4) * 20 + (state >> 29));
        }
    // Blobs of noise or texture reach every border: the only quadrilateral
    // the contour stages see is the image's own frame, which callers read as
    // no page. (The texture's cell edges are segments in two parallel
    // families, in which the line stage would see an upright page.)
    const support::Quad frame = support::quad(0, 0, 399, 0, 399, 299, 0, 299);
    for (const common::BasicImage* image : {&flat, &texture}) {
        OperationalBoundingEdgeRegistration search(OperationalBoundingEdgeRegistration::BINARY_EDGE_SEARCH);
        Corners corners;
        if (search.run_projective_registration(*image, corners) == 1) {
            EXPECT_LE(worst_corner_error(corners, frame), 3.0);
        }
    }
    // Without segments the line stage alone fails, 300 - 1; an unknown mode runs no stage.
    OperationalBoundingEdgeRegistration line(OperationalBoundingEdgeRegistration::LINE_SEARCH);
    Corners corners;
    EXPECT_EQ(line.implement_registration(flat, corners), -1);
    EXPECT_EQ(line.method_code, 299);
    OperationalBoundingEdgeRegistration unknown(static_cast<OperationalBoundingEdgeRegistration::Method>(99));
    EXPECT_EQ(unknown.implement_registration(flat, corners), -1);
    EXPECT_EQ(unknown.method_code, -1);
    EXPECT_TRUE(corners.empty());
}

TEST(ProjectiveRegistrationBase, QualifiesInputsAndScalesTheWorkingImage) {
    OperationalBoundingEdgeRegistration search;
    EXPECT_TRUE(search.is_input_qualified(common::BasicImage(10, 70, common::GRAY)));
    EXPECT_FALSE(search.is_input_qualified(common::BasicImage(10, 71, common::GRAY)));  // 7.1 : 1
    EXPECT_FALSE(search.is_input_qualified(common::BasicImage(9, 20, common::GRAY)));
    // Colour becomes gray by luminance: pure blue is 29, not the mean 85.
    int rate = 0;
    common::BasicImage blue(1000, 1500, common::RGB);
    for (int x = 0; x < 1500; ++x) blue.set_pixel(x, 7, 0x0000FF);
    const auto gray = search.preprocessing_projective(blue, rate);
    EXPECT_EQ(gray->get_image_type(), common::GRAY);
    EXPECT_EQ(gray->get_pixel(3, 7), 29u);
    EXPECT_EQ(rate, 1);
    // 6001 rows: halved twice to 1500, so the rate is 3 and the image 2000 high.
    const auto working = search.preprocessing_projective(common::BasicImage(6001, 100, common::GRAY), rate);
    EXPECT_EQ(rate, 3);
    EXPECT_EQ(working->get_height(), 2000);
    Corners corners;
    EXPECT_EQ(search.run_projective_registration(common::BasicImage(5, 100, common::GRAY), corners), -1);
}

// The bright class is set: a rim inside the page's edges, while the desk and
// the image's frame stay clear.
TEST(CornerPreprocessing, AdaptiveBinarizationSetsThePagesRimNotTheFrame) {
    support::Paper plain;
    plain.marks = false;
    const common::BasicImage photo = support::photo(400, 300, support::quad(60, 40, 340, 40, 340, 260, 60, 260), plain);
    common::BasicImage binary;
    CornerPreprocessing::perform_adaptive_binarization(photo, binary, 77);
    EXPECT_EQ(binary.get_pixel(0, 0), 0u);
    EXPECT_EQ(binary.get_pixel(200, 299), 0u);
    EXPECT_EQ(binary.get_pixel(30, 150), 0u);
    EXPECT_NE(binary.get_pixel(62, 150), 0u);
}

TEST(BoundingEdgeRegistration, KernelAnalyzerIsSkippedAndCombinedChainsKeepTheLastTried) {
    const common::BasicImage photo = support::photo(200, 150, support::quad(40, 30, 160, 30, 160, 120, 40, 120));
    auto kernel = std::make_shared<BoundingCornerFactory>(BoundingCornerFactory{
        std::make_shared<CannyEdgeExtractor>(), std::make_shared<KernelHoughEdgeAnalyzer>(),
        std::make_shared<StrictBoundinglineCornerEstimator>()});
    auto otsu = std::make_shared<BoundingCornerFactory>(BoundingCornerFactory{
        std::make_shared<OTSUEdgeExtractor>(), std::make_shared<KernelHoughEdgeAnalyzer>(),
        std::make_shared<StrictBoundinglineCornerEstimator>()});
    // No lines: the strict estimator finds its four (default) corners feasible.
    Corners corners;
    EXPECT_EQ(BoundingEdgeRegistration(kernel).implement_registration(photo, corners), 1);
    EXPECT_EQ(corners.size(), 4u);
    CombinedBoundingEdgeRegistration combined({kernel, otsu});
    EXPECT_EQ(combined.factory, kernel);
    EXPECT_EQ(combined.implement_registration(photo, corners), 1);
    EXPECT_EQ(combined.factory, kernel);  // the first chain answered
}

}  // namespace
}  // namespace geometric_test

// The corner search engine on page photos, its rounding and the crossed
// parameter mapping.
#include <gtest/gtest.h>

#include "cornersearch/bounding_edge_registration.h"
#include "cornersearch/corner_search_para.h"
#include "cornersearch/large_blob_extractor.h"
#include "registration/projective_correction_corner_detection_enginee.h"
#include "support/images.h"

namespace geometric_test {
namespace {

// A search that answers fixed corners.
class FixedCorners : public ProjectiveRegistration {
public:
    int implement_registration(const common::Image&, std::vector<geometric::Geocoordinate<float>>& corners) override {
        corners = {{10.5f, -0.5f}, {90.49f, 0.5f}, {91.5f, 70.5f}, {-0.51f, 0.49999997f}};
        return 1;
    }
};

TEST(CornerDetectionEnginee, CornersAreRoundedHalvesUp) {
    ProjectiveCorrectionCornerDetectionEnginee enginee(OPERATIONAL_EDGE);
    enginee.registration = std::make_shared<FixedCorners>();
    common::BasicImage image(80, 100, common::GRAY);
    ControlPointCorners corners{};
    enginee.perform_corner_detection(image, corners);
    EXPECT_EQ((std::vector<int>(corners.x, corners.x + 4)), (std::vector<int>{11, 90, 92, -1}));
    EXPECT_EQ((std::vector<int>(corners.y, corners.y + 4)), (std::vector<int>{0, 1, 71, 0}));
}

// Pages leaning either way: the strict corner check judges each corner by
// the ends of its two sides that reach towards it, so the direction in which
// the edges rise does not matter.
TEST(CornerDetectionEnginee, MethodsOnPagePhotosLeaningEitherWay) {
    struct Case {
        EdgeRegistrationMethod method;
        int result;
    };
    // The large-blob analyzer finds no lines of its own.
    const Case cases[] = {{HYBRID_EDGE_SEARCH, 1}, {OPERATIONAL_EDGE, 1},    {OPERATIONAL_LINE, 1},
                          {CANNY_HOUGH_EDGE, 1},   {OTSU_HOUGH_EDGE, 1},     {COMBINED_HOUGH_EDGE, 1},
                          {OTSU_LARGE_BLOB_EDGE, -1}};
    for (const support::Quad& page : {support::quad(160, 100, 660, 60, 720, 540, 100, 500),
                                      support::quad(100, 60, 620, 100, 660, 540, 140, 500)}) {
        common::BasicImage photo = support::photo(800, 600, page);
        for (const Case& c : cases) {
            ProjectiveCorrectionCornerDetectionEnginee enginee(c.method);
            ControlPointCorners corners{};
            EXPECT_EQ(enginee.perform_corner_detection(photo, corners), c.result) << c.method;
            if (c.result != 1) continue;
            for (int k = 0; k < 4; ++k) {
                EXPECT_NEAR(corners.x[k], page[static_cast<std::size_t>(k)].x, 5) << c.method << " corner " << k;
                EXPECT_NEAR(corners.y[k], page[static_cast<std::size_t>(k)].y, 5) << c.method << " corner " << k;
            }
        }
    }
}

TEST(CornerSearchPara, MapsHeightAndWidthCrossed) {
    geometric::CornerSearchPara para;
    para.minimum_blob_height_ratio = 0.25f;
    para.minimum_blob_width_ratio = 0.125f;
    geometric::LargeBlobExtractorPara blobs;
    blobs = para;
    EXPECT_EQ(blobs.minimum_blob_width, 0.25f);    // the height ratio, deliberately
    EXPECT_EQ(blobs.minimum_blob_height, 0.125f);  // the width ratio
}

}  // namespace
}  // namespace geometric_test

// Corner search methods 1 to 3: the Hough analyzer between an edge
// extractor and the strict corner check, on a page photo.
#include <gtest/gtest.h>

#include "registration/projective_correction_corner_detection_enginee.h"
#include "support/images.h"

namespace geometric_test {
namespace {

// The strict corner check takes a page whose four edges all rise to the
// right; each end of a side must then come within 50 pixels of its corner.
TEST(HoughCornerSearch, MethodsOneToThreeFindALeaningPage) {
    const support::Quad page = support::quad(140, 100, 660, 60, 620, 500, 100, 540);
    common::BasicImage photo = support::photo(800, 600, page);
    for (EdgeRegistrationMethod method : {CANNY_HOUGH_EDGE, OTSU_HOUGH_EDGE, COMBINED_HOUGH_EDGE}) {
        ProjectiveCorrectionCornerDetectionEnginee enginee(method);
        ControlPointCorners corners{};
        ASSERT_EQ(enginee.perform_corner_detection(photo, corners), 1) << method;
        for (int k = 0; k < 4; ++k) {
            EXPECT_NEAR(corners.x[k], page[static_cast<std::size_t>(k)].x, 3) << method << " corner " << k;
            EXPECT_NEAR(corners.y[k], page[static_cast<std::size_t>(k)].y, 3) << method << " corner " << k;
        }
    }
}

}  // namespace
}  // namespace geometric_test

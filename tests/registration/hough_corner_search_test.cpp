// Corner search methods 1 to 3: the Hough analyzer between an edge
// extractor and the strict corner check, on a page photo.
#include <gtest/gtest.h>

#include "registration/projective_correction_corner_detection_enginee.h"
#include "support/images.h"

namespace geometric_test {
namespace {

// Pages leaning and turned either way: the strict corner check judges each
// corner by the ends of its two sides that reach towards it, so the direction
// in which the edges rise does not matter.
TEST(HoughCornerSearch, MethodsOneToThreeFindPagesTurnedEitherWay) {
    for (const support::Quad& page : {support::quad(140, 100, 660, 60, 620, 500, 100, 540),
                                      support::quad(100, 60, 620, 100, 660, 540, 140, 500),
                                      support::quad(120, 80, 680, 80, 680, 520, 120, 520)})
    for (EdgeRegistrationMethod method : {CANNY_HOUGH_EDGE, OTSU_HOUGH_EDGE, COMBINED_HOUGH_EDGE}) {
        common::BasicImage photo = support::photo(800, 600, page);
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

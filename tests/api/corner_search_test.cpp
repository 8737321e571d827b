// The corner search family through the shared library.
#include <gtest/gtest.h>

#include <vector>

#include "morvane/morvane.h"
#include "support/pixels.h"

TEST(CornerSearchFamily, FindsThePageAndAppliesTheSetters) {
    std::vector<unsigned char> pixels = support::page_photo(800, 600, support::quad(120, 80, 680, 80, 680, 520, 120, 520));
    const ImageCApi image = {800, 600, 0, 0, 1, 0, pixels.data()};
    const int expected_x[4] = {120, 679, 679, 120}, expected_y[4] = {80, 80, 519, 519};
    for (int method : {0, 6}) {
        void* handle = create_corner_search_enginee(method);
        ControlPointCorners corners;
        EXPECT_EQ(perform_corner_searching(handle, &image, &corners), 1) << method;
        for (int k = 0; k < 4; ++k) {
            EXPECT_NEAR(corners.x[k], expected_x[k], 4) << method << " corner " << k;
            EXPECT_NEAR(corners.y[k], expected_y[k], 4) << method << " corner " << k;
        }
        destroy_corner_search_enginee(handle);
    }
    void* handle = create_corner_search_enginee(6);
    ControlPointCorners corners;
    // The page covers half the image: an area limit of 0.9 refuses it.
    set_corner_detection_minimum_quadrilateral_area(handle, 0.9f);
    EXPECT_EQ(perform_corner_searching(handle, &image, &corners), -4);
    set_corner_detection_minimum_quadrilateral_area(handle, 0.05f);
    set_corner_detection_minimum_largest_dimension_percentage_threshold(handle, 0.95f);
    EXPECT_EQ(perform_corner_searching(handle, &image, &corners), -6);
    set_corner_detection_minimum_largest_dimension_percentage_threshold(handle, 0.1f);
    set_corner_detection_minimum_quadrilateral_angle(handle, 89.9f);
    set_corner_detection_within_image(handle);
    const int strict = perform_corner_searching(handle, &image, &corners);
    EXPECT_TRUE(strict == 1 || strict == -5) << strict;
    destroy_corner_search_enginee(handle);
    destroy_corner_search_enginee(NULL);
}


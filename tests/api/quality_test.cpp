// The image-quality evaluator family through the shared library.
#include <gtest/gtest.h>

#include <vector>

#include "morvane/morvane.h"
#include "support/errors.h"
#include "support/pixels.h"

TEST(QualityFamily, GradesThePhotoOrThePageInsideTheCorners) {
    std::vector<unsigned char> pixels = support::page_photo(800, 600, support::quad(120, 80, 680, 80, 680, 520, 120, 520));
    const ImageCApi image = {800, 600, 0, 0, 1, 0, pixels.data()}, bgra = {2, 2, 0, 0, 4, 0, pixels.data()};
    const ControlPointCorners page = {{120, 680, 680, 120}, {80, 80, 520, 520}}, desk = {{0, 90, 90, 0}, {0, 0, 599, 599}};
    void* handle = create_image_quality_evaluator();
    const double whole = evaluate_image_quality(handle, &image);
    EXPECT_GT(whole, 0.9);
    EXPECT_EQ(evaluate_image_quality_given_corners(handle, &image, &page), whole);
    EXPECT_EQ(evaluate_image_quality_given_corners(handle, &image, &desk), 0.0);
    EXPECT_EQ(evaluate_image_quality_given_corners(handle, &image, NULL), whole);
    EXPECT_EQ(evaluate_image_quality(handle, &image), whole);
    EXPECT_EQ(support::thrown_text<const char*>([&] { evaluate_image_quality(handle, &bgra); }),
              "BGRA to grey level conversion nog implemented yet in common");
    destroy_image_quality_evaluator(handle);
    destroy_image_quality_evaluator(NULL);
}

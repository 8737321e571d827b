// Calculator queries: contours, the largest blob of a point set, scale maps.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/basic_image.h"
#include "components/connected_component_calculator.h"
#include "support/images.h"

using support::binary_from_text;

using namespace geometric;

namespace {

bool same_pixels(const common::BasicImage& a, const common::BasicImage& b) {
    for (int y = 0; y < a.get_height(); ++y)
        for (int x = 0; x < a.get_width(); ++x)
            if (a.get_pixel(x, y) != b.get_pixel(x, y)) return false;
    return true;
}

bool is_blank(const common::BasicImage& image) {
    for (int y = 0; y < image.get_height(); ++y)
        for (int x = 0; x < image.get_width(); ++x)
            if (image.get_pixel(x, y) != 0) return false;
    return true;
}

}  // namespace

TEST(ConnectedComponentQueries, EmptyImageAndOnePixelComponent) {
    const common::BasicImage empty(4, 9, common::BINARY);
    ConnectedComponentCalculator calculator;
    std::vector<int> labels;
    calculator.calculate_label_image(empty, labels, 2);
    EXPECT_EQ(labels, std::vector<int>(13 * 8, 0));
    std::vector<Geocoordinate<int>> points;
    calculator.obtain_blob_contours_one_by_one(empty, points);
    EXPECT_TRUE(points.empty());
    EXPECT_TRUE(calculator.isemptyblob());
    Geobox<int> box{9, 9, 9, 9};
    EXPECT_EQ(calculator.calculate_largest_blob_bounding_box(box), 0);
    EXPECT_EQ(box.right, 9);

    ConnectedComponentCalculator single;
    single.obtain_blob_contours_one_by_one(binary_from_text({"....", "..#.", "...."}), points);
    ASSERT_EQ(points.size(), 1u);
    EXPECT_EQ(points[0].x + 10 * points[0].y, 12);
}

TEST(ConnectedComponentQueries, ContoursAreConcatenatedInComponentOrder) {
    const common::BasicImage image = binary_from_text({"##..#", "##..."});
    ConnectedComponentCalculator calculator;
    std::vector<Geocoordinate<int>> points;
    calculator.obtain_blob_contours_one_by_one(image, points);
    std::vector<std::pair<int, int>> got;
    for (const auto& p : points) got.emplace_back(p.x, p.y);
    EXPECT_EQ(got, (std::vector<std::pair<int, int>>{{0, 0}, {1, 0}, {1, 1}, {0, 1}, {4, 0}}));
}

TEST(ConnectedComponentQueries, LargestComponentOfAPointSetIsMadeOfUnlistedPixels) {
    // The outline of a 5 x 5 square at (10, 20): the listed points are
    // background, the 3 x 3 inside is the component.
    std::vector<int> xs, ys;
    for (int i = 0; i < 5; ++i) {
        for (int j = 0; j < 5; ++j) {
            if (i == 0 || j == 0 || i == 4 || j == 4) {
                xs.push_back(10 + i);
                ys.push_back(20 + j);
            }
        }
    }
    ConnectedComponentCalculator calculator;
    Geobox<int> box;
    std::vector<int> out_xs, out_ys;
    EXPECT_EQ(calculator.calculate_largest_blob_bounding_box(xs, ys, box, out_xs, out_ys), 9u);
    EXPECT_EQ(std::vector<int>({box.left, box.right, box.top, box.bottom}), std::vector<int>({11, 13, 21, 23}));
    EXPECT_EQ(out_xs, (std::vector<int>{11, 12, 13, 11, 12, 13, 11, 12, 13}));
    EXPECT_EQ(out_ys, (std::vector<int>{21, 21, 21, 22, 22, 22, 23, 23, 23}));

    // Every pixel of a solid rectangle listed: no foreground at all.
    std::vector<int> solid_xs, solid_ys;
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) {
            solid_xs.push_back(x + 5);
            solid_ys.push_back(y);
        }
    ConnectedComponentCalculator solid;
    out_xs.clear();
    out_ys.clear();
    EXPECT_EQ(solid.calculate_largest_blob_bounding_box(solid_xs, solid_ys, box, out_xs, out_ys), 0u);
    EXPECT_TRUE(out_xs.empty());
}

namespace {

// Level 1 over base 0: a one-pixel blob (under the minimum), a flat bar of
// 4 x 1 and a block of 3 x 2 (over the maximum).
const std::vector<std::string> kScaleBinary = {"#.......", "........", "..####..",
                                               "........", ".....###", ".....###"};

struct ScaleRun {
    int result;
    common::BasicImage binary;
    common::BasicImage scale;
};

ScaleRun run_scale(bool only, bool use_height) {
    ScaleRun run{0, binary_from_text(kScaleBinary), common::BasicImage(12, 16, common::GRAY)};
    ConnectedComponentCalculator calculator;
    run.result = only ? calculator.create_scale_img_only(1, run.scale, run.binary, 0, 4, use_height, 5.0, 2.0)
                      : calculator.create_scale_img(1, run.scale, run.binary, 0, 4, use_height, 5.0, 2.0);
    return run;
}

}  // namespace

TEST(ConnectedComponentQueries, ScaleImagesEraseOrKeepTheComponentsOutOfRange) {
    for (bool only : {false, true}) {
        const ScaleRun by_width = run_scale(only, false);
        EXPECT_EQ(by_width.result, 1);
        // The bar is 4 wide, at least 4 / 2: drawn as 2 x 2 blocks of level + 1.
        for (int y = 0; y < 12; ++y)
            for (int x = 0; x < 16; ++x)
                EXPECT_EQ(by_width.scale.get_pixel(x, y), (y >= 4 && y < 6 && x >= 4 && x < 12) ? 2u : 0u);
        // Only create_scale_img erases the dot and the block from the binary image.
        std::vector<std::string> kept = kScaleBinary;
        if (!only) kept = {"........", "........", "..####..", "........", "........", "........"};
        EXPECT_TRUE(same_pixels(by_width.binary, binary_from_text(kept))) << only;

        // By height the bar (1 < 2) is erased by both and nothing is drawn.
        const ScaleRun by_height = run_scale(only, true);
        EXPECT_EQ(by_height.result, 1);
        EXPECT_TRUE(is_blank(by_height.scale));
        EXPECT_EQ(by_height.binary.get_pixel(3, 2), 0u);
        EXPECT_EQ(by_height.binary.get_pixel(0, 0), only ? 1u : 0u);
    }
}

TEST(ConnectedComponentQueries, ScaleImageLevelsOutsideTheTablesThrow) {
    common::BasicImage binary = binary_from_text({"#."});
    common::BasicImage scale(64, 64, common::GRAY);
    ConnectedComponentCalculator a, b, c, d;
    EXPECT_THROW(a.create_scale_img(6, scale, binary, 0, 1, true, 9.0, 0.0), const char*);
    EXPECT_THROW(b.create_scale_img(1, scale, binary, 2, 1, true, 9.0, 0.0), const char*);
    EXPECT_THROW(c.create_scale_img_only(5, scale, binary, 0, 1, true, 9.0, 0.0), const char*);
    // Level 5 over base 1 is served by create_scale_img_only but draws nothing.
    EXPECT_EQ(d.create_scale_img_only(5, scale, binary, 1, 1, true, 9.0, 0.0), 0);
    EXPECT_TRUE(is_blank(scale));
    ConnectedComponentCalculator e;
    EXPECT_EQ(e.create_scale_img(5, scale, binary, 0, 1, true, 9.0, 0.0), 0);
    EXPECT_EQ(scale.get_pixel(31, 31), 6u);
    EXPECT_EQ(scale.get_pixel(32, 0), 0u);
}

// The corrector family through the shared library: refusals, the boundary's
// codes, the page found by its edges, rectification with the caller's corners, fill colour, and the
// functions that answer without searches.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "morvane/morvane.h"

namespace {

// A gray image in a buffer of the caller's: a page to read or an output of
// the size the handle asks for.
struct Buffer {
    std::vector<unsigned char> pixels;
    ImageCApi record;

    Buffer(int width, int height, int channels, unsigned char value)
        : pixels(static_cast<size_t>(width) * height * channels, value),
          record{width, height, 0, 0, channels, 0, pixels.data()} {}
};

}  // namespace

TEST(CorrectorFamily, DestroyAcceptsNull) { destroy_corrector(NULL); }

TEST(CorrectorFamily, RefusalsAtTheExactLimits) {
    struct Case { int height, width; bool accepted; };
    const Case cases[] = {{100, 700, true}, {100, 800, false}, {10, 20, true}, {9, 20, false}};
    for (const Case& c : cases) {
        Buffer page(c.width, c.height, 1, 200);
        void* program = corrector_create();
        void* edges = corrector_create();
        // Accepted images reach the searches, which find nothing yet: 3.
        // Refused ones end run_projective_correction with 0 and read 3 on
        // the edge-only path.
        EXPECT_EQ(run_projective_correction(program, &page.record), c.accepted ? 3 : 0) << c.height << " x " << c.width;
        EXPECT_EQ(run_edge_searching(edges, &page.record), 3) << c.height << " x " << c.width;
        destroy_corrector(program);
        destroy_corrector(edges);
    }
}

TEST(CorrectorFamily, FourChannelImageEndsTheProgramButThrowsFromTheEdgeSearch) {
    std::vector<unsigned char> pixels(30 * 30 * 4, 255);
    const ImageCApi bgra = {30, 30, 0, 0, 4, 0, pixels.data()};
    void* handle = corrector_create();
    EXPECT_EQ(run_projective_correction(handle, &bgra), 0);
    try {
        run_edge_searching(handle, &bgra);
        ADD_FAILURE() << "no exception";
    } catch (const char* text) {
        EXPECT_STREQ(text, "BGRA to grey level conversion nog implemented yet in common");
    }
    destroy_corrector(handle);
}

TEST(CorrectorFamily, EdgeThenFeatureSearchAnswerNoUsableResult) {
    Buffer page(80, 60, 1, 200);
    void* handle = corrector_create();
    set_registration_method(handle, 0);
    EXPECT_EQ(run_edge_searching(handle, &page.record), 3);
    EXPECT_EQ(run_feature_searching(handle), 3);
    ControlPointCorners corners;
    obtain_four_corners(handle, &corners);
    const ControlPointCorners whole = {{0, 79, 79, 0}, {0, 0, 59, 59}};
    EXPECT_EQ(std::memcmp(&corners, &whole, sizeof corners), 0);
    destroy_corrector(handle);
}

// A bright page with rows of dark marks on a darker, slightly noisy desk.
Buffer page_photo(int width, int height, int left, int top, int right, int bottom) {
    Buffer photo(width, height, 1, 0);
    unsigned state = 99u;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            state = state * 1664525u + 1013904223u;
            const bool page = x >= left && x <= right && y >= top && y <= bottom;
            const bool mark = page && (y - top) % 30 > 22 && (x - left) % 14 < 9 && x > left + 40 && x < right - 40 &&
                              y > top + 40 && y < bottom - 40;
            photo.pixels[static_cast<size_t>(y) * width + x] =
                static_cast<unsigned char>((mark ? 40 : page ? 205 : 70) + static_cast<int>(state >> 29) - 3);
        }
    return photo;
}

TEST(CorrectorFamily, FindsAPageByItsEdgesInBothModes) {
    const Buffer photo = page_photo(800, 600, 120, 80, 679, 519);
    const int expected_x[4] = {120, 679, 679, 120}, expected_y[4] = {80, 80, 519, 519};
    for (int method : {1, 0}) {
        void* handle = corrector_create();
        set_registration_method(handle, method);
        const int code = method == 0 ? run_edge_searching(handle, &photo.record)
                                     : run_projective_correction(handle, &photo.record);
        EXPECT_TRUE(code == 1 || code == 2) << method << ": " << code;
        ControlPointCorners corners;
        obtain_four_corners(handle, &corners);
        for (int k = 0; k < 4; ++k) {
            EXPECT_NEAR(corners.x[k], expected_x[k], 4) << method << " corner " << k;
            EXPECT_NEAR(corners.y[k], expected_y[k], 4) << method << " corner " << k;
        }
        destroy_corrector(handle);
    }
}

TEST(CorrectorFamily, RectifiesWithTheCallersCornersLikeTheFreeFunction) {
    Buffer page(70, 50, 1, 0);
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 70; ++x) page.pixels[static_cast<size_t>(y) * 70 + x] = static_cast<unsigned char>(x * 3 + y);
    const ControlPointCorners corners = {{-4, 60, 66, 1}, {2, 5, 47, 44}};

    void* handle = corrector_create();
    int width = 0, height = 0;
    obtain_corrected_img_dimension_given_corners(handle, &corners, &width, &height);
    int free_width = 0, free_height = 0;
    obtain_output_image_dimension(&corners, &free_width, &free_height);
    EXPECT_EQ(width, free_width);
    EXPECT_EQ(height, free_height);

    Buffer mine(width, height, 1, 1);
    obtain_corrected_image_given_corners(handle, &page.record, &corners, &mine.record);
    EXPECT_EQ(mine.record.x_resolution, 300);
    EXPECT_EQ(mine.record.data, mine.pixels.data());
    Buffer plain(width, height, 1, 1);
    perform_projective_correction(&corners, &page.record, &plain.record);
    EXPECT_EQ(mine.pixels, plain.pixels);

    // Determinism: the same call again gives the same bytes.
    Buffer again(width, height, 1, 1);
    obtain_corrected_image_given_corners(handle, &page.record, &corners, &again.record);
    EXPECT_EQ(again.pixels, mine.pixels);
    destroy_corrector(handle);
}

TEST(CorrectorFamily, FillColourFromTheCallerIsKeptByPointer) {
    Buffer page(40, 40, 1, 200);
    const ControlPointCorners corners = {{-10, 30, 30, 2}, {-10, 3, 30, 35}};
    void* handle = corrector_create();
    unsigned char colour[1] = {7};
    set_filling_color(handle, colour);
    set_filling_color(handle, NULL);  // ignored: the colour above stays
    int width = 0, height = 0;
    obtain_corrected_img_dimension_given_corners(handle, &corners, &width, &height);
    Buffer first(width, height, 1, 1);
    obtain_corrected_image_given_corners(handle, &page.record, &corners, &first.record);
    EXPECT_EQ(first.pixels[0], 7);
    colour[0] = 11;
    Buffer second(width, height, 1, 1);
    obtain_corrected_image(handle, &second.record);
    EXPECT_EQ(second.pixels[0], 11);
    destroy_corrector(handle);
}

TEST(CorrectorFamily, CorrectionAfterARunUsesTheWholeImage) {
    Buffer page(60, 40, 1, 123);
    void* handle = corrector_create();
    ASSERT_EQ(run_projective_correction(handle, &page.record), 3);
    int width = 0, height = 0;
    obtain_corrected_img_dimension(handle, &width, &height);
    EXPECT_EQ(width, 60);
    EXPECT_EQ(height, 40);
    Buffer output(width, height, 1, 1);
    obtain_corrected_image(handle, &output.record);
    const ControlPointCorners whole = {{0, 59, 59, 0}, {0, 0, 39, 39}};
    Buffer plain(width, height, 1, 1);
    perform_projective_correction(&whole, &page.record, &plain.record);
    EXPECT_EQ(output.pixels, plain.pixels);
    destroy_corrector(handle);
}

TEST(CorrectorFamily, DownSampledVariantsWaitForARun) {
    Buffer page(1000, 3001, 1, 90);
    void* handle = corrector_create();
    int width = 0, height = 0;
    obtain_downsampled_corrected_img_dimension(handle, &width, &height);
    EXPECT_EQ(width, 0);  // nothing bound yet: the empty input's size
    Buffer untouched(4, 4, 1, 1);
    obtain_downsampled_corrected_image(handle, &untouched.record);
    EXPECT_EQ(untouched.pixels, std::vector<unsigned char>(16, 1));

    run_projective_correction(handle, &page.record);
    obtain_downsampled_corrected_img_dimension(handle, &width, &height);
    EXPECT_EQ(width, 501);
    EXPECT_EQ(height, 1501);
    Buffer small(width, height, 1, 1);
    obtain_downsampled_corrected_image(handle, &small.record);
    // Linear sampling cuts toward zero: a flat page may lose one level.
    EXPECT_NEAR(small.pixels[static_cast<size_t>(700) * width + 250], 90, 1);
    destroy_corrector(handle);
}

TEST(CorrectorFamily, ResolutionAndVanishingPointsWithoutSearches) {
    Buffer page(60, 40, 1, 200);
    Buffer other(30, 30, 1, 200);
    void* handle = corrector_create();
    int resolution = 0;
    estimate_spatial_resolution(handle, &other.record, &resolution);  // never ran
    EXPECT_EQ(resolution, 300);
    run_projective_correction(handle, &page.record);
    resolution = 0;
    estimate_spatial_resolution(handle, &page.record, &resolution);  // the run's own image
    EXPECT_EQ(resolution, 300);

    VanishingPointsCApi points;
    std::memset(&points, 0xFF, sizeof points);
    EXPECT_EQ(obtain_vanishing_point(handle, &points), 0);
    EXPECT_EQ(points.horizontal_is_valid, 0);
    EXPECT_EQ(points.vertical_is_valid, 0);
    EXPECT_EQ(points.vertical_angle, 90.0f);
    destroy_corrector(handle);
}

TEST(CorrectorFamily, BinarizesWithSauvolaIntoTheCallersBuffer) {
    // A dark square (gray 20) on paper (gray 220), 100 columns: 16 bytes a row.
    Buffer page(100, 80, 1, 220);
    for (int y = 30; y < 50; ++y)
        for (int x = 40; x < 60; ++x) page.pixels[static_cast<size_t>(y) * 100 + x] = 20;
    std::vector<unsigned char> bits(80 * 16, 0xAA);
    ImageCApi output = {100, 80, 0, 0, 1, 1, bits.data()};
    void* corrector = corrector_create();
    set_binarization_window(corrector, 35);
    set_binarization_k(corrector, 0.2f);
    obtain_binarized_corrected_image(corrector, &page.record, &output);
    EXPECT_EQ(output.data, bits.data());
    EXPECT_EQ(output.is_binary, 1);
    EXPECT_EQ(output.x_resolution, 300);
    for (int y = 0; y < 80; ++y)
        for (int x = 0; x < 100; ++x) {
            const bool ink = (bits[static_cast<size_t>(y) * 16 + x / 8] >> (7 - x % 8)) & 1;
            // The smoothing blurs the square's outline by a pixel, and its
            // box lags a line, so the ruling is kept two pixels off the edge.
            const bool inside = y >= 32 && y < 48 && x >= 42 && x < 58;
            const bool outside = y < 28 || y >= 52 || x < 38 || x >= 62;
            if (inside || outside) {
                ASSERT_EQ(ink, inside) << x << "," << y;
            }
        }
    destroy_corrector(corrector);
}

TEST(CorrectorFamily, BinarizationRefusals) {
    Buffer page(40, 40, 1, 120);
    std::vector<unsigned char> bits(40 * 8, 0);
    ImageCApi output = {40, 40, 0, 0, 1, 1, bits.data()};
    ImageCApi wrong_size = {39, 40, 0, 0, 1, 1, bits.data()};
    ImageCApi gray_output = {40, 40, 0, 0, 1, 0, page.pixels.data()};
    std::vector<unsigned char> four(40 * 40 * 4, 0);
    ImageCApi bgra = {40, 40, 0, 0, 4, 0, four.data()};
    void* corrector = corrector_create();
    EXPECT_THROW(obtain_binarized_corrected_image(corrector, &page.record, &wrong_size), const char*);
    EXPECT_THROW(obtain_binarized_corrected_image(corrector, &page.record, &gray_output), const char*);
    EXPECT_THROW(obtain_binarized_corrected_image(corrector, &bgra, &output), const char*);
    set_binarization_method(corrector, 1);
    EXPECT_THROW(obtain_binarized_corrected_image(corrector, &page.record, &output), const char*);
    destroy_corrector(corrector);
}

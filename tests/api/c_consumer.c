/* A C99 caller of the library: the header compiles as C, the record layouts
 * are the documented ones, and the flat functions link and answer. */
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "morvane/morvane.h"

/* C99 has no static assertion: a negative array size stops the build. */
#define LAYOUT(condition, name) typedef char layout_##name[(condition) ? 1 : -1]

LAYOUT(sizeof(ImageCApi) == 32, image_size);
LAYOUT(offsetof(ImageCApi, channels) == 16, image_channels);
LAYOUT(offsetof(ImageCApi, is_binary) == 20, image_is_binary);
LAYOUT(offsetof(ImageCApi, data) == 24, image_data);
LAYOUT(sizeof(ControlPointCorners) == 32, corners_size);
LAYOUT(offsetof(ControlPointCorners, y) == 16, corners_y);
LAYOUT(sizeof(VanishingPointsCApi) == 64, vanishing_size);
LAYOUT(offsetof(VanishingPointsCApi, horizontal_point) == 8, vanishing_hpoint);
LAYOUT(offsetof(VanishingPointsCApi, horizontal_angle) == 28, vanishing_hangle);
LAYOUT(offsetof(VanishingPointsCApi, vertical_point) == 40, vanishing_vpoint);
LAYOUT(offsetof(VanishingPointsCApi, vertical_angle) == 60, vanishing_vangle);

static int failures = 0;
static int checks = 0;

static void expect_text(const char* got, const char* want) {
    ++checks;
    if (strcmp(got, want) != 0) {
        printf("expected \"%s\", got \"%s\"\n", want, got);
        ++failures;
    }
}

static void expect_int(int got, int want, const char* what) {
    ++checks;
    if (got != want) {
        printf("%s: expected %d, got %d\n", what, want, got);
        ++failures;
    }
}

/* A small gray image rectified with its own corners keeps its size; the
 * first column is copied and the last column repeats the one before. */
static void check_own_corner_rectification(void) {
    enum { W = 12, H = 9 };
    unsigned char input[W * H];
    unsigned char output[W * H];
    ControlPointCorners corners = {{0, W - 1, W - 1, 0}, {0, 0, H - 1, H - 1}};
    ImageCApi in = {W, H, 0, 0, 1, 0, NULL};
    ImageCApi out = {W, H, 0, 0, 1, 0, NULL};
    int width = 0, height = 0, i;
    for (i = 0; i < W * H; ++i) input[i] = (unsigned char)(i * 7 + 3);
    memset(output, 0, sizeof output);
    in.data = input;
    out.data = output;
    expect_int(obtain_output_image_dimension(&corners, &width, &height), 0, "dimension result");
    expect_int(width, W, "width");
    expect_int(height, H, "height");
    expect_int(perform_projective_correction(&corners, &in, &out), 0, "correction result");
    expect_int(out.x_resolution, 300, "x resolution");
    expect_int(output[0], input[0], "top-left pixel");
    expect_int(output[W - 1], input[W - 2], "top-right pixel");
}

/* A bright square on black: the detector finds its four sides. */
static void expect_line_segments(void) {
    static unsigned char pixels[64 * 64];
    ImageCApi image;
    void* lsd = lsd_create();
    double* lines;
    int count = -1;
    int x, y;
    for (y = 16; y < 48; ++y)
        for (x = 16; x < 48; ++x) pixels[y * 64 + x] = 255;
    memset(&image, 0, sizeof image);
    image.width = 64;
    image.height = 64;
    image.channels = 1;
    image.data = pixels;
    lines = search_for_line_segments(lsd, &image, &count);
    expect_int(count, 4, "line segments");
    expect_int(lines != NULL, 1, "line segment array");
    clean_lines(lines);
    destroy_lsd(lsd);
    destroy_lsd(NULL);
}

/* A corrector on a flat gray page: the searches find nothing yet (3), and the
 * corners reported are the whole image. */
static void check_corrector(void) {
    enum { W = 40, H = 30 };
    static unsigned char pixels[W * H];
    ImageCApi image = {W, H, 0, 0, 1, 0, NULL};
    ControlPointCorners corners;
    void* corrector = corrector_create();
    int width = 0, height = 0;
    memset(pixels, 200, sizeof pixels);
    image.data = pixels;
    expect_int(run_projective_correction(corrector, &image), 3, "corrector run");
    obtain_four_corners(corrector, &corners);
    expect_int(corners.x[2], W - 1, "bottom-right x");
    expect_int(corners.y[2], H - 1, "bottom-right y");
    obtain_corrected_img_dimension(corrector, &width, &height);
    expect_int(width, W, "corrected width");
    destroy_corrector(corrector);
    destroy_corrector(NULL);
}

/* Two blobs in a bitonal record (rows of one 32-bit word): a 2 x 2 square
 * and a dot. Labels, sizes and contours come back in the caller's arrays. */
static void check_blob_calculator(void) {
    unsigned char bits[3 * 4];
    int labels[5 * 7];
    int heights[2], widths[2];
    int* xs = NULL;
    int* ys = NULL;
    ImageCApi image = {5, 3, 0, 0, 1, 1, NULL};
    void* calculator = create_blob_calculator();
    memset(bits, 0, sizeof bits);
    bits[0] = 0xC0; /* ##... */
    bits[4] = 0xC0; /* ##... */
    bits[8] = 0x08; /* ....# */
    image.data = bits;
    set_neighborhood(calculator, 8);
    expect_int(perform_blob_formulation(calculator, &image), 2, "blob count");
    calculate_label_image(calculator, &image, labels, 1);
    expect_int(labels[0], 0, "label of the frame");
    expect_int(labels[1 * 7 + 1], 1, "label of the square");
    expect_int(labels[3 * 7 + 5], 2, "label of the dot");
    obtain_blob_dimension_histogram(calculator, &image, heights, widths);
    expect_int(heights[0] * 10 + widths[0], 22, "size of the square");
    expect_int(obtain_blob_contours_one_by_one(calculator, &image, &xs, &ys, malloc), 5, "contour points");
    expect_int(xs[4] * 10 + ys[4], 42, "contour of the dot");
    free(xs);
    free(ys);
    delete_blob_calculator(calculator);
    delete_blob_calculator(NULL);
}

int main(void) {
    expect_text(morvane_get_version_number(), "version of library: 16.1.8.9");
    expect_text(morvane_get_branch_name(), "git branch: version_16.1.8.xx");
    expect_text(morvane_get_sha(), "git sha: 85f81e8fe173efda1e5b0ddcfa2630298ac03c14");
    check_own_corner_rectification();
    expect_line_segments();
    check_corrector();
    check_blob_calculator();
    printf("%d checks, %d failed\n", checks, failures);
    return failures == 0 ? 0 : 1;
}

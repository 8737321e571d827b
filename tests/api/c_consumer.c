/* A C99 caller of the library: the header compiles as C, the record layouts
 * are the documented ones, and the flat functions of each family link and answer. */
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "morvane/morvane.h"

/* C99 has no static assertion: a negative array size stops the build. */
#define LAYOUT(condition, name) typedef char layout_##name[(condition) ? 1 : -1]

LAYOUT(sizeof(ImageCApi) == 32 && offsetof(ImageCApi, channels) == 16 && offsetof(ImageCApi, is_binary) == 20 &&
           offsetof(ImageCApi, data) == 24,
       image);
LAYOUT(sizeof(ControlPointCorners) == 32 && offsetof(ControlPointCorners, y) == 16, corners);
LAYOUT(sizeof(VanishingPointsCApi) == 64 && offsetof(VanishingPointsCApi, horizontal_point) == 8 &&
           offsetof(VanishingPointsCApi, horizontal_angle) == 28 && offsetof(VanishingPointsCApi, vertical_point) == 40 &&
           offsetof(VanishingPointsCApi, vertical_angle) == 60,
       vanishing_points);

static int failures = 0;

static void expect(int condition, const char* what) {
    if (!condition) {
        printf("failed: %s\n", what);
        ++failures;
    }
}

int main(void) {
    enum { W = 64, H = 48 };
    static unsigned char pixels[W * H], output[W * H];
    unsigned char bits[3 * 4] = {0xC0, 0, 0, 0, 0xC0, 0, 0, 0, 0x08, 0, 0, 0}; /* ##... / ##... / ....# */
    ImageCApi image = {W, H, 0, 0, 1, 0, pixels};
    ImageCApi out = {W, H, 0, 0, 1, 0, output};
    ImageCApi binary = {5, 3, 0, 0, 1, 1, bits};
    ControlPointCorners corners = {{0, W - 1, W - 1, 0}, {0, 0, H - 1, H - 1}};
    void *lsd = lsd_create(), *corrector = corrector_create(), *calculator = create_blob_calculator();
    double* lines;
    int* xs = NULL;
    int* ys = NULL;
    int width = 0, height = 0, count = -1, x, y;

    expect(strcmp(morvane_get_version_number(), "version of library: 16.1.8.9") == 0, "version");
    expect(strcmp(morvane_get_branch_name(), "git branch: version_16.1.8.xx") == 0, "branch");
    expect(strcmp(morvane_get_sha(), "git sha: 85f81e8fe173efda1e5b0ddcfa2630298ac03c14") == 0, "sha");

    /* A black image holds no page: the corners are the whole image. */
    expect(run_projective_correction(corrector, &image) == 3, "corrector run without a page");
    obtain_four_corners(corrector, &corners);
    expect(corners.x[2] == W - 1 && corners.y[2] == H - 1, "the whole image");

    /* A bright square on black, rectified with the image's own corners. */
    for (y = 12; y < 36; ++y)
        for (x = 16; x < 48; ++x) pixels[y * W + x] = 255;
    expect(obtain_output_image_dimension(&corners, &width, &height) == 0 && width == W && height == H, "size");
    expect(perform_projective_correction(&corners, &image, &out) == 0 && out.x_resolution == 300, "correction");
    expect(output[0] == pixels[0] && output[W - 1] == pixels[W - 2], "own corners copy the edges");

    lines = search_for_line_segments(lsd, &image, &count);
    expect(count == 4 && lines != NULL, "the square's four sides");
    clean_lines(lines);

    expect(perform_blob_formulation(calculator, &binary) == 2, "blob count");
    expect(obtain_blob_contours_one_by_one(calculator, &binary, &xs, &ys, malloc) == 5, "contour points");
    expect(xs[4] == 4 && ys[4] == 2, "contour of the dot");
    free(xs);
    free(ys);

    destroy_lsd(lsd);
    destroy_corrector(corrector);
    delete_blob_calculator(calculator);
    destroy_lsd(NULL);
    destroy_corrector(NULL);
    delete_blob_calculator(NULL);
    printf("%d failed\n", failures);
    return failures == 0 ? 0 : 1;
}

/* A C99 caller of the library: the header compiles as C, the record layouts
 * are the documented ones, and the flat functions link and answer. */
#include <stddef.h>
#include <stdio.h>
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

static void expect_text(const char* got, const char* want) {
    if (strcmp(got, want) != 0) {
        printf("expected \"%s\", got \"%s\"\n", want, got);
        ++failures;
    }
}

int main(void) {
    expect_text(morvane_get_version_number(), "version of library: 16.1.8.9");
    expect_text(morvane_get_branch_name(), "git branch: version_16.1.8.xx");
    expect_text(morvane_get_sha(), "git sha: 85f81e8fe173efda1e5b0ddcfa2630298ac03c14");
    printf("%d passed, %d failed\n", 3 - failures, failures);
    return failures == 0 ? 0 : 1;
}

/*
 * morvane: finds the four corners of a photographed or scanned page and
 * straightens it. The one public header: plain records and flat functions.
 *
 * Conventions, once for the whole interface:
 * - Pixels: origin at the top-left pixel, x to the right, y down.
 * - Corners always run top-left, top-right, bottom-right, bottom-left, in
 *   pixels of the full-size input image.
 * - Images cross the boundary as ImageCApi records. The library reads the
 *   caller's buffer in place: it never copies it without need and never
 *   frees it. A bound input must stay valid until the last call that reads it.
 * - Handles are opaque; each family has a create and a destroy function, and
 *   every destroy function accepts NULL. No function validates handles.
 * - Failures: functions that can find nothing answer 0 or a negative code.
 *   Resource and type failures leave the C++ functions as C++ exceptions
 *   (of type int, const char* or std::string); a C++ caller that must survive
 *   every failure surrounds the calls itself. The library never prints,
 *   never exits, starts no threads and keeps no state between handles.
 */
#ifndef MORVANE_MORVANE_H
#define MORVANE_MORVANE_H

#if defined(__GNUC__)
#define MORVANE_API __attribute__((visibility("default")))
#else
#define MORVANE_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------ */
/* Records                                                                   */
/* ------------------------------------------------------------------------ */

/*
 * An image crossing the interface, 32 bytes.
 * Rows follow each other without a gap, row 0 at the top:
 * - is_binary != 0: 1 bit a pixel, most significant bit leftmost, a set bit
 *   is ink; rows padded to whole 32-bit words (width / 32 * 4 bytes, plus 4
 *   when width is not a multiple of 32).
 * - otherwise by channels: 3 is RGB (3 bytes a pixel, red first), 4 is four
 *   bytes a pixel, and any other value (1 and 0 included) is 8-bit gray.
 * Every image entering the library counts as 300 dots per inch: the
 * resolutions are written on the way out and ignored on the way in.
 */
typedef struct ImageCApi {
    int width;            /* columns */
    int height;           /* rows */
    int x_resolution;     /* dots per inch, output only */
    int y_resolution;     /* dots per inch, output only */
    int channels;         /* 1, 3 or 4 */
    int is_binary;        /* non-zero: 1-bit image */
    unsigned char* data;  /* first pixel of row 0 */
} ImageCApi;

/* Four corners, 32 bytes: x[i], y[i] for top-left, top-right, bottom-right,
 * bottom-left, in full-size input pixels. */
typedef struct ControlPointCorners {
    int x[4];
    int y[4];
} ControlPointCorners;

/* The vanishing points of a corrected page, 64 bytes. A point at infinity is
 * never stored: a parallel direction is a flag and an angle in degrees. */
typedef struct VanishingPointsCApi {
    int horizontal_is_valid;      /* the horizontal direction has a vanishing point */
    double horizontal_point[2];   /* x, y in full-size image coordinates */
    int horizontal_is_parallel;   /* the direction is parallel; horizontal_angle holds */
    float horizontal_angle;       /* degrees */
    int vertical_is_valid;
    double vertical_point[2];
    int vertical_is_parallel;
    float vertical_angle;         /* degrees; 90.0 when nothing was found */
} VanishingPointsCApi;

/* ------------------------------------------------------------------------ */
/* Version family: constant texts, never freed by the caller.               */
/* ------------------------------------------------------------------------ */

/* "version of library: 16.1.8.9" */
MORVANE_API const char* morvane_get_version_number(void);
/* "git branch: version_16.1.8.xx" */
MORVANE_API const char* morvane_get_branch_name(void);
/* "git sha: 85f81e8fe173efda1e5b0ddcfa2630298ac03c14" */
MORVANE_API const char* morvane_get_sha(void);

/* ------------------------------------------------------------------------ */
/* Free functions: rectification from given corners, no handle.             */
/* ------------------------------------------------------------------------ */

/* ---- free functions ---- */

/* ------------------------------------------------------------------------ */
/* Corrector family                                                          */
/* ------------------------------------------------------------------------ */

/* ---- corrector family ---- */

/* ------------------------------------------------------------------------ */
/* Corner search family                                                      */
/* ------------------------------------------------------------------------ */

/* ---- corner search family ---- */

/* ------------------------------------------------------------------------ */
/* Image-quality evaluator family                                            */
/* ------------------------------------------------------------------------ */

/* ---- evaluator family ---- */

/* ------------------------------------------------------------------------ */
/* Blob calculator family                                                    */
/* ------------------------------------------------------------------------ */

/* ---- blob calculator family ---- */

/* ------------------------------------------------------------------------ */
/* Line segment family                                                       */
/* ------------------------------------------------------------------------ */

/* ---- line segment family ---- */

#ifdef __cplusplus
}
#endif

#endif /* MORVANE_MORVANE_H */

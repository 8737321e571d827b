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

/*
 * Rectifies the quadrilateral of the input image given by four corners into
 * a rectangle: a projective warp (bilinear sampling for gray and RGB, nearest
 * for 1-bit images) into the caller's output buffer.
 *
 * corners: the page corners in input pixels, top-left, top-right,
 *          bottom-right, bottom-left; they may lie outside the image.
 * input:   the image to rectify; read in place, never changed or freed.
 *          Gray (channels 1), RGB (channels 3) or 1-bit (is_binary != 0);
 *          a four-channel image is warped on its first byte only and fails
 *          when the corners leave the image.
 * output:  allocated by the caller, of the width and height that
 *          obtain_output_image_dimension gives for these corners, and of the
 *          input's kind (same channels and is_binary). Rows follow each other
 *          without a gap: width bytes for gray, 3 * width for RGB (red
 *          first), and for 1-bit images width / 32 * 4 bytes, plus 4 when
 *          width is not a multiple of 32 (most significant bit leftmost, a
 *          set bit is ink; a warped gray value of 128 or less becomes ink).
 *          On return the resolutions are set to 300 and data still points to
 *          the caller's buffer.
 * Output pixels whose source lies outside the input get the paper colour,
 * estimated from strips just inside the page's edges.
 * Returns 0. Failures leave as C++ exceptions (a C caller cannot catch
 * them): const char* "output image does not match the corrected image
 * dimensions or the input type" when output has another size or kind,
 * "error while allocating image, could not allocate enough memory" for a
 * 1-bit image without memory for the gray scratch image, and "UNKNOWN and
 * BGRA types are not handled in fct get_pixel_pointer" when a four-channel
 * image needs a fill colour.
 */
MORVANE_API int perform_projective_correction(const ControlPointCorners* corners, const ImageCApi* input, ImageCApi* output);

/*
 * The size of the rectified image for the given corners (top-left,
 * top-right, bottom-right, bottom-left, input pixels): the mean length of
 * opposite sides plus one, rounded,
 *   width  = (int)(0.5 |c0 c1| + 0.5 |c3 c2| + 1.5)
 *   height = (int)(0.5 |c0 c3| + 0.5 |c1 c2| + 1.5),
 * so that an image's own corners give the image's size.
 * width, height: receive the size in pixels, at least 1.
 * Returns 0; throws nothing.
 */
MORVANE_API int obtain_output_image_dimension(const ControlPointCorners* corners, int* width, int* height);

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

/*
 * A line segment detector with a-contrario validation, followed by a pass
 * that links collinear segments whose ends lie within 5 pixels of each
 * other. Fixed settings: the image is first scaled by 0.8 under a Gaussian
 * of sigma 0.6 / 0.8, angle tolerance 22.5 degrees, gradient quantisation
 * 2.0, detection threshold log10(NFA) 0.0, density 0.7, 1024 bins; linking
 * tolerance 7 degrees, linked segments validated again at threshold 0.0.
 * A handle holds settings only: two handles may run in two threads.
 */

/* A new detector with the settings above. Free it with destroy_lsd. */
MORVANE_API void* lsd_create(void);

/*
 * Detects the line segments of an 8-bit gray image.
 * handle: from lsd_create.
 * image:  width x height gray pixels, width bytes a row (channels 1 or 0,
 *         is_binary 0); read in place, never written or kept. A NULL data
 *         pointer is read as an all-black image, which has no segment.
 * count:  receives the number of segments, 0 or more.
 * Returns an array of 7 * *count doubles allocated with malloc, which the
 * caller frees with clean_lines (or free); NULL when there is no segment.
 * Segment i occupies entries 7 i to 7 i + 6, in this order:
 *   x1, y1  first end, pixels of the image (origin at the top-left pixel)
 *   x2, y2  second end; the brighter side lies on the left when walking
 *           from the first end to the second as the image is displayed
 *   width   of the segment's rectangle, pixels, at least 0.5 / 0.8
 *   p       angle tolerance of the segment as a fraction of pi (0 < p < 1)
 *   log_nfa -log10 of its number of false alarms in noise; higher is surer,
 *           every segment returned has more than 0.0
 * Ends lie on a grid of 1 / 0.8 pixels: they are cut to whole pixels of
 * the scaled image before scaling back.
 * Throws (as a C++ const char*) "line segment detection needs an 8-bit gray
 * image" for a binary or colour record, and "error while allocating line
 * segments, could not allocate enough memory" when the result cannot be
 * allocated.
 */
MORVANE_API double* search_for_line_segments(void* handle, const ImageCApi* image, int* count);

/* Frees an array returned by search_for_line_segments; NULL is accepted. */
MORVANE_API void clean_lines(double* lines);

/* Destroys a detector from lsd_create; NULL is accepted. */
MORVANE_API void destroy_lsd(void* handle);

#ifdef __cplusplus
}
#endif

#endif /* MORVANE_MORVANE_H */

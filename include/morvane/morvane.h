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
 *   (of type int, const char*, std::string, or a class derived from
 *   std::exception whose what() is the message); a C++ caller that must
 *   survive every failure surrounds the calls itself. The library never prints,
 *   never exits, starts no threads and keeps no state between handles.
 */
#ifndef MORVANE_MORVANE_H
#define MORVANE_MORVANE_H

#if defined(__GNUC__)
#define MORVANE_API __attribute__((visibility("default")))
#else
#define MORVANE_API
#endif

#include <stddef.h>
#ifndef __cplusplus
#include <stdbool.h>
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
 *   when width is not a multiple of 32). Padding bits after the last
 *   column are ignored (the blob calculator reads such a row from a copy
 *   with them cleared; the caller's buffer is never written).
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
 *          Gray (channels 1), RGB (channels 3) or 1-bit (is_binary != 0).
 *          A four-channel image is accepted, but only the first byte of an
 *          interpolated pixel is written (the other three keep what the
 *          output buffer held), and it fails when the corners leave the image.
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

/*
 * A corrector finds the four corners of the page in one image and rectifies
 * it. All searches run on a gray working image, the input brought down by an
 * integer rate (one more per halving until both sides are at most 1500
 * pixels); only the rectification reads the full-size input.
 *
 * Calling order:
 *   1. corrector_create, then any setters.
 *   2. run_projective_correction(handle, image), or run_edge_searching and
 *      then run_feature_searching.
 *   3. obtain_four_corners, obtain_corrected_img_dimension.
 *   4. The caller allocates an output of that size and of the input's kind
 *      and calls obtain_corrected_image.
 *   5. destroy_corrector.
 * Instead of 2 and 3 a caller may give its own corners through
 * obtain_corrected_img_dimension_given_corners and
 * obtain_corrected_image_given_corners.
 *
 * A corrector serves one image: the working image is made by the first run
 * and kept for the life of the handle, so a second run goes on working on
 * the first image even when another one is bound. The bound image is read in
 * place and must stay valid until the last obtain_... call.
 *
 * Return codes of the three run functions:
 *    1  corners found and accepted: go on with obtain_four_corners
 *    2  the page is already straight: no correction needed, corners valid
 *    3  no usable result: neither edges nor text gave a geometry, or the
 *       image was refused on the edge-only path
 *    0  an exception ended run_projective_correction, which includes a
 *       refused image
 *   -3  a corner lies outside the image while set_within_the_image is in force
 *   -4  the quadrilateral is too small
 *   -5  the quadrilateral is not convex or a corner angle is too small
 *   -6  the output would be too small compared with the input
 *   -7  the corners derived from vanishing points failed their own examination
 * An image is refused when its long side exceeds 7.0 times its short side or
 * its short side is below 10 pixels. Four-channel images cannot be searched.
 *
 * The searches, in short:
 * - The page-edge search runs its binary and edge stages (large blobs and
 *   their outlines); the edge-only mode adds its line segment stage, which
 *   completes pages cut by the image border. After set_line_registration
 *   with 0 the classic search takes their place: page-edge lines by a Hough
 *   transform, each direction judged by where its opposite edges cross.
 * - The text search weighs the edge result first and keeps a good one as
 *   it is; otherwise it reads the horizontal direction from the text lines
 *   (page analysis, eigenpoint groups and their merging, a consensus of the
 *   lines), the vertical direction from the text's margins or else from
 *   columns of slim blobs (stems and rules), each weighed against the
 *   edges, and draws the page around the text, never through it.
 * - The resolution estimate reads the size of the text by page analysis
 *   (300 when it finds too little text).
 * - The corrected page can be binarized by Sauvola (0) or by the
 *   multi-scale method (1).
 */

/* A new corrector with every parameter at its default; free it with destroy_corrector. */
MORVANE_API void* corrector_create(void);

/* Destroys a corrector and everything it made; NULL is accepted. Buffers of the caller are never freed. */
MORVANE_API void destroy_corrector(void* handle);

/*
 * Binds image (read in place, never changed) and runs the search: page edges,
 * then, in hybrid mode, text features. Every exception ends in this function.
 * Returns a code of the table above; 0 when the image was refused or any failure occurred.
 */
MORVANE_API int run_projective_correction(void* handle, const ImageCApi* image);

/*
 * Binds image and searches the page edges only, with the output check.
 * Returns a code of the table above; 3 for a refused image. Failures leave as
 * C++ exceptions: const char* "BGRA to grey level conversion nog implemented
 * yet in common" for a four-channel image, memory failures as std::string or
 * const char*.
 */
MORVANE_API int run_edge_searching(void* handle, const ImageCApi* image);

/*
 * Searches the text of the image bound by run_edge_searching, which must have
 * run before (otherwise a const char* is thrown). Returns a code of the table above.
 */
MORVANE_API int run_feature_searching(void* handle);

/* method > 0: hybrid, edges and then text (the default); otherwise edges alone. */
MORVANE_API void set_registration_method(void* handle, int method);

/*
 * Which edge search runs, in both registration methods. 1 (the default), or
 * any value but 0: the staged search, large blobs of a binary and of an edge
 * contour image whose simplified outlines compete for the four sides (and,
 * with edges alone, line segments). 0: the classic search, page-edge lines
 * by a Hough transform over Canny edges or an adaptive binarization, each
 * direction judged by where its opposite lines cross. Takes effect only
 * before the handle's first run: the edge search made then is kept.
 */
MORVANE_API void set_line_registration(void* handle, int use);

/*
 * type 1 (the default): corners come from the page-edge lines and every
 * result goes through the output check (inside the image when required,
 * convex, angles, area, size). Any other value: corners come from the
 * vanishing points and results are not checked.
 */
MORVANE_API void set_corner_type(void* handle, int type);

/* Degrees within which a direction counts as already straight; defaults 0.2 (horizontal) and 0.4 (vertical). */
MORVANE_API void set_angle_disparity(void* handle, float horizontal, float vertical);

/* Smallest corner angle of the page quadrilateral, degrees; default 45.0. */
MORVANE_API void set_minimum_quadrilateral_angle(void* handle, float degrees);

/*
 * The larger of output width over input width and output height over input
 * height must exceed fraction (a fraction of 1, not a percentage); default 0.1.
 */
MORVANE_API void set_minimum_largest_dimension_percentage_threshold(void* handle, float fraction);

/*
 * Smallest quadrilateral area as a fraction of the image area; default 0.05.
 * Values not above 0.001 are ignored. The limit applies in full to pages
 * whose rectified long side is between 1.2 and 1.4 times the short side;
 * other shapes must only exceed fraction - 0.1.
 */
MORVANE_API void set_minimum_aoi_area(void* handle, float fraction);

/* From now on all four corners must lie inside the image; default off, and nothing turns it off again. */
MORVANE_API void set_within_the_image(void* handle);

/* Binarization method for obtain_binarized_corrected_image: 0 Sauvola (default), 1 multi-scale; other values are clamped to 0 or 1. */
MORVANE_API void set_binarization_method(void* handle, int method);

/* The binarization k and window of a new corrector. */
#define MORVANE_DEFAULT_BINARIZATION_K 0.1f
#define MORVANE_DEFAULT_BINARIZATION_WINDOW 35

/* Binarization k: below 0 stored as 0.01, above 1 as 0.99, otherwise as given; default 0.1. */
MORVANE_API void set_binarization_k(void* handle, float k);

/*
 * Binarization window in pixels: values below 1 are stored as 3; default 35.
 * Sauvola narrows a window above one eleventh of the image's shorter side to
 * that eleventh (to 2 when the shorter side is at most 21 pixels).
 */
MORVANE_API void set_binarization_window(void* handle, int window);

/*
 * Colour of output pixels that fall outside the input: one byte per channel
 * of the input (1 for gray and 1-bit images, 3 for RGB, red first). The
 * pointer itself is kept, not the bytes: they must stay valid through every
 * later correction. NULL is ignored. Default: none; then the colour is that
 * of the brightest pixel under corners the caller reset (inside the image),
 * else the paper colour estimated along the inside of the page's edges.
 */
MORVANE_API void set_filling_color(void* handle, unsigned char* color);

/*
 * The page corners in full-size input pixels, each coordinate rounded by
 * floor(v + 0.5): the corners found, the caller's after a reset, or the whole
 * image when nothing was found.
 */
MORVANE_API void obtain_four_corners(void* handle, ControlPointCorners* corners);

/*
 * The vanishing points of the last search, in full-size image coordinates:
 * from the text search when it ran, else from the edge search. Returns 0; the
 * value carries no meaning.
 */
MORVANE_API int obtain_vanishing_point(void* handle, VanishingPointsCApi* out);

/* The caller's corners (full-size input pixels) replace the corners found. */
MORVANE_API void reset_four_corners(void* handle, const ControlPointCorners* corners);

/*
 * Size of the rectified image for the current corners, in pixels: the mean
 * length of opposite sides plus one, rounded. Without corners, those of obtain_four_corners.
 */
MORVANE_API void obtain_corrected_img_dimension(void* handle, int* width, int* height);

/* reset_four_corners(handle, corners), then obtain_corrected_img_dimension. */
MORVANE_API void obtain_corrected_img_dimension_given_corners(void* handle, const ControlPointCorners* corners, int* width, int* height);

/* Size of the rectified working image (corners divided by the rate); before any run, the bound input's size. */
MORVANE_API void obtain_downsampled_corrected_img_dimension(void* handle, int* width, int* height);

/*
 * Rectifies the bound input into output, a buffer allocated by the caller of
 * the size from obtain_corrected_img_dimension and of the input's kind
 * (channels and is_binary). Resolutions are set to 300 on return. A 1-bit
 * input is warped as gray and made 1-bit again (128 or less becomes ink); the
 * corrector then holds the input as gray, and later corrections give gray.
 * Throws (const char*) when output does not match, or when a four-channel
 * input needs a fill colour.
 */
MORVANE_API void obtain_corrected_image(void* handle, ImageCApi* output);

/* Binds input, reset_four_corners(handle, corners), then obtain_corrected_image. */
MORVANE_API void obtain_corrected_image_given_corners(void* handle, const ImageCApi* input, const ControlPointCorners* corners, ImageCApi* output);

/*
 * Rectifies the gray working image into output (gray, of the size from
 * obtain_downsampled_corrected_img_dimension). Does nothing before a run.
 */
MORVANE_API void obtain_downsampled_corrected_image(void* handle, ImageCApi* output);

/*
 * Binarizes input, usually the corrected image, into output with the method,
 * k and window set on the handle. input: 1-bit, gray or RGB (a 1-bit input is
 * copied as it is). output: allocated by the caller as a 1-bit image of the
 * input's width and height (is_binary non-zero, rows padded to whole 32-bit
 * words); a set bit is ink. The output record's resolutions are written.
 * Method 1 (multi-scale) takes k but chooses its own window: it thresholds a
 * pyramid of the page from fine to coarse, so that headlines many times the
 * body size come out solid; its one-pixel frame is always paper.
 * Throws const char* for a four-channel input and for an output of another
 * kind or size; with method 0 an input whose shorter side is under 4 pixels
 * throws the C++ exception carrying " The window size is too large".
 */
MORVANE_API void obtain_binarized_corrected_image(void* handle, const ImageCApi* input, ImageCApi* output);

/*
 * Resolution of image in dots per inch, from the size of its characters:
 * 300 * h / 22, truncated, h being the whole-pixel mean height of the boxes
 * of its body text characters (body text 22 pixels high is 300 dots per
 * inch). When image has the same data pointer as the bound input, the
 * handle's working image is analysed and the answer scaled by the rate;
 * otherwise image is analysed alone: gray and RGB images by telling text
 * from pictures, 1-bit images by their ink grown into words (which reads
 * them higher). 300 before any run and when the image shows too little text
 * (ten characters or fewer). A gray or RGB image whose shorter side is under
 * 4 pixels throws the C++ exception carrying " The window size is too large".
 */
MORVANE_API void estimate_spatial_resolution(void* handle, const ImageCApi* image, int* resolution);

/* ------------------------------------------------------------------------ */
/* Corner search family                                                      */
/* ------------------------------------------------------------------------ */

/* ---- corner search family ---- */

/*
 * Creates a corner search engine: it finds the four corners of a page without
 * rectifying it. method chooses the search:
 *   0  the corrector's edge search (the four setters below must not be
 *      called on such a handle)
 *   1  edges, then Hough lines, then strict corners
 *   2  adaptive binarization, then Hough lines, then strict corners
 *   3  1, and 2 when 1 fails
 *   4  edges, then large blobs, then strict corners
 *   5  adaptive binarization, then large blobs, then strict corners
 *   6  the staged search: large blobs of a binary contour image, then of an
 *      edge contour image, then line segments
 *   7  the line segment stage alone
 * The line segment stage (the last stage of 6, and 7) splits the segments
 * into a horizontal and a vertical family: it completes the one side that
 * the earlier stages missed, or draws the sides through the two families'
 * vanishing points and the outermost segment ends, so that corners may lie
 * outside the image. The strict corner check of 1 to 5 refuses a page when a
 * side's segment runs more than 50 pixels past one of its corners. The
 * large-blob analyzer of 4 and 5 finds no lines of its own, so those fail.
 * Methods 8 and above must not be passed: they assemble a
 * search of null strategies, and running it ends the process. Returns the
 * handle; free it with destroy_corner_search_enginee.
 */
MORVANE_API void* create_corner_search_enginee(int method);

/* Frees an engine; NULL is ignored. */
MORVANE_API void destroy_corner_search_enginee(void* handle);

/*
 * Finds the page in image (gray, RGB or 1-bit; brought down to at most 1500
 * pixels a side for the search) and writes its corners, in image pixels,
 * rounded by floor(v + 0.5): top-left, top-right, bottom-right, bottom-left.
 * Returns 1 when a page was found and passed the checks; otherwise -1 or a
 * check's code: -3 a corner outside the image (see
 * set_corner_detection_within_image), -4 area too small, -5 not convex or
 * an angle too small, -6 output too small. corners is always written: on
 * failure with the image's own corners (method 0) or what the search left,
 * which starts as the image's corners. Exceptions of the image layer
 * (const char*) pass through.
 */
MORVANE_API int perform_corner_searching(void* handle, const ImageCApi* image, ControlPointCorners* corners);

/* Smallest page area as a fraction of the image area, no lower limit; default 0.05. Not with method 0. */
MORVANE_API void set_corner_detection_minimum_quadrilateral_area(void* handle, float fraction);

/* Smallest corner angle of the page, degrees; default 45. Not with method 0. */
MORVANE_API void set_corner_detection_minimum_quadrilateral_angle(void* handle, float degrees);

/* The larger of output-to-image width and height ratios must exceed this; default 0.1. Not with method 0. */
MORVANE_API void set_corner_detection_minimum_largest_dimension_percentage_threshold(void* handle, float fraction);

/* From now on a corner outside the image fails the search with -3; default off. Not with method 0. */
MORVANE_API void set_corner_detection_within_image(void* handle);

/* ------------------------------------------------------------------------ */
/* Image-quality evaluator family                                            */
/* ------------------------------------------------------------------------ */

/* ---- evaluator family ---- */

/*
 * Grades how well an image of text can be read: the score is the share of
 * the character-like blobs that a two-level (ink and paper) model describes
 * well. Sharp print scores near 1, blur and noise lower; 0 means either a bad
 * image or no judgement: fewer than 4 well-formed characters, or characters
 * making 10% or less of the text-sized blobs (blank pages, pictures,
 * clutter). The image is graded at full size (gray; RGB by luminance) and
 * binarized by the multi-scale method; blobs count as text-sized when they
 * have at least 5 pixels and a box under 128 by 128 pixels and are not part
 * of a picture, and as characters at any contrast with their surroundings.
 * An evaluator keeps no image between calls and may grade any number of them.
 */

/* A new evaluator; free it with destroy_image_quality_evaluator. */
MORVANE_API void* create_image_quality_evaluator(void);

/*
 * The score of the whole image, in [0, 1].
 * image: gray, RGB or 1-bit (ink becomes black, paper white), read during the
 *        call only. A four-channel image throws the C++ exception const char*
 *        "BGRA to grey level conversion nog implemented yet in common";
 *        memory failures leave as C++ exceptions too.
 */
MORVANE_API double evaluate_image_quality(void* handle, const ImageCApi* image);

/*
 * The score of the page inside image, in [0, 1]: blobs whose box centre lies
 * beyond the lines through the corners (left side through top-left and
 * bottom-left, right through top-right and bottom-right, top and bottom
 * likewise) are not graded.
 * corners: the page's four corners in image pixels, as found by
 *          run_projective_correction or perform_corner_searching; NULL grades
 *          the whole image, as evaluate_image_quality.
 * image and exceptions as evaluate_image_quality.
 */
MORVANE_API double evaluate_image_quality_given_corners(void* handle, const ImageCApi* image,
                                                        const ControlPointCorners* corners);

/* Frees an evaluator; NULL is ignored. */
MORVANE_API void destroy_image_quality_evaluator(void* handle);

/* ------------------------------------------------------------------------ */
/* Blob calculator family                                                    */
/* ------------------------------------------------------------------------ */

/* ---- blob calculator family ---- */

/*
 * Connected components of a bitonal or gray image, formed in one pass over
 * its lines. Foreground is a set bit of a binary record (is_binary != 0) and
 * any byte other than 255 of a gray record: in a gray image only 255 is
 * background. Components are numbered from 0 (from 1 in labels) in the order
 * in which the calculator created them, which is not always the order of
 * their first line: when a line splits a component the younger piece heads it.
 *
 * One calculator serves one image. Every query forms the components of the
 * image it is given when the calculator has formed nothing yet, and
 * otherwise answers from what it formed before, whatever image it is given
 * (create_scale_img and create_scale_img_only excepted, see there). Create a
 * new calculator for each image. Results handed out point into the
 * calculator's memory only where said (obtain_runs_image); all other results
 * are copied into the caller's arrays. The image buffer is read during the
 * call only.
 */

/* A new calculator, eight-connected. Free it with delete_blob_calculator. */
MORVANE_API void* create_blob_calculator(void);

/* neighborhood 4: four-connected (pixels touching only at a corner are apart);
 * any other value: eight-connected. Takes effect at the next formation. */
MORVANE_API void set_neighborhood(void* handle, int neighborhood);

/* Forms the components of image (when the calculator is still empty) and
 * returns their number, 0 or more. The number sizes the arrays of
 * obtain_blob_dimension_histogram and obtain_blob_top_points. */
MORVANE_API int perform_blob_formulation(void* handle, const ImageCApi* image);

/* The runs of the image's lines, an internal object of the library (C++
 * geometric::RunsInImage), opaque to C. The calculator owns it; the pointer
 * is valid until delete_blob_calculator and must not be freed. */
MORVANE_API void* obtain_runs_image(void* handle, const ImageCApi* image);

/*
 * Label of every pixel, in a frame of border pixels on every side.
 * labels: caller's array of (width + 2 * border) * (height + 2 * border)
 *         ints, border >= 0; row-major, pixel (x, y) at index
 *         (y + border) * (width + 2 * border) + x + border. Every entry is
 *         written: 0 for background and frame, 1 to the component count for
 *         the components in their order.
 */
MORVANE_API void calculate_label_image(void* handle, const ImageCApi* image, int* labels, int border);

/* Height and width in pixels of each component's bounding box, in component
 * order (one entry a component, not a histogram). heights and widths are
 * caller's arrays of perform_blob_formulation's count of ints. */
MORVANE_API void obtain_blob_dimension_histogram(void* handle, const ImageCApi* image, int* heights, int* widths);

/* Top point of each component, in component order: its highest line, and on
 * that line the first column of the piece that the calculator met first.
 * xs and ys are caller's arrays of perform_blob_formulation's count of ints. */
MORVANE_API void obtain_blob_top_points(void* handle, const ImageCApi* image, int* xs, int* ys);

/*
 * Outer contours of all components, by a clockwise Moore-neighbour trace
 * from each top point, one after the other with no separator (a one-pixel
 * component gives one point; a contour that passed its start twice ends by
 * repeating it).
 * allocate: called exactly twice, with 4 * count bytes each time, also when
 *           count is 0; the results go to *xs and *ys. The caller frees both
 *           with the allocator's partner (free for malloc). When allocate
 *           answers NULL for a size above 0, the C++ exception std::bad_alloc
 *           leaves the call; *xs (and *ys) then hold what allocate did give,
 *           NULL for the rest, for the caller to free.
 * Returns count, the number of points.
 */
MORVANE_API int obtain_blob_contours_one_by_one(void* handle, const ImageCApi* image, int** xs, int** ys,
                                                void* (*allocate)(size_t));

/*
 * One step of a blob-size scale map. Forms, whatever the calculator's state,
 * the components of binary_image (a binary record of scale level `level`,
 * written in place) and for each component, in order:
 * - fewer pixels than minimum_pixels: erased from binary_image;
 * - more pixels than maximum_pixels: erased, and the result becomes 1;
 * - when level != base_level, its height (use_height) or width below
 *   minimum_size / 2^(level - base_level) (integer division): erased;
 * - otherwise written with the value level + 1 into scale_image, a gray
 *   record at the resolution of base_level, each pixel as a block of
 *   2^(level - base_level) pixels on a side (clipped to scale_image).
 * 0 <= base_level <= level <= 5. Returns 1 when a component had more than
 * maximum_pixels pixels, else 0. Use a fresh calculator for each call.
 * Throws (const char*) "scale level out of range" for other levels.
 */
MORVANE_API int create_scale_img(void* handle, int level, const ImageCApi* scale_image, const ImageCApi* binary_image,
                                 int base_level, int minimum_size, bool use_height, double maximum_pixels,
                                 double minimum_pixels);

/*
 * As create_scale_img, with two differences: components under
 * minimum_pixels or over maximum_pixels are passed over and stay in
 * binary_image, and level 5 is not served: a level difference of 5 throws
 * (const char*) "scale level difference not served by
 * create_scale_img_only", and level 5 with a lower base level draws nothing.
 */
MORVANE_API int create_scale_img_only(void* handle, int level, const ImageCApi* scale_image,
                                      const ImageCApi* binary_image, int base_level, int minimum_size,
                                      bool use_height, double maximum_pixels, double minimum_pixels);

/* Destroys a calculator and everything it owns, the runs image included;
 * NULL is accepted. */
MORVANE_API void delete_blob_calculator(void* handle);

/* ------------------------------------------------------------------------ */
/* Line segment family                                                       */
/* ------------------------------------------------------------------------ */

/* ---- line segment family ---- */

/*
 * A line segment detector with a-contrario validation, followed by a pass
 * that links collinear segments whose ends lie within 5 pixels of each
 * other (pixels of the scaled image: 6.25 of the input). Fixed settings:
 * the image is first scaled by 0.8 under a Gaussian
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
 * The detector cuts the ends of each piece it finds to whole pixels of the
 * scaled image (adding 0.5 and truncating); the linking pass then sets the
 * ends of each result on the line through its pieces, so the values handed
 * out are not in general whole numbers. Segments come in falling order of
 * the length of their longest piece.
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

// Vanishing points from the page's own edges: a pair of opposite edge lines
// is judged plausible or not, parallel or not, and otherwise crossed.
#ifndef MORVANE_VANISHING_VPOINT_BOUNDING_LINE_SOLVER_H
#define MORVANE_VANISHING_VPOINT_BOUNDING_LINE_SOLVER_H

#include <vector>

#include "edgelines/bounding_line.h"
#include "textgeometry/direction.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

// Angles in degrees, ratios of the image's height.
struct VpointBoundingLinePara {
    float horizontal_angle_limit = 12.0f;         // top and bottom may differ by less
    float horizontal_obtuse_angle_limit = 15.0f;  // the same, for a pair more than 90 degrees apart
    float large_blob_parallel_limit = 25.0f;      // left and right leaning the same way, long edges
    float large_blob_angle_limit = 25.0f;         // left and right leaning apart, long edges
    float small_blob_parallel_limit = 7.0f;       // the same two for short edges
    float small_blob_angle_limit = 14.0f;
    float large_blob_length_ratio = 0.3f;         // each of two long edges exceeds this share
    float large_blob_sum_ratio = 0.7f;            // or together this share, each half the first
    float horizontal_parallel_disparity = 0.2f;   // at most this disparity counts as parallel
    float vertical_parallel_disparity = 0.4f;
};

// Answers are VanishingPointCode values: no result, found, or treat as parallel.
class VpointBoundingLineSolver {
public:
    VpointBoundingLineSolver(int image_width, int image_height,
                             const VpointBoundingLinePara& para = VpointBoundingLinePara());

    // The two lines of `direction` named by the property (horizontal_lines or
    // vertical_lines, which must hold exactly two indices), in list order:
    //   implausible pair                                no result
    //   angle disparity <= the direction's parallel one treat as parallel
    //   otherwise their crossing in `point`             found
    // and treat as parallel when they do not cross after all. The separation
    // of the two at the image's first row (column) goes to the property's
    // vertical (horizontal) intercept disparity; the angle disparity stays
    // in this object's horizontal_disparity or vertical_disparity.
    int perform_boundingline_vpoint_searching(const std::vector<BoundingLine>& lines, BoundingLineProperty& property,
                                              Direction direction, Geocoordinate<double>& point);

    // With s = |y at x = 0 of each| (stored as the horizontal intercept
    // disparity) and D the difference of the two angles: edges farther apart
    // than 0.65 of the height may differ by 5 degrees more. D above 90 is
    // measured as 180 - D against the obtuse limit. Limits are strict.
    bool check_horizontal_line_angle_disparity(const GeolineBase& first, const GeolineBase& second,
                                               BoundingLineProperty& property);

    // The vertical disparity of the comparator, against the parallel limit
    // when the two lean the same way, else against the angle limit, each of
    // the large or the small blob. A pair leaning apart that passes has its
    // disparity raised to twice the parallel one, so that it is crossed.
    bool check_vertical_line_angle_disparity(const BoundingLine& first, const BoundingLine& second);

    // With t = large_blob_length_ratio of the height: both segments longer
    // than t, or together longer than large_blob_sum_ratio of the height and
    // each longer than t / 2.
    bool is_large_vertical_blob(const BoundingLine& first, const BoundingLine& second) const;

    int image_width;
    int image_height;
    VpointBoundingLinePara para;
    float horizontal_disparity = 0.0f;  // of the last check, degrees
    float vertical_disparity = 0.0f;
};

}  // namespace geometric

#endif

// How well four page-edge lines make a page: the region they hold, the
// support along them and the gaps at their corners.
#ifndef MORVANE_EDGELINES_BOUNDING_LINES_QUALITY_H
#define MORVANE_EDGELINES_BOUNDING_LINES_QUALITY_H

#include <vector>

#include "edgelines/bounding_line.h"

namespace geometric {

// The measures are results of evaluate; the minimums and maximum are the
// thresholds that the judges of a result compare them with.
struct BoundingLinesQuality {
    float area_ratio = 0.0f;      // region over image area
    float length_ratio = 0.0f;    // summed segment lengths over the image's perimeter
    float unclosed_ratio = 0.0f;  // gaps at the corners over summed segment lengths
    bool is_parallel_enough = false;
    float minimum_area_ratio = 0.2f;
    float minimum_length_ratio = 0.4f;
    float maximum_unclosed_ratio = 0.2f;
    int horizontal_disparity_limit = 2;  // degrees
    int vertical_disparity_limit = 3;

    // Sets all four measures. The lines are parallel enough when both angle
    // disparities of the property lie strictly below their limits.
    void evaluate(int image_width, int image_height, int region_width, int region_height,
                  const std::vector<BoundingLine>& lines, const BoundingLineProperty& property);

    // unclosed_ratio = the unclosed distance of the operator over the integer
    // sum of segment lengths, in single precision. A side the property does
    // not name makes it infinite; the callers hold four lines of positive length.
    void calculate_unclosed_ratio(const std::vector<BoundingLine>& lines, const BoundingLineProperty& property);
};

}  // namespace geometric

#endif

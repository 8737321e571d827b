// The measures of a set of four page-edge lines.
#include "edgelines/bounding_lines_quality.h"

#include "edgelines/bounding_lines_operator.h"

namespace geometric {

void BoundingLinesQuality::evaluate(int image_width, int image_height, int region_width, int region_height,
                                    const std::vector<BoundingLine>& lines, const BoundingLineProperty& property) {
    calculate_unclosed_ratio(lines, property);
    std::vector<BoundingLine> held(lines);
    const int sum = BoundingLinesOperator::obtainSegmentLenSum(held);
    area_ratio = static_cast<float>(region_width) * static_cast<float>(region_height) /
                 static_cast<float>(image_width * image_height);
    length_ratio = static_cast<float>(sum) / static_cast<float>(2 * (image_width + image_height));
    is_parallel_enough = horizontal_disparity_limit > property.horizontal_angle_disparity &&
                         vertical_disparity_limit > property.vertical_angle_disparity;
}

void BoundingLinesQuality::calculate_unclosed_ratio(const std::vector<BoundingLine>& lines,
                                                    const BoundingLineProperty& property) {
    // The operator's measures take their lists by reference without changing them.
    std::vector<BoundingLine> held(lines);
    BoundingLineProperty sides(property);
    unclosed_ratio = BoundingLinesOperator::obtainUnclosedDistance(held, sides) /
                     static_cast<float>(BoundingLinesOperator::obtainSegmentLenSum(held));
}

}  // namespace geometric

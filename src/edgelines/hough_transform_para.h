// The parameters of the page-edge Hough transform: a plain record, copied
// along with the corner search parameters.
#ifndef MORVANE_EDGELINES_HOUGH_TRANSFORM_PARA_H
#define MORVANE_EDGELINES_HOUGH_TRANSFORM_PARA_H

namespace geometric {

struct HoughTransformPara {
    float angle_step = 1.0f;                     // degrees per angle cell
    float distance_step = 1.0f;                  // kept in the record; a distance cell is one pixel
    bool smooth_accumulator = true;
    float minimum_segment_ratio = 0.2f;          // share of the reference length
    int horizontal_angle_range = 17;             // degrees
    int vertical_angle_range = 37;               // degrees
    float minimum_parallel_distance_ratio = 0.25f;
    float distance_weight = 0.3f;                // votes weigh one minus this
    float peak_vote_ratio = 0.3f;
    int parallel_search_attempts = 2;
    int segment_band_half_width = 20;            // pixels
    float minimum_boundary_length_ratio = 0.3f;  // share of the image's perimeter
};

}  // namespace geometric

#endif

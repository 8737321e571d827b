// The thresholds that the driver hands down to every registration object.
#ifndef MORVANE_VANISHING_PROJECTIVE_REGISTRATION_PARA_H
#define MORVANE_VANISHING_PROJECTIVE_REGISTRATION_PARA_H

namespace hybrid {

// Assignment copies all ten fields; that is how the driver passes them on
// before every run.
struct ProjectiveRegistrationPara {
    // Limit on how far the output may differ from the image in size.
    float maximum_size_ratio = 2.5f;
    // True: corners from page-edge lines; false: from vanishing points.
    bool use_edge_corners = true;
    // The working image is brought down to this many pixels a side.
    int maximum_dimension = 1500;
    // Carried along with the record.
    float line_support_ratio = 0.2f;
    // Degrees within which a direction counts as already straight.
    float horizontal_angle_disparity = 0.2f;
    float vertical_angle_disparity = 0.4f;
    // All four corners must lie inside the image.
    bool within_the_image = false;
    // Smallest corner angle of the quadrilateral, degrees.
    float minimum_quadrilateral_angle = 45.0f;
    // Smallest quadrilateral area, a fraction of the image area.
    float minimum_aoi_area = 0.05f;
    // The larger of output-to-input width and height ratios must exceed this fraction.
    double minimum_largest_dimension_percentage_threshold = 0.1;
};

}  // namespace hybrid

#endif

// What every projective registration has in common: parameters, the
// vanishing points and bounding lines found so far, and how they become four
// plausible corners. Finding lines and points is left to the derived classes.
#ifndef MORVANE_REGISTRATION_PROJECTIVE_REGISTRATION_H
#define MORVANE_REGISTRATION_PROJECTIVE_REGISTRATION_H

#include <vector>

#include "common/image.h"
#include "edgelines/bounding_line.h"
#include "registration/registration.h"
#include "registration/registration_output_type.h"
#include "textgeometry/geocoordinate.h"
#include "vanishing/projective_registration_para.h"
#include "vanishing/vanishing_point_output.h"

namespace geometric {

class ProjectiveRegistration : public Registration {
public:
    explicit ProjectiveRegistration(const common::Image* image_);
    ~ProjectiveRegistration() override;

    virtual RegistrationOutputType run_registration() = 0;

    // Corners from the bounding lines. Without lines: false. With fewer than
    // four, each side whose index is -1 gets a line along the image border,
    // appended in the order left, right, top, bottom; then the crossings of
    // the sides fill `corners` and the answer is true. With four or more
    // lines missing sides are not filled in.
    virtual bool perform_edge_corner_searching();

    // Vanishing points (or parallel angles) to `corners` through the corner
    // calculator that fits the flags and `registration_output`. Without any
    // vanishing point a negative output or a straight page (2) gives false.
    bool transform_vp_2_vc();

    // transform_vp_2_vc, then the examination of the virtual corners: angles of
    // at least 23 degrees, and the size ratios of the output; a direction whose
    // dimension is out of proportion is dropped and the corners are made again
    // from what remains. Sets `registration_output` to 1, -1 or -7.
    bool obtain_virtual_corners();

    // perform_edge_corner_searching, then angles of at least 40 degrees, then
    // the size ratios and the ratios of opposite sides; a doubtful direction's
    // flags are cleared. True while a direction that shapes the result remains.
    bool otain_edge_corners();

    // otain_edge_corners when `para.use_edge_corners`, else
    // obtain_virtual_corners; `corners` is emptied on false.
    bool obtain_corners();

    // The measure of an output dimension against the image's: output / image
    // when the output is larger, else image / output / 1.5, in single
    // precision; so a smaller output is tolerated 1.5 times more. Above
    // `maximum_size_ratio` the direction that shapes the dimension is not trusted.
    static float calculate_size_ratio(int output_dimension, int image_dimension);

    // The result code that the flags of `info` stand for, by the first row that fits:
    //   both vanishing points                          1
    //   a vanishing point and a parallel flag          4
    //   both parallel                                  2 when straight, else 3
    //   one vanishing point                            5
    //   one parallel direction                         6
    //   nothing                                       -1
    // Straight: with t_h = horizontal_disparity + 0.1 and t_v likewise, the
    // horizontal angle is below t_h or above 180 - t_h, and the vertical angle
    // lies within 90 - t_v to 90 + t_v, ends included.
    static RegistrationOutputType classify_vanishing_point_flags(const VanishingPointHorVerInfo& info,
                                                                 double horizontal_disparity,
                                                                 double vertical_disparity);
    // The same for this object's flags, with the disparities of `para`.
    RegistrationOutputType classify_vanishing_point_flags() const;

    hybrid::ProjectiveRegistrationPara para;
    VanishingPointHorVerInfo vanishing_points;
    // Intersections of opposite bounding lines, kept apart for later use.
    VanishingPointHorVerInfo bounding_vanishing_points;
    // Working image coordinates: top-left, top-right, bottom-right, bottom-left.
    std::vector<Geocoordinate<float>> corners;
    BoundingLineProperty bounding_line_property;
    std::vector<BoundingLine> bounding_lines;
    RegistrationOutputType registration_output;
    int output_width;   // size of the output the corners imply
    int output_height;

protected:
    // Steps of obtain_virtual_corners after the corners exist: the angle
    // examination and the size ratios, with the second transform when a
    // direction was dropped but another remains.
    bool examine_virtual_corners();

private:
    // Output size of the current corners by the rectification's rule.
    void calculate_output_dimension();
    void clear_horizontal_flags();
    void clear_vertical_flags();
};

}  // namespace geometric

#endif

// Virtual corners from vanishing points in one or two directions: each side of
// the quadrilateral is a line from a vanishing point through an image corner,
// so that the page fills the image as far as the directions allow.
#ifndef MORVANE_VANISHING_CORNER_CALCULATOR_PROJECTIVE_H
#define MORVANE_VANISHING_CORNER_CALCULATOR_PROJECTIVE_H

#include <vector>

#include "textgeometry/direction.h"
#include "textgeometry/geocoordinate.h"

namespace geometric {

// The zone of a point against the image: row * 3 + column, row 0 above y = 0,
// 1 within, 2 at or below the height; column 0 left of x = 0, 1 within, 2 at
// or beyond the width.
enum VanishingPointPosition : int {
    VANISHING_POINT_TOP_LEFT = 0,
    VANISHING_POINT_TOP = 1,
    VANISHING_POINT_TOP_RIGHT = 2,
    VANISHING_POINT_LEFT = 3,
    VANISHING_POINT_INSIDE = 4,
    VANISHING_POINT_RIGHT = 5,
    VANISHING_POINT_BOTTOM_LEFT = 6,
    VANISHING_POINT_BOTTOM = 7,
    VANISHING_POINT_BOTTOM_RIGHT = 8
};

// Reference points a, b lie on the left and right sides, c, d on the top and
// bottom; w' = width - 1 and h' = height - 1. Every `false` leaves the outputs
// as they were.
class CornerCalculatorProjective {
public:
    CornerCalculatorProjective(int width_, int height_) : width(width_), height(height_) {}

    // The VanishingPointPosition of `point`. A coordinate that is not a number
    // compares false both ways and so counts as within.
    void estimate_vp_position(const Geocoordinate<double>& point, int& zone) const;

    // Horizontal point: a = (0, 0), b = (w', 0) fixed; by zone
    //   0, 8: c = (w', 0), d = (0, h')     2, 6: c = (0, 0), d = (w', h')
    //   3:    c = (0, 0),  d = (0, h')     5:    c = (w', 0), d = (w', h')
    // Zones 1, 4 and 7 give no pair of lines that encloses the image: false.
    bool calculate_horizontal_virtual_reference_point(const Geocoordinate<double>& point, Geocoordinate<float>& a,
                                                      Geocoordinate<float>& b, Geocoordinate<float>& c,
                                                      Geocoordinate<float>& d) const;
    // Vertical point: c = (0, 0), d = (0, h') fixed; by zone
    //   0, 8: a = (0, h'), b = (w', 0)     2, 6: a = (0, 0), b = (w', h')
    //   1:    a = (0, 0),  b = (w', 0)     7:    a = (0, h'), b = (w', h')
    // Zones 3, 4 and 5: false.
    bool calculate_vertical_virtual_reference_point(const Geocoordinate<double>& point, Geocoordinate<float>& a,
                                                    Geocoordinate<float>& b, Geocoordinate<float>& c,
                                                    Geocoordinate<float>& d) const;
    // a and b by the vertical point's zone, c and d by the horizontal one's.
    bool calculate_two_direction_virtual_reference_point(const Geocoordinate<double>& horizontal_point,
                                                         const Geocoordinate<double>& vertical_point,
                                                         Geocoordinate<float>& a, Geocoordinate<float>& b,
                                                         Geocoordinate<float>& c, Geocoordinate<float>& d) const;

    // Corners, top-left first, from the reference points: the one-direction
    // forms draw the missing direction along the image axes.
    bool estimate_horizontal_virtual_corners(const Geocoordinate<double>& point,
                                             std::vector<Geocoordinate<float>>& corners) const;
    bool estimate_vertical_virtual_corners(const Geocoordinate<double>& point,
                                           std::vector<Geocoordinate<float>>& corners) const;
    bool estimate_two_direction_virtual_corners(const Geocoordinate<double>& horizontal_point,
                                                const Geocoordinate<double>& vertical_point,
                                                std::vector<Geocoordinate<float>>& corners) const;

    // The two-direction form when both flags are set, the one-direction form
    // when one is; false without touching `corners` when neither is.
    bool estimate_virtual_corners(const Geocoordinate<double>& horizontal_point,
                                  const Geocoordinate<double>& vertical_point, bool has_horizontal,
                                  bool has_vertical, std::vector<Geocoordinate<float>>& corners) const;

    // Corresponding points of a one-direction rectification: `image_corners`
    // becomes (0, 0), (w', 0), (w', h'), (0, h') in every case, and
    // `virtual_corners` the one-direction corners of `point` for `direction`.
    bool estimate_cp_pairs(const Geocoordinate<double>& point, Direction direction,
                           std::vector<Geocoordinate<float>>& virtual_corners,
                           std::vector<Geocoordinate<float>>& image_corners) const;

    int width;   // of the working image
    int height;

private:
    // The pair of image corners that encloses the image as seen from a point
    // in `zone`, for lines of the named family; false for zones that have none.
    bool horizontal_pair(int zone, Geocoordinate<float>& c, Geocoordinate<float>& d) const;
    bool vertical_pair(int zone, Geocoordinate<float>& a, Geocoordinate<float>& b) const;
};

}  // namespace geometric

#endif

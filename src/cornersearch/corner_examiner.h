// Plausibility tests of a quadrilateral of four corners: convexity and the
// size of its angles.
#ifndef MORVANE_CORNERSEARCH_CORNER_EXAMINER_H
#define MORVANE_CORNERSEARCH_CORNER_EXAMINER_H

#include <vector>

#include "textgeometry/geocoordinate.h"

namespace geometric {

// Corners run top-left, top-right, bottom-right, bottom-left.
class CornerExaminer {
public:
    // Exactly four points whose turns c0-c1-c2, c1-c2-c3, c2-c3-c0, c3-c0-c1
    // all bend the same way; zero turns are ignored, but at least one must bend.
    static bool is_convex(const std::vector<Geocoordinate<float>>& corners);

    // At corners 1, 2 and 3, with u and v the vectors to the neighbours,
    // |u . v| / sqrt(|u|^2 |v|^2 + 1e-10) must not exceed
    // cos(pi minimum_angle / 180). The magnitude makes an angle above
    // 180 - minimum_angle fail as well. Corner 0 is deliberately not examined.
    // False unless there are exactly four points.
    static bool check_angles(const std::vector<Geocoordinate<float>>& corners, double minimum_angle);

    // is_convex, then check_angles.
    static bool check_constrains(const std::vector<Geocoordinate<float>>& corners, double minimum_angle);

    // The checks of a page found in a width x height image, in order:
    // -3 a corner outside the image (with within_image), -5 not four corners
    // or check_constrains false, -4 a shoelace area (single precision, as a
    // share of the image) not above the area limit, which is minimum_area
    // when the output's longer to shorter side lies strictly between 1.2 and
    // 1.4 and minimum_area - 0.1 otherwise, -6 an output whose larger share
    // of the image's width or height is not above minimum_share; else 1.
    static int examine_page_output(const std::vector<Geocoordinate<float>>& corners, int width, int height,
                                   bool within_image, double minimum_angle, double minimum_area,
                                   double minimum_share);
};

}  // namespace geometric

#endif

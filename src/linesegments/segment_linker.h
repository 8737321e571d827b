// The segment-level linking pass: joins collinear segments whose ends nearly
// meet, the way the detector joins aligned pixels, one level up.
#ifndef MORVANE_LINESEGMENTS_SEGMENT_LINKER_H
#define MORVANE_LINESEGMENTS_SEGMENT_LINKER_H

#include <vector>

#include "linesegments/image_object.h"
#include "linesegments/line_segment_rect.h"

namespace geometric {

class SegmentLinker {
public:
    // link_angle in degrees, link_gap in pixels. With `validate`, every
    // linked rectangle is scored on the angle image against log_eps.
    SegmentLinker(double link_angle, double link_gap, bool validate, double log_eps);

    // Replaces `segments` by the linked groups, longest seeds first.
    //  - A group starts from the longest free segment; its direction is the
    //    seed's own (the running sum starts at the seed's end-to-end vector).
    //  - Each member in turn takes every free segment that lies outward of one
    //    of its ends, within link_gap, and whose theta is within link_angle of
    //    the group direction; the vector between the centres, pointing away
    //    from the member, is added to the sum, whose angle is the new direction.
    //  - The group's rectangle: centre = length-weighted mean of the centres,
    //    theta = the seed's for a group of one, else the axis of least inertia
    //    of the centres turned to agree with the direction; ends and width
    //    from the members' ends projected on it; prec from link_angle. A group
    //    of several has length 0.0 (the caller fills it in when it rescales).
    void link(std::vector<LineSegmentRect>& segments, const ImageObject<double>& angles) const;

    // The gap between member m and candidate c: of the four end distances
    // d11, d12, d21, d22 (end i of m to end j of c), the first smallest, and
    // link_gap + 1.0 when c's far end is not farther from m's other end than
    // its near end is (c does not lie outward of m). `at_first_end` tells
    // whether the gap is at m's first end.
    static double pair_ends(const LineSegmentRect& m, const LineSegmentRect& c, double link_gap, bool& at_first_end);

private:
    LineSegmentRect group_rectangle(const std::vector<LineSegmentRect>& segments, const std::vector<int>& group,
                                    double direction) const;

    double link_angle;
    double link_gap;
    bool validate;
    double log_eps;
};

}  // namespace geometric

#endif

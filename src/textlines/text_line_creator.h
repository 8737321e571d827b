// The text lines that vote for the horizontal vanishing point: one robust
// line per merged eigenpoint group, with its spread, angle and position, the
// lines' weights and the order in which the consensus search tries pairs.
#ifndef MORVANE_TEXTLINES_TEXT_LINE_CREATOR_H
#define MORVANE_TEXTLINES_TEXT_LINE_CREATOR_H

#include <utility>
#include <vector>

#include "edgelines/line_weightor.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

class TextLineCreator {
public:
    // `lines` takes one line per group, `weights` one weight per line, and
    // `pairs` (cleared first) the priority order of line pairs: the ten
    // heaviest lines, pairs of heavy lines far apart first. True when the
    // mean spread of the lines is at most one pixel, a page of clean
    // straight lines, which the caller takes as trust in them; with no
    // group the spread is 0 and the answer true.
    bool formulate_text_line(const std::vector<std::vector<Geocoordinate<float>>>& groups,
                             std::vector<GeolineBase>& lines, std::vector<double>& weights,
                             std::vector<std::pair<int, int>>& pairs) const;

    // One group's line, and its record:
    //  1. line0, the iterative fit of the group (tolerance 0.01, not normalised);
    //  2. the points split by the sign of line0's value, those with
    //     a x + b y + c >= 0 (above the line in the image, where ascenders
    //     and accents pull) first, and their outliers removed with k = 1,
    //     the first side getting three times the limit;
    //  3. the iterative fit of the kept points is the line.
    // The record: `value` the spread, the standard deviation (divisor n - 1)
    // of the kept points' distances to the line, 0 below 2 points; `count`
    // the kept points; `angle` the line's angle; `position` the mean y of the
    // kept points in single precision.
    static GeolineBase formulate_one_line(const std::vector<Geocoordinate<float>>& group, LineWeightor& record);
};

}  // namespace geometric

#endif

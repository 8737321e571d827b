// Lines along tall slim blobs (stems and rules) for the vertical vanishing
// point when the margins give none, and whether they cover the page's width.
#ifndef MORVANE_TEXTLINES_BLOB_LINE_CREATOR_H
#define MORVANE_TEXTLINES_BLOB_LINE_CREATOR_H

#include <utility>
#include <vector>

#include "pageanalysis/pageanalysis.h"
#include "textgeometry/geoline_base_points.h"

namespace geometric {

class BlobLineCreator {
public:
    // Answers of perform_blob_line_formulation beside the analysis's pass
    // numbers 1 to 3.
    enum : int {
        NO_BLOB_LINES = 0,
        // Lines were found but leave a quarter of their own span empty.
        BLOB_LINES_NOT_SPREAD = 10
    };

    explicit BlobLineCreator(Pageanalysis* analysis_) : analysis(analysis_) {}

    // The analysis's slim blob search appends lines and their eccentricities
    // (the weights); its answer r, the pass that succeeded, or 0 when none
    // did, which is answered at once. Each line's position is the x of its
    // first support point; `pairs` receives the uniform priority order (ten
    // lines spread across the page). Then the width test: the positions'
    // span, 1 + last - first, cut into four equal bins; any empty bin gives
    // BLOB_LINES_NOT_SPREAD, otherwise the answer is r. No analysis: 0.
    int perform_blob_line_formulation(std::vector<GeolineBasePoints<float>>& blob_lines,
                                      std::vector<double>& weights, std::vector<std::pair<int, int>>& pairs);

    // True when every quarter of the positions' span holds a position:
    // position p falls in bin (int)((p - first) / (1 + last - first) 4).
    static bool covers_the_width(std::vector<double> positions);

    Pageanalysis* analysis;
};

}  // namespace geometric

#endif

// One measure of the page, the median nearest-neighbour spacing of its
// eigenpoints, turned into every distance threshold of the text route.
#ifndef MORVANE_TEXTLINES_EIGNPOINTS_PARA_SETUP_H
#define MORVANE_TEXTLINES_EIGNPOINTS_PARA_SETUP_H

#include <vector>

#include "pageanalysis/pageanalysis.h"
#include "textgeometry/geocoordinate.h"
#include "textlines/hybrid_projective_para.h"

namespace geometric {

// The thresholds follow the character spacing of the page, not its pixel
// size: nothing else in the system scales them.
class EignpointsParaSetup {
public:
    // Appends the analysis's eigenpoints (bottom centres of the regular
    // blobs) to `points`, measures their median spacing M over all of
    // `points` and writes, with f the clustering's neighbour factor:
    //   clustering: median_spacing M, neighbor_distance f M, line_distance M;
    //   merger:     search_step M, end_distance 2 M, line_gap 0.25 M;
    //   margin:     inlier_distance 0.5 M, grouping_distance 6 M,
    //               frame_margin M, merge_distance M.
    // Without any point there is no spacing: false, `para` untouched.
    static bool set_up_eignpoints_para(Pageanalysis* analysis, std::vector<Geocoordinate<float>>& points,
                                       HybridProjectivePara& para);

    // The upper median (index n / 2 in ascending order) of each point's float
    // distance to its nearest other point. A point at exactly the same place
    // counts 1e10, so that duplicates do not zero the measure; a single
    // point has only that. Callers pass at least one point.
    static float obtain_median_spacing(const std::vector<Geocoordinate<float>>& points);

    // The table above for a spacing M.
    static void set_up_thresholds(float median_spacing, HybridProjectivePara& para);
};

}  // namespace geometric

#endif

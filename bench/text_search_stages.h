// The text search of the corrector, stage by stage, through the feature
// object's own functions: so that a benchmark can time each stage alone and
// a trace can print what each found. The stages follow the main line of the
// feature search on a page whose edge result is not kept at once.
#ifndef MORVANE_BENCH_TEXT_SEARCH_STAGES_H
#define MORVANE_BENCH_TEXT_SEARCH_STAGES_H

#include <vector>

#include "registration/feature_registration.h"
#include "registration/hybrid_registration.h"

namespace bench_text {

using Groups = std::vector<std::vector<geometric::Geocoordinate<float>>>;

enum Stage { PAGE_ANALYSIS, GROUPS, HORIZONTAL, VERTICAL, CORNERS, STAGE_COUNT };

// The driver's own feature object, set up as for its run; the driver's edge
// search must have run.
struct TextSearch {
    explicit TextSearch(hybrid::HybridRegistration& driver) : feature(driver.prepare_feature_searching()) {}
    hybrid::FeatureRegistration& feature;
    Groups groups;
    int horizontal = 0;
    int vertical = 0;
};

// One stage; false when the main line ends with it (no text, no groups, no corners).
inline bool run_stage(TextSearch& search, Stage stage) {
    hybrid::FeatureRegistration& feature = search.feature;
    switch (stage) {
        case PAGE_ANALYSIS: return feature.execute_page_anlysis();
        case GROUPS: return feature.execute_eigen_clustering(search.groups);
        case HORIZONTAL: {
            bool formed = false;
            search.horizontal = feature.perform_horizontal_vp_searching(search.groups, formed);
            return true;
        }
        case VERTICAL: {
            search.vertical = feature.perform_vertical_vp_searching_via_margin_lines(search.groups);
            bool again = false;
            if (search.vertical == hybrid::DIRECTION_NOTHING)
                search.vertical = feature.perform_vertical_vp_searching_via_blob_analysis(again);
            feature.registration_output = feature.classify_vanishing_point_flags();
            return true;
        }
        case CORNERS: return feature.obtain_corners();
        default: return false;
    }
}

}  // namespace bench_text

#endif

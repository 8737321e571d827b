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

// A feature object on the driver's working image, set up as the driver sets
// it up before its run: the working image's parameters and everything the
// edge search found. The driver's edge search must have run.
inline void hand_over(const hybrid::HybridRegistration& driver, hybrid::FeatureRegistration& feature) {
    if (driver.downsampling_rate > 1) {
        feature.para.apriori_binarization_k = 0.1f;
        feature.para.apriori_is_full_resolution = false;
    }
    const geometric::ProjectiveRegistration& edge = *driver.edge_registration;
    feature.registration_output = edge.registration_output;
    feature.bounding_lines = edge.bounding_lines;
    feature.bounding_line_property = edge.bounding_line_property;
    feature.vanishing_points = edge.vanishing_points;
    feature.bounding_vanishing_points = edge.bounding_vanishing_points;
    feature.output_width = edge.output_width;
    feature.output_height = edge.output_height;
    feature.corners = edge.corners;
    static_cast<geometric::ProjectiveRegistration&>(feature).para = driver;
    feature.para.registration = driver;
}

struct TextSearch {
    explicit TextSearch(const hybrid::HybridRegistration& driver) : feature(driver.downsampled_image) {
        hand_over(driver, feature);
    }
    hybrid::FeatureRegistration feature;
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

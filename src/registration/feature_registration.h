// The page's geometry read from its text: page analysis, eigenpoint groups,
// text lines and the horizontal vanishing point, weighed at every turn
// against what the edge search found, and corners that never cut the text.
#ifndef MORVANE_REGISTRATION_FEATURE_REGISTRATION_H
#define MORVANE_REGISTRATION_FEATURE_REGISTRATION_H

#include <cstdint>
#include <utility>
#include <vector>

#include "common/basic_image.h"
#include "pageanalysis/pageanalysis.h"
#include "registration/projective_registration.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"
#include "textlines/hybrid_projective_para.h"
#include "vanishing/vanishing_point_output.h"

namespace hybrid {

// One flat record whose blocks go by address to the classes that read them:
// margin, clustering, merger, ransac and registration (the inherited blocks),
// then the page analysis and the trust tests. The clustering block's last
// value, median_spacing, is the anchor tolerance of the corners from text.
struct FeatureRegistrationPara : public geometric::HybridProjectivePara {
    // ---- page analysis (the gray page's text-picture separation) ----
    // Sauvola binarization of the separation.
    int apriori_smoothing_weight = 2;
    // The working image is the input itself: it is smoothed before binarization.
    bool apriori_is_full_resolution = true;
    int apriori_lower_gray_limit = 50;
    int apriori_upper_gray_limit = 200;
    int apriori_window_size = 35;
    float apriori_binarization_k = 0.2f;
    bool apriori_use_wide_ring = true;
    // Text blob selection.
    int apriori_minimum_text_blobs = 10;
    float apriori_angle_tolerance = 20.0f;
    double apriori_eccentricity_threshold = 0.975;
    float apriori_lower_area_factor = 0.3f;
    float apriori_upper_area_factor = 5.0f;
    std::int32_t apriori_use_median = 0;
    // Text-picture separation.
    int apriori_minimum_pixels = 5;
    int apriori_erosion_size = 8;
    int apriori_reserved_size = 5;
    int apriori_maximum_height = 128;
    int apriori_maximum_width = 128;
    int apriori_minimum_disparity = 30;
    int apriori_neighborhood_size = 5;
    bool apriori_use_mean_as_foreground = true;

    // ---- trust tests: when the edge search's directions stand ----
    // Degrees within which a text direction agrees with an edge.
    float angle_tolerance = 1.1f;
    // The tolerance's factor when both edges of the pair stand on a dominant segment (2 otherwise).
    float dominant_edge_factor = 4.0f;
    // Up to this many text lines the edges are judged with the factor.
    int minimum_text_lines = 50;
    // Up to this many, always with the factor.
    float few_text_lines = 10.0f;
    // Of the image height: text lines spanning less than this are few evidence.
    float height_fraction = 0.35f;
    // Of the image height: the first and last text lines closer than this are few evidence.
    float end_distance_fraction = 0.5f;
    int minimum_blob_lines = 20;
    // Degrees: left and right edges leaning alike within this stand.
    int maximum_vertical_disparity = 7;
};

// The text's extreme points, a copy of the eigenpoint merger's.
struct TextBox {
    geometric::Geocoordinate<float> top;
    geometric::Geocoordinate<float> bottom;
    geometric::Geocoordinate<float> left;
    geometric::Geocoordinate<float> right;
};

// How the anchors of a text box are pushed outward before corners are
// drawn through them: by `push` character boxes, and, with
// `may_leave_image`, at most `overshoot` character widths beyond the left
// and right sides of the image.
struct CornerExpansion {
    int width;
    int height;
    float anchor_tolerance;
    bool may_leave_image;
    int overshoot;  // 1
    int push;       // 2
    int character_width;
    int character_height;

    void expand_left(geometric::Geocoordinate<float>& anchor) const;
    void expand_right(geometric::Geocoordinate<float>& anchor) const;
    void expand_top(geometric::Geocoordinate<float>& anchor) const;
    void expand_bottom(geometric::Geocoordinate<float>& anchor) const;
};

// The output code of one direction's search.
enum DirectionSearchCode : int {
    DIRECTION_NOTHING = 0,
    DIRECTION_VANISHING_POINT = 1,
    DIRECTION_PARALLEL = 2,
    DIRECTION_EDGE_STANDS = 3,           // the edge search's detection stands
    DIRECTION_EDGE_PARALLEL_STANDS = 4   // the edge search's parallel detection stands
};

// The driver copies everything the edge search found into this object
// before it runs; the flags that a run clears stay cleared, so an object
// serves one run.
class FeatureRegistration : public geometric::ProjectiveRegistration {
public:
    explicit FeatureRegistration(const common::Image* image_);
    ~FeatureRegistration() override;
    FeatureRegistration(const FeatureRegistration&) = delete;
    FeatureRegistration& operator=(const FeatureRegistration&) = delete;

    // The edge result weighed first: a closed frame of edges that covers
    // enough of the image is kept at once, without page analysis. Then page
    // analysis, eigenpoint groups (with a binarized second try when the gray
    // page gives no groups and the edges gave nothing), a check that a
    // preferred edge result is not contradicted by the text, the horizontal
    // search, the vertical searches, and the flags classified into the answer.
    geometric::RegistrationOutputType run_registration() override;

    // A gray working image by text-picture separation, a binary one by
    // dilation and area. On failure, and only without a usable edge result,
    // a second try on its Sauvola binarization. The analysis that succeeded
    // stays in page_analysis.
    bool execute_page_anlysis();

    // Eigenpoints, their groups, the groups merged; the merger's text box
    // becomes text_box. False when no merged groups result.
    bool execute_eigen_clustering(std::vector<std::vector<geometric::Geocoordinate<float>>>& groups);

    // The horizontal direction from the text lines of `groups`; a
    // DirectionSearchCode. `text_lines_formed` tells whether the lines are
    // clean (mean spread at most one pixel).
    int perform_horizontal_vp_searching(const std::vector<std::vector<geometric::Geocoordinate<float>>>& groups,
                                        bool& text_lines_formed);

    // The vertical direction from the text's margins: parallel margins, a
    // point from two or more of them, or one margin weighed against the
    // edges (and made a bounding line of its side when they do not help).
    // A DirectionSearchCode.
    int perform_vertical_vp_searching_via_margin_lines(
        const std::vector<std::vector<geometric::Geocoordinate<float>>>& groups);
    // The vertical direction from lines along tall slim blobs, when the
    // margins gave none; the edges' direction stands where the blobs agree
    // with it or say nothing. `again` is left false: one pass serves.
    int perform_vertical_vp_searching_via_blob_analysis(bool& again);

    // Corners. Without a text box: the edge search's own corners when it
    // left any, else the base form from the bounding lines. With one: the
    // four bounding lines guarded by the text when the edges are preferred;
    // otherwise the expanded text box (or the image's extremes in the
    // parallel case) drawn through with the directions found, each anchor
    // moved onto a bounding line of its side unless the text lies beyond it.
    bool perform_edge_corner_searching() override;

    // The vertical flags from a solver code: 1 a vanishing point, 2 parallel
    // (true); 0 false; 4 answers whether the vertical direction is already
    // parallel, and turns the code into 0 (and clears ver_vp) when it is
    // not; any other code true, flags untouched.
    bool set_vp_property(geometric::VanishingPointOutput& output);

    // Trust tests of the horizontal direction.
    // `order` holds an outer pair of line indices and a second pair; the
    // pair farther apart at x = 0 (the second only when its indices lie
    // farther apart) gives `span` and the two angles, the higher index
    // first. True when the angles differ by at most horizontal_angle_disparity.
    bool is_text_line_parallel(const std::vector<geometric::GeolineBase>& lines, const std::vector<int>& order,
                               float& first_angle, float& second_angle, float& span) const;
    // Whether the edge search's horizontal direction stands against text
    // lines of these angles, spanning `span`, the first and last lines
    // `end_distance` apart.
    bool is_previous_horizontal_detection_trustable(int line_count, float first_angle, float second_angle, float span,
                                                    float end_distance, bool text_lines_formed) const;
    // Appends the top and bottom edges that agree with the text's angles to
    // the search's lines, weight 1.0 each, the longer first; true when one of
    // them is longer than half the image width.
    bool can_provide_hor_boundingline_indicator(std::vector<geometric::GeolineBase>& lines,
                                                std::vector<double>& weights, float first_angle,
                                                float second_angle) const;

    // Trust tests of the vertical direction.
    // The test of is_text_line_parallel on near-vertical lines, the first
    // two priority pairs as the outer and the second pair, the span taken
    // across x at y = 0 and given back in `count`, cut to whole pixels.
    bool is_blob_line_parallel(const std::vector<geometric::GeolineBase>& lines,
                               const std::vector<std::pair<int, int>>& pairs, float& first_angle,
                               float& second_angle, int& count) const;
    // The pair of margins picked by uniform priority (its indices go to
    // `selected`) judged with vertical_angle_disparity; when parallel, the
    // vertical direction becomes parallel at the pair's mean angle.
    bool is_margin_line_parallel(const std::vector<geometric::GeolineBase>& lines, std::vector<int>& selected);
    // Whether the edge search's vertical direction stands against lines of
    // these angles spanning `span` across the page.
    bool is_previous_vertical_detection_trustable(int line_count, float first_angle, float second_angle,
                                                  float span) const;
    // Appends the left and right edges that agree with the angles (ten
    // times the tolerance with `flag`), weight 1.0, the longer first.
    bool can_provide_ver_boundingline_indicator(std::vector<geometric::GeolineBase>& lines,
                                                std::vector<double>& weights, float first_angle,
                                                float second_angle, bool flag) const;

    FeatureRegistrationPara para;
    // Owned; kept for the resolution estimate after the run.
    geometric::Pageanalysis* page_analysis;
    TextBox text_box;
    // The edge search left exactly four bounding lines.
    int has_four_bounding_lines;
    bool edge_result_is_preferred;

private:
    int image_width() const;
    int image_height() const;
    // The edge result's quality; true when it is kept at once.
    bool weigh_edge_result();
    // A preferred edge result that the text's bottom or the text's wealth
    // contradicts is given up; true when it still stands.
    bool edge_result_still_stands(std::size_t group_count) const;
    // A binary page analysis of the working image's Sauvola binarization.
    bool run_binarized_page_analysis();
    void delete_page_analysis();
    CornerExpansion corner_expansion(bool may_leave_image) const;
    // is_text_line_parallel's test across x at y = 0, for near-vertical lines.
    bool pair_is_parallel(const std::vector<geometric::GeolineBase>& lines, const std::vector<int>& order,
                          float tolerance, float& first_angle, float& second_angle, float& span) const;
    bool corners_from_text_and_lines(bool parallel_case);
    bool corners_from_guarded_bounding_lines();

    // The binarized working image of the second try; the analysis reads it.
    common::BasicImage binarized_image;
};

}  // namespace hybrid

#endif

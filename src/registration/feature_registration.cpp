// The text search: stages, the weighing of the edge result, the horizontal
// direction from text lines, and corners made from the text box.
#include "registration/feature_registration.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "binarization/sauvola_binarization.h"
#include "common/constants.h"
#include "edgelines/bounding_lines_operator.h"
#include "edgelines/line_angle_comparator.h"
#include "pageanalysis/apriori_pageanalysis.h"
#include "pageanalysis/area_pageanalysis.h"
#include "edgelines/bounding_line_judger.h"
#include "edgelines/priority_selector.h"
#include "textlines/blob_line_creator.h"
#include "textlines/eignpoints_cluster.h"
#include "textlines/eignpoints_merger.h"
#include "textlines/eignpoints_para_setup.h"
#include "textlines/margin_line_creator.h"
#include "textlines/text_line_creator.h"
#include "vanishing/rectification_candidate.h"
#include "vanishing/vanishing_point_codes.h"
#include "vanishing/vpoint_margin_solver.h"
#include "vanishing/vpoint_ransac_solver.h"

namespace hybrid {

namespace {

using geometric::Geocoordinate;
using geometric::GeolineBase;
using Groups = std::vector<std::vector<Geocoordinate<float>>>;

// Limits of the edge result's quality: the gaps between the ends that should
// meet, against the total support; the support against the image's
// perimeter; the output's area against the image's.
constexpr float kUnclosedLimit = 0.2f;
constexpr float kLooseUnclosedLimit = 0.4f;
constexpr float kPerimeterLimit = 0.4f;
constexpr float kAreaLimit = 0.2f;
// Degrees of disparity within which opposite edges agree.
constexpr double kHorizontalEdgesAgree = 2.0;
constexpr double kVerticalEdgesAgree = 3.0;

// An edge result with this many text lines and opposite edges this close
// (a fraction of the height) is checked against the text even when the
// bottom edge looks right.
constexpr std::size_t kManyGroups = 30;
constexpr double kCloseEdgesFraction = 0.5;
// A bottom edge within this many degrees of horizontal and this near the
// image's bottom row is taken for the image border.
constexpr double kFlatBottomDegrees = 1.0;
constexpr double kBottomRowDistance = 4.0;
constexpr double kBottomRowFraction = 0.01;

// Mean angles of two text lines in this range straddle the wrap at 0 and 180.
constexpr float kWrapLow = 45.0f;
constexpr float kWrapHigh = 145.0f;
// Factors on the inliers: the solver's answer from too few of the text
// lines is overruled by the edges.
constexpr double kFewInliersFactor = 2.0;
constexpr double kFewInliersCloseFactor = 1.5;
// The tolerance factor of edges without dominant segments.
constexpr float kPlainEdgeFactor = 2.0f;
// Edges longer than this share of the width, and this close in angle, stand.
constexpr double kLongEdgeFraction = 0.1;
constexpr double kEdgesParallelDegrees = 3.0;
// A top or bottom edge longer than this share of the width vouches for the text's direction.
constexpr double kIndicatorLengthFraction = 0.5;

// The vertical direction's constants: the upright angle; the mean error
// in degrees within which the edges' point makes a lone margin upright; an
// edge this share of the width from a lone margin is its partner; a margin
// this share of the width from the left side stands away from it; the
// tolerance factors of edges against a lone margin, against few blob lines
// and with the caller's flag; a first margin longer than this share of the
// height carries the page's point; the span share that counts as wide;
// columns outside 88 to 92 degrees are no parallel direction.
constexpr float kUprightDegrees = 90.0f;
constexpr float kUprightMarginDegrees = 1.0f;
constexpr double kPartnerFraction = 0.2;
constexpr double kAwayFraction = 0.1;
constexpr double kHalf = 0.5;
constexpr float kLooseEdgeFactor = 3.0f;
constexpr float kFewBlobsFactor = 3.0f;
constexpr float kFlaggedEdgeFactor = 10.0f;
constexpr double kLongMarginFraction = 0.6;
constexpr float kWideFraction = 0.35f;
constexpr float kUprightLow = 88.0f;
constexpr float kUprightHigh = 92.0f;

// The mean of near-vertical angles; they do not wrap.
float mean_vertical_angle(const std::vector<float>& angles) {
    if (angles.empty()) return kUprightDegrees;
    double sum = 0.0;
    for (float a : angles) sum += a;
    return static_cast<float>(sum / static_cast<double>(angles.size()));
}

// The height the first margin's points cover; the image height without them.
double margin_length(const std::vector<std::vector<geometric::Geocoordinate<float>>>& groups, int height) {
    if (groups.empty() || groups.front().empty()) return height;
    float low = groups.front().front().y, high = low;
    for (const auto& p : groups.front()) low = std::min(low, p.y), high = std::max(high, p.y);
    return static_cast<double>(high - low);
}

bool is_found(geometric::RegistrationOutputType r) { return r >= 1 && r <= 4; }

float angle_of(const GeolineBase& line) { return static_cast<float>(line.line_angle()); }

// The pair of lines of the priority order that lies farther apart, measured
// by where the lines cross one axis (position_of), and whether their angles
// agree within the tolerance: the first two of the order, or the next two
// when those are further apart in the order and in place. The first angle is
// that of the later line.
template <typename Position>
bool widest_pair_is_parallel(const std::vector<GeolineBase>& lines, const std::vector<int>& order, Position position_of,
                             float tolerance, float& first_angle, float& second_angle, float& span) {
    const auto at = [&](int i) { return static_cast<float>(position_of(lines[static_cast<std::size_t>(i)])); };
    int i = order[0], j = order[1];
    span = std::fabs(at(i) - at(j));
    if (std::abs(order[2] - order[3]) > std::abs(order[0] - order[1])) {
        const float other = std::fabs(at(order[2]) - at(order[3]));
        if (other > span) {
            span = other;
            i = order[2];
            j = order[3];
        }
    }
    first_angle = angle_of(lines[static_cast<std::size_t>(std::max(i, j))]);
    second_angle = angle_of(lines[static_cast<std::size_t>(std::min(i, j))]);
    return !geometric::LineAngleComparator::is_large_disparity(first_angle, second_angle, tolerance);
}

float folded_difference(double first, double second) {
    return static_cast<float>(geometric::LineAngleComparator::fold(first - second));
}

// The mean direction of horizontal-ish angles, across the wrap at 180.
float mean_horizontal_angle(const std::vector<float>& angles) {
    if (angles.empty()) return 0.0f;
    double sum = 0.0;
    for (float a : angles) sum += a > 90.0f ? a - 180.0 : a;
    double mean = sum / static_cast<double>(angles.size());
    if (mean < 0.0) mean += 180.0;
    return static_cast<float>(mean);
}

void clear_direction(geometric::VanishingPointOutput& output) {
    output.has_vanishing_point = false;
    output.is_parallel = false;
}

}  // namespace

// ---------------------------------------------------------------------------
// Life
// ---------------------------------------------------------------------------

FeatureRegistration::FeatureRegistration(const common::Image* image_)
    : geometric::ProjectiveRegistration(image_),
      page_analysis(nullptr),
      text_box(),
      has_four_bounding_lines(0),
      edge_result_is_preferred(false) {}

FeatureRegistration::~FeatureRegistration() { delete page_analysis; }

int FeatureRegistration::image_width() const { return image->get_width(); }
int FeatureRegistration::image_height() const { return image->get_height(); }

void FeatureRegistration::delete_page_analysis() {
    delete page_analysis;
    page_analysis = nullptr;
}

// ---------------------------------------------------------------------------
// The run
// ---------------------------------------------------------------------------

bool FeatureRegistration::weigh_edge_result() {
    if (bounding_lines.size() == 4) has_four_bounding_lines = 1;
    if (!is_found(registration_output)) return false;
    const float width = static_cast<float>(image_width());
    const float height = static_cast<float>(image_height());
    const float area = static_cast<float>(output_width) * static_cast<float>(output_height) / (width * height);
    const float support = static_cast<float>(geometric::BoundingLinesOperator::obtainSegmentLenSum(bounding_lines));
    const float perimeter = support / (2.0f * (width + height));
    // A missing side leaves the frame open: infinitely unclosed.
    const float unclosed =
        geometric::BoundingLinesOperator::obtainUnclosedDistance(bounding_lines, bounding_line_property) / support;
    const bool angles_agree = bounding_line_property.horizontal_angle_disparity < kHorizontalEdgesAgree &&
                              bounding_line_property.vertical_angle_disparity < kVerticalEdgesAgree;
    const bool covers = perimeter > kPerimeterLimit || area > kAreaLimit;
    if (unclosed < kUnclosedLimit && covers) {
        edge_result_is_preferred = true;
        return true;
    }
    if (unclosed < kUnclosedLimit || (unclosed >= kUnclosedLimit && unclosed < kLooseUnclosedLimit &&
                                      (covers || angles_agree))) {
        edge_result_is_preferred = true;
        // Corners from vanishing points need the text's directions; edge corners may stand.
        return !para.registration.use_edge_corners;
    }
    edge_result_is_preferred = false;
    return false;
}

bool FeatureRegistration::edge_result_still_stands(std::size_t group_count) const {
    const int bottom_index = bounding_line_property.bottom_index;
    if (bottom_index < 0 || bottom_index >= static_cast<int>(bounding_lines.size())) return true;
    const GeolineBase& bottom = bounding_lines[static_cast<std::size_t>(bottom_index)].line;
    const double height = image_height();
    const double width = image_width();
    double t = 90.0;
    if (std::fabs(bottom.b) > constants::kDoubleEpsilon) {
        t = bottom.line_angle();
        if (t > 90.0) t = 180.0 - t;
    }
    const double s = bottom.point_value(text_box.bottom);
    const double d = std::fabs(height - 0.5 * (bottom.y_at(0.0) + bottom.y_at(width)));
    const bool flat = t <= kFlatBottomDegrees;
    // Text below a flat bottom edge at the image's last rows: the edge is the image's border.
    if ((s < 0.0 && flat && d < kBottomRowFraction * height) || (flat && d < kBottomRowDistance)) return false;
    // Plenty of text between edges close together: the text decides.
    if (group_count > kManyGroups &&
        bounding_line_property.horizontal_intercept_disparity < kCloseEdgesFraction * height)
        return false;
    return true;
}

geometric::RegistrationOutputType FeatureRegistration::run_registration() {
    // The edge result's quality.
    if (weigh_edge_result()) return registration_output;

    // 1. Page analysis.
    if (!execute_page_anlysis()) return registration_output;

    // 2. to 5. Eigenpoint groups; a gray page without groups, after edges
    // that gave nothing, has its intersections taken up or a binary try.
    Groups groups;
    while (!execute_eigen_clustering(groups)) {
        if (page_analysis == nullptr || dynamic_cast<geometric::AprioriPageanalysis*>(page_analysis) == nullptr ||
            is_found(registration_output))
            return registration_output;
        if (bounding_vanishing_points.horizontal.has_vanishing_point ||
            bounding_vanishing_points.horizontal.is_parallel) {
            vanishing_points.horizontal_point = bounding_vanishing_points.horizontal_point;
            vanishing_points.horizontal = bounding_vanishing_points.horizontal;
        }
        if (bounding_vanishing_points.vertical.has_vanishing_point || bounding_vanishing_points.vertical.is_parallel) {
            vanishing_points.vertical_point = bounding_vanishing_points.vertical_point;
            vanishing_points.vertical = bounding_vanishing_points.vertical;
        }
        const geometric::RegistrationOutputType code = classify_vanishing_point_flags();
        if (is_found(code)) {
            const float right = static_cast<float>(image_width() - 1);
            const float bottom = static_cast<float>(image_height() - 1);
            text_box.top = Geocoordinate<float>(0.0f, 0.0f);
            text_box.left = Geocoordinate<float>(0.0f, 0.0f);
            text_box.bottom = Geocoordinate<float>(0.0f, bottom);
            text_box.right = Geocoordinate<float>(right, 0.0f);
            registration_output = code;
            return registration_output;
        }
        registration_output = code;
        if (!run_binarized_page_analysis()) return registration_output;
    }

    // 6. A preferred edge result that the text contradicts is given up.
    if (edge_result_is_preferred) {
        if (edge_result_still_stands(groups.size())) return registration_output;
        edge_result_is_preferred = false;
    }

    // 7. The horizontal direction.
    bool text_lines_formed = false;
    const int horizontal = perform_horizontal_vp_searching(groups, text_lines_formed);
    if (horizontal == DIRECTION_NOTHING) clear_direction(vanishing_points.horizontal);

    // 8. The vertical direction.
    int vertical = perform_vertical_vp_searching_via_margin_lines(groups);
    if (vertical == DIRECTION_NOTHING) {
        bool again = false;
        vertical = perform_vertical_vp_searching_via_blob_analysis(again);
        if (vertical == DIRECTION_NOTHING) clear_direction(vanishing_points.vertical);
    }

    // 9. Both directions are the edges': their result stands.
    const auto edge_stands = [](int code) {
        return code == DIRECTION_EDGE_STANDS || code == DIRECTION_EDGE_PARALLEL_STANDS;
    };
    if (edge_stands(horizontal) && edge_stands(vertical)) edge_result_is_preferred = true;
    if (bounding_vanishing_points.horizontal.is_parallel && horizontal == DIRECTION_EDGE_STANDS &&
        vertical == DIRECTION_PARALLEL) {
        vanishing_points.horizontal_point = bounding_vanishing_points.horizontal_point;
        vanishing_points.horizontal = bounding_vanishing_points.horizontal;
        vanishing_points.horizontal.is_parallel = true;
    }

    // 10.
    registration_output = classify_vanishing_point_flags();
    return registration_output;
}

// ---------------------------------------------------------------------------
// Stages
// ---------------------------------------------------------------------------

bool FeatureRegistration::execute_page_anlysis() {
    delete_page_analysis();
    if (image->get_image_type() == common::BINARY) {
        page_analysis = new geometric::AreaPageanalysis(image, nullptr);
    } else {
        geometric::AprioriPageanalysis* apriori = new geometric::AprioriPageanalysis(image, nullptr);
        page_analysis = apriori;
        geometric::SauvolaPara sauvola = apriori->get_sauvola_para();
        // A down-sampled page is smooth already and has fainter strokes.
        sauvola.perform_smoothing = para.apriori_is_full_resolution;
        sauvola.k = para.apriori_binarization_k;
        apriori->set_sauvola_para(sauvola);
    }
    if (page_analysis->run_page_analysis()) return true;
    delete_page_analysis();
    // A usable edge result is answer enough.
    if (is_found(registration_output)) return false;
    return run_binarized_page_analysis();
}

bool FeatureRegistration::run_binarized_page_analysis() {
    delete_page_analysis();
    binarized_image = common::BasicImage();
    geometric::SauvolaBinarization sauvola(image, &binarized_image);
    if (!sauvola.run_binarization()) return false;
    page_analysis = new geometric::AreaPageanalysis(&binarized_image, nullptr);
    if (page_analysis->run_page_analysis()) return true;
    delete_page_analysis();
    return false;
}

bool FeatureRegistration::execute_eigen_clustering(Groups& groups) {
    groups.clear();
    if (page_analysis == nullptr) return false;
    std::vector<Geocoordinate<float>> points;
    if (!geometric::EignpointsParaSetup::set_up_eignpoints_para(page_analysis, points, para)) return false;
    Groups clustered;
    geometric::EignpointsCluster cluster(para.clustering);
    if (!cluster.perform_eignpoints_clustering(points, clustered)) return false;
    geometric::EignpointsMerger merger(page_analysis, para.merger);
    if (!merger.perform_eignpoint_group_merge(clustered, groups)) return false;
    // The merger notes a single text box; it serves with four bounding lines and without.
    text_box.top = merger.top_point;
    text_box.bottom = merger.bottom_point;
    text_box.left = merger.leftmost_point;
    text_box.right = merger.rightmost_point;
    return true;
}

int FeatureRegistration::perform_horizontal_vp_searching(const Groups& groups, bool& text_lines_formed) {
    // 1. Text lines.
    std::vector<GeolineBase> lines;
    std::vector<double> weights;
    std::vector<std::pair<int, int>> pairs;
    text_lines_formed = geometric::TextLineCreator().formulate_text_line(groups, lines, weights, pairs);
    if (lines.empty()) return DIRECTION_NOTHING;
    const int line_count = static_cast<int>(lines.size());
    geometric::VanishingPointOutput& horizontal = vanishing_points.horizontal;

    // 2. How far apart the first and last lines lie.
    const float end_distance =
        std::fabs(static_cast<float>(lines.front().y_at(0.0)) - static_cast<float>(lines.back().y_at(0.0)));

    // 3. and 4. Parallel text lines, and the edges' trust. The outer pair
    // is the first priority pair, the second pair the next one.
    std::vector<int> order = {0, line_count - 1, 0, line_count - 1};
    if (!pairs.empty()) order[0] = pairs[0].first, order[1] = pairs[0].second;
    const std::pair<int, int>& second = pairs.size() > 1 ? pairs[1] : std::make_pair(order[0], order[1]);
    order[2] = second.first;
    order[3] = second.second;
    float first_angle = 0.0f, second_angle = 0.0f, span = 0.0f;
    const bool parallel = is_text_line_parallel(lines, order, first_angle, second_angle, span);
    const bool trustable = is_previous_horizontal_detection_trustable(line_count, first_angle, second_angle, span,
                                                                      end_distance, text_lines_formed);
    if (parallel) {
        float mean = 0.5f * (first_angle + second_angle);
        if (mean >= kWrapLow && mean <= kWrapHigh) {
            const float e = 180.0f - std::max(first_angle, second_angle) - std::min(first_angle, second_angle);
            mean = e > 0.0f ? 180.0f - 0.5f * e : 0.5f * std::fabs(e);
        }
        if (trustable) {
            bounding_vanishing_points.horizontal.is_parallel = true;
            bounding_vanishing_points.horizontal.has_vanishing_point = false;
            bounding_vanishing_points.horizontal.angle = mean;
            return DIRECTION_EDGE_STANDS;
        }
        horizontal.has_vanishing_point = false;
        horizontal.is_parallel = true;
        horizontal.angle = mean;
        return DIRECTION_PARALLEL;
    }
    if (trustable) return DIRECTION_EDGE_STANDS;

    // 5. The consensus of the text lines, the agreeing edges forced in.
    const std::size_t text_line_count = lines.size();
    const bool indicator = can_provide_hor_boundingline_indicator(lines, weights, first_angle, second_angle);
    Geocoordinate<double> point =
        horizontal.has_vanishing_point ? vanishing_points.horizontal_point : Geocoordinate<double>(0.0, 0.0);
    std::vector<int> inliers;
    geometric::VpointRansacSolver solver(geometric::HORIZONTAL_DIRECTION, image_width(), image_height(), para.ransac);
    int r = solver.perform_ransac_vpoint_searching(lines, pairs, weights, inliers, point, horizontal.angle, indicator);
    std::vector<float> inlier_angles;
    for (int i : inliers)
        if (i >= 0 && static_cast<std::size_t>(i) < text_line_count)
            inlier_angles.push_back(angle_of(lines[static_cast<std::size_t>(i)]));
    const float solver_angle = mean_horizontal_angle(inlier_angles);

    // 6. A consensus of few lines is overruled by the edges.
    const double n_in = static_cast<double>(inliers.size());
    const double n_all = static_cast<double>(lines.size());
    if (horizontal.has_vanishing_point) {
        std::vector<float> edge_angles;
        for (int index : bounding_line_property.horizontal_lines)
            edge_angles.push_back(angle_of(bounding_lines[static_cast<std::size_t>(index)].line));
        const float edge_angle = edge_angles.empty() ? horizontal.angle : mean_horizontal_angle(edge_angles);
        const bool close = bounding_line_property.horizontal_intercept_disparity > end_distance &&
                           2.0 * folded_difference(solver_angle, edge_angle) >
                               bounding_line_property.horizontal_angle_disparity;
        if (n_all > (close ? kFewInliersCloseFactor : kFewInliersFactor) * n_in) r = DIRECTION_EDGE_STANDS;
    } else if (n_all > kFewInliersFactor * n_in && horizontal.is_parallel) {
        r = DIRECTION_EDGE_STANDS;
    }

    // 7. The answer kept. The edges' own point stays when their detection stands.
    if (r != DIRECTION_NOTHING && r != DIRECTION_EDGE_STANDS) {
        vanishing_points.horizontal_point = point;
        horizontal.angle = solver_angle;
        horizontal.status = r;
    }
    if (r == DIRECTION_EDGE_PARALLEL_STANDS && !horizontal.is_parallel) {
        r = DIRECTION_NOTHING;
        clear_direction(horizontal);
    } else if (r == DIRECTION_VANISHING_POINT) {
        horizontal.has_vanishing_point = true;
        horizontal.is_parallel = false;
    } else if (r == DIRECTION_PARALLEL) {
        // Exactly parallel lines: a direction as certain as a point.
        horizontal.has_vanishing_point = false;
        horizontal.is_parallel = true;
    }

    // 8. Nothing from the text.
    if (r == DIRECTION_NOTHING) {
        if (text_lines_formed) {
            clear_direction(horizontal);
        } else if (!horizontal.has_vanishing_point) {
            if (horizontal.is_parallel)
                r = DIRECTION_EDGE_PARALLEL_STANDS;
            else
                clear_direction(horizontal);
        } else {
            r = DIRECTION_EDGE_STANDS;
            horizontal.has_vanishing_point = true;
            horizontal.is_parallel = false;
        }
    }
    return r;
}

bool FeatureRegistration::set_vp_property(geometric::VanishingPointOutput& output) {
    geometric::VanishingPointOutput& vertical = vanishing_points.vertical;
    switch (output.status) {
        case geometric::VPOINT_FOUND:
            vertical.has_vanishing_point = true;
            vertical.is_parallel = false;
            return true;
        case geometric::VPOINT_NO_RESULT: return false;
        case geometric::VPOINT_EXACTLY_PARALLEL:
            vertical.has_vanishing_point = false;
            vertical.is_parallel = true;
            return true;
        case geometric::VPOINT_TREAT_AS_PARALLEL:
            if (vertical.is_parallel) return true;
            vertical.has_vanishing_point = false;
            output.status = geometric::VPOINT_NO_RESULT;
            return false;
        default: return true;
    }
}

// ---------------------------------------------------------------------------
// Trust tests of the horizontal direction
// ---------------------------------------------------------------------------

bool FeatureRegistration::is_text_line_parallel(const std::vector<GeolineBase>& lines, const std::vector<int>& order,
                                                float& first_angle, float& second_angle, float& span) const {
    return widest_pair_is_parallel(lines, order, [](const GeolineBase& line) { return line.y_at(0.0); },
                                   para.registration.horizontal_angle_disparity, first_angle, second_angle, span);
}

bool FeatureRegistration::is_previous_horizontal_detection_trustable(int line_count, float first_angle,
                                                                     float second_angle, float span,
                                                                     float end_distance,
                                                                     bool text_lines_formed) const {
    const geometric::VanishingPointOutput& horizontal = vanishing_points.horizontal;
    if (!horizontal.has_vanishing_point && !horizontal.is_parallel) return false;
    const int top_index = bounding_line_property.top_index;
    const int bottom_index = bounding_line_property.bottom_index;
    if (top_index < 0 || bottom_index < 0) return false;
    const geometric::BoundingLine& top = bounding_lines[static_cast<std::size_t>(top_index)];
    const geometric::BoundingLine& bottom = bounding_lines[static_cast<std::size_t>(bottom_index)];
    const float top_angle = angle_of(top.line);
    const float bottom_angle = angle_of(bottom.line);
    const float d_top = folded_difference(first_angle, top_angle);
    const float d_bottom = folded_difference(second_angle, bottom_angle);
    const float limit = static_cast<float>(bounding_line_property.horizontal_intercept_disparity);
    const float height = static_cast<float>(image_height());

    // The factor on the tolerance: edges that both stand on a dominant segment earn more.
    const float edge_factor =
        top.has_dominant_segment && bottom.has_dominant_segment ? para.dominant_edge_factor : kPlainEdgeFactor;
    bool factor_applies = false;
    if (line_count <= para.minimum_text_lines && static_cast<float>(line_count) <= para.few_text_lines) {
        factor_applies = true;
    } else if (line_count <= para.minimum_text_lines) {
        factor_applies = span <= para.height_fraction * height && end_distance <= para.end_distance_fraction * height;
    }
    if (!factor_applies) {
        // Many clean text lines are held to the plain tolerance.
        if (text_lines_formed)
            return limit > span && d_top < para.angle_tolerance && d_bottom < para.angle_tolerance;
        factor_applies = true;
    }
    const float tolerance = para.angle_tolerance * edge_factor;
    if (limit > span && d_top < tolerance && d_bottom < tolerance) return true;
    if (!(limit > span)) return false;
    // Long edges that agree with each other stand even against the text's angles.
    const int long_edge = static_cast<int>(kLongEdgeFraction * image_width());
    return top.segment_length > long_edge && bottom.segment_length > long_edge &&
           folded_difference(top_angle, bottom_angle) < kEdgesParallelDegrees;
}

bool FeatureRegistration::can_provide_hor_boundingline_indicator(std::vector<GeolineBase>& lines,
                                                                 std::vector<double>& weights, float first_angle,
                                                                 float second_angle) const {
    if (bounding_line_property.horizontal_lines.empty()) return false;
    const double long_edge = kIndicatorLengthFraction * image_width();
    bool provided = false;
    int appended = 0;
    std::vector<int> lengths;
    const int sides[2] = {bounding_line_property.top_index, bounding_line_property.bottom_index};
    const float angles[2] = {first_angle, second_angle};
    for (int k = 0; k < 2; ++k) {
        if (sides[k] < 0) continue;
        const geometric::BoundingLine& edge = bounding_lines[static_cast<std::size_t>(sides[k])];
        if (!geometric::LineAngleComparator::is_small_disparity(angle_of(edge.line), angles[k], para.angle_tolerance))
            continue;
        lines.push_back(edge.line);
        weights.push_back(1.0);
        lengths.push_back(edge.segment_length);
        ++appended;
        if (edge.segment_length > long_edge) provided = true;
    }
    // The longer edge stands first.
    if (appended == 2 && lengths[0] < lengths[1]) std::swap(lines[lines.size() - 2], lines[lines.size() - 1]);
    return provided;
}

// ---------------------------------------------------------------------------
// The vertical direction
// ---------------------------------------------------------------------------

int FeatureRegistration::perform_vertical_vp_searching_via_margin_lines(const Groups& groups) {
    const int width = image_width();
    const int height = image_height();
    geometric::VanishingPointOutput& vertical = vanishing_points.vertical;

    // 1. The margins.
    geometric::MarginLineCreator creator(para.margin, width, height, page_analysis);
    Groups margin_groups;
    std::vector<GeolineBase> margins;
    std::vector<double> weights;
    const bool formed = creator.perform_margin_line_formulation(groups, margin_groups, margins, weights);
    if (!formed && margins.size() != 1) return DIRECTION_NOTHING;
    weights.resize(margins.size(), 1.0);

    // 2. Parallel margins.
    std::vector<int> selected;
    if (margins.size() >= 2 && is_margin_line_parallel(margins, selected)) return DIRECTION_PARALLEL;

    // 3. to 5. A point from all the margins at once.
    if (margins.size() >= 2) {
        geometric::VpointMarginSolver solver(width, height, para.ransac.maximum_rectification_error,
                                             geometric::VERTICAL_DIRECTION);
        Geocoordinate<double> point =
            vertical.has_vanishing_point ? vanishing_points.vertical_point : Geocoordinate<double>(0.0, 0.0);
        vertical.status = solver.perform_margin_vpoint_searching(margins, weights, point, kUprightDegrees);
        if (vertical.status == geometric::VPOINT_FOUND) vanishing_points.vertical_point = point;
        if (vertical.status == geometric::VPOINT_EXACTLY_PARALLEL) {
            std::vector<float> angles;
            for (const GeolineBase& m : margins) angles.push_back(angle_of(m));
            vertical.angle = mean_vertical_angle(angles);
        }
        if (set_vp_property(vertical)) return vertical.status;
        return DIRECTION_NOTHING;
    }

    // 6. One margin: the edges' point stands when it makes the margin upright.
    const GeolineBase margin = margins.front();
    if (vertical.has_vanishing_point) {
        Geocoordinate<double> point = vanishing_points.vertical_point;
        const int code = geometric::choose_rectification_candidate(
            width, height, geometric::VERTICAL_DIRECTION, {vanishing_points.vertical_point}, {margin}, point,
            geometric::kNoPreviousCandidate, true, kUprightMarginDegrees, kUprightDegrees);
        if (code == geometric::VPOINT_FOUND) return DIRECTION_VANISHING_POINT;
    }

    // 7. An edge that leans like the margin but stands well apart from it
    // is the margin's partner.
    const std::size_t vertical_before = bounding_line_property.vertical_lines.size();
    std::vector<GeolineBase> pair = {margin};
    const int sides[2] = {bounding_line_property.left_index, bounding_line_property.right_index};
    for (int side : sides) {
        if (pair.size() > 1 || side < 0 || side >= static_cast<int>(bounding_lines.size())) continue;
        const GeolineBase& edge = bounding_lines[static_cast<std::size_t>(side)].line;
        if (!geometric::LineAngleComparator::is_small_disparity(angle_of(edge), angle_of(margin),
                                                                para.angle_tolerance))
            continue;
        if (std::fabs(edge.x_at(0.0) - margin.x_at(0.0)) > kPartnerFraction * width) pair.push_back(edge);
    }

    // 8. Still alone: an edge leaning alike on a side the margin stands
    // away from gives the direction with it.
    bool helped = pair.size() > 1;
    if (!helped) {
        const double mean_x = 0.5 * (margin.x_at(0.0) + margin.x_at(height - 1.0));
        for (int k = 0; k < 2 && !helped; ++k) {
            const int side = sides[k];
            const bool away = k == 0 ? mean_x > kAwayFraction * width : mean_x < kHalf * width;
            if (!away || side < 0 || side >= static_cast<int>(bounding_lines.size())) continue;
            const GeolineBase& edge = bounding_lines[static_cast<std::size_t>(side)].line;
            if (!geometric::LineAngleComparator::is_small_disparity(angle_of(edge), angle_of(margin),
                                                                    kLooseEdgeFactor * para.angle_tolerance))
                continue;
            geometric::VanishingPointOutput& bounding = bounding_vanishing_points.vertical;
            Geocoordinate<double> point;
            if (geometric::intersect_lines(margin, edge, point)) {
                bounding_vanishing_points.vertical_point = point;
                bounding.has_vanishing_point = true;
                bounding.is_parallel = false;
            } else {
                bounding.has_vanishing_point = false;
                bounding.is_parallel = true;
                bounding.angle = angle_of(margin);
            }
            helped = true;
        }
    }

    // 9. No edge helped: the margin becomes the bounding line of its side,
    // unless that side is taken.
    if (!helped) {
        geometric::BoundingLine line;
        line.line = margin;
        line.x1 = static_cast<float>(margin.x_at(0.0));
        line.y1 = 0.0f;
        line.x2 = static_cast<float>(margin.x_at(height - 1.0));
        line.y2 = static_cast<float>(height - 1);
        line.segment_length = height;
        geometric::BoundingLineJudger judger(width, height);
        judger.formulateBoundingLine(bounding_lines, line, false);
        const int index = static_cast<int>(bounding_lines.size()) - 1;
        const geometric::BoundingLinePosition position = bounding_lines.back().position;
        if (position == geometric::RIGHT_BOUNDARY && bounding_line_property.right_index == -1) {
            bounding_line_property.right_index = index;
            bounding_line_property.vertical_lines.push_back(index);
        } else if (position == geometric::LEFT_BOUNDARY && bounding_line_property.left_index == -1) {
            bounding_line_property.left_index = index;
            bounding_line_property.vertical_lines.push_back(index);
        } else {
            bounding_lines.pop_back();
        }
    }

    // 10. Two margins: their crossing. A long first margin makes it the
    // page's vertical point.
    int result = DIRECTION_NOTHING;
    if (pair.size() == 2) {
        Geocoordinate<double> point;
        const bool met = geometric::intersect_lines(pair[0], pair[1], point);
        const double length = std::fabs(margin_length(margin_groups, height));
        if (length > kLongMarginFraction * height) {
            if (met) vanishing_points.vertical_point = point;
            vertical.has_vanishing_point = met;
            vertical.is_parallel = false;
            if (met) result = DIRECTION_VANISHING_POINT;
        } else if (met) {
            bounding_vanishing_points.vertical_point = point;
            bounding_vanishing_points.vertical.has_vanishing_point = true;
            bounding_vanishing_points.vertical.is_parallel = false;
        }
    }

    // 11. The margin completed a pair of vertical edges: their crossing.
    if (vertical_before == 1 && bounding_line_property.vertical_lines.size() == 2) {
        const GeolineBase& first = bounding_lines[static_cast<std::size_t>(bounding_line_property.vertical_lines[0])].line;
        const GeolineBase& second =
            bounding_lines[static_cast<std::size_t>(bounding_line_property.vertical_lines[1])].line;
        Geocoordinate<double> point;
        geometric::VanishingPointOutput& bounding = bounding_vanishing_points.vertical;
        if (geometric::intersect_lines(first, second, point)) {
            bounding_vanishing_points.vertical_point = point;
            bounding.has_vanishing_point = true;
            bounding.is_parallel = false;
        } else {
            bounding.has_vanishing_point = false;
            bounding.is_parallel = true;
            bounding.angle = angle_of(first);
        }
    }
    return result;
}

int FeatureRegistration::perform_vertical_vp_searching_via_blob_analysis(bool& again) {
    again = false;
    geometric::VanishingPointOutput& vertical = vanishing_points.vertical;
    const auto edge_stands = [&vertical]() {
        return vertical.has_vanishing_point ? DIRECTION_EDGE_STANDS : DIRECTION_EDGE_PARALLEL_STANDS;
    };

    // 1. Blob lines.
    std::vector<geometric::GeolineBasePoints<float>> blob_lines;
    std::vector<double> weights;
    std::vector<std::pair<int, int>> pairs;
    if (page_analysis != nullptr) {
        geometric::BlobLineCreator creator(page_analysis);
        creator.perform_blob_line_formulation(blob_lines, weights, pairs);
    }
    if (blob_lines.empty()) {
        if (vertical.has_vanishing_point || vertical.is_parallel) return edge_stands();
        return DIRECTION_NOTHING;
    }
    std::vector<GeolineBase> lines(blob_lines.begin(), blob_lines.end());
    weights.resize(lines.size(), 1.0);
    const int line_count = static_cast<int>(lines.size());

    // 2. and 3. Parallel blob lines, and the edges' trust.
    float first_angle = 0.0f, second_angle = 0.0f;
    int count = 0;
    const bool parallel = is_blob_line_parallel(lines, pairs, first_angle, second_angle, count);
    const float span = static_cast<float>(count);
    if (parallel) {
        const bool held = vertical.has_vanishing_point || vertical.is_parallel;
        if (held && is_previous_vertical_detection_trustable(line_count, first_angle, second_angle, span))
            return edge_stands();
        vertical.has_vanishing_point = false;
        vertical.is_parallel = true;
        vertical.angle = mean_vertical_angle({first_angle, second_angle});
        return DIRECTION_PARALLEL;
    }
    if (is_previous_vertical_detection_trustable(line_count, first_angle, second_angle, span)) return edge_stands();

    // 4. The consensus of the blob lines, the agreeing edges forced in.
    const std::size_t blob_count = lines.size();
    const bool indicator = can_provide_ver_boundingline_indicator(lines, weights, first_angle, second_angle, false);
    Geocoordinate<double> point =
        vertical.has_vanishing_point ? vanishing_points.vertical_point : Geocoordinate<double>(0.0, 0.0);
    std::vector<int> inliers;
    geometric::VpointRansacSolver solver(geometric::VERTICAL_DIRECTION, image_width(), image_height(), para.ransac);
    int r = solver.perform_ransac_vpoint_searching(lines, pairs, weights, inliers, point, vertical.angle, indicator);
    std::vector<float> inlier_angles;
    for (int i : inliers)
        if (i >= 0 && static_cast<std::size_t>(i) < blob_count)
            inlier_angles.push_back(angle_of(lines[static_cast<std::size_t>(i)]));
    const float angle = inlier_angles.empty() ? vertical.angle : mean_vertical_angle(inlier_angles);

    // 5. Columns leaning this far are no parallel direction.
    const bool upright = angle <= kUprightHigh && angle >= kUprightLow;
    if (!upright && (r == geometric::VPOINT_EXACTLY_PARALLEL || r == geometric::VPOINT_TREAT_AS_PARALLEL))
        r = geometric::VPOINT_NO_RESULT;
    if (r == geometric::VPOINT_FOUND) {
        vanishing_points.vertical_point = point;
        vertical.has_vanishing_point = true;
        vertical.is_parallel = false;
    }
    if (r == geometric::VPOINT_EXACTLY_PARALLEL) vertical.angle = angle;
    vertical.status = r;
    if (r == geometric::VPOINT_NO_RESULT) return DIRECTION_NOTHING;
    if (!set_vp_property(vertical)) return DIRECTION_NOTHING;
    return vertical.status;
}

// ---------------------------------------------------------------------------
// Trust tests of the vertical direction
// ---------------------------------------------------------------------------

bool FeatureRegistration::is_blob_line_parallel(const std::vector<GeolineBase>& lines,
                                                const std::vector<std::pair<int, int>>& pairs, float& first_angle,
                                                float& second_angle, int& count) const {
    count = 0;
    if (lines.size() < 2) return false;
    const int last = static_cast<int>(lines.size()) - 1;
    std::vector<int> order = {0, last, 0, last};
    if (!pairs.empty()) order[0] = pairs[0].first, order[1] = pairs[0].second;
    const std::pair<int, int>& second = pairs.size() > 1 ? pairs[1] : std::make_pair(order[0], order[1]);
    order[2] = second.first;
    order[3] = second.second;
    float span = 0.0f;
    const bool parallel = pair_is_parallel(lines, order, para.registration.vertical_angle_disparity, first_angle,
                                           second_angle, span);
    count = static_cast<int>(span);
    return parallel;
}

bool FeatureRegistration::is_margin_line_parallel(const std::vector<GeolineBase>& lines, std::vector<int>& selected) {
    selected.clear();
    if (lines.size() < 2) return false;
    const std::vector<double> weights(lines.size(), 1.0);
    std::vector<double> positions;
    for (const GeolineBase& line : lines) positions.push_back(line.x_at(kHalf * image_height()));
    std::vector<std::pair<int, int>> pairs;
    geometric::PrioritySelector().obtain_uniform_priority_array(weights, positions, pairs);
    if (pairs.empty()) pairs.emplace_back(0, static_cast<int>(lines.size()) - 1);
    selected = {pairs[0].first, pairs[0].second};
    const std::vector<int> order = {selected[0], selected[1], selected[0], selected[1]};
    float first_angle = 0.0f, second_angle = 0.0f, span = 0.0f;
    if (!pair_is_parallel(lines, order, para.registration.vertical_angle_disparity, first_angle, second_angle, span))
        return false;
    geometric::VanishingPointOutput& vertical = vanishing_points.vertical;
    vertical.has_vanishing_point = false;
    vertical.is_parallel = true;
    vertical.angle = mean_vertical_angle({first_angle, second_angle});
    return true;
}

bool FeatureRegistration::is_previous_vertical_detection_trustable(int line_count, float first_angle,
                                                                   float second_angle, float span) const {
    const geometric::VanishingPointOutput& vertical = vanishing_points.vertical;
    if (!vertical.has_vanishing_point && !vertical.is_parallel) return false;
    const int left_index = bounding_line_property.left_index;
    const int right_index = bounding_line_property.right_index;
    const int size = static_cast<int>(bounding_lines.size());
    if (left_index < 0 || right_index < 0 || left_index >= size || right_index >= size) return false;
    const float left_angle = angle_of(bounding_lines[static_cast<std::size_t>(left_index)].line);
    const float right_angle = angle_of(bounding_lines[static_cast<std::size_t>(right_index)].line);
    const float limit = static_cast<float>(bounding_line_property.vertical_intercept_disparity);
    const float width = static_cast<float>(image_width());
    bool same_side = false;
    const double lean =
        geometric::LineAngleComparator::calculate_vertical_disparity_difference(left_angle, right_angle, same_side);
    // Edges leaning alike to opposite sides, and wide enough apart, stand.
    if (!same_side && lean < para.maximum_vertical_disparity && (limit > span || limit > kWideFraction * width))
        return true;
    const float d_left = folded_difference(first_angle, left_angle);
    const float d_right = folded_difference(second_angle, right_angle);
    if (line_count <= para.minimum_blob_lines && span <= kWideFraction * width) {
        if (!(limit > span) && !(limit > kWideFraction * width)) return false;
        return d_left < kFewBlobsFactor * para.angle_tolerance && d_right < kFewBlobsFactor * para.angle_tolerance;
    }
    return d_left < 2.0f * para.angle_tolerance && d_right < 2.0f * para.angle_tolerance && limit > kHalf * span;
}

bool FeatureRegistration::can_provide_ver_boundingline_indicator(std::vector<GeolineBase>& lines,
                                                                 std::vector<double>& weights, float first_angle,
                                                                 float second_angle, bool flag) const {
    if (bounding_line_property.vertical_lines.empty()) return false;
    const int sides[2] = {bounding_line_property.left_index, bounding_line_property.right_index};
    const float angles[2] = {first_angle, second_angle};
    int appended = 0;
    std::vector<int> lengths;
    for (int k = 0; k < 2; ++k) {
        if (sides[k] < 0 || sides[k] >= static_cast<int>(bounding_lines.size())) continue;
        const geometric::BoundingLine& edge = bounding_lines[static_cast<std::size_t>(sides[k])];
        const double edge_angle = angle_of(edge.line);
        const bool close = geometric::LineAngleComparator::is_small_disparity(edge_angle, angles[k],
                                                                              2.0 * para.angle_tolerance);
        const bool loose = flag && geometric::LineAngleComparator::is_small_disparity(
                                       edge_angle, angles[k], kFlaggedEdgeFactor * para.angle_tolerance);
        if (!close && !loose) continue;
        lines.push_back(edge.line);
        weights.push_back(1.0);
        lengths.push_back(edge.segment_length);
        ++appended;
    }
    // The longer edge stands first.
    if (appended == 2 && lengths[0] < lengths[1]) std::swap(lines[lines.size() - 2], lines[lines.size() - 1]);
    return appended > 0;
}

bool FeatureRegistration::pair_is_parallel(const std::vector<GeolineBase>& lines, const std::vector<int>& order,
                                           float tolerance, float& first_angle, float& second_angle,
                                           float& span) const {
    return widest_pair_is_parallel(lines, order, [](const GeolineBase& line) { return line.x_at(0.0); }, tolerance,
                                   first_angle, second_angle, span);
}

}  // namespace hybrid

// A trace, not a timed benchmark: what each stage of the text search finds on
// one photo, run as the corrector runs it (edge search, then the feature
// search's stages one by one through their own functions).
//
//   trace_text_search PHOTO
//
// Prints one line per stage (working-image pixels): the edge result and its
// sides, the text blobs, the eigenpoint groups and the text box, the text
// lines, the horizontal answer, the margins, the vertical answer, the
// corners; then how the corners sit against the text: the share of text
// blobs inside the quadrilateral and, for each side, how far the nearest
// text lies from it in character boxes. The last line is the driver's own
// answer in full-size pixels, {"corners": [[x,y],...]} or {"corners": null},
// so the evaluation scripts can score the same run.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>
#include <stdexcept>
#include <vector>

#include "edgelines/bounding_line_anchor_corner_calculator.h"
#include "image_file.h"
#include "registration/hybrid_registration.h"
#include "text_search_stages.h"
#include "textlines/margin_line_creator.h"
#include "textlines/text_line_creator.h"

namespace {

using geometric::Geocoordinate;
using bench_text::Groups;

void print_direction(const char* name, const geometric::VanishingPointOutput& d, const Geocoordinate<double>& p) {
    std::printf(" %s[vp=%d par=%d angle=%.2f point=(%.0f,%.0f)]", name, d.has_vanishing_point ? 1 : 0,
                d.is_parallel ? 1 : 0, d.angle, p.x, p.y);
}

void print_directions(const geometric::VanishingPointHorVerInfo& info) {
    print_direction("hor", info.horizontal, info.horizontal_point);
    print_direction("ver", info.vertical, info.vertical_point);
    std::printf("\n");
}

// Signed distance of p from the line through a and b, positive on the
// quadrilateral's inner side (corners run clockwise on the screen).
double inner_distance(const Geocoordinate<float>& a, const Geocoordinate<float>& b, double x, double y) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double length = std::hypot(dx, dy);
    return length > 0.0 ? ((x - a.x) * dy - (y - a.y) * dx) / -length : 0.0;
}

// How the quadrilateral sits against the regular text blobs, and how far
// inside each side its anchor of the text box lies.
void print_fit(const geometric::Pageanalysis& analysis, const hybrid::TextBox& box,
               const std::vector<Geocoordinate<float>>& corners) {
    if (corners.size() != 4) return;
    int character_width = 0, character_height = 0;
    analysis.obtain_average_bounding_box(character_width, character_height);
    const char* names[4] = {"top", "right", "bottom", "left"};
    double nearest[4];
    std::fill(nearest, nearest + 4, std::numeric_limits<double>::max());
    int inside = 0, total = 0;
    for (const geometric::TextBlob& blob : analysis.filter.regular_blobs) {
        const double x = 0.5 * (blob.box.left + blob.box.right), y = 0.5 * (blob.box.top + blob.box.bottom);
        bool in = true;
        for (int k = 0; k < 4; ++k) {
            const double d = inner_distance(corners[k], corners[(k + 1) % 4], x, y);
            nearest[k] = std::min(nearest[k], d);
            in = in && d >= 0.0;
        }
        inside += in ? 1 : 0;
        ++total;
    }
    std::printf("fit: %d of %d text blobs inside; nearest text from each side, in character boxes:", inside, total);
    for (int k = 0; k < 4; ++k) {
        const int unit = (k % 2 == 0) ? character_height : character_width;
        std::printf(" %s %.1f", names[k], unit > 0 ? nearest[k] / unit : 0.0);
    }
    std::printf(" (character box %dx%d)\n", character_width, character_height);
    const Geocoordinate<float>* anchors[4] = {&box.top, &box.right, &box.bottom, &box.left};
    std::printf("anchors inside their sides, in character boxes:");
    for (int k = 0; k < 4; ++k) {
        const int unit = (k % 2 == 0) ? character_height : character_width;
        const double d = inner_distance(corners[k], corners[(k + 1) % 4], anchors[k]->x, anchors[k]->y);
        std::printf(" %s %.1f", names[k], unit > 0 ? d / unit : 0.0);
    }
    std::printf("\n");
}

// Which point of the text box each side passes through, as the corners
// from text and lines are made: its anchor pushed outward once or twice, or
// moved onto the bounding line of its side. A side through none of them
// means the quadrilateral is not the text box.
void print_text_box_sides(const hybrid::FeatureRegistration& feature) {
    const std::vector<Geocoordinate<float>>& corners = feature.corners;
    if (corners.size() != 4 || feature.page_analysis == nullptr) return;
    const int width = feature.image->get_width(), height = feature.image->get_height();
    int character_width = 0, character_height = 0;
    feature.page_analysis->obtain_average_bounding_box(character_width, character_height);
    // The text search's own expansion of the anchors: two character boxes, at most one beyond the sides.
    const hybrid::CornerExpansion expansion{width, height, feature.para.clustering.median_spacing, true, 1, 2,
                                            character_width, character_height};
    const geometric::BoundingLineAnchorCornerCalculator onto_line(width, height);
    const geometric::BoundingLineProperty& property = feature.bounding_line_property;
    const struct {
        const char* name;
        Geocoordinate<float> anchor;
        int index;
        geometric::BoundingLinePosition position;
        void (hybrid::CornerExpansion::*push)(Geocoordinate<float>&) const;
    } sides[4] = {{"top", feature.text_box.top, property.top_index, geometric::TOP_BOUNDARY,
                   &hybrid::CornerExpansion::expand_top},
                  {"right", feature.text_box.right, property.right_index, geometric::RIGHT_BOUNDARY,
                   &hybrid::CornerExpansion::expand_right},
                  {"bottom", feature.text_box.bottom, property.bottom_index, geometric::BOTTOM_BOUNDARY,
                   &hybrid::CornerExpansion::expand_bottom},
                  {"left", feature.text_box.left, property.left_index, geometric::LEFT_BOUNDARY,
                   &hybrid::CornerExpansion::expand_left}};
    int matched = 0;
    std::printf("sides through:");
    for (int k = 0; k < 4; ++k) {
        const auto& side = sides[k];
        Geocoordinate<float> once = side.anchor;
        (expansion.*side.push)(once);
        Geocoordinate<float> twice = once;
        (expansion.*side.push)(twice);
        Geocoordinate<float> on_edge = once;
        const bool has_edge = side.index >= 0 && side.index < static_cast<int>(feature.bounding_lines.size());
        if (has_edge)
            onto_line.obtainAnchorPoint(feature.bounding_lines[static_cast<std::size_t>(side.index)].line,
                                        side.position, on_edge);
        const auto on_side = [&](const Geocoordinate<float>& p) {
            return std::fabs(inner_distance(corners[k], corners[(k + 1) % 4], p.x, p.y)) < 0.75;
        };
        const char* through = on_side(once) ? "pushed" : on_side(twice) ? "pushed twice"
                              : has_edge && on_side(on_edge) ? "its edge" : "none";
        matched += through[0] != 'n' ? 1 : 0;
        std::printf(" %s %s,", side.name, through);
    }
    std::printf(" text box %s\n", matched == 4 ? "yes" : "no");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: trace_text_search PHOTO\n");
        return 2;
    }
    try {
        const scan::Raster raster = scan::read_image_file(argv[1]).raster;
        const ImageCApi record = raster.c_api();

        // The driver's own answer.
        hybrid::HybridRegistration driver;
        driver.set_input_image(record);
        const int code = driver.run_program();
        ControlPointCorners found{};
        driver.obtain_four_corners(found);

        // The same search, stage by stage.
        hybrid::HybridRegistration edges;
        edges.set_input_image(record);
        edges.run_edge_searching(false);
        const geometric::ProjectiveRegistration& edge = *edges.edge_registration;
        const common::BasicImage& work = *edges.downsampled_image;
        std::printf("working image %dx%d rate %d\n", work.get_width(), work.get_height(), edges.downsampling_rate);
        const geometric::BoundingLineProperty& property = edge.bounding_line_property;
        std::printf("edges: output %d lines %zu sides l%d r%d t%d b%d angle disparity h%.2f v%.2f", edge.registration_output,
                    edge.bounding_lines.size(), property.left_index, property.right_index, property.top_index,
                    property.bottom_index, property.horizontal_angle_disparity, property.vertical_angle_disparity);
        print_directions(edge.vanishing_points);
        for (const geometric::BoundingLine& line : edge.bounding_lines)
            std::printf("  side %d angle %.2f from (%.0f,%.0f) to (%.0f,%.0f) length %d\n",
                        static_cast<int>(line.position), line.line.line_angle(), line.x1, line.y1, line.x2, line.y2,
                        line.segment_length);

        bench_text::TextSearch search(edges);
        hybrid::FeatureRegistration& feature = search.feature;
        const bool analysed = bench_text::run_stage(search, bench_text::PAGE_ANALYSIS);
        std::printf("page analysis: %d text blobs %zu\n", analysed ? 1 : 0,
                    analysed ? feature.page_analysis->filter.regular_blobs.size() : 0);
        const Groups& groups = search.groups;
        const bool clustered = analysed && bench_text::run_stage(search, bench_text::GROUPS);
        const hybrid::TextBox& box = feature.text_box;
        std::printf("groups: %d count %zu text box top(%.0f,%.0f) bottom(%.0f,%.0f) left(%.0f,%.0f) right(%.0f,%.0f)\n",
                    clustered ? 1 : 0, groups.size(), box.top.x, box.top.y, box.bottom.x, box.bottom.y, box.left.x,
                    box.left.y, box.right.x, box.right.y);
        for (const auto& group : groups)
            if (!group.empty())
                std::printf("  group of %zu from (%.0f,%.0f) to (%.0f,%.0f)\n", group.size(), group.front().x,
                            group.front().y, group.back().x, group.back().y);
        if (clustered) {
            std::vector<geometric::GeolineBase> lines;
            std::vector<double> weights;
            std::vector<std::pair<int, int>> pairs;
            const bool clean = geometric::TextLineCreator().formulate_text_line(groups, lines, weights, pairs);
            std::printf("text lines: %zu clean %d pairs %zu", lines.size(), clean ? 1 : 0, pairs.size());
            if (!pairs.empty())
                std::printf(" first pair %.2f/%.2f", lines[static_cast<std::size_t>(pairs[0].first)].line_angle(),
                            lines[static_cast<std::size_t>(pairs[0].second)].line_angle());
            std::printf("\n");

            bench_text::run_stage(search, bench_text::HORIZONTAL);
            std::printf("horizontal: code %d", search.horizontal);
            print_directions(feature.vanishing_points);

            geometric::MarginLineCreator creator(feature.para.margin, work.get_width(), work.get_height(),
                                                 feature.page_analysis);
            Groups margin_groups;
            std::vector<geometric::GeolineBase> margins;
            const bool margined = creator.perform_margin_line_formulation(groups, margin_groups, margins, weights);
            std::printf("margins: %d count %zu", margined ? 1 : 0, margins.size());
            for (const auto& m : margins) std::printf(" [angle %.2f x@0 %.0f]", m.line_angle(), m.x_at(0.0));
            std::printf("\n");
            bench_text::run_stage(search, bench_text::VERTICAL);
            std::printf("vertical: code %d", search.vertical);
            print_directions(feature.vanishing_points);
        }
        const hybrid::FeatureRegistration& ran = *driver.feature_registration;
        std::printf("driver: code %d output %d preferred %d corners", code, ran.registration_output,
                    ran.edge_result_is_preferred ? 1 : 0);
        for (const auto& c : ran.corners) std::printf(" (%.0f,%.0f)", c.x, c.y);
        print_directions(ran.vanishing_points);
        if (ran.page_analysis != nullptr) print_fit(*ran.page_analysis, ran.text_box, ran.corners);
        print_text_box_sides(ran);

        if (code == 1 || code == 2) {
            std::printf("{\"corners\": [");
            for (int k = 0; k < 4; ++k) std::printf("%s[%d,%d]", k ? "," : "", found.x[k], found.y[k]);
            std::printf("]}\n");
        } else {
            std::printf("{\"corners\": null}\n");
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "trace_text_search: %s\n", e.what());
        return 1;
    }
    return 0;
}

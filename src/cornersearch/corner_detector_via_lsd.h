// The line stage of the staged corner search: line segments of the page
// image, split into a horizontal and a vertical family, either complete the
// one side an earlier stage missed, or give two vanishing points from which
// the corners follow through the segments' extreme points.
#ifndef MORVANE_CORNERSEARCH_CORNER_DETECTOR_VIA_LSD_H
#define MORVANE_CORNERSEARCH_CORNER_DETECTOR_VIA_LSD_H

#include <vector>

#include "common/image.h"
#include "cornersearch/bounding_line_array_wrapper.h"
#include "textgeometry/direction.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base_points.h"
#include "vanishing/vanishing_point_output.h"

namespace geometric_test {

class CornerDetectorViaLsd {
public:
    typedef int LineSegmentIndex;  // index into LineSegmentManager::lines

    // The segments of one image and their split into two families. Angles are
    // whole degrees in [0, 180), 90 vertical; fold(u) = |u| for |u| <= 90,
    // else 180 - |u|, is the distance of two undirected angles.
    class LineSegmentManager {
    public:
        LineSegmentManager() = default;
        ~LineSegmentManager();
        LineSegmentManager(const LineSegmentManager&) = delete;
        LineSegmentManager& operator=(const LineSegmentManager&) = delete;

        // Runs the detector on `image` (8-bit gray) and keeps its seven
        // doubles a segment, the size and the inner frame (border_margin in
        // from every side). The exported line segment family's detector with
        // its defaults, called directly since the exported layer sits above
        // this one; like it, throws for any other image type.
        void generate(const common::Image& image);

        // Every segment becomes a line through its ends, truncated to int:
        // with dx = x1 - x2, (1, 0, -x1) when dx = 0, else
        // a = (y1 - y2) / dx, b = -1, c = y2 - a x2. Its angle, truncated to
        // a whole degree, goes into a histogram of 180 cells, smoothed by a
        // centred mean over 21 cells (zero beyond the ends); the two peaks
        // name the families. A segment joins the horizontal family within 10
        // degrees of its peak, else the vertical one within less than 22.
        void formulate_lines();

        // The highest cell (the middle of a run of equal highest cells) is
        // the peak of the family its angle belongs to (45 to 135 vertical);
        // half_width cells either side are cleared and the next peak, at
        // least 45 degrees away (a nearer one is cleared in turn and the one
        // after it taken), is the other family's. Always true.
        bool find_hor_ver_angle_peak(std::vector<float>& histogram, int& horizontal, int& vertical,
                                     int half_width);

        // Longest first; equal lengths keep their order.
        void sort_based_on_length(geometric::Direction direction);

        // The family's vanishing point by consensus (default constraints of
        // the solver); the solver's code goes to `output`. With
        // `keep_inliers_only` the family shrinks to the inliers.
        void classify_horizontal_vertical_lines(geometric::Direction direction, geometric::Geocoordinate<double>& point,
                                                geometric::VanishingPointOutput& output, bool keep_inliers_only);
        void calculate_vanishing_points(geometric::Geocoordinate<double>& horizontal,
                                        geometric::Geocoordinate<double>& vertical,
                                        geometric::VanishingPointOutput& horizontal_output,
                                        geometric::VanishingPointOutput& vertical_output, bool keep_inliers_only);

        // Either end outside the inner frame [minimum_x, maximum_x] x
        // [minimum_y, maximum_y].
        bool is_near_boundary(const LineSegmentIndex& index) const;

        // The end with the smaller x (larger x, smaller y, larger y) into
        // `point`, answering that coordinate. Ties give the second end for
        // left_most and top_most, the first for the other two.
        int left_most(const LineSegmentIndex& index, geometric::Geocoordinate<int>& point) const;
        int right_most(const LineSegmentIndex& index, geometric::Geocoordinate<int>& point) const;
        int top_most(const LineSegmentIndex& index, geometric::Geocoordinate<int>& point) const;
        int bottom_most(const LineSegmentIndex& index, geometric::Geocoordinate<int>& point) const;

        std::vector<LineSegmentIndex> horizontal_lines;
        std::vector<LineSegmentIndex> vertical_lines;
        std::vector<geometric::GeolineBasePoints<int>> lines;  // every segment, its two ends as points
        double* segments = nullptr;  // the detector's output, seven doubles a segment; malloc'ed
        int segment_count = 0;
        int width = 0;
        int height = 0;
        int border_margin = 5;
        int minimum_x = 0;
        int maximum_x = 0;
        int minimum_y = 0;
        int maximum_y = 0;

    private:
        std::vector<LineSegmentIndex>& family(geometric::Direction direction);
    };

    // Reads the image from the wrapper, which must have one, and detects the
    // segments at once. The wrapper receives the result.
    explicit CornerDetectorViaLsd(BoundingLineArrayWrapper& wrapper);

    // 0 when the wrapper's first four vertices hold a page, -1 when no pair of
    // vanishing points was usable. When the previous stage left three trusted
    // boundaries, the longest segments of the missing side's family are
    // offered in turn to complete them; otherwise, or when none completes a
    // page, the corners come from the two vanishing points.
    int pick_up_boundaries();

    void generate_line_segements();

    // Anchors on the four sides: the outermost ends of the segments away from
    // the border, and, when the previous stage left a top and bottom (or a
    // left and right) boundary, only of segments between those two.
    void generate_anchor_points(geometric::Geocoordinate<int>& left, geometric::Geocoordinate<int>& right,
                                geometric::Geocoordinate<int>& top, geometric::Geocoordinate<int>& bottom);
    // One family's share of the anchors. The positions are those of the two
    // reference lines, -1 for none.
    void help_fun_generate_anchor_points(const std::vector<LineSegmentIndex>& family,
                                         geometric::Geocoordinate<int>& left, geometric::Geocoordinate<int>& right,
                                         geometric::Geocoordinate<int>& top, geometric::Geocoordinate<int>& bottom,
                                         const geometric::GeolineBase& first_line,
                                         const geometric::GeolineBase& second_line, int first_position,
                                         int second_position);

    // The corners through the anchors, from each vanishing point that was
    // found (code 1), or at 0 and 90 degrees where the family is parallel.
    // False when two neighbouring sides come out parallel.
    bool generate_boundary_corners_based_on_vps(const geometric::Geocoordinate<double>& horizontal,
                                                const geometric::Geocoordinate<double>& vertical,
                                                const geometric::VanishingPointOutput& horizontal_output,
                                                const geometric::VanishingPointOutput& vertical_output);

    const common::Image* image;         // not owned
    BoundingLineArrayWrapper* wrapper;  // not owned; receives the result
    LineSegmentManager manager;
};

}  // namespace geometric_test

#endif

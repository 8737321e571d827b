// Four page-edge lines of the simple corner chain, indexed by side, with the
// quadrangle they enclose and whether their segment ends reach its corners.
#ifndef MORVANE_CORNERSEARCH_BOUNDING_LINES_H
#define MORVANE_CORNERSEARCH_BOUNDING_LINES_H

#include <vector>

#include "edgelines/bounding_line.h"
#include "textgeometry/geocoordinate.h"

namespace geometric_test {

class BoundingLines {
public:
    std::vector<geometric::BoundingLine> lines;
    int top_index = -1;
    int bottom_index = -1;
    int left_index = -1;
    int right_index = -1;

    // Sets the four indices to -1, then, when `lines` holds exactly four, to
    // each line's side by its position, the last line of a side winning.
    // -1 when `lines` does not hold four, else 0.
    int initialize();

    // `corners` becomes four: left with top, top with right, right with
    // bottom, bottom with left. A parallel pair or a side without a line
    // leaves its corner as it was (0, 0 for a corner the resize added).
    void obtain_quadrangle_vetex(std::vector<geometric::Geocoordinate<float>>& corners) const;

    // Shoelace formula over the list, in float; the absolute value.
    static void obtain_quadrangle_area(const std::vector<geometric::Geocoordinate<float>>& corners, float& area);

    // A segment end may lie at most 50 pixels inside the corner it belongs
    // to. Each test is true when its condition does not apply:
    //   top:    when corner y > y1, the end (x on the line at y1, y1);
    //   bottom: when y2 > corner y, the end (x on the line at y2, y2);
    //   left:   when corner x > x1, the end (x1, y on the line at x1);
    //   right:  when x2 > corner x, the end (x2, y on the line at x2).
    // x on the line at y is -(b y + c) / a and y at x is -(a x + c) / b,
    // rounded to float.
    static bool is_top_corner_feasible(const geometric::Geocoordinate<float>& corner,
                                       const geometric::BoundingLine& line);
    static bool is_bottom_corner_feasible(const geometric::Geocoordinate<float>& corner,
                                          const geometric::BoundingLine& line);
    static bool is_left_corner_feasible(const geometric::Geocoordinate<float>& corner,
                                        const geometric::BoundingLine& line);
    static bool is_right_corner_feasible(const geometric::Geocoordinate<float>& corner,
                                         const geometric::BoundingLine& line);

    // Each corner by the tests of its two sides; a side without a line
    // (index -1) passes.
    bool is_top_left_corner_feasible(const geometric::Geocoordinate<float>& corner) const;
    bool is_top_right_corner_feasible(const geometric::Geocoordinate<float>& corner) const;
    bool is_bottom_right_corner_feasible(const geometric::Geocoordinate<float>& corner) const;
    bool is_bottom_left_corner_feasible(const geometric::Geocoordinate<float>& corner) const;

    // Corners 0 to 3 as top left, top right, bottom right, bottom left; false
    // for fewer than four corners.
    bool is_bounding_box_corner_feasible(const std::vector<geometric::Geocoordinate<float>>& corners) const;

private:
    const geometric::BoundingLine* line_at(int index) const;
};

}  // namespace geometric_test

#endif

// Turns the outlines of large blobs into the four sides of a page: picks the
// blobs worth a look, simplifies each outline into straight lines, sorts the
// lines to the sides and feeds them to the boundary array.
#ifndef MORVANE_CORNERSEARCH_BLOB_BOUNDARY_ESTIMATOR_H
#define MORVANE_CORNERSEARCH_BLOB_BOUNDARY_ESTIMATOR_H

#include <memory>
#include <vector>

#include <boost/unordered_set.hpp>

#include "cornersearch/bounding_line_array_wrapper.h"
#include "textgeometry/geobox.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base_points.h"

namespace geometric_test {

class BlobBoundaryEstimator {
public:
    struct Polygon {
        int blob_index = 0;
        bool touches_image_border = false;
        int activity = 1;  // 0 skipped; 1 and 2 processed
        bool is_below_minimum_area = false;
    };

    typedef std::vector<geometric::Geocoordinate<int>> Contour;
    typedef geometric::GeolineBasePoints<int> Line;

    // Lists the blobs worth a look, in the order they are processed.
    class PolygonSelector {
    public:
        explicit PolygonSelector(const BlobBoundaryEstimator& owner) : owner(owner) {}
        // Up to three passes (box area, height, width) over the blobs not yet
        // chosen; then each polygon's activity from its outline's shape.
        std::vector<Polygon> select();

        int border_margin = 5;
        boost::unordered_set<int> chosen;

    private:
        enum Measure { AREA, HEIGHT, WIDTH };
        void run_pass(Measure measure, std::vector<Polygon>& polygons);
        bool touches_border(const geometric::Geobox<int>& box) const;
        int activity_of(const Polygon& polygon) const;
        const BlobBoundaryEstimator& owner;
    };

    // Straight lines along one outline.
    class ContourLineBuilder {
    public:
        explicit ContourLineBuilder(const BlobBoundaryEstimator& owner) : owner(owner) {}
        // Douglas-Peucker simplification; each simplified segment longer than
        // the minimum length is refitted to the outline points within the
        // tolerance of it and kept when both its ends lie within the tolerance
        // of the fit. True when a line was found.
        bool build(const Contour& contour, std::vector<Line>& lines) const;

        // The simplified outline (fewer than three points or a negative
        // tolerance: the outline itself).
        static Contour simplify(const Contour& contour, int tolerance);
        // The least-squares fit of the support points, starting from the line
        // through the two ends.
        static geometric::GeolineBase fit(const geometric::Geocoordinate<int>& first,
                                          const geometric::Geocoordinate<int>& second, const Contour& support);

    private:
        const BlobBoundaryEstimator& owner;
    };

    // Sorts one polygon's lines to the sides and offers them to the array.
    class BoundaryAssigner {
    public:
        explicit BoundaryAssigner(BlobBoundaryEstimator& owner) : owner(owner) {}
        // 0: the array holds a page; -2: two or three sides were kept or set
        // aside; -3: too little to go on, the polygon is done with.
        int assign(const Polygon& polygon, const std::vector<Line>& lines);

        // A line whose mean y is below 4 or at least height - 5 lies on the
        // image's top or bottom border.
        static bool is_horizontal_border_line(const Line& line, int height);

    private:
        BlobBoundaryEstimator& owner;
    };

    BlobBoundaryEstimator(int width, int height, const std::vector<Contour>* contours,
                          const std::vector<geometric::Geobox<int>>* boxes,
                          std::shared_ptr<BoundingLineArrayWrapper> wrapper);

    // 0 (status 0: a polygon gave a page; status 2: candidate sets combined
    // into one), -2 (sides that cross are ready) or -3 (nothing usable).
    int estimate_blob_lines();

    int status = -1;
    float minimum_blob_area_ratio = 0.2f;
    int simplification_tolerance = 3;
    float minimum_line_length_ratio = 0.1f;
    int width;
    int height;
    const std::vector<Contour>* contours;
    const std::vector<geometric::Geobox<int>>* boxes;
    std::shared_ptr<BoundingLineArrayWrapper> wrapper;
};

}  // namespace geometric_test

#endif

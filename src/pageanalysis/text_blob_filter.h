// Which blobs count as text: blobs of ordinary size stay regular, the rest
// irregular; from the two lists come bottom points for text lines and slim
// upright blobs for the vertical vanishing point.
#ifndef MORVANE_PAGEANALYSIS_TEXT_BLOB_FILTER_H
#define MORVANE_PAGEANALYSIS_TEXT_BLOB_FILTER_H

#include <cstdint>
#include <list>
#include <vector>

#include "components/text_blob.h"
#include "textgeometry/geobox.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base_points.h"

namespace geometric {

// The same values as TestBlobFilterPara without the area floor, in the
// order in which the simple page analysis hands them over.
struct SimplePageanalysisPara {
    float angle_tolerance = 20.0f;
    unsigned minimum_text_blobs = 10;
    double eccentricity_threshold = 0.975;
    float lower_area_factor = 0.3f;
    float upper_area_factor = 5.0f;
    std::int32_t use_median = 0;
};

struct TestBlobFilterPara {
    // The horizontal selection succeeds with more regular blobs than this.
    std::uint32_t minimum_text_blobs = 10;
    // Areas not above it are left out of the typical area.
    std::uint32_t area_floor = 0;
    // Degrees on either side of the vertical that a slim blob may lean.
    float angle_tolerance = 20.0f;
    // Least eccentricity of a slim blob.
    double eccentricity_threshold = 0.975;
    // Regular areas run from lower to upper factor times the typical area.
    float lower_area_factor = 0.3f;
    float upper_area_factor = 5.0f;
    // Typical area: the upper median instead of the mean.
    bool use_median = false;

    // Takes the six shared values and leaves area_floor as it is.
    TestBlobFilterPara& operator=(const SimplePageanalysisPara& simple);
};

// The list rules that the filter and the newer page analysis share.

// Mean area of the blobs whose area is above area_floor, the sum kept in
// single precision; not-a-number when there is none.
float obtain_mean_blob_area(const std::list<TextBlob>& blobs, unsigned area_floor);
// Moves to the end of `outside` the blobs of `blobs` whose area is below low
// or above high; the bounds themselves stay. Not-a-number bounds move nothing.
void move_blobs_outside_area(std::list<TextBlob>& blobs, std::list<TextBlob>& outside, float low, float high);
// True when the box reaches the first or last column or line of a width by
// height image.
bool box_touches_image_border(const Geobox<int>& box, int width, int height);

class TextBlobFilter {
public:
    TextBlobFilter() : width(0), height(0) {}
    TextBlobFilter(int width_, int height_) : width(width_), height(height_) {}

    // What makes a page's blobs text: drops the blobs at the border, moves
    // those of unusual area (below lower or above upper factor times the
    // typical area, bounds included as regular) to the irregular list and
    // answers whether more than minimum_text_blobs stay regular. The typical
    // area is the mean, or with use_median the upper median; when no area
    // lies above the floor there is none and no blob is moved.
    bool select_blob_for_horizontal_vp();

    // Slim upright blobs, in three passes, appending to both arrays:
    //   1: the regular blobs at the eccentricity threshold e; answers 1 with
    //      3 or more lines (counting those the caller brought in);
    //   2: both arrays emptied, the regular blobs at e - 0.04; answers 2
    //      with 6 or more lines;
    //   3: the irregular blobs at e added to what pass 2 found; answers 3
    //      with 2 or more lines in all, else 0.
    // The angle range is angle_tolerance around 90 degrees throughout.
    int select_blob_for_vertical_vp(std::vector<GeolineBasePoints<float>>& lines,
                                    std::vector<double>& eccentricities);

    // Mean area of the regular blobs above area_floor, the sum kept in
    // single precision; not-a-number when there is none.
    float obtain_text_area_mean() const;
    // Upper median (index n / 2 of the sorted areas) of the regular areas
    // above area_floor. Callers ask only when there is one; without one it
    // answers 0.
    unsigned obtain_text_area_median() const;

    // Removes from the lists altogether the regular blobs near the border.
    void filter_by_proximity();
    // Empties the irregular list and moves to it the regular blobs with area
    // below low or above high; the bounds themselves stay regular.
    void filter_by_area(float low, float high);
    // True when the box reaches the first or last column or line of the image.
    bool near_the_border(const Geobox<int>& box) const;

    // Appends ((left + right) / 2, bottom) of every regular blob.
    void obtain_regular_text_bottom_centers(std::vector<Geocoordinate<float>>& points) const;
    // Appends, for each point, the bottom-left corner of the first regular
    // blob whose box holds it (bounds included), or (0, 0).
    void obtain_regular_text_bottom_left(const std::vector<Geocoordinate<float>>& points,
                                         std::vector<Geocoordinate<float>>& out) const;
    // Sizes out as points. For a point in a regular box (the first one), the
    // bottom-right corner reached by following irregular blobs to the right
    // in strips of width w = (int)(0.5 + step): the first strip spans
    // [right, right + w]; an irregular blob overlapping the strip in x and
    // the base box in y is found, and the one of greatest right found so far
    // gives the corner (its right and bottom); the strip moves on by w while
    // the last one found something. Without any found right above 0.1 the
    // corner is the base box's own. Points in no regular box leave their
    // entry at (0, 0). A strip width below 1 cannot move: one strip is looked at.
    void obtain_regular_text_bottom_right(const std::vector<Geocoordinate<float>>& points,
                                          std::vector<Geocoordinate<float>>& out, float step) const;

    void set_image_size(int width_, int height_) {
        width = width_;
        height = height_;
    }

    TestBlobFilterPara para;
    std::list<TextBlob> regular_blobs;
    std::list<TextBlob> irregular_blobs;
    int width;
    int height;

private:
    // First regular blob whose box holds the point, bounds included; null
    // when none does.
    const TextBlob* find_regular_blob(const Geocoordinate<float>& point) const;
};

}  // namespace geometric

#endif

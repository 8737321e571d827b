// The frame of a page analysis: an image goes in, the blobs that count as
// regular text and the rest come out, kept in the analysis's filter, with
// the measures the text route and the resolution estimate take from them.
#ifndef MORVANE_PAGEANALYSIS_PAGEANALYSIS_H
#define MORVANE_PAGEANALYSIS_PAGEANALYSIS_H

#include <vector>

#include "common/basic_image.h"
#include "common/image.h"
#include "pageanalysis/text_blob_filter.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base_points.h"

namespace geometric {

// The blobs point into the stroke pool of a calculator that the concrete
// analysis keeps, so they live as long as the analysis. An analysis runs
// once; a second run starts again from empty lists.
class Pageanalysis {
public:
    // image is read and output kept for the analyses that draw, neither
    // owned; the filter takes the image's width and height.
    Pageanalysis(const common::Image* image, common::Image* output);
    virtual ~Pageanalysis();
    Pageanalysis(const Pageanalysis&) = delete;
    Pageanalysis& operator=(const Pageanalysis&) = delete;

    // Fills the filter's lists; false when too few regular blobs remain,
    // which callers read as a page without usable text.
    virtual bool run_page_analysis() = 0;

    // The filter's services (text_blob_filter.h): the vertical selection
    // and the bottom points of the regular blobs.
    int run_slim_blob_searching(std::vector<GeolineBasePoints<float>>& lines, std::vector<double>& eccentricities) {
        return filter.select_blob_for_vertical_vp(lines, eccentricities);
    }
    void obtain_regular_text_bottom_centers(std::vector<Geocoordinate<float>>& points) const {
        filter.obtain_regular_text_bottom_centers(points);
    }
    void obtain_regular_text_bottom_left(const std::vector<Geocoordinate<float>>& points,
                                         std::vector<Geocoordinate<float>>& out) const {
        filter.obtain_regular_text_bottom_left(points, out);
    }
    void obtain_regular_text_bottom_right(const std::vector<Geocoordinate<float>>& points,
                                          std::vector<Geocoordinate<float>>& out, float step) const {
        filter.obtain_regular_text_bottom_right(points, out, step);
    }

    // Integer means of the regular blobs' box widths and heights; both 0
    // without regular blobs.
    void obtain_average_bounding_box(int& width, int& height) const;
    // Dots per inch: (int)(300 (h / 22)) in single precision, h the integer
    // mean box height above. Ordinary body text has a box 22 pixels high at
    // 300 dots an inch. 0 without regular blobs.
    int obtain_spatial_resolution() const;
    // A BINARY image of the source's size at 300 dots an inch, with the
    // regular (irregular) blobs drawn in; `text` is reset first, so it must
    // own its buffer.
    void obtain_normal_text_image(common::BasicImage& text) const;
    void obtain_irregular_text_image(common::BasicImage& text) const;
    // Both lists drawn.
    void obtain_all_text_image(common::BasicImage& text) const;

    const common::Image* image;
    common::Image* output;
    TextBlobFilter filter;

protected:
    // Empties both lists before a run, so that no blob outlives the
    // calculator of an earlier run.
    void clear_blobs();

private:
    void draw_blobs(const std::list<TextBlob>& blobs, common::BasicImage& text) const;
};

}  // namespace geometric

#endif

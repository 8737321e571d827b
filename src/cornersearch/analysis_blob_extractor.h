// The components of a contour image that are large enough to be a page or
// one of its sides, with their outlines and boxes.
#ifndef MORVANE_CORNERSEARCH_ANALYSIS_BLOB_EXTRACTOR_H
#define MORVANE_CORNERSEARCH_ANALYSIS_BLOB_EXTRACTOR_H

#include <vector>

#include "common/image.h"
#include "textgeometry/geobox.h"
#include "textgeometry/geocoordinate.h"

namespace geometric_test {

class AnalysisBlobExtractor {
public:
    AnalysisBlobExtractor(float minimum_area_ratio = 0.1f, float minimum_width_ratio = 0.05f,
                          float minimum_height_ratio = 0.05f, int margin = 5)
        : minimum_area_ratio(minimum_area_ratio),
          minimum_width_ratio(minimum_width_ratio),
          minimum_height_ratio(minimum_height_ratio),
          margin(margin) {}

    // Walks the components of a BINARY image in order and keeps a blob whose
    // box (w x h, sides counted inclusively) reaches minimum_area_ratio of the
    // image's area, or whose width or height reaches its ratio of the image's.
    // A kept blob's whole outline goes to contours as one list and its box to
    // boxes. Always 0.
    int extract_analysis_blobs(const common::Image& image,
                               std::vector<std::vector<geometric::Geocoordinate<int>>>& contours,
                               std::vector<geometric::Geobox<int>>& boxes) const;

    float minimum_area_ratio;
    float minimum_width_ratio;
    float minimum_height_ratio;
    int margin;  // not read
};

}  // namespace geometric_test

#endif

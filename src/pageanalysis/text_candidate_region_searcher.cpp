// The thick image of the text-picture separation.
#include "pageanalysis/text_candidate_region_searcher.h"

#include "pixel/geo_morphological.h"

namespace geometric {

void TextCandidateRegionSearcher::identify_candiate_text_region(const common::Image& binary,
                                                                common::BasicImage& thick, int size) {
    thick = binary;
    GeoMorphological::erode_x(thick, size);
    GeoMorphological::erode_y(thick, size);
}

}  // namespace geometric

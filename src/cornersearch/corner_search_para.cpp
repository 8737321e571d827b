// The crossed mapping of the corner search parameters onto the large-blob
// parameters.
#include "cornersearch/corner_search_para.h"

#include "cornersearch/large_blob_extractor.h"

namespace geometric {

// Height and width cross over here; the crossing is deliberate, and the
// older route's blob selection depends on it as it stands.
LargeBlobExtractorPara& LargeBlobExtractorPara::operator=(const CornerSearchPara& para) {
    minimum_blob_area = para.minimum_blob_size_ratio;
    minimum_blob_width = para.minimum_blob_height_ratio;
    minimum_blob_height = para.minimum_blob_width_ratio;
    minimum_total_area = para.minimum_blob_area_ratio;
    maximum_selected_blobs = para.maximum_selected_blobs;
    return *this;
}

}  // namespace geometric

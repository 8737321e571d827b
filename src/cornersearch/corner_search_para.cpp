// Copying the corner search parameters, and their crossed mapping onto the
// large-blob parameters.
#include "cornersearch/corner_search_para.h"

#include "cornersearch/large_blob_extractor.h"

namespace geometric {

CornerSearchPara& CornerSearchPara::operator=(const CornerSearchPara& other) {
    binarization_window = other.binarization_window;
    minimum_document_area = other.minimum_document_area;
    minimum_blob_height_ratio = other.minimum_blob_height_ratio;
    minimum_blob_width_ratio = other.minimum_blob_width_ratio;
    maximum_selected_blobs = other.maximum_selected_blobs;
    minimum_blob_size_ratio = other.minimum_blob_size_ratio;
    minimum_blob_area_ratio = other.minimum_blob_area_ratio;
    hough = other.hough;
    search_flag = other.search_flag;
    registration = other.registration;
    return *this;
}

// Height and width cross over here, and are kept crossed: the large-blob
// thresholds were tuned with this mapping.
LargeBlobExtractorPara& LargeBlobExtractorPara::operator=(const CornerSearchPara& para) {
    minimum_blob_area = para.minimum_blob_size_ratio;
    minimum_blob_width = para.minimum_blob_height_ratio;
    minimum_blob_height = para.minimum_blob_width_ratio;
    minimum_total_area = para.minimum_blob_area_ratio;
    maximum_selected_blobs = para.maximum_selected_blobs;
    return *this;
}

}  // namespace geometric

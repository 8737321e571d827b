// The parameters of the classic page-edge route, with the large-blob
// parameters they map onto.
#ifndef MORVANE_CORNERSEARCH_CORNER_SEARCH_PARA_H
#define MORVANE_CORNERSEARCH_CORNER_SEARCH_PARA_H

#include "edgelines/hough_transform_para.h"
#include "vanishing/projective_registration_para.h"

namespace geometric {

struct CornerSearchPara {
    int binarization_window = 77;           // side of the adaptive binarization's averaging window
    float minimum_document_area = 0.05f;    // share of the image area
    float minimum_blob_height_ratio = 0.05f;  // share of the shorter image side
    float minimum_blob_width_ratio = 0.025f;  // share of the shorter image side
    int maximum_selected_blobs = 3;
    float minimum_blob_size_ratio = 0.01f;  // share of the shorter side, at least 3 pixels once scaled
    float minimum_blob_area_ratio = 0.25f;  // share of the image area
    HoughTransformPara hough;               // copied with the record, never handed to the transform
    int search_flag = 1;
    hybrid::ProjectiveRegistrationPara registration;

    // Every field, the nested records through their own copy and assignment.
    CornerSearchPara() = default;
    CornerSearchPara(const CornerSearchPara& other) = default;
    CornerSearchPara& operator=(const CornerSearchPara& other) = default;
};

}  // namespace geometric

#endif

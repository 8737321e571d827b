// Where pictures may be: what of a binary page survives heavy erosion.
#ifndef MORVANE_PAGEANALYSIS_TEXT_CANDIDATE_REGION_SEARCHER_H
#define MORVANE_PAGEANALYSIS_TEXT_CANDIDATE_REGION_SEARCHER_H

#include "common/basic_image.h"

namespace geometric {

class TextCandidateRegionSearcher {
public:
    // thick becomes a copy of binary eroded by size along x, then along y:
    // only ink whose horizontal and vertical runs are longer than 2 size
    // pixels survives, which text strokes are not.
    static void identify_candiate_text_region(const common::Image& binary, common::BasicImage& thick, int size);
};

}  // namespace geometric

#endif

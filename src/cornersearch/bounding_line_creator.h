// The page-edge lines of one page image for the classic edge route: the
// Hough search on Canny edges and on an adaptive binarization, and the choice
// between the two findings.
#ifndef MORVANE_CORNERSEARCH_BOUNDING_LINE_CREATOR_H
#define MORVANE_CORNERSEARCH_BOUNDING_LINE_CREATOR_H

#include <vector>

#include "common/image.h"
#include "cornersearch/corner_search_para.h"
#include "edgelines/bounding_line.h"

namespace geometric {

class BoundingLineCreator {
public:
    // True when four lines were obtained. `para` is scaled in place: its area
    // ratios become pixels of this image's area, its height, width and size
    // ratios pixels of the shorter side (the size at least 3), and a window
    // wider than the shorter side shrinks to an odd one of about half of it
    // (at least 3); so a record serves one image only. The lines are appended
    // to the lists handed in.
    //  1. The Hough search on the outlines of the large blobs of the Canny
    //     edges; four lines there end the call.
    //  2. Otherwise the same on all the pixels of the large blobs of the
    //     adaptive binarization.
    //  3. Choice. The second search failed: per side the longer line of
    //     both; four sides so make true, else the partial lists are merged
    //     the same way and the answer is false. The second succeeded: its
    //     lines stand alone when the edges were smoothed strongly (noise made
    //     them unreliable) or when they close into a frame (unclosed ratio
    //     below 0.2), else per side the longer line of both.
    static bool formulate_bounding_lines(CornerSearchPara& para, const common::Image& image,
                                         std::vector<BoundingLine>& boundaries,
                                         std::vector<BoundingLine>& partial_boundaries);

    // The four sides of the staged corner search (its default mode) on the
    // image, in slot order: the line, its supporting polyline's first two
    // points as ends and its length truncated. False, `boundaries` untouched,
    // when that search fails. The search brings an image with a side above
    // its working limit down first, and the lines are then in the smaller
    // image's pixels. `para` is not read.
    static bool formulate_bounding_lines_via_edge_simplification(CornerSearchPara& para, const common::Image& image,
                                                                 std::vector<BoundingLine>& boundaries);
};

}  // namespace geometric

#endif

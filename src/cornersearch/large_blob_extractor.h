// The few very large components of a contour image, where page edges show
// up: two generations of the extractor that pick them by area, width and
// height and hand out their outlines (or pixels).
#ifndef MORVANE_CORNERSEARCH_LARGE_BLOB_EXTRACTOR_H
#define MORVANE_CORNERSEARCH_LARGE_BLOB_EXTRACTOR_H

#include <vector>

#include "common/basic_image.h"
#include "common/image.h"

namespace geometric {

struct CornerSearchPara;

struct LargeBlobExtractorPara {
    float minimum_blob_area = 0.0f;    // pixels of the box, w x h
    float minimum_blob_width = 0.0f;
    float minimum_blob_height = 0.0f;
    float minimum_total_area = 0.0f;   // the area selection stops once the chosen boxes reach it
    int maximum_selected_blobs = 0;

    LargeBlobExtractorPara() = default;
    LargeBlobExtractorPara(const LargeBlobExtractorPara&) = default;
    LargeBlobExtractorPara& operator=(const LargeBlobExtractorPara&) = default;
    // Size ratio to area, height ratio to width, width ratio to height
    // (crossed deliberately), area ratio to total area.
    LargeBlobExtractorPara& operator=(const CornerSearchPara& para);
};

// Parallel lists (area, width, height, index) of the blobs that passed an
// extractor's first filter, from which the selections choose.
struct LargeBlobLists {
    std::vector<int> areas;
    std::vector<int> widths;
    std::vector<int> heights;
    std::vector<int> indices;
    void erase(std::size_t at);
    std::size_t size() const { return indices.size(); }
};

class LargeBlobExtractor {
public:
    explicit LargeBlobExtractor(const LargeBlobExtractorPara& para = LargeBlobExtractorPara()) : para(para) {}

    // Components of a BINARY image; a blob whose box area is below
    // minimum_blob_area is left out. The selections run in turn: area; width
    // when the area selection kept room and two blobs are left; height
    // whenever two blobs are still left. The chosen blobs, in component order,
    // give their outline (boundary_only: a blob whose box reaches column
    // width - 2 loses the outline points at x >= width - 2) or all their
    // pixels to xs, ys. `mode` is not read. True when every blob was walked.
    bool obtain_large_blob(common::BasicImage& image, std::vector<int>& xs, std::vector<int>& ys, int mode,
                           bool boundary_only);

    // The selections. Each appends the indices it chooses to `selected` and
    // erases a chosen blob from every list; the first of equal measures is
    // taken first.
    // The largest area whatever the count limit, then the next largest while
    // the chosen areas sum to less than minimum_total_area and fewer than
    // min(maximum_selected_blobs, blobs) were chosen. True when that count
    // limit was not used up.
    bool select_large_area(LargeBlobLists& lists);
    // Nothing when the widest (tallest) blob is not above the minimum, or at
    // most one may be chosen; otherwise it and each next one above the
    // minimum, up to min(maximum_selected_blobs, remaining) - 1 blobs.
    void select_large_width(LargeBlobLists& lists);
    void select_large_height(LargeBlobLists& lists);

    const std::vector<int>& get_selected() const { return selected; }
    LargeBlobExtractorPara para;

private:
    std::vector<int> selected;
};

}  // namespace geometric

namespace geometric_test {

class LargeBlobExtractor {
public:
    explicit LargeBlobExtractor(const geometric::LargeBlobExtractorPara& para = geometric::LargeBlobExtractorPara())
        : para(para) {}

    // As the first generation, but a blob is left out only when it is below
    // all three of the area, width and height minimums; the outlines of the
    // chosen blobs go to xs, ys.
    bool obtain_large_blob(const common::Image& image, std::vector<int>& xs, std::vector<int>& ys);

    // The same three selections as the first generation.
    bool select_large_area(geometric::LargeBlobLists& lists);
    void select_large_width(geometric::LargeBlobLists& lists);
    void select_large_height(geometric::LargeBlobLists& lists);

    // Sorts the chosen indices and appends each chosen blob's outline.
    void create_contours_for_selected_blobs(const common::BasicImage& image, std::vector<int>& xs,
                                            std::vector<int>& ys);

    const std::vector<int>& get_selected() const { return selected; }
    geometric::LargeBlobExtractorPara para;

private:
    std::vector<int> selected;
};

}  // namespace geometric_test

#endif

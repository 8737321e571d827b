// Text told from pictures on a gray page: binarized by quick Sauvola, every
// component is text unless it is too small or too large, holds a stroke
// thick enough to survive heavy erosion, or is hardly darker than what
// surrounds it.
#ifndef MORVANE_PAGEANALYSIS_TEXT_PICTURE_SEPERATOR_H
#define MORVANE_PAGEANALYSIS_TEXT_PICTURE_SEPERATOR_H

#include <cstdint>
#include <list>
#include <memory>

#include "binarization/quick_sauvola.h"
#include "common/image.h"
#include "components/connected_component_calculator.h"
#include "components/text_blob.h"

namespace geometric {

struct TextPictureSeperatorPara {
    // Fewest pixels of a text blob.
    std::int32_t minimum_pixels = 5;
    // Carried with the record; the separation erodes by a fixed 8.
    std::int32_t erosion_size = 8;
    // Copied with the record; nothing reads it.
    std::int32_t reserved_size = 5;
    // A text blob's box spans fewer rows (bottom - top) and columns (right - left) than these.
    std::int32_t maximum_height = 128;
    std::int32_t maximum_width = 128;
    // Least gray difference between a text blob's surroundings and the blob.
    std::int32_t minimum_disparity = 30;
    // Read by the quality analysis, not by the separation.
    std::int32_t neighborhood_size = 5;
    bool use_mean_as_foreground = true;
};

class TextPictureSeperator {
public:
    // Default records; the calculator that the blobs will point into.
    TextPictureSeperator();

    // Appends the text components of a GRAY page to `blobs`, each pointing
    // into the calculator kept here, in the calculator's order:
    //   1. quick Sauvola through the binarization frame (which despeckles),
    //      then despeckled once more;
    //   2. the thick image: the binary image eroded by 8 along x and y;
    //   3. the dilated image: dilate_xy of the binary image, the ring
    //      whose clear pixels are background;
    //   4. the components of the binary image, classified.
    // A later call starts a new calculator. True; false for an image of any
    // other type than GRAY, with nothing appended.
    bool perform_text_picture_seperation(const common::Image& gray, std::list<TextBlob>& blobs);

    const TextPictureSeperatorPara& get_para() const { return para; }
    void set_para(const TextPictureSeperatorPara& value) { para = value; }
    const SauvolaPara& get_sauvola_para() const { return sauvola_para; }
    void set_sauvola_para(const SauvolaPara& value) { sauvola_para = value; }
    const std::shared_ptr<ConnectedComponentCalculator>& get_calculator() const { return calculator; }

private:
    TextPictureSeperatorPara para;
    SauvolaPara sauvola_para;
    std::shared_ptr<ConnectedComponentCalculator> calculator;
};

}  // namespace geometric

#endif

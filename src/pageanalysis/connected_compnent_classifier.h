// The tests that tell a text component from a piece of picture.
#ifndef MORVANE_PAGEANALYSIS_CONNECTED_COMPNENT_CLASSIFIER_H
#define MORVANE_PAGEANALYSIS_CONNECTED_COMPNENT_CLASSIFIER_H

#include <list>

#include "common/image.h"
#include "components/binary_connected_component.h"
#include "components/connected_component_calculator.h"
#include "components/text_blob.h"
#include "pageanalysis/text_picture_seperator.h"

namespace geometric {

class ConnectedCompnentClassifier {
public:
    // Copies minimum_pixels, maximum_height, maximum_width and minimum_disparity.
    explicit ConnectedCompnentClassifier(const TextPictureSeperatorPara& para);

    // Appends, in the calculator's order, a blob for every formed component
    // that is text: at least minimum_pixels pixels, box extents bottom - top
    // below maximum_height and right - left below maximum_width, and neither
    // test below calls it a picture. thick, dilated, binary and gray share
    // one size; gray is GRAY.
    void identify_text_connected_components(ConnectedComponentCalculator* calculator, const common::Image& thick,
                                            const common::Image& dilated, const common::Image& binary,
                                            const common::Image& gray, std::list<TextBlob>& blobs) const;

    // Thick stick: a picture when any run of the component meets a set bit
    // of thick. A null head is no picture.
    bool find_picture_blob_via_thick_stick(const common::Image& thick, const BinaryConnectedComponent* head) const;
    // Ground disparity: a picture when minimum_disparity > background -
    // foreground, foreground being the integer mean gray of all the
    // component's pixels and background the integer mean of the ring
    // averages (radius 2, the clear pixels of dilated) at its contour
    // pixels, 0 when no ring had any. So a component without background is
    // a picture. A null head is one when minimum_disparity > 0.
    bool find_picture_blob_via_ground_disparity(const common::Image& binary, const common::Image& dilated,
                                                const common::Image& gray,
                                                const BinaryConnectedComponent* head) const;

private:
    int minimum_pixels;
    int maximum_height;
    int maximum_width;
    int minimum_disparity;
};

}  // namespace geometric

#endif

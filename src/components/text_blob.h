// A blob as the page analysis sees it: the box and pixel count of one
// component, and the head of the component's chain in the calculator.
#ifndef MORVANE_COMPONENTS_TEXT_BLOB_H
#define MORVANE_COMPONENTS_TEXT_BLOB_H

#include "textgeometry/geobox.h"

namespace geometric {

class BinaryConnectedComponent;

// The component is not owned: it lives in the stroke pool of the calculator
// that formed it, which must outlive the blob.
struct TextBlob {
    // An empty box (right and bottom far below left and top) until one is given.
    Geobox<int> box{-1000, -1000, 100000, 100000};
    unsigned area = 0;
    BinaryConnectedComponent* component = nullptr;

    TextBlob() {}
    TextBlob(const Geobox<int>& box_, unsigned area_, BinaryConnectedComponent* component_)
        : area(area_), component(component_) {
        box = box_;
    }
};

}  // namespace geometric

#endif

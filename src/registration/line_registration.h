// The driver's page-edge search: the staged corner search, its result
// translated into the fields that the text search reads from an edge search.
#ifndef MORVANE_REGISTRATION_LINE_REGISTRATION_H
#define MORVANE_REGISTRATION_LINE_REGISTRATION_H

#include <memory>

#include "cornersearch/bounding_edge_registration.h"
#include "registration/projective_registration.h"

namespace geometric_test {

class LineRegistration : public geometric::ProjectiveRegistration {
public:
    explicit LineRegistration(const common::Image* image_,
                              OperationalBoundingEdgeRegistration::Method method_ =
                                  OperationalBoundingEdgeRegistration::BINARY_EDGE_LINE_SEARCH)
        : geometric::ProjectiveRegistration(image_), method(method_) {}

    // Runs the staged search on the image: 1 with four corners, -1 without.
    // Then, from what the search left: the output size (on success), the
    // sides (those hugging the image border dropped), the vanishing points,
    // the bounding lines with their side indices, distances and angle
    // disparities. The answer is the search's alone.
    geometric::RegistrationOutputType run_registration() override;

    // The corners exist already.
    bool perform_edge_corner_searching() override { return true; }

    // Drops each side whose support points' integer mean x (left, right) or
    // y (top, bottom) lies within 5 pixels of its own image border: below 5
    // for left and top, above width - 5 or height - 5 for right and bottom.
    // An empty support list counts as mean 0.
    static void clean_border_sides(BoundingLineArrayWrapper& wrapper);

    OperationalBoundingEdgeRegistration::Method method;
    // The search's last wrapper, kept for inspection; null when it left none.
    std::shared_ptr<BoundingLineArrayWrapper> wrapper;
};

}  // namespace geometric_test

#endif

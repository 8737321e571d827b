// Stands in for the text search until it is part of the library: it finds
// nothing of its own and passes on what the edge search found, which the
// driver copies into it before the run, so that a hybrid run answers with
// the edge search's result.
#ifndef MORVANE_REGISTRATION_PENDING_SEARCH_REGISTRATION_H
#define MORVANE_REGISTRATION_PENDING_SEARCH_REGISTRATION_H

#include "registration/projective_registration.h"

namespace hybrid {

class PendingSearchRegistration : public geometric::ProjectiveRegistration {
public:
    explicit PendingSearchRegistration(const common::Image* image_) : geometric::ProjectiveRegistration(image_) {}

    // The result it was handed (no geometry unless the driver copied one in).
    geometric::RegistrationOutputType run_registration() override { return registration_output; }

    // The corners it was handed stand; without them there are none.
    bool perform_edge_corner_searching() override { return !corners.empty(); }
};

}  // namespace hybrid

#endif

// A search object that finds no geometry. The driver creates it where the
// edge or text search it would run is not part of the library, so that a run
// ends with "no usable result" and everything else of the handle works.
#ifndef MORVANE_REGISTRATION_PENDING_SEARCH_REGISTRATION_H
#define MORVANE_REGISTRATION_PENDING_SEARCH_REGISTRATION_H

#include "registration/projective_registration.h"

namespace hybrid {

class PendingSearchRegistration : public geometric::ProjectiveRegistration {
public:
    explicit PendingSearchRegistration(const common::Image* image_) : geometric::ProjectiveRegistration(image_) {}

    // Finds nothing: no lines, no vanishing points, no corners.
    geometric::RegistrationOutputType run_registration() override { return geometric::REGISTRATION_NO_GEOMETRY; }
};

}  // namespace hybrid

#endif

// The root of every registration: the image it searches, which it does not own.
#ifndef MORVANE_REGISTRATION_REGISTRATION_H
#define MORVANE_REGISTRATION_REGISTRATION_H

#include "common/image.h"

namespace geometric {

class Registration {
public:
    explicit Registration(const common::Image* image_) : image(image_) {}
    virtual ~Registration() {}

    const common::Image* image;
};

}  // namespace geometric

#endif

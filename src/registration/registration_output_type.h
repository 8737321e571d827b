// The result codes of a registration: what was found, or why it failed.
#ifndef MORVANE_REGISTRATION_REGISTRATION_OUTPUT_TYPE_H
#define MORVANE_REGISTRATION_REGISTRATION_OUTPUT_TYPE_H

namespace geometric {

// The values are fixed: the driver maps them to the codes a caller sees, and
// 3 to 6 never leave the registration objects (the caller reads them as 1).
enum RegistrationOutputType : int {
    REGISTRATION_VIRTUAL_CORNERS_REJECTED = -7,  // corners from vanishing points failed their examination
    REGISTRATION_OUTPUT_TOO_SMALL = -6,          // output too small against the input (output check)
    REGISTRATION_NOT_CONVEX = -5,                // not convex or an angle too small (output check)
    REGISTRATION_AREA_TOO_SMALL = -4,            // output check
    REGISTRATION_CORNER_OUTSIDE_IMAGE = -3,      // output check
    REGISTRATION_RESERVED = -2,                  // set by no registration; still mapped to 0 by the driver
    REGISTRATION_NO_GEOMETRY = -1,               // the initial value
    REGISTRATION_NO_RESULT = 0,
    REGISTRATION_TWO_VANISHING_POINTS = 1,
    REGISTRATION_STRAIGHT_PAGE = 2,              // both directions parallel and aligned with the axes
    REGISTRATION_TWO_PARALLEL_DIRECTIONS = 3,    // both parallel, at least one slanted
    REGISTRATION_MIXED_DIRECTIONS = 4,           // one vanishing point, one parallel direction
    REGISTRATION_ONE_VANISHING_POINT = 5,        // one direction only
    REGISTRATION_ONE_PARALLEL_DIRECTION = 6      // one direction only
};

}  // namespace geometric

#endif

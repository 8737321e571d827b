// Which of the page's two line families is meant: the one along the text or
// the one across it.
#ifndef MORVANE_TEXTGEOMETRY_DIRECTION_H
#define MORVANE_TEXTGEOMETRY_DIRECTION_H

#include <cstdint>

namespace geometric {

enum Direction : std::int32_t {
    HORIZONTAL_DIRECTION = 0,
    VERTICAL_DIRECTION = 1
};

}  // namespace geometric

#endif

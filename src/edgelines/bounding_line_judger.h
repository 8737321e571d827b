// Decides on which side of the page a new page-edge line lies, and whether
// that side agrees with the lines already held.
#ifndef MORVANE_EDGELINES_BOUNDING_LINE_JUDGER_H
#define MORVANE_EDGELINES_BOUNDING_LINE_JUDGER_H

#include <vector>

#include "edgelines/bounding_line.h"

namespace geometric {

// Only the first end (x1, y1) of a line's segment is judged against the
// image's centre.
class BoundingLineJudger {
public:
    // The centre is (float)(width / 2), (float)(height / 2), integer division.
    BoundingLineJudger(int width, int height);

    // Sets `line.position`, appends a copy of `line` to `lines` whatever the
    // outcome, and answers whether the side is consistent. The held line it is
    // judged against, with n lines held:
    //   n = 0: none; single judgement, true.
    //   n = 1: the held line if it runs the same way, else single judgement, true.
    //   n = 2: the second held line if it runs the same way, else single, true.
    //   n >= 3: the third held line, unconditionally.
    // The search fills lines two of one direction, then two of the other, so
    // the partner of the second line of a direction is always at that index.
    bool formulateBoundingLine(std::vector<BoundingLine>& lines, BoundingLine& line, bool horizontal);

    // LEFT_BOUNDARY when centre_x > x1, else RIGHT_BOUNDARY.
    void SetSingleVerticalLinePosition(BoundingLine& line);
    // The two lines take opposite sides by their x1 (the larger one right);
    // answers whether the single judgement of `line` differs from `held`'s side.
    bool setTwoVerticalLinePosition(BoundingLine& held, BoundingLine& line);
    // TOP_BOUNDARY when centre_y > y1, else BOTTOM_BOUNDARY.
    void setSingleHorizontalLinePostion(BoundingLine& line);
    // The two lines take opposite sides by their y1 (the larger one bottom);
    // answers whether the single judgement of `line` differs from `held`'s side.
    bool setTwoHorizontalLinePositon(BoundingLine& held, BoundingLine& line);

    int image_width;
    int image_height;
    float centre_x;
    float centre_y;
};

}  // namespace geometric

#endif

// Side judging of page-edge lines against the image centre and each other.
#include "edgelines/bounding_line_judger.h"

namespace geometric {

namespace {

bool is_vertical_side(BoundingLinePosition p) { return p == LEFT_BOUNDARY || p == RIGHT_BOUNDARY; }
bool is_horizontal_side(BoundingLinePosition p) { return p == TOP_BOUNDARY || p == BOTTOM_BOUNDARY; }

}  // namespace

BoundingLineJudger::BoundingLineJudger(int width, int height)
    : image_width(width),
      image_height(height),
      centre_x(static_cast<float>(width / 2)),
      centre_y(static_cast<float>(height / 2)) {}

void BoundingLineJudger::SetSingleVerticalLinePosition(BoundingLine& line) {
    line.position = centre_x > line.x1 ? LEFT_BOUNDARY : RIGHT_BOUNDARY;
}

void BoundingLineJudger::setSingleHorizontalLinePostion(BoundingLine& line) {
    line.position = centre_y > line.y1 ? TOP_BOUNDARY : BOTTOM_BOUNDARY;
}

bool BoundingLineJudger::setTwoVerticalLinePosition(BoundingLine& held, BoundingLine& line) {
    // A line hugging the left border (x1 below 1) was once first given the
    // side opposite to the held one; the single judgement below overrides
    // that in every case, so it is not repeated here.
    SetSingleVerticalLinePosition(line);
    const BoundingLinePosition single = line.position;
    const BoundingLinePosition held_side = held.position;
    if (line.x1 > held.x1) {
        line.position = RIGHT_BOUNDARY;
        held.position = LEFT_BOUNDARY;
    } else {
        line.position = LEFT_BOUNDARY;
        held.position = RIGHT_BOUNDARY;
    }
    return single != held_side;
}

bool BoundingLineJudger::setTwoHorizontalLinePositon(BoundingLine& held, BoundingLine& line) {
    setSingleHorizontalLinePostion(line);
    const BoundingLinePosition single = line.position;
    const BoundingLinePosition held_side = held.position;
    if (line.y1 > held.y1) {
        line.position = BOTTOM_BOUNDARY;
        held.position = TOP_BOUNDARY;
    } else {
        line.position = TOP_BOUNDARY;
        held.position = BOTTOM_BOUNDARY;
    }
    return single != held_side;
}

bool BoundingLineJudger::formulateBoundingLine(std::vector<BoundingLine>& lines, BoundingLine& line,
                                               bool horizontal) {
    const std::size_t n = lines.size();
    // The held line that a new line of this direction is paired with, if any.
    BoundingLine* partner = nullptr;
    if (n >= 3) {
        partner = &lines[2];
    } else if (n >= 1) {
        BoundingLine& candidate = lines[n - 1];
        const bool same_way = horizontal ? is_horizontal_side(candidate.position) : is_vertical_side(candidate.position);
        if (same_way) partner = &candidate;
    }

    bool consistent = true;
    if (partner == nullptr) {
        if (horizontal)
            setSingleHorizontalLinePostion(line);
        else
            SetSingleVerticalLinePosition(line);
    } else {
        consistent = horizontal ? setTwoHorizontalLinePositon(*partner, line) : setTwoVerticalLinePosition(*partner, line);
    }
    lines.push_back(line);
    return consistent;
}

}  // namespace geometric

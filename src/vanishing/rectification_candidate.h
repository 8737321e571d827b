// Judges candidate vanishing points by what they do to the lines once the
// page is rectified.
#ifndef MORVANE_VANISHING_RECTIFICATION_CANDIDATE_H
#define MORVANE_VANISHING_RECTIFICATION_CANDIDATE_H

#include <vector>

#include "textgeometry/direction.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base.h"

namespace geometric {

// The test lines are `lines`, except that with no previous candidate
// (`previous_index` kNoPreviousCandidate) and `flag` set, only the last line
// when the lines' angles deviate by 1 degree or more. For each candidate in
// turn that is finite and whose homography can be estimated
// (ProjectiveMatrixEstimator), the
// mean angle error of the rectified test lines, |90 - t| for the vertical
// direction and min(t, 180 - t) for the horizontal one; the first smallest
// wins. Answers:
//   VPOINT_PREVIOUS_STANDS when the winner is `previous_index`;
//   without `flag`, when the lines as they are, measured against
//   `reference_angle`, are straighter than under the winner:
//   VPOINT_TREAT_AS_PARALLEL if their error is at most `maximum_error`, else
//   VPOINT_NO_RESULT;
//   VPOINT_FOUND with `point` the winner when its error is at most
//   `maximum_error` (degrees), else VPOINT_NO_RESULT.
// `point` changes only with VPOINT_FOUND. No test lines give
// VPOINT_NO_RESULT; when no candidate has a homography, only the lines as
// they are can give an answer other than VPOINT_NO_RESULT.
int choose_rectification_candidate(int image_width, int image_height, Direction direction,
                                   const std::vector<Geocoordinate<double>>& candidates,
                                   const std::vector<GeolineBase>& lines, Geocoordinate<double>& point,
                                   int previous_index, bool flag, float maximum_error, float reference_angle);

}  // namespace geometric

#endif

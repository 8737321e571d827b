// Joins the point lists of groups that belong together, as sets of list indices.
#ifndef MORVANE_EDGELINES_MERGE_POINT_GROUPS_H
#define MORVANE_EDGELINES_MERGE_POINT_GROUPS_H

#include <set>
#include <vector>

#include "textgeometry/geocoordinate.h"

namespace geometric {

// `merged` is cleared, then the list indices are visited in ascending order,
// skipping those already used. An index that some group holds takes the
// first such group: the lists of all its members, in ascending order, are
// joined into one new list, and the members count as used. An index that no
// group holds passes its list unchanged. Members outside `lists` are ignored.
// `merged` must be another vector than `lists`.
void merge_point_groups(const std::vector<std::set<int>>& groups,
                        const std::vector<std::vector<Geocoordinate<float>>>& lists,
                        std::vector<std::vector<Geocoordinate<float>>>& merged);

}  // namespace geometric

#endif

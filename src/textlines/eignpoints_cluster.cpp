// Grouping of eigenpoints along text baselines by walking to nearest neighbours.
#include "textlines/eignpoints_cluster.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "common/constants.h"
#include "edgelines/line_angle_comparator.h"

namespace geometric {

namespace {

float distance(const Geocoordinate<float>& a, const Geocoordinate<float>& b) {
    const float dx = a.x - b.x;
    const float dy = a.y - b.y;
    return std::sqrt(dx * dx + dy * dy);
}

bool leans_little(const GeolineBase& line, float maximum_angle) {
    return LineAngleComparator::is_near_coordinate_axes(line, maximum_angle, HORIZONTAL_DIRECTION);
}

}  // namespace

EignpointsCluster::EignpointsCluster(const EignpointsClusteringConstraints& constraints_)
    : constraints(constraints_) {}

bool EignpointsCluster::perform_eignpoints_clustering(std::vector<Geocoordinate<float>>& points,
                                                      std::vector<std::vector<Geocoordinate<float>>>& groups) {
    if (!points.empty()) {
        first_point = points.front();
        last_point = points.back();
        leftmost_point = rightmost_point = points.front();
        for (const Geocoordinate<float>& p : points) {
            if (p.x < leftmost_point.x) leftmost_point = p;
            if (p.x > rightmost_point.x) rightmost_point = p;
        }
    }
    groups.clear();
    std::vector<Geocoordinate<float>> rejected;
    // A group holds its seed at least, so a size limit below 1 means 1.
    const std::size_t minimum = static_cast<std::size_t>(std::max(constraints.minimum_group_size, 1));
    while (points.size() >= minimum) {
        Geocoordinate<float> seed;
        pick_up_seeding(points, seed);
        std::vector<Geocoordinate<float>> group(1, seed);
        formulate_points_on_line(points, group, HybridProjectivePara::INSERT_AT_BACK);
        formulate_points_on_line(points, group, HybridProjectivePara::INSERT_AT_FRONT);
        collect_point_group(group, rejected, groups, constraints.minimum_group_size);
    }
    return !groups.empty();
}

void EignpointsCluster::pick_up_seeding(std::vector<Geocoordinate<float>>& points, Geocoordinate<float>& seed) {
    seed = points.front();
    points.erase(points.begin());
}

void EignpointsCluster::formulate_points_on_line(std::vector<Geocoordinate<float>>& points,
                                                 std::vector<Geocoordinate<float>>& group,
                                                 HybridProjectivePara::InsertDirection direction) {
    const bool back = direction == HybridProjectivePara::INSERT_AT_BACK;
    GeolineLeastSquare line;
    if (group.size() >= 2) line.fit(group);
    std::vector<char> tried(points.size(), 0);
    std::vector<std::size_t> accepted;
    for (;;) {
        // The walk follows the chain outward: the anchor is the end just reached.
        const Geocoordinate<float> anchor = back ? group.back() : group.front();
        std::size_t nearest = points.size();
        float nearest_distance = 0.0f;
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (tried[i]) continue;
            const float d = distance(anchor, points[i]);
            if (nearest == points.size() || d < nearest_distance) {
                nearest = i;
                nearest_distance = d;
            }
        }
        // With no point left the walk ends, as a distance of 10000 beyond
        // any neighbour distance would end it.
        if (nearest == points.size() || !(constraints.neighbor_distance > nearest_distance)) break;
        const Geocoordinate<float> candidate = points[nearest];
        if (verify_line_constraint(group, candidate, line, constraints.line_distance,
                                   constraints.maximum_line_angle)) {
            if (back)
                group.push_back(candidate);
            else
                group.insert(group.begin(), candidate);
            accepted.push_back(nearest);
        }
        tried[nearest] = 1;
    }
    std::sort(accepted.begin(), accepted.end());
    std::size_t kept = 0;
    std::size_t next_accepted = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (next_accepted < accepted.size() && accepted[next_accepted] == i) {
            ++next_accepted;
            continue;
        }
        points[kept++] = points[i];
    }
    points.resize(kept);
}

bool EignpointsCluster::verify_line_constraint(const std::vector<Geocoordinate<float>>& group,
                                               const Geocoordinate<float>& candidate, GeolineLeastSquare& line,
                                               float line_distance, float maximum_angle) {
    if (group.size() == 1) return verify_line_constraint_single_point(group.front(), candidate, line, maximum_angle);
    return verify_line_constraint_multiple_points(group, candidate, line, line_distance, maximum_angle);
}

bool EignpointsCluster::verify_line_constraint_single_point(const Geocoordinate<float>& seed,
                                                            const Geocoordinate<float>& candidate,
                                                            GeolineLeastSquare& line, float maximum_angle) {
    if (std::fabs(seed.x - candidate.x) <= constants::kFloatEpsilon) {
        line.a = 1.0;
        line.b = 0.0;
        line.c = -static_cast<double>(seed.x);
    } else {
        line.a = (seed.y - candidate.y) / (seed.x - candidate.x);
        line.b = -1.0;
        line.c = candidate.y - line.a * candidate.x;
    }
    return leans_little(line, maximum_angle);
}

bool EignpointsCluster::verify_line_constraint_multiple_points(const std::vector<Geocoordinate<float>>& group,
                                                               const Geocoordinate<float>& candidate,
                                                               GeolineLeastSquare& line, float line_distance,
                                                               float maximum_angle) {
    if (!(line_distance > line.point_distance(candidate))) return false;
    std::vector<Geocoordinate<float>> extended;
    extended.reserve(group.size() + 1);
    extended.assign(group.begin(), group.end());
    extended.push_back(candidate);
    line.fit(extended);
    return leans_little(line, maximum_angle);
}

void EignpointsCluster::collect_point_group(const std::vector<Geocoordinate<float>>& group,
                                            std::vector<Geocoordinate<float>>& rejected,
                                            std::vector<std::vector<Geocoordinate<float>>>& groups,
                                            int minimum_group_size) {
    if (static_cast<long long>(group.size()) >= minimum_group_size)
        groups.push_back(group);
    else
        rejected.insert(rejected.end(), group.begin(), group.end());
}

}  // namespace geometric

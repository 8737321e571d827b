// Eigenpoints grouped along text lines: rows of points at the limits of each
// rule (turned pages are grouped in the text lines' own test).
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "textlines/eignpoints_cluster.h"

namespace {

using geometric::EignpointsCluster;
using geometric::EignpointsClusteringConstraints;
using geometric::Geocoordinate;
using Points = std::vector<Geocoordinate<float>>;

EignpointsClusteringConstraints constraints(float neighbor_distance, float line_distance) {
    EignpointsClusteringConstraints c;
    c.neighbor_distance = neighbor_distance;
    c.line_distance = line_distance;
    return c;
}

// n points `spacing` apart from (100, 100), rising to the right by `degrees`.
Points row(int n, float spacing, double degrees) {
    const double a = degrees * 3.14159265358979323846 / 180.0;
    Points points;
    for (int i = 0; i < n; ++i)
        points.emplace_back(static_cast<float>(100.0 + i * spacing * std::cos(a)),
                            static_cast<float>(100.0 - i * spacing * std::sin(a)));
    return points;
}

Points with(Points points, float x, float y) {
    points.emplace_back(x, y);
    return points;
}

TEST(EignpointsCluster, LimitsOfTheWalk) {
    struct Case {
        const char* what;
        Points points;
        EignpointsClusteringConstraints limits;
        std::vector<std::size_t> sizes;
    };
    const Case cases[] = {
        {"the nearest point at exactly the neighbour distance ends the walk", row(8, 10.0f, 0.0),
         constraints(10.0f, 5.0f), {}},
        {"just inside it the row is one group", row(8, 10.0f, 0.0), constraints(10.01f, 5.0f), {8}},
        {"seven points are too few for a group", row(7, 10.0f, 0.0), constraints(15.0f, 5.0f), {}},
        {"a row leaning 25 degrees makes no group", row(8, 10.0f, 25.0), constraints(15.0f, 5.0f), {}},
        {"a row leaning 15 degrees does, each point on the line of the two before", row(8, 10.0f, 15.0),
         constraints(15.0f, 1.0f), {8}},
        {"a candidate at exactly the line distance is refused", with(row(8, 10.0f, 0.0), 180.0f, 103.0f),
         constraints(15.0f, 3.0f), {8}},
        {"one just inside it joins", with(row(8, 10.0f, 0.0), 180.0f, 102.9f), constraints(15.0f, 3.0f), {9}},
        {"sixteen points make two groups when the second row starts far away",
         [] {
             Points two = row(8, 10.0f, 0.0);
             for (const Geocoordinate<float>& p : row(8, 10.0f, 0.0)) two.emplace_back(p.x + 500.0f, p.y);
             return two;
         }(),
         constraints(15.0f, 3.0f), {8, 8}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Points points = c.points;
        EignpointsCluster cluster(c.limits);
        std::vector<Points> groups(1);  // cleared by the clustering
        EXPECT_EQ(cluster.perform_eignpoints_clustering(points, groups), !c.sizes.empty());
        std::vector<std::size_t> sizes;
        for (const Points& g : groups) sizes.push_back(g.size());
        EXPECT_EQ(sizes, c.sizes);
    }
}

}  // namespace

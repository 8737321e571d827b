// Region growing of the line segment detector.
#include "linesegments/region_grow.h"

#include <cmath>

#include "linesegments/angle_tools.h"

namespace geometric {

RegionGrow::RegionGrow(const ImageObject<double>& angles_, const ImageObject<unsigned char>& used_, double tolerance_)
    : angles(angles_), used(used_), tolerance(tolerance_) {}

bool RegionGrow::is_angle_aligned(int x, int y, double angle, double tolerance_) const {
    return lsd_angle::is_aligned(angles.at(x, y), angle, tolerance_);
}

int RegionGrow::perform_region_grow(int x, int y, BlobCoordinatesWrapper& region, double& region_angle) const {
    region.size = 0;
    if (used.at(x, y) != 0) return -1;

    const int width = angles.get_width();
    const int height = angles.get_height();

    region.append(x, y);
    region_angle = angles.at(x, y);
    double sum_cos = std::cos(region_angle);
    double sum_sin = std::sin(region_angle);
    used.at(x, y) = 1;

    for (int i = 0; i < region.size; ++i) {
        const int xi = region.coordinates[i].x;
        const int yi = region.coordinates[i].y;
        for (int xx = xi - 1; xx <= xi + 1; ++xx) {
            if (xx < 0 || xx >= width) continue;
            for (int yy = yi - 1; yy <= yi + 1; ++yy) {
                if (yy < 0 || yy >= height) continue;
                unsigned char& mark = used.at(xx, yy);
                if (mark != 0) continue;
                const double angle = angles.at(xx, yy);
                if (!lsd_angle::is_aligned(angle, region_angle, tolerance)) continue;
                region.append(xx, yy);
                mark = 1;
                sum_cos += std::cos(angle);
                sum_sin += std::sin(angle);
                region_angle = std::atan2(sum_sin, sum_cos);
            }
        }
    }
    return 0;
}

}  // namespace geometric

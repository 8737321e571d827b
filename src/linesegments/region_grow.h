// Region growing of the line segment detector: from a seed pixel, the
// 8-connected pixels whose gradient angle agrees with the region's mean angle.
#ifndef MORVANE_LINESEGMENTS_REGION_GROW_H
#define MORVANE_LINESEGMENTS_REGION_GROW_H

#include "linesegments/blob_coordinates_wrapper.h"
#include "linesegments/image_object.h"

namespace geometric {

class RegionGrow {
public:
    // Both images are held by reference and must outlive the grower. `used`
    // is written through (1 where a pixel is taken) although it is held const:
    // the image object shares its pixels, it does not own their constness.
    RegionGrow(const ImageObject<double>& angles, const ImageObject<unsigned char>& used, double tolerance);

    // Grows the region of the seed (x, y) into `region` and leaves its mean
    // angle in `region_angle`. Returns 0, or -1 with an empty region and
    // `region_angle` untouched when the seed is already taken.
    // The mean angle moves with every pixel taken, so the scan order (region
    // entries in order, then x - 1 .. x + 1 outer, y - 1 .. y + 1 inner) is
    // part of the result.
    int perform_region_grow(int x, int y, BlobCoordinatesWrapper& region, double& region_angle) const;

    // The pixel's angle is defined and within `tolerance` of `angle`.
    bool is_angle_aligned(int x, int y, double angle, double tolerance) const;

private:
    const ImageObject<double>& angles;
    const ImageObject<unsigned char>& used;
    double tolerance;
};

}  // namespace geometric

#endif

// From a grown region to the rectangle that it approximates, and the
// refinement of regions whose rectangle is too sparsely filled.
#ifndef MORVANE_LINESEGMENTS_REGION_RECTANGLE_H
#define MORVANE_LINESEGMENTS_REGION_RECTANGLE_H

#include "linesegments/blob_coordinates_wrapper.h"
#include "linesegments/image_object.h"
#include "linesegments/line_segment_rect.h"

namespace geometric {

class RegionRectangle {
public:
    // The rectangle of a region, weights = gradient norms: the centre is the
    // weighted mean; theta is the direction of least inertia, turned by pi
    // when it is more than prec away from region_angle; ends and width come
    // from projecting the pixels on theta and across it (width at least 1).
    // False when the weights sum to nothing or the inertia vanishes.
    static bool build(const BlobCoordinatesWrapper& region, const ImageObject<double>& norms, double region_angle,
                      double prec, double p, LineSegmentRect& rect);

    // Aligned pixels per rectangle area: region size / (length * width).
    static double density(const BlobCoordinatesWrapper& region, const LineSegmentRect& rect);

    // Brings the region to a density of at least density_th, or answers false
    // when it cannot. First regrows it from its seed with a tolerance of twice
    // the spread of the angles near the seed; then, if still too sparse, cuts
    // it to ever smaller discs round the seed (radius * 0.75 at each turn).
    // Pixels that leave the region are marked free again in `used`.
    static bool refine(BlobCoordinatesWrapper& region, double& region_angle, double prec, double p,
                       LineSegmentRect& rect, const ImageObject<unsigned char>& used,
                       const ImageObject<double>& angles, const ImageObject<double>& norms, double density_th);

    static bool reduce_region_radius(BlobCoordinatesWrapper& region, double region_angle, double prec, double p,
                                     LineSegmentRect& rect, const ImageObject<unsigned char>& used,
                                     const ImageObject<double>& norms, double density_th);
};

}  // namespace geometric

#endif

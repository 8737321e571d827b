// Rectangles of grown regions and their refinement.
#include "linesegments/region_rectangle.h"

#include <cmath>

#include "common/constants.h"
#include "linesegments/angle_tools.h"
#include "linesegments/region_grow.h"

namespace geometric {

namespace {

double distance(double x1, double y1, double x2, double y2) {
    return std::sqrt((x2 - x1) * (x2 - x1) + (y2 - y1) * (y2 - y1));
}

}  // namespace

bool RegionRectangle::build(const BlobCoordinatesWrapper& region, const ImageObject<double>& norms,
                            double region_angle, double prec, double p, LineSegmentRect& rect) {
    // Centre: mean of the pixels weighted by their gradient norm.
    double x = 0.0;
    double y = 0.0;
    double sum = 0.0;
    for (int i = 0; i < region.size; ++i) {
        const BlobCoordinate& c = region.coordinates[i];
        const double weight = norms.at(c.x, c.y);
        x += c.x * weight;
        y += c.y * weight;
        sum += weight;
    }
    if (!(sum > 0.0)) return false;
    x /= sum;
    y /= sum;

    // Orientation: eigenvector of the smallest eigenvalue of the inertia matrix
    //   | Ixx Ixy |    Ixx = sum w (y - cy)^2, Iyy = sum w (x - cx)^2,
    //   | Ixy Iyy |    Ixy = -sum w (x - cx)(y - cy).
    double ixx = 0.0;
    double iyy = 0.0;
    double ixy = 0.0;
    for (int i = 0; i < region.size; ++i) {
        const BlobCoordinate& c = region.coordinates[i];
        const double weight = norms.at(c.x, c.y);
        ixx += (c.y - y) * (c.y - y) * weight;
        iyy += (c.x - x) * (c.x - x) * weight;
        ixy -= (c.x - x) * (c.y - y) * weight;
    }
    if (ixx == 0.0 && iyy == 0.0 && ixy == 0.0) return false;
    const double lambda = 0.5 * (ixx + iyy - std::sqrt((ixx - iyy) * (ixx - iyy) + 4.0 * ixy * ixy));
    double theta = std::fabs(ixx) > std::fabs(iyy) ? std::atan2(lambda - ixx, ixy) : std::atan2(ixy, lambda - iyy);
    // The inertia gives an axis; the region's gradients say which way it runs.
    if (lsd_angle::difference(theta, region_angle) > prec) theta += constants::kPi;

    const double dx = std::cos(theta);
    const double dy = std::sin(theta);
    double l_min = 0.0, l_max = 0.0, w_min = 0.0, w_max = 0.0;
    for (int i = 0; i < region.size; ++i) {
        const BlobCoordinate& c = region.coordinates[i];
        const double l = (c.x - x) * dx + (c.y - y) * dy;
        const double w = -(c.x - x) * dy + (c.y - y) * dx;
        if (l > l_max) l_max = l;
        if (l < l_min) l_min = l;
        if (w > w_max) w_max = w;
        if (w < w_min) w_min = w;
    }

    rect.x1 = x + l_min * dx;
    rect.y1 = y + l_min * dy;
    rect.x2 = x + l_max * dx;
    rect.y2 = y + l_max * dy;
    rect.width = w_max - w_min;
    rect.x = x;
    rect.y = y;
    rect.theta = theta;
    rect.prec = prec;
    rect.p = p;
    if (rect.width < 1.0) rect.width = 1.0;
    return true;
}

double RegionRectangle::density(const BlobCoordinatesWrapper& region, const LineSegmentRect& rect) {
    return region.size / (distance(rect.x1, rect.y1, rect.x2, rect.y2) * rect.width);
}

bool RegionRectangle::refine(BlobCoordinatesWrapper& region, double& region_angle, double prec, double p,
                             LineSegmentRect& rect, const ImageObject<unsigned char>& used,
                             const ImageObject<double>& angles, const ImageObject<double>& norms,
                             double density_th) {
    if (density(region, rect) >= density_th) return true;

    // New tolerance: tau = 2 * standard deviation of the angle differences to
    // the seed, over the region's pixels nearer the seed than the width.
    const int xc = region.coordinates[0].x;
    const int yc = region.coordinates[0].y;
    const double seed_angle = angles.at(xc, yc);
    double sum = 0.0;
    double sum_squares = 0.0;
    int n = 0;
    for (int i = 0; i < region.size; ++i) {
        const BlobCoordinate& c = region.coordinates[i];
        used.at(c.x, c.y) = 0;
        if (distance(xc, yc, c.x, c.y) < rect.width) {
            const double d = lsd_angle::signed_difference(angles.at(c.x, c.y), seed_angle);
            sum += d;
            sum_squares += d * d;
            ++n;
        }
    }
    const double mean = sum / n;
    double variance = sum_squares / n - mean * mean;
    if (variance < 0.0) variance = 0.0;  // rounding on a nearly uniform region
    const double tau = 2.0 * std::sqrt(variance);

    RegionGrow(angles, used, tau).perform_region_grow(xc, yc, region, region_angle);
    if (region.size < 2) return false;
    if (!build(region, norms, region_angle, prec, p, rect)) return false;
    if (density(region, rect) < density_th)
        return reduce_region_radius(region, region_angle, prec, p, rect, used, norms, density_th);
    return true;
}

bool RegionRectangle::reduce_region_radius(BlobCoordinatesWrapper& region, double region_angle, double prec,
                                           double p, LineSegmentRect& rect, const ImageObject<unsigned char>& used,
                                           const ImageObject<double>& norms, double density_th) {
    double current = density(region, rect);
    if (current >= density_th) return true;

    const double xc = region.coordinates[0].x;
    const double yc = region.coordinates[0].y;
    double radius = std::fmax(distance(xc, yc, rect.x1, rect.y1), distance(xc, yc, rect.x2, rect.y2));
    while (current < density_th) {
        radius *= 0.75;
        // Drop the pixels outside the disc; the last entry takes the place of
        // each one dropped, so the seed (distance 0) stays first.
        for (int i = 0; i < region.size; ++i) {
            BlobCoordinate& c = region.coordinates[i];
            if (distance(xc, yc, c.x, c.y) > radius) {
                used.at(c.x, c.y) = 0;
                c = region.coordinates[region.size - 1];
                --region.size;
                --i;
            }
        }
        if (region.size < 2) return false;
        if (!build(region, norms, region_angle, prec, p, rect)) return false;
        current = density(region, rect);
    }
    return true;
}

}  // namespace geometric

// The line segment detector: orchestration, gradient step and pseudo-sort.
#include "linesegments/line_segment_generator.h"

#include <cmath>

#include "common/constants.h"
#include "linesegments/angle_tools.h"
#include "linesegments/blob_coordinates_wrapper.h"
#include "linesegments/gaussian_sampler.h"
#include "linesegments/nfa_enhancer.h"
#include "linesegments/nfa_score.h"
#include "linesegments/region_grow.h"
#include "linesegments/region_rectangle.h"
#include "linesegments/segment_linker.h"

namespace geometric {

template <typename T>
double LineSegmentGenerator::compute_gradient(const ImageObject<T>& image, double threshold,
                                              ImageObject<double>& angles, ImageObject<double>& norms) {
    const int width = image.get_width();
    const int height = image.get_height();
    angles = ImageObject<double>(width, height);
    norms = ImageObject<double>(width, height);
    double largest = 0.0;
    if (width <= 0 || height <= 0) return largest;

    for (int y = 0; y + 1 < height; ++y) {
        const T* top = image.row(y);
        const T* bottom = image.row(y + 1);
        double* angle = angles.row(y);
        double* norm = norms.row(y);
        for (int x = 0; x + 1 < width; ++x) {
            const double com1 = static_cast<double>(bottom[x + 1]) - static_cast<double>(top[x]);
            const double com2 = static_cast<double>(top[x + 1]) - static_cast<double>(bottom[x]);
            const double gx = com1 + com2;
            const double gy = com1 - com2;
            const double n = std::sqrt((gx * gx + gy * gy) * 0.25);
            norm[x] = n;
            if (n <= threshold) {
                angle[x] = lsd_angle::kNotDefined;
            } else {
                angle[x] = std::atan2(gx, -gy);
                if (n > largest) largest = n;
            }
        }
        angle[width - 1] = lsd_angle::kNotDefined;
        norm[width - 1] = 0.0;
    }
    double* angle = angles.row(height - 1);
    double* norm = norms.row(height - 1);
    for (int x = 0; x < width; ++x) {
        angle[x] = lsd_angle::kNotDefined;
        norm[x] = 0.0;
    }
    return largest;
}

template double LineSegmentGenerator::compute_gradient<unsigned char>(const ImageObject<unsigned char>&, double,
                                                                      ImageObject<double>&, ImageObject<double>&);
template double LineSegmentGenerator::compute_gradient<double>(const ImageObject<double>&, double,
                                                               ImageObject<double>&, ImageObject<double>&);

void LineSegmentGenerator::pseudo_sort(const ImageObject<double>& angles, const ImageObject<double>& norms,
                                       double largest_norm, int n_bins, std::vector<Geocoordinate<int>>& order) {
    order.clear();
    const int width = angles.get_width();
    const int height = angles.get_height();
    if (width <= 0 || height <= 0 || n_bins <= 0 || !(largest_norm > 0.0)) return;

    // Bin of each pixel, -1 for the ones without an angle, which never seed.
    const double factor = n_bins / largest_norm;
    std::vector<int> bins(static_cast<std::size_t>(width) * height);
    std::vector<int> starts(static_cast<std::size_t>(n_bins) + 1, 0);
    for (int y = 0; y < height; ++y) {
        const double* angle = angles.row(y);
        const double* norm = norms.row(y);
        int* bin = &bins[static_cast<std::size_t>(y) * width];
        for (int x = 0; x < width; ++x) {
            if (angle[x] == lsd_angle::kNotDefined) {
                bin[x] = -1;
                continue;
            }
            int b = static_cast<int>(norm[x] * factor);
            if (b > n_bins - 1) b = n_bins - 1;
            bin[x] = b;
            ++starts[n_bins - 1 - b];  // highest bin first
        }
    }
    int total = 0;
    for (int s = 0; s <= n_bins; ++s) {
        const int c = starts[s];
        starts[s] = total;
        total += c;
    }
    order.resize(total);
    // Scan order x outer, y inner: the order inside each bin.
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y) {
            const int b = bins[static_cast<std::size_t>(y) * width + x];
            if (b < 0) continue;
            Geocoordinate<int>& slot = order[starts[n_bins - 1 - b]++];
            slot.x = x;
            slot.y = y;
        }
}

void LineSegmentGenerator::generate_line_segments(const ImageObject<unsigned char>& image,
                                                  std::vector<LineSegmentRect>& segments) const {
    if (image.get_width() <= 0 || image.get_height() <= 0 || image.get_pixels() == nullptr) return;
    if (!(scale > 0.0)) return;  // no image to detect on

    // Angle tolerance and the gradient threshold that quantisation noise of
    // `quant` grey levels cannot reach within that tolerance.
    const double prec = constants::kPi * ang_th / 180.0;
    const double rho = quant / std::sin(prec);

    ImageObject<double> angles;
    ImageObject<double> norms;
    double largest_norm = 0.0;
    if (scale == 1.0) {
        largest_norm = compute_gradient(image, rho, angles, norms);
    } else {
        const ImageObject<double> scaled = GaussianSampler::down_scale(image, scale, sigma_scale);
        largest_norm = compute_gradient(scaled, rho, angles, norms);
    }

    std::vector<LineSegmentRect> found;
    detect(angles, norms, largest_norm, found);

    if (link_segments) SegmentLinker(link_angle, link_gap, link_validate, link_log_eps).link(found, angles);

    if (scale != 1.0) {
        for (LineSegmentRect& s : found) {
            s.x1 /= scale;
            s.y1 /= scale;
            s.x2 /= scale;
            s.y2 /= scale;
            s.width /= scale;
            s.length = std::sqrt((s.x2 - s.x1) * (s.x2 - s.x1) + (s.y2 - s.y1) * (s.y2 - s.y1));
        }
    }
    segments.insert(segments.end(), found.begin(), found.end());
}

void LineSegmentGenerator::generate_line_segments(const unsigned char* pixels, int width, int height,
                                                  std::vector<LineSegmentRect>& segments) const {
    if (pixels != nullptr) {
        // Only read: the image object's pixel type is not const.
        const ImageObject<unsigned char> image(const_cast<unsigned char*>(pixels), width, height);
        generate_line_segments(image, segments);
    } else {
        const ImageObject<unsigned char> image(width, height, 0);
        generate_line_segments(image, segments);
    }
}

void LineSegmentGenerator::detect(const ImageObject<double>& angles, const ImageObject<double>& norms,
                                  double largest_norm, std::vector<LineSegmentRect>& found) const {
    const int width = angles.get_width();
    const int height = angles.get_height();
    const double prec = constants::kPi * ang_th / 180.0;
    const double p = ang_th / 180.0;

    std::vector<Geocoordinate<int>> order;
    pseudo_sort(angles, norms, largest_norm, n_bins, order);
    if (order.empty()) return;

    const ImageObject<unsigned char> used(width, height, 0);
    BlobCoordinatesWrapper region(width, height);
    // Regions smaller than this cannot be meaningful even if every pixel is aligned.
    const double log_nt = nfa_score::log_number_of_tests(width, height);
    const int min_reg_size = static_cast<int>(-log_nt / std::log10(p));

    const RegionGrow grower(angles, used, prec);
    const NFAEnhancer enhancer(angles, log_eps);
    for (const Geocoordinate<int>& seed : order) {
        double region_angle = 0.0;
        if (grower.perform_region_grow(seed.x, seed.y, region, region_angle) < 0) continue;
        if (region.size < min_reg_size) continue;

        LineSegmentRect rect;
        if (!RegionRectangle::build(region, norms, region_angle, prec, p, rect)) continue;
        if (!RegionRectangle::refine(region, region_angle, prec, p, rect, used, angles, norms, density_th)) continue;

        double log_nfa = 0.0;
        if (enhancer.enhance_nfa(rect, log_nfa) < 0) continue;

        // The gradient of pixel (x, y) belongs to the point (x + 0.5, y + 0.5);
        // the ends are moved there and cut to whole pixels.
        rect.x1 += 0.5;
        rect.y1 += 0.5;
        rect.x2 += 0.5;
        rect.y2 += 0.5;
        rect.length = std::sqrt((rect.x2 - rect.x1) * (rect.x2 - rect.x1) + (rect.y2 - rect.y1) * (rect.y2 - rect.y1));
        rect.x1 = std::trunc(rect.x1);
        rect.y1 = std::trunc(rect.y1);
        rect.x2 = std::trunc(rect.x2);
        rect.y2 = std::trunc(rect.y2);
        rect.log_nfa = log_nfa;
        found.push_back(rect);
    }
}

}  // namespace geometric

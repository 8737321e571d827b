// The line segment detector: gradient orientations, regions of aligned
// pixels grown from the strongest gradients, rectangles validated by their
// number of false alarms, ends snapped to whole pixels, and a linking pass
// that joins collinear segments.
#ifndef MORVANE_LINESEGMENTS_LINE_SEGMENT_GENERATOR_H
#define MORVANE_LINESEGMENTS_LINE_SEGMENT_GENERATOR_H

#include <vector>

#include "linesegments/image_object.h"
#include "linesegments/line_segment_rect.h"
#include "textgeometry/geocoordinate.h"

namespace geometric {

class LineSegmentGenerator {
public:
    LineSegmentGenerator() = default;

    // Appends the segments of `image` (8-bit gray) to `segments`, in pixels of
    // `image`. A segment runs from (x1, y1) to (x2, y2) with the brighter side
    // on its left as seen in image coordinates (y down), theta giving that way.
    void generate_line_segments(const ImageObject<unsigned char>& image, std::vector<LineSegmentRect>& segments) const;

    // The same on a caller's width x height gray buffer, read in place; a null
    // buffer is replaced by a fresh zero-filled one, so the answer is repeatable.
    void generate_line_segments(const unsigned char* pixels, int width, int height,
                                std::vector<LineSegmentRect>& segments) const;

    // Gradient step on an image of `T` pixels: per pixel of all but the last
    // row and column, from its 2 x 2 neighbourhood,
    //   com1 = I(x+1, y+1) - I(x, y), com2 = I(x+1, y) - I(x, y+1),
    //   gx = com1 + com2, gy = com1 - com2, norm = sqrt((gx^2 + gy^2) / 4),
    //   angle = atan2(gx, -gy), or not defined (-1024) when norm <= threshold.
    // The last row and column have no angle and norm 0. Returns the largest norm.
    template <typename T>
    static double compute_gradient(const ImageObject<T>& image, double threshold, ImageObject<double>& angles,
                                   ImageObject<double>& norms);

    // Pixels with a defined angle ordered by falling gradient norm, in
    // n_bins bins of equal width up to the largest norm; inside a bin in the
    // order x outer, y inner.
    static void pseudo_sort(const ImageObject<double>& angles, const ImageObject<double>& norms, double largest_norm,
                            int n_bins, std::vector<Geocoordinate<int>>& order);

    double scale = 0.8;        // image scaling before detection
    double sigma_scale = 0.6;  // Gaussian sigma = sigma_scale / scale when scale < 1
    double quant = 2.0;        // bound on the quantisation error of the gradient
    double ang_th = 22.5;      // gradient angle tolerance, degrees
    double log_eps = 0.0;      // detection threshold on -log10(NFA)
    double density_th = 0.7;   // minimal share of aligned pixels in a rectangle
    int n_bins = 1024;         // bins of the gradient pseudo-sort
    bool link_segments = true;   // run the linking pass
    double link_angle = 7.0;     // degrees, linking tolerance
    bool link_validate = true;   // validate linked rectangles by their NFA
    double link_log_eps = 0.0;   // threshold of that validation
    double link_reserved = 5.0;  // carried along, not read
    double link_gap = 5.0;       // pixels, largest gap between segment ends

private:
    void detect(const ImageObject<double>& angles, const ImageObject<double>& norms, double largest_norm,
                std::vector<LineSegmentRect>& found) const;
};

}  // namespace geometric

#endif

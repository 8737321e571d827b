// Shape of one blob from its second moments: the direction of its main axis
// and how elongated it is, and the line along a slim upright blob.
#ifndef MORVANE_PAGEANALYSIS_TEXT_BLOB_EXAMINER_H
#define MORVANE_PAGEANALYSIS_TEXT_BLOB_EXAMINER_H

#include <vector>

#include "components/text_blob.h"
#include "textgeometry/geocoordinate.h"
#include "textgeometry/geoline_base_points.h"

namespace geometric {

class TextBlobExaminer {
public:
    // Sums over the pixels, x and y taken as integers, and the moments
    // derived from them.
    struct TextBlobFeature {
        int count = 0;
        double sum_x = 0.0;
        double sum_y = 0.0;
        double sum_xy = 0.0;
        double sum_xx = 0.0;
        double sum_yy = 0.0;
        double variance_x = 0.0;
        double variance_y = 0.0;
        double covariance = 0.0;
    };

    // Accepts angles from 90 - tolerance to 90 + tolerance degrees and
    // eccentricities from minimum_eccentricity on, all bounds included.
    TextBlobExaminer(double minimum_eccentricity = 0.975, float tolerance = 20.0f);

    void set_minimum_eccentricity(double value) { minimum_eccentricity = value; }
    double get_minimum_eccentricity() const { return minimum_eccentricity; }
    // Also resets the angle range around the vertical.
    void set_tolerance(float value);
    float get_tolerance() const { return tolerance; }
    float get_minimum_angle() const { return minimum_angle; }
    float get_maximum_angle() const { return maximum_angle; }

    // Moments of a pixel list:
    //   variance_x = sum_xx / count - mean_x^2 + 1/12 (likewise y),
    //   covariance = -(sum_xy / count - mean_x mean_y),
    // 1/12 being the variance of a unit pixel, and the sign of the
    // covariance turned because image y grows downward. Without pixels the
    // count is 0 and the moments are not-a-number.
    static void get_features_from_blob(const std::vector<Geocoordinate<int>>& points, TextBlobFeature& feature);
    // The same over the pixels of the blob's component, run by run, from its
    // head along the chain; a blob without component or stored runs has none.
    static void get_features_from_blob(const TextBlob& blob, TextBlobFeature& feature);

    // Direction of the main axis in degrees, between 0 and 180, 90 upright,
    // in the orientation of image line angles. With a, b, c the two
    // variances and the covariance and r = sqrt(4 c^2 + (b - a)^2):
    // b > a gives p = r + (b - a), q = 2 c, else p = 2 c, q = a - b + r;
    // 0 when p and q are both within the double epsilon of 0; else
    // t = (float)(atan(p / q) in degrees), answered as -t when negative and
    // 180 - t otherwise (so an exactly horizontal blob gives 180).
    static float get_blob_angle(const TextBlobFeature& feature);
    // sqrt(1 - minor^2 / major^2) of the ellipse of the moments, through
    // s = sqrt((a - b)^2 + 4 c^2), major = 2 sqrt(2) sqrt(a + b + s) and
    // half the minor = sqrt(2) sqrt(a + b - s); 0 for a round blob.
    static double get_blob_eccentricity(const TextBlobFeature& feature);

    // Rejects the blob when its angle lies outside the range or its
    // eccentricity below the minimum, or when it has no pixels. Otherwise
    // hands out the eccentricity and the line a x - y + c = 0 with
    // a = tan(angle) through the centre of the pixels, which becomes the
    // line's only support point.
    bool extract_line_from_blob(const TextBlob& blob, GeolineBasePoints<float>& line, double& eccentricity) const;

private:
    double minimum_eccentricity;
    float tolerance;
    float minimum_angle;
    float maximum_angle;
};

}  // namespace geometric

#endif

// Blob shape from second moments: angles and eccentricities of bars whose
// moments are known by hand, and the line along a slim upright blob.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <list>
#include <vector>

#include "support/blob_scenes.h"
#include "pageanalysis/text_blob_examiner.h"

using namespace geometric;
using namespace support;

namespace {

constexpr double kPi = 3.14159265358979323846;

// Angle of the main axis in image terms and eccentricity, from moments a, b
// and c by the half-angle formula and the eigenvalues, a route apart from
// the examiner's.
double axis_angle(double a, double b, double c) {
    const double theta = 0.5 * std::atan2(2.0 * c, a - b) * 180.0 / kPi;
    return theta > 0.0 ? 180.0 - theta : -theta;
}
double eigen_eccentricity(double a, double b, double c) {
    const double root = std::sqrt((a - b) * (a - b) + 4.0 * c * c);
    const double major = 0.5 * (a + b + root);
    const double minor = 0.5 * (a + b - root);
    return std::sqrt(1.0 - minor / major);
}

struct OneBlob {
    ConnectedComponentCalculator calculator;
    TextBlob blob;
    TextBlobExaminer::TextBlobFeature feature;

    explicit OneBlob(const std::vector<std::pair<int, int>>& pixels) {
        common::BasicImage image(40, 40, common::BINARY);
        draw_pixels(image, pixels);
        const std::list<TextBlob> blobs = form_blobs(calculator, image);
        EXPECT_EQ(blobs.size(), 1u);
        blob = blobs.front();
        TextBlobExaminer::get_features_from_blob(blob, feature);
    }
};

}  // namespace

// Moments by hand, with 1/12 for the pixel's own spread:
//   staircase of 5 runs of 2: a = 25/3, b = 25/12, c = +-4;
//   diagonal of 10 pixels: a = b = 100/12, c = +-99/12;
//   upright bar 1 x 12: a = 1/12, b = 144/12, c = 0: eccentricity sqrt(143 / 144).
TEST(TextBlobExaminerTest, AnglesAndEccentricitiesMatchTheMomentsWorkedOutByHand) {
    struct Case {
        const char* name;
        std::vector<std::pair<int, int>> pixels;
        double a, b, c;
        double angle;
    };
    const double stair = axis_angle(25.0 / 3.0, 25.0 / 12.0, 4.0);
    const Case cases[] = {
        {"rising staircase", staircase(5, 5, 5, 2, true), 25.0 / 3.0, 25.0 / 12.0, 4.0, stair},
        {"falling staircase", staircase(5, 5, 5, 2, false), 25.0 / 3.0, 25.0 / 12.0, -4.0, 180.0 - stair},
        {"rising diagonal", staircase(5, 5, 10, 1, true), 100.0 / 12.0, 100.0 / 12.0, 99.0 / 12.0, 135.0},
        {"falling diagonal", staircase(5, 5, 10, 1, false), 100.0 / 12.0, 100.0 / 12.0, -99.0 / 12.0, 45.0},
    };
    EXPECT_NEAR(stair, 180.0 - 26.00063, 1e-4);  // atan(1.28) / 2 is 26.00063 degrees
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const OneBlob one(c.pixels);
        EXPECT_NEAR(one.feature.variance_x, c.a, 1e-12);
        EXPECT_NEAR(one.feature.variance_y, c.b, 1e-12);
        EXPECT_NEAR(one.feature.covariance, c.c, 1e-12);
        EXPECT_NEAR(TextBlobExaminer::get_blob_angle(one.feature), c.angle, 1e-4);
        EXPECT_NEAR(TextBlobExaminer::get_blob_eccentricity(one.feature), eigen_eccentricity(c.a, c.b, c.c), 1e-12);
    }
    // An upright bar is at 90; a flat bar's axis angle comes out as 180, not 0: t = 0 is not negative.
    const OneBlob upright(steep_staircase(10, 5, 12, 100));
    EXPECT_EQ(TextBlobExaminer::get_blob_angle(upright.feature), 90.0f);
    EXPECT_NEAR(TextBlobExaminer::get_blob_eccentricity(upright.feature), std::sqrt(143.0 / 144.0), 1e-12);
    EXPECT_EQ(TextBlobExaminer::get_blob_angle(OneBlob(staircase(5, 5, 1, 12, true)).feature), 180.0f);
}

TEST(TextBlobExaminerTest, ExtractedLineRunsAlongTheBlobThroughItsCentre) {
    // One column right every 3 lines going up: leans right of upright.
    const OneBlob one(steep_staircase(10, 5, 15, 3));
    TextBlobExaminer examiner(0.9, 20.0f);
    GeolineBasePoints<float> line;
    line.points.assign(3, Geocoordinate<float>(1.0f, 1.0f));
    double eccentricity = 0.0;
    ASSERT_TRUE(examiner.extract_line_from_blob(one.blob, line, eccentricity));
    const float angle = TextBlobExaminer::get_blob_angle(one.feature);
    EXPECT_GT(angle, 90.0f);
    EXPECT_NEAR(line.line_angle(), angle, 1e-4);
    EXPECT_EQ(eccentricity, TextBlobExaminer::get_blob_eccentricity(one.feature));
    EXPECT_EQ(line.b, -1.0);
    ASSERT_EQ(line.points.size(), 1u);
    EXPECT_FLOAT_EQ(line.points[0].x, 12.0f);  // 3 pixels in each of columns 10..14
    EXPECT_FLOAT_EQ(line.points[0].y, 12.0f);
    EXPECT_NEAR(line.point_distance(line.points[0]), 0.0, 1e-9);
}

TEST(TextBlobExaminerTest, BlobWithoutPixelsIsRejectedNotMeasured) {
    TextBlobExaminer examiner(0.0, 90.0f);
    GeolineBasePoints<float> line;
    double eccentricity = 0.0;
    EXPECT_FALSE(examiner.extract_line_from_blob(TextBlob(), line, eccentricity));
    TextBlobExaminer::TextBlobFeature feature;
    TextBlobExaminer::get_features_from_blob(std::vector<Geocoordinate<int>>(), feature);
    EXPECT_EQ(feature.count, 0);
    EXPECT_TRUE(std::isnan(feature.variance_x));
}

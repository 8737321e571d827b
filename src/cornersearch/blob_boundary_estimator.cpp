// Large blobs to page sides: the choice of blobs, the lines along their
// outlines, and the order in which their results are weighed.
#include "cornersearch/blob_boundary_estimator.h"

#include <algorithm>
#include <cmath>

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/linestring.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/index/rtree.hpp>

#include "common/constants.h"
#include "edgelines/line_angle_comparator.h"
#include "pageanalysis/text_blob_examiner.h"

namespace geometric_test {

namespace bg = boost::geometry;
namespace bgi = boost::geometry::index;

typedef bg::model::d2::point_xy<double> OutlinePoint;
typedef bg::model::linestring<OutlinePoint> Outline;
typedef bg::model::box<OutlinePoint> Region;

BlobBoundaryEstimator::BlobBoundaryEstimator(int width, int height, const std::vector<Contour>* contours,
                                             const std::vector<geometric::Geobox<int>>* boxes,
                                             std::shared_ptr<BoundingLineArrayWrapper> wrapper)
    : width(width), height(height), contours(contours), boxes(boxes), wrapper(std::move(wrapper)) {}

// ---- the choice of blobs ----

bool BlobBoundaryEstimator::PolygonSelector::touches_border(const geometric::Geobox<int>& box) const {
    const int W = owner.width, H = owner.height;
    const int sides = (box.left <= border_margin) + (box.top <= border_margin) +
                      (box.right >= W - 1 - border_margin) + (box.bottom >= H - 1 - border_margin);
    return sides >= 2;
}

void BlobBoundaryEstimator::PolygonSelector::run_pass(Measure measure, std::vector<Polygon>& polygons) {
    const std::vector<geometric::Geobox<int>>& boxes = *owner.boxes;
    const auto measure_of = [&](int i) {
        const geometric::Geobox<int>& box = boxes[static_cast<std::size_t>(i)];
        return measure == AREA ? box.area() : measure == HEIGHT ? box.height() : box.width();
    };
    // 1. The largest and the second largest, the first of equals first.
    int best = -1, second = -1;
    for (int i = 0; i < static_cast<int>(boxes.size()); ++i) {
        if (chosen.count(i) != 0) continue;
        const int m = measure_of(i);
        if (best < 0 || m > measure_of(best)) {
            second = best;
            best = i;
        } else if (second < 0 || m > measure_of(second)) {
            second = i;
        }
    }
    if (best < 0) return;

    // 2. The limit of the pass.
    const float ratio = owner.minimum_blob_area_ratio;
    const int limit = measure == AREA     ? static_cast<int>(ratio * static_cast<float>(owner.width) * static_cast<float>(owner.height))
                      : measure == HEIGHT ? static_cast<int>(ratio * static_cast<float>(owner.height))
                                          : static_cast<int>(ratio * static_cast<float>(owner.width));
    const auto polygon_of = [&](int i) {
        Polygon polygon;
        polygon.blob_index = i;
        polygon.touches_image_border = touches_border(boxes[static_cast<std::size_t>(i)]);
        polygon.is_below_minimum_area = measure_of(i) < limit;
        return polygon;
    };
    // 3. The largest.
    const Polygon largest = polygon_of(best);
    const bool largest_listed = measure_of(best) > 0.5 * limit;
    if (largest_listed) polygons.push_back(largest);
    const bool second_considered = largest.touches_image_border || !largest.is_below_minimum_area;

    // 4. The second: a good blob clear of the border goes before a border-hugging largest one.
    if (second_considered && second >= 0) {
        const Polygon next = polygon_of(second);
        if (largest_listed && largest.touches_image_border && !next.touches_image_border &&
            !next.is_below_minimum_area) {
            polygons.insert(polygons.begin(), next);
        } else if (measure_of(second) > 0.5 * limit) {
            polygons.push_back(next);
        }
    }

    // 5. A last polygon lying within the first adds nothing.
    if (polygons.size() >= 2) {
        const geometric::Geobox<int>& first = boxes[static_cast<std::size_t>(polygons.front().blob_index)];
        const geometric::Geobox<int>& last = boxes[static_cast<std::size_t>(polygons.back().blob_index)];
        if (last.left >= first.left && last.right <= first.right && last.top >= first.top &&
            last.bottom <= first.bottom) {
            polygons.pop_back();
        }
    }
    for (const Polygon& polygon : polygons) chosen.insert(polygon.blob_index);
}

int BlobBoundaryEstimator::PolygonSelector::activity_of(const Polygon& polygon) const {
    const Contour& outline = (*owner.contours)[static_cast<std::size_t>(polygon.blob_index)];
    const geometric::Geobox<int>& box = (*owner.boxes)[static_cast<std::size_t>(polygon.blob_index)];
    geometric::TextBlobExaminer::TextBlobFeature feature;
    geometric::TextBlobExaminer::get_features_from_blob(outline, feature);
    const double eccentricity = geometric::TextBlobExaminer::get_blob_eccentricity(feature);
    if (!(eccentricity >= 0.99)) return 1;
    // A thin straight blob is a side only when it is long enough.
    const int across_x = box.right - box.left, across_y = box.bottom - box.top;
    const float r = across_x < across_y ? static_cast<float>(across_x + 1) / static_cast<float>(owner.width)
                                        : static_cast<float>(across_y + 1) / static_cast<float>(owner.height);
    if (r < owner.minimum_line_length_ratio) return 0;
    if (r > owner.minimum_line_length_ratio) return 2;
    return 1;
}

std::vector<BlobBoundaryEstimator::Polygon> BlobBoundaryEstimator::PolygonSelector::select() {
    std::vector<Polygon> polygons;
    const int count = static_cast<int>(owner.boxes->size());
    bool any_left = false;
    for (int i = 0; i < count && !any_left; ++i) any_left = chosen.count(i) == 0;
    if (!any_left) return polygons;
    run_pass(AREA, polygons);
    run_pass(HEIGHT, polygons);
    run_pass(WIDTH, polygons);
    for (Polygon& polygon : polygons) polygon.activity = activity_of(polygon);
    return polygons;
}

// ---- lines along an outline ----

BlobBoundaryEstimator::Contour BlobBoundaryEstimator::ContourLineBuilder::simplify(const Contour& contour,
                                                                                  int tolerance) {
    if (contour.size() < 3 || tolerance < 0) return contour;
    Outline outline, simplified;
    outline.reserve(contour.size());
    for (const auto& p : contour) outline.push_back(OutlinePoint(p.x, p.y));
    bg::simplify(outline, simplified, static_cast<double>(tolerance));
    Contour result;
    result.reserve(simplified.size());
    // Every point of the result is one of the outline's, so the integers are exact.
    for (const OutlinePoint& p : simplified)
        result.emplace_back(static_cast<int>(std::lround(p.x())), static_cast<int>(std::lround(p.y())));
    if (result.size() == 2 && result[0].x == result[1].x && result[0].y == result[1].y) result.pop_back();
    return result;
}

namespace {

// Distance from p to the nearest point of the segment from s to e, ends included.
double distance_to_segment(const geometric::Geocoordinate<int>& p, const geometric::Geocoordinate<int>& s,
                           const geometric::Geocoordinate<int>& e) {
    const double dx = e.x - s.x, dy = e.y - s.y;
    const double length2 = dx * dx + dy * dy;
    double t = length2 > 0.0 ? ((p.x - s.x) * dx + (p.y - s.y) * dy) / length2 : 0.0;
    t = std::min(1.0, std::max(0.0, t));
    const double x = s.x + t * dx - p.x, y = s.y + t * dy - p.y;
    return std::sqrt(x * x + y * y);
}

}  // namespace

geometric::GeolineBase BlobBoundaryEstimator::ContourLineBuilder::fit(const geometric::Geocoordinate<int>& first,
                                                                      const geometric::Geocoordinate<int>& second,
                                                                      const Contour& support) {
    // The line through the two ends.
    geometric::GeolineBase line;
    const int dx = second.x - first.x;
    if (dx == 0) {
        line = geometric::GeolineBase(1.0, 0.0, -static_cast<double>(first.x));
    } else {
        const double slope = static_cast<double>(second.y - first.y) / dx;
        line = geometric::GeolineBase(slope, -1.0, first.y - slope * first.x);
    }
    if (support.empty()) return line;

    // Integer sums are exact, so the order of the support points cannot reach the fit.
    long long sx = 0, sy = 0, sxx = 0, syy = 0, sxy = 0;
    for (const auto& p : support) {
        sx += p.x;
        sy += p.y;
        sxx += static_cast<long long>(p.x) * p.x;
        syy += static_cast<long long>(p.y) * p.y;
        sxy += static_cast<long long>(p.x) * p.y;
    }
    const double n = static_cast<double>(support.size());
    const double mx = sx / n, my = sy / n;
    const double angle = geometric::LineAngleComparator::calculate_line_angle(line);
    const double epsilon = constants::kFloatEpsilon;
    if (line.b != 0.0 && (angle < 85.0 || angle > 95.0)) {
        // y on x.
        const double var = sxx / n - mx * mx;
        if (std::fabs(var) < epsilon) return geometric::GeolineBase(1.0, 0.0, -mx);
        const double s = (sxy / n - mx * my) / var;
        return geometric::GeolineBase(s, -1.0, my - s * mx);
    }
    // x on y.
    const double var = syy / n - my * my;
    if (std::fabs(var) < epsilon) {
        // The mean of x from the truncated integer quotient.
        return geometric::GeolineBase(1.0, 0.0, -static_cast<double>(sx / static_cast<long long>(support.size())));
    }
    const double s = (sxy / n - mx * my) / var;
    if (std::fabs(s) < epsilon) return geometric::GeolineBase(1.0, 0.0, -mx);
    return geometric::GeolineBase(1.0 / s, -1.0, -(mx - s * my) / s);
}

bool BlobBoundaryEstimator::ContourLineBuilder::build(const Contour& contour, std::vector<Line>& lines) const {
    const int tolerance = owner.simplification_tolerance;
    const Contour simplified = simplify(contour, tolerance);
    const int minimum_length =
        static_cast<int>(static_cast<float>(std::min(owner.width, owner.height)) * owner.minimum_line_length_ratio);

    // Every outline point, as it stood before the simplification, indexed by place.
    typedef std::pair<OutlinePoint, std::size_t> Entry;
    std::vector<Entry> entries;
    entries.reserve(contour.size());
    for (std::size_t i = 0; i < contour.size(); ++i)
        entries.emplace_back(OutlinePoint(contour[i].x, contour[i].y), i);
    const bgi::rtree<Entry, bgi::quadratic<16>> index(entries.begin(), entries.end());

    std::vector<Entry> found;
    Contour support;
    for (std::size_t k = 0; k + 1 < simplified.size(); ++k) {
        const geometric::Geocoordinate<int>& s = simplified[k];
        const geometric::Geocoordinate<int>& e = simplified[k + 1];
        const double length = std::hypot(static_cast<double>(e.x - s.x), static_cast<double>(e.y - s.y));
        if (!(length > minimum_length)) continue;

        // Support: outline points nearer the segment than the tolerance.
        const Region region(OutlinePoint(std::min(s.x, e.x) - tolerance, std::min(s.y, e.y) - tolerance),
                            OutlinePoint(std::max(s.x, e.x) + tolerance, std::max(s.y, e.y) + tolerance));
        found.clear();
        index.query(bgi::intersects(region), std::back_inserter(found));
        support.clear();
        for (const Entry& entry : found) {
            const geometric::Geocoordinate<int>& p = contour[entry.second];
            if (distance_to_segment(p, s, e) < tolerance) support.push_back(p);
        }
        const geometric::GeolineBase line = fit(s, e, support);
        if (!(line.point_distance(s) < tolerance && line.point_distance(e) < tolerance)) continue;
        lines.emplace_back(line, Contour{s, e});
    }
    return !lines.empty();
}

// ---- the whole estimate ----

int BlobBoundaryEstimator::estimate_blob_lines() {
    // 1. The polygons.
    PolygonSelector selector(*this);
    std::vector<Polygon> polygons = selector.select();

    // 2. Each polygon's lines, until one gives a page.
    const ContourLineBuilder builder(*this);
    BoundaryAssigner assigner(*this);
    std::vector<Line> lines;
    for (Polygon& polygon : polygons) {
        if (polygon.activity == 0) continue;
        lines.clear();
        if (!builder.build((*contours)[static_cast<std::size_t>(polygon.blob_index)], lines)) continue;
        const int r = assigner.assign(polygon, lines);
        if (r == 0) {
            status = 0;
            return 0;
        }
        if (r == -3) polygon.activity = 0;
    }

    // 3. A small polygon set aside earlier may still combine with the rest.
    std::vector<int> set_starts;
    if (wrapper->is_small_polygon_candiate_boundary_available(set_starts)) {
        wrapper->replace_with_small_polygon_candiate_boundary(set_starts);
        const BoundingLineArrayWrapper backup = *wrapper;
        wrapper->clear_current_boundaries();
        if (wrapper->combine_multiple_candidate_boundaries()) {
            status = 2;
        } else {
            wrapper->boundaries = backup.boundaries;
            wrapper->vertices = backup.vertices;
            wrapper->confidences = backup.confidences;
            wrapper->gray_failures = backup.gray_failures;
            wrapper->is_four_boundary_examined = backup.is_four_boundary_examined;
            status = 0;
        }
        return 0;
    }
    // 4. The candidate sets combined.
    if (wrapper->combine_multiple_candidate_boundaries()) {
        status = 2;
        return 0;
    }
    // 5. Two sides that meet.
    if (wrapper->is_cross_boundaries_ready()) return -2;
    // 6. Nothing, unless one strong side.
    if (!wrapper->is_single_boundary_ready()) wrapper->clear_current_boundaries();
    return -3;
}

}  // namespace geometric_test

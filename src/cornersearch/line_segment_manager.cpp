// The segments of the line stage: detection, the split into a horizontal and
// a vertical family by the angle histogram, and each family's vanishing point.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "common/constants.h"
#include "common/image_c_api_transformer.h"
#include "cornersearch/corner_detector_via_lsd.h"
#include "linesegments/line_segment_generator.h"
#include "vanishing/vpoint_ransac_solver.h"

namespace geometric_test {
namespace {

constexpr int kValuesPerSegment = 7;
constexpr int kHistogramCells = 180;
constexpr int kSmoothingWidth = 21;          // cells of the moving mean, and the half width cleared round a peak
constexpr int kHorizontalTolerance = 10;     // degrees, inclusive
constexpr int kVerticalTolerance = 22;       // degrees, exclusive
constexpr int kLeastPeakSeparation = 45;     // degrees between the two families' peaks

int fold(int u) {
    const int magnitude = std::abs(u);
    return magnitude <= 90 ? magnitude : 180 - magnitude;
}

// The first highest cell and the run of equal cells after it: its middle.
int highest_cell(const std::vector<float>& histogram) {
    const int n = static_cast<int>(histogram.size());
    int first = 0;
    for (int i = 1; i < n; ++i)
        if (histogram[i] > histogram[first]) first = i;
    int last = first;
    while (last + 1 < n && histogram[last + 1] == histogram[first]) ++last;
    return static_cast<int>(0.5 * (first + last));
}

void clear_around(std::vector<float>& histogram, int peak, int half_width) {
    const int from = std::max(0, peak - half_width);
    const int to = std::min(static_cast<int>(histogram.size()) - 1, peak + half_width);
    for (int i = from; i <= to; ++i) histogram[i] = 0.0f;
}

// The whole-degree angle of a line: 90 when vertical, else the truncated
// atan(-a / b) in degrees, lifted into [0, 180).
int whole_degree_angle(const geometric::GeolineBase& line) {
    if (std::fabs(line.b) <= constants::kDoubleEpsilon) return 90;
    int angle = static_cast<int>(std::atan(-line.a / line.b) * 180.0 / constants::kPi);
    if (angle < 0) angle += 180;
    return angle;
}

double length_of(const geometric::GeolineBasePoints<int>& line) {
    const double dx = line.points[0].x - line.points[1].x, dy = line.points[0].y - line.points[1].y;
    return std::sqrt(dx * dx + dy * dy);
}

}  // namespace

CornerDetectorViaLsd::LineSegmentManager::~LineSegmentManager() { std::free(segments); }

void CornerDetectorViaLsd::LineSegmentManager::generate(const common::Image& image) {
    ImageCApi record;
    morvane::ImageCApiTransformer::transform_image_to_c_api_image(image, record);
    if (record.is_binary != 0 || record.channels == 3 || record.channels == 4)
        throw "line segment detection needs an 8-bit gray image";
    std::vector<geometric::LineSegmentRect> found;
    geometric::LineSegmentGenerator().generate_line_segments(record.data, record.width, record.height, found);
    std::free(segments);
    segments = nullptr;
    segment_count = 0;
    if (!found.empty()) {
        segments = static_cast<double*>(std::malloc(found.size() * kValuesPerSegment * sizeof(double)));
        if (segments == nullptr) throw "error while allocating line segments, could not allocate enough memory";
        double* out = segments;
        for (const geometric::LineSegmentRect& s : found) {
            const double values[kValuesPerSegment] = {s.x1, s.y1, s.x2, s.y2, s.width, s.p, s.log_nfa};
            std::memcpy(out, values, sizeof(values));
            out += kValuesPerSegment;
        }
        segment_count = static_cast<int>(found.size());
    }
    width = record.width;
    height = record.height;
    minimum_x = border_margin;
    maximum_x = width - border_margin - 1;
    minimum_y = border_margin;
    maximum_y = height - border_margin - 1;
}

void CornerDetectorViaLsd::LineSegmentManager::formulate_lines() {
    lines.clear();
    horizontal_lines.clear();
    vertical_lines.clear();
    std::vector<float> histogram(kHistogramCells, 0.0f);
    std::vector<int> angles(static_cast<std::size_t>(segment_count));
    for (int i = 0; i < segment_count; ++i) {
        const double* s = segments + static_cast<std::size_t>(i) * kValuesPerSegment;
        const int x1 = static_cast<int>(s[0]), y1 = static_cast<int>(s[1]);
        const int x2 = static_cast<int>(s[2]), y2 = static_cast<int>(s[3]);
        geometric::GeolineBase line;
        const int dx = x1 - x2;
        if (dx == 0) {
            line = geometric::GeolineBase(1.0, 0.0, -x1);
        } else {
            const double a = static_cast<double>(y1 - y2) / dx;
            line = geometric::GeolineBase(a, -1.0, y2 - a * x2);
        }
        lines.emplace_back(line, std::vector<geometric::Geocoordinate<int>>{{x1, y1}, {x2, y2}});
        angles[i] = whole_degree_angle(line);
        histogram[angles[i]] += 1.0f;
    }

    // Centred moving mean; cells beyond either end count as zero.
    std::vector<float> smoothed(kHistogramCells, 0.0f);
    const int reach = kSmoothingWidth / 2;
    for (int i = 0; i < kHistogramCells; ++i) {
        float sum = 0.0f;
        for (int k = i - reach; k <= i + reach; ++k)
            if (k >= 0 && k < kHistogramCells) sum += histogram[k];
        smoothed[i] = sum / kSmoothingWidth;
    }
    int horizontal = 0, vertical = 90;
    find_hor_ver_angle_peak(smoothed, horizontal, vertical, kSmoothingWidth);

    for (int i = 0; i < segment_count; ++i) {
        if (fold(angles[i] - horizontal) <= kHorizontalTolerance) {
            horizontal_lines.push_back(i);
        } else if (fold(angles[i] - vertical) < kVerticalTolerance) {
            vertical_lines.push_back(i);
        }
    }
}

bool CornerDetectorViaLsd::LineSegmentManager::find_hor_ver_angle_peak(std::vector<float>& histogram, int& horizontal,
                                                                       int& vertical, int half_width) {
    const int peak = highest_cell(histogram);
    const bool peak_is_vertical = peak >= 45 && peak <= 135;
    clear_around(histogram, peak, half_width);
    int other = highest_cell(histogram);
    if (fold(peak - other) < kLeastPeakSeparation) {
        clear_around(histogram, other, half_width);
        other = highest_cell(histogram);
    }
    if (peak_is_vertical) {
        vertical = peak;
        horizontal = other;
    } else {
        horizontal = peak;
        vertical = other;
    }
    return true;
}

std::vector<CornerDetectorViaLsd::LineSegmentIndex>& CornerDetectorViaLsd::LineSegmentManager::family(
    geometric::Direction direction) {
    return direction == geometric::HORIZONTAL_DIRECTION ? horizontal_lines : vertical_lines;
}

void CornerDetectorViaLsd::LineSegmentManager::sort_based_on_length(geometric::Direction direction) {
    std::vector<LineSegmentIndex>& members = family(direction);
    std::stable_sort(members.begin(), members.end(), [this](LineSegmentIndex first, LineSegmentIndex second) {
        return length_of(lines[first]) > length_of(lines[second]);
    });
}

void CornerDetectorViaLsd::LineSegmentManager::classify_horizontal_vertical_lines(
    geometric::Direction direction, geometric::Geocoordinate<double>& point, geometric::VanishingPointOutput& output,
    bool keep_inliers_only) {
    std::vector<LineSegmentIndex>& members = family(direction);
    std::vector<geometric::GeolineBase> family_lines;
    family_lines.reserve(members.size());
    for (LineSegmentIndex index : members) family_lines.push_back(lines[index]);
    geometric::VpointRansacSolver solver(direction, width, height, geometric::RansacVanishingPointConstrains());
    std::vector<int> inliers;
    output.status = solver.perform_ransac_vpoint_searching(family_lines, inliers, point);
    output.has_vanishing_point = output.status == 1;
    output.is_parallel = output.status == 2 || output.status == 4;
    if (keep_inliers_only) {
        std::vector<LineSegmentIndex> kept;
        kept.reserve(inliers.size());
        for (int inlier : inliers) kept.push_back(members[inlier]);
        members.swap(kept);
    }
}

void CornerDetectorViaLsd::LineSegmentManager::calculate_vanishing_points(
    geometric::Geocoordinate<double>& horizontal, geometric::Geocoordinate<double>& vertical,
    geometric::VanishingPointOutput& horizontal_output, geometric::VanishingPointOutput& vertical_output,
    bool keep_inliers_only) {
    classify_horizontal_vertical_lines(geometric::HORIZONTAL_DIRECTION, horizontal, horizontal_output,
                                       keep_inliers_only);
    classify_horizontal_vertical_lines(geometric::VERTICAL_DIRECTION, vertical, vertical_output, keep_inliers_only);
}

bool CornerDetectorViaLsd::LineSegmentManager::is_near_boundary(const LineSegmentIndex& index) const {
    for (const geometric::Geocoordinate<int>& end : lines[index].points)
        if (end.x < minimum_x || end.x > maximum_x || end.y < minimum_y || end.y > maximum_y) return true;
    return false;
}

int CornerDetectorViaLsd::LineSegmentManager::left_most(const LineSegmentIndex& index,
                                                        geometric::Geocoordinate<int>& point) const {
    const auto& ends = lines[index].points;
    point = ends[0].x < ends[1].x ? ends[0] : ends[1];
    return point.x;
}

int CornerDetectorViaLsd::LineSegmentManager::right_most(const LineSegmentIndex& index,
                                                         geometric::Geocoordinate<int>& point) const {
    const auto& ends = lines[index].points;
    point = ends[1].x > ends[0].x ? ends[1] : ends[0];
    return point.x;
}

int CornerDetectorViaLsd::LineSegmentManager::top_most(const LineSegmentIndex& index,
                                                       geometric::Geocoordinate<int>& point) const {
    const auto& ends = lines[index].points;
    point = ends[0].y < ends[1].y ? ends[0] : ends[1];
    return point.y;
}

int CornerDetectorViaLsd::LineSegmentManager::bottom_most(const LineSegmentIndex& index,
                                                          geometric::Geocoordinate<int>& point) const {
    const auto& ends = lines[index].points;
    point = ends[1].y > ends[0].y ? ends[1] : ends[0];
    return point.y;
}

}  // namespace geometric_test

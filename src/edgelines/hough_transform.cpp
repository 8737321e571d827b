// The page-edge Hough transform: table, voting, peaks, the partner and
// perpendicular searches, and the check of each candidate on its points.
#include "edgelines/hough_transform.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "common/basic_image.h"
#include "common/constants.h"
#include "components/connected_component_calculator.h"
#include "edgelines/bounding_line_judger.h"
#include "textgeometry/geoline_adaptive_least_square.h"

namespace geometric {

namespace {

constexpr double kDegreesToRadians = 0.017453292519943295;
constexpr int kMinimumPoints = 10;
// Share of the band's points the largest group must hold to be dominant.
constexpr double kDominantShare = 0.6;

bool is_horizontal_cell(int angle_index) { return angle_index >= 45 && angle_index < 136; }

// The line through a candidate's two ends, in float coordinates as the ends
// are compared: a vertical form when the x's agree to single precision.
GeolineBase line_through(const HoughLineEnds& ends) {
    const float x1 = static_cast<float>(ends.first.first), y1 = static_cast<float>(ends.first.second);
    const float x2 = static_cast<float>(ends.second.first), y2 = static_cast<float>(ends.second.second);
    if (std::fabs(x1 - x2) <= constants::kFloatEpsilon) return GeolineBase(1.0, 0.0, -x1);
    const float a = (y1 - y2) / (x1 - x2);
    return GeolineBase(a, -1.0, y2 - a * x2);
}

// Values above mean + 3 deviations become 1, below mean - 3 deviations 0,
// and (v - mean) / (3 deviation) / 2 + 1/2 in between; the deviation has the
// divisor n - 1. Fewer than two values, or no spread: every value 1 / n.
void normalise(std::vector<double>& values) {
    const std::size_t n = values.size();
    double mean = 0.0, deviation = 0.0;
    if (n >= 2) {
        for (double v : values) mean += v;
        mean /= static_cast<double>(n);
        for (double v : values) deviation += (v - mean) * (v - mean);
        deviation = std::sqrt(deviation / static_cast<double>(n - 1));
    }
    if (n < 2 || deviation <= constants::kDoubleEpsilon) {
        for (double& v : values) v = 1.0 / static_cast<double>(n);
        return;
    }
    for (double& v : values) {
        if (v > mean + 3.0 * deviation) {
            v = 1.0;
        } else if (v < mean - 3.0 * deviation) {
            v = 0.0;
        } else {
            v = (v - mean) / (3.0 * deviation) * 0.5 + 0.5;
        }
    }
}

// Absolute distances of the points to the line, summed into an int that
// truncates at every addition: the comparison of the two vertical fits is
// taken on that total.
int truncated_distance_sum(const GeolineBase& line, const std::vector<Geocoordinate<float>>& points) {
    int sum = 0;
    for (const Geocoordinate<float>& p : points) sum = static_cast<int>(sum + line.point_distance(p));
    return sum;
}

// The largest eight-connected group of the points themselves: its pixel
// count, its box and its points. The components are formed on a canvas over
// the points' box on which the points are foreground (0) and all else
// background (255). The calculator's point-set query paints them the other
// way round and so measures the gaps between the points; a page edge is the
// curve of points, and its run is what decides here.
unsigned largest_point_group(const std::vector<int>& xs, const std::vector<int>& ys, Geobox<int>& box,
                             std::vector<int>& out_xs, std::vector<int>& out_ys) {
    const auto x_range = std::minmax_element(xs.begin(), xs.end());
    const auto y_range = std::minmax_element(ys.begin(), ys.end());
    const int min_x = *x_range.first, min_y = *y_range.first;
    const int width = *x_range.second - min_x + 1, height = *y_range.second - min_y + 1;
    std::vector<unsigned char> canvas(static_cast<std::size_t>(width) * height, 255);
    for (std::size_t i = 0; i < xs.size(); ++i)
        canvas[static_cast<std::size_t>(ys[i] - min_y) * width + (xs[i] - min_x)] = 0;
    const common::BasicImage image(canvas.data(), height, width, common::GRAY, constants::kBoundaryResolution,
                                   constants::kBoundaryResolution);
    ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(image);
    const BinaryConnectedComponent* best = nullptr;
    unsigned best_pixels = 0;
    for (auto it = calculator.begin(); it != calculator.end(); ++it)
        if (best == nullptr || it->count_pixel() > best_pixels) {
            best = &*it;
            best_pixels = it->count_pixel();
        }
    box = best->get_bounding_box();
    box.left += min_x, box.right += min_x, box.top += min_y, box.bottom += min_y;
    best->get_element_coordinates(out_xs, out_ys);
    for (std::size_t i = 0; i < out_xs.size(); ++i) out_xs[i] += min_x, out_ys[i] += min_y;
    return best_pixels;
}

}  // namespace

HoughTransform::HoughTransform(int width, int height) : image_width(width), image_height(height) {
    initialize_hough_table();
}

HoughTransform::HoughTransform(common::Image* image)
    : image_width(image->get_width()), image_height(image->get_height()), image(image) {
    initialize_hough_table();
}

void HoughTransform::initialize_hough_table() {
    angle_step_radians = angle_step * kDegreesToRadians;
    angle_cells = static_cast<int>(180.0 / angle_step);
    // Rests on the longer side alone, so it exceeds the half diagonal: every
    // distance lands inside the table with room to spare.
    maximum_distance = static_cast<float>(std::max(image_width, image_height) * std::sqrt(2.0) * 0.5);
    // The distance step is not applied: a distance cell is one pixel.
    distance_cells = 2 * static_cast<int>(std::lround(maximum_distance));
    sine_table.resize(static_cast<std::size_t>(angle_cells));
    cosine_table.resize(static_cast<std::size_t>(angle_cells));
    for (int t = 0; t < angle_cells; ++t) {
        sine_table[static_cast<std::size_t>(t)] = std::sin(t * angle_step_radians);
        cosine_table[static_cast<std::size_t>(t)] = std::cos(t * angle_step_radians);
    }
}

void HoughTransform::vote(std::vector<unsigned int>& accumulator, int x, int y) const {
    const double dx = x - image_width * 0.5, dy = y - image_height * 0.5;
    unsigned int* column = accumulator.data();
    for (int t = 0; t < angle_cells; ++t, ++column) {
        // Summed left to right, the offset and the half apart: a cell border
        // is where this exact sum truncates.
        const int d = static_cast<int>(cosine_table[static_cast<std::size_t>(t)] * dx +
                                       sine_table[static_cast<std::size_t>(t)] * dy + maximum_distance + 0.5);
        // Only a point outside the image can fall off the table.
        if (d >= 0 && d < distance_cells) ++column[static_cast<std::size_t>(d) * angle_cells];
    }
}

void HoughTransform::set_up_accumulator_map(std::vector<unsigned int>& accumulator, const std::vector<int>& xs,
                                            const std::vector<int>& ys) const {
    accumulator.assign(static_cast<std::size_t>(distance_cells) * angle_cells, 0u);
    const std::size_t n = std::min(xs.size(), ys.size());
    for (std::size_t i = 0; i < n; ++i) vote(accumulator, xs[i], ys[i]);
    if (smooth_accumulator) smooth_accumulator_map(accumulator);
}

void HoughTransform::set_up_accumulator_map(std::vector<unsigned int>& accumulator) const {
    accumulator.assign(static_cast<std::size_t>(distance_cells) * angle_cells, 0u);
    for (int y = 0; y < image->get_height(); ++y)
        for (int x = 0; x < image->get_width(); ++x)
            if (image->get_pixel(x, y) == 1) vote(accumulator, x, y);
    if (smooth_accumulator) smooth_accumulator_map(accumulator);
}

void HoughTransform::smooth_accumulator_map(std::vector<unsigned int>& accumulator) const {
    if (distance_cells < 3) return;
    const std::size_t row = static_cast<std::size_t>(angle_cells);
    for (std::size_t r = 1; r + 1 < static_cast<std::size_t>(distance_cells); ++r) {
        unsigned int* current = &accumulator[r * row];
        const unsigned int* above = current - row;  // already smoothed: the recursion is part of the result
        const unsigned int* below = current + row;
        for (std::size_t t = 0; t < row; ++t) current[t] = (above[t] + current[t] + below[t]) / 3u;
    }
}

void HoughTransform::peak(const std::vector<unsigned int>& accumulator, int& distance_index, int& angle_index,
                          unsigned int& votes) const {
    const auto best = std::max_element(accumulator.begin(), accumulator.end());  // the first of equals
    const std::size_t at = best == accumulator.end() ? 0 : static_cast<std::size_t>(best - accumulator.begin());
    distance_index = static_cast<int>(at / static_cast<std::size_t>(angle_cells));
    angle_index = static_cast<int>(at % static_cast<std::size_t>(angle_cells));
    votes = best == accumulator.end() ? 0u : *best;
}

void HoughTransform::peak(const std::vector<unsigned int>& accumulator, const std::vector<int>& range_starts,
                          const std::vector<int>& range_ends, int& distance_index, int& angle_index,
                          unsigned int& votes) const {
    votes = 0;
    const std::size_t ranges = std::min(range_starts.size(), range_ends.size());
    for (int d = 0; d < distance_cells; ++d) {
        const unsigned int* row = &accumulator[static_cast<std::size_t>(d) * angle_cells];
        for (std::size_t k = 0; k < ranges; ++k)
            for (int t = range_starts[k]; t <= range_ends[k]; ++t)
                if (row[t] > votes) {
                    votes = row[t];
                    distance_index = d;
                    angle_index = t;
                }
    }
}

bool HoughTransform::supporting_double_end_line(int distance_index, int angle_index, int& x1, int& y1, int& x2,
                                                int& y2) const {
    // The integer cell centre, not maximum_distance: the ends may sit half a
    // cell away from the votes, which the band of the verification absorbs.
    const int r = distance_index - distance_cells / 2;
    const double s = std::sin(angle_index * angle_step_radians), c = std::cos(angle_index * angle_step_radians);
    if (angle_index < 45 || angle_index > 135) {
        const int half_height = image_height / 2;
        y1 = 0;
        x1 = static_cast<int>((r - (-half_height) * s) / c + image_width * 0.5);
        y2 = image_height;
        x2 = static_cast<int>((r - (image_height - half_height) * s) / c + image_width * 0.5);
    } else {
        const double half_width = image_width * 0.5;
        x1 = 0;
        y1 = static_cast<int>((r - (-half_width) * c) / s + image_height * 0.5);
        x2 = image_width;
        y2 = static_cast<int>((r - (image_width - half_width) * c) / s + image_height * 0.5);
    }
    return is_horizontal_cell(angle_index);
}

bool HoughTransform::estimate_double_end_line(int distance_index, int angle_index, HoughLineEnds& line) const {
    return supporting_double_end_line(distance_index, angle_index, line.first.first, line.first.second,
                                      line.second.first, line.second.second);
}

bool HoughTransform::estimate_double_end_line(int distance_index, int angle_index,
                                              std::vector<HoughLineEnds>& lines) const {
    HoughLineEnds line;
    const bool horizontal = estimate_double_end_line(distance_index, angle_index, line);
    lines.push_back(line);
    return horizontal;
}

// The bounds 179 and 180 are those of a one-degree table whatever angle_cells is.
void HoughTransform::obtain_angle_search_range(int centre, int half_range, std::vector<int>& starts,
                                               std::vector<int>& ends) {
    const int lo = centre - half_range, hi = centre + half_range;
    if (lo >= 0 && hi < 180) {
        starts.push_back(lo);
        ends.push_back(hi);
    } else if (lo >= 0) {
        starts.insert(starts.end(), {lo, 0});
        ends.insert(ends.end(), {179, hi - 180});
    } else {
        starts.insert(starts.end(), {0, lo + 180});
        ends.insert(ends.end(), {hi, 179});
    }
}

bool HoughTransform::select_hough_line_same_direction(const std::vector<unsigned int>& accumulator,
                                                      const HoughLineEnds& first_line, int angle_index,
                                                      unsigned int votes, bool horizontal, HoughLineEnds& found,
                                                      int& distance_index, int& angle_index_found) const {
    std::vector<int> starts, ends;
    obtain_angle_search_range(angle_index, horizontal ? horizontal_angle_range : vertical_angle_range, starts,
                              ends);
    unsigned int threshold = static_cast<unsigned int>(votes * peak_vote_ratio);
    for (int attempt = 0; attempt < parallel_search_attempts; ++attempt) {
        if (perform_parallel_line_selection(accumulator, threshold, starts, ends, first_line, horizontal, found,
                                            distance_index, angle_index_found))
            return true;
        threshold >>= 1;
    }
    return false;
}

bool HoughTransform::perform_parallel_line_selection(const std::vector<unsigned int>& accumulator,
                                                     unsigned int threshold, const std::vector<int>& starts,
                                                     const std::vector<int>& ends, const HoughLineEnds& first_line,
                                                     bool horizontal, HoughLineEnds& found, int& distance_index,
                                                     int& angle_index) const {
    std::vector<HoughLineEnds> lines;
    std::vector<unsigned int> votes;
    std::vector<int> distance_indices, angle_indices;
    if (!collect_parallel_lines(accumulator, threshold, starts, ends, lines, votes, distance_indices,
                                angle_indices))
        return false;
    int best = 0;
    if (!select_best_parallel_line(first_line, lines, votes, best, horizontal)) return false;
    const std::size_t at = static_cast<std::size_t>(best);
    found = lines[at];
    distance_index = distance_indices[at];
    angle_index = angle_indices[at];
    return true;
}

bool HoughTransform::collect_parallel_lines(const std::vector<unsigned int>& accumulator, unsigned int threshold,
                                            const std::vector<int>& starts, const std::vector<int>& ends,
                                            std::vector<HoughLineEnds>& lines, std::vector<unsigned int>& votes,
                                            std::vector<int>& distance_indices,
                                            std::vector<int>& angle_indices) const {
    const std::size_t before = votes.size();
    const std::size_t ranges = std::min(starts.size(), ends.size());
    for (int d = 0; d < distance_cells; ++d) {
        const unsigned int* row = &accumulator[static_cast<std::size_t>(d) * angle_cells];
        for (std::size_t k = 0; k < ranges; ++k)
            for (int t = starts[k]; t <= ends[k]; ++t) {
                if (row[t] < threshold) continue;
                votes.push_back(row[t]);
                estimate_double_end_line(d, t, lines);
                distance_indices.push_back(d);
                angle_indices.push_back(t);
            }
    }
    return votes.size() > before;
}

bool HoughTransform::select_best_parallel_line(const HoughLineEnds& first_line,
                                               const std::vector<HoughLineEnds>& lines,
                                               const std::vector<unsigned int>& votes, int& best_index,
                                               bool horizontal) const {
    const float maximum_angle = static_cast<float>(horizontal ? horizontal_angle_range : vertical_angle_range);
    const float minimum_distance =
        minimum_parallel_distance_ratio * static_cast<float>(horizontal ? image_height : image_width);
    std::vector<double> kept_distances, kept_votes;
    std::vector<int> kept_indices;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        double distance = 0.0;
        bool positive_side = false;
        if (!is_parallel_line_qualified(first_line, lines[i], distance, positive_side, maximum_angle,
                                        minimum_distance))
            continue;
        kept_distances.push_back(distance);
        kept_votes.push_back(static_cast<double>(votes[i]));
        kept_indices.push_back(static_cast<int>(i));
    }
    if (kept_indices.empty()) return false;
    best_index = obtain_best_parallel_line_index(kept_votes, kept_distances, kept_indices);
    return true;
}

bool HoughTransform::is_parallel_line_qualified(const HoughLineEnds& first_line, const HoughLineEnds& candidate,
                                                double& distance, bool& positive_side, float maximum_angle,
                                                float minimum_distance) {
    const GeolineBase first = line_through(first_line), other = line_through(candidate);
    double disparity = 0.0;
    if (std::fabs(first.b) > constants::kDoubleEpsilon || std::fabs(other.b) > constants::kDoubleEpsilon) {
        disparity = std::fabs(first.line_angle() - other.line_angle());
        if (disparity > 90.0) disparity = 180.0 - disparity;
    }
    if (disparity > maximum_angle) return false;
    const Geocoordinate<float> middle{(candidate.first.first + candidate.second.first) * 0.5f,
                                      (candidate.first.second + candidate.second.second) * 0.5f};
    const double value = first.point_value(middle);
    distance = std::fabs(value) / std::sqrt(first.a * first.a + first.b * first.b);
    positive_side = value > 0.0;
    return distance >= minimum_distance;
}

int HoughTransform::obtain_best_parallel_line_index(std::vector<double>& votes, std::vector<double>& distances,
                                                    const std::vector<int>& indices) const {
    if (indices.size() == 1) return indices[0];
    normalise(votes);
    normalise(distances);
    const float vote_weight = 1.0f - distance_weight;
    double best_score = 0.0;
    std::size_t best = 0;
    for (std::size_t i = 0; i < indices.size(); ++i) {
        const double score = distances[i] * distance_weight + votes[i] * vote_weight;
        if (score > best_score) {
            best_score = score;
            best = i;
        }
    }
    return indices[best];
}

GeolineBase HoughTransform::obtain_largest_segment_around_selected_hough_line(
    const std::vector<int>& xs, const std::vector<int>& ys, const std::vector<unsigned int>& /*accumulator*/,
    const HoughLineEnds& line, int distance_index, int angle_index, bool horizontal, Geobox<int>& box,
    bool& dominant) const {
    dominant = true;
    // The band: between the ends across the line, widened, then near the cell.
    const int across_first = horizontal ? line.first.second : line.first.first;
    const int across_second = horizontal ? line.second.second : line.second.first;
    const int lo = std::min(across_first, across_second) - segment_band_half_width;
    const int hi = std::max(across_first, across_second) + segment_band_half_width;
    const double c = cosine_table[static_cast<std::size_t>(angle_index)];
    const double s = sine_table[static_cast<std::size_t>(angle_index)];
    std::vector<int> band_xs, band_ys;
    const std::size_t n = std::min(xs.size(), ys.size());
    for (std::size_t i = 0; i < n; ++i) {
        const int across = horizontal ? ys[i] : xs[i];
        if (across < lo || across > hi) continue;
        const double offset = maximum_distance + c * (xs[i] - image_width * 0.5) + s * (ys[i] - image_height * 0.5) -
                              distance_index;
        if (std::fabs(offset) > segment_band_half_width) continue;
        band_xs.push_back(xs[i]);
        band_ys.push_back(ys[i]);
    }

    if (band_xs.empty()) {  // no group: the box stays as it came
        dominant = false;
        return GeolineBase();
    }
    std::vector<int> blob_xs, blob_ys;
    const unsigned count = largest_point_group(band_xs, band_ys, box, blob_xs, blob_ys);
    if (static_cast<double>(count) / static_cast<double>(band_xs.size()) < kDominantShare) dominant = false;

    std::vector<Geocoordinate<float>> points(blob_xs.size());
    for (std::size_t i = 0; i < blob_xs.size(); ++i)
        points[i] = {static_cast<float>(blob_xs[i]), static_cast<float>(blob_ys[i])};
    GeolineAdaptiveLeastSquare fit;
    fit.use_pt_line_dis_iterative(points, true, 0.01);
    if (horizontal) return fit;

    // A steep line is badly served by a fit of y on x: fit x on y as well and
    // keep the closer of the two.
    std::vector<Geocoordinate<float>> swapped(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) swapped[i] = {points[i].y, points[i].x};
    GeolineAdaptiveLeastSquare swapped_fit;
    swapped_fit.use_pt_line_dis_iterative(swapped, true, 0.01);
    if (truncated_distance_sum(swapped_fit, swapped) > truncated_distance_sum(fit, points)) return fit;
    // a' y + b' x + c' = 0 brought back as a = -b'/a', b = -1, c = -c'/a'. A
    // swapped fit level in its own plane (a' zero) is an exactly vertical
    // line, which that form cannot hold: it takes the vertical normal form.
    if (std::fabs(swapped_fit.a) <= constants::kDoubleEpsilon)
        return GeolineBase(1.0, 0.0, swapped_fit.c / swapped_fit.b);
    return GeolineBase(-swapped_fit.b / swapped_fit.a, -1.0, -swapped_fit.c / swapped_fit.a);
}

bool HoughTransform::evalute_selected_hough_line(const std::vector<int>& xs, const std::vector<int>& ys,
                                                 const std::vector<unsigned int>& accumulator,
                                                 const HoughLineEnds& line, int distance_index, int angle_index,
                                                 bool horizontal, BoundingLine& result,
                                                 const BoundingLine* reference) const {
    Geobox<int> box{-1000, -1000, 100000, 100000};
    bool dominant = true;
    const GeolineBase fitted = obtain_largest_segment_around_selected_hough_line(
        xs, ys, accumulator, line, distance_index, angle_index, horizontal, box, dominant);
    // No point near the line leaves the box as it began, with no line fitted;
    // its diagonal would overflow the int squares: such a candidate fails.
    if (box.right < box.left) return false;

    const float reference_length =
        reference != nullptr ? static_cast<float>(reference->segment_length)
                             : static_cast<float>(horizontal ? image_width : image_height);
    const int minimum_length = static_cast<int>(minimum_segment_ratio * reference_length);
    const int width = box.width(), height = box.height();
    const int length = static_cast<int>(std::sqrt(static_cast<float>(width * width + height * height)));
    result.line = fitted;
    result.segment_length = length;
    if (minimum_length > length) return false;

    result.has_dominant_segment = dominant;
    const bool rising = std::fabs(fitted.b) > constants::kDoubleEpsilon && fitted.line_angle() > 90.0;
    const float left = static_cast<float>(box.left), right = static_cast<float>(box.right);
    const float top = static_cast<float>(box.top), bottom = static_cast<float>(box.bottom);
    if (!rising) {
        result.x1 = left, result.y1 = top, result.x2 = right, result.y2 = bottom;
    } else if (horizontal) {
        result.x1 = left, result.y1 = bottom, result.x2 = right, result.y2 = top;
    } else {
        result.x1 = right, result.y1 = top, result.x2 = left, result.y2 = bottom;
    }
    return true;
}

bool HoughTransform::get_bounding_lines(const std::vector<int>& xs, const std::vector<int>& ys,
                                        std::vector<BoundingLine>& boundaries,
                                        std::vector<BoundingLine>& partial_boundaries,
                                        bool& first_line_is_horizontal) {
    if (std::min(xs.size(), ys.size()) < static_cast<std::size_t>(kMinimumPoints)) return false;
    BoundingLineJudger judger(image_width, image_height);
    std::vector<unsigned int> accumulator;
    set_up_accumulator_map(accumulator, xs, ys);

    // The strongest line.
    int d1 = 0, t1 = 0;
    unsigned int c1 = 0;
    peak(accumulator, d1, t1, c1);
    HoughLineEnds ends1;
    const bool h = estimate_double_end_line(d1, t1, ends1);
    first_line_is_horizontal = h;
    BoundingLine l1, l2, l3, l4;
    if (!evalute_selected_hough_line(xs, ys, accumulator, ends1, d1, t1, h, l1, nullptr)) return false;
    if (!judger.formulateBoundingLine(boundaries, l1, h)) return false;

    // Its partner at the opposite side.
    HoughLineEnds ends2;
    int d2 = 0, t2 = 0;
    if (!select_hough_line_same_direction(accumulator, ends1, t1, c1, h, ends2, d2, t2)) return false;
    if (!evalute_selected_hough_line(xs, ys, accumulator, ends2, d2, t2, h, l2, &l1)) return false;
    if (!judger.formulateBoundingLine(boundaries, l2, h)) return false;

    // The strongest roughly perpendicular line; its window is the vertical
    // one whichever way the first line runs.
    std::vector<int> starts, ends;
    obtain_angle_search_range(t1 < 90 ? t1 + 90 : t1 - 90, vertical_angle_range, starts, ends);
    int d3 = 0, t3 = 0;
    unsigned int c3 = 0;
    peak(accumulator, starts, ends, d3, t3, c3);
    HoughLineEnds ends3;
    estimate_double_end_line(d3, t3, ends3);
    if (!evalute_selected_hough_line(xs, ys, accumulator, ends3, d3, t3, !h, l3, nullptr)) return false;
    if (!judger.formulateBoundingLine(boundaries, l3, !h)) return false;

    // Its partner.
    HoughLineEnds ends4;
    int d4 = 0, t4 = 0;
    bool fourth = false;
    if (select_hough_line_same_direction(accumulator, ends3, t3, c3, !h, ends4, d4, t4) &&
        evalute_selected_hough_line(xs, ys, accumulator, ends4, d4, t4, !h, l4, &l3)) {
        if (!judger.formulateBoundingLine(boundaries, l4, !h)) return false;
        fourth = true;
    }
    if (fourth) {
        const float sum = static_cast<float>(l1.segment_length + l2.segment_length + l3.segment_length +
                                             l4.segment_length);
        if (sum >= 2 * (image_width + image_height) * minimum_boundary_length_ratio) return true;
    }

    // Three sides, or four too short together: what was found, for a caller
    // that completes it.
    BoundingLine* found[4] = {&l1, &l2, &l3, &l4};
    for (int k = 0; k < 4; ++k)
        if (found[k]->is_filled()) judger.formulateBoundingLine(partial_boundaries, *found[k], k < 2 ? h : !h);
    return false;
}

}  // namespace geometric

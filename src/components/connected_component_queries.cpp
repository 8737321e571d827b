// What callers ask of a formed calculator: labels, sizes, top points,
// contours, drawing of chosen components, the largest one, scale maps.
#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "components/connected_component_calculator.h"
#include "components/run_labels.h"
#include "components/text_blob.h"

namespace geometric {

namespace {

// Scale factor of each level, as create_scale_img reads it.
constexpr int kScaleFactors[6] = {1, 2, 4, 8, 16, 32};
// create_scale_img_only has 0 in place of 32: it does not serve level 5.
constexpr int kScaleFactorsOnly[6] = {1, 2, 4, 8, 16, 0};

}  // namespace

std::shared_ptr<RunsInImage> ConnectedComponentCalculator::obtain_runs_in_image(const common::BasicImage& image) {
    formulate_if_empty(image);
    return runs_in_image;
}

void ConnectedComponentCalculator::calculate_label_image(const common::BasicImage& image, std::vector<int>& labels,
                                                         int border) {
    const int width = image.get_width();
    const int height = image.get_height();
    formulate_if_empty(image);
    const std::size_t framed_width = static_cast<std::size_t>(width + 2 * border);
    labels.resize(framed_width * static_cast<std::size_t>(height + 2 * border), 0);
    write_labels(labels.data(), framed_width, border);
}

void ConnectedComponentCalculator::calculate_label_image(const common::BasicImage& image, int* labels, int border) {
    const int width = image.get_width();
    const int height = image.get_height();
    if (isemptyblob() && store_runs && height > 0 && width >= 0 && border >= 0) {
        // The labels need the components' numbers alone: no strokes, no run
        // arrays, no boxes, and each entry stored once.
        neighbor_reach = eight_neighborhood ? 1 : 0;
        runs_in_image = std::make_shared<RunsInImage>(image);
        if (RunLabels::runs_within(*runs_in_image, width)) {
            const RunLabels run_labels(*runs_in_image, neighbor_reach);
            run_labels.write(labels, width, border);
            strokes_pending = run_labels.count() > 0;
            return;
        }
        // Runs made by set padding bits: the strokes of the formation these
        // runs begin, and the labels the plain way.
        form_strokes(*runs_in_image);
    }
    formulate_if_empty(image);
    const std::size_t framed_width = static_cast<std::size_t>(width + 2 * border);
    std::fill(labels, labels + framed_width * static_cast<std::size_t>(height + 2 * border), 0);
    write_labels(labels, framed_width, border);
}

// One contiguous store of one value for each run.
void ConnectedComponentCalculator::write_labels(int* labels, std::size_t framed_width, int border) {
    int label = 0;
    for (iterator it = begin(); it != end(); ++it) {
        ++label;
        for (const BinaryConnectedComponent* s = &*it; s != nullptr; s = s->next) {
            for (const BinaryConnectedComponent::RunOnLine& r : s->runs) {
                int* line = labels + static_cast<std::size_t>(r.second + border) * framed_width + border;
                std::fill(line + r.first->start, line + r.first->end + 1, label);
            }
        }
    }
}

void ConnectedComponentCalculator::calculate_feature_blobs(const common::BasicImage& image,
                                                           std::list<TextBlob>& blobs) {
    formulate_if_empty(image);
    for (iterator it = begin(); it != end(); ++it) blobs.emplace_back(it->get_bounding_box(), it->count_pixel(), &*it);
}

void ConnectedComponentCalculator::calculate_blob_heights(const common::BasicImage& image,
                                                          std::vector<int>& heights) {
    formulate_if_empty(image);
    for (iterator it = begin(); it != end(); ++it) heights.push_back(it->get_bounding_box().height());
}

void ConnectedComponentCalculator::calculate_blob_widths(const common::BasicImage& image, std::vector<int>& widths) {
    formulate_if_empty(image);
    for (iterator it = begin(); it != end(); ++it) widths.push_back(it->get_bounding_box().width());
}

void ConnectedComponentCalculator::calculate_blob_dimensions(const common::BasicImage& image,
                                                             std::vector<int>& heights, std::vector<int>& widths) {
    formulate_if_empty(image);
    for (iterator it = begin(); it != end(); ++it) {
        const Geobox<int> box = it->get_bounding_box();
        heights.push_back(box.height());
        widths.push_back(box.width());
    }
}

void ConnectedComponentCalculator::obtain_blob_top_points(const common::BasicImage& image,
                                                          std::vector<Geocoordinate<int>>& points) {
    formulate_if_empty(image);
    for (iterator it = begin(); it != end(); ++it) {
        Geocoordinate<int> point;
        it->get_top_point(point);
        points.push_back(point);
    }
}

void ConnectedComponentCalculator::obtain_blob_contours_one_by_one(const common::BasicImage& image,
                                                                   std::vector<Geocoordinate<int>>& points) {
    formulate_if_empty(image);
    points.reserve(points.size() + 100 * size());
    std::vector<int> xs;
    std::vector<int> ys;
    std::vector<signed char> grid;
    std::vector<int> cells;
    for (iterator it = begin(); it != end(); ++it) {
        xs.clear();
        ys.clear();
        it->get_boundary(xs, ys, true, grid, cells);
        for (std::size_t i = 0; i < xs.size(); ++i) points.emplace_back(xs[i], ys[i]);
    }
}

void ConnectedComponentCalculator::create_images_formulated_with_selected_blobs(std::vector<int> indices,
                                                                                common::BasicImage& output) {
    if (indices.empty()) return;
    std::sort(indices.begin(), indices.end());
    std::size_t cursor = 0;
    int counter = 0;
    // A repeated index keeps the cursor on it once the counter has passed it,
    // so nothing after it is drawn; callers rely on that.
    for (iterator it = begin(); it != end() && cursor < indices.size(); ++it, ++counter) {
        if (counter == indices[cursor]) {
            it->draw_blob_image(output);
            ++cursor;
        }
    }
}

int ConnectedComponentCalculator::calculate_largest_blob_bounding_box(Geobox<int>& box) {
    iterator it = begin();
    if (it == end()) return 0;
    Geobox<int> best = it->get_bounding_box();
    int best_area = best.area();
    for (++it; it != end(); ++it) {
        const Geobox<int> candidate = it->get_bounding_box();
        if (candidate.area() > best_area) {
            best = candidate;
            best_area = candidate.area();
        }
    }
    box = best;
    return best_area;
}

unsigned ConnectedComponentCalculator::calculate_largest_blob_bounding_box(const std::vector<int>& xs,
                                                                           const std::vector<int>& ys,
                                                                           Geobox<int>& box, std::vector<int>& out_xs,
                                                                           std::vector<int>& out_ys) {
    const auto x_range = std::minmax_element(xs.begin(), xs.end());
    const auto y_range = std::minmax_element(ys.begin(), ys.end());
    const int min_x = xs.empty() ? 0 : *x_range.first;
    const int min_y = ys.empty() ? 0 : *y_range.first;
    const int width = xs.empty() ? 1 : *x_range.second - min_x + 1;
    const int height = ys.empty() ? 1 : *y_range.second - min_y + 1;

    std::vector<unsigned char> canvas(static_cast<std::size_t>(width) * height, 0);
    const std::size_t points = std::min(xs.size(), ys.size());
    for (std::size_t i = 0; i < points; ++i)
        canvas[static_cast<std::size_t>(ys[i] - min_y) * width + (xs[i] - min_x)] = 255;
    const common::BasicImage image(canvas.data(), height, width, common::GRAY, 300, 300);
    formulate_connected_components(image);

    BinaryConnectedComponent* best = nullptr;
    unsigned best_pixels = 0;
    for (iterator it = begin(); it != end(); ++it) {
        const unsigned pixels = it->count_pixel();
        if (best == nullptr || pixels > best_pixels) {
            best = &*it;
            best_pixels = pixels;
        }
    }
    if (best == nullptr) return 0;
    box = best->get_bounding_box();
    box.right += min_x;
    box.left += min_x;
    box.bottom += min_y;
    box.top += min_y;
    const std::size_t first = out_xs.size();
    best->get_element_coordinates(out_xs, out_ys);
    for (std::size_t i = first; i < out_xs.size(); ++i) {
        out_xs[i] += min_x;
        out_ys[i] += min_y;
    }
    return best_pixels;
}

int ConnectedComponentCalculator::create_scale_image(const int (&factors)[6], bool erase_out_of_range, int level,
                                                     common::BasicImage& scale_image,
                                                     common::BasicImage& binary_image, int base_level,
                                                     int minimum_size, bool use_height, double maximum_pixels,
                                                     double minimum_pixels) {
    if (level < 0 || level > 5 || base_level < 0 || base_level > level) throw "scale level out of range";
    if (factors[level - base_level] == 0) throw "scale level difference not served by create_scale_img_only";
    const int minimum_dimension = minimum_size / factors[level - base_level];
    const int factor = factors[base_level] != 0 ? factors[level] / factors[base_level] : 0;
    formulate_connected_components(binary_image);
    int over_maximum = 0;
    for (iterator it = begin(); it != end(); ++it) {
        const double pixels = it->count_pixel();
        if (minimum_pixels > pixels) {
            if (erase_out_of_range) it->undraw_blob_image(binary_image);
            continue;
        }
        if (pixels > maximum_pixels) {
            if (erase_out_of_range) it->undraw_blob_image(binary_image);
            over_maximum = 1;
            continue;
        }
        if (level != base_level) {
            const Geobox<int> box = it->get_bounding_box();
            if ((use_height ? box.height() : box.width()) < minimum_dimension) {
                it->undraw_blob_image(binary_image);
                continue;
            }
        }
        it->draw_blob_image(scale_image, level + 1, factor);
    }
    return over_maximum;
}

int ConnectedComponentCalculator::create_scale_img(int level, common::BasicImage& scale_image,
                                                   common::BasicImage& binary_image, int base_level, int minimum_size,
                                                   bool use_height, double maximum_pixels, double minimum_pixels) {
    return create_scale_image(kScaleFactors, true, level, scale_image, binary_image, base_level, minimum_size,
                              use_height, maximum_pixels, minimum_pixels);
}

int ConnectedComponentCalculator::create_scale_img_only(int level, common::BasicImage& scale_image,
                                                        common::BasicImage& binary_image, int base_level,
                                                        int minimum_size, bool use_height, double maximum_pixels,
                                                        double minimum_pixels) {
    return create_scale_image(kScaleFactorsOnly, false, level, scale_image, binary_image, base_level, minimum_size,
                              use_height, maximum_pixels, minimum_pixels);
}

}  // namespace geometric

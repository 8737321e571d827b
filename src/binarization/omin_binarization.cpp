// Multi-scale binarization: thresholds at one window on a pyramid, components
// sent to the coarser scale when too big for the window, a map of the scale
// that decided each place, and the full-size page thresholded by that map.
#include "binarization/omin_binarization.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "binarization/image.h"
#include "binarization/mean_and_deviation_maps.h"
#include "common/constants.h"
#include "common/int_truncation.h"
#include "components/connected_component_calculator.h"
#include "pixel/image_integer_down_sampling.h"

namespace geometric {

namespace {

constexpr unsigned char kUndecided = 0;
constexpr unsigned char kNoText = 255;
// The threshold of a window taken as paper: no gray byte but 0 is below it.
constexpr unsigned char kPaperThreshold = 1;
// Keeps the ratio of mean to deviation finite on a flat window.
constexpr double kDeviationFloor = 1e-10;
// The largest pixel count of the coarsest scale: nothing is too big for it.
constexpr double kUnboundedPixels = 1e16;

const int* const kFactors = constants::kScaleFactors;

void set_bit(unsigned char* line, int x) { line[x >> 3] |= static_cast<unsigned char>(0x80u >> (x & 7)); }

}  // namespace

OminBinarization::OminBinarization() : Binarization(), estimate_character(false), pyramid(new ImagePyramid) {}

OminBinarization::OminBinarization(const common::Image* input, common::BasicImage* output)
    : Binarization(input, output), estimate_character(false), pyramid(new ImagePyramid) {}

void OminBinarization::set_character_estimate(const CharacterEstimate& value) {
    estimate = value;
    estimate_character = static_cast<bool>(value);
}

bool OminBinarization::run_binarization_imp(common::Image* gray) {
    para = para_as_set;
    character = EstimatedCharacter();
    constraints.clear();
    threshold_maps.clear();
    adjust_parameters_from_inputs(*gray);
    create_image_pyramid(*gray);
    estimate_window_size(*gray);
    adjust_parameters_from_estimated_character();
    multi_scale_binarization(*gray);
    return true;
}

void OminBinarization::adjust_parameters_from_inputs(const common::Image& gray) {
    if (std::max(gray.get_height(), gray.get_width()) <= para.small_image_limit) para.minimum_scale = 0;
}

void OminBinarization::create_image_pyramid(const common::Image& gray) {
    pyramid = std::make_shared<ImagePyramid>();
    const int longer = std::max(gray.get_height(), gray.get_width());
    const int size_limit = para.pyramid_size_limit;
    if (longer <= size_limit) return;
    int levels = 6;
    for (int k = 1; k <= 6; ++k) {
        if (static_cast<long long>(size_limit) * kFactors[k] >= longer) {
            levels = k;
            break;
        }
    }
    if (para.pyramid_minimum_size > longer / kFactors[levels]) --levels;
    const common::Image* previous = &gray;
    for (int level = 1; level <= levels; ++level) {
        std::shared_ptr<common::BasicImage> image = std::make_shared<common::BasicImage>();
        ImageIntegerDownSampling::DownSampling2(*previous, *image);
        pyramid->images.push_back(image);
        previous = image.get();
    }
    pyramid->levels = levels;
}

void OminBinarization::estimate_window_size(const common::Image& gray) {
    if (estimate_character && estimate) estimate(gray, *pyramid, character);
}

void OminBinarization::adjust_parameters_from_estimated_character() {
    if (character.character_class == 0) {
        para.maximum_scale += 2;
    } else if (character.character_class == 1) {
        para.maximum_scale += 2;
        if (character.window_size <= 24) character.window_size = 25;
    }
}

void OminBinarization::multi_scale_binarization(const common::Image& gray) {
    // The blob calculator marks scales 0 to 5.
    if (para.minimum_scale < 0 || para.maximum_scale > 5) throw "scale level out of range";
    const int start = para.minimum_scale;
    const int f = kFactors[start];
    scale_map.reset(gray.get_height() / f, gray.get_width() / f, common::GRAY, 300, 300);

    // The window stays the same at every scale, so that its reach doubles
    // with each level. An estimate of less than a pixel gets the smallest.
    int window = std::max(character.window_size / f, 1);
    if (window % 2 == 0) ++window;

    // Each coarser scale takes components up to four times as many pixels;
    // its floor is a falling share of the finer scale's ceiling (r counts in
    // single precision, as the limits were tuned with it).
    constraints.push_back({2.0, static_cast<double>(window) * window});
    float r = 0.1f;
    for (int s = start + 1; s <= para.maximum_scale; ++s) {
        const double previous = constraints.back().maximum_pixels;
        constraints.push_back({0.25 * (0.9 - r) * previous, 4.0 * previous});
        r = static_cast<float>(r + 0.1);
    }
    constraints.back().maximum_pixels = kUnboundedPixels;

    common::BasicImage current;
    const common::Image* previous = nullptr;
    for (int s = start; s <= para.maximum_scale; ++s) {
        const common::Image& image = chose_current_scale_img(s, gray, previous, current);
        previous = &image;
        std::shared_ptr<common::BasicImage> threshold = std::make_shared<common::BasicImage>();
        common::BasicImage bitonal;
        perform_sauvola_binarization(image, window, *threshold, bitonal);
        threshold_maps.push_back(threshold);
        if (s == start) initialize_scale_denotion_maps(*threshold);
        if (!analyze_binary_image(s, bitonal, static_cast<int>(1.5 * window))) break;
    }

    propagate_image(scale_map);
    // At scale 0 the frame stays 255 and so paper in the result.
    if (start != 0) post_process_scale_boundary(scale_map);
    post_process_scale_empty_pixels();
    create_binary_image_from_scale(gray);
}

const common::Image& OminBinarization::chose_current_scale_img(int scale, const common::Image& gray,
                                                               const common::Image* previous,
                                                               common::BasicImage& current) {
    if (scale == 0) return gray;
    if (scale <= pyramid->levels) return *pyramid->images[static_cast<std::size_t>(scale - 1)];
    // Beyond the pyramid, or with none: the image in hand halved, from the
    // gray image (or the deepest level) at the start scale. Halving is
    // exact in steps, so any route to a scale gives the same bytes.
    const common::Image* source = previous;
    int source_scale = scale - 1;
    if (source == nullptr) {
        source_scale = std::min(pyramid->levels, scale);
        source = source_scale == 0 ? &gray : pyramid->images[static_cast<std::size_t>(source_scale - 1)].get();
    }
    if (source == &current) {
        ImageIntegerDownSampling::DownSampling2(current);
    } else {
        ImageIntegerDownSampling::DownSampling2(*source, current);
    }
    for (++source_scale; source_scale < scale; ++source_scale) ImageIntegerDownSampling::DownSampling2(current);
    return current;
}

// For gray g, mean m and deviation d over the window, and q = m / (d + 1e-10):
//   threshold = 1                                   when g > upper_gray_limit or q >= ratio_limit
//   threshold = low byte of (int)(m (1 - k) + 0.0078 k m d)   otherwise
// and the bit is set where threshold > g. A deviation that came out as
// not-a-number fails the flat test and truncates to the smallest int, whose
// low byte is 0: no bit.
void OminBinarization::perform_sauvola_binarization(const common::Image& image, int window,
                                                    common::BasicImage& threshold,
                                                    common::BasicImage& bitonal) const {
    const int width = image.get_width();
    const int height = image.get_height();
    threshold.reset(height, width, common::GRAY, 300, 300);
    bitonal.reset(height, width, common::BINARY, 300, 300);
    Image<double> mean(width, height);
    Image<double> deviation(width, height);
    mean.set_window(window, window);
    deviation.set_window(window, window);
    calculate_mean_and_deviation_maps(image, mean, deviation);

    const float k = para.k;
    for (int y = 0; y < height; ++y) {
        const unsigned char* gray = image.get_line_pointer(y);
        const double* m = mean.get_line(y);
        const double* d = deviation.get_line(y);
        unsigned char* t = threshold.get_line_pointer(y);
        unsigned char* bits = bitonal.get_line_pointer(y);
        for (int x = 0; x < width; ++x) {
            const unsigned char g = gray[x];
            const double ratio = m[x] / (d[x] + kDeviationFloor);
            unsigned char value = kPaperThreshold;
            if (!(g > para.upper_gray_limit || ratio >= para.ratio_limit)) {
                const double local = m[x] * (1 - k) + 0.0078 * k * m[x] * d[x];
                value = static_cast<unsigned char>(common::truncate_to_int32(local) & 0xFF);
            }
            t[x] = value;
            if (value > g) set_bit(bits, x);
        }
    }
}

void OminBinarization::initialize_scale_denotion_maps(const common::BasicImage& threshold) {
    const int height = std::min(scale_map.get_height(), threshold.get_height());
    const int width = std::min(scale_map.get_width(), threshold.get_width());
    for (int y = 0; y < height; ++y) {
        const unsigned char* t = threshold.get_line_pointer(y);
        unsigned char* mark = scale_map.get_line_pointer(y);
        for (int x = 0; x < width; ++x)
            if (t[x] == kPaperThreshold) mark[x] = kNoText;
    }
}

bool OminBinarization::analyze_binary_image(int scale, common::BasicImage& bitonal, int minimum_size) {
    const OminPara::ScaleConstraints& limits = constraints[static_cast<std::size_t>(scale - para.minimum_scale)];
    ConnectedComponentCalculator calculator;
    return calculator.create_scale_img_only(scale, scale_map, bitonal, para.minimum_scale, minimum_size,
                                            character.character_class != 3, limits.maximum_pixels,
                                            limits.minimum_pixels) != 0;
}

void OminBinarization::propagate_image(common::BasicImage& scale_map) {
    const int height = scale_map.get_height();
    const int width = scale_map.get_width();
    if (height <= 0 || width <= 0) return;
    const int stride = scale_map.get_row_size();
    unsigned char* map = scale_map.get_data();
    std::fill(map, map + width, kNoText);
    std::fill(map + static_cast<std::ptrdiff_t>(height - 1) * stride,
              map + static_cast<std::ptrdiff_t>(height - 1) * stride + width, kNoText);
    for (int y = 0; y < height; ++y) {
        map[static_cast<std::ptrdiff_t>(y) * stride] = kNoText;
        map[static_cast<std::ptrdiff_t>(y) * stride + width - 1] = kNoText;
    }

    // Left, up-left, up, up-right, right, down-right, down, down-left. With
    // the frame at 255 every place in the queue is inner, so all eight
    // neighbours lie in the map.
    const std::ptrdiff_t s = stride;
    const std::ptrdiff_t neighbours[8] = {-1, -s - 1, -s, -s + 1, 1, s + 1, s, s - 1};
    std::vector<std::ptrdiff_t> queue;
    for (int y = 1; y < height - 1; ++y)
        for (int x = 1; x < width - 1; ++x) {
            const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(y) * s + x;
            if (map[at] == kUndecided || map[at] == kNoText) continue;
            for (const std::ptrdiff_t n : neighbours)
                if (map[at + n] == kUndecided) {
                    queue.push_back(at);
                    break;
                }
        }
    for (std::size_t head = 0; head < queue.size(); ++head) {
        const std::ptrdiff_t at = queue[head];
        for (const std::ptrdiff_t n : neighbours)
            if (map[at + n] == kUndecided) {
                map[at + n] = map[at];
                queue.push_back(at + n);
            }
    }
}

void OminBinarization::post_process_scale_boundary(common::BasicImage& scale_map) {
    const int height = scale_map.get_height();
    const int width = scale_map.get_width();
    if (height < 2 || width < 2) return;
    std::copy(scale_map.get_line_pointer(1), scale_map.get_line_pointer(1) + width, scale_map.get_line_pointer(0));
    std::copy(scale_map.get_line_pointer(height - 2), scale_map.get_line_pointer(height - 2) + width,
              scale_map.get_line_pointer(height - 1));
    for (int y = 0; y < height; ++y) {
        unsigned char* line = scale_map.get_line_pointer(y);
        line[0] = line[1];
        line[width - 1] = line[width - 2];
    }
}

void OminBinarization::post_process_scale_empty_pixels() {
    const unsigned char start_mark = static_cast<unsigned char>(para.minimum_scale + 1);
    unsigned char* map = scale_map.get_data();
    std::replace(map, map + scale_map.get_data_size(), kUndecided, start_mark);
}

// Pixel (x, y) of the page, frame excepted, is ink when its gray value is
// below the threshold of its mark's scale s at (x / 2^s, y / 2^s), clamped
// into that scale's map. The mark is read at (x / f, y / f), f being the
// factor of the start scale. Coordinates are never negative, so the
// divisions are shifts.
void OminBinarization::create_binary_image_from_scale(const common::Image& gray) {
    // Of each mark, on the line in hand: the threshold line of its scale
    // (null for 255 and for marks of no scale run), the scale, the last column.
    struct MarkLine {
        const unsigned char* thresholds = nullptr;
        int scale = 0;
        int last_x = -1;
    };
    MarkLine by_mark[256];
    const int height = gray.get_height();
    const int width = gray.get_width();
    const int start = para.minimum_scale;
    for (int y = 1; y < height - 1; ++y) {
        for (std::size_t entry = 0; entry < threshold_maps.size(); ++entry) {
            const common::BasicImage& threshold = *threshold_maps[entry];
            MarkLine& line = by_mark[start + entry + 1];
            line.scale = start + static_cast<int>(entry);
            line.last_x = threshold.get_width() - 1;
            const int ty = std::min(y >> line.scale, threshold.get_height() - 1);
            line.thresholds = ty >= 0 && line.last_x >= 0 ? threshold.get_line_pointer(ty) : nullptr;
        }
        const unsigned char* g = gray.get_line_pointer(y);
        const unsigned char* marks = scale_map.get_line_pointer(y >> start);
        unsigned char* bits = output->get_line_pointer(y);
        for (int x = 1; x < width - 1; ++x) {
            const MarkLine& line = by_mark[marks[x >> start]];
            if (line.thresholds == nullptr) continue;
            if (g[x] < line.thresholds[std::min(x >> line.scale, line.last_x)]) set_bit(bits, x);
        }
    }
}

}  // namespace geometric

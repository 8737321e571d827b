// Body text size from blob histograms: the peak rules, the scender test and
// the decision between heights and widths.
#include "pageanalysis/resolution_estimator.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>

#include "common/constants.h"
#include "components/connected_component_calculator.h"
#include "pageanalysis/hqc_pageanalysis.h"
#include "pageanalysis/page_analysis_component_factory.h"
#include "pixel/geo_morphological.h"

namespace geometric {

namespace {

int made_odd(int window) { return window % 2 == 0 ? window + 1 : window; }

int sum_of(std::vector<int>::const_iterator first, std::vector<int>::const_iterator last) {
    return std::accumulate(first, last, 0);
}

// Share of the blobs in the body peak that decides a histogram, by scale
// level: coarser levels have fewer and rougher blobs.
float share_limit(int level) {
    static const float limits[4] = {0.15f, 0.16f, 0.17f, 0.18f};
    return level >= 0 && level < 4 ? limits[level] : 0.2f;
}

float peak_share(const ResolutionEstimator::CharacterInfo& info) {
    return static_cast<float>(info.first_peak_count + info.second_peak_count) / static_cast<float>(info.total_count);
}

}  // namespace

ResolutionEstimator::ResolutionEstimator(int minimum_character_size_, int maximum_character_size_,
                                         float minimum_peak_share_, int scale_levels_)
    : minimum_character_size(minimum_character_size_),
      maximum_character_size(maximum_character_size_),
      minimum_peak_share(minimum_peak_share_),
      scale_levels(scale_levels_) {}

void ResolutionEstimator::estimate_character_size(const common::Image& image,
                                                  const std::vector<std::shared_ptr<common::BasicImage>>& pyramid,
                                                  EstimatedCharacter& estimate) const {
    // The coarsest level first: body text big enough to be seen there
    // settles the matter at the least cost.
    const int n = static_cast<int>(pyramid.size());
    if (n == 0) {
        estimate_character_size(image, 0, estimate);
    } else {
        estimate_character_size(*pyramid[n - 1], n, estimate);
        if (estimate.character_class == 0) estimate_character_size(n > 1 ? *pyramid[n - 2] : image, n - 1, estimate);
    }
    if (estimate.character_class != 0) return;
    const int longer = std::max(image.get_height(), image.get_width());
    estimate.window_size = longer < 2000 ? 25 : longer < 2500 ? 35 : longer < 3000 ? 45 : longer < 4000 ? 55 : 65;
}

void ResolutionEstimator::estimate_character_size(const common::Image& image, int level,
                                                  EstimatedCharacter& estimate) const {
    geometric_test::iHQCPageAnalysis analysis(std::make_shared<geometric_test::PageAnalysisComponentFactory>(
        std::make_shared<OminBinarization>()));
    analysis.dilation_iterations = 2;
    analysis.area_floor = 3;
    analysis.lower_area_factor = 0.3f;
    analysis.upper_area_factor = 5.0f;
    analysis.erosion_size = 8;
    analysis.minimum_pixels = 5;
    analysis.maximum_height = analysis.maximum_width = 128;
    analysis.neighborhood_size = 5;
    analysis.use_mean_as_foreground = true;
    analysis.minimum_disparity = 30;
    analysis.classify_by_area = false;
    const std::shared_ptr<geometric_test::TextBlobCollector> collector = analysis.perform_page_analysis(image);

    common::BasicImage text(image.get_height(), image.get_width(), common::BINARY);
    for (const TextBlob& blob : collector->regular_blobs)
        if (blob.component != nullptr) blob.component->draw_blob_image(text);
    std::vector<int> heights;
    std::vector<int> widths;
    const int count = retrieve_blob_dimension_histogram(text, heights, widths, false);
    if (count == 0) {
        estimate.character_class = 0;
        return;
    }
    estimate_from_dimensions(heights, widths, count, level, estimate);
}

void ResolutionEstimator::estimate_character_size(Pageanalysis* analysis, int level,
                                                  EstimatedCharacter& estimate) const {
    std::vector<int> heights;
    std::vector<int> widths;
    for (const TextBlob& blob : analysis->filter.regular_blobs) {
        heights.push_back(blob.box.bottom - blob.box.top + 1);
        widths.push_back(blob.box.right - blob.box.left + 1);
    }
    if (heights.empty()) {
        estimate.character_class = 0;
        return;
    }
    estimate_from_dimensions(heights, widths, static_cast<int>(heights.size()), level, estimate);
}

void ResolutionEstimator::estimate_window_for_binarization(const common::Image& gray, const ImagePyramid& pyramid,
                                                           EstimatedCharacter& estimate) {
    EstimatedCharacter found{0, 0};
    ResolutionEstimator(15, 205, 0.05f, pyramid.levels).estimate_character_size(gray, pyramid.images, found);
    estimate = found;
}

int ResolutionEstimator::retrieve_blob_dimension_histogram(const common::Image& binary, std::vector<int>& heights,
                                                           std::vector<int>& widths, bool dilate) {
    common::BasicImage image(binary);
    if (dilate) {
        const common::BasicImage source(image);
        GeoMorphological::dilate_xy(source, image);
    }
    ConnectedComponentCalculator calculator;
    calculator.formulate_connected_components(image);
    const int count = static_cast<int>(calculator.size());
    calculator.calculate_blob_dimensions(image, heights, widths);
    return count;
}

void ResolutionEstimator::estimate_from_dimensions(const std::vector<int>& heights, const std::vector<int>& widths,
                                                   int count, int level, EstimatedCharacter& estimate) const {
    CharacterInfo height_info;
    height_info.total_count = count;
    height_info.scale_level = level;
    CharacterInfo width_info = height_info;
    width_info.from_widths = 1;
    estimate_character_size_via_histogram(heights, height_info, minimum_character_size, maximum_character_size,
                                           false, false);
    estimate_character_size_via_histogram(widths, width_info, minimum_character_size, maximum_character_size,
                                          false, false);
    combine_heights_and_widths(height_info, width_info, estimate);
}

int ResolutionEstimator::estimate_character_size_via_histogram(const std::vector<int>& sizes, CharacterInfo& info,
                                                               int minimum, int maximum, bool is_width,
                                                               bool smooth) const {
    if (is_width) info.from_widths = 1;
    const int f = constants::kScaleFactors[info.scale_level];
    const int s0 = std::max(2, minimum / f);
    const int s1 = maximum / f;

    std::vector<int> small;
    std::vector<int> main;
    create_inferring_histograms(sizes, s0, s1, small, main);
    if (smooth) smooth_inferring_histograms(small, main);
    const int peak = search_bodytext_peak_in_histogram(main, s0, info);
    if (peak < 1) return 0;

    // From here small covers the sizes 0 up to the peak.
    const int blobs = info.total_count;
    info.total_count = sum_of(main.begin(), main.end());
    small.insert(small.end(), main.begin(), main.begin() + (peak - s0 + 1));
    search_scenders_peak_in_histogram(small, info);
    if (info.has_scenders == 0 || (info.scale_level != 0 && info.scale_level == scale_levels)) return peak;
    if (static_cast<float>(info.peak_mass) / static_cast<float>(blobs) >= minimum_peak_share) return peak;

    // A body peak of little mass: the body may be smaller than the minimum
    // that bounded the first search, so look again from half of it.
    CharacterInfo second_look = info;
    const int from = std::min(static_cast<int>(0.5 * minimum / f), peak);
    const std::vector<int> tail(small.begin() + from, small.end());
    second_look.total_count = sum_of(tail.begin(), tail.end());
    const int smaller_peak = search_bodytext_peak_in_histogram(tail, from, second_look);
    if (smaller_peak < 1) return peak;
    const std::vector<int> below(small.begin(), small.begin() + smaller_peak + 1);
    search_scenders_peak_in_histogram(below, second_look);
    if (second_look.has_scenders != 0 &&
        (static_cast<float>(second_look.peak_mass) / static_cast<float>(blobs) >= minimum_peak_share ||
         static_cast<float>(second_look.peak_mass) / static_cast<float>(info.peak_mass) > 5.0f)) {
        info = second_look;
        return smaller_peak;
    }
    return peak;
}

void ResolutionEstimator::create_inferring_histograms(const std::vector<int>& sizes, int s0, int s1,
                                                      std::vector<int>& small, std::vector<int>& main) {
    small.assign(static_cast<std::size_t>(s0), 0);
    main.assign(static_cast<std::size_t>(std::max(0, s1 - s0 + 1)), 0);
    for (const int size : sizes) {
        if (size < 0 || size > s1) continue;
        if (size < s0)
            ++small[static_cast<std::size_t>(size)];
        else
            ++main[static_cast<std::size_t>(size - s0)];
    }
    small[0] = small[1];
}

void ResolutionEstimator::smooth_inferring_histograms(std::vector<int>& small, std::vector<int>& main) {
    for (std::vector<int>* histogram : {&small, &main})
        for (std::size_t i = 1; i + 1 < histogram->size(); ++i)
            (*histogram)[i] = ((*histogram)[i - 1] + (*histogram)[i] + (*histogram)[i + 1]) / 3;
    if (main.size() < 2) return;
    main[0] = (main[0] + small.back() + main[1]) / 3;
    main.back() = (main[main.size() - 2] + 2 * main.back()) / 3;
    small[0] = (small[1] + 2 * small[0]) / 3;
    small.back() = (small.back() + small[small.size() - 2] + main[0]) / 3;
}

int ResolutionEstimator::search_bodytext_peak_in_histogram(const std::vector<int>& histogram, int offset,
                                                           CharacterInfo& info) {
    const double none = 1.7976931348623157e308;
    const int n = static_cast<int>(histogram.size());
    double best_score = none;
    double second_score = none;
    int best = -1;
    int second = -1;
    for (int i = 1; i + 1 < n; ++i) {
        const int h = histogram[i];
        if (h < 1) continue;
        const int dl = h - histogram[i - 1];
        int dr = h - histogram[i + 1];
        if (dl < 0 || dr < 0) continue;
        // The rise into the bin and the fall out of it; on a plateau the
        // fall two bins away counts, or the whole height when there is none.
        int rise = 1 + dl;
        if (dl == 0) rise = i == 1 ? 1 : 1 + (h > histogram[i - 2] ? h - histogram[i - 2] : h);
        if (dr == 0 && i + 2 < n) dr = h - (h > histogram[i + 2] ? histogram[i + 2] : 0);
        const int z = offset + i;
        const double mass = histogram[i - 1] + h + histogram[i + 1] + 1;
        const double score = (std::log(double(z + rise)) + 1.0 + std::log(double(z + 1 + dr))) / mass;
        if (score < best_score) {
            if (best >= 0) {
                second = best;
                second_score = best_score;
            }
            best = i;
            best_score = score;
        } else if (score < second_score) {
            second = i;
            second_score = score;
        }
    }
    if (best < 0) return 0;

    const int f = constants::kScaleFactors[info.scale_level];
    const bool widths = info.from_widths != 0;
    const int best_size = offset + best;
    const int best_count = histogram[best];
    info.peak_mass = info.first_peak_count = best_count;
    if (second >= 0) {
        const int second_size = offset + second;
        const int second_count = histogram[second];
        info.second_peak_count = second_count;
        if (std::abs(best_size - second_size) < 3) {
            // Two neighbouring peaks are one body size split by the cells.
            info.peak_mass = best_count + second_count;
            const float m = 0.5f + static_cast<float>(best_size * best_count + second_size * second_count) /
                                       static_cast<float>(best_count + second_count);
            info.window_size = made_odd(widths ? static_cast<int>((m - 2) * f) : static_cast<int>(m * f));
            if (best_size > second_size) return second_size;
        }
    }
    // A width peak gives a window two cells below a height peak of the same
    // size, on purpose: the windows that the binarization has been tuned
    // with rest on it.
    info.window_size = made_odd(widths ? f * (best_size - 2) : f * best_size);
    return best_size;
}

void ResolutionEstimator::search_scenders_peak_in_histogram(const std::vector<int>& histogram, CharacterInfo& info) {
    const int n = static_cast<int>(histogram.size());
    for (int i = 1; i + 1 < n; ++i)
        if (histogram[i] >= 1 && histogram[i] > histogram[i - 1] && histogram[i] > histogram[i + 1]) {
            info.has_scenders = 1;
            return;
        }
    const int first = info.first_peak_count;
    for (int i = 2; i + 1 < n; ++i)
        if (histogram[i] <= histogram[i - 1] && histogram[i] <= histogram[i + 1] &&
            std::abs(histogram[i] - first) >= 0.2 * first) {
            info.has_scenders = 1;
            return;
        }
    info.has_scenders = 0;
}

void ResolutionEstimator::combine_heights_and_widths(const CharacterInfo& heights, const CharacterInfo& widths,
                                                     EstimatedCharacter& estimate) const {
    const float limit = share_limit(heights.scale_level);
    const auto decided_class = [](const CharacterInfo& info) { return info.from_widths != 0 ? 3 : 2; };
    const auto at_last_level = [this](const CharacterInfo& info) {
        return info.scale_level > 0 && info.scale_level == scale_levels;
    };
    // Weak evidence keeps a window that an earlier level found.
    const auto weak = [&estimate](int window) {
        estimate.character_class = 1;
        if (estimate.window_size <= 0) estimate.window_size = window;
    };

    if (heights.has_scenders == 0 && widths.has_scenders == 0) {
        estimate.character_class = 0;
        return;
    }
    if (heights.has_scenders == 0 || widths.has_scenders == 0) {
        const CharacterInfo& only = heights.has_scenders != 0 ? heights : widths;
        if (peak_share(only) >= limit) {
            estimate.window_size = only.window_size;
            estimate.character_class = decided_class(only);
        } else if (at_last_level(only)) {
            estimate.character_class = 0;
        } else {
            weak(only.window_size);
        }
        return;
    }

    const bool widths_lead = widths.peak_mass > heights.peak_mass;
    const CharacterInfo& a = widths_lead ? widths : heights;
    const CharacterInfo& b = widths_lead ? heights : widths;
    if (peak_share(a) >= limit) {
        estimate.window_size = a.window_size;
        const float ratio = static_cast<float>(a.peak_mass) / static_cast<float>(b.peak_mass);
        if (ratio < 1.5f)
            estimate.character_class = 4;
        else if (ratio > 10.0f && a.scale_level == scale_levels)
            estimate.character_class = 0;
        else
            estimate.character_class = decided_class(a);
        return;
    }
    const int window = made_odd((a.window_size * a.peak_mass + b.window_size * b.peak_mass) /
                                (a.peak_mass + b.peak_mass));
    if (at_last_level(a)) {
        estimate.window_size = window;
        estimate.character_class = 0;
    } else {
        weak(window);
    }
}

}  // namespace geometric

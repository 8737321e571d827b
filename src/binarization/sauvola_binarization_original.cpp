// Sauvola's classical threshold on full maps.
#include "binarization/sauvola_binarization_original.h"

#include <algorithm>

#include "binarization/mean_and_deviation_maps.h"
#include "binarization/threshold_surface.h"

namespace geometric {

SauvolaBinarizationOriginal::SauvolaBinarizationOriginal(const common::Image* input, common::BasicImage* output)
    : Binarization(input, output), window_x(21), window_y(21), k(0.07), want_threshold_surface(false) {}

int SauvolaBinarizationOriginal::obtain_window_size(int width, int height) {
    const int m = std::min(width, height);
    if (m >= 204) return 51;
    int window = m / 4;
    if (window % 2 == 0) ++window;
    return std::max(window, 3);
}

bool SauvolaBinarizationOriginal::run_binarization_imp(common::Image* gray) {
    const int width = gray->get_width();
    const int height = gray->get_height();
    window_x = window_y = obtain_window_size(width, height);
    Image<double> mean(width, height);
    Image<double> deviation(width, height);
    mean.set_window(window_x, window_y);
    deviation.set_window(window_x, window_y);
    calculate_mean_and_deviation_maps(*gray, mean, deviation);

    if (want_threshold_surface) {
        threshold_surface = std::make_shared<Image<double>>(width, height);
        threshold_surface->set_window(window_x, window_y);
    }
    Image<double>* surface = threshold_surface.get();
    // 0.0078 stands for 1/128 as the method was tuned with it.
    const auto threshold = [&](int x, int y) {
        const double m = mean.at(x, y);
        return m * (1.0 - k) + m * k * 0.0078 * deviation.at(x, y);
    };
    if (want_threshold_surface && surface != nullptr && surface->get_data() != nullptr) {
        ThresholdSurface::apply(*gray, *output, window_x / 2, window_y / 2, threshold,
                                [surface](int x, int y, double t) { surface->at(x, y) = t; });
    } else {
        ThresholdSurface::apply(*gray, *output, window_x / 2, window_y / 2, threshold, [](int, int, double) {});
    }
    return true;
}

}  // namespace geometric

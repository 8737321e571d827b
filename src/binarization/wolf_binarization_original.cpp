// Wolf's classical threshold on full maps.
#include "binarization/wolf_binarization_original.h"

#include "binarization/image.h"
#include "binarization/mean_and_deviation_maps.h"
#include "binarization/threshold_surface.h"

namespace geometric {

WolfBinarizationOriginal::WolfBinarizationOriginal(const common::Image* input, common::BasicImage* output)
    : Binarization(input, output), window_x(21), window_y(21), k(0.07) {}

bool WolfBinarizationOriginal::run_binarization_imp(common::Image* gray) {
    const int width = gray->get_width();
    const int height = gray->get_height();
    Image<double> mean(width, height);
    Image<double> deviation(width, height);
    mean.set_window(window_x, window_y);
    deviation.set_window(window_x, window_y);
    calculate_mean_and_deviation_maps(*gray, mean, deviation);

    // M: the darkest byte of the page; R: the greatest deviation of the whole
    // map, frame included (a not-a-number deviation never wins).
    int darkest = 255;
    for (int y = 0; y < height; ++y) {
        const unsigned char* p = gray->get_line_pointer(y);
        for (int x = 0; x < width; ++x) darkest = p[x] < darkest ? p[x] : darkest;
    }
    double greatest = 0.0;
    const size_t count = static_cast<size_t>(width > 0 ? width : 0) * static_cast<size_t>(height > 0 ? height : 0);
    for (size_t i = 0; i < count; ++i) {
        if (deviation.get_data()[i] > greatest) greatest = deviation.get_data()[i];
    }
    const double M = darkest;
    const double R = greatest;
    const auto threshold = [&](int x, int y) {
        const double m = mean.at(x, y);
        return m + k * (deviation.at(x, y) / R - 1.0) * (m - M);
    };
    ThresholdSurface::apply(*gray, *output, window_x / 2, window_y / 2, threshold, [](int, int, double) {});
    return true;
}

}  // namespace geometric

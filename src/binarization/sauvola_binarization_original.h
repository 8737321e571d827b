// Sauvola's threshold by its classical formula on full mean and deviation maps.
#ifndef MORVANE_BINARIZATION_SAUVOLA_BINARIZATION_ORIGINAL_H
#define MORVANE_BINARIZATION_SAUVOLA_BINARIZATION_ORIGINAL_H

#include <memory>

#include "binarization/binarization.h"
#include "binarization/image.h"

namespace geometric {

class SauvolaBinarizationOriginal : public Binarization {
public:
    SauvolaBinarizationOriginal(const common::Image* input, common::BasicImage* output);

    void set_k(double value) { k = value; }
    // With it set, each pixel's threshold is kept in the threshold surface.
    void set_want_threshold_surface(bool value) { want_threshold_surface = value; }
    // Null unless the surface was asked for and a run has made it.
    std::shared_ptr<Image<double>> get_threshold_surface() const { return threshold_surface; }
    int get_window_x() const { return window_x; }
    int get_window_y() const { return window_y; }

    // The window: 51, or for a shorter side m under 204, m / 4 made odd, at least 3.
    static int obtain_window_size(int width, int height);

protected:
    // T = mean (1 - k) + mean k 0.0078 deviation on the inner lines and
    // columns, spread to the frame; a bit is set where T > p.
    bool run_binarization_imp(common::Image* gray) override;

private:
    int window_x;
    int window_y;
    double k;
    bool want_threshold_surface;
    std::shared_ptr<Image<double>> threshold_surface;
};

}  // namespace geometric

#endif

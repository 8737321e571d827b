// Wolf's threshold by its classical formula on full mean and deviation maps.
#ifndef MORVANE_BINARIZATION_WOLF_BINARIZATION_ORIGINAL_H
#define MORVANE_BINARIZATION_WOLF_BINARIZATION_ORIGINAL_H

#include "binarization/binarization.h"

namespace geometric {

class WolfBinarizationOriginal : public Binarization {
public:
    WolfBinarizationOriginal(const common::Image* input, common::BasicImage* output);

    void set_k(double value) { k = value; }

protected:
    // T = mean + k (deviation / R - 1) (mean - M), with M the darkest byte of
    // the page and R its greatest deviation; a bit is set where T > p.
    bool run_binarization_imp(common::Image* gray) override;

private:
    int window_x;
    int window_y;
    double k;
};

}  // namespace geometric

#endif

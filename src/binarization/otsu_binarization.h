// The one global binarizer: Otsu's threshold between the two classes of the
// gray histogram.
#ifndef MORVANE_BINARIZATION_OTSU_BINARIZATION_H
#define MORVANE_BINARIZATION_OTSU_BINARIZATION_H

#include "binarization/binarization.h"

namespace geometric {

class OtsuBinarization : public Binarization {
public:
    OtsuBinarization(const common::Image* input, common::BasicImage* output);

    // The t in 0..255 of the greatest between-class score
    //   w0 * (m0 - m)^2 + w1 * (m1 - m)^2
    // over the height * width bytes of gray, in ascending t; the first of
    // equal scores wins, and a flat image (all scores 0) gives 0.
    static void obtain_threshold(const common::Image& gray, unsigned char& threshold);
    // The count of each byte value over the height * width bytes of gray.
    static void obtain_histogram(const common::Image& gray, unsigned long long histogram[256]);

    void set_invert(bool value) { invert = value; }
    bool get_invert() const { return invert; }

protected:
    // Inner pixels brighter than the threshold become set bits; then, with
    // invert, the whole output buffer is complemented, so that ink is
    // gray <= threshold and the one-pixel frame and the row padding end up
    // set. Images under 3 pixels a side get no bits before the complement.
    bool run_binarization_imp(common::Image* gray) override;
    bool changes_gray() const override { return false; }

private:
    bool invert;  // the dark class becomes the set bits
};

}  // namespace geometric

#endif

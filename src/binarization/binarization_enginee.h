// Chooses and runs a binarizer by its BinarizationMethod number.
#ifndef MORVANE_BINARIZATION_BINARIZATION_ENGINEE_H
#define MORVANE_BINARIZATION_BINARIZATION_ENGINEE_H

#include "binarization/binarization.h"
#include "binarization/binarization_method.h"

namespace geometric {

class BinarizationEnginee {
public:
    // Constructs the binarizer of the method's table entry. A number outside
    // the table leaves no binarizer.
    BinarizationEnginee(const common::Image* input, common::BasicImage* output, BinarizationMethod method);
    ~BinarizationEnginee();
    BinarizationEnginee(const BinarizationEnginee&) = delete;
    BinarizationEnginee& operator=(const BinarizationEnginee&) = delete;

    // 0 when the binarizer ran and answered true, -1 otherwise (also when
    // there is no binarizer).
    int perfomr_binarization();

    // The binarizer, to adjust its parameters before the run; null when none.
    Binarization* get_binarization() const { return binarization; }

private:
    Binarization* binarization;
};

}  // namespace geometric

#endif

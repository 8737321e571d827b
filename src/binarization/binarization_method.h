// The binarization methods that the engine chooses among, by number.
#ifndef MORVANE_BINARIZATION_BINARIZATION_METHOD_H
#define MORVANE_BINARIZATION_BINARIZATION_METHOD_H

namespace geometric {

// The values are fixed: callers pass them as plain integers.
enum BinarizationMethod : int {
    SAUVOLA_QUICK = 0,     // SauvolaBinarization, the method of the drivers
    OMIN = 1,              // OminBinarization, multi-scale
    SAUVOLA_ORIGINAL = 2,  // SauvolaBinarizationOriginal
    WOLF_ORIGINAL = 3,     // WolfBinarizationOriginal
    OTSU = 4               // OtsuBinarization, the one global threshold
};

}  // namespace geometric

#endif

// The fast Sauvola threshold: optional in-place smoothing, a ring of integral
// image lines, tabulated deviations, and gray limits that settle most pixels
// without a window.
#ifndef MORVANE_BINARIZATION_QUICK_SAUVOLA_H
#define MORVANE_BINARIZATION_QUICK_SAUVOLA_H

#include <vector>

#include "common/basic_image.h"

namespace geometric {

struct SauvolaPara {
    int smoothing_weight = 2;   // extra weight of the centre pixel in the smoothing
    bool perform_smoothing = true;
    int lower_gray_limit = 50;  // below: ink without further test
    int upper_gray_limit = 200; // above: paper without further test
    int window_size = 35;
    float k = 0.2f;
    bool use_wide_ring = true;  // the ring of four windows
};

class QuickSauvola {
public:
    // gray is smoothed in place; output must be a zero-filled BINARY image of
    // gray's size, and receives the set bits.
    QuickSauvola(common::BasicImage* gray, common::BasicImage* output);

    QuickSauvola& operator=(const SauvolaPara& para);

    // The window rule, the smoothing and the threshold, in that order.
    // Throws Geometricexception: "Wrong weighting parameter for smoothing"
    // (negative weight), " The window size is too large" (window more than
    // half the shorter side, with the wide ring), "Locating error failed!" and
    // "Allocating memory failed!" (memory).
    void perform_quick_sauvola_binarization();

    // W, after the rule: when 11 W exceeds the shorter side m, W becomes
    // m / 11, or 2 when m <= 21.
    static int obtain_window_size(int window_size, int width, int height);

    // The deviation tables: the square root, to three decimals, at the knots
    // i / 10 (0..100), 100 + 2 i (100..1000) and 1000 + 10 i (from 1000 on).
    float lookup_deviation(float variance) const;

private:
    void perform_smoothing();
    void perform_thresholding(int window);

    static const unsigned char bit_masks[8];
    common::BasicImage* gray;
    common::BasicImage* output;
    SauvolaPara para;
    std::vector<float> deviation_table_one;    // 1001 entries
    std::vector<float> deviation_table_two;    // 451 entries
    std::vector<float> deviation_table_three;  // 1540 entries
};

}  // namespace geometric

#endif

// The size of a page's body text in pixels, read from the histograms of its
// blobs' heights and widths, and from it a window for the multi-scale
// binarization. All sizes are pixels of the scale at which the estimator
// looked; windows are pixels of the full-size page.
#ifndef MORVANE_PAGEANALYSIS_RESOLUTION_ESTIMATOR_H
#define MORVANE_PAGEANALYSIS_RESOLUTION_ESTIMATOR_H

#include <cstdint>
#include <memory>
#include <vector>

#include "binarization/omin_binarization.h"
#include "common/basic_image.h"
#include "common/image.h"
#include "pageanalysis/pageanalysis.h"

namespace geometric {

class ResolutionEstimator {
public:
    // What one histogram (of heights or of widths) says.
    struct CharacterInfo {
        // A second peak, or a dip, below the body peak: the body peak is
        // that of letters with ascenders and descenders, not of noise.
        std::int32_t has_scenders = 0;
        // The count at the body peak, or the sum of two adjacent peaks.
        std::int32_t peak_mass = 0;
        std::int32_t first_peak_count = 0;
        std::int32_t second_peak_count = 0;
        std::int32_t window_size = 0;  // odd, pixels of the full-size page
        // On entry the number of blobs, on exit the sum of the histogram.
        std::int32_t total_count = 0;
        std::int32_t from_widths = 0;  // 0 heights, 1 widths
        std::int32_t scale_level = 0;  // 0..6: sizes are of the page halved this often
    };

    // The decision, the record that the multi-scale binarization reads. A
    // window above 0 on entry counts as already present where weak evidence
    // keeps what is there.
    typedef OminBinarization::EstimatedCharacter EstimatedCharacter;

    // Sizes in pixels of the full-size page; scale_levels is the number of
    // levels of the pyramid in use, 0 to 6.
    ResolutionEstimator(int minimum_character_size_, int maximum_character_size_, float minimum_peak_share_,
                        int scale_levels_);

    // From the coarsest level of the pyramid (images[l - 1] is level l) to
    // the next finer, or the page itself, until a class other than 0; the
    // window of a page that stays at class 0 comes from its greater side.
    void estimate_character_size(const common::Image& image,
                                 const std::vector<std::shared_ptr<common::BasicImage>>& pyramid,
                                 EstimatedCharacter& estimate) const;
    // The regular blobs of an iHQC analysis of image (a level of the
    // pyramid, binarized by the multi-scale method), drawn and measured
    // again; class 0 without any.
    void estimate_character_size(const common::Image& image, int level, EstimatedCharacter& estimate) const;
    // The regular blobs of the analysis's regular list, their boxes' heights
    // and widths, at the given level; class 0 without regular blobs.
    void estimate_character_size(Pageanalysis* analysis, int level, EstimatedCharacter& estimate) const;

    // The multi-scale binarization's estimate: sizes 15 to 205, a peak
    // share of 0.05, over its pyramid, from an empty estimate (a fresh
    // binarization's window of 35 is no evidence).
    static void estimate_window_for_binarization(const common::Image& gray, const ImagePyramid& pyramid,
                                                 EstimatedCharacter& estimate);

    // One height and one width a component of a BINARY image (dilated
    // first when asked); answers the component count.
    static int retrieve_blob_dimension_histogram(const common::Image& binary, std::vector<int>& heights,
                                                 std::vector<int>& widths, bool dilate);

    // The body size found in sizes, 0 when none; info gets the peak, the
    // window and whether scenders back it. A body peak with little mass is
    // looked for again among smaller sizes. is_width marks the histogram as
    // one of widths, as info.from_widths does; smooth runs the histograms
    // through a three-bin mean first.
    int estimate_character_size_via_histogram(const std::vector<int>& sizes, CharacterInfo& info, int minimum,
                                              int maximum, bool is_width, bool smooth) const;
    // small counts the sizes 0..s0-1, main the sizes s0..s1 (greater sizes
    // are dropped); small[0] then takes the count of small[1].
    static void create_inferring_histograms(const std::vector<int>& sizes, int s0, int s1, std::vector<int>& small,
                                            std::vector<int>& main);
    // Each inner bin the mean of itself and its neighbours, the left one
    // already smoothed (integer division); then the ends of both histograms
    // across the seam between them. No caller of the library smooths.
    static void smooth_inferring_histograms(std::vector<int>& small, std::vector<int>& main);
    // Each inner bin scored, local maxima only: score = (log(z + L) + 1 +
    // log(z + 1 + dr)) / (mass of the bin and its neighbours + 1), z the
    // size offset + i, L and dr the rise into and the fall out of the bin.
    // The smallest score is the peak. Answers its size (0 without one) and
    // writes the counts and the window into info.
    static int search_bodytext_peak_in_histogram(const std::vector<int>& histogram, int offset,
                                                 CharacterInfo& info);
    // has_scenders: a strict local maximum, or a dip whose count is at
    // least a fifth of the body peak's count away from it.
    static void search_scenders_peak_in_histogram(const std::vector<int>& histogram, CharacterInfo& info);
    // The class and window from what heights and widths say.
    void combine_heights_and_widths(const CharacterInfo& heights, const CharacterInfo& widths,
                                    EstimatedCharacter& estimate) const;

    std::int32_t minimum_character_size;
    std::int32_t maximum_character_size;
    float minimum_peak_share;
    std::int32_t scale_levels;

private:
    void estimate_from_dimensions(const std::vector<int>& heights, const std::vector<int>& widths, int count,
                                  int level, EstimatedCharacter& estimate) const;
};

}  // namespace geometric

#endif

// Multi-scale binarization: a Sauvola-like threshold at one fixed window on
// an image pyramid, from fine to coarse, so that headlines many times the
// body size come out as solid as the body text without choosing a window.
#ifndef MORVANE_BINARIZATION_OMIN_BINARIZATION_H
#define MORVANE_BINARIZATION_OMIN_BINARIZATION_H

#include <functional>
#include <memory>
#include <vector>

#include "binarization/binarization.h"

namespace geometric {

struct OminPara {
    // The smallest and largest pixel count of a component decided at a scale.
    struct ScaleConstraints {
        double minimum_pixels;
        double maximum_pixels;
    };

    // Scale s is a reduction by 2^s.
    int maximum_scale = 3;
    int minimum_scale = 1;
    int upper_gray_limit = 200;  // brighter pixels are paper without a window
    double ratio_limit = 20.0;   // mean / deviation at or above it: a flat window
    int small_image_limit = 1000;
    int pyramid_size_limit = 750;
    int pyramid_minimum_size = 650;
    float k = 0.1f;
};

// Level l (1 based) of the gray image halved l times lives at images[l - 1].
struct ImagePyramid {
    int levels = 0;
    std::vector<std::shared_ptr<common::BasicImage>> images;
};

class OminBinarization : public Binarization {
public:
    // What a character size estimate tells the binarization: a class (0
    // nothing usable, 1 weak evidence, 2 heights, 3 widths, 4 both agree) and
    // an odd window in pixels of the full-size image.
    struct EstimatedCharacter {
        int character_class = 2;
        int window_size = 35;
    };
    // Fills the estimate from the gray image and its pyramid: the resolution
    // estimate of the page analysis layer, which lies above this one, plugs
    // in here, run with characters of 15 to 205 pixels, a peak share of 0.05
    // and the pyramid's levels.
    typedef std::function<void(const common::Image& gray, const ImagePyramid& pyramid, EstimatedCharacter& estimate)>
        CharacterEstimate;

    // For a caller that runs only the pyramid and the estimate, or points the
    // binarizer at its images later with set_images.
    OminBinarization();
    OminBinarization(const common::Image* input, common::BasicImage* output);

    // The parameters as set; each run starts from them, so that one object
    // may binarize many images alike.
    const OminPara& get_para() const { return para_as_set; }
    void set_para(const OminPara& value) { para = para_as_set = value; }
    // The drivers set k from their own parameters.
    void set_k(float k) { para.k = para_as_set.k = k; }

    // With a function, each run asks it for the character size and takes
    // its window and class (see adjust_parameters_from_estimated_character);
    // an empty function turns the estimate off. Off by default: the window
    // is then 35 pixels of the full-size image.
    void set_character_estimate(const CharacterEstimate& estimate);
    const EstimatedCharacter& get_estimated_character() const { return character; }

    // The steps of a run, in order.
    // A page whose longer side is at most small_image_limit starts at scale 0.
    void adjust_parameters_from_inputs(const common::Image& gray);
    // Levels 1..n, each the last halved: none when the longer side L is at
    // most pyramid_size_limit S; else n is the smallest k in 1..6 with
    // S 2^k >= L (6 when none), less one when L / 2^k falls under
    // pyramid_minimum_size.
    void create_image_pyramid(const common::Image& gray);
    // Asks the character estimate, when one is set; else the estimate keeps
    // class 2 and the window 35.
    void estimate_window_size(const common::Image& gray);
    // Class 0 or 1 (little evidence) lets the search go two scales further;
    // class 1 also keeps the window at 25 or more.
    void adjust_parameters_from_estimated_character();
    // Thresholds each scale from the start scale on until no component is
    // too big for it, then the full-size page by the scale map. Throws the
    // const char* "scale level out of range" for scales beyond 0 to 5.
    void multi_scale_binarization(const common::Image& gray);

    const ImagePyramid& get_image_pyramid() const { return *pyramid; }
    // The scale marks of the last run: 0 undecided, s + 1 decided at scale
    // s, 255 where no text can be; at the size of the start scale.
    const common::BasicImage& get_scale_map() const { return scale_map; }
    // One entry a scale from the start scale on, appended by each run.
    const std::vector<OminPara::ScaleConstraints>& get_scale_constraints() const { return constraints; }

    // Spreads the marks 1..254 into the 0 places, breadth first, after
    // setting the one-pixel frame to 255.
    static void propagate_image(common::BasicImage& scale_map);
    // The frame takes the marks of the line or column inside it.
    static void post_process_scale_boundary(common::BasicImage& scale_map);

protected:
    bool run_binarization_imp(common::Image* gray) override;

private:
    // The image of scale s, taken from the pyramid or made by halving previous,
    // the image of scale s - 1, into current.
    const common::Image& chose_current_scale_img(int scale, const common::Image& gray, const common::Image* previous,
                                                 common::BasicImage& current);
    // The threshold of every pixel into threshold (GRAY, one byte a pixel)
    // and the bits where it exceeds the gray value into bitonal.
    void perform_sauvola_binarization(const common::Image& image, int window, common::BasicImage& threshold,
                                      common::BasicImage& bitonal) const;
    // Marks the components of bitonal that fit the scale; true when one was
    // too big for it.
    bool analyze_binary_image(int scale, common::BasicImage& bitonal, int minimum_size);
    void initialize_scale_denotion_maps(const common::BasicImage& threshold);
    void post_process_scale_empty_pixels();
    void create_binary_image_from_scale(const common::Image& gray);

    bool estimate_character;
    std::vector<OminPara::ScaleConstraints> constraints;
    OminPara para;
    std::shared_ptr<ImagePyramid> pyramid;
    EstimatedCharacter character;

    OminPara para_as_set;
    CharacterEstimate estimate;
    common::BasicImage scale_map;
    // One threshold map a scale run, from the start scale on.
    std::vector<std::shared_ptr<common::BasicImage>> threshold_maps;
};

}  // namespace geometric

#endif

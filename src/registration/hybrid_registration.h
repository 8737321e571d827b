// The driver behind a corrector handle: it owns the gray working image and the
// search objects, weighs their result, keeps the four corners in full-size
// coordinates and drives the rectification that follows.
#ifndef MORVANE_REGISTRATION_HYBRID_REGISTRATION_H
#define MORVANE_REGISTRATION_HYBRID_REGISTRATION_H

#include <vector>

#include "common/basic_image.h"
#include "morvane/morvane.h"
#include "registration/feature_registration.h"
#include "registration/projective_registration.h"
#include "registration/registration_output_type.h"
#include "textgeometry/geocoordinate.h"
#include "vanishing/projective_registration_para.h"
#include "vanishing/vanishing_point_output.h"

namespace hybrid {

// The shared thresholds plus the choice of the edge search object.
struct HybridRegPara : public ProjectiveRegistrationPara {
    // 0: the classic edge registration (Hough lines, crossings of opposite
    // edges); any other value: the staged line registration. Read when the
    // first run makes the edge object, which then stays.
    int use_line_registration = 1;
};

enum HybridMethod {
    HYBRID_EDGES_ONLY = 0,
    HYBRID_EDGES_AND_FEATURES = 1
};

// The result codes of the run functions, before the exported boundary turns
// -1 into 3:
//    1  corners found and accepted       2  the page is already straight
//   -1  no usable result                 0  reserved code -2, or a run ended by an exception
//   -3  corner outside the image         -4  quadrilateral too small
//   -5  not convex or an angle too small -6  output too small against the input
//   -7  virtual corners failed their own examination
// Corners are in full-size input pixels: top-left, top-right, bottom-right, bottom-left.
class HybridRegistration : public HybridRegPara {
public:
    // Owns an empty input image, bound later by set_input_image.
    HybridRegistration();
    // Works on input, which it does not own.
    explicit HybridRegistration(common::BasicImage* input);
    // Deletes the owned input, the edge object, the feature object and the working image, in that order.
    ~HybridRegistration();

    HybridRegistration(const HybridRegistration&) = delete;
    HybridRegistration& operator=(const HybridRegistration&) = delete;

    // The input becomes a view on the record's buffer, counted as 300 dots per inch.
    void set_input_image(const ImageCApi& image);
    void set_hybrid_method(HybridMethod method) { hybrid_method = method; }
    // True: corners from page-edge lines and the output check applies; false:
    // corners from vanishing points, no check.
    void set_corner_type(bool edge_corners) { use_edge_corners = edge_corners; }
    // The caller's bytes, one a channel; kept by pointer, not copied. Null is stored as given.
    void set_filling_color(unsigned char* color) { filling_color = color; }

    // The rules of the exported setters.
    // method > 0: edges and then features; otherwise edges alone.
    void set_registration_method(int method);
    // Clamped to 0 (Sauvola) or 1 (multi-scale).
    void set_binarization_method(int method);
    // Below 0 stored as 0.01, above 1 as 0.99, else as given.
    void set_binarization_k(float k);
    // Below 1 stored as 3.
    void set_binarization_window(int window);
    // Ignored unless above 0.001, compared in single precision.
    void set_minimum_aoi_area(float fraction);

    // Edge search then, in hybrid mode, feature search, each with the output
    // check. Every exception ends here and gives 0, which includes an image
    // that preprocessing refuses. Empties the corner list first.
    int run_program();
    // Page edges only; `check` applies the output check.
    int run_edge_searching(bool check);
    // Text features on the image bound before; the edge search must have run.
    int run_feature_searching();
    // The feature object, made on the working image when missing, set up for
    // its run: the working image's parameters and everything the edge search
    // found. The edge search must have run.
    FeatureRegistration& prepare_feature_searching();

    // Makes the gray working image once for the life of the handle: 2 when it
    // exists already (whatever input is bound now), -1 when the input is
    // refused (long side above 7.0 times the short one, in single precision,
    // or short side below 10), else 1. Throws
    // "BGRA to grey level conversion nog implemented yet in common" for BGRA.
    int preprocessing();
    // One more per halving, not a doubling, until both sides are at most
    // maximum_dimension: rows first, then columns. 6001 rows give 3, whose
    // working image is still 2000 rows high. Stores and returns the rate.
    int obtain_downsampling_rate();
    // 1, or -3 (corner outside the image while within_the_image holds), -5
    // (not convex or an angle below minimum_quadrilateral_angle), -4 (area
    // not above the limit: minimum_aoi_area when 1.2 < long / short output
    // side < 1.4, minimum_aoi_area - 0.1 otherwise), -6 (neither output side
    // over the input's exceeds minimum_largest_dimension_percentage_threshold).
    int check_projective_output();
    // Maps a registration output to the code of a run function:
    //   r                     edge corners, check   edge corners, no check   vanishing point corners
    //   -2                    0                     0                        0
    //   2                     check, 1 read as 2    2                        2
    //   0, other negatives    r                     r                        r
    //   other positives       check                 1                        1
    int return_hybrid_result(geometric::RegistrationOutputType r, bool check);
    // Fills an empty corner list: the feature object's corners when it exists,
    // else the edge object's, times the rate; still empty, the whole input.
    void obtain_internal_corners();

    // obtain_internal_corners, then each coordinate rounded by floor(v + 0.5).
    void obtain_four_corners(ControlPointCorners& out);
    // The caller's corners replace the list. corners_were_reset becomes true
    // only when a list existed and differs from them.
    void reset_four_corners(const ControlPointCorners& given);
    // The feature object's directions when it exists, else the edge object's,
    // else out as it was; both points are then multiplied by the rate.
    void obtain_vanishing_points(geometric::VanishingPointHorVerInfo& out);

    // Output size of the current corners (after obtain_internal_corners).
    void obtain_corrected_img_dimension(int& width, int& height);
    // The given corners become the list, then as above.
    void obtain_corrected_img_dimension(std::vector<geometric::Geocoordinate<float>>& given, int& width,
                                        int& height);
    // Output size of the corners divided by the rate; the input's size when
    // no working image exists.
    void obtain_corrected_downsampled_img_dimension(int& width, int& height);

    // Rectifies the bound input into output; returns the correction's value.
    // The fill colour comes from set_filling_color; else, after the caller
    // reset the corners, from the brightest input pixel under a corner inside
    // the image; else the correction estimates the page's border colour.
    // A BINARY input is turned into GRAY in place.
    int perform_correction(common::BasicImage& output);
    // The same on the working image with the corners divided by the rate and
    // the correction's own fill colour; 0 when no working image exists.
    int perform_correction_on_downsampled_gray_image(common::Image& output);
    // Binarizes input into output (a BINARY image of input's size) with the
    // method, k and window set on the handle: method 0 is the fast Sauvola,
    // method 1 the multi-scale one, which takes k but not the window.
    // Throws const char* for a BGRA or UNKNOWN input and for an output of
    // another kind.
    void obtain_binarized_corrected_image(const common::Image& input, common::Image& output);

    // Dots per inch of the bound input, times the rate: from the text
    // search's own page analysis when it made one, else from a text-picture
    // separation of the working image; 300 before the first run or when the
    // analysis finds too little text.
    int estimate_spatial_resolution();
    // Dots per inch of an image alone, no rate: a GRAY image, or the
    // luminance of an RGB one, by text-picture separation, any other by
    // dilation and area; 300 when the analysis finds too little text.
    int estimate_spatial_resolution(common::Image& image);

    // 0 Sauvola, 1 multi-scale.
    int binarization_method;
    float binarization_k;
    int binarization_window;
    // Factor between the input and the working image.
    int downsampling_rate;
    // The gray working image, owned; made by the first run and kept.
    common::BasicImage* downsampled_image;
    common::BasicImage* input_image;
    // The caller's corners differ from those found.
    bool corners_were_reset;
    bool owns_input_image;
    // Owned; made on the working image by the first run that needs it.
    geometric::ProjectiveRegistration* edge_registration;
    FeatureRegistration* feature_registration;
    HybridMethod hybrid_method;
    // The caller's bytes, not owned.
    unsigned char* filling_color;
    std::vector<geometric::Geocoordinate<float>> corners;

private:
    // What both public constructors do: every field at its default, the input owned or not.
    HybridRegistration(common::BasicImage* input, bool owns_input);
    void create_edge_registration();
    void create_feature_registration();
    // Working image of the input: deep copy turned gray, then down-sampled.
    void make_working_image();
};

}  // namespace hybrid

#endif

// The projective correction: maps the page quadrilateral given by four
// corners onto a rectangle, with the fill colour for what lies outside the input.
#ifndef MORVANE_CORRECTION_PROJECTIVE_CORRECTION_H
#define MORVANE_CORRECTION_PROJECTIVE_CORRECTION_H

#include <vector>

#include "correction/correction.h"
#include "textgeometry/geocoordinate.h"

namespace geometric {

// The closed form of the warp. Output pixel (u, v) of a W x H output comes from
//   X = (x0 + a u / W + b v / H) / w,  Y = (y0 + d u / W + e v / H) / w,
//   w = 1 + g u / W + h v / H.
// The fractions use W and H, not W - 1 and H - 1.
struct ProjectiveWarpCoefficients {
    double x0, y0;
    double a, b, d, e, g, h;
    bool parallelogram;  // g = h = 0 taken without a division
};

class ProjectiveCorrection : public Correction {
public:
    ProjectiveCorrection(common::BasicImage* input, common::BasicImage* output);

    // Corners: top-left, top-right, bottom-right, bottom-left, input pixels.
    void set_control_points(const std::vector<Geocoordinate<float>>& points) { control_points = points; }
    const std::vector<Geocoordinate<float>>& get_control_points() const { return control_points; }

    // Warps the input into the output and returns 1. An owned output is
    // reset to the computed size with the input's type (GRAY for a BINARY
    // input); a view must already have that size and type, else the text
    // "output image does not match the corrected image dimensions or the input type"
    // is thrown. A BINARY input is warped as gray and made binary again,
    // values of 128 or less becoming ink.
    int run_correction() override;
    // The size rule on the control points.
    void obtain_output_img_dimension(int& width, int& height) override;

    // With d(p, q) the distance of two corners (single-precision differences,
    // rounded to single precision after the root):
    //   width = integer part of 0.5 d(c0, c1) + 0.5 d(c3, c2) + 1.0 + 0.5
    //   height = integer part of 0.5 d(c0, c3) + 0.5 d(c1, c2) + 1.0 + 0.5
    // the mean of opposite sides plus one, rounded. Needs four corners.
    static void calculate_output_dimension(const std::vector<Geocoordinate<float>>& corners, int& width,
                                           int& height);
    // The coefficients of the mapping, in double precision from the
    // single-precision corners.
    static ProjectiveWarpCoefficients calculate_warp_coefficients(const std::vector<Geocoordinate<float>>& corners);

    // The warp on raw buffers laid out per the output's type (no padding).
    // Positions are evaluated incrementally: numerators and denominator grow
    // by a / W, d / W, g / W per column and by b / H, e / H, h / H per row,
    // by repeated addition. With Xi, Yi the floors and fx, fy the fractions:
    // 1 <= Xi < input_width - 2 and 1 <= Yi < input_height - 2 is sampled,
    // the rest of the input is copied from (Xi, Yi), and everything outside
    // gets filling_pixel, computed at the first such pixel in mode 1.
    void perspective_transformation_general(const unsigned char* input, unsigned char* output, int input_width,
                                            int input_height, int output_width, int output_height,
                                            std::vector<Geocoordinate<float>>& corners);

    // The paper colour from strips just inside the four sides of the page:
    // for RGB the mean of the brighter half of the strip pixels, otherwise
    // the mean of the brighter half of the strip bytes. Nothing collected:
    // filling_pixel stays as it was.
    void calculate_filling_pixel();
    // Mean R, G, B of the brighter half (count / 2) of count RGB pixels, by
    // brightness (299 R + 587 G + 114 B) / 1000 in a stable descending order.
    // Fewer than two pixels give black.
    static void find_above_median_color(int count, const unsigned char* pixels, unsigned char* color);
    // Appends the bytes of the pixels at up to nine places along the side
    // from first to second, moved inward by 5 pixels, or by height / 100
    // (width / 100) when the image is taller (wider) than 499 pixels:
    // downward (rightward) adds the offset, otherwise it is subtracted.
    // Throws "UNKNOWN and BGRA types are not handled in fct get_pixel_pointer"
    // for an input that is neither GRAY nor RGB.
    void get_pixels_on_hor_line(Geocoordinate<float>& first, Geocoordinate<float>& second,
                                std::vector<unsigned char>& pixels, bool downward);
    void get_pixels_on_ver_line(Geocoordinate<float>& first, Geocoordinate<float>& second,
                                std::vector<unsigned char>& pixels, bool rightward);

    // Mode 1: the fill colour is computed when first needed; 0: filling_pixel holds it.
    int get_filling_mode() const { return filling_mode; }
    void set_filling_mode(int mode) { filling_mode = mode; }
    // One byte a channel; callers that know the colour write it here and set mode 0.
    unsigned char* get_filling_pixel() { return filling_pixel; }
    const unsigned char* get_filling_pixel() const { return filling_pixel; }

private:
    std::vector<Geocoordinate<float>> control_points;
    int filling_mode;
    unsigned char filling_pixel[4];
};

}  // namespace geometric

#endif

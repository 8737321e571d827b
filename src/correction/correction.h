// The frame of every correction: which sampler fits the input, and the
// handling of input and output images around the geometric mapping.
#ifndef MORVANE_CORRECTION_CORRECTION_H
#define MORVANE_CORRECTION_CORRECTION_H

#include "common/basic_image.h"
#include "correction/sampling.h"

namespace geometric {

// The sampling method, derived from the image type: BINARY nearest, GRAY
// linear, RGB colour linear, BGRA linear (first channel only). An UNKNOWN
// image gets no method, so that a warp on it fails at its first sampled pixel
// with "call to empty boost::function".
struct CorrectionPara {
    InterpolationType interpolation;

    explicit CorrectionPara(common::Image* image);
};

class Correction {
public:
    // Neither image is owned. The output's own buffer decides output_is_owned.
    // A BINARY input is turned into GRAY in place (ink 0, paper 255), its
    // buffer swapped into the input object, while input_type keeps BINARY;
    // an RGB input meets colour interpolation converted to luminance and
    // colour differences in place.
    Correction(common::BasicImage* input, common::BasicImage* output);
    virtual ~Correction() {}

    // Produces the output image; returns 1.
    virtual int run_correction() = 0;
    virtual void obtain_output_img_dimension(int& width, int& height) = 0;

    const CorrectionPara& get_para() const { return para; }
    bool get_output_is_owned() const { return output_is_owned; }
    common::ImageType get_input_type() const { return input_type; }

protected:
    CorrectionPara para;
    bool output_is_owned;          // the output may be reset to the right size
    common::ImageType input_type;  // as it arrived, before any conversion
    common::BasicImage* input;
    common::BasicImage* output;
};

}  // namespace geometric

#endif

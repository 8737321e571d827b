// The correction frame: sampler choice and input conversion.
#include "correction/correction.h"

#include "correction/color_transform.h"

namespace geometric {

CorrectionPara::CorrectionPara(common::Image* image) {
    switch (image->get_image_type()) {
        case common::BINARY: interpolation = INTERPOLATION_NEAREST; break;
        case common::GRAY: interpolation = INTERPOLATION_LINEAR; break;
        case common::RGB: interpolation = INTERPOLATION_COLOR_LINEAR; break;
        case common::BGRA: interpolation = INTERPOLATION_LINEAR; break;
        // No enumerator: Sampling leaves its function empty for it.
        default: interpolation = static_cast<InterpolationType>(5); break;
    }
}

Correction::Correction(common::BasicImage* input_, common::BasicImage* output_)
    : para(input_), output_is_owned(output_->get_owns_data()), input_type(input_->get_image_type()),
      input(input_), output(output_) {
    if (para.interpolation == INTERPOLATION_COLOR && input->get_image_type() == common::RGB)
        ColorTransform(ColorTransform::RGB_TO_YUV).color_transform(*input);
    if (input->get_image_type() == common::BINARY) input->convert_binary_to_gray();
}

}  // namespace geometric

// The shared binarization frame.
#include "binarization/binarization.h"

#include "common/geometricexception.h"
#include "pixel/geo_despeckle.h"

namespace geometric {

namespace {
const char* const kOutputIsEmpty = "the output image is empty";
}

Binarization::Binarization(const common::Image* input, common::BasicImage* output)
    : input(input), output(output), despeckle(true) {
    if (output == nullptr) throw Geometricexception(kOutputIsEmpty);
}

Binarization::Binarization() : input(nullptr), output(nullptr), despeckle(true) {}

void Binarization::set_images(const common::Image* input_, common::BasicImage* output_) {
    if (output_ == nullptr) throw Geometricexception(kOutputIsEmpty);
    input = input_;
    output = output_;
}

Binarization::~Binarization() {}

bool Binarization::run_binarization() {
    if (output == nullptr || input == nullptr) throw Geometricexception(kOutputIsEmpty);
    gray_image = working_gray_of(*input);
    if (input->get_image_type() == common::BINARY) {
        *output = *input;
        return true;
    }
    output->reset(input->get_height(), input->get_width(), common::BINARY, input->get_x_resolution(),
                  input->get_y_resolution());
    if (!convert_image_to_grey_level(gray_image)) return false;
    if (!run_binarization_imp(gray_image.get())) return false;
    perform_despeckling();
    return true;
}

// A method that only reads its gray works on the source itself when the
// source is already gray and its bytes are not the output's (the output is
// reset below); every other run works on a copy.
std::shared_ptr<common::BasicImage> Binarization::working_gray_of(const common::Image& source) const {
    unsigned char* bytes = source.get_line_pointer(0);
    const bool shared = !changes_gray() && source.get_image_type() == common::GRAY && bytes != nullptr &&
                        bytes != output->get_data();
    if (!shared) return std::make_shared<common::BasicImage>(source);
    return std::make_shared<common::BasicImage>(bytes, source.get_height(), source.get_width(), common::GRAY,
                                                source.get_x_resolution(), source.get_y_resolution());
}

bool Binarization::convert_image_to_grey_level(std::shared_ptr<common::BasicImage> image) {
    switch (image->get_image_type()) {
        case common::GRAY:
            return true;
        case common::RGB:
            image->convert_rgb_to_gray(true);
            return true;
        default:
            return false;
    }
}

void Binarization::obtain_grayscale_img(common::BasicImage** image) {
    if (gray_image) {
        *image = gray_image.get();
    } else {
        // Before the first run there is no working copy; the input serves,
        // read only, as the gray source.
        *image = const_cast<common::BasicImage*>(dynamic_cast<const common::BasicImage*>(input));
    }
}

void Binarization::perform_despeckling() {
    if (despeckle) GeoDespeckle::removeIsolatedPixel(*output, *output);
}

}  // namespace geometric

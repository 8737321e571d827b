// The frame that every binarizer shares: copy the source (or, for a method that
// only reads it, look at a gray source in place), make it gray, run the
// method, despeckle. In every output a set bit is ink.
#ifndef MORVANE_BINARIZATION_BINARIZATION_H
#define MORVANE_BINARIZATION_BINARIZATION_H

#include <memory>

#include "common/basic_image.h"

namespace geometric {

class Binarization {
public:
    // input is read, never owned; output is written, never owned, and must
    // not be null (throws Geometricexception "the output image is empty").
    // output is reset during the run, so it must own its buffer.
    Binarization(const common::Image* input, common::BasicImage* output);
    virtual ~Binarization();

    // A BINARY source is assigned to the output as it is (no method, no
    // despeckling). Otherwise the output becomes a zero-filled BINARY image
    // of the source's size and resolutions, a gray working copy is made and
    // the method runs on it; a method that only reads the gray runs on a GRAY
    // source itself, through a view. False when the source has no gray form (BGRA,
    // UNKNOWN); the output is then reset and empty. Without images (the
    // default constructor) the output is empty and throws as above.
    bool run_binarization();

    // Points the binarizer at other images, for a caller that keeps one
    // binarizer for many images; the same rules as the constructor's.
    void set_images(const common::Image* input, common::BasicImage* output);

    // True for GRAY; RGB is converted in place by luminance; false otherwise.
    bool convert_image_to_grey_level(std::shared_ptr<common::BasicImage> image);
    // The working gray image of the last run: a copy, or for a method that
    // only reads it and a GRAY source a view of the source, valid while the
    // source lives. Before the first run, the input itself.
    void obtain_grayscale_img(common::BasicImage** image);
    void perform_despeckling();

    void set_despeckle(bool value) { despeckle = value; }
    bool get_despeckle() const { return despeckle; }

protected:
    // No images yet: set_images comes before the first run.
    Binarization();
    // The method itself, on the gray working copy, into output.
    virtual bool run_binarization_imp(common::Image* gray) = 0;
    // True when the method writes into its gray image, so that it needs a copy.
    virtual bool changes_gray() const { return true; }

    const common::Image* input;
    common::BasicImage* output;
    bool despeckle;
    std::shared_ptr<common::BasicImage> gray_image;

private:
    std::shared_ptr<common::BasicImage> working_gray_of(const common::Image& source) const;
};

}  // namespace geometric

#endif

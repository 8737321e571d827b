// Fuzz target of the blob calculator family: formation on a gray or 1-bit
// page, labels with a border, box sizes, top points and contours, and the
// scale-map steps on a fresh calculator each.
#include "fuzz_input.h"

namespace {

void check_queries(void* calculator, const ImageCApi& image, int count, int border) {
    const int w = image.width, h = image.height;
    const size_t framed = static_cast<size_t>(w + 2 * border) * (h + 2 * border);
    std::vector<int> labels(framed, -1);
    calculate_label_image(calculator, &image, labels.data(), border);
    for (size_t i = 0; i < framed; ++i) fuzz::require(labels[i] >= 0 && labels[i] <= count, "labels lie in 0..count");

    std::vector<int> heights(static_cast<size_t>(count)), widths(heights.size()), xs(heights.size()), ys(heights.size());
    obtain_blob_dimension_histogram(calculator, &image, heights.data(), widths.data());
    obtain_blob_top_points(calculator, &image, xs.data(), ys.data());
    for (int i = 0; i < count; ++i) {
        fuzz::require(heights[i] >= 1 && heights[i] <= h && widths[i] >= 1 && widths[i] <= w, "a box lies in the image");
        fuzz::require(xs[i] >= 0 && xs[i] < w && ys[i] >= 0 && ys[i] < h, "a top point lies in the image");
        fuzz::require(labels[static_cast<size_t>(ys[i] + border) * (w + 2 * border) + xs[i] + border] == i + 1,
                      "a top point carries its component's label");
    }

    int* cx = nullptr;
    int* cy = nullptr;
    const int points = obtain_blob_contours_one_by_one(calculator, &image, &cx, &cy, &std::malloc);
    fuzz::require(points >= count, "every component has a contour point");
    for (int i = 0; i < points; ++i)
        fuzz::require(cx[i] >= 0 && cx[i] < w && cy[i] >= 0 && cy[i] < h, "a contour point lies in the image");
    std::free(cx);
    std::free(cy);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Reader in(data, size);
    fuzz::Page page = fuzz::read_page(in);
    const uint8_t choice = in.u8();
    const int border = in.u8() % 4;
    const int base_level = in.u8() % 6;
    const int level = base_level + in.u8() % (6 - base_level);
    const int scale_w = 1 + in.u16() % fuzz::kMaxSide, scale_h = 1 + in.u16() % fuzz::kMaxSide;
    const int minimum_size = static_cast<int16_t>(in.u16());
    const double maximum_pixels = in.unit(-10.0f, 20000.0f), minimum_pixels = in.unit(-10.0f, 200.0f);
    fuzz::finish_page(in, page);

    // A colour page is read as the gray record of its first third.
    ImageCApi image = page.record();
    image.channels = 1;
    const std::vector<unsigned char> before = page.pixels;

    void* calculator = create_blob_calculator();
    fuzz::require(calculator != nullptr, "create_blob_calculator gives a handle");
    if (choice & 1) set_neighborhood(calculator, 4);
    int count = 0;
    if (choice & 2) {
        count = perform_blob_formulation(calculator, &image);
    } else {
        // Any query may form the components first.
        std::vector<int> labels(static_cast<size_t>(image.width + 2 * border) * (image.height + 2 * border));
        calculate_label_image(calculator, &image, labels.data(), border);
        count = perform_blob_formulation(calculator, &image);
    }
    fuzz::require(count >= 0, "the count is 0 or more");
    fuzz::require(obtain_runs_image(calculator, &image) != nullptr, "the runs image exists after formation");
    check_queries(calculator, image, count, border);
    delete_blob_calculator(calculator);
    fuzz::require(page.pixels == before, "the input is never written");

    // The scale-map steps write the 1-bit page in place: give them a copy.
    if (page.kind == fuzz::kBinary && (choice & 4)) {
        std::vector<unsigned char> bits = page.pixels;
        ImageCApi binary = page.record();
        binary.data = bits.data();
        std::vector<unsigned char> scale(static_cast<size_t>(scale_w) * scale_h, 0);
        const ImageCApi scale_image = {scale_w, scale_h, 0, 0, 1, 0, scale.data()};
        void* step = create_blob_calculator();
        int answer = -1;
        if (choice & 8)
            MORVANE_FUZZ_CALL(answer = create_scale_img_only(step, level, &scale_image, &binary, base_level, minimum_size,
                                                             (choice & 16) != 0, maximum_pixels, minimum_pixels));
        else
            MORVANE_FUZZ_CALL(answer = create_scale_img(step, level, &scale_image, &binary, base_level, minimum_size,
                                                        (choice & 16) != 0, maximum_pixels, minimum_pixels));
        fuzz::require(answer >= -1 && answer <= 1, "a scale step answers 0 or 1");
        for (unsigned char v : scale) fuzz::require(v == 0 || v == level + 1, "the scale map holds level + 1");
        delete_blob_calculator(step);
    }
    return 0;
}

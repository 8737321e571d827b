// Every exported family as a caller runs it: create a handle, make the
// family's calls on a page photo and keep every answer as bytes, destroy the
// handle. The thread test, the allocation-failure test and the memory soak
// all run this one table: a new family is one more routine and one more row.
#ifndef MORVANE_TESTS_API_EXPORTED_FAMILIES_H
#define MORVANE_TESTS_API_EXPORTED_FAMILIES_H

#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "morvane/morvane.h"
#include "support/pixels.h"

namespace families {

// A photo of a page, gray or RGB, and beside it its first channel as a gray
// image, and that gray image with the paper made white (only 255 is
// background to the blob calculator).
struct PhotographedPage {
    int width, height, channels;
    std::vector<unsigned char> pixels, gray, ink;

    PhotographedPage(int w, int h, int c, std::vector<unsigned char> photo)
        : width(w), height(h), channels(c), pixels(std::move(photo)) {
        derive_gray_and_ink();
    }

    // A tilted page with rows of dark strokes on a darker desk (the shared
    // page photo), its channels each a little lifted.
    PhotographedPage(int w, int h, int c)
        : PhotographedPage(w, h, c,
                           support::page_photo(w, h, support::quad(0.12 * w, 0.1 * h, 0.85 * w, 0.15 * h, 0.8 * w, 0.9 * h,
                                                                   0.08 * w, 0.86 * h), c)) {}

    ImageCApi record() const { return record_of(pixels, channels); }
    ImageCApi gray_record() const { return record_of(gray, 1); }
    ImageCApi ink_record() const { return record_of(ink, 1); }

private:
    void derive_gray_and_ink() {
        gray.reserve(static_cast<size_t>(width) * height);
        for (size_t i = 0; i < pixels.size(); i += channels) gray.push_back(pixels[i]);
        ink = gray;
        for (unsigned char& v : ink) v = v > 150 ? 255 : v;
    }

    ImageCApi record_of(const std::vector<unsigned char>& bytes, int c) const {
        return ImageCApi{width, height, 0, 0, c, 0, const_cast<unsigned char*>(bytes.data())};
    }
};

typedef std::vector<unsigned char> Answer;

template <typename T>
void put(Answer& answer, const T* values, size_t count) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(values);
    answer.insert(answer.end(), bytes, bytes + count * sizeof(T));
}

template <typename T>
void put(Answer& answer, const T& value) {
    put(answer, &value, 1);
}

struct Family {
    const char* name;
    void* (*create)();  // null for the families without a handle
    void (*destroy)(void*);
    void (*run)(void* handle, const PhotographedPage& photo, Answer& answer);
};

inline void run_version(void*, const PhotographedPage&, Answer& answer) {
    for (const char* text : {morvane_get_version_number(), morvane_get_branch_name(), morvane_get_sha()})
        put(answer, text, std::strlen(text));
}

// A caller's page inside the photo, off square, in the photo's pixels.
inline ControlPointCorners caller_corners(const PhotographedPage& photo) {
    const int w = photo.width, h = photo.height;
    return ControlPointCorners{{w / 10, w - w / 10, w - w / 12, w / 20}, {h / 10, h / 6, h - h / 10, h - h / 12}};
}

inline void run_free_functions(void*, const PhotographedPage& photo, Answer& answer) {
    const ControlPointCorners corners = caller_corners(photo);
    int width = 0, height = 0;
    obtain_output_image_dimension(&corners, &width, &height);
    Answer page(static_cast<size_t>(width) * height * photo.channels);
    const ImageCApi input = photo.record();
    ImageCApi output = {width, height, 0, 0, photo.channels, 0, page.data()};
    put(answer, perform_projective_correction(&corners, &input, &output));
    put(answer, page.data(), page.size());
}

// Find, rectify, binarize and estimate the resolution, as morvane-scan does;
// like morvane-scan, it stops when the search failed (code 0).
inline void run_corrector(void* handle, const PhotographedPage& photo, Answer& answer) {
    const ImageCApi input = photo.record();
    const int code = run_projective_correction(handle, &input);
    put(answer, code);
    if (code == 0) return;
    ControlPointCorners corners;
    VanishingPointsCApi points;
    std::memset(&points, 0, sizeof points);  // padding bytes take part in the comparison
    obtain_four_corners(handle, &corners);
    obtain_vanishing_point(handle, &points);
    put(answer, corners);
    put(answer, points);
    int width = 0, height = 0, resolution = 0;
    obtain_corrected_img_dimension(handle, &width, &height);
    Answer page(static_cast<size_t>(width) * height * photo.channels);
    ImageCApi output = {width, height, 0, 0, photo.channels, 0, page.data()};
    obtain_corrected_image(handle, &output);
    Answer bits(static_cast<size_t>((width + 31) / 32 * 4) * height);
    ImageCApi bitonal = {width, height, 0, 0, 1, 1, bits.data()};
    obtain_binarized_corrected_image(handle, &output, &bitonal);
    estimate_spatial_resolution(handle, &input, &resolution);
    put(answer, page.data(), page.size());
    put(answer, bits.data(), bits.size());
    put(answer, resolution);
}

inline void run_corner_search(void* handle, const PhotographedPage& photo, Answer& answer) {
    const ImageCApi input = photo.record();
    ControlPointCorners corners;
    put(answer, perform_corner_searching(handle, &input, &corners));
    put(answer, corners);
}

inline void run_blob_calculator(void* handle, const PhotographedPage& photo, Answer& answer) {
    const ImageCApi image = photo.ink_record();
    const int count = perform_blob_formulation(handle, &image);
    std::vector<int> labels(static_cast<size_t>(image.width + 2) * (image.height + 2));
    calculate_label_image(handle, &image, labels.data(), 1);
    std::vector<int> a(static_cast<size_t>(count)), b(a.size()), c(a.size()), d(a.size());
    obtain_blob_dimension_histogram(handle, &image, a.data(), b.data());
    obtain_blob_top_points(handle, &image, c.data(), d.data());
    int* xs = nullptr;
    int* ys = nullptr;
    int points = 0;
    try {
        points = obtain_blob_contours_one_by_one(handle, &image, &xs, &ys, &std::malloc);
    } catch (...) {
        std::free(xs);  // what the allocator did give is the caller's
        std::free(ys);
        throw;
    }
    const std::unique_ptr<int, decltype(&std::free)> own_xs(xs, &std::free), own_ys(ys, &std::free);
    for (const std::vector<int>* values : {&labels, &a, &b, &c, &d}) put(answer, values->data(), values->size());
    put(answer, xs, static_cast<size_t>(points));
    put(answer, ys, static_cast<size_t>(points));
}

inline void run_line_segments(void* handle, const PhotographedPage& photo, Answer& answer) {
    const ImageCApi image = photo.gray_record();
    int count = 0;
    const std::unique_ptr<double, decltype(&clean_lines)> lines(search_for_line_segments(handle, &image, &count),
                                                                &clean_lines);
    put(answer, lines.get(), 7 * static_cast<size_t>(count));
}

// One grade a use: each reads the whole photo at full size.
inline void run_quality(void* handle, const PhotographedPage& photo, Answer& answer) {
    const ImageCApi input = photo.record();
    const ControlPointCorners corners = caller_corners(photo);
    put(answer, evaluate_image_quality_given_corners(handle, &input, &corners));
}

inline const std::vector<Family>& all() {
    static const std::vector<Family> table = {
        {"version", nullptr, nullptr, run_version},
        {"free functions", nullptr, nullptr, run_free_functions},
        {"corrector", corrector_create, destroy_corrector, run_corrector},
        {"corrector, multi-scale binarization",
         [] {
             void* handle = corrector_create();
             set_binarization_method(handle, 1);
             return handle;
         },
         destroy_corrector, run_corrector},
        {"corner search 0", [] { return create_corner_search_enginee(0); }, destroy_corner_search_enginee,
         run_corner_search},
        {"corner search 6", [] { return create_corner_search_enginee(6); }, destroy_corner_search_enginee,
         run_corner_search},
        {"quality evaluator", create_image_quality_evaluator, destroy_image_quality_evaluator, run_quality},
        {"blob calculator", create_blob_calculator, delete_blob_calculator, run_blob_calculator},
        {"line segments", lsd_create, destroy_lsd, run_line_segments},
    };
    return table;
}

// One whole use of a family: its handle made, used and destroyed.
inline Answer answer_of(const Family& family, const PhotographedPage& photo) {
    void* handle = family.create != nullptr ? family.create() : nullptr;
    Answer answer;
    try {
        family.run(handle, photo, answer);
    } catch (...) {
        if (family.destroy != nullptr) family.destroy(handle);
        throw;
    }
    if (family.destroy != nullptr) family.destroy(handle);
    return answer;
}

}  // namespace families

#endif

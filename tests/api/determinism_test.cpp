// The searching families answer the same bytes twice on the same input, and
// two handles interleaved call by call answer what one alone does. The line
// segment family's fuzz target repeats each search on the same handle.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <vector>

#include "morvane/morvane.h"
#include "support/pixels.h"

namespace {

typedef std::vector<unsigned char> Bytes;

template <typename T>
void append(Bytes& out, const T* values, size_t count) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(values);
    out.insert(out.end(), bytes, bytes + count * sizeof(T));
}

// A tilted page with text marks on a desk.
struct Page {
    int width = 320, height = 240, channels;
    Bytes pixels;
    explicit Page(int c)
        : channels(c), pixels(support::page_photo(320, 240, support::quad(30, 25, 290, 40, 300, 230, 12, 215), c)) {}
    ImageCApi record() { return ImageCApi{width, height, 0, 0, channels, 0, pixels.data()}; }
};

// Runs `steps` steps of a family on one handle, twice, and on two handles
// interleaved step by step; every run must give the bytes of the first.
void expect_repeatable(const std::function<void*()>& create, const std::function<void(void*)>& destroy, int steps,
                       const std::function<void(void*, int, Bytes&)>& step) {
    Bytes alone[2], together[2];
    for (Bytes& answer : alone) {
        void* handle = create();
        for (int s = 0; s < steps; ++s) step(handle, s, answer);
        destroy(handle);
    }
    void* handles[2] = {create(), create()};
    for (int s = 0; s < steps; ++s)
        for (int h = 0; h < 2; ++h) step(handles[h], s, together[h]);
    for (void* handle : handles) destroy(handle);
    EXPECT_FALSE(alone[0].empty());
    EXPECT_EQ(alone[0], alone[1]);
    EXPECT_EQ(alone[0], together[0]);
    EXPECT_EQ(alone[0], together[1]);
}

const ControlPointCorners kTilted = {{30, 290, 300, 12}, {25, 40, 230, 215}};

}  // namespace

TEST(Determinism, CorrectorAndFreeFunctions) {
    for (int channels : {1, 3}) {
        Page page(channels);
        ImageCApi input = page.record();
        expect_repeatable(corrector_create, destroy_corrector, 3, [&](void* handle, int step, Bytes& out) {
            int width = 0, height = 0;
            if (step == 0) {
                const int code = run_projective_correction(handle, &input);
                ControlPointCorners corners;
                VanishingPointsCApi points;
                std::memset(&points, 0, sizeof points);  // padding takes part in the comparison
                obtain_four_corners(handle, &corners);
                obtain_vanishing_point(handle, &points);
                append(out, &code, 1);
                append(out, &corners, 1);
                append(out, &points, 1);
                return;
            }
            if (step == 1) obtain_corrected_img_dimension(handle, &width, &height);
            if (step == 2) obtain_corrected_img_dimension_given_corners(handle, &kTilted, &width, &height);
            Bytes pixels(static_cast<size_t>(width) * height * channels);
            ImageCApi output = {width, height, 0, 0, channels, 0, pixels.data()};
            if (step == 1) obtain_corrected_image(handle, &output);
            if (step == 2) obtain_corrected_image_given_corners(handle, &input, &kTilted, &output);
            out.insert(out.end(), pixels.begin(), pixels.end());
        });
        expect_repeatable([] { return nullptr; }, [](void*) {}, 1, [&](void*, int, Bytes& out) {
            int width = 0, height = 0;
            obtain_output_image_dimension(&kTilted, &width, &height);
            Bytes pixels(static_cast<size_t>(width) * height * channels, 7);
            ImageCApi output = {width, height, 0, 0, channels, 0, pixels.data()};
            perform_projective_correction(&kTilted, &input, &output);
            out.insert(out.end(), pixels.begin(), pixels.end());
        });
    }
}

TEST(Determinism, CornerSearch) {
    Page page(1);
    const ImageCApi input = page.record();
    for (int method : {0, 6}) {
        expect_repeatable([method] { return create_corner_search_enginee(method); }, destroy_corner_search_enginee, 2,
                          [&](void* engine, int, Bytes& out) {
                              ControlPointCorners corners;
                              const int code = perform_corner_searching(engine, &input, &corners);
                              append(out, &code, 1);
                              append(out, &corners, 1);
                          });
    }
}

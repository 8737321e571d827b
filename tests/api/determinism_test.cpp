// Every exported family answers the same bytes twice on the same input, and
// two handles of a family interleaved call by call answer what one alone does.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "api/exported_families.h"
#include "morvane/morvane.h"

namespace {

using families::PhotographedPage;

const ControlPointCorners kTilted = {{30, 290, 300, 12}, {25, 40, 230, 215}};

// Everything a corrector reports after one run, as bytes.
struct CorrectorAnswer {
    int code = 0;
    ControlPointCorners corners{};
    VanishingPointsCApi points{};
    int width = 0, height = 0;
    std::vector<unsigned char> corrected;

    bool operator==(const CorrectorAnswer& o) const {
        return code == o.code && std::memcmp(&corners, &o.corners, sizeof corners) == 0 &&
               std::memcmp(&points, &o.points, sizeof points) == 0 && width == o.width && height == o.height &&
               corrected == o.corrected;
    }
};

// The steps of one corrector run; step i of two handles can be interleaved.
void corrector_step(int step, void* handle, ImageCApi& input, CorrectorAnswer& answer) {
    switch (step) {
        case 0: answer.code = run_projective_correction(handle, &input); break;
        case 1:
            obtain_four_corners(handle, &answer.corners);
            std::memset(&answer.points, 0, sizeof answer.points);  // padding bytes take part in the comparison
            obtain_vanishing_point(handle, &answer.points);
            break;
        case 2: obtain_corrected_img_dimension(handle, &answer.width, &answer.height); break;
        case 3: {
            answer.corrected.assign(static_cast<size_t>(answer.width) * answer.height * input.channels, 0);
            ImageCApi out = {answer.width, answer.height, 0, 0, input.channels, 0, answer.corrected.data()};
            obtain_corrected_image(handle, &out);
            break;
        }
        case 4: {
            // Then the caller's corners, over the found ones.
            obtain_corrected_img_dimension_given_corners(handle, &kTilted, &answer.width, &answer.height);
            std::vector<unsigned char> out_pixels(static_cast<size_t>(answer.width) * answer.height * input.channels);
            ImageCApi out = {answer.width, answer.height, 0, 0, input.channels, 0, out_pixels.data()};
            obtain_corrected_image_given_corners(handle, &input, &kTilted, &out);
            answer.corrected.insert(answer.corrected.end(), out_pixels.begin(), out_pixels.end());
            break;
        }
        default: break;
    }
}

constexpr int kCorrectorSteps = 5;

std::vector<double> segments(void* lsd, const ImageCApi& image) {
    int count = 0;
    double* lines = search_for_line_segments(lsd, &image, &count);
    std::vector<double> copy(lines, lines + 7 * count);
    clean_lines(lines);
    return copy;
}

}  // namespace

TEST(Determinism, FreeFunctionsAnswerTheSameBytesTwice) {
    for (int channels : {1, 3}) {
        PhotographedPage page(320, 240, channels);
        ImageCApi input = page.record();
        int w = 0, h = 0;
        obtain_output_image_dimension(&kTilted, &w, &h);
        std::vector<unsigned char> first(static_cast<size_t>(w) * h * channels), second(first.size(), 7);
        ImageCApi out1 = {w, h, 0, 0, channels, 0, first.data()};
        ImageCApi out2 = {w, h, 0, 0, channels, 0, second.data()};
        perform_projective_correction(&kTilted, &input, &out1);
        perform_projective_correction(&kTilted, &input, &out2);
        EXPECT_EQ(first, second) << channels << " channels";
    }
}

TEST(Determinism, CorrectorAnswersTheSameTwiceAndWhenTwoHandlesInterleave) {
    for (int channels : {1, 3}) {
        PhotographedPage page(320, 240, channels);
        ImageCApi input = page.record();
        CorrectorAnswer alone[2], together[2];
        for (CorrectorAnswer& answer : alone) {
            void* handle = corrector_create();
            for (int step = 0; step < kCorrectorSteps; ++step) corrector_step(step, handle, input, answer);
            destroy_corrector(handle);
        }
        void* a = corrector_create();
        void* b = corrector_create();
        for (int step = 0; step < kCorrectorSteps; ++step) {
            corrector_step(step, a, input, together[0]);
            corrector_step(step, b, input, together[1]);
        }
        destroy_corrector(a);
        destroy_corrector(b);
        EXPECT_FALSE(alone[0].corrected.empty());
        EXPECT_TRUE(alone[0] == alone[1]) << channels << " channels";
        EXPECT_TRUE(alone[0] == together[0]) << channels << " channels";
        EXPECT_TRUE(alone[0] == together[1]) << channels << " channels";
    }
}

TEST(Determinism, LineSegmentsAnswerTheSameBytesTwiceAndWhenTwoHandlesInterleave) {
    PhotographedPage page(320, 240, 1), other(200, 300, 1);
    const ImageCApi input = page.record(), second_input = other.record();
    void* alone = lsd_create();
    const std::vector<double> first = segments(alone, input);
    const std::vector<double> first_other = segments(alone, second_input);
    EXPECT_FALSE(first.empty());
    EXPECT_EQ(segments(alone, input), first);
    destroy_lsd(alone);

    void* a = lsd_create();
    void* b = lsd_create();
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(segments(a, input), first);
        EXPECT_EQ(segments(b, second_input), first_other);
    }
    destroy_lsd(a);
    destroy_lsd(b);
}

namespace {

// Labels, sizes, top points and contours of one calculator, concatenated.
std::vector<int> blob_answer(void* calculator, const ImageCApi& image, int step) {
    std::vector<int> out;
    const int count = perform_blob_formulation(calculator, &image);
    out.push_back(count);
    if (step == 0) {
        std::vector<int> labels(static_cast<size_t>(image.width + 2) * (image.height + 2));
        calculate_label_image(calculator, &image, labels.data(), 1);
        out.insert(out.end(), labels.begin(), labels.end());
    } else if (step == 1) {
        std::vector<int> a(static_cast<size_t>(count)), b(a.size());
        obtain_blob_dimension_histogram(calculator, &image, a.data(), b.data());
        out.insert(out.end(), a.begin(), a.end());
        out.insert(out.end(), b.begin(), b.end());
        obtain_blob_top_points(calculator, &image, a.data(), b.data());
        out.insert(out.end(), a.begin(), a.end());
        out.insert(out.end(), b.begin(), b.end());
    } else {
        int* xs = nullptr;
        int* ys = nullptr;
        const int points = obtain_blob_contours_one_by_one(calculator, &image, &xs, &ys, &std::malloc);
        out.insert(out.end(), xs, xs + points);
        out.insert(out.end(), ys, ys + points);
        std::free(xs);
        std::free(ys);
    }
    return out;
}

}  // namespace

TEST(Determinism, BlobCalculatorAnswersTheSameTwiceAndWhenTwoHandlesInterleave) {
    PhotographedPage page(320, 240, 1);
    // Only 255 is background in a gray record: the text strokes and the desk
    // become components once the paper is made white.
    for (unsigned char& v : page.pixels) v = v > 150 ? 255 : v;
    const ImageCApi image = page.record();
    std::vector<int> alone[2][3], together[2][3];
    for (auto& run : alone) {
        void* calculator = create_blob_calculator();
        for (int step = 0; step < 3; ++step) run[step] = blob_answer(calculator, image, step);
        delete_blob_calculator(calculator);
    }
    void* a = create_blob_calculator();
    void* b = create_blob_calculator();
    for (int step = 0; step < 3; ++step) {
        together[0][step] = blob_answer(a, image, step);
        together[1][step] = blob_answer(b, image, step);
    }
    delete_blob_calculator(a);
    delete_blob_calculator(b);
    EXPECT_GT(alone[0][0][0], 1);
    for (int step = 0; step < 3; ++step) {
        EXPECT_EQ(alone[0][step], alone[1][step]) << step;
        EXPECT_EQ(alone[0][step], together[0][step]) << step;
        EXPECT_EQ(alone[0][step], together[1][step]) << step;
    }
}

TEST(Determinism, CornerSearchAnswersTheSameTwiceAndWhenTwoHandlesInterleave) {
    PhotographedPage page(320, 240, 1);
    const ImageCApi input = page.record();
    for (int method : {0, 6}) {
        ControlPointCorners alone[2], together[2];
        int codes[4];
        for (int i = 0; i < 2; ++i) {
            void* handle = create_corner_search_enginee(method);
            codes[i] = perform_corner_searching(handle, &input, &alone[i]);
            destroy_corner_search_enginee(handle);
        }
        void* a = create_corner_search_enginee(method);
        void* b = create_corner_search_enginee(method);
        codes[2] = perform_corner_searching(a, &input, &together[0]);
        codes[3] = perform_corner_searching(b, &input, &together[1]);
        // A second run on the same handles repeats the first.
        codes[2] += 10 * perform_corner_searching(a, &input, &together[0]);
        codes[3] += 10 * perform_corner_searching(b, &input, &together[1]);
        destroy_corner_search_enginee(a);
        destroy_corner_search_enginee(b);
        EXPECT_EQ(codes[0], codes[1]) << method;
        EXPECT_EQ(codes[2], 11 * codes[0]) << method;
        EXPECT_EQ(codes[3], 11 * codes[0]) << method;
        for (const ControlPointCorners& other : {alone[1], together[0], together[1]})
            EXPECT_EQ(std::memcmp(&alone[0], &other, sizeof other), 0) << method;
    }
}

// The corrector answers the same bytes twice on the same input, and two
// handles interleaved call by call answer what one alone does. The corner
// search and line segment fuzz targets repeat each search on the same handle.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "morvane/morvane.h"
#include "support/pixels.h"

TEST(Determinism, CorrectorAnswersAloneTwiceAndInterleavedAlike) {
    for (int channels : {1, 3}) {
        std::vector<unsigned char> pixels =
            support::page_photo(320, 240, support::quad(30, 25, 290, 40, 300, 230, 12, 215), channels);
        const ImageCApi input = {320, 240, 0, 0, channels, 0, pixels.data()};
        const ControlPointCorners tilted = {{30, 290, 300, 12}, {25, 40, 230, 215}};
        // Everything a run reports, as bytes; step s of each handle runs before step s + 1 of any.
        std::vector<unsigned char> answers[4];
        void* handles[4] = {corrector_create(), corrector_create(), corrector_create(), corrector_create()};
        const int order[3][2] = {{0, 0}, {1, 1}, {2, 3}};  // handles 0 and 1 alone, one after the other; 2 and 3 interleaved
        for (const auto& pair : order)
            for (int step = 0; step < 3; ++step)
                for (int h = pair[0]; h <= pair[1]; ++h) {
                    std::vector<unsigned char>& out = answers[h];
                    int width = 0, height = 0;
                    if (step == 0) {
                        ControlPointCorners corners;
                        VanishingPointsCApi points;
                        std::memset(&points, 0, sizeof points);  // padding takes part in the comparison
                        out.push_back(static_cast<unsigned char>(run_projective_correction(handles[h], &input)));
                        obtain_four_corners(handles[h], &corners);
                        obtain_vanishing_point(handles[h], &points);
                        out.insert(out.end(), reinterpret_cast<unsigned char*>(&corners),
                                   reinterpret_cast<unsigned char*>(&corners) + sizeof corners);
                        out.insert(out.end(), reinterpret_cast<unsigned char*>(&points),
                                   reinterpret_cast<unsigned char*>(&points) + sizeof points);
                        continue;
                    }
                    if (step == 1) obtain_corrected_img_dimension(handles[h], &width, &height);
                    if (step == 2) obtain_corrected_img_dimension_given_corners(handles[h], &tilted, &width, &height);
                    std::vector<unsigned char> image(static_cast<size_t>(width) * height * channels);
                    ImageCApi output = {width, height, 0, 0, channels, 0, image.data()};
                    if (step == 1) obtain_corrected_image(handles[h], &output);
                    if (step == 2) obtain_corrected_image_given_corners(handles[h], &input, &tilted, &output);
                    out.insert(out.end(), image.begin(), image.end());
                }
        for (void* handle : handles) destroy_corrector(handle);
        EXPECT_GT(answers[0].size(), 1000u);
        for (int h = 1; h < 4; ++h) EXPECT_EQ(answers[h], answers[0]) << channels << " channels, handle " << h;
    }
}

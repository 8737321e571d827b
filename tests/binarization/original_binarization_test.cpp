// The classical Sauvola and Wolf methods and the mean and deviation maps
// that they share.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "binarization/mean_and_deviation_maps.h"
#include "binarization/sauvola_binarization_original.h"
#include "binarization/wolf_binarization_original.h"
#include "support/images.h"

namespace geometric {
namespace {


TEST(MeanAndDeviationMaps, MatchABoxSummedPixelByPixel) {
    const common::BasicImage gray = support::noise_image(23, 31, 17u);
    const int windows[][2] = {{5, 5}, {4, 7}, {40, 3}};
    for (const auto& wnd : windows) {
        Image<double> mean(31, 23), deviation(31, 23);
        mean.set_window(wnd[0], wnd[1]);
        deviation.set_window(wnd[0], wnd[1]);
        calculate_mean_and_deviation_maps(gray, mean, deviation);
        for (int y = 0; y < 23; ++y)
            for (int x = 0; x < 31; ++x) {
                double sum = 0.0, square = 0.0, n = 0.0;
                for (int v = y - wnd[1] / 2; v <= y - wnd[1] / 2 + wnd[1] - 1; ++v)
                    for (int u = x - wnd[0] / 2; u <= x - wnd[0] / 2 + wnd[0] - 1; ++u) {
                        if (u < 0 || v < 0 || u >= 31 || v >= 23) continue;
                        const double p = gray.get_line_pointer(v)[u];
                        sum += p, square += p * p, n += 1.0;
                    }
                const double m = sum / n;
                ASSERT_NEAR(mean.at(x, y), m, 1e-9) << x << "," << y;
                ASSERT_NEAR(deviation.at(x, y), std::sqrt(square / n - m * m), 1e-6) << x << "," << y;
            }
    }
}

TEST(SauvolaBinarizationOriginal, WindowRule) {
    struct Case { int width, height, window; };
    const Case cases[] = {{204, 500, 51}, {203, 500, 51}, {200, 200, 51}, {196, 300, 49}, {40, 40, 11}, {8, 8, 3}, {2, 9, 3}};
    for (const Case& c : cases)
        EXPECT_EQ(SauvolaBinarizationOriginal::obtain_window_size(c.width, c.height), c.window) << c.width << "x" << c.height;
}

// A dark bar (gray 60) across bright paper (gray 200).
common::BasicImage bar_page() {
    common::BasicImage page = support::flat_image(120, 160, 200);
    for (int y = 50; y < 60; ++y)
        for (int x = 20; x < 140; ++x) page.get_line_pointer(y)[x] = 60;
    return page;
}

TEST(ClassicalMethods, InkIsTheBarOnly) {
    const common::BasicImage gray = bar_page();
    for (const int method : {0, 1}) {
        common::BasicImage output;
        bool done;
        if (method == 0) {
            SauvolaBinarizationOriginal sauvola(&gray, &output);
            done = sauvola.run_binarization();
        } else {
            WolfBinarizationOriginal wolf(&gray, &output);
            done = wolf.run_binarization();
        }
        ASSERT_TRUE(done);
        for (int y = 0; y < 120; y += 3)
            for (int x = 0; x < 160; x += 3) {
                const bool bar = y >= 50 && y < 60 && x >= 20 && x < 140;
                ASSERT_EQ(output.get_pixel(x, y), bar ? 1u : 0u) << method << " at " << x << "," << y;
            }
    }
}

TEST(WolfBinarizationOriginal, FlatPageHasNoInk) {
    // Every deviation is 0, so R is 0 and each threshold is not a number.
    const common::BasicImage gray = support::flat_image(30, 30, 90);
    common::BasicImage output;
    WolfBinarizationOriginal wolf(&gray, &output);
    ASSERT_TRUE(wolf.run_binarization());
    for (int i = 0; i < output.get_data_size(); ++i) EXPECT_EQ(output.get_data()[i], 0);
}

}  // namespace
}  // namespace geometric

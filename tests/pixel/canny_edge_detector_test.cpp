// Edge detection against the plain pixel-by-pixel route, the scaled Sobel
// sums and the rounded magnitudes, and the bounded follow at its depth and at
// its low limit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "common/basic_image.h"
#include "pixel/canny_edge_detector.h"
#include "support/images.h"

using common::BasicImage;
using geometric::CannyEdgeDetector;

namespace {

uint32_t next_random(uint32_t& state) { return state = state * 1664525u + 1013904223u; }

// The follow written as nested calls, the form the explicit stack must equal.
struct RecursiveFollow {
    unsigned char* marks;
    const unsigned char* magnitude;
    int width, low;
    void follow(int pixel, int depth) {
        if (depth >= CannyEdgeDetector::kFollowDepth) return;
        const int offsets[8] = {-width - 1, -width, -width + 1, -1, 1, width - 1, width, width + 1};
        for (int offset : offsets) {
            const int q = pixel + offset;
            if (marks[q] == 128 && magnitude[q] > low) {
                marks[q] = 255;
                follow(q, depth + 1);
            }
        }
    }
    void run(int height, int high) {
        const int count = width * height;
        for (int i = 0; i < count; ++i)
            if (marks[i] != 128 || i < width || i >= count - width || i % width == 0 || i % width == width - 1)
                marks[i] = 0;
        for (int i = 0; i < count; ++i)
            if (marks[i] == 128 && magnitude[i] >= high) {
                marks[i] = 255;
                follow(i, 0);
            }
        for (int i = 0; i < count; ++i)
            if (marks[i] == 128) marks[i] = 0;
    }
};

// The whole detector pixel by pixel, with divisions and clamped indices:
// the route the fast one must equal byte for byte.
std::vector<unsigned char> plain_edges(const BasicImage& gray, int low, int high) {
    const int w = gray.get_width(), h = gray.get_height();
    auto at = [&](int x, int y) {
        return static_cast<int>(gray.get_pixel(std::min(std::max(x, 0), w - 1), std::min(std::max(y, 0), h - 1)));
    };
    std::vector<int> dx(w * h), dy(w * h);
    std::vector<unsigned char> magnitude(w * h), marks(w * h, 255);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const int sx = at(x + 1, y - 1) + 2 * at(x + 1, y) + at(x + 1, y + 1) - at(x - 1, y - 1) - 2 * at(x - 1, y) -
                           at(x - 1, y + 1);
            const int sy = at(x - 1, y + 1) + 2 * at(x, y + 1) + at(x + 1, y + 1) - at(x - 1, y - 1) - 2 * at(x, y - 1) -
                           at(x + 1, y - 1);
            dx[y * w + x] = CannyEdgeDetector::scale_sobel_sum(sx);
            dy[y * w + x] = CannyEdgeDetector::scale_sobel_sum(sy);
            magnitude[y * w + x] = CannyEdgeDetector::magnitude_of(dx[y * w + x], dy[y * w + x]);
        }
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) {
            const int i = y * w + x, m = magnitude[i], gx = dx[i], gy = dy[i];
            if (m < low || (gx == 0 && gy == 0)) continue;
            const bool horizontal = std::abs(gx) >= std::abs(gy);
            const int axis = horizontal ? (gx > 0 ? 1 : -1) : (gy > 0 ? w : -w);
            const int diagonal = axis + (horizontal ? (gy >= 0 ? w : -w) : (gx >= 0 ? 1 : -1));
            const int r = horizontal ? (std::abs(gy) << 16) / std::abs(gx) : (std::abs(gx) << 16) / std::abs(gy);
            const int ahead = magnitude[i + axis] * (65536 - r) + magnitude[i + diagonal] * r;
            const int behind = magnitude[i - axis] * (65536 - r) + magnitude[i - diagonal] * r;
            if ((m << 16) > ahead && (m << 16) >= behind) marks[i] = 128;
        }
    RecursiveFollow{marks.data(), magnitude.data(), w, low}.run(h, high);
    return marks;
}

// Blobs and bars of random brightness on noise, blurred by a running 3 by 3
// mean: steep and gentle edges in every direction.
BasicImage scene(int height, int width, uint32_t seed) {
    BasicImage image = support::noise_image(height, width, seed);
    for (int k = 0; k < 12; ++k) {
        const int x0 = static_cast<int>(next_random(seed) % width), y0 = static_cast<int>(next_random(seed) % height);
        const int rx = 2 + static_cast<int>(next_random(seed) % 30), ry = 2 + static_cast<int>(next_random(seed) % 30);
        const unsigned value = next_random(seed) >> 24;
        for (int y = std::max(0, y0 - ry); y < std::min(height, y0 + ry); ++y)
            for (int x = std::max(0, x0 - rx); x < std::min(width, x0 + rx); ++x)
                if ((x - x0) * (x - x0) * ry * ry + (y - y0) * (y - y0) * rx * rx <= rx * rx * ry * ry || k % 3 == 0)
                    image.set_pixel(x, y, value);
    }
    BasicImage blurred(image);
    for (int y = 1; y < height - 1; ++y)
        for (int x = 1; x < width - 1; ++x) {
            unsigned sum = 0;
            for (int i = -1; i <= 1; ++i)
                for (int j = -1; j <= 1; ++j) sum += image.get_pixel(x + j, y + i);
            blurred.set_pixel(x, y, sum / 9);
        }
    return blurred;
}

}  // namespace

TEST(CannyEdgeDetector, EqualsThePlainPixelByPixelRoute) {
    const int cases[][4] = {{97, 131, 5, 15}, {64, 64, 0, 0}, {40, 33, 30, 60}, {17, 200, 1, 2}, {150, 90, 12, 12},
                            {3, 3, 0, 1},     {5, 40, -3, 8}};  // height, width, low, high
    for (int c = 0; c < 7; ++c) {
        const BasicImage image = scene(cases[c][0], cases[c][1], static_cast<uint32_t>(c + 1));
        BasicImage edges;
        CannyEdgeDetector::perform_edge_detect(cases[c][2], cases[c][3], image, edges);
        const std::vector<unsigned char> expected = plain_edges(image, cases[c][2], cases[c][3]);
        ASSERT_EQ(support::bytes_of(edges), expected) << "case " << c;
        if (c == 0) {
            EXPECT_GT(std::count(expected.begin(), expected.end(), 255), 300);
        }
    }
    // Raw noise: gradients up to the clamps, every direction and ratio.
    const BasicImage noise = support::noise_image(37, 70, 5u);
    BasicImage edges;
    CannyEdgeDetector::perform_edge_detect(40, 90, noise, edges);
    ASSERT_EQ(support::bytes_of(edges), plain_edges(noise, 40, 90));
}

TEST(CannyEdgeDetector, ScaledSobelAndRoundedMagnitudes) {
    const int sums[][2] = {{-1020, -128}, {-512, -128}, {-511, -127}, {-5, -1}, {-3, 0}, {0, 0},
                           {3, 0},        {5, 1},       {511, 127},   {512, 127}, {1020, 127}};
    for (const auto& s : sums) EXPECT_EQ(CannyEdgeDetector::scale_sobel_sum(s[0]), s[1]) << s[0];
    // Every pair of scaled gradients: the nearest integer to the root, k for
    // k^2 - k + 1 <= dx^2 + dy^2 <= k^2 + k.
    for (int dx = -128; dx <= 127; ++dx)
        for (int dy = -128; dy <= 127; ++dy) {
            const int k = CannyEdgeDetector::magnitude_of(dx, dy), squares = dx * dx + dy * dy;
            ASSERT_TRUE(k * k - k < squares || squares == 0) << dx << "," << dy;
            ASSERT_LE(squares, k * k + k) << dx << "," << dy;
        }
}

// A straight chain of candidates from a seed: the follow keeps the seed and
// kFollowDepth steps along; a link needs magnitude strictly above low; a
// second seed further along starts again.
TEST(CannyEdgeDetector, FollowStopsAtItsDepthAndNeedsMoreThanLow) {
    const int width = 300, height = 3;
    std::vector<unsigned char> marks(width * height, 0), magnitude(width * height, 30);
    const int row = width;
    for (int x = 1; x < width - 1; ++x) marks[row + x] = 128;
    magnitude[row + 1] = 90;  // the seed
    std::vector<unsigned char> followed(marks);
    CannyEdgeDetector::follow_edges(followed.data(), magnitude.data(), width, height, 29, 90);
    for (int x = 0; x < width; ++x)
        EXPECT_EQ(followed[row + x], (x >= 1 && x <= 1 + CannyEdgeDetector::kFollowDepth) ? 255 : 0) << x;

    std::vector<unsigned char> at_low(marks);
    CannyEdgeDetector::follow_edges(at_low.data(), magnitude.data(), width, height, 30, 90);
    for (int x = 0; x < width; ++x) EXPECT_EQ(at_low[row + x], x == 1 ? 255 : 0) << x;

    magnitude[row + 200] = 95;  // a later seed follows both ways
    std::vector<unsigned char> two(marks);
    CannyEdgeDetector::follow_edges(two.data(), magnitude.data(), width, height, 29, 90);
    for (int x = 0; x < width; ++x) {
        const bool kept = (x >= 1 && x <= 65) || (x >= 200 - 64 && x <= 200 + 64);
        EXPECT_EQ(two[row + x], kept ? 255 : 0) << x;
    }
}


// The warp against plain per-pixel versions of its mapping on random quads:
// the incremental evaluation with floor, the warp's own order of sums, must agree bit for bit; the
// direct formula may differ only where accumulation moves a floor.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "correction/projective_correction.h"
#include "support/images.h"

namespace {

using geometric::ProjectiveCorrection;
using support::Corners;

struct Position {
    double x, y;
};

// The mapping evaluated directly for each pixel.
Position direct_position(const geometric::ProjectiveWarpCoefficients& k, int u, int v, int width, int height) {
    const double w = 1.0 + k.g * u / width + k.h * v / height;
    return {(k.x0 + k.a * u / width + k.b * v / height) / w, (k.y0 + k.d * u / width + k.e * v / height) / w};
}

// The warp one pixel at a time, in its own order of sums: incremental numerators and
// denominator, std::floor, the sampler's member function called directly.
template <typename PositionOf>
void reference_warp(const common::BasicImage& input, common::BasicImage& output, const geometric::Sampling& sampling,
                    geometric::InterpolationType interpolation, const unsigned char* fill, PositionOf position_of) {
    const int bytes = sampling.get_bytes_per_pixel();
    const int iw = input.get_width(), ih = input.get_height();
    for (int v = 0; v < output.get_height(); ++v)
        for (int u = 0; u < output.get_width(); ++u) {
            const Position p = position_of(u, v);
            unsigned char* out = output.get_data() + (v * output.get_width() + u) * bytes;
            const double fx_floor = std::floor(p.x), fy_floor = std::floor(p.y);
            const bool inside = fx_floor >= 0 && fx_floor < iw && fy_floor >= 0 && fy_floor < ih;
            if (!inside) {
                std::memcpy(out, fill, static_cast<size_t>(bytes));
                continue;
            }
            const int xi = static_cast<int>(fx_floor), yi = static_cast<int>(fy_floor);
            const unsigned char* source = input.get_data() + yi * sampling.get_row_size() + xi * bytes;
            if (xi >= 1 && xi < iw - 2 && yi >= 1 && yi < ih - 2) {
                const float fx = static_cast<float>(p.x - xi), fy = static_cast<float>(p.y - yi);
                switch (interpolation) {
                    case geometric::INTERPOLATION_LINEAR: sampling.sampling_linear(source, fx, fy, out); break;
                    case geometric::INTERPOLATION_COLOR_LINEAR: sampling.color_linear(source, fx, fy, out); break;
                    default: sampling.sampling_nearest(source, fx, fy, out); break;
                }
            } else {
                std::memcpy(out, source, static_cast<size_t>(bytes));
            }
        }
}

// Random quads around a 64 x 48 image: perturbed rectangles reaching past
// the border, every third one made a parallelogram.
std::vector<Corners> random_quads(unsigned seed, int count) {
    std::mt19937 random(seed);
    auto offset = [&random](int range) { return static_cast<float>(static_cast<int>(random() % (2 * range + 1)) - range); };
    std::vector<Corners> quads;
    for (int i = 0; i < count; ++i) {
        Corners c = support::corners(4 + offset(12), 3 + offset(10), 60 + offset(12), 4 + offset(10),
                                       58 + offset(12), 45 + offset(10), 5 + offset(12), 44 + offset(10));
        if (i % 3 == 0) {
            c[2].x = c[1].x + c[3].x - c[0].x;
            c[2].y = c[1].y + c[3].y - c[0].y;
        }
        if (i % 5 == 1) c[1].x += 0.37f;  // non-integer corners too
        quads.push_back(c);
    }
    return quads;
}

// Incremental, as the warp accumulates: row bases, then column steps, row by row.
std::vector<Position> incremental_positions(const geometric::ProjectiveWarpCoefficients& k, int width, int height) {
    std::vector<Position> positions(static_cast<size_t>(width * height));
    double bx = k.x0, by = k.y0, bw = 1.0;
    for (int v = 0; v < height; ++v) {
        double nx = bx, ny = by, w = bw;
        for (int u = 0; u < width; ++u) {
            positions[static_cast<size_t>(v * width + u)] = {nx / w, ny / w};
            nx += k.a / width;
            ny += k.d / width;
            w += k.g / width;
        }
        bx += k.b / height;
        by += k.e / height;
        bw += k.h / height;
    }
    return positions;
}

struct Run {
    common::BasicImage output;
    geometric::ProjectiveWarpCoefficients k;
};

class WarpReference : public ::testing::TestWithParam<common::ImageType> {};

TEST_P(WarpReference, FastWarpMatchesTheStatedIncrementalEvaluation) {
    const common::ImageType type = GetParam();
    const unsigned char fill[4] = {3, 5, 7, 9};
    int quad_index = 0;
    for (const Corners& corners : random_quads(2024, 60)) {
        common::BasicImage input = support::noise_image(48, 64, 100 + static_cast<unsigned>(quad_index++), type);
        common::BasicImage output;
        ProjectiveCorrection correction(&input, &output);
        correction.set_filling_mode(0);
        std::memcpy(correction.get_filling_pixel(), fill, 4);
        correction.set_control_points(corners);
        correction.run_correction();

        const geometric::ProjectiveWarpCoefficients k = ProjectiveCorrection::calculate_warp_coefficients(corners);
        const int width = output.get_width(), height = output.get_height();
        common::BasicImage expected(height, width, type);
        const geometric::Sampling sampling(type, 64, correction.get_para().interpolation);
        const std::vector<Position> positions = incremental_positions(k, width, height);
        reference_warp(input, expected, sampling, correction.get_para().interpolation, fill,
                       [&](int u, int v) { return positions[static_cast<size_t>(v * width + u)]; });
        ASSERT_TRUE(support::same_bytes(output, expected)) << "quad " << quad_index;

        // The direct formula: a difference must sit where a floor is within
        // rounding of an integer, and such places are rare.
        common::BasicImage direct(height, width, type);
        reference_warp(input, direct, sampling, correction.get_para().interpolation, fill,
                       [&](int u, int v) { return direct_position(k, u, v, width, height); });
        const int bytes = sampling.get_bytes_per_pixel();
        int differing = 0;
        for (int v = 0; v < height; ++v)
            for (int u = 0; u < width; ++u) {
                const int at = (v * width + u) * bytes;
                if (std::memcmp(output.get_data() + at, direct.get_data() + at, static_cast<size_t>(bytes)) == 0)
                    continue;
                ++differing;
                const Position p = direct_position(k, u, v, width, height);
                const double to_integer = std::min(std::fabs(p.x - std::round(p.x)), std::fabs(p.y - std::round(p.y)));
                EXPECT_LT(to_integer, 1e-9) << "quad " << quad_index << " at " << u << "," << v;
            }
        EXPECT_LE(differing, width * height / 100) << "quad " << quad_index;
    }
}

// Pages lying sideways, whose output is written in tiles: rows of pieces
// cut at tile edges must see the same sums as whole rows, at odd widths, one
// past a tile, one pixel wide, and with border and fill pixels in the tiles.
TEST_P(WarpReference, SidewaysWarpInTilesMatchesTheRowByRowEvaluation) {
    const common::ImageType type = GetParam();
    const unsigned char fill[4] = {3, 5, 7, 9};
    struct Case {
        int width, height;
        Corners corners;
        int output_width, output_height;
    };
    const Case cases[] = {
        {300, 320, support::corners(20, 300, 20, 44, 150, 44, 148, 300), 257, 130},
        {200, 240, support::corners(10, 200, 10, 199.8f, 150, 199.8f, 150, 200), 1, 141},
        {300, 320, support::corners(-15, 330, -5, -20, 310, -10, 305, 345), 354, 319},
    };
    unsigned seed = 7;
    for (const Case& c : cases) {
        common::BasicImage input = support::noise_image(c.height, c.width, seed++, type);
        common::BasicImage output;
        ProjectiveCorrection correction(&input, &output);
        correction.set_filling_mode(0);
        std::memcpy(correction.get_filling_pixel(), fill, 4);
        correction.set_control_points(c.corners);
        correction.run_correction();
        const int width = output.get_width(), height = output.get_height();
        ASSERT_EQ(width, c.output_width);
        ASSERT_EQ(height, c.output_height);

        const geometric::ProjectiveWarpCoefficients k = ProjectiveCorrection::calculate_warp_coefficients(c.corners);
        const std::vector<Position> positions = incremental_positions(k, width, height);
        common::BasicImage expected(height, width, type);
        const geometric::Sampling sampling(type, c.width, correction.get_para().interpolation);
        reference_warp(input, expected, sampling, correction.get_para().interpolation, fill,
                       [&](int u, int v) { return positions[static_cast<size_t>(v * width + u)]; });
        EXPECT_TRUE(support::same_bytes(output, expected)) << width << " x " << height;
    }
}

INSTANTIATE_TEST_SUITE_P(Types, WarpReference, ::testing::Values(common::GRAY, common::RGB, common::BGRA));

// Byte-exact guard for any change to the warp: checksums of fixed warps.
TEST(WarpChecksum, FixedPerspectiveWarpsKeepTheirBytes) {
    struct Case {
        common::ImageType type;
        uint64_t checksum;
    };
    const Case cases[] = {
        {common::GRAY, 2348078555500144555ull},
        {common::RGB, 1864391656639300596ull},
        {common::BINARY, 14159402824799689663ull},
    };
    for (const Case& c : cases) {
        const common::BasicImage source = support::noise_image(220, 300, 99, c.type);
        auto warp = [&source] {  // a fresh input each run: the binary path converts it
            common::BasicImage input(source), output;
            ProjectiveCorrection correction(&input, &output);
            correction.set_control_points(support::corners(21.5f, 12, 281, 30, 268, 215.25f, -9, 190));
            correction.run_correction();
            return output;
        };
        const common::BasicImage first = warp(), second = warp();
        EXPECT_TRUE(support::same_bytes(first, second)) << c.type;
        EXPECT_EQ(support::checksum(first), c.checksum) << c.type;
    }
}

}  // namespace

// The blob calculator family through the shared library, as a caller uses
// it: create, form, query into its own arrays, delete.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "morvane/morvane.h"

namespace {

// A drawing ('#' ink) as a record: 1-bit with rows padded to 32-bit words, or
// gray with ink 0 and paper 255.
struct Record {
    std::vector<unsigned char> bytes;
    ImageCApi image;

    Record(const std::vector<std::string>& lines, bool binary) {
        const int height = static_cast<int>(lines.size()), width = static_cast<int>(lines[0].size());
        const int row = binary ? (width + 31) / 32 * 4 : width;
        bytes.assign(static_cast<size_t>(row) * height, binary ? 0 : 255);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                if (lines[y][x] == '#') {
                    if (binary) bytes[y * row + x / 8] |= static_cast<unsigned char>(0x80 >> (x % 8));
                    else bytes[y * row + x] = 0;
                }
        image = ImageCApi{width, height, 0, 0, 1, binary ? 1 : 0, bytes.data()};
    }
};

std::vector<size_t> allocated_sizes;
size_t allocations_left = static_cast<size_t>(-1);  // the allocator answers NULL when none are left
void* counting_allocate(size_t bytes) {
    allocated_sizes.push_back(bytes);
    if (allocations_left == 0) return nullptr;
    --allocations_left;
    return std::malloc(bytes == 0 ? 1 : bytes);
}

}  // namespace

TEST(BlobCalculatorFamily, BinaryAndGrayRecordsGiveTheSameAnswers) {
    const std::vector<std::string> page = {"##......#", "##...#..#", ".....#...", "#.......#"};
    for (bool binary : {true, false}) {
        Record record(page, binary);
        const ImageCApi* image = &record.image;
        void* calculator = create_blob_calculator();
        ASSERT_EQ(perform_blob_formulation(calculator, image), 5);
        std::vector<int> heights(5), widths(5), xs(5), ys(5);
        obtain_blob_dimension_histogram(calculator, image, heights.data(), widths.data());
        EXPECT_EQ(heights, (std::vector<int>{2, 2, 2, 1, 1}));
        EXPECT_EQ(widths, (std::vector<int>{2, 1, 1, 1, 1}));
        obtain_blob_top_points(calculator, image, xs.data(), ys.data());
        EXPECT_EQ(xs, (std::vector<int>{0, 8, 5, 0, 8}));
        EXPECT_EQ(ys, (std::vector<int>{0, 0, 1, 3, 3}));

        std::vector<int> labels((9 + 2) * (4 + 2), -1);
        calculate_label_image(calculator, image, labels.data(), 1);
        const int probes[][3] = {{-1, -1, 0}, {0, 0, 1}, {1, 1, 1}, {8, 1, 2}, {5, 2, 3}, {0, 3, 4}, {8, 3, 5}, {0, 2, 0}};
        for (const auto& p : probes) EXPECT_EQ(labels[(p[1] + 1) * 11 + p[0] + 1], p[2]) << p[0] << "," << p[1];

        allocated_sizes.clear();
        int* contour_xs = nullptr;
        int* contour_ys = nullptr;
        const int count = obtain_blob_contours_one_by_one(calculator, image, &contour_xs, &contour_ys, counting_allocate);
        EXPECT_EQ(count, 4 + 2 + 2 + 1 + 1);  // the square, two bars of two, two dots
        EXPECT_EQ(allocated_sizes, (std::vector<size_t>{4u * count, 4u * count}));
        EXPECT_EQ(contour_xs[0], 0);
        EXPECT_EQ(contour_ys[count - 1], 3);
        std::free(contour_xs);
        std::free(contour_ys);
        // An allocator out of memory on its second call: std::bad_alloc, and
        // the first buffer is the caller's to free.
        allocations_left = 1;
        EXPECT_THROW(obtain_blob_contours_one_by_one(calculator, image, &contour_xs, &contour_ys, counting_allocate),
                     std::bad_alloc);
        allocations_left = static_cast<size_t>(-1);
        EXPECT_NE(contour_xs, nullptr);
        EXPECT_EQ(contour_ys, nullptr);
        std::free(contour_xs);
        EXPECT_NE(obtain_runs_image(calculator, image), nullptr);
        delete_blob_calculator(calculator);
    }
}


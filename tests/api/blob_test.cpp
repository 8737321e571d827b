// The blob calculator family through the shared library, as a caller uses
// it: create, form, query into its own arrays, delete.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "morvane/morvane.h"

namespace {

// A bitonal record drawn as text, rows padded to whole 32-bit words.
struct BinaryRecord {
    std::vector<unsigned char> bytes;
    ImageCApi image;

    explicit BinaryRecord(const std::vector<std::string>& lines) {
        const int height = static_cast<int>(lines.size());
        const int width = static_cast<int>(lines[0].size());
        const int row_size = (width + 31) / 32 * 4;
        bytes.assign(static_cast<size_t>(row_size) * height, 0);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                if (lines[y][x] == '#') bytes[y * row_size + x / 8] |= static_cast<unsigned char>(0x80 >> (x % 8));
        image = ImageCApi{width, height, 0, 0, 1, 1, bytes.data()};
    }
};

// The same drawing in gray: ink 0, paper 255.
struct GrayRecord {
    std::vector<unsigned char> bytes;
    ImageCApi image;

    explicit GrayRecord(const std::vector<std::string>& lines) {
        const int height = static_cast<int>(lines.size());
        const int width = static_cast<int>(lines[0].size());
        for (const std::string& line : lines)
            for (char c : line) bytes.push_back(c == '#' ? 0 : 255);
        image = ImageCApi{width, height, 0, 0, 1, 0, bytes.data()};
    }
};

int allocations = 0;
std::vector<size_t> allocated_sizes;

void* counting_allocate(size_t bytes) {
    ++allocations;
    allocated_sizes.push_back(bytes);
    return std::malloc(bytes == 0 ? 1 : bytes);
}

const std::vector<std::string> kPage = {"##......#", "##...#..#", ".....#...", "#.......#"};

}  // namespace

TEST(BlobCalculatorFamily, BinaryAndGrayRecordsGiveTheSameAnswers) {
    BinaryRecord binary(kPage);
    GrayRecord gray(kPage);
    for (ImageCApi* image : {&binary.image, &gray.image}) {
        void* calculator = create_blob_calculator();
        ASSERT_EQ(perform_blob_formulation(calculator, image), 5);
        std::vector<int> heights(5), widths(5), xs(5), ys(5);
        obtain_blob_dimension_histogram(calculator, image, heights.data(), widths.data());
        EXPECT_EQ(heights, (std::vector<int>{2, 2, 2, 1, 1}));
        EXPECT_EQ(widths, (std::vector<int>{2, 1, 1, 1, 1}));
        obtain_blob_top_points(calculator, image, xs.data(), ys.data());
        EXPECT_EQ(xs, (std::vector<int>{0, 8, 5, 0, 8}));
        EXPECT_EQ(ys, (std::vector<int>{0, 0, 1, 3, 3}));

        const int border = 1;
        std::vector<int> labels((9 + 2) * (4 + 2), -1);
        calculate_label_image(calculator, image, labels.data(), border);
        const int probes[][3] = {{-1, -1, 0}, {0, 0, 1}, {1, 1, 1}, {8, 1, 2}, {5, 2, 3}, {0, 3, 4}, {8, 3, 5}, {0, 2, 0}};
        for (const auto& p : probes) EXPECT_EQ(labels[(p[1] + border) * 11 + p[0] + border], p[2]) << p[0] << "," << p[1];

        allocations = 0;
        allocated_sizes.clear();
        int* contour_xs = nullptr;
        int* contour_ys = nullptr;
        const int count = obtain_blob_contours_one_by_one(calculator, image, &contour_xs, &contour_ys,
                                                          counting_allocate);
        // 4 for the square, 2 for each bar of two, 1 for each dot.
        EXPECT_EQ(count, 4 + 2 + 2 + 1 + 1);
        EXPECT_EQ(allocations, 2);
        EXPECT_EQ(allocated_sizes, (std::vector<size_t>{4u * count, 4u * count}));
        EXPECT_EQ(contour_xs[0], 0);
        EXPECT_EQ(contour_ys[count - 1], 3);
        std::free(contour_xs);
        std::free(contour_ys);

        EXPECT_NE(obtain_runs_image(calculator, image), nullptr);
        delete_blob_calculator(calculator);
    }
}

TEST(BlobCalculatorFamily, NeighborhoodFourSplitsCornerContacts) {
    BinaryRecord diagonal({"#..", ".#.", "..#"});
    const std::vector<std::pair<int, int>> cases = {{4, 3}, {8, 1}, {0, 1}, {6, 1}};
    for (const auto& c : cases) {
        void* calculator = create_blob_calculator();
        set_neighborhood(calculator, c.first);
        EXPECT_EQ(perform_blob_formulation(calculator, &diagonal.image), c.second) << c.first;
        delete_blob_calculator(calculator);
    }
}

TEST(BlobCalculatorFamily, EmptyImageStillAllocatesTheContourArraysTwice) {
    BinaryRecord empty({"....", "...."});
    void* calculator = create_blob_calculator();
    EXPECT_EQ(perform_blob_formulation(calculator, &empty.image), 0);
    allocations = 0;
    allocated_sizes.clear();
    int* xs = nullptr;
    int* ys = nullptr;
    EXPECT_EQ(obtain_blob_contours_one_by_one(calculator, &empty.image, &xs, &ys, counting_allocate), 0);
    EXPECT_EQ(allocations, 2);
    EXPECT_EQ(allocated_sizes, (std::vector<size_t>{0u, 0u}));
    std::free(xs);
    std::free(ys);
    std::vector<int> labels(4 * 2, 7);
    calculate_label_image(calculator, &empty.image, labels.data(), 0);
    EXPECT_EQ(labels, std::vector<int>(8, 0));
    delete_blob_calculator(calculator);
    delete_blob_calculator(nullptr);
}

TEST(BlobCalculatorFamily, ScaleImagesThroughTheRecords) {
    const std::vector<std::string> coarse = {"......#.", ".###....", ".....###", ".....###"};
    for (bool only : {false, true}) {
        BinaryRecord binary(coarse);
        std::vector<unsigned char> scale_bytes(16 * 8, 0);
        ImageCApi scale{16, 8, 0, 0, 1, 0, scale_bytes.data()};
        void* calculator = create_blob_calculator();
        const int result = only ? create_scale_img_only(calculator, 1, &scale, &binary.image, 0, 4, false, 5.0, 2.0)
                                : create_scale_img(calculator, 1, &scale, &binary.image, 0, 4, false, 5.0, 2.0);
        EXPECT_EQ(result, 1);
        EXPECT_EQ(scale_bytes[2 * 16 + 2], 2);
        EXPECT_EQ(scale_bytes[3 * 16 + 7], 2);
        EXPECT_EQ(scale_bytes[3 * 16 + 8], 0);
        // The dot at (6, 0) stays only with create_scale_img_only.
        EXPECT_EQ(binary.bytes[0] & 0x02, only ? 0x02 : 0);
        delete_blob_calculator(calculator);
    }
    void* calculator = create_blob_calculator();
    BinaryRecord binary(coarse);
    std::vector<unsigned char> scale_bytes(16 * 8, 0);
    ImageCApi scale{16, 8, 0, 0, 1, 0, scale_bytes.data()};
    try {
        create_scale_img_only(calculator, 5, &scale, &binary.image, 0, 4, false, 5.0, 2.0);
        ADD_FAILURE() << "a level difference of 5 must throw";
    } catch (const char* text) {
        EXPECT_STREQ(text, "scale level difference not served by create_scale_img_only");
    }
    delete_blob_calculator(calculator);
}

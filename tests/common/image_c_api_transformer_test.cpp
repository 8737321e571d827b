// The boundary record: types chosen from the record, the fixed 300 dots per
// inch, the way back. The C consumer checks the record layouts.
#include <gtest/gtest.h>

#include "common/image_c_api_transformer.h"

using morvane::ImageCApiTransformer;

TEST(ImageCApiTransformer, RecordBecomesAViewOfTheRightType) {
    unsigned char pixels[64] = {0};
    struct Case { int channels; int is_binary; common::ImageType type; } cases[] = {
        {1, 0, common::GRAY}, {0, 0, common::GRAY}, {7, 0, common::GRAY}, {3, 0, common::RGB},
        {4, 0, common::BGRA}, {3, 1, common::BINARY}, {1, -2, common::BINARY},
    };
    for (const Case& c : cases) {
        ImageCApi record = {4, 2, 72, 96, c.channels, c.is_binary, pixels};
        common::BasicImage image(5, 5, common::GRAY);
        ImageCApiTransformer::transform_c_api_image_to_image(record, image);
        EXPECT_EQ(image.get_image_type(), c.type) << c.channels << " " << c.is_binary;
        EXPECT_FALSE(image.get_owns_data());
        EXPECT_EQ(image.get_data(), pixels);
        EXPECT_EQ(image.get_width(), 4);
        EXPECT_EQ(image.get_height(), 2);
        // The record's resolutions are ignored on the way in.
        EXPECT_EQ(image.get_x_resolution(), 300);
        EXPECT_EQ(image.get_y_resolution(), 300);
    }
}

TEST(ImageCApiTransformer, ImageBecomesARecord) {
    common::BasicImage rgb(3, 5, common::RGB, 150, 200);
    ImageCApi record = {0, 0, 0, 0, -1, 9, nullptr};
    ImageCApiTransformer::transform_image_to_c_api_image(rgb, record);
    EXPECT_EQ(record.width, 5);
    EXPECT_EQ(record.height, 3);
    EXPECT_EQ(record.x_resolution, 150);
    EXPECT_EQ(record.y_resolution, 200);
    EXPECT_EQ(record.channels, 3);
    EXPECT_EQ(record.is_binary, 0);
    EXPECT_EQ(record.data, rgb.get_data());

    common::BasicImage binary(3, 5, common::BINARY);
    record.channels = 17;
    ImageCApiTransformer::transform_image_to_c_api_image(binary, record);
    EXPECT_EQ(record.is_binary, 1);
    EXPECT_EQ(record.channels, 17);  // a binary image has no channel count to give
}

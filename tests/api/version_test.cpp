// The version family answers its constant texts through the shared library.
#include <gtest/gtest.h>

#include "morvane/morvane.h"

TEST(VersionFamily, AnswersTheConstantTexts) {
    EXPECT_STREQ(morvane_get_version_number(), "version of library: 16.1.8.9");
    EXPECT_STREQ(morvane_get_branch_name(), "git branch: version_16.1.8.xx");
    EXPECT_STREQ(morvane_get_sha(), "git sha: 85f81e8fe173efda1e5b0ddcfa2630298ac03c14");
}

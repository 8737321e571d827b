// The chain walks of a stroke and their shortcuts on a chain deep enough that
// a recursion would overflow. Shortcuts made stale by later merges are
// checked by the formation against a flood fill.
#include <gtest/gtest.h>

#include <vector>

#include "components/binary_connected_component.h"

using namespace geometric;

namespace {

typedef BinaryConnectedComponent Stroke;

// Links strokes[0] -> strokes[1] -> ... by next and previous.
void chain(std::vector<Stroke>& strokes) {
    for (size_t i = 0; i + 1 < strokes.size(); ++i) {
        strokes[i].next = &strokes[i + 1];
        strokes[i + 1].previous = &strokes[i];
    }
}

}  // namespace

// Deep enough that an unbounded recursion would be a risk; every stroke
// passed stores the end found, the ends themselves store nothing.
TEST(BinaryConnectedComponent, FindsStoreTheEndsInEveryStrokePassedWithoutRecursion) {
    std::vector<Stroke> strokes(400000);
    chain(strokes);
    EXPECT_EQ(strokes.back().get_first_element(), &strokes.front());
    EXPECT_EQ(strokes.front().get_last_element(), &strokes.back());
    EXPECT_EQ(strokes.front().cached_first, nullptr);
    EXPECT_EQ(strokes.back().cached_last, nullptr);
    for (size_t i = 1; i < strokes.size(); ++i) {
        ASSERT_EQ(strokes[i].cached_first, &strokes.front()) << i;
        ASSERT_EQ(strokes[i - 1].cached_last, &strokes.back()) << i;
    }
}

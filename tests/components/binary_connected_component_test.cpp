// The chain walks of a stroke and their shortcuts.
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

TEST(BinaryConnectedComponent, StaleShortcutsStayCorrectAndAreShortened) {
    // Chain a: 0 -> 1 -> 2 with shortcuts to 0. Then chain b (3 -> 4) is
    // spliced in front: 3 -> 4 -> 0 -> 1 -> 2. The shortcut of 2 still points
    // at 0, no longer the head; the find goes on from there.
    std::vector<Stroke> a(3);
    chain(a);
    a[2].get_first_element();
    std::vector<Stroke> b(2);
    chain(b);
    b[1].next = &a[0];
    a[0].previous = &b[1];

    EXPECT_EQ(a[2].get_first_element(), &b[0]);
    EXPECT_EQ(a[2].cached_first, &b[0]);
    EXPECT_EQ(a[0].cached_first, &b[0]);
    EXPECT_EQ(b[1].cached_first, &b[0]);
    // A shortcut that reaches the head is returned without being rewritten.
    EXPECT_EQ(a[1].cached_first, &a[0]);
    EXPECT_EQ(a[1].get_first_element(), &b[0]);
    EXPECT_EQ(a[1].cached_first, &b[0]);

    // The tail side: splice a third chain after the tail.
    EXPECT_EQ(b[0].get_last_element(), &a[2]);
    Stroke after;
    a[2].next = &after;
    after.previous = &a[2];
    EXPECT_EQ(b[0].get_last_element(), &after);
    EXPECT_EQ(b[0].cached_last, &after);
    EXPECT_EQ(a[2].cached_last, &after);
    // Not on the path taken: left stale, still pointing toward the tail.
    EXPECT_EQ(a[0].cached_last, &a[2]);
}

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

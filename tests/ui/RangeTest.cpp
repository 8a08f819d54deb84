#include "ui/Range.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

TEST(Range, OfTheFirstChannelEndsAtTheLast) {
    EXPECT_EQ(Range::first(8), (Range{1, 8}));
    EXPECT_EQ(Range::first(1), (Range{1, 1}));
    EXPECT_EQ(Range::first(0), (Range{1, 1}));
    EXPECT_EQ(Range::first(-5), (Range{1, 1}));
}

TEST(Range, OfTheLastChannelBeginsAtTheFirstAndEndsAtTheOutput) {
    EXPECT_EQ(Range::last(3, 64), (Range{3, 64}));
    EXPECT_EQ(Range::last(0, 64), (Range{1, 64}));
}

TEST(Range, OfTheLastChannelEndsAt128) { EXPECT_EQ(Range::last(1, 200), (Range{1, 128})); }

TEST(Range, OfTheLastChannelIsTheFirstWithoutAnOutput) {
    EXPECT_EQ(Range::last(1, 0), (Range{1, 1}));
    EXPECT_EQ(Range::last(9, 4), (Range{9, 9}));
}

TEST(Range, KeepsWhatIsMovedInside) {
    const Range range{3, 8};
    EXPECT_EQ(range.moved(5, 1), 6);
    EXPECT_EQ(range.moved(8, 1), 8);
    EXPECT_EQ(range.moved(3, -1), 3);
    EXPECT_EQ(range.moved(100, -1), 8);
    EXPECT_EQ(range.moved(0, 1), 3);
}

}
}

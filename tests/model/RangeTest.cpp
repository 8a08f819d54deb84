#include "model/range.h"

#include "tests/support/death.h"

#include <gmock/gmock.h>

#include <limits>

namespace tallyvox {
namespace {

using testing::ElementsAre;

constexpr auto most = std::numeric_limits<std::int64_t>::max();
constexpr auto least = std::numeric_limits<std::int64_t>::min();

TEST(Range, TheCeilingIsBetween1And128) {
    EXPECT_EQ(rangeCeiling(least), 1);
    EXPECT_EQ(rangeCeiling(0), 1);
    EXPECT_EQ(rangeCeiling(1), 1);
    EXPECT_EQ(rangeCeiling(64), 64);
    EXPECT_EQ(rangeCeiling(128), 128);
    EXPECT_EQ(rangeCeiling(129), 128);
    EXPECT_EQ(rangeCeiling(most), 128);
}

TEST(Range, TheCeilingWinsOverTheLowerBound) {
    EXPECT_EQ(bounded(5, 10, 8), 8);
    EXPECT_EQ(bounded(5, 1, 8), 5);
    EXPECT_EQ(bounded(-5, 1, 8), 1);
    EXPECT_EQ(bounded(most, least, 8), 8);
}

TEST(Range, ARangeIsPlayableUpToTheChannelsButNeverBeyond128) {
    EXPECT_TRUE(isPlayable(1, 8, 0, 8));
    EXPECT_FALSE(isPlayable(1, 9, 0, 8));
    EXPECT_TRUE(isPlayable(1, 128, 0, 200));
    EXPECT_FALSE(isPlayable(1, 129, 0, 200));
    EXPECT_TRUE(isPlayable(8, 8, 0, 8));
    EXPECT_FALSE(isPlayable(8, 7, 0, 8));
}

TEST(Range, AFirstBelow1IsNotLookedAt) { EXPECT_TRUE(isPlayable(-3, 8, 0, 8)); }

TEST(Range, ASoloMustLieInTheRange) {
    EXPECT_TRUE(isPlayable(2, 8, 2, 8));
    EXPECT_TRUE(isPlayable(2, 8, 8, 8));
    EXPECT_FALSE(isPlayable(2, 8, 1, 8));
    EXPECT_FALSE(isPlayable(1, 8, 9, 16));
    EXPECT_FALSE(isPlayable(1, 8, -1, 16));
}

TEST(Mask, HoldsAFlagForEveryChannelUpToThe128th) {
    EXPECT_EQ(channelMask(1, 8, 0, false, 16).size(), 16U);
    EXPECT_EQ(channelMask(1, 128, 0, false, 200).size(), 128U);
    EXPECT_EQ(channelMask(1, 1, 0, false, 1).size(), 1U);
}

TEST(Mask, IsTrueInsideTheRangeOnly) {
    EXPECT_THAT(channelMask(2, 3, 0, false, 5), ElementsAre(false, true, true, false, false));
    EXPECT_THAT(channelMask(-9, 2, 0, false, 3), ElementsAre(true, true, false));
    EXPECT_THAT(channelMask(4, 9, 0, false, 3), ElementsAre(false, false, false));
}

TEST(Mask, ASoloSilencesTheOthersUnlessInTurn) {
    EXPECT_THAT(channelMask(1, 4, 3, false, 4), ElementsAre(false, false, true, false));
    EXPECT_THAT(channelMask(1, 4, 3, true, 4), ElementsAre(true, true, true, true));
    EXPECT_THAT(channelMask(1, 2, 3, false, 4), ElementsAre(false, false, false, false));
}

TEST(Mask, AnInvertedRangeStopsTheProcess) { EXPECT_SILENT_STOP(channelMask(3, 2, 0, false, 4)); }

TEST(Mask, NoChannelsStopTheProcess) {
    EXPECT_SILENT_STOP(channelMask(1, 2, 0, false, 0));
    EXPECT_SILENT_STOP(channelMask(1, 2, 0, false, -1));
}

}
}

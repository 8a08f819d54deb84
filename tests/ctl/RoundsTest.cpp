#include "ctl/Rounds.h"
#include "ctl/liveState.h"
#include "ctl/loudness.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

/// Cycles of 10 frames.
Renderer renderer(const std::vector<bool>& enabled, bool sequential) {
    return Renderer(std::vector<std::vector<float>>(enabled.size(), std::vector<float>(8)), enabled,
                    1.0F, 2, sequential);
}

TEST(RoundsTest, TogetherARoundIsACycle) {
    const Rounds rounds(renderer({true, true, false}, false));
    EXPECT_EQ(rounds.frames(), 10);
    EXPECT_EQ(rounds.roundAt(9), 1);
    EXPECT_EQ(rounds.roundAt(10), 2);
    EXPECT_EQ(rounds.channelAt(5), 0);
}

TEST(RoundsTest, InTurnEveryEnabledChannelHasACycle) {
    const Rounds rounds(renderer({false, true, false, true, true}, true));
    EXPECT_EQ(rounds.frames(), 30);
    EXPECT_EQ(rounds.roundAt(29), 1);
    EXPECT_EQ(rounds.roundAt(30), 2);
    EXPECT_EQ(rounds.channelAt(0), 2);
    EXPECT_EQ(rounds.channelAt(19), 4);
    EXPECT_EQ(rounds.channelAt(20), 5);
    EXPECT_EQ(rounds.channelAt(30), 2);
}

TEST(RoundsTest, WithoutEnabledChannelsARoundIsACycle) {
    const Rounds rounds(renderer({false, false}, true));
    EXPECT_EQ(rounds.frames(), 10);
    EXPECT_EQ(rounds.channelAt(0), 0);
}

TEST(LiveState, TellsTimeRoundChannelAndXruns) {
    const Rounds turns(renderer({true, true}, true));
    EXPECT_EQ(liveState(61.5, 610, turns, 0), "1:01  round 31  channel 2  0 xruns");
    const Rounds together(renderer({true, true}, false));
    EXPECT_EQ(liveState(0.0, 0, together, 1), "0:00  round 1  1 xrun");
    EXPECT_EQ(liveState(3600.0, 36000, together, std::nullopt), "60:00  round 3601");
}

TEST(Loudness, OfOneChannelIsItsOwnPeak) {
    EXPECT_EQ(loudness(1, -24), "One channel at a time, peaks at -24.0 dBFS.");
}

TEST(Loudness, OfManyIsToldAlignedAndUncorrelated) {
    EXPECT_EQ(loudness(128, -6),
              "128 channels at once, each with peaks at -6.0 dBFS: their sum stays below 36.1 dBFS "
              "with all peaks aligned, about 15.1 dBFS uncorrelated.");
}

}
}

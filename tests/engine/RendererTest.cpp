#include "engine/Renderer.h"

#include "tests/support/GuardedBuffers.h"
#include "tests/support/death.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace tallyvox {
namespace {

using Samples = std::vector<float>;
using Voices = std::vector<std::vector<float>>;

constexpr auto most = std::numeric_limits<std::int64_t>::max();
constexpr auto least = std::numeric_limits<std::int64_t>::min();

/// One call over fresh memory of `shapes`.
GuardedBuffers rendered(Renderer& renderer, std::vector<GuardedBuffers::Shape> shapes) {
    GuardedBuffers buffers(std::move(shapes));
    renderer.render(buffers.list());
    EXPECT_TRUE(buffers.intact());
    return buffers;
}

TEST(Renderer, KeepsWhatItWasGiven) {
    const Voices voices{{1, 2, 3}, {4}};
    const Renderer renderer(voices, {true, false}, 0.5F, 4, true);
    EXPECT_EQ(renderer.voices(), voices);
    EXPECT_NE(renderer.voices(), (Voices{{1, 2, 3}, {5}}));
    EXPECT_NE(renderer.voices(), (Voices{{1, 2, 3}}));
    EXPECT_EQ(renderer.voices(), renderer.voices());
    const std::vector<float> samples = renderer.voices()[0];
    EXPECT_EQ(samples, voices[0]);
    EXPECT_EQ(samples, renderer.voices()[0]);
    EXPECT_EQ(renderer.enabled(), (std::vector<bool>{true, false}));
    EXPECT_EQ(renderer.gain(), 0.5F);
    EXPECT_EQ(renderer.cycle(), 7);
    EXPECT_TRUE(renderer.sequential());
    EXPECT_EQ(renderer.position(), 0);
}

TEST(Renderer, TheCycleIsTheLongestVoiceAndTheGapButAtLeastOneFrame) {
    EXPECT_EQ(Renderer({{1, 2, 3}, {4}}, {}, 1, 0, false).cycle(), 3);
    EXPECT_EQ(Renderer({{1, 2, 3}, {4}}, {}, 1, -1, false).cycle(), 2);
    EXPECT_EQ(Renderer({{1, 2, 3}, {4}}, {}, 1, -3, false).cycle(), 1);
    EXPECT_EQ(Renderer({{1, 2, 3}, {4}}, {}, 1, least, false).cycle(), 1);
    EXPECT_EQ(Renderer(Voices{}, {}, 1, 9, false).cycle(), 9);
    EXPECT_EQ(Renderer(Voices{}, {}, 1, 0, false).cycle(), 1);
    EXPECT_EQ(Renderer(Voices{}, {}, 1, most, false).cycle(), most);
}

TEST(Renderer, BracesMeanArrays) {
    EXPECT_EQ(Renderer({}, {}, 1, 5, false).cycle(), 5);
    EXPECT_EQ(Renderer({{}}, {true}, 1, 5, false).voices(), Voices(1));
}

TEST(Renderer, ACycleThatOverflowsStopsTheProcess) {
    EXPECT_SILENT_STOP(Renderer({{1}}, {true}, 1, most, false));
}

TEST(Renderer, WithoutVoicesEverySampleIsSilence) {
    Renderer renderer(Voices{}, {true, true}, 1, 3, false);
    const auto out = rendered(renderer, {{2, 5}, {1, 5}});
    EXPECT_EQ(out.buffer(0), Samples(10, 0.0F));
    EXPECT_EQ(out.buffer(1), Samples(5, 0.0F));
    EXPECT_EQ(renderer.position(), 2);
}

TEST(Renderer, WithoutAnEnabledChannelItIsSilentAndWrapsAtTheCycleInBothModes) {
    for (const bool sequential : {false, true}) {
        Renderer renderer({{1, 2}, {3}}, {false, false}, 1, 1, sequential);
        const auto out = rendered(renderer, {{2, 8}});
        EXPECT_EQ(out.buffer(0), Samples(16, 0.0F));
        EXPECT_EQ(renderer.position(), 8 % 3);
    }
}

TEST(Renderer, WithoutAGapVoicesOfOneLengthRepeatBackToBack) {
    Renderer renderer({{1, 2, 3}, {4, 5, 6}}, {true, true}, 1, 0, false);
    const auto out = rendered(renderer, {{1, 7}, {1, 7}});
    EXPECT_EQ(out.channel(0), (Samples{1, 2, 3, 1, 2, 3, 1}));
    EXPECT_EQ(out.channel(1), (Samples{4, 5, 6, 4, 5, 6, 4}));
}

TEST(Renderer, AShorterVoiceWaitsForTheLongestAndTheGap) {
    Renderer renderer({{1, 2, 3}, {4}}, {true, true}, 1, 1, false);
    const auto out = rendered(renderer, {{2, 9}});
    EXPECT_EQ(out.channel(0), (Samples{1, 2, 3, 0, 1, 2, 3, 0, 1}));
    EXPECT_EQ(out.channel(1), (Samples{4, 0, 0, 0, 4, 0, 0, 0, 4}));
}

TEST(Renderer, ANegativeGapCutsTheVoices) {
    Renderer renderer({{1, 2, 3, 4}, {5}}, {true, true}, 1, -2, false);
    const auto out = rendered(renderer, {{2, 5}});
    EXPECT_EQ(out.channel(0), (Samples{1, 2, 1, 2, 1}));
    EXPECT_EQ(out.channel(1), (Samples{5, 0, 5, 0, 5}));
}

TEST(Renderer, InTurnOneEnabledChannelSpeaksACycleInAscendingOrder) {
    Renderer renderer({{1, 1}, {2, 2}, {3, 3}, {4, 4}}, {true, false, true, true}, 1, 1, true);
    const auto out = rendered(renderer, {{1, 11}, {3, 11}});
    EXPECT_EQ(out.channel(0), (Samples{1, 1, 0, 0, 0, 0, 0, 0, 0, 1, 1}));
    EXPECT_EQ(out.channel(1), Samples(11, 0.0F));
    EXPECT_EQ(out.channel(2), (Samples{0, 0, 0, 3, 3, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(out.channel(3), (Samples{0, 0, 0, 0, 0, 0, 4, 4, 0, 0, 0}));
    EXPECT_EQ(renderer.position(), 11 % 9);
}

TEST(Renderer, ChannelsBeyondTheVoicesAreSilentAndTakeNoTurn) {
    Renderer renderer({{1}, {2}}, {true, true}, 1, 0, true);
    const auto out = rendered(renderer, {{4, 4}, {2, 4}});
    EXPECT_EQ(out.channel(0), (Samples{1, 0, 1, 0}));
    EXPECT_EQ(out.channel(1), (Samples{0, 2, 0, 2}));
    for (const int silent : {2, 3, 4, 5})
        EXPECT_EQ(out.channel(silent), Samples(4, 0.0F));
}

TEST(Renderer, EnabledChannelsThatNoBufferCarriesKeepTheirTurns) {
    Renderer renderer({{1}, {2}, {3}}, {true, true, true}, 1, 0, true);
    const auto out = rendered(renderer, {{1, 7}});
    EXPECT_EQ(out.channel(0), (Samples{1, 0, 0, 1, 0, 0, 1}));
    EXPECT_EQ(renderer.position(), 1);
}

TEST(Renderer, FlagsBeyondTheVoicesTakeNoStepButCountAmongTheTurns) {
    Renderer renderer({{1}, {2}}, {true, true, true, true}, 1, 0, true);
    const auto out = rendered(renderer, {{3, 9}, {2, 9}});
    EXPECT_EQ(out.channel(0), (Samples{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_EQ(out.channel(1), (Samples{0, 2, 0, 0, 0, 2, 0, 0, 0}));
    for (const int silent : {2, 3, 4})
        EXPECT_EQ(out.channel(silent), Samples(9, 0.0F));
    EXPECT_EQ(renderer.position(), 1);
}

TEST(Renderer, ABufferWithoutChannelsUsesNoIndicesAndNoFrames) {
    Renderer renderer({{1, 1, 1, 1}, {2, 2, 2, 2}}, {true, true}, 1, 0, false);
    const auto out = rendered(renderer, {{1, 2}, {0, 0, 16}, {1, 2}});
    EXPECT_EQ(out.channel(0), (Samples{1, 1}));
    EXPECT_EQ(out.channel(1), (Samples{2, 2}));
    EXPECT_EQ(renderer.position(), 2);
}

TEST(Renderer, ABufferWithoutMemoryUsesItsIndicesAndAdvancesThePosition) {
    Renderer renderer({{1, 1, 1, 1, 1, 1, 1}, {2, 2}, {3, 3}}, {true, true, true}, 1, 0, false);
    const auto out = rendered(renderer, {{1, 5, 0, true}, {1, 2}, {1, 2}});
    EXPECT_EQ(out.channel(1), (Samples{2, 2}));
    EXPECT_EQ(out.channel(2), (Samples{3, 3}));
    EXPECT_EQ(renderer.position(), 5);
}

TEST(Renderer, ABufferOfLessThanAFrameUsesItsIndicesAndStaysAsItWas) {
    Renderer renderer({{1}, {2}, {3}}, {true, true, true}, 1, 0, false);
    const auto out = rendered(renderer, {{2, 0, 7}, {1, 1}});
    EXPECT_EQ(out.buffer(0), Samples(2, GuardedBuffers::stale));
    EXPECT_EQ(out.channel(2), Samples{3});
}

TEST(Renderer, ATrailingPartialFrameIsLeftUntouched) {
    Renderer renderer({{1, 2, 3}, {4, 5, 6}}, {true, true}, 1, 0, false);
    const auto out = rendered(renderer, {{2, 2, 7}});
    EXPECT_EQ(out.buffer(0), (Samples{1, 4, 2, 5, GuardedBuffers::stale, GuardedBuffers::stale}));
    EXPECT_EQ(renderer.position(), 2);
}

TEST(Renderer, AFrameWiderThanThirtyTwoBitsOfBytesIsNoFrame) {
    Renderer renderer({{1}}, {true}, 1, 0, false);
    Samples memory(4, GuardedBuffers::stale);
    OwnedBufferList list({0x40000001U});
    list.buffers()[0].mDataByteSize = 16;
    list.buffers()[0].mData = memory.data();
    renderer.render(list.get());
    EXPECT_EQ(memory, Samples(4, GuardedBuffers::stale));
    EXPECT_EQ(renderer.position(), 0);
}

TEST(Renderer, BuffersOfDifferentLengthsStartTogetherAndTheLongestAdvances) {
    Renderer renderer({{1, 2, 3, 4, 5}, {6, 7, 8, 9, 10}}, {true, true}, 1, 0, false);
    const auto out = rendered(renderer, {{1, 2}, {1, 3}});
    EXPECT_EQ(out.channel(0), (Samples{1, 2}));
    EXPECT_EQ(out.channel(1), (Samples{6, 7, 8}));
    EXPECT_EQ(renderer.position(), 3);
}

TEST(Renderer, InterleavedAndSplitBuffersCarryTheSameSamples) {
    for (const bool sequential : {false, true}) {
        const Voices voices{{1, 2, 3}, {4, 5}, {6}, {7, 8, 9}};
        const std::vector<bool> enabled{true, true, false, true};
        Renderer together(voices, enabled, 0.5F, 2, sequential);
        Renderer split(voices, enabled, 0.5F, 2, sequential);
        Renderer mixed(voices, enabled, 0.5F, 2, sequential);
        const auto one = rendered(together, {{4, 40}});
        const auto four = rendered(split, {{1, 40}, {1, 40}, {1, 40}, {1, 40}});
        const auto both = rendered(mixed, {{1, 40}, {2, 40}, {1, 40}});
        for (int g = 0; g < 4; ++g) {
            EXPECT_EQ(one.channel(g), four.channel(g));
            EXPECT_EQ(one.channel(g), both.channel(g));
        }
    }
}

TEST(Renderer, CallsOfElevenFramesContinueACycleOfFour) {
    for (const bool sequential : {false, true}) {
        const Voices voices{{1, 2}, {3, 4}, {5}};
        const std::vector<bool> enabled{true, true, true};
        Renderer whole(voices, enabled, 1, 2, sequential);
        Renderer parts(voices, enabled, 1, 2, sequential);
        const auto once = rendered(whole, {{3, 55}});
        Samples joined;
        for (int call = 0; call < 5; ++call) {
            const Samples part = rendered(parts, {{3, 11}}).buffer(0);
            joined.insert(joined.end(), part.begin(), part.end());
        }
        EXPECT_EQ(joined, once.buffer(0));
        EXPECT_EQ(parts.position(), 55 % (sequential ? 12 : 4));
    }
}

TEST(Renderer, AnEmptyListWritesNothingAndReducesThePosition) {
    Renderer renderer({{1, 2, 3}}, {true}, 1, 0, false);
    renderer.setPosition(8);
    rendered(renderer, {});
    EXPECT_EQ(renderer.position(), 2);
}

TEST(Renderer, AWrittenPositionIsUsedUnchangedForThatCall) {
    Renderer renderer({{1}, {2}, {3}}, {true, true, true}, 1, 1, true);
    renderer.setPosition(6 * 1000 + 2);
    const auto out = rendered(renderer, {{3, 3}});
    EXPECT_EQ(out.buffer(0), (Samples{0, 2, 0, 0, 0, 0, 0, 0, 3}));
    EXPECT_EQ(renderer.position(), 5);
}

TEST(Renderer, TheGainIsAFactorWithoutALimit) {
    Renderer renderer({{0.1F, -0.7F, 1}}, {true}, 3.3F, 0, false);
    const auto out = rendered(renderer, {{1, 3}});
    EXPECT_EQ(out.channel(0), (Samples{0.1F * 3.3F, -0.7F * 3.3F, 3.3F}));
}

TEST(Renderer, SilenceIsZeroWhateverTheGain) {
    for (const float gain :
         {-1.0F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        Renderer renderer({{1}, {1}}, {true, false}, gain, 2, false);
        const auto out = rendered(renderer, {{1, 3}, {1, 3}, {1, 3}});
        const auto isPlainZero = [](float sample) {
            return sample == 0.0F && !std::signbit(sample);
        };
        for (const int f : {1, 2})
            EXPECT_TRUE(isPlainZero(out.channel(0)[static_cast<std::size_t>(f)]));
        for (const float sample : out.channel(1))
            EXPECT_TRUE(isPlainZero(sample));
        for (const float sample : out.channel(2))
            EXPECT_TRUE(isPlainZero(sample));
    }
}

TEST(Renderer, AVoicedChannelBeyondTheFlagsStopsTheProcess) {
    Renderer renderer({{1}, {2}}, {true}, 1, 5, false);
    EXPECT_EQ(rendered(renderer, {{1, 2}}).channel(0), (Samples{1, 0}));
    EXPECT_SILENT_STOP(rendered(renderer, {{2, 1}}));
    EXPECT_SILENT_STOP(rendered(renderer, {{1, 1}, {1, 1}}));
}

TEST(Renderer, AVoicedChannelBeyondTheFlagsIsHarmlessWhereNothingIsWritten) {
    Renderer renderer({{1}, {2}}, {true}, 1, 5, false);
    rendered(renderer, {{1, 2}, {1, 2, 0, true}, {1, 0, 3}});
    EXPECT_EQ(renderer.position(), 2);
}

TEST(Renderer, AVoiceAtANegativeOffsetStopsTheProcess) {
    Renderer renderer({{1, 2, 3}}, {true}, 1, 0, false);
    renderer.setPosition(-1);
    EXPECT_SILENT_STOP(rendered(renderer, {{1, 1}}));
    Renderer empty({{}, {1, 2, 3}}, {true, false}, 1, 0, false);
    empty.setPosition(-1);
    EXPECT_SILENT_STOP(rendered(empty, {{2, 1}}));
}

TEST(Renderer, ANegativePositionIsHarmlessWhereNoVoiceIsRead) {
    Renderer disabled({{1, 2, 3}}, {false}, 1, 0, false);
    disabled.setPosition(-7);
    EXPECT_EQ(rendered(disabled, {{1, 2}}).channel(0), Samples(2, 0.0F));
    EXPECT_EQ(disabled.position(), -2);

    Renderer unwritten({{1, 2, 3}}, {true}, 1, 0, false);
    unwritten.setPosition(-7);
    rendered(unwritten, {{1, 2, 0, true}});
    EXPECT_EQ(unwritten.position(), -2);
}

// Truncating division: frames -3 to -1 are offsets -3 to -1 of cycle 0, frame -4 is offset 0 of
// cycle -1, and no channel has a negative turn.
TEST(Renderer, ANegativePositionCountsTowardZero) {
    Renderer multiple({{1, 2, 3}}, {true}, 1, 1, false);
    multiple.setPosition(-4);
    EXPECT_EQ(rendered(multiple, {{1, 1}}).channel(0), Samples{1});
    EXPECT_EQ(multiple.position(), -3);

    Renderer turns({{1, 2, 3}, {4, 5, 6}}, {true, true}, 1, 1, true);
    turns.setPosition(-8);
    EXPECT_EQ(rendered(turns, {{2, 1}}).buffer(0), (Samples{1, 0}));
    turns.setPosition(-7);
    EXPECT_EQ(rendered(turns, {{2, 4}}).buffer(0), Samples(8, 0.0F));
    EXPECT_EQ(turns.position(), -3);
    EXPECT_SILENT_STOP(rendered(turns, {{1, 1}}));
    EXPECT_EQ(rendered(turns, {{0, 0}}).buffer(0), Samples{});
}

TEST(Renderer, FrameNumbersThatOverflowStopTheProcess) {
    Renderer renderer({{1}}, {true}, 1, 2, false);
    renderer.setPosition(most - 2);
    EXPECT_EQ(rendered(renderer, {{1, 2}}).channel(0).size(), 2U);
    renderer.setPosition(most - 1);
    EXPECT_SILENT_STOP(rendered(renderer, {{1, 2}}));
    EXPECT_SILENT_STOP(rendered(renderer, {{1, 2, 0, true}}));
    renderer.setPosition(most);
    rendered(renderer, {});
    EXPECT_EQ(renderer.position(), most % 3);
}

TEST(Renderer, APeriodThatOverflowsStopsTheProcess) {
    Renderer together({{}, {}}, {true, true}, 1, most / 2 + 1, false);
    rendered(together, {{1, 1}});
    EXPECT_EQ(together.position(), 1);
    Renderer inTurn({{}, {}}, {true, true}, 1, most / 2 + 1, true);
    EXPECT_SILENT_STOP(rendered(inTurn, {}));
}

}
}

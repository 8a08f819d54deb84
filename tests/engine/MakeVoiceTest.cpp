#include "engine/voices.h"

#include "tests/support/death.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <stdexcept>

namespace tallyvox {
namespace {

using Samples = std::vector<float>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

/// Small numbers with a peak of 1 in front, so that the divisor is 1.
Samples ramp(std::size_t count) {
    Samples samples(count);
    std::iota(samples.begin(), samples.end(), 0.0F);
    for (float& sample : samples)
        sample /= static_cast<float>(count);
    samples[0] = 1.0F;
    return samples;
}

TEST(MakeVoice, NoSamplesMakeAnEmptyVoice) {
    EXPECT_EQ(makeVoice({}, 44100, 48000), Samples{});
    EXPECT_EQ(makeVoice({}, 48000, 48000), Samples{});
}

TEST(MakeVoice, AtTheFilesOwnRateEverySampleIsDividedByThePeak) {
    const Samples source{0.1F, -0.5F, 0.25F, 0.0F, 0.3F};
    const Samples voice = makeVoice(source, 44100, 44100);
    ASSERT_EQ(voice.size(), source.size());
    for (std::size_t i = 0; i < source.size(); ++i)
        EXPECT_EQ(voice[i], source[i] / 0.5F);
}

TEST(MakeVoice, ARateThatIsNoIntegerKeepsItsOwnSamplesToo) {
    const Samples source = ramp(20000);
    const Samples voice = makeVoice(source, 47952.047952047954, 47952.047952047954);
    ASSERT_NEAR(static_cast<double>(voice.size()), 20000, 1);
    for (std::size_t i = 0; i < voice.size(); ++i)
        EXPECT_NEAR(voice[i], source[i], 1e-4);
}

TEST(MakeVoice, ThePeakBecomesOne) {
    EXPECT_EQ(makeVoice(Samples{0.5F, -0.25F}, 1, 1), (Samples{1, -0.5F}));
    EXPECT_EQ(makeVoice(Samples{-4, 2}, 1, 1), (Samples{-1, 0.5F}));
}

TEST(MakeVoice, AQuietVoiceIsAmplifiedByAThousandAtMost) {
    EXPECT_EQ(makeVoice(Samples{0.0005F, 0}, 1, 1), (Samples{0.0005F / 0.001F, 0}));
    EXPECT_EQ(makeVoice(Samples{0, 0}, 1, 1), (Samples{0, 0}));
    EXPECT_EQ(makeVoice(Samples{0.001F, -0.0002F}, 1, 1), (Samples{1, -0.0002F / 0.001F}));
    const float above = std::nextafter(0.001F, 1.0F);
    EXPECT_EQ(makeVoice(Samples{above}, 1, 1), Samples{1});
}

TEST(MakeVoice, HalvingTheRateTakesEverySecondSample) {
    const Samples source = ramp(101);
    const Samples voice = makeVoice(source, 96000, 48000);
    ASSERT_EQ(voice.size(), 50U);
    for (std::size_t i = 0; i < voice.size(); ++i)
        EXPECT_EQ(voice[i], source[2 * i]);
}

TEST(MakeVoice, DoublingTheRatePutsTheMeanBetweenTwoSamplesAndRepeatsTheLast) {
    EXPECT_EQ(makeVoice(Samples{1, 0.5F, -0.25F}, 24000, 48000),
              (Samples{1, 0.75F, 0.5F, 0.125F, -0.25F, -0.25F}));
}

TEST(MakeVoice, ASecondOfFortyFourOneMakesASecondOfFortyEight) {
    const Samples source = ramp(44100);
    const Samples voice = makeVoice(source, 44100, 48000);
    ASSERT_EQ(voice.size(), 48000U);
    const auto frac = static_cast<float>(0.91875);
    EXPECT_EQ(voice[1], (1 - frac) * source[0] + source[1] * frac);
    EXPECT_EQ(voice[47999], source[44099]);
    // Output 47998 lies at 44098.1625, between the last two samples.
    const auto near = static_cast<float>(44100.0 * 47998 / 48000 - 44098);
    EXPECT_EQ(voice[47998], (1 - near) * source[44098] + source[44099] * near);
}

TEST(MakeVoice, ASingleSampleFillsTheWholeVoice) {
    EXPECT_EQ(makeVoice(Samples{0.5F}, 1000, 5500), Samples(5, 1.0F));
}

TEST(MakeVoice, TheLengthIsTruncated) {
    EXPECT_EQ(makeVoice(ramp(3), 4, 3).size(), 2U);
    EXPECT_EQ(makeVoice(ramp(7), 48000, 44100).size(), 6U);
    EXPECT_EQ(makeVoice(ramp(3), 48000, 8000), Samples{});
}

TEST(MakeVoice, ARateOfNothingMakesAnEmptyVoice) {
    EXPECT_EQ(makeVoice(ramp(9), 44100, 0), Samples{});
    EXPECT_EQ(makeVoice(ramp(9), 44100, -0.0), Samples{});
    EXPECT_EQ(makeVoice(ramp(9), infinity, 48000), Samples{});
}

TEST(MakeVoice, ALengthThatIsNoCountStopsTheProcess) {
    EXPECT_SILENT_STOP(makeVoice(ramp(9), 44100, -48000));
    EXPECT_SILENT_STOP(makeVoice(ramp(9), 44100, std::nan("")));
    EXPECT_SILENT_STOP(makeVoice(ramp(9), 44100, infinity));
    EXPECT_SILENT_STOP(makeVoice(ramp(9), 0, 48000));
    EXPECT_SILENT_STOP(makeVoice(ramp(9), 1, 1e19));
    EXPECT_SILENT_STOP(makeVoice({}, 0, 48000));
    EXPECT_SILENT_STOP(makeVoice({}, 44100, infinity));
}

TEST(MakeVoice, ALengthThatNoMemoryHoldsIsThrown) {
    EXPECT_THROW(makeVoice(ramp(9), 1, 1e18), std::length_error);
}

TEST(MakeVoice, ANegativeLengthThatTruncatesToNothingIsNothing) {
    EXPECT_EQ(makeVoice(ramp(9), 48000, -5000), Samples{});
}

TEST(MakeVoice, WhatIsNoNumberInTheFirstPlaceLeavesTheFloorAsDivisor) {
    const Samples voice = makeVoice(Samples{notANumber, 0.5F}, 1, 1);
    ASSERT_EQ(voice.size(), 2U);
    EXPECT_TRUE(std::isnan(voice[0]));
    EXPECT_EQ(voice[1], 0.5F / 0.001F);
}

TEST(MakeVoice, WhatIsNoNumberLaterIsNoPeak) {
    const Samples voice = makeVoice(Samples{0.5F, 0.25F, notANumber, -0.25F}, 1, 1);
    ASSERT_EQ(voice.size(), 4U);
    EXPECT_EQ(voice[0], 1.0F);
    EXPECT_TRUE(std::isnan(voice[2]));
    EXPECT_EQ(voice[3], -0.5F);
}

}
}

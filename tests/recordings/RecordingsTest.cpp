#include "tests/recordings/Recording.h"
#include "tests/support/Recogniser.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <numeric>
#include <vector>

namespace tallyvox {
namespace {

constexpr std::int64_t count = 128;

class RecordingsTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        for (std::int64_t number = 1; number <= count; ++number)
            recordings.push_back(readRecording(RECORDINGS_FOLDER, number));
    }

    static void TearDownTestSuite() { recordings.clear(); }

    /// Every recording of the numbers `first` … `last` is understood in noise 20 dB below it.
    static void expectUnderstood(std::int64_t first, std::int64_t last) {
        Recogniser recogniser;
        for (std::int64_t number = first; number <= last; ++number) {
            const Recording& recording = recordings.at(static_cast<std::size_t>(number - 1));
            EXPECT_EQ(recogniser.number(recording.samples, recording.rate), number);
        }
    }

    static inline std::vector<Recording> recordings;
};

TEST_F(RecordingsTest, AreMono16BitWaveFilesAt48Kilohertz) {
    for (const Recording& recording : recordings) {
        EXPECT_EQ(recording.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
        EXPECT_EQ(recording.channels, 1);
        EXPECT_EQ(recording.rate, 48000.0);
    }
}

TEST_F(RecordingsTest, PeakAtMinusOneDecibel) {
    const float peak = std::round(32768.0F * std::pow(10.0F, -1.0F / 20.0F)) / 32768.0F;
    for (const Recording& recording : recordings)
        EXPECT_EQ(recording.peak(), peak);
}

TEST_F(RecordingsTest, AreShort) {
    for (std::size_t i = 0; i < recordings.size(); ++i) {
        const double limit = i < 8 ? 0.6 : i < 64 ? 1.0 : 1.5;
        EXPECT_LE(recordings.at(i).seconds(), limit) << i + 1;
        EXPECT_GE(recordings.at(i).seconds(), 0.2) << i + 1;
    }
}

TEST_F(RecordingsTest, BeginAndEndWithTheirSpeech) {
    for (std::size_t i = 0; i < recordings.size(); ++i) {
        EXPECT_LE(recordings.at(i).leadingSilence(), 0.010) << i + 1;
        EXPECT_LE(recordings.at(i).trailingSilence(), 0.025) << i + 1;
    }
}

TEST_F(RecordingsTest, BeginAndEndWithoutAClick) {
    for (std::size_t i = 0; i < recordings.size(); ++i) {
        EXPECT_LT(std::abs(recordings.at(i).samples.front()), 0.001F) << i + 1;
        EXPECT_LT(std::abs(recordings.at(i).samples.back()), 0.001F) << i + 1;
    }
}

TEST_F(RecordingsTest, AreEquallyLoudAtFullPeak) {
    std::vector<double> loudness;
    loudness.reserve(recordings.size());
    for (const Recording& recording : recordings)
        loudness.push_back(recording.loudnessAtFullPeak());
    const double mean = std::accumulate(loudness.begin(), loudness.end(), 0.0) / count;
    double squares = 0.0;
    for (const double each : loudness)
        squares += (each - mean) * (each - mean);
    EXPECT_LE(std::sqrt(squares / count), 0.1);
    EXPECT_NEAR(mean, -9.0, 0.2);
}

TEST_F(RecordingsTest, SpeakOneToThirtyTwoClearly) { expectUnderstood(1, 32); }

TEST_F(RecordingsTest, SpeakThirtyThreeToSixtyFourClearly) { expectUnderstood(33, 64); }

TEST_F(RecordingsTest, SpeakSixtyFiveToNinetySixClearly) { expectUnderstood(65, 96); }

TEST_F(RecordingsTest, SpeakNinetySevenToOneHundredTwentyEightClearly) {
    expectUnderstood(97, 128);
}

}
}
